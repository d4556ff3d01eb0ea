// The values of one statement's parameters, on their way between the record and SQLite.
#ifndef ENGINE_VALUES_H
#define ENGINE_VALUES_H

#include <string>
#include <vector>

#include "table.h"

struct sqlite3_stmt;

namespace dbshell {

// The values of a statement's parameters, each read once.  One object serves row after row.
class Rows;

class Values {
  public:
    // How a stored value answers one that would be stored.  Unsure: it is of another storage class; SQLite may convert.
    enum class Match : uint8_t { same, different, unsure };

    // `base` is the record, or a copy of it, that the table's offsets count from; counts are those of this save.
    void read(const Table& table, const Statement& statement, const std::byte* base, Index index,
              Counts counts);
    // The values must live, and not be read anew, until the statement is reset.  SQLite's code.
    [[nodiscard]] int bind(sqlite3_stmt* s) const;
    // One parameter's value, counted from 0, against a column of the current row.
    [[nodiscard]] Match compare(std::size_t parameter, const Rows& rows, int column) const;

  private:
    struct Value {
        bool is_text = false;
        bool is_real = false;
        int64_t number = 0;
        double real = 0;
        std::size_t at = 0, size = 0;  // in texts_
    };
    std::vector<Value> values_;
    std::string texts_;
};

// The statement's text with the values, as a log shows it; secrets are masked.
std::string rendered(const Table& table, const Statement& statement, const std::byte* base, Index index,
                     Counts counts);

// Stores a column's text in the field at `at`.
void load_text(const Field& field, std::string_view text, std::byte* at);

}  // namespace dbshell

#endif
