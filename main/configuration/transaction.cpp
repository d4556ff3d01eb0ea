#include "transaction.h"

#include <sqlite3.h>
#include <unistd.h>

#include "catalogue.h"
#include "engine.h"
#include "log.h"
#include "sec_db_enc.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

}  // namespace

int db_begin() {
    const int rc = db_execsql(get_db_handle(), "BEGIN;");
    if (rc != 0)
        DB_LOG(kError, "BEGIN err\n");
    return rc;
}

bool db_begin_unless_closed() {
    return db_begin() == 0 || get_db_handle() == nullptr;
}

int db_begin_exclusive() {
    const int rc = db_execsql(get_db_handle(), "BEGIN exclusive;");
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

int db_rollback() {
    db_enc_version_undo();
    if (db_transaction_lost())
        return 0;  // SQLite was there first
    const int rc = db_execsql(get_db_handle(), "ROLLBACK;");
    if (rc != 0)
        DB_LOG(kError, "ROLLBACK err\n");
    return rc;
}

int db_commit() {
    int rc = 0;
    if (db_enc_version_pending())
        rc = save_table(*table_by_number(kEncryptionVersionTable));
    if (rc == 0)
        rc = db_execsql(get_db_handle(), "COMMIT;");
    if (rc == 0) {
        db_enc_version_settled();
        return 0;
    }
    DB_LOG(kError, "COMMIT err\n");
    db_rollback();
    return rc;
}

bool db_transaction_lost() {
    return get_db_handle() == nullptr || sqlite3_get_autocommit(get_db_handle()) != 0;
}

Savepoint::Savepoint()
    : open_(db_execsql(get_db_handle(), "savepoint table_function;") == 0),
      version_pending_(db_enc_version_pending()) {}

Savepoint::~Savepoint() {
    if (!open_)
        return;
    if (!version_pending_)
        db_enc_version_undo();
    if (!db_transaction_lost())
        db_execsql(get_db_handle(), "rollback to table_function; release table_function;");
}

void Savepoint::keep() {
    if (open_)
        db_execsql(get_db_handle(), "release table_function;");
    open_ = false;
}
