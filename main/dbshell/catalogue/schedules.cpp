// The loaders of week_config_list: the schedules of many features in one pass.  Where each feature's schedule lies is
// told with its table, how it is stored in schedule_forms.cpp.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

constexpr Table kTables[] = {
    // The schedules of all features but recording, timed capture, tracking, face snapshot and intelligent rules.
    READ_ONLY_BY(single_row, event, (always("process_type", kLastProcessType + 1)), 9, "db_get_week_list",
                 .says = {.open = "db_query_open_v2 error: \n"},
                 .load = SQL("select * from week_config_list where process_type < %d;"),
                 .week_list = WeekList::features,
                 .unstored = UNSTORED(Unstored{"idx", "the database's own number of the row"})),

    // The schedules of the intelligent rules, one per scene, rule and channel.
    READ_ONLY_BY(single_row, analytics, (always("process_type", kIntelligentRule)), 101, "db_get_alarmtime_config",
                 .says = {.open = " db_query_open_v2 err\n", .empty = " db_query_rec_count_v2 err\n"},
                 .load = SQL("select * from week_config_list where process_type=%d;"), .week_list = WeekList::rules),
};

constexpr std::span<const Table> kGroups[] = {kTables};

}  // namespace

const Domain kScheduleTables = kGroups;

}  // namespace dbshell
