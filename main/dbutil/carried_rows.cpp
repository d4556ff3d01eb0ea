#include "carried_rows.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "created_table.h"
#include "log.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

struct Finalize {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};
using Prepared = std::unique_ptr<sqlite3_stmt, Finalize>;

Prepared prepare(db_handle db, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr);
    return Prepared(statement);
}

// The statement before failed at what may succeed the next time.
bool may_pass(db_handle db) {
    const int code = sqlite3_errcode(db);
    return code == SQLITE_NOMEM || code == SQLITE_IOERR;
}

// The old table's columns that the new one has, with commas between; empty: none, or no such table.
std::string common_columns(db_handle from, const CarriedRows& rows) {
    const CreatedTable* created = created_table(rows.table);
    const Prepared old = prepare(from, "select * from " + std::string(rows.table));
    std::string columns;
    for (int i = 0; created != nullptr && i < sqlite3_column_count(old.get()); ++i) {
        const CreatedColumn* column = created->column(sqlite3_column_name(old.get(), i));
        if (column != nullptr && column->name != rows.without)
            columns += (columns.empty() ? "" : ", ") + std::string(column->name);
    }
    return columns;
}

}  // namespace

bool carry_rows(db_handle from, db_handle to, const CarriedRows& rows) {
    const std::string columns = common_columns(from, rows), table(rows.table);
    if (columns.empty())
        return !may_pass(from);
    const Prepared old = prepare(
        from, "select " + columns + " from " + table + (rows.where.empty() ? "" : " where " + rows.where));
    const int width = sqlite3_column_count(old.get());
    std::string values = "?";
    for (int i = 1; i < width; ++i)
        values += ", ?";
    const Prepared add = prepare(to, std::string(rows.old_one_wins ? "replace" : "insert or ignore") +
                                         " into " + table + " (" + columns + ") values(" + values + ");");
    if (!add)
        return false;
    int rc = SQLITE_DONE;
    while (old && (rc = sqlite3_step(old.get())) == SQLITE_ROW) {
        bool bound = true;
        for (int i = 0; i < width; ++i)
            bound = sqlite3_bind_value(add.get(), i + 1, sqlite3_column_value(old.get(), i)) == SQLITE_OK &&
                    bound;
        if (!bound || sqlite3_step(add.get()) != SQLITE_DONE || sqlite3_reset(add.get()) != SQLITE_OK)
            return false;
    }
    if (may_pass(from))
        return false;
    if (!old || rc != SQLITE_DONE)
        DB_LOG(kError, "some rows of %s cannot be read: %s\n", table.c_str(), sqlite3_errmsg(from));
    return true;
}
