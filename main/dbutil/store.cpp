#include "store.h"

#include <errno.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <unordered_map>

#include "device_paths.h"
#include "log.h"
#include "operation_log.h"
#include "schema.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

struct Finalize {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};

db_handle process_handle = nullptr;
std::unordered_map<const void*, std::unique_ptr<sqlite3_stmt, Finalize>> prepared;

class File {
  public:
    explicit File(const char* path) : fd_(open(path, O_RDONLY | O_CLOEXEC)) {}
    ~File() {
        if (fd_ >= 0)
            close(fd_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    explicit operator bool() const { return fd_ >= 0; }
    off_t size() const { return lseek(fd_, 0, SEEK_END); }
    void rewind() const { lseek(fd_, 0, SEEK_SET); }
    ssize_t fill(std::array<unsigned char, 1024>& block) const {
        ssize_t n = 0;
        do
            n = read(fd_, block.data(), block.size());
        while (n < 0 && errno == EINTR);
        return n;
    }

  private:
    int fd_;
};

uint32_t block_sum(const std::array<unsigned char, 1024>& block, std::size_t length) {
    uint32_t sum = 0;
    for (std::size_t i = 0; i + 1 < length; i += 2)
        sum += static_cast<uint32_t>(block[i] | block[i + 1] << 8);
    if (length % 2 != 0)
        sum += block[length - 1];
    return sum;
}

}  // namespace

// ------------------------------------------------------------------------------------- the handle

const char* get_db_path() {
    static const std::string path = device_path("/devinfo/ipc_db");
    return path.c_str();
}

const char* get_db_backup_path() {
    static const std::string path = device_path("/devinfo/ipc_db_backup");
    return path.c_str();
}

db_handle get_db_handle() {
    if (process_handle == nullptr)
        std::puts("get_db_handle failed ");
    return process_handle;
}

void set_db_handle(db_handle db) {
    if (db == nullptr || db == process_handle)
        return;
    if (process_handle != nullptr)
        db_close(&process_handle);
    process_handle = db;
}

db_handle db_open(const char* path) {
    db_handle db = db_connect(0, path, 0, 0);
    if (db == nullptr) {
        DB_LOG(kInfo, "Open database failure, waiting for 500ms to try again\n");
        usleep(500000);
        db = db_connect(0, path, 0, 0);
    }
    // A small page nearly halves the file and what a save writes; a truncated journal and full syncs lose
    // no commit to a power cut.  The page size counts only while the file is empty.
    if (db != nullptr)
        db_execsql(db,
                   "pragma page_size = 1024; pragma journal_mode = truncate; pragma synchronous = full; "
                   "pragma busy_timeout = 0;");
    return db;
}

void db_close(db_handle* db) {
    if (*db == nullptr)
        return;
    const db_handle closing = *db;
    if (closing == process_handle) {
        prepared.clear();
        process_handle = nullptr;
    }
    db_disconnect(closing);
    *db = nullptr;
}

int db_close_and_remove(db_handle db, const char* path) {
    db_close(&db);
    // A journal that outlives its database would be played back into the next one.
    std::remove((std::string(path) + "-journal").c_str());
    return std::remove(path);
}

int db_create(const char* path) {
    db_handle db = db_open(path);
    if (db == nullptr) {
        DB_LOG(kError, "creat_database:sqldb = NULL\n");
        return -1;
    }
    int result = db_execsql(db, "BEGIN;");  // one commit for all tables
    result |= creat_all_table(db);
    result |= db_execsql(db, result == 0 ? "COMMIT;" : "ROLLBACK;");
    db_close(&db);
    return result == 0 ? 0 : -1;
}

int creat_all_table(db_handle db) {
    if (db == nullptr)
        return -1;
    int result = 0;
    const auto list = create_list();
    for (std::size_t i = 0; i < list.size(); ++i) {
        const int rc = db_execsql(db, list[i]);
        result |= rc;
        if (rc == 0)
            continue;
        DB_LOG(kError, "database[%d] creat table err(%s)!!!\n", static_cast<int>(i), list[i]);
        log_operation("create table[%d] failed\n", static_cast<int>(i));
    }
    return result;
}

int db_query_row_num(db_handle db, const char* sql, int* count) {
    if (sql == nullptr) {
        std::puts("sql error !");
        return -1;
    }
    db_cursor cursor{};
    const int rc = db_query_open_v2(db, sql, &cursor);
    if (rc == 0)
        *count = db_query_table_rows(&cursor);
    db_query_close_v2(&cursor);
    return rc == 0 ? 0 : -1;
}

// ------------------------------------------------------------------------------------- prepared statements

sqlite3_stmt* db_prepared(const void* made_from) {
    const auto found = prepared.find(made_from);
    return found == prepared.end() ? nullptr : found->second.get();
}

sqlite3_stmt* db_prepare(const void* made_from, const std::string& sql) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v3(process_handle, sql.c_str(), static_cast<int>(sql.size()),
                           SQLITE_PREPARE_PERSISTENT, &s, nullptr) != SQLITE_OK)
        db_report_error();
    else
        prepared[made_from].reset(s);
    return s;
}

int db_report_error() {
    const int code = sqlite3_errcode(process_handle);
    DB_LOG_AS(kError, "db_execsql_adapt", "SQL error:%d, %s\n", code, sqlite3_errmsg(process_handle));
    return code;
}

// ------------------------------------------------------------------------------------- files

int check_file_exist(const char* path) {
    return path != nullptr && access(path, R_OK | W_OK) == 0 ? 0 : -1;
}

int check_file_not_empty(const char* path) {
    if (path == nullptr)
        return -1;
    const File file(path);
    return file && file.size() >= 1 ? 0 : -1;
}

int check_file_equal(const char* path1, const char* path2) {
    if (path1 == nullptr || path2 == nullptr) {
        DB_LOG(kError, "pointer is NULL\n");
        return 0;
    }
    const File file1(path1);
    if (!file1) {
        DB_LOG(kError, "can not open file %s\n", path1);
        return 0;
    }
    const File file2(path2);
    if (!file2) {
        DB_LOG(kError, "can not open file %s\n", path2);
        return 0;
    }
    const off_t size = file1.size();
    if (size < 0 || size != file2.size())
        return 0;
    file1.rewind();
    file2.rewind();
    std::array<unsigned char, 1024> block1;
    std::array<unsigned char, 1024> block2;
    for (off_t compared = 0; compared < size;) {
        const ssize_t n = file1.fill(block1);
        if (n <= 0 || n != file2.fill(block2))
            return 0;  // also a file that shrinks meanwhile
        const auto length = static_cast<std::size_t>(n);
        if (block_sum(block1, length) != block_sum(block2, length))
            return 0;
        compared += n;
    }
    return 1;
}
