// Every request kind as data: its name, its arguments, how its save functions run.  The handler walks
// this table; the command line and the tests ask it.
#ifndef MAIN_REQUEST_KINDS_H
#define MAIN_REQUEST_KINDS_H

#include <initializer_list>
#include <span>
#include <string_view>

#include "request.h"

namespace dbshell {

// The request fields that a kind hands on to its functions, in order.
enum class Args : uint8_t { none, table, tables, channel, sensor, channel_scene, smd_channel, scene, name };

// How the functions of a kind run.
enum class Run : uint8_t {
    special,        // a function of the handler's own
    all,            // one transaction; every function runs, a failure rolls all back
    until_failure,  // one transaction; the first failure ends the group and rolls it back
    exclusive,      // as `all`, behind an exclusive begin with retries
    single_table,   // one registry table's set function behind an exclusive begin
};

struct RequestKind {
    RequestKindNumber number;
    std::string_view name;
    Args args = Args::none;
    Run run = Run::special;
    bool validated = false;                             // the group checks its arguments before anything else
    int table = 0;                                      // single_table: the registry number
    std::initializer_list<const char*> functions = {};  // names in the catalogue, in calling order
};

std::span<const RequestKind> request_kinds();

// Null: no such kind.
const RequestKind* find_request_kind(int number);
const RequestKind* find_request_kind(std::string_view name);

// False while a save function that the kind names is not part of the catalogue; such a kind replies -1.
bool is_available(const RequestKind& kind);
bool are_available(std::initializer_list<const char*> functions);

// What EN_SAVE_DOME_BLOCK stores for a name, which is told apart by case.
struct DomeBlock {
    std::string_view name;
    std::initializer_list<const char*> functions;
};
std::span<const DomeBlock> dome_blocks();
// Null: no such block.
const DomeBlock* find_dome_block(std::string_view name);

// The words for an Args, as the command line shows them ("channel scene").
std::string_view args_text(Args args);

}  // namespace dbshell

#endif
