#include "device_db.h"

#include <sqlite3.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct close_connection {
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
struct finalize_statement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using connection = std::unique_ptr<sqlite3, close_connection>;
using statement = std::unique_ptr<sqlite3_stmt, finalize_statement>;

// A result code.  SQLite reads the file's header.
int open_file(const char* path, int flags, connection& opened) {
    sqlite3* db = nullptr;
    const int result = sqlite3_open_v2(path, &db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    opened.reset(db);
    if (result == SQLITE_OK)
        sqlite3_busy_timeout(db, 0);
    return result;
}

// Prepares the one statement that `sql` consists of.
int prepare(sqlite3* db, const char* sql, statement& prepared) {
    if (db == nullptr || sql == nullptr)
        return SQLITE_MISUSE;
    for (const char* text = sql; *text != '\0';) {
        sqlite3_stmt* next = nullptr;
        const int result = sqlite3_prepare_v2(db, text, -1, &next, &text);
        statement owned(next);
        if (result != SQLITE_OK)
            return result;
        if (owned && prepared)
            return SQLITE_MISUSE;
        if (owned)
            prepared = std::move(owned);
    }
    return prepared ? SQLITE_OK : SQLITE_MISUSE;
}

}  // namespace

// ---- connection

db_handle db_connect(int, const char* path, int, int) {
    if (path == nullptr || *path == '\0')
        return nullptr;
    connection opened;
    const int result = open_file(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, opened);
    return result == SQLITE_OK ? opened.release() : nullptr;
}

void db_disconnect(db_handle db) {
    sqlite3_close_v2(db);
}

int db_execsql(db_handle db, const char* sql) {
    if (db == nullptr || sql == nullptr)
        return SQLITE_MISUSE;
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
}

// ---- query whose rows are held as text

struct db_rows {
    static constexpr size_t kNull = static_cast<size_t>(-1);

    std::vector<std::string> columns;
    std::vector<size_t> values;  // row after row: where the value's text starts in `text`, or kNull
    std::string text;            // the values, each with its NUL

    size_t count() const { return columns.empty() ? 0 : values.size() / columns.size(); }

    const char* value(size_t row, size_t column) const {
        const size_t start = values[row * columns.size() + column];
        return start == kNull ? nullptr : text.data() + start;
    }

    void append(const char* value) {
        values.push_back(value == nullptr ? kNull : text.size());
        if (value != nullptr)
            text.append(value, std::strlen(value) + 1);
    }
};

db_cursor::~db_cursor() {
    db_query_close_v2(this);
}

int db_query_open_v2(db_handle db, const char* sql, db_cursor* cursor) {
    if (cursor == nullptr)
        return SQLITE_MISUSE;
    db_query_close_v2(cursor);
    statement query;
    int result = prepare(db, sql, query);
    if (result != SQLITE_OK)
        return result;

    auto rows = std::make_unique<db_rows>();
    const int width = sqlite3_column_count(query.get());
    for (int column = 0; column < width; ++column) {
        const char* name = sqlite3_column_name(query.get(), column);
        if (name == nullptr)
            return SQLITE_NOMEM;
        rows->columns.emplace_back(name);
    }
    while ((result = sqlite3_step(query.get())) == SQLITE_ROW) {
        for (int column = 0; column < width; ++column) {
            const bool there = sqlite3_column_type(query.get(), column) != SQLITE_NULL;
            const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(query.get(), column));
            if (value == nullptr && there)
                return SQLITE_NOMEM;
            rows->append(value);
        }
    }
    if (result != SQLITE_DONE)
        return result;
    cursor->rows = rows.release();
    return SQLITE_OK;
}

int db_query_rec_count_v2(const db_cursor* cursor) {
    return cursor == nullptr || cursor->rows == nullptr ? 0 : static_cast<int>(cursor->rows->count());
}

