#include "device_paths.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr const char* kSocketFolder = "/var/run/ipc";

std::string without_trailing_slashes(std::string path) {
    while (!path.empty() && path.back() == '/')
        path.pop_back();
    return path;
}

// DEVICE_ROOT as an absolute path without a trailing slash ("/" is ""); empty when it is unset.
std::string device_root() {
    const char* root = std::getenv("DEVICE_ROOT");
    if (root == nullptr || *root == '\0')
        return {};
    std::error_code error;
    const fs::path absolute = fs::absolute(root, error);
    return without_trailing_slashes(error ? std::string(root) : absolute.string());
}

// Parts that do not exist yet are taken as the folders they will be.
std::string real_path(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    return without_trailing_slashes(error ? path : real.string());
}

uint32_t fnv1a(std::string_view text) {
    uint32_t hash = 2166136261u;
    for (const char c : text)
        hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
    return hash;
}

}  // namespace

std::string device_path(std::string_view absolute_path) {
    return device_root().append(absolute_path);
}

std::string device_socket_dir() {
    return device_path(kSocketFolder);
}

key_t device_ipc_key(key_t fixed) {
    const std::string root = device_root();
    if (root.empty())
        return fixed;
    const uint32_t key = (fnv1a(real_path(root)) & ~7u) | (static_cast<uint32_t>(fixed) & 7u);
    return static_cast<key_t>(key == 0 ? 8u : key);
}

bool device_prepare_root() {
    const std::string root = device_root();
    std::error_code error;
    if (fs::create_directories(root + kSocketFolder, error))
        fs::permissions(root + kSocketFolder, fs::perms(0750), error);
    if (!root.empty()) {
        for (const char* folder : {"/devinfo", "/velmora"}) {
            if (!error)
                fs::create_directories(root + folder, error);
        }
    }
    if (error)
        errno = error.value();
    return !error;
}
