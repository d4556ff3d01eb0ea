// What the database holds of a table's rows, read in one pass before they are stored: which would not change, and which
// are there.  Where statements find their rows by columns without an index, looking for each alone would cost a scan
// a row.
#ifndef ENGINE_STORED_ROWS_H
#define ENGINE_STORED_ROWS_H

#include <vector>

#include "table.h"

namespace dbshell {

class StoredRows {
  public:
    // Unknown: it has to be asked; the row was not found, or not exactly once, or a value is of another storage class
    // than what would be stored.
    enum class State : uint8_t { unknown, same, different };

    // Compares with the values at `base` the rows at the first `given` indexes.
    StoredRows(const Table& table, Index at, int given, const std::byte* base, Counts counts);

    [[nodiscard]] State state(const Statement& statement, Index row) const;
    // Every row at the first `given` indexes was found.
    [[nodiscard]] bool has_all(Index at, int given) const;

  private:
    const Table& table_;
    const Counts counts_;
    std::vector<uint8_t> found_;  // statement by statement, each row: how often, and its state

    bool is_stored(Index row) const;
    std::size_t place(std::size_t statement, Index row) const;
};

// True when reading the rows at once pays.
bool reads_at_once(const Table& table, int given, Counts counts);

}  // namespace dbshell

#endif
