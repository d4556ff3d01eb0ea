#include "operation_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "device_paths.h"
#include "log.h"

namespace {

constexpr const char* kSourceFile = "uni_process/DB_uni_process.c";
constexpr const char* kPositionName = "LOG_LAST_WRITE_POS";
constexpr int kPositionDigits = 4;

// Where the last record ends by the header at the file's start; -1 when it cannot be read.
int last_position(int fd, int length) {
    char header[kLogHeaderSize + 1] = {};
    const auto got = static_cast<int>(pread(fd, header, kLogHeaderSize, 0));
    if (got != kLogHeaderSize) {
        DB_LOG_AS(kError, "write_db_info_to_file", "%s[%d]read error(%d-%d)\n", "write_db_info_to_file",
                  __LINE__, kLogHeaderSize, got);
        DB_LOG_AS(kError, "write_db_info_to_file", "[%d][%s]write info failed(%d---%d)\n", __LINE__,
                  "write_db_info_to_file", got, length);
        return -1;
    }
    const char* name = std::strstr(header, kPositionName);
    if (name == nullptr) {
        DB_LOG_AS(kError, "write_db_info_to_file", "%s[%d]prt is null-----\n", "write_db_info_to_file",
                  __LINE__);
        return 0;
    }
    const std::size_t start = static_cast<std::size_t>(name - header) + std::strlen(kPositionName) + 1;
    if (start >= kLogHeaderSize)
        return 0;
    const std::string digits(header + start, strnlen(header + start, kPositionDigits));
    return std::max(kLogHeaderSize, static_cast<int>(std::strtol(digits.c_str(), nullptr, 10)));
}

}  // namespace

void format_log_time(char* buffer, int size) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::strftime(buffer, static_cast<std::size_t>(size), "[%Y-%m-%d %H:%M:%S]", &local);
}

void update_file_info(int fd, int last_position, int total_length) {
    char total[40];
    char position[40];
    std::snprintf(total, sizeof total, "LOG_TOTAL_LEN:%d\n", total_length);
    std::snprintf(position, sizeof position, "%s:%d\n\n", kPositionName, last_position);
    const struct {
        const char* text;
        const char* failure;
    } lines[] = {{"***DB_LOG_INFO***\n", "write log_title error(%d-%d)\n"},
                 {total, "write log_info error(%d-%d)\n"},
                 {position, "write log_write_info error(%d-%d)\n"}};
    lseek(fd, 0, SEEK_SET);
    for (const auto& line : lines) {
        const auto length = static_cast<int>(std::strlen(line.text));
        const auto written = static_cast<int>(write(fd, line.text, static_cast<std::size_t>(length)));
        if (written != length) {
            DB_LOG(kError, line.failure, written, length);
            return;
        }
    }
}

void write_db_info_to_file(const char* text, int length) {
    if (text == nullptr) {
        DB_LOG(kError, "info is null \n");
        return;
    }
    if (length <= 0) {
        DB_LOG(kError, "input len(%d) error\n", length);
        return;
    }
    length = std::min(length, kLogFileSize - kLogHeaderSize);
    const std::string path = device_path("/devinfo/db_op_info.log");
    const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0766);
    if (fd < 0) {
        DB_LOG(kError, "[%d][%s]fail to open %s\n", __LINE__, "write_db_info_to_file", path.c_str());
        return;
    }
    const auto size = static_cast<int>(std::min<off_t>(lseek(fd, 0, SEEK_END), kLogFileSize));
    int position = size;
    if (size < kLogHeaderSize) {
        if (ftruncate(fd, 0) == 0)
            update_file_info(fd, 0, 0);
        position = kLogHeaderSize;
    } else if (size + length > kLogFileSize) {
        position = last_position(fd, length);
        if (position + length > kLogFileSize)
            position = kLogHeaderSize;
    }
    if (position >= 0) {
        if (lseek(fd, 0, SEEK_END) > kLogFileSize && ftruncate(fd, kLogFileSize) != 0)
            DB_LOG(kError, "%s is too long\n", path.c_str());
        lseek(fd, position, SEEK_SET);
        const auto written = static_cast<int>(write(fd, text, static_cast<std::size_t>(length)));
        if (written == length)
            update_file_info(fd, position + length, 0);
        else
            DB_LOG(kError, "[%d][%s]write info failed(%d---%d)\n", __LINE__, "write_db_info_to_file", written,
                   length);
    }
    fsync(fd);
    close(fd);
}

void log_operation(const char* format, ...) {
    char line[kLogTimeSize + 512];  // a path and a few numbers
    format_log_time(line, kLogTimeSize);
    std::size_t used = std::strlen(line);
    line[used++] = ' ';
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line + used, sizeof line - used, format, arguments);
    va_end(arguments);
    write_db_info_to_file(line, static_cast<int>(std::strlen(line)));
}
