// Rows that move from an old database to the new one that will take its place, past the record.
//
//   if (!carry_rows(old, fresh, {.table = "vm_trigger_chain_param"}))
//       return -1;
#ifndef DBUTIL_CARRIED_ROWS_H
#define DBUTIL_CARRIED_ROWS_H

#include <string>
#include <string_view>

#include "device_db.h"

struct CarriedRows {
    std::string_view table;         // of the create list
    bool old_one_wins = true;       // where the new database holds a row of the same key
    std::string where = {};         // a condition on the old rows
    std::string_view without = {};  // a column that the new database fills by itself
};

// Copies the columns that both databases have, row by row.  What the old one cannot give (no such table, a damaged
// page) is passed over; false when the new one could not take a row.
[[nodiscard]] bool carry_rows(db_handle from, db_handle to, const CarriedRows& rows);

#endif
