// Preloaded into a program, or linked with a test that forks, it records what the program does to the files below a
// folder, and the replies that it sends (recorded.h).  It can have the program meet faults of the storage and of the
// memory (faults.h), and commit faults in its place, for the test of the test.
#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <stdarg.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "faults.h"
#include "recorded.h"

#pragma GCC visibility push(default)

namespace {

using std::string;
using std::string_view;

string_view setting(const char* name) {
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

bool planted(string_view fault) {
    return setting(kRecordPlant) == fault;
}

void note(Recorded kind, uint64_t file, int64_t offset, const void* bytes, size_t length) {
    if (setting(kRecordLog).empty())
        return;
    static const int log = static_cast<int>(syscall(SYS_openat, AT_FDCWD, string(setting(kRecordLog)).c_str(),
                                                    O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    const int error = errno;
    RecordedHeader header{kind, static_cast<uint32_t>(length), file, offset};
    const iovec parts[] = {{&header, sizeof header}, {const_cast<void*>(bytes), length}};
    if (writev(log, parts, 2) != static_cast<ssize_t>(sizeof header + length))
        abort();  // a record with a gap proves nothing
    errno = error;
}

// The name below the root; empty: it is elsewhere, or of a service's socket.
string name_of(const char* path) {
    string full = path;
    if (full.empty() || full[0] != '/') {
        char folder[4096];
        full = string(getcwd(folder, sizeof folder) != nullptr ? folder : "") + "/" + full;
    }
    const string root = string(setting(kRecordRoot)) + "/";
    if (!full.starts_with(root) || full.starts_with(root + "var/"))
        return {};
    return full.substr(root.size());
}

// A recorded file behind a descriptor.
struct Open {
    string name;
    struct stat status {};
    explicit Open(int fd) {
        const int error = errno;
        char path[4096];
        const string link = "/proc/self/fd/" + std::to_string(fd);
        const ssize_t length = readlink(link.c_str(), path, sizeof path - 1);
        if (length > 0 && path[0] == '/' && fstat(fd, &status) == 0)
            name = name_of(string(path, static_cast<size_t>(length)).c_str());
        errno = error;
    }
    explicit operator bool() const { return !name.empty(); }
    bool is_folder() const { return S_ISDIR(status.st_mode); }
};

int unlink_noted(const char* path) {
    const Hooked call(Operation::unlink, path);
    if (call.fails())
        return -1;
    const int result = static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
    if (const string name = name_of(path); result == 0 && !name.empty())
        note(Recorded::unlink, 0, 0, name.data(), name.size());
    return result;
}

// ---- planted faults

constexpr const char* kUnfinishedBackup = "devinfo/ipc_db_backup.new";
bool replied = false;  // before it should have

void reply_early() {
    if (access((string(setting(kRecordLog)) + kArmed).c_str(), F_OK) != 0 || replied)
        return;
    replied = true;
    note(Recorded::reply, 0, 0, nullptr, 0);
}

// The path that is opened in the place of another.
string planted_path(const char* path, int flags) {
    string planned = path;
    const string name = name_of(path);
    if (planted("backup copied in place") && name == kUnfinishedBackup)
        planned.resize(planned.size() - strlen(".new"));
    if (planted("deletes before it rebuilds") && name == "devinfo/ipc_db.new" && (flags & O_CREAT) != 0)
        unlink_noted(planned.substr(0, planned.size() - strlen(".new")).c_str());
    return planned;
}

bool keeps_unfinished(const char* path) {
    return planted("backup copied in place") && name_of(path) == kUnfinishedBackup;
}

int open_noted(int folder, const char* given, int flags, mode_t mode) {
    const Hooked call(Operation::open, given);
    if (call.fails())
        return -1;
    const string path = planted_path(given, flags);
    const bool was_there = syscall(SYS_faccessat, folder, path.c_str(), F_OK) == 0;
    const auto fd = static_cast<int>(syscall(SYS_openat, folder, path.c_str(), flags, mode));
    if (fd < 0 || (flags & (O_CREAT | O_TRUNC)) == 0)
        return fd;
    const Open file(fd);
    if (file && !was_there)
        note(Recorded::create, file.status.st_ino, 0, file.name.data(), file.name.size());
    else if (file && (flags & O_TRUNC) != 0)
        note(Recorded::truncate, file.status.st_ino, 0, nullptr, 0);
    return fd;
}

int sync_noted(int fd, long number) {
    const Hooked call(Operation::sync, fd);
    if (call.fails())
        return call.result();
    if (number == SYS_fdatasync && planted("skipped fdatasync"))
        return 0;
    const auto result = static_cast<int>(syscall(number, fd));
    if (const Open file(fd); result == 0 && file)
        note(file.is_folder() ? Recorded::sync_folder : Recorded::sync, file.status.st_ino, 0,
             file.name.data(), file.name.size());
    return result;
}

mode_t mode_of(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

// Of this thread: its hooked calls that have not returned.
thread_local int hooked = 0;

void note_path(Operation operation, uint64_t number) {
    ++hooked;
    void* calls[48];
    const int depth = backtrace(calls, static_cast<int>(std::size(calls)));
    const auto hash = std::hash<string_view>()(
        {reinterpret_cast<const char*>(calls), static_cast<size_t>(depth) * sizeof *calls});
    if (const size_t at = faults->noted_paths++; at < faults->most_paths)
        faults->paths[at] = {operation, static_cast<uint32_t>(number), static_cast<uint32_t>(hash)};
    --hooked;
}

// Counts the operation; with errno where it is to fail.
bool meets_fault(Operation operation) {
    const uint64_t number = ++faults->seen[static_cast<size_t>(operation)];
    if (faults->paths != nullptr)
        note_path(operation, number);
    if (operation != faults->kind || faults->number == 0 || number < faults->number ||
        number - faults->number >= faults->length)
        return false;
    if (faults->failed++ == 0) {
        ++hooked;
        faults->depth = backtrace(faults->calls, static_cast<int>(std::size(faults->calls)));
        if (planted("descriptor left open"))
            dup(0);
        --hooked;
    }
    errno = faults->error;
    return true;
}

bool counts() {
    return faults != nullptr && faults->armed && hooked == 0;
}

}  // namespace

Hooked::Hooked(Operation operation, int fd) {
    const bool counted = counts();
    ++hooked;
    fails_ = counted && Open(fd) && meets_fault(operation);
}
Hooked::Hooked(Operation operation, const char* path) {
    const bool counted = counts();
    ++hooked;
    fails_ = counted && !name_of(path).empty() && meets_fault(operation);
}
Hooked::~Hooked() {
    --hooked;
}

// ---- in the place of the libraries'

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): theirs are reserved names.
extern "C" {

#define OPEN(NAME)                                      \
    int NAME(const char* path, int flags, ...) {        \
        va_list arguments;                              \
        va_start(arguments, flags);                     \
        const mode_t mode = mode_of(flags, arguments);  \
        va_end(arguments);                              \
        return open_noted(AT_FDCWD, path, flags, mode); \
    }
#define OPENAT(NAME)                                         \
    int NAME(int folder, const char* path, int flags, ...) { \
        va_list arguments;                                   \
        va_start(arguments, flags);                          \
        const mode_t mode = mode_of(flags, arguments);       \
        va_end(arguments);                                   \
        return open_noted(folder, path, flags, mode);        \
    }
OPEN(open)
OPEN(open64)
OPENAT(openat)
OPENAT(openat64)

ssize_t write(int fd, const void* data, size_t size) {
    const Hooked call(Operation::write, fd);
    if (call.fails())
        return -1;
    const ssize_t n = syscall(SYS_write, fd, data, size);
    if (n > 0)
        if (const Open file(fd); file)
            note(Recorded::write, file.status.st_ino, lseek(fd, 0, SEEK_CUR) - n, data,
                 static_cast<size_t>(n));
    return n;
}

ssize_t pwrite64(int fd, const void* data, size_t size, off64_t at) {
    const Hooked call(Operation::write, fd);
    if (call.fails())
        return -1;
    const ssize_t n = syscall(SYS_pwrite64, fd, data, size, at);
    if (n > 0)
        if (const Open file(fd); file)
            note(Recorded::write, file.status.st_ino, at, data, static_cast<size_t>(n));
    return n;
}
ssize_t pwrite(int fd, const void* data, size_t size, off_t at) {
    return pwrite64(fd, data, size, at);
}

int ftruncate64(int fd, off64_t size) noexcept {
    const Hooked call(Operation::truncate, fd);
    if (call.fails())
        return -1;
    const auto result = static_cast<int>(syscall(SYS_ftruncate, fd, size));
    if (const Open file(fd); result == 0 && file)
        note(Recorded::truncate, file.status.st_ino, size, nullptr, 0);
    return result;
}
int ftruncate(int fd, off_t size) noexcept {
    return ftruncate64(fd, size);
}

int fsync(int fd) {
    return sync_noted(fd, SYS_fsync);
}
int fdatasync(int fd) {
    return sync_noted(fd, SYS_fdatasync);
}

int rename(const char* from, const char* to) noexcept {
    const Hooked call(Operation::rename, from);
    if (call.fails())
        return -1;
    if (keeps_unfinished(from))
        return 0;
    if (planted("replies before the rename"))
        reply_early();
    const auto result = static_cast<int>(syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
    if (const string name = name_of(from); result == 0 && !name.empty()) {
        const string both = name + '\0' + name_of(to) + '\0';
        note(Recorded::rename, 0, 0, both.data(), both.size());
    }
    return result;
}

int unlink(const char* path) noexcept {
    return keeps_unfinished(path) ? 0 : unlink_noted(path);
}
int remove(const char* path) noexcept {
    const int result = unlink(path);
    return result != 0 && errno == EISDIR ? rmdir(path) : result;
}

#define READ(NAME, PARAMETERS, ...)             \
    ssize_t NAME PARAMETERS {                   \
        const Hooked call(Operation::read, fd); \
        return call.fails() ? -1 : __VA_ARGS__; \
    }
READ(read, (int fd, void* data, size_t size), syscall(SYS_read, fd, data, size))
READ(pread, (int fd, void* data, size_t size, off_t at), syscall(SYS_pread64, fd, data, size, at))
READ(pread64, (int fd, void* data, size_t size, off64_t at), syscall(SYS_pread64, fd, data, size, at))

#define LOOK(NAME, PARAMETERS, WHAT, ...)                         \
    int NAME PARAMETERS noexcept {                                \
        const Hooked call(Operation::look, WHAT);                 \
        return call.fails() ? -1 : static_cast<int>(__VA_ARGS__); \
    }
LOOK(access, (const char* path, int mode), path, syscall(SYS_faccessat, AT_FDCWD, path, mode))
LOOK(stat, (const char* path, struct stat* status), path, syscall(SYS_newfstatat, AT_FDCWD, path, status, 0))
LOOK(stat64, (const char* path, struct stat64* status), path,
     syscall(SYS_newfstatat, AT_FDCWD, path, status, 0))
LOOK(lstat, (const char* path, struct stat* status), path,
     syscall(SYS_newfstatat, AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW))
LOOK(lstat64, (const char* path, struct stat64* status), path,
     syscall(SYS_newfstatat, AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW))
LOOK(fstat, (int fd, struct stat* status), fd, syscall(SYS_fstat, fd, status))
LOOK(fstat64, (int fd, struct stat64* status), fd, syscall(SYS_fstat, fd, status))

ssize_t sendmsg(int socket, const msghdr* message, int flags) {
    struct {
        char magic[4];
        int32_t status, result;
        uint32_t length;
    } reply{};
    if (message->msg_iovlen == 2 && message->msg_iov[0].iov_len == sizeof reply &&
        memcmp(message->msg_iov[0].iov_base, "IPR1", 4) == 0) {
        int32_t value = 0;
        if (message->msg_iov[1].iov_len == sizeof value)
            memcpy(&value, message->msg_iov[1].iov_base, sizeof value);
        if (!replied)
            note(Recorded::reply, 0, value, nullptr, 0);
        replied = false;
    }
    return syscall(SYS_sendmsg, socket, message, flags);
}

int usleep(useconds_t microseconds) {
    const timespec time{0, setting(kRecordHaste).empty() ? microseconds * 1000L : 0};
    nanosleep(&time, nullptr);
    return 0;
}
unsigned sleep(unsigned seconds) {
    const bool hastes = !setting(kRecordHaste).empty();
    const timespec time{hastes ? 0 : seconds, hastes ? std::min(seconds, 999U) * 1000000 : 0};
    nanosleep(&time, nullptr);
    return 0;
}

int sqlite3_exec(sqlite3* db, const char* sql, int (*row)(void*, int, char**, char**), void* context,
                 char** error) {
    static const auto real = reinterpret_cast<decltype(&sqlite3_exec)>(dlsym(RTLD_NEXT, "sqlite3_exec"));
    const string_view text =
        sql != nullptr ? sql : "";  // SQLite calls it without one when it runs out of memory
    const bool begins = text.starts_with("BEGIN"), commits = text.starts_with("COMMIT");
    if (commits && planted("COMMIT taken for done")) {
        if (real(db, sql, row, context, error) != SQLITE_OK && sqlite3_get_autocommit(db) == 0)
            real(db, "ROLLBACK;", nullptr, nullptr, nullptr);
        return SQLITE_OK;
    }
    if (begins && planted("synchronous normal"))
        real(db, "pragma synchronous = normal;", nullptr, nullptr, nullptr);
    if (begins && planted("journal deleted"))
        real(db, "pragma journal_mode = delete;", nullptr, nullptr, nullptr);
    if (commits && planted("replies before the commit"))
        reply_early();
    return real(db, sql, row, context, error);
}

// A sanitizer has allocation functions of its own, and nothing is preloaded before it.
#ifdef COUNT_ALLOCATIONS
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t number, size_t size);
void* __libc_realloc(void* old, size_t size);

#define ALLOCATE(NAME, PARAMETERS, ...)                                                       \
    void* NAME PARAMETERS noexcept {                                                          \
        return counts() && meets_fault(Operation::allocate) ? nullptr : __libc_##__VA_ARGS__; \
    }
ALLOCATE(malloc, (size_t size), malloc(size))
ALLOCATE(calloc, (size_t number, size_t size), calloc(number, size))
ALLOCATE(realloc, (void* old, size_t size), realloc(old, size))
#endif

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
