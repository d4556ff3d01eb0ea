// The shared record by the names of the database: every value that a table stores, found as "TABLE.FIELD[ROW]",
// read and written as text or JSON.  What there is and where it lies is the catalogue's.
//
//   for (const Cell& cell : find_cells(parse_address("wdr_config_table[1]")))
//       fmt::print("{} = {}\n", address_of(cell), cell_text(*record, cell));
//   set_cell(*record, find_cell(parse_address("wdr_config_table.enable[1]")), "1");
//
// Text values: what is no printable UTF-8 is shown as \xNN and a backslash as \\, and both are understood in
// what is set, so that every value can be set as it is shown.
#ifndef TOOLS_RECORD_ACCESS_H
#define TOOLS_RECORD_ACCESS_H

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "device_config.h"
#include "record_cells.h"

using Json = nlohmann::ordered_json;

// A name or a value that does not fit; what() is a sentence for the user.
class AccessError : public std::runtime_error {
  public:
    enum class Reason { syntax, unknown_name, bad_row, bad_value };
    AccessError(Reason reason, const std::string& sentence) : std::runtime_error(sentence), reason_(reason) {}
    Reason reason() const { return reason_; }

  private:
    Reason reason_;
};

// "TABLE", "TABLE.FIELD", "TABLE[ROW]", "TABLE.FIELD[ROW]".  Where a row has several indexes, as a channel's list,
// they stand between commas, and the first may be left out: [ROW] means channel 1.  All count from 1.
struct Address {
    std::string table;         // an SQL table, a number in the registry, or a function of the catalogue
    std::string field;         // empty: every field
    std::vector<int> indexes;  // from 1; empty: every row
};
Address parse_address(std::string_view text);  // throws AccessError

using dbshell::Cell;
using dbshell::Table;

// Every entry of the catalogue that the name means, at least one.  Throws AccessError.
std::vector<const Table*> tables_named(std::string_view name);

// What an address covers, in the catalogue's order, at least one.  Throws AccessError.
std::vector<Cell> find_cells(const Address& address);
// The same when it must be one value.
Cell find_cell(const Address& address);

// The shortest address of a cell that parse_address() and find_cell() lead back to it.
std::string address_of(const Cell& cell);
// How the table is called in it: the SQL name, or a function's where several entries share one.
std::string table_label(const Table& table);

// A number, a text, or the array of the numbers that a list holds.
Json cell_json(const DEVICECONFIG& record, const Cell& cell);
// The same as one line.
std::string cell_text(const DEVICECONFIG& record, const Cell& cell);

// A number in decimal or 0x..., a text, or a list of numbers between commas or blanks, exactly as many as the
// field holds.  Throws AccessError and changes nothing when the value does not fit.
void set_cell(DEVICECONFIG& record, const Cell& cell, std::string_view value);
// null changes nothing.
void set_cell_json(DEVICECONFIG& record, const Cell& cell, const Json& value);

// A table as defaults files have it: an object of fields, an array of them for a list, arrays of arrays where rows
// have several indexes.  Secrets are null unless they are to be shown.
Json table_json(const DEVICECONFIG& record, const Table& table, bool show_secrets);

// {"TABLE": {"FIELD": value, ...}, "LIST_TABLE": [{...}, ...], ...}.  Throws AccessError; then the record holds
// what came before the fault.
void fill_from_json(DEVICECONFIG& record, const Json& tables);

// Every value of every table at random, the same for the same seed: numbers over their whole range, texts of any
// length up to a full array without its end, of any byte but NUL.  The encryption version word becomes 0 and the
// first secure user the administrator; bytes that no table stores stay as they are.
void fill_random(DEVICECONFIG& record, uint64_t seed);

// A text with what is no printable UTF-8 as \xNN.
std::string escaped(std::string_view bytes);

#endif
