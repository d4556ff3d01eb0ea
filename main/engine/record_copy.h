// The private copy of the record from which a save decides and stores.  The main application writes the record at
// any time; a save takes its table's part once, so that all it decides and stores is of one moment.
#ifndef ENGINE_RECORD_COPY_H
#define ENGINE_RECORD_COPY_H

#include "table.h"

namespace dbshell {

// Copies the table's part of the record, its schedules' too.  What is given back has the layout of the record;
// only that part holds anything.  Valid until the next table is taken.  The record must be attached.
std::byte* take_from_record(const Table& table);

// The same place, for a row that comes from elsewhere than the record.
std::byte* record_shaped_buffer();

// Sets bytes that a save decides on: in the record, and in the copy that was taken of it.
void set_in_both(std::byte* taken, std::size_t offset, const void* bytes, std::size_t size);

}  // namespace dbshell

#endif