const char* db_query_fields_v2(const db_cursor* cursor, const char* column, int row) {
    if (column == nullptr || row < 0 || row >= db_query_rec_count_v2(cursor))
        return nullptr;
    const db_rows& rows = *cursor->rows;
    for (size_t index = 0; index < rows.columns.size(); ++index) {
        if (strcasecmp(rows.columns[index].c_str(), column) == 0)
            return rows.value(static_cast<size_t>(row), index);
    }
    return nullptr;
}

int db_query_table_rows(const db_cursor* cursor) {
    const char* text = db_query_rec_count_v2(cursor) > 0 ? cursor->rows->value(0, 0) : nullptr;
    if (text == nullptr)
        return -1;
    int count = -1;
    const char* const end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, count);
    return error == std::errc() && stop == end && count >= 0 ? count : -1;
}

void db_query_close_v2(db_cursor* cursor) {
    if (cursor == nullptr)
        return;
    delete cursor->rows;
    cursor->rows = nullptr;
}

// ---- probe

struct db_query {
    statement prepared;
};

db_query* db_query_open(db_handle db, const char* sql) {
    auto query = std::make_unique<db_query>();
    if (prepare(db, sql, query->prepared) != SQLITE_OK)
        return nullptr;
    sqlite3_step(query->prepared.get());
    // The reset reports how the step went and ends its read transaction.
    if (sqlite3_reset(query->prepared.get()) != SQLITE_OK)
        return nullptr;
    return query.release();
}

int db_query_close(db_query* query) {
    if (query == nullptr)
        return SQLITE_MISUSE;
    const int result = sqlite3_finalize(query->prepared.release());
    delete query;
    return result;
}

// ---- integrity

namespace {

// What a failed examination says about the database: SQLite's code when it says nothing, else negative.
int verdict(sqlite3* db, int result) {
    switch (result) {
        case SQLITE_IOERR:
            return sqlite3_extended_errcode(db) == SQLITE_IOERR_NOMEM ? SQLITE_NOMEM : kCannotBeRead;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_NOMEM:
        case SQLITE_READONLY:
        case SQLITE_INTERRUPT:
        case SQLITE_CANTOPEN:
            return result;
        default:
            return -1;
    }
}

// What the check found.  A page that it could not get is no damage yet; for most it tells the result code.
int finding(std::string_view text) {
    constexpr std::string_view kCode = "unable to get the page. error code=";
    if (text.find("failed to get page") != std::string_view::npos)
        return kCannotBeRead;
    const auto at = text.find(kCode);
    if (at == std::string_view::npos)
        return -1;
    int code = 0;
    std::from_chars(text.data() + at + kCode.size(), text.data() + text.size(), code);
    if (code == SQLITE_NOMEM || code == SQLITE_IOERR_NOMEM)
        return SQLITE_NOMEM;
    return (code & 0xff) == SQLITE_IOERR ? kCannotBeRead : -1;
}

}  // namespace

int check_active_db_integrity(db_handle db) {
    statement check;
    int result = prepare(db, "PRAGMA integrity_check(1);", check);
    if (result == SQLITE_OK)
        result = sqlite3_step(check.get());
    if (result != SQLITE_ROW)
        return verdict(db, result);
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(check.get(), 0));
    return text == nullptr ? SQLITE_NOMEM : std::strcmp(text, "ok") == 0 ? 0 : finding(text);
}

int check_inactive_db_integrity(const char* path) {
    struct stat status {};
    if (path == nullptr || stat(path, &status) != 0 || !S_ISREG(status.st_mode) || access(path, R_OK) != 0)
        return -1;
    // Only a writer can roll an interrupted transaction back.
    int result = SQLITE_OK;
    for (const int mode : {SQLITE_OPEN_READONLY, SQLITE_OPEN_READWRITE}) {
        connection db;
        result = open_file(path, mode, db);
        result = result == SQLITE_OK ? check_active_db_integrity(db.get()) : verdict(db.get(), result);
        if (result != SQLITE_READONLY)
            break;
    }
    return result;
}
