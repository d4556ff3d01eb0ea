// How weekly schedules are kept: 7 days of 8 segments, for all features in the one table week_config_list.
//
// A row is told apart by its process_type and a key.  The process type alone tells the form: which columns hold
// what, and how its row is found.  Begin and end are stored as the record holds them.
#ifndef DBSHELL_SCHEDULE_FORMS_H
#define DBSHELL_SCHEDULE_FORMS_H

#include <span>

#include "process_types.h"
#include "table.h"

namespace dbshell {

// The text form of begin_end_time: a colon list of begin and end of every segment, day by day.  Some features write
// the words unsigned, some signed.
inline constexpr int kSegments = 7 * 8;
inline constexpr ListItem kBeginEnd[] = {{0, Kind::u32}, {4, Kind::u32}};
template <class Segment, bool Signed>
inline constexpr TextCodec kTimes{encode_list,     decode_list, kBeginEnd, kSegments,
                                  sizeof(Segment), ':',         Signed};

// What tells the rows of one process type apart.
enum class ScheduleKey : uint8_t { channel, alarm, nothing, rule };

struct ScheduleForm {
    // Stores one schedule, whose first byte is the base of the fields; its set function is the saver's name, its get
    // function the loader's, empty where db_get_week_list loads it.  The index is the process type and then the key:
    // the channel from 0, the alarm number from 1, or scene, rule and channel from 0.
    const Table& table;
    ScheduleKey key;
    bool quiet = true;  // a failed statement is a notice, not an error
};

// The form of a process type from 1 to 35.
const ScheduleForm& schedule_form(int process_type);

// Where the schedules of a process type lie in the record: one, or one per channel, alarm, or scene and rule of a
// channel.
struct ScheduleHome {
    int process_type;
    int types = 1;  // so many process types from that one on, `type_stride` bytes from one to the next
    uint32_t type_stride = 0;
    uint32_t offset;      // bytes from the record's start
    uint32_t stride = 0;  // from one channel or alarm to the next; 0: one for all
    uint32_t scene_stride = 0, rule_stride = 0;
    int scenes = 1, rules = 1;
};

}  // namespace dbshell

#endif
