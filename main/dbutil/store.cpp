#include "store.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "device_paths.h"
#include "files.h"
#include "log.h"
#include "operation_log.h"
#include "repair.h"
#include "schema.h"
#include "seal.h"
#include "well_known.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

struct Finalize {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};

struct KeyHash {
    std::size_t operator()(const StatementKey& key) const {
        return std::hash<const void*>()(key.made_from) * 31 + static_cast<std::size_t>(key.which);
    }
};

db_handle process_handle = nullptr;
bool failed_at_the_moment = false;
std::unordered_set<db_handle> settled;
std::unordered_map<StatementKey, std::unique_ptr<sqlite3_stmt, Finalize>, KeyHash> prepared;

struct Setting {
    const char* set;
    const char* get;
    const char* column;
    const char* value;
};
// A truncated journal and full syncs lose no commit to a power cut.
constexpr Setting kSettings[] = {
    {"pragma journal_mode = truncate;", "pragma journal_mode;", "journal_mode", "truncate"},
    {"pragma synchronous = full;", "pragma synchronous;", "synchronous", "2"},
    {"pragma busy_timeout = 0;", "pragma busy_timeout;", "timeout", "0"},
};

int apply(db_handle db, const Setting& setting) {
    if (const int rc = db_execsql(db, setting.set); rc != 0)
        return rc;
    db_cursor cursor;
    if (const int rc = db_query_open_v2(db, setting.get, &cursor); rc != 0)
        return rc;
    const char* value = db_query_fields_v2(&cursor, setting.column, 0);
    return value != nullptr && std::strcmp(value, setting.value) == 0 ? 0 : SQLITE_ERROR;
}

// True when what failed with SQLite's code may succeed now.
bool can_repair(int code, std::string_view table) {
    return code == SQLITE_ERROR && !table.empty() && db_repair(process_handle, table);
}

}  // namespace

// ------------------------------------------------------------------------------------- the handle

const char* get_db_path() {
    static const std::string path = device_path(kDatabaseFile);
    return path.c_str();
}

const char* get_db_backup_path() {
    static const std::string path = device_path(kDatabaseBackupFile);
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

db_handle release_db_handle() {
    prepared.clear();
    return std::exchange(process_handle, nullptr);
}

void CloseDatabase::operator()(db_handle db) const {
    db_close(&db);
}

ForAWhile::~ForAWhile() {
    db_handle db = release_db_handle();
    db_close(&db);
}

db_handle db_open(const char* path) {
    OwnDatabase db(db_connect(0, path, 0, 0));
    // SQLite opens a file for reading where it cannot be opened for writing.
    if (!db || sqlite3_db_readonly(db.get(), "main") != 0) {
        DB_LOG(kInfo, "Open database failure, waiting for 500ms to try again\n");
        usleep(500000);
        db.reset(db_connect(0, path, 0, 0));
    }
    if (db && db_settle(db.get()) != 0)
        DB_LOG(kError, "%s is opened, but cannot be stored to yet\n", path);
    return db.release();
}

int db_settle(db_handle db) {
    if (db == nullptr)
        return SQLITE_MISUSE;
    if (settled.contains(db))
        return 0;
    // A small page nearly halves the file and what a save writes.  It counts only while the file is empty.
    if (const int rc = db_execsql(db, "pragma page_size = 1024;"); rc != 0)
        return rc;
    for (const Setting& setting : kSettings)
        if (const int rc = apply(db, setting); rc != 0)
            return rc;
    settled.insert(db);
    return 0;
}

void db_close(db_handle* db) {
    if (*db == nullptr)
        return;
    const db_handle closing = *db;
    if (closing == process_handle) {
        prepared.clear();
        process_handle = nullptr;
    }
    settled.erase(closing);
    db_disconnect(closing);
    *db = nullptr;
}

int db_close_and_remove(db_handle db, const char* path) {
    db_close(&db);
    return remove_journal(path) ? std::remove(path) : -1;
}

int db_create(const char* path) {
    const OwnDatabase db(db_open(path));
    if (!db) {
        DB_LOG(kError, "creat_database:sqldb = NULL\n");
        return -1;
    }
    int result = db_settle(db.get());
    if (result == 0)
        result = db_execsql(db.get(), "BEGIN;");  // one commit for all tables
    if (result == 0)
        result = creat_all_table(db.get());
    if (result == 0)
        result = db_execsql(db.get(), "COMMIT;");
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

int db_prepare(StatementKey key, const std::function<std::string()>& sql, sqlite3_stmt** statement,
               std::string_view repaired) {
    auto& owner = prepared[key];
    *statement = owner.get();
    if (*statement != nullptr)
        return SQLITE_OK;
    const std::string text = sql();
    while (sqlite3_prepare_v3(process_handle, text.c_str(), static_cast<int>(text.size()),
                              SQLITE_PREPARE_PERSISTENT, statement, nullptr) != SQLITE_OK)
        if (const int code = db_report_error(); !can_repair(code, repaired))
            return code;
    owner.reset(*statement);
    return SQLITE_OK;
}

int db_step(sqlite3_stmt* statement, std::string_view repaired) {
    int rc = seal_step(statement);
    while (can_repair(rc, repaired)) {
        sqlite3_reset(statement);
        rc = seal_step(statement);
    }
    return rc;
}

int db_report_error(int code) {
    const char* const message = code != 0 ? sqlite3_errstr(code) : sqlite3_errmsg(process_handle);
    code = code != 0 ? code : sqlite3_errcode(process_handle);
    failed_at_the_moment =
        failed_at_the_moment || code == SQLITE_NOMEM || code == SQLITE_IOERR || code == SQLITE_CANTOPEN;
    DB_LOG_AS(kError, "db_execsql_adapt", "SQL error:%d, %s\n", code, message);
    return code;
}

bool db_failed_at_the_moment() {
    return failed_at_the_moment;
}

void db_clear_failure() {
    failed_at_the_moment = false;
}
