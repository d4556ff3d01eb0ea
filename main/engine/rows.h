// The rows that a query gives, one after another.
//   for (Rows rows(statement, ...); rows.next();) use(rows.key("idx"));
#ifndef ENGINE_ROWS_H
#define ENGINE_ROWS_H

#include <optional>
#include <vector>

#include "statements.h"
#include "values.h"

namespace dbshell {

class Rows {
  public:
    // Every row of a table.
    explicit Rows(const Table& table);
    // Those of its rows that are the entry's own, of one owner where `given` indexes are given.
    Rows(const Table& table, Index at, int given);
    // What a select statement of the table gives for an index.
    Rows(const Table& table, const Statement& select, Index index);
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    // False after the last row, and after a failure.
    [[nodiscard]] bool next();
    // SQLite's code when the query failed; 0.
    [[nodiscard]] int error() const { return error_; }

    // A column of the current row by its number; -1: there is no such column.  The name outlives this.
    [[nodiscard]] int column(std::string_view name) const;
    [[nodiscard]] bool is_null(int column) const;
    [[nodiscard]] std::string_view text(int column) const;  // until next()
    [[nodiscard]] int64_t number(int column) const;         // as atoll reads its text
    // The column's value against one of the same storage class.
    [[nodiscard]] Values::Match compare(int column, int64_t number) const;
    [[nodiscard]] Values::Match compare(int column, double number) const;
    [[nodiscard]] Values::Match compare(int column, std::string_view wanted) const;
    // Against a literal of an SQL text: a number, or a text in quotes.
    [[nodiscard]] Values::Match compare_literal(int column, std::string_view literal) const;
    // A key column by its name; empty when it is missing or NULL.  A key beyond 32 bits becomes the nearest, which
    // no row has.
    [[nodiscard]] std::optional<int64_t> key(std::string_view name) const;

    // Stores the columns that the table's statement names in the record at `base`; what is missing or NULL is left
    // alone.
    void read(const Table& table, const Statement& statement, std::byte* base, Index index);
    // For a table with `holds`: stores the groups of the current row's lists behind the first `filled` ones, as far as
    // there is room.  How many are filled then.
    [[nodiscard]] int read_groups(const Table& table, std::byte* base, int filled);

  private:
    sqlite3_stmt* statement_ = nullptr;
    mutable int error_ = 0;  // a value that there is no memory for is one
    Values values_;
    mutable std::vector<std::pair<std::string_view, int>>
        known_;  // by the names' addresses: they are the catalogue's
    // The column numbers of each statement that has been read with, in the order of its slots.
    std::vector<std::pair<const Statement*, std::vector<int>>> maps_;

    int find_column(std::string_view name) const;
    const std::vector<int>& map_of(const Statement& statement);
};

}  // namespace dbshell

#endif
