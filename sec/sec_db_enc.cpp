#include "sec_db_enc.h"

#include <net/if.h>
#include <openssl/evp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "log.h"
#include "state.h"
#include "unique_fd.h"

namespace {

constexpr const char* kSourceFile = "sec_db_enc.c";
constexpr std::size_t kBlock = 16;

#define ENC_LOG(level, ...) \
    dev_debug_v1(level, kEncryptionModule, kSourceFile, __LINE__, __func__, __VA_ARGS__)

// Texts in the field are bound to this seed: it never changes.  Index 1 reads one byte further than index 0.
constexpr unsigned char kSeed[17] = {0x6b, 0x1d, 0xe4, 0x92, 0x3f, 0xa8, 0x57, 0xc1, 0x0e,
                                     0x7a, 0xd3, 0x46, 0x89, 0xb5, 0x2c, 0xf0, 0x63};

struct Scheme {
    uint32_t id;
    uint32_t largest_index;
};
constexpr uint32_t kDefaultLargestIndex = 1;
constexpr Scheme kSchemes[] = {{kSchemeNetworkAddress, 1}, {kSchemeDefault, kDefaultLargestIndex}, {1, 1}};

uint32_t largest_index(uint32_t scheme) {
    for (const Scheme& s : kSchemes)
        if (s.id == scheme)
            return s.largest_index;
    return 0;
}

// The hardware address of eth0 up to its first zero byte; empty when there is none.
std::string network_address() {
    const unique_fd fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!fd) {
        std::perror("Socket");
        return {};
    }
    ifreq request{};
    std::strcpy(request.ifr_name, "eth0");
    std::string address;
    if (ioctl(fd.get(), SIOCGIFHWADDR, &request) != 0)
        ENC_LOG(kError, "get_mac_num ioctl error and \n");
    else
        address.assign(request.ifr_hwaddr.sa_data, strnlen(request.ifr_hwaddr.sa_data, 8));
    return address;
}

using Key = std::array<unsigned char, kBlock>;

Key key_of(uint32_t version) {
    Key key{};
    return get_mac_num(version, key.data()) == 0 ? key : Key{};  // an index out of range: zeros
}

// Nothing is stored, nor loaded, instead of what could not be had, most likely for want of memory.
[[noreturn]] void fail(const char* function, const char* what) {
    dev_debug_v1(kError, kEncryptionModule, kSourceFile, __LINE__, function, "%s: %s failed\n", function,
                 what);
    throw std::runtime_error(what);
}

// Encrypts or decrypts whole blocks in place.
bool run_cipher(std::vector<unsigned char>& data, const Key& key, bool encrypt) {
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    const Key iv{};
    int length = 0;
    std::vector<unsigned char> out(data.size() + kBlock);
    if (!context ||
        EVP_CipherInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key.data(), iv.data(),
                          encrypt ? 1 : 0) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1 ||
        EVP_CipherUpdate(context.get(), out.data(), &length, data.data(), static_cast<int>(data.size())) != 1)
        return false;
    out.resize(static_cast<std::size_t>(length));
    data.swap(out);
    return true;
}

int hex_digit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The cipher bytes of a stored text; none when the text is not of the stored form: a colon first, then
// tokens of one or two hexadecimal digits, at least 16.
std::vector<unsigned char> parse_stored(std::string_view text) {
    std::vector<unsigned char> bytes;
    while (!text.empty()) {
        if (text.front() != ':')
            return {};
        text.remove_prefix(1);
        const auto token = text.substr(0, text.find(':'));
        if (token.size() > 2 || (token.empty() && !text.empty()))
            return {};
        int byte = 0;
        for (const char c : token) {
            if (hex_digit(c) < 0)
                return {};
            byte = byte * 16 + hex_digit(c);
        }
        if (!token.empty())  // a text cut behind a colon ends here
            bytes.push_back(static_cast<unsigned char>(byte));
        text.remove_prefix(token.size());
    }
    if (bytes.size() < kBlock)
        return {};
    return bytes;
}

}  // namespace

uint32_t get_db_enc_version() {
    const DEVICECONFIG* record = get_cfg_param();
    return record != nullptr ? record->sec_lock_auth.db_enc_version : 0;
}

void set_db_enc_version(uint32_t version) {
    if (DEVICECONFIG* record = get_cfg_param())
        record->sec_lock_auth.db_enc_version = version;
}

VersionInUse::VersionInUse(uint32_t version, bool clear) : version_(version), clear_(clear) {
    current_ = this;
}

VersionInUse::~VersionInUse() {
    current_ = nullptr;
}

uint32_t VersionInUse::get() {
    return current_ != nullptr ? current_->version_ : get_db_enc_version();
}

