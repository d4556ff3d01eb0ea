#include "start.h"

#include <errno.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "all_tables.h"
#include "engine.h"
#include "log.h"
#include "operation_log.h"
#include "registry.h"
#include "state.h"
#include "store.h"
#include "versions.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";
constexpr int kLockAttempts = 6;

bool load_pending = false;

// Why a database without a readable version has none.
enum class Condition {
    no_version,  // empty, or without the table or its row: made anew from the record
    damaged,     // no database, or a broken one
    unreadable,  // locked, no permission, I/O error: left as it is
};

Condition condition_of(db_handle db, int attempts) {
    int rc = SQLITE_OK;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (attempt > 0)
            sleep(1);
        rc = db_execsql(db, "select count(*) from sqlite_master;");
        if (rc != SQLITE_BUSY && rc != SQLITE_LOCKED)
            break;
    }
    if (rc == SQLITE_OK)
        return Condition::no_version;
    DB_LOG_AS(kError, "init_database", "the database %s cannot be read: %s\n", get_db_path(),
              sqlite3_errstr(rc));
    return rc == SQLITE_NOTADB || rc == SQLITE_CORRUPT ? Condition::damaged : Condition::unreadable;
}

// Its rows may still be worth something to someone.
void keep_aside() {
    db_handle db = get_db_handle();
    db_close(&db);
    std::rename(get_db_path(), (std::string(get_db_path()) + ".damaged").c_str());
    std::remove((std::string(get_db_path()) + "-journal").c_str());
    log_operation("Main Db is broken\n");
    set_db_handle(db_open(get_db_path()));
}

// Loads the record from the open database, or makes the database from the record where it has no version.
int load_database(int attempts) {
    int version = db_get_version(get_db_handle());
    if (version < 0) {
        const Condition condition = condition_of(get_db_handle(), attempts);
        load_pending = condition == Condition::unreadable;
        if (load_pending)
            return -1;
        if (condition == Condition::damaged)
            keep_aside();
        version = db_get_version(get_db_handle());  // a lock may have gone meanwhile
    }
    load_pending = false;
    DB_LOG_AS(kError, "init_database", "db version = %d\n", version);
    load_table(*table_by_number(kEncryptionVersionTable));
    if (version <= 0) {
        DB_LOG_AS(kInfo, "db_getdata_byversion", "try to read param from cfg file to db\n");
        log_operation("Db version is %d,Read from cfg\n", version);
        get_alldata_from_db();
        return rebuild_from_record();
    }
    db_update_old_version(version, get_db_handle());
    DB_LOG_AS(kInfo, "db_getdata_byversion", "Direct read from the database\n");
    return get_alldata_from_db();
}

}  // namespace

int init_database() {
    init_tables_fun();
    set_db_handle(db_open(get_db_path()));
    if (get_db_handle() != nullptr)
        return load_database(kLockAttempts);
    DB_LOG(kError, "the database %s cannot be opened\n", get_db_path());
    return -1;
}

bool was_load_pending() {
    const bool was_pending = load_pending;
    if (was_pending && get_db_handle() != nullptr)
        load_database(1);
    return was_pending;
}
