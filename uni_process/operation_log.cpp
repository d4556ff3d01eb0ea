#include "operation_log.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "device_paths.h"
#include "log.h"
#include "operation_log_format.h"
#include "unique_fd.h"
#include "well_known.h"

namespace {

constexpr const char* kSourceFile = "uni_process/DB_uni_process.c";
constexpr const char* kWriter = "write_db_info_to_file";

// Where a record of `length` bytes goes in a file of `size` bytes; -1 when the header cannot be read.
int place_for(int fd, int size, int length) {
    if (size < kLogHeaderSize)
        return kLogHeaderSize;
    if (size + length <= kLogFileSize)
        return size;
    std::array<char, kLogHeaderSize> header{};
    const auto got = static_cast<int>(pread(fd, header.data(), header.size(), 0));
    if (got != kLogHeaderSize) {
        DB_LOG_AS(kError, kWriter, "%s[%d]read error(%d-%d)\n", kWriter, __LINE__, kLogHeaderSize, got);
        DB_LOG_AS(kError, kWriter, "[%d][%s]write info failed(%d---%d)\n", __LINE__, kWriter, got, length);
        return -1;
    }
    const auto position = log_position({header.data(), header.size()});
    if (!position)
        DB_LOG_AS(kError, kWriter, "%s[%d]prt is null-----\n", kWriter, __LINE__);
    const int behind_last = position.value_or(0);
    return behind_last + length <= kLogFileSize ? behind_last : kLogHeaderSize;
}

// A file shorter than its header begins anew, one that has grown too long is cut.
bool trim(int fd, off_t size) {
    if (size >= kLogHeaderSize)
        return size <= kLogFileSize || ftruncate(fd, kLogFileSize) == 0;
    if (size > 0 && ftruncate(fd, 0) != 0)
        return false;
    update_file_info(fd, 0, 0);
    return true;
}

void write_record(int fd, const char* path, const char* text, int length) {
    struct stat status {};
    if (fstat(fd, &status) != 0) {
        DB_LOG_AS(kError, kWriter, "%s cannot be looked at, errno = %d\n", path, errno);
        return;
    }
    const int position =
        place_for(fd, static_cast<int>(std::min<off_t>(status.st_size, kLogFileSize)), length);
    if (position < 0)
        return;
    if (!trim(fd, status.st_size))
        DB_LOG_AS(kError, kWriter, "%s cannot be cut to its size, errno = %d\n", path, errno);
    const auto written = static_cast<int>(pwrite(fd, text, static_cast<std::size_t>(length), position));
    if (written == length)
        update_file_info(fd, position + length, 0);
    else
        DB_LOG_AS(kError, kWriter, "[%d][%s]write info failed(%d---%d)\n", __LINE__, kWriter, written,
                  length);
}

}  // namespace

void format_log_time(char* buffer, int size) {
    std::snprintf(buffer, static_cast<std::size_t>(size), "%s", log_time().c_str());
}

void update_file_info(int fd, int last_position, int total_length) {
    constexpr const char* kFailures[] = {"write log_title error(%d-%d)\n", "write log_info error(%d-%d)\n",
                                         "write log_write_info error(%d-%d)\n"};
    const auto lines = log_header_lines(total_length, last_position);
    off_t at = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto length = static_cast<int>(lines[i].size());
        const auto written = static_cast<int>(pwrite(fd, lines[i].data(), lines[i].size(), at));
        if (written != length) {
            DB_LOG(kError, kFailures[i], written, length);
            return;
        }
        at += length;
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
    const std::string path = device_path(kOperationLogFile);
    unique_fd file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0766));
    if (!file) {
        DB_LOG(kError, "[%d][%s]fail to open %s\n", __LINE__, kWriter, path.c_str());
        return;
    }
    write_record(file.get(), path.c_str(), text, std::min(length, kLogFileSize - kLogHeaderSize));
    if (fsync(file.get()) != 0)
        DB_LOG(kError, "%s cannot be synced, errno = %d\n", path.c_str(), errno);
    if (close(file.release()) != 0)
        DB_LOG(kError, "%s cannot be closed, errno = %d\n", path.c_str(), errno);
}

void log_operation(const char* format, ...) {
    char line[kLogTimeSize + 512];  // a path and a few numbers
    format_log_time(line, kLogTimeSize);
    std::size_t used = std::strlen(line);
    line[used++] = ' ';
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line + used, sizeof line - used, format, arguments);
    va_end(arguments);
    if (length >= static_cast<int>(sizeof line - used))
        line[sizeof line - 2] = '\n';  // cut, and still a line
    write_db_info_to_file(line, static_cast<int>(std::strlen(line)));
}