uint32_t VersionInUse::create() {
    std::minstd_rand random(static_cast<unsigned>(std::time(nullptr)));
    const uint32_t version = kSchemeDefault << 8 | static_cast<uint32_t>(random() % kDefaultLargestIndex);
    set_db_enc_version(version);
    if (current_ != nullptr) {
        current_->version_ = version;
        current_->created_ = true;
    }
    return version;
}

void VersionInUse::note_use() {
    if (current_ != nullptr)
        current_->used_ = true;
}

void VersionInUse::undo_creation() {
    if (!created_)
        return;
    if (get_db_enc_version() == version_)
        set_db_enc_version(0);
    version_ = 0;
    created_ = false;
}

void compute_md5(const void* data, std::size_t length, unsigned char* digest) {
    if (data != nullptr && digest != nullptr &&
        EVP_Digest(data, length, digest, nullptr, EVP_md5(), nullptr) != 1)
        fail(__func__, "the digest");
}

void prepare_encryption() {
    std::vector<unsigned char> data(kBlock);
    if (!run_cipher(data, key_of(kDefaultVersion), true))
        fail(__func__, "the cipher");
}

int get_mac_num(uint32_t version, unsigned char* key) {
    const uint32_t scheme = version >> 8;
    const uint32_t index = version & 0xFF;
    if (key == nullptr || index > largest_index(scheme))
        return -1;
    std::string material;
    if (scheme == kSchemeNetworkAddress)
        material = network_address().append(reinterpret_cast<const char*>(kSeed) + index, kBlock);
    compute_md5(material.data(), strnlen(material.data(), material.size()), key);
    return 0;
}

bool is_stored_form(std::string_view text) {
    return !parse_stored(text).empty();
}

void db_encrypt(const char* clear, char* output, int length, int capacity) {
    if (clear == nullptr || output == nullptr || capacity <= 0)
        return;
    const std::size_t used = strnlen(clear, static_cast<std::size_t>(std::max(length, 0)));
    if (used == 0) {
        ENC_LOG(kInfo, "len 0 should not encrypt\n");
        return;
    }
    if (used > kMaxClearText) {
        ENC_LOG(kError, "db_encrypt: %d characters are too many, at most %d\n", static_cast<int>(used),
                kMaxClearText);
        return;
    }
    if (VersionInUse::stores_clear()) {
        std::memcpy(output, clear, std::min(used, static_cast<std::size_t>(capacity) - 1));
        return;
    }
    uint32_t version = VersionInUse::get();
    if (version == 0)
        version = VersionInUse::create();
    VersionInUse::note_use();
    std::vector<unsigned char> data((used / kBlock + 1) * kBlock);
    std::memcpy(data.data(), clear, used);
    if (!run_cipher(data, key_of(version), true))
        fail(__func__, "the cipher");
    std::string stored;
    for (const unsigned char byte : data) {
        constexpr char kDigits[] = "0123456789abcdef";
        stored += ':';
        if (byte >= 16)
            stored += kDigits[byte / 16];
        stored += kDigits[byte % 16];
    }
    if (stored.size() > static_cast<std::size_t>(capacity))
        ENC_LOG(kError, "db_encrypt: len too short\n");
    stored.copy(output, static_cast<std::size_t>(capacity) - 1);
}

void db_decrypt(const char* stored, char* output, int length, int capacity) {
    if (stored == nullptr || output == nullptr || capacity <= 0)
        return;
    const std::string_view text(stored, strnlen(stored, static_cast<std::size_t>(std::max(length, 0))));
    const auto room = static_cast<std::size_t>(capacity);
    if (text.empty()) {
        ENC_LOG(kInfo, "len 0 should not decrypt\n");
        return;
    }
    if (text.size() > kMaxStoredText) {
        ENC_LOG(kError, "db_decrypt: %d characters are too many, at most %d\n", static_cast<int>(text.size()),
                kMaxStoredText);
        return;
    }
    const uint32_t version = VersionInUse::get();
    if (version == 0) {
        std::memcpy(output, text.data(), std::min(room, text.size()));
        output[room - 1] = '\0';
        ENC_LOG(kError, "version == 0, source :%s\n", "***");
        return;
    }
    std::vector<unsigned char> data = parse_stored(text);
    std::string_view clear = text;
    if (!data.empty()) {
        data.resize(data.size() / kBlock * kBlock);
        if (!run_cipher(data, key_of(version), false))
            fail(__func__, "the cipher");
        const char* bytes = reinterpret_cast<const char*>(data.data());
        clear = {bytes, strnlen(bytes, data.size())};
    }
    if (clear.size() > room)
        ENC_LOG(kInfo, "db_decrypt: len too short\n");
    std::memcpy(output, clear.data(), std::min(clear.size(), room));
}
