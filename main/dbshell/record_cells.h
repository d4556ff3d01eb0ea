// The cells of the shared record: every value that a table stores, by table, row and field.  What there is and where
// it lies is the catalogue's; this walks it.
//
//   for (const Index& row : rows_of(table))
//       for (const Cell& cell : cells_of_row(table, row)) ...
#ifndef DBSHELL_RECORD_CELLS_H
#define DBSHELL_RECORD_CELLS_H

#include <vector>

#include "table.h"

namespace dbshell {

// One value of the record.
struct Cell {
    const Table* table;
    const Field* field;
    Index index;
    uint32_t offset;  // from the record's start; field->size bytes
};

// The levels by which a row of the table is named, from the owner down: those that count something.  None: the table
// is one row.
std::vector<int> naming_levels(const Table& table);

// Every row of the table in the order of their indexes.
std::vector<Index> rows_of(const Table& table);

// All values of a row; none when nothing is stored for it.
std::vector<Cell> cells_of_row(const Table& table, Index index);
std::vector<Cell> cells_of_table(const Table& table);

}  // namespace dbshell

#endif
