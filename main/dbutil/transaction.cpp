#include "transaction.h"

#include <sqlite3.h>
#include <unistd.h>

#include "log.h"
#include "seal.h"
#include "second_try.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

bool spoilt = false;  // the transaction holds what should have been undone
bool begun = false;   // and neither committed nor rolled back by this program

int begin(db_handle db, const char* sql) {
    if (db != nullptr && sqlite3_get_autocommit(db) == 0)
        db_rollback();
    spoilt = false;
    seal_watches(db);
    db_clear_failure();
    const int rc = db_execsql(db, sql);
    begun = rc == 0;
    return rc;
}

int begin_to_store(const char* sql) {
    db_handle db = get_db_handle();
    const int rc = db_settle(db);
    if (rc == 0)
        return begin(db, sql);
    if (db != nullptr)
        DB_LOG_AS(kError, "db_begin", "without the settings of its journal nothing is stored: %s\n",
                  sqlite3_errstr(rc));
    return rc;
}

}  // namespace

int db_begin() {
    const int rc = begin_to_store("BEGIN;");
    if (rc != 0)
        DB_LOG(kError, "BEGIN err\n");
    return rc;
}

int db_begin_to_load() {
    int rc = 0;
    const auto attempt = [&rc] {
        rc = begin(get_db_handle(), "BEGIN;");
        if (rc != 0)
            return true;
        // A BEGIN alone takes no lock.  What cannot be read matters to the table that is loaded, unless it ended the transaction.
        rc = db_execsql(get_db_handle(), "select 1 from sqlite_master limit 1;");
        if (rc == SQLITE_BUSY)
            db_rollback();
        else if (!db_transaction_lost())
            rc = 0;
        return rc == 0 || rc == SQLITE_BUSY;
    };
    if (!at_the_second_try(attempt) || rc != 0)
        DB_LOG_AS(kError, "db_begin", "BEGIN err\n");
    return rc;
}

int db_begin_exclusive() {
    const int rc = begin_to_store("BEGIN exclusive;");
    if (rc != 0)
        DB_LOG(kError, "BEGIN exclusive failed(%d)...\n", rc);
    return rc;
}

int try_db_begin_exclusive() {
    int rc = 0;
    for (int attempt = 0; attempt < 6; ++attempt) {
        rc = db_begin_exclusive();
        if (rc == 0)
            break;
        sleep(1);
    }
    return rc;
}

void db_rollback() {
    begun = false;
    if (db_transaction_lost())
        return;  // SQLite was there first
    if (db_execsql(get_db_handle(), "ROLLBACK;") != 0)
        DB_LOG(kError, "ROLLBACK err\n");
}

int db_commit() {
    db_handle db = get_db_handle();
    int rc = spoilt ? SQLITE_ABORT : seal_transaction();
    const bool writes = db != nullptr && sqlite3_txn_state(db, "main") == SQLITE_TXN_WRITE;
    const auto counter = writes ? change_counter(db) : std::nullopt;
    if (rc == 0)
        rc = db_execsql(db, "COMMIT;");
    // It stands, and only the sync of the journal's end failed: a power cut could undo what cannot be undone any more.
    if (rc != 0 && db_transaction_lost() && counter && commit_once_more(db, *counter + 1))
        rc = 0;
    if (rc == 0) {
        begun = false;
        return 0;
    }
    DB_LOG(kError, "COMMIT err\n");
    db_rollback();
    return rc;
}

bool db_transaction_lost() {
    return get_db_handle() == nullptr || sqlite3_get_autocommit(get_db_handle()) != 0;
}

bool db_transaction_broken() {
    return begun && db_transaction_lost();
}

Savepoint::Savepoint() : open_(db_execsql(get_db_handle(), "savepoint table_function;") == 0) {}

Savepoint::~Savepoint() {
    if (!open_)
        return;
    seal_loses_count();
    if (!db_transaction_lost() &&
        db_execsql(get_db_handle(), "rollback to table_function; release table_function;") != 0)
        spoilt = true;
}

bool Savepoint::keep() {
    const bool kept = open_ && db_execsql(get_db_handle(), "release table_function;") == 0;
    open_ = open_ && !kept;
    return kept;
}
