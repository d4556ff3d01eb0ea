#include "start.h"

#include <errno.h>
#include <sqlite3.h>
#include <unistd.h>

#include <string>

#include "all_tables.h"
#include "catalogue.h"
#include "engine.h"
#include "files.h"
#include "log.h"
#include "operation_log.h"
#include "registry.h"
#include "sec_db_enc.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
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

// Its rows may still be worth something to someone.  False: it is still in its place.
bool keep_aside() {
    db_handle db = get_db_handle();
    db_close(&db);
    const bool moved = replace_file(get_db_path(), (std::string(get_db_path()) + ".damaged").c_str()) &&
                       remove_journal(get_db_path());
    if (moved)
        log_operation("Main Db is broken\n");
    set_db_handle(db_open(get_db_path()));
    return moved;
}

int store_old_version(int version) {
    if (const int rc = db_begin(); rc != 0)
        return rc;
    if (db_update_old_version(version, get_db_handle()) == 0)
        return db_commit();
    db_rollback();
    return -1;
}

// Loads the record from the open database, or makes the database from the record where it has no version.
int load_database(int attempts) {
    int version = db_get_version(get_db_handle());
    if (version < 0) {
        const Condition condition = condition_of(get_db_handle(), attempts);
        load_pending =
            condition == Condition::unreadable || (condition == Condition::damaged && !keep_aside());
        if (load_pending)
            return -1;
        version = db_get_version(get_db_handle());  // a lock may have gone meanwhile
    }
    load_pending = false;
    DB_LOG_AS(kError, "init_database", "db version = %d\n", version);
    if (dbshell::load_table(dbshell::encryption_word_table()) != 0)
        DB_LOG_AS(kError, "init_database", "the encryption version cannot be loaded\n");
    if (version <= 0) {
        DB_LOG_AS(kInfo, "db_getdata_byversion", "try to read param from cfg file to db\n");
        log_operation("Db version is %d,Read from cfg\n", version);
        const uint32_t default_version = get_db_enc_version();
        static_cast<void>(get_alldata_from_db());  // what is not there keeps its default,
        set_db_enc_version(default_version);       // so does the word that a database without one has
        return rebuild_from_record();
    }
    if (store_old_version(version) != 0)
        DB_LOG_AS(kError, "db_getdata_byversion", "old_version is not stored\n");
    DB_LOG_AS(kInfo, "db_getdata_byversion", "Direct read from the database\n");
    return get_alldata_from_db();
}

int open_and_load() {
    init_tables_fun();
    if (closing_flag) {
        DB_LOG_AS(kInfo, "init_database", "the database was closed before it was opened\n");
        return -1;
    }
    set_db_handle(db_open(get_db_path()));
    if (get_db_handle() != nullptr)
        return load_database(kLockAttempts);
    DB_LOG_AS(kError, "init_database", "the database %s cannot be opened\n", get_db_path());
    return -1;
}

}  // namespace

int init_database() {
    const int result = open_and_load();
    database_started = true;
    return result;
}

bool was_load_pending() {
    const bool was_pending = load_pending;
    if (was_pending && get_db_handle() != nullptr)
        load_database(1);
    return was_pending;
}
