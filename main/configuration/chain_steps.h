// The steps of the patch chain as data: the history of the schema.
//
// Lists are words with blanks between.  A table is made by its statement of the create list, a column gets its type
// from there.  A save is a set function's name.
#ifndef CONFIGURATION_CHAIN_STEPS_H
#define CONFIGURATION_CHAIN_STEPS_H

#include <span>
#include <string_view>

class Work;

struct Changes {
    std::string_view creates = {};
    std::string_view adds = {};  // columns, "table: column column; table: column"
};

// A statement of a step's own, and what is logged when it fails.
struct StepStatement {
    const char* sql = nullptr;
    const char* failed = nullptr;
};

// In this order.
struct ChainStep {
    int from, to;
    int also_from = 0;
    bool says_its_version = false;  // in messages of do_parampatch
    std::string_view drops = {};    // if they are there
    Changes changes = {};
    const Changes* repeats[3] = {};  // of other steps
    StepStatement statements[2] = {};
    std::string_view remakes_if_there = {};  // dropped and made again
    std::string_view remakes = {};           // the same; they must be there
    std::string_view loads = {};             // get functions
    bool (*also)(Work&) = nullptr;           // what no list tells
    std::string_view saves = {};
    // Logged when a part fails.  "%s": the step's name.
    const char* creates_failed = nullptr;  // as changes_failed
    const char* changes_failed = "alter db error\n";
    const char* save_failed = "save data to db error\n";
};

std::span<const ChainStep> chain_steps();

#endif
