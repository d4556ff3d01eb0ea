// The log messages of table functions.
#ifndef ENGINE_MESSAGES_H
#define ENGINE_MESSAGES_H

#include <string>

#include "log.h"
#include "status.h"
#include "table.h"

namespace dbshell {

// What a message's placeholders stand for (Messages, table.h).
struct Told {
    int64_t number = 0, key = 0, outer = 0, row = 0;
    Index at = {};
    std::string statement = {};
};

// Logs one of a table's messages under a function's name, with the line of the table's entry.  Nothing when there is
// no such message.
void log_table(const Table& table, std::string_view function, const char* message, const Told& told = {},
               int level = kError);

// The names under which a table's set and get functions log for their statements.
std::string saving_function(const Table& table);
std::string_view loading_function(const Table& table);

// The result code of a table's function: the cause where the table tells causes apart, otherwise -1; 0 for success.
int result_of(uint8_t codes, Status status);

}  // namespace dbshell

#endif
