#include "main/dbutil/start.h"

#include <errno.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "main/dbshell/engine.h"
#include "main/dbutil/all_tables.h"
#include "main/dbutil/registry.h"
#include "main/dbutil/store.h"
#include "main/dbutil/versions.h"
#include "main/log.h"
#include "main/state.h"
#include "uni_process/operation_log.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";
constexpr int kLockAttempts = 6;

// Why a database without a readable version has none.
enum class Condition {
    no_version,  // empty, or without the table or its row: made anew from the record
    damaged,     // no database, or a broken one
    unreadable,  // locked, no permission, I/O error: left as it is
};

Condition condition_of(db_handle db) {
    int rc = SQLITE_OK;
    for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
        rc = db_execsql(db, "select count(*) from sqlite_master;");
        if (rc != SQLITE_BUSY && rc != SQLITE_LOCKED)
            break;
        sleep(1);
    }
    if (rc == SQLITE_OK)
        return Condition::no_version;
    DB_LOG_AS(kError, "init_database", "the database %s cannot be read: %s\n", get_db_path(),
              sqlite3_errstr(rc));
    return rc == SQLITE_NOTADB || rc == SQLITE_CORRUPT ? Condition::damaged : Condition::unreadable;
}

}  // namespace

int init_database() {
    init_tables_fun();
    set_db_handle(db_open(get_db_path()));
    if (get_db_handle() == nullptr) {
        DB_LOG(kError, "the database %s cannot be opened\n", get_db_path());
        return -1;
    }
    int version = db_get_version(get_db_handle());
    if (version < 0) {
        const Condition condition = condition_of(get_db_handle());
        if (condition == Condition::unreadable)
            return -1;
        if (condition == Condition::damaged) {
            // Kept aside: its rows may still be worth something to someone.
            const std::string aside = std::string(get_db_path()) + ".damaged";
            db_handle db = get_db_handle();
            db_close(&db);
            std::rename(get_db_path(), aside.c_str());
            std::remove((std::string(get_db_path()) + "-journal").c_str());
            log_operation("Main Db is broken\n");
            set_db_handle(db_open(get_db_path()));
        }
        version = db_get_version(get_db_handle());  // a lock may have gone meanwhile
    }
    DB_LOG(kError, "db version = %d\n", version);
    load_table(*table_by_number(kEncryptionVersionTable));
    if (version <= 0) {
        DB_LOG(kInfo, "try to read param from cfg file to db\n");
        log_operation("Db version is %d,Read from cfg\n", version);
        get_alldata_from_db();
        return rebuild_from_record();
    }
    db_update_old_version(version, get_db_handle());
    DB_LOG(kInfo, "Direct read from the database\n");
    return get_alldata_from_db();
}
