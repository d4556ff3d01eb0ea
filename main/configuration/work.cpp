#include "work.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>

#include "all_tables.h"
#include "engine.h"
#include "log.h"
#include "rows.h"
#include "store.h"
#include "transaction.h"
#include "versions.h"

namespace {

using namespace dbshell;

constexpr const char* kSourceFile = "main/dbutil.c";

bool is_closed() {
    return get_db_handle() == nullptr;
}

bool holds_version(const Table& table) {
    return table.encryption_word;
}

bool any_of(TableSpan tables, bool (*is)(const Table&)) {
    return std::any_of(tables.begin(), tables.end(), [&](const Table* t) { return is(*t); });
}

// The word that the database's texts are encrypted under, where it holds one; empty when it cannot be told now.
struct StoredVersion {
    bool there;
    uint32_t version;
};
std::optional<StoredVersion> stored_version() {
    static constexpr char kQuery[] = "select db_enc_version from sec_lock_auth_db_info;";
    sqlite3_stmt* s = nullptr;
    int rc = db_prepare(
        {kQuery}, [] { return std::string(kQuery); }, &s);
    StoredVersion stored{false, 0};
    if (rc == SQLITE_OK) {
        rc = sqlite3_step(s);
        if (rc == SQLITE_ROW && sqlite3_column_type(s, 0) == SQLITE_INTEGER)
            stored = {true, static_cast<uint32_t>(sqlite3_column_int64(s, 0))};
        sqlite3_reset(s);
    }
    const bool absent = rc == SQLITE_ERROR;  // no such table or column
    if (rc == SQLITE_ROW || rc == SQLITE_DONE || absent)
        return stored;
    DB_LOG_AS(kError, "db_begin", "the encryption version cannot be read: %s\n", sqlite3_errstr(rc));
    return {};
}

// The encryption came with this schema version.
bool predates_encryption() {
    const int version = db_get_version(get_db_handle());
    return version > 0 && major_of(version) < kEncryptedMajor;
}

// The database holds a text that was encrypted.
bool holds_encrypted_text() {
    for (const Table* t : all_tables()) {
        if (!has_encrypted_columns(*t))
            continue;
        for (Rows rows(*t); rows.next();)
            for (const Statement& s : t->save)
                for (const Field& f : s.fields)
                    if (const int column = rows.column(f.name);
                        f.encrypted != 0 && !rows.is_null(column) && is_stored_form(rows.text(column)))
                        return true;
    }
    return false;
}

}  // namespace

Work::~Work() {
    if (!open_)
        return;
    if (version_)
        version_->undo_creation();
    db_rollback();
}

bool Work::begin(TableSpan stores) {
    open_ = db_begin() == 0;
    return open_ ? settle(stores) : is_closed();
}

bool Work::begin_exclusive(TableSpan stores) {
    open_ = try_db_begin_exclusive() == 0;
    return open_ && settle(stores);
}

bool Work::begin_to_load() {
    open_ = db_begin_to_load() == 0;
    return open_ ? settle({}) : is_closed();
}

bool Work::begin_anew(TableSpan stores) {
    open_ = db_begin() == 0;
    const auto stored = open_ ? stored_version() : std::nullopt;
    if (!stored)
        return false;
    stores_version_ = any_of(stores, holds_version);
    const uint32_t recorded = get_db_enc_version();
    version_.emplace(recorded != 0 ? recorded : stored->version);
    set_db_enc_version(version_->version());
    return true;
}

// A failed read may have ended the transaction: what is stored then would not be undone.
bool Work::settle(TableSpan stores) {
    return settle_version(stores) && !db_transaction_lost();
}

bool Work::settle_version(TableSpan stores) {
    stores_version_ = any_of(stores, holds_version);
    const auto stored = stored_version();
    if (!stored) {
        const bool needed = stores_version_ || any_of(stores, has_encrypted_columns);
        failed_table_ = needed ? encryption_word_table().number : 0;
        return !needed;
    }
    if (stored->version == 0 && predates_encryption()) {
        has_version_ = stored->there;
        version_.emplace(0, true);
        set_db_enc_version(0);
        return true;
    }
    const uint32_t recorded = get_db_enc_version();
    has_version_ = stored->there;
    uint32_t kept = has_version_ ? stored->version : recorded;
    if (!has_version_ && recorded == 0 && holds_encrypted_text()) {
        kept = kDefaultVersion;
        DB_LOG_AS(kWarning, "db_begin", "no db_enc_version is left for the encrypted texts: taken as %u\n",
                  kept);
    }
    if (stores_version_ && recorded != 0 && (recorded != kept || !has_version_))
        return renew_texts(kept, recorded);
    version_.emplace(kept);
    if (recorded == kept)
        return true;
    if (recorded != 0)
        DB_LOG_AS(kWarning, "db_begin",
                  "db_enc_version %u of the record is not the database's: it is %u again\n", recorded, kept);
    set_db_enc_version(kept);
    return true;
}

bool Work::renew_texts(uint32_t stored, uint32_t recorded) {
    const auto failed = [&](int (*move)(const Table&), const Table& t) {
        failed_table_ = move(t) == 0 ? 0 : t.number;
        return failed_table_ != 0;
    };
    // Where the device does not keep a table's part of the record, its rows are worth more than that.
    version_.emplace(stored);
    for (const Table* t : all_tables())
        if (has_encrypted_columns(*t) && is_passed_over(t->number) && failed(load_table, *t))
            return false;
    version_.emplace(recorded);
    for (const Table* t : all_tables())
        if ((has_encrypted_columns(*t) || holds_version(*t)) && failed(save_table, *t))
            return false;
    return true;
}

int Work::load(const TableEntry& entry) {
    const Table* table = table_by_number(entry.table_id);
    if (open_ && !version_ && table != nullptr && has_encrypted_columns(*table))
        return -1;
    return entry.get(tables_fun, kLoadFlag, entry.table_id);
}

int Work::store_apart(const TableEntry& entry) {
    if (!open_)
        return entry.set(tables_fun, kSaveFlag, entry.table_id);
    const bool created = version_ && version_->created();
    Savepoint savepoint;
    if (!savepoint.is_open())
        return -1;
    const int result = entry.set(tables_fun, kSaveFlag, entry.table_id);
    if (result == 0 && savepoint.keep())
        return 0;
    if (version_ && !created)
        version_->undo_creation();
    return result != 0 ? result : -1;
}

// Texts were encrypted under a word that the database does not hold yet.
bool Work::brings_version() const {
    return version_->created() || (!has_version_ && version_->used() && version_->version() != 0);
}

// The row of the word may have been stored with what another process has written into the record since.
bool Work::store_version() {
    if (brings_version() && save_table(encryption_word_table()) != 0)
        return false;
    const auto stored = stored_version();
    if (!stored)
        return false;
    if (stored->there && stored->version == version_->version())
        return true;
    const std::string update =
        "update sec_lock_auth_db_info set db_enc_version = " + std::to_string(version_->version()) + ";";
    return db_execsql(get_db_handle(), update.c_str()) == 0;
}

void Work::start_encryption() {
    if (version_)
        version_->encrypt();
}

bool Work::commit() {
    if (version_ && !stores_clear() && (stores_version_ || brings_version()) && !store_version()) {
        DB_LOG_AS(kError, "db_commit", "COMMIT err\n");
        return false;
    }
    const bool committed = db_commit() == 0;
    if (!committed && version_)
        version_->undo_creation();
    open_ = false;
    return committed;
}
