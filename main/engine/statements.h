// The catalogue's statements as SQLite runs them: the texts made from them, prepared once per connection.
#ifndef ENGINE_STATEMENTS_H
#define ENGINE_STATEMENTS_H

#include "table.h"

struct sqlite3_stmt;

namespace dbshell {

// What a prepared statement made from a catalogue's statement does.
enum class Purpose : uint8_t {
    run,            // the statement itself, every conversion a parameter; an insert leaves a row of its key
    take_place,     // an insert that takes the place of that row
    ask,            // the same parameters: the rows that an update is for, each with whether it would change;
                    //   a row where a replace would change nothing
    ask_rows,       // the same parameters: how many rows an update is for
    select_all,     // every row of the statement's table
    select_own,     // those that are the entry's own
    select_owners,  // those of them that are one owner's
    count,          // the rows that are counted and made together
    remove,         // deletes those
    exists,         // whether there is such a table, by its name
};

// The rows of a table that a purpose is for are told by this key column, among others.
bool is_scope(const Table& table, const KeyColumn& key, Purpose purpose);

// `scoped`: the table, for the purposes that are for some of its rows.
// Prepared for the open connection, which owns it; null with SQLite's code, which is logged.
sqlite3_stmt* prepared(const Statement& statement, Purpose purpose, int& code, const Table* scoped = nullptr);

// The SQL text that is prepared.  The parameters of a scope are the table's scope columns in their order.
std::string executable(const Statement& statement, Purpose purpose, const Table* scoped = nullptr);

}  // namespace dbshell

#endif
