// The hook is declared by SQLite's header only then.
#define SQLITE_ENABLE_PREUPDATE_HOOK 1
#include "seal.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "files.h"
#include "log.h"
#include "store.h"
#include "unique_fd.h"

#pragma weak sqlite3_preupdate_hook
#pragma weak sqlite3_preupdate_old
#pragma weak sqlite3_preupdate_new
#pragma weak sqlite3_preupdate_count

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

// Beyond these it is cheaper to count all rows.
constexpr int kRowsOneByOne = 256;

struct Changes {
    uint32_t sum = 0;  // of the rows that came, less those that went
    int rows = 0;
    bool uncountable = false;
};
Changes changes;
bool stepping = false;  // what fails then is seen

bool has_hook() {
    return &sqlite3_preupdate_hook != nullptr;
}

using ReadValue = int (*)(sqlite3*, int, sqlite3_value**);

void add_value(RowHash& hash, int column, sqlite3_value* value) {
    // Of a text, too: it is UTF-8, and would be copied for its NUL.
    const auto bytes = [value] {
        const void* const from = sqlite3_value_blob(value);
        const int size = sqlite3_value_bytes(value);
        if (from == nullptr && size > 0)
            changes.uncountable = true;  // there was no memory
        return from == nullptr
                   ? std::string_view("")
                   : std::string_view(static_cast<const char*>(from), static_cast<std::size_t>(size));
    };
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            return hash.integer(column, sqlite3_value_int64(value));
        case SQLITE_FLOAT:
            return hash.real(column, sqlite3_value_double(value));
        case SQLITE_TEXT:
            return hash.text(column, bytes());
        case SQLITE_BLOB:
            return hash.blob(column, bytes());
        default:
            return;
    }
}

uint32_t hash_of(sqlite3* db, uint64_t table, ReadValue read) {
    RowHash hash(table);
    const int columns = sqlite3_preupdate_count(db);
    for (int column = 0; column < columns; ++column) {
        sqlite3_value* value = nullptr;
        if (read(db, column, &value) != SQLITE_OK)
            changes.uncountable = true;
        else
            add_value(hash, column, value);
    }
    return hash.value();
}

// Of the table that the last row was of, mostly: SQLite calls back, so nothing is thrown.
uint64_t seed_of(std::string_view table) {
    static std::array<char, 64> last{};
    static uint64_t seed = RowHash::of_table("");
    if (table == last.data())
        return seed;
    last[table.copy(last.data(), table.size() < last.size() ? table.size() : 0)] = '\0';
    return seed = RowHash::of_table(table);
}

void row_changes(void*, sqlite3* db, int operation, const char*, const char* table, sqlite3_int64,
                 sqlite3_int64) {
    if (changes.uncountable)
        return;
    const uint64_t seed = seed_of(table);
    const uint32_t old = operation == SQLITE_INSERT ? 0 : hash_of(db, seed, sqlite3_preupdate_old);
    const uint32_t now = operation == SQLITE_DELETE ? 0 : hash_of(db, seed, sqlite3_preupdate_new);
    if (operation == SQLITE_UPDATE && old == now)
        return;  // SQLite does not write it either
    changes.sum += now - old;
    changes.uncountable = changes.uncountable || !stepping || ++changes.rows > kRowsOneByOne;
}

// ------------------------------------------------------------------------------------- images

sqlite3_file* file_of(sqlite3* db) {
    sqlite3_file* file = nullptr;
    if (db != nullptr)
        sqlite3_file_control(db, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
    return file != nullptr && file->pMethods != nullptr ? file : nullptr;
}

// The file's first bytes.  SQLITE_IOERR_SHORT_READ: with zeros behind its end.
int read_file(sqlite3* db, std::byte* bytes, int size) {
    sqlite3_file* const file = file_of(db);
    return file == nullptr ? SQLITE_IOERR : file->pMethods->xRead(file, bytes, size, 0);
}

// Nothing where it cannot be read.
void read_image(sqlite3* db, SealedImage& image) {
    sqlite3_file* const file = file_of(db);
    sqlite3_int64 size = 0;
    if (file == nullptr || file->pMethods->xFileSize(file, &size) != SQLITE_OK || size > INT32_MAX)
        return;
    image.bytes = std::make_unique_for_overwrite<std::byte[]>(static_cast<std::size_t>(size));
    if (read_file(db, image.bytes.get(), static_cast<int>(size)) == SQLITE_OK)
        image.size = static_cast<std::size_t>(size);
}

std::optional<FileHeader> header_of_file(sqlite3* db) {
    std::byte bytes[kFileHeaderBytes] = {};
    const int rc = read_file(db, bytes, sizeof bytes);
    if (rc != SQLITE_OK && rc != SQLITE_IOERR_SHORT_READ)
        return {};
    return header_of(bytes);
}

// As the transaction has made it.
std::optional<uint32_t> digest_of_transaction(sqlite3* db) {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> image(
        sqlite3_serialize(db, "main", &size, 0), sqlite3_free);
    if (image == nullptr)
        return {};
    return digest_of({reinterpret_cast<const std::byte*>(image.get()), static_cast<std::size_t>(size)});
}

int store_seal(sqlite3* db, uint32_t digest, uint32_t counter) {
    const std::string sql = "pragma user_version = " + std::to_string(static_cast<int32_t>(digest)) +
                            "; pragma application_id = " + std::to_string(static_cast<int32_t>(counter)) +
                            ";";
    return db_execsql(db, sql.c_str());
}

uint32_t schema_version_of(sqlite3* db) {
    db_cursor cursor;
    if (db_query_open_v2(db, "pragma schema_version;", &cursor) != 0)
        return 0;
    const char* text = db_query_fields_v2(&cursor, "schema_version", 0);
    return text == nullptr ? 0 : static_cast<uint32_t>(std::strtoll(text, nullptr, 10));
}

template <class Stores>
bool in_own_transaction(const char* path, Stores store) {
    const OwnDatabase db(db_open(path));
    return db_settle(db.get()) == 0 && db_execsql(db.get(), "begin immediate;") == 0 &&
           store(db.get()) == 0 && db_execsql(db.get(), "commit;") == 0;
}

}  // namespace

