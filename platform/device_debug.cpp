#include "device_debug.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "unique_fd.h"

namespace {

// ---- messages

// How far below its module's full output a threshold lies, so that zero-initialised means everything.
std::atomic<int> suppressed[kDebugModules];

int threshold(int module) {
    const bool known = module >= 0 && module < kDebugModules;
    return known ? kDebugLevels - suppressed[module].load(std::memory_order_relaxed) : kDebugLevels;
}

void set_thresholds(int first, int last, int level) {
    for (int module = first; module <= last; ++module)
        suppressed[module].store(kDebugLevels - level, std::memory_order_relaxed);
}

const char* text_or_unknown(const char* text) {
    return text != nullptr ? text : "?";
}

std::string format_message(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (length < 0) {
        text = format;
    } else {
        text.resize(static_cast<size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

void write_all(int fd, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t written = write(fd, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        data += written;
        size -= static_cast<size_t>(written);
    }
}

// ---- redirection

constexpr size_t kLongestPath = 255;

std::mutex redirection_mutex;
unique_fd original_output;
unique_fd original_error;

unique_fd open_target(const void* request) {
    const auto* path = static_cast<const char*>(request);
    if (path == nullptr || path[0] != '/' || strnlen(path, kLongestPath + 1) > kLongestPath)
        return {};
    // Non-blocking: neither a pipe without a reader nor a halted terminal stops the process.
    unique_fd target(open(path, O_WRONLY | O_APPEND | O_CREAT | O_NOCTTY | O_NONBLOCK | O_CLOEXEC, 0644));
    struct stat status {};
    if (!target || fstat(target.get(), &status) != 0 || !(S_ISREG(status.st_mode) || S_ISCHR(status.st_mode)))
        return {};
    return target;
}

bool point_output_at(int output, int error) {
    std::fflush(stdout);
    std::fflush(stderr);
    return dup2(output, STDOUT_FILENO) >= 0 && dup2(error, STDERR_FILENO) >= 0;
}

void restore_originals() {
    point_output_at(original_output.get(), original_error.get());
    original_output.reset();
    original_error.reset();
}

unique_fd keep(int fd) {
    return unique_fd(fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

bool redirect(const void* request) {
    // The originals come first: a target opened while one of them is closed would take its number.
    const bool first = !original_output;
    unique_fd output = keep(STDOUT_FILENO);
    unique_fd error = keep(STDERR_FILENO);
    if (!output || !error)
        return false;
    const unique_fd target = open_target(request);
    if (!target)
        return false;
    if (first) {
        original_output = std::move(output);
        original_error = std::move(error);
    }
    if (point_output_at(target.get(), target.get()))
        return true;
    restore_originals();
    return false;
}

}  // namespace

int init_debug_task(int, int) {
    set_thresholds(0, kDebugModules - 1, kDebugLevels);
    return 0;
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the device's interface
void dev_debug_v1(int level, int module, const char* file, int line, const char* function, const char* format,
                  ...) {
    if (level > threshold(module))
        return;
    const int callers_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    try {
        std::string text = "[" + std::to_string(level) + "][" + std::to_string(module) + "][" +
                           text_or_unknown(file) + ":" + std::to_string(line) + " " +
                           text_or_unknown(function) + "] ";
        if (format != nullptr)
            text += format_message(format, arguments);
        while (text.back() == '\n')
            text.pop_back();
        text += '\n';
        write_all(STDERR_FILENO, text.data(), text.size());
    } catch (const std::bad_alloc&) {  // who logs may be about to clean up: what can be said is said
        dprintf(STDERR_FILENO, "[%d][%d][%s:%d %s] (out of memory)\n", level, module, text_or_unknown(file),
                line, text_or_unknown(function));
    }
    va_end(arguments);
    errno = callers_errno;
}

int set_debug_para_withcheck(const void* request, int, int) {
    if (request == nullptr)
        return -1;
    struct {
        int32_t module;
        int32_t level;
    } wanted;
    std::memcpy(&wanted, request, sizeof wanted);
    if (wanted.module < -1 || wanted.module >= kDebugModules || wanted.level < 0 ||
        wanted.level > kDebugLevels)
        return -1;
    const bool all = wanted.module == -1;
    set_thresholds(all ? 0 : wanted.module, all ? kDebugModules - 1 : wanted.module, wanted.level);
    return 0;
}

int redirection_output(const void* request, int* output_fd, int* error_fd) {
    if (output_fd == nullptr || error_fd == nullptr)
        return -1;
    const std::lock_guard lock(redirection_mutex);
    const bool redirected = redirect(request);
    *output_fd = redirected ? original_output.get() : -1;
    *error_fd = redirected ? original_error.get() : -1;
    return redirected ? 0 : -1;
}

int rdirection_output_cancle(int* output_fd, int* error_fd) {
    if (output_fd == nullptr || error_fd == nullptr)
        return -1;
    const std::lock_guard lock(redirection_mutex);
    if (!original_output)
        return -1;
    restore_originals();
    *output_fd = -1;
    *error_fd = -1;
    return 0;
}
