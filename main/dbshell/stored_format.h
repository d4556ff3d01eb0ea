// What the database holds of the record, as a text: a line for every column of every entry of the catalogue.
// docs/stored-format.txt is this text; a change in it changes what databases in the field are read as.
#ifndef DBSHELL_STORED_FORMAT_H
#define DBSHELL_STORED_FORMAT_H

#include <span>
#include <string>

namespace dbshell {

// Sorted by table, number and the order of the columns in the statements; then the weekly schedules by process type.
std::string stored_format();

// "1-5, 8", or "all" when they are as many as `count`.  Rows in rising order.
std::string row_ranges(std::span<const int> rows, int count);

}  // namespace dbshell

#endif
