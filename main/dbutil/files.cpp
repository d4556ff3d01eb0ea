#include "files.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "log.h"
#include "second_try.h"
#include "unique_fd.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

using Block = std::array<unsigned char, 1024>;

unique_fd open_to_read(const char* path) {
    return unique_fd(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));  // a pipe would wait for its writer
}

off_t size_of(const unique_fd& file) {
    return lseek(file.get(), 0, SEEK_END);
}

// The bytes read at the offset: fewer than a block at the file's end; negative on failure.
ssize_t read_block(const unique_fd& file, Block& block, off_t offset) {
    ssize_t n = 0;
    do
        n = pread(file.get(), block.data(), block.size(), offset);
    while (n < 0 && errno == EINTR);
    return n;
}

uint32_t block_sum(const Block& block, std::size_t length) {
    uint32_t sum = 0;
    for (std::size_t i = 0; i + 1 < length; i += 2)
        sum += static_cast<uint32_t>(block[i] | block[i + 1] << 8);
    if (length % 2 != 0)
        sum += block[length - 1];
    return sum;
}

// All of `from` behind what `to` holds; false when it changed its size meanwhile.
bool append_content(const unique_fd& to, const unique_fd& from) {
    std::array<char, 8192> block;
    const off_t size = size_of(from);
    off_t copied = 0;
    for (;;) {
        const ssize_t n = pread(from.get(), block.data(), block.size(), copied);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n == 0 && copied == size;
        if (write(to.get(), block.data(), static_cast<std::size_t>(n)) != n)
            return false;
        copied += n;
    }
}

}  // namespace

bool sync_file(const char* path) {
    const unique_fd file = open_to_read(path);
    return file && fsync(file.get()) == 0;
}

bool sync_folder_of(const char* path) {
    char folder[PATH_MAX];
    const auto length = std::string_view(path).rfind('/');
    if (length == 0 || length >= sizeof folder)
        return sync_file(length == 0 ? "/" : ".");
    folder[std::string_view(path).copy(folder, length)] = '\0';
    return sync_file(folder);
}

int check_file_exist(const char* path) {
    return path != nullptr && access(path, R_OK | W_OK) == 0 ? 0 : -1;
}

int check_file_not_empty(const char* path) {
    if (path == nullptr)
        return -1;
    const unique_fd file = open_to_read(path);
    return file && size_of(file) >= 1 ? 0 : -1;
}

int check_file_equal(const char* path1, const char* path2) {
    if (path1 == nullptr || path2 == nullptr) {
        DB_LOG(kError, "pointer is NULL\n");
        return 0;
    }
    const unique_fd file1 = open_to_read(path1);
    if (!file1) {
        DB_LOG(kError, "can not open file %s\n", path1);
        return 0;
    }
    const unique_fd file2 = open_to_read(path2);
    if (!file2) {
        DB_LOG(kError, "can not open file %s\n", path2);
        return 0;
    }
    const off_t size = size_of(file1);
    if (size < 0 || size != size_of(file2))
        return 0;
    Block block1;
    Block block2;
    for (off_t compared = 0; compared < size;) {
        const ssize_t n = read_block(file1, block1, compared);
        if (n <= 0 || n != read_block(file2, block2, compared))
            return 0;  // also a file that shrinks meanwhile
        const auto length = static_cast<std::size_t>(n);
        if (block_sum(block1, length) != block_sum(block2, length))
            return 0;
        compared += n;
    }
    return 1;
}

bool remove_journal(const char* path) {
    char journal[PATH_MAX];
    if (std::snprintf(journal, sizeof journal, "%s-journal", path) >= static_cast<int>(sizeof journal))
        errno = ENAMETOOLONG;
    else if (std::remove(journal) == 0)
        return true;
    return errno == ENOENT;
}

bool replace_file(const char* from, const char* to) {
    // A rename is not undone for a fault of the moment behind it.
    if (sync_file(from) && remove_journal(to) && std::rename(from, to) == 0 &&
        at_the_second_try([&] { return sync_folder_of(to); }))
        return true;
    DB_LOG(kError, "%s cannot take the place of %s, errno = %d\n", from, to, errno);
    return false;
}

NewFile::NewFile(const char* place) : place_(place), path_(place_ + ".new") {
    remove();
}

NewFile::~NewFile() {
    remove();
}

void NewFile::remove() const {
    if ((std::remove(path()) != 0 && errno != ENOENT) || !remove_journal(path()))
        DB_LOG_AS(kError, "NewFile", "%s cannot be removed, errno = %d\n", path(), errno);
}

int copy_file(const char* to, const char* from, bool (*accepted)(const char* copy)) {
    constexpr mode_t kMode = 0644;
    if (to == nullptr || from == nullptr)
        return -1;
    const unique_fd source = open_to_read(from);
    if (!source)
        return -1;
    NewFile next(to);
    unique_fd copy(open(next.path(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, kMode));
    const bool whole =
        copy && fchmod(copy.get(), kMode) == 0 && append_content(copy, source) && fdatasync(copy.get()) == 0;
    return whole && close(copy.release()) == 0 && (accepted == nullptr || accepted(next.path())) &&
                   next.take_place()
               ? 0
               : -1;
}