// ------------------------------------------------------------------------------------- what transactions do

void seal_watches(db_handle db) {
    changes = {};
    if (has_hook() && db != nullptr)
        sqlite3_preupdate_hook(db, row_changes, nullptr);
    static bool said = false;
    if (!has_hook() && !std::exchange(said, true))
        DB_LOG(kError, "this SQLite has no pre-update hook: the database gets no seal\n");
}

int seal_step(sqlite3_stmt* statement) {
    stepping = true;
    const int rc = sqlite3_step(statement);
    stepping = false;
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        seal_loses_count();  // what the statement did before is undone
    if (changes.uncountable && has_hook())
        sqlite3_preupdate_hook(sqlite3_db_handle(statement), nullptr,
                               nullptr);  // nothing more needs to be told
    return rc;
}

void seal_loses_count() {
    changes.uncountable = true;
}

int seal_transaction() {
    sqlite3* const db = get_db_handle();
    if (!has_hook() || db == nullptr || sqlite3_txn_state(db, "main") != SQLITE_TXN_WRITE)
        return SQLITE_OK;
    const auto header = header_of_file(db);
    if (!header)
        return SQLITE_IOERR;
    const bool schema_changed = schema_version_of(db) != header->schema_version;
    if (changes.rows == 0 && !changes.uncountable && !schema_changed)
        return SQLITE_OK;
    if (header->is_wal)
        return store_seal(db, 0, 0);  // until a start makes it this system's journal again
    const auto digest = header->is_sealed() && header->is_utf8 && !schema_changed && !changes.uncountable
                            ? header->digest + changes.sum
                            : digest_of_transaction(db);
    return digest ? store_seal(db, *digest, header->counter + 1) : SQLITE_OK;
}

std::optional<uint32_t> change_counter(db_handle db) {
    const auto header = header_of_file(db);
    return header ? std::optional(header->counter) : std::nullopt;
}

bool commit_once_more(db_handle db, uint32_t counter) {
    if (db_execsql(db, "BEGIN immediate;") != 0)
        return false;
    // A journal that was left has been played back by now, and another program's commit has no seal.
    const auto header = header_of_file(db);
    return header && header->counter == counter && header->digest_counter == counter &&
           store_seal(db, header->digest, counter + 1) == 0 && db_execsql(db, "COMMIT;") == 0;
}

// ------------------------------------------------------------------------------------- what files are

SealedImage read_sealed(db_handle db) {
    SealedImage image;
    if (!has_hook() || db_execsql(db, "begin;") != 0)
        return image;
    if (db_execsql(db, "select 1 from sqlite_master limit 1;") == 0)
        read_image(db, image);
    if (db_execsql(db, "rollback;") != 0)
        return {};
    const auto counted = digest_of(image.image());
    image.stored = header_of(image.image()).digest;
    image.counted = counted.value_or(0);
    image.seal = seal_of(image.image(), counted);
    return image;
}

SealedImage read_sealed(const char* path) {
    if (check_file_not_empty(path) != 0)
        return {};
    return read_sealed(OwnDatabase(db_connect(0, path, 0, 0)).get());
}

int seal_anew(db_handle db, std::optional<uint32_t> expected) {
    const auto header = header_of_file(db);
    const auto digest = digest_of_transaction(db);
    if (!header || !digest)
        return SQLITE_IOERR;
    if (expected && *expected != *digest)
        return SQLITE_MISMATCH;
    return store_seal(db, *digest, header->counter + 1);
}

bool seal_file(const char* path) {
    return in_own_transaction(path, [](db_handle db) { return seal_anew(db); });
}

bool take_seal(const char* path, const char* of) {
    std::array<std::byte, kFileHeaderBytes> bytes{};
    const unique_fd file(open(of, O_RDONLY | O_CLOEXEC));
    if (!file || pread(file.get(), bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        return false;
    const FileHeader old = header_of(bytes);
    if (!has_hook() || !old.is_sealed())
        return true;
    return in_own_transaction(path, [&](db_handle db) {
        const auto header = header_of_file(db);
        return header ? store_seal(db, old.digest, header->counter + 1) : SQLITE_IOERR;
    });
}

bool may_be_kept(const char* copy) {
    if (!has_hook())
        return true;
    const Seal seal = read_sealed(copy).seal;
    return seal != Seal::rotten && (seal != Seal::unknown || check_inactive_db_integrity(copy) >= 0);
}
