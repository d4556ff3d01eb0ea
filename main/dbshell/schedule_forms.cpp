#include "schedule_forms.h"

#include "vocabulary.h"

namespace dbshell {

namespace {

constexpr ListItem kRecordType[] = {{offsetof(RecordSegment, record_type), Kind::u8}};
constexpr TextCodec kRecordTypes{encode_list, decode_list, kRecordType, kSegments, sizeof(RecordSegment)};
constexpr ListItem kWholeDay[] = {{offsetof(RecordDay, whole_day), Kind::u16}};
constexpr TextCodec kWholeDays{encode_list, decode_list, kWholeDay, 7, sizeof(RecordDay)};
constexpr ListItem kWholeDayType[] = {{offsetof(RecordDay, whole_day_type), Kind::u8}};
constexpr TextCodec kWholeDayTypes{encode_list, decode_list, kWholeDayType, 7, sizeof(RecordDay)};

#define TIMES(segment_type, is_signed) as("begin_end_time", CODED(segment, (kTimes<segment_type, is_signed>)))

constexpr Messages kSays{.write = "update week_config_list error\n",
                         .count = "db_query_row_num error\n",
                         .insert = "SQL error\n",
                         .open = "db_query_open_v2 error: \n",
                         .load_key = "invalid chan_no: %d\n"};

// The forms have the schedule itself for their record.
template <class Schedule>
struct One {
    Schedule schedule;
};
constexpr std::size_t kRootOffset = 0;

#define FORM_KEYS_CHANNEL (outer("process_type", 0), inner("chan_no"))
#define FORM_KEYS_TYPE (outer("process_type", 0))

#define FILL_BY_CHANNEL                                                                                           \
    "insert into  week_config_list (process_type, chan_no, auxiliary_type, whole_day, whole_day_type, alarm_no, " \
    "begin_end_time) values(%d, %d, '', '', '', 0, '');"
#define LOAD_ONE_TYPE SQL("select * from week_config_list where process_type = %d;")

namespace plain {
using Root = One<PlainSchedule>;

constexpr Table kByChannel = FILL_MISSING_BY(
    single_row, schedule, FORM_KEYS_CHANNEL, 0, "", "db_save_timeseg", .fill = SQL(FILL_BY_CHANNEL),
    .save =
        SAVE("update week_config_list set begin_end_time = '%s' where process_type = %d and chan_no = %d;",
             TIMES(PlainSegment, false)));

constexpr Table kByAlarm = FILL_MISSING_BY(
    single_row, schedule, (outer("process_type", 0), inner("alarm_no", 0)), 0, "", "db_save_alarm_timeseg",
    .fill = SQL(
        "insert into  week_config_list (process_type, auxiliary_type, whole_day, whole_day_type, alarm_no, begin_end_time) values(%d, '', '', '', %d, '');"),
    .save =
        SAVE("update week_config_list set begin_end_time = '%s' where process_type = %d and alarm_no = %d;",
             TIMES(PlainSegment, false)));

// One row, whose channel is rewritten: the channel is a value of the update.
constexpr Table kFaceSnapshot = FILL_MISSING_BY(
    single_row, schedule, FORM_KEYS_CHANNEL, 0, "db_get_face_snap_schedule", "db_save_face_snap_schedule",
    .says = {.write = "update face snap week_config_list error:%s\n"},
    .fill = SQL("insert into  week_config_list (process_type,  chan_no, begin_end_time)values(%d, %d, '');"),
    .save = SAVE("update week_config_list set begin_end_time = '%s', chan_no = %d where process_type = %d;",
                 TIMES(PlainSegment, true)),
    .load = LOAD_ONE_TYPE);

constexpr Table kByRule = FILL_MISSING_BY(
    single_row, schedule,
    (always("process_type", kIntelligentRule), inner("scene"), third("rule"), fourth("chan_no")), 0,
    "db_get_alarmtime_config", "db_save_alarmtime_config",
    .says = {.insert = "insert into week_config_list err \n"},
    .fill = SQL("insert into week_config_list(process_type,scene,rule, chan_no) values(%d,%d,%d,%d);"),
    .save = SAVE(
        "update week_config_list set begin_end_time='%s' where process_type=%d and scene=%d and rule=%d and chan_no = %d;",
        TIMES(PlainSegment, true)));
}  // namespace plain

namespace record {
using Root = One<RecordSchedule>;

constexpr Table kByChannel = FILL_MISSING_BY(
    single_row, schedule, FORM_KEYS_CHANNEL, 0, "db_get_record_alarmtime", "db_save_record_alarmtime",
    .fill = SQL(FILL_BY_CHANNEL),
    .save = SAVE(
        "update week_config_list set auxiliary_type = '%s', whole_day = '%s', whole_day_type = '%s', begin_end_time = '%s' where process_type = %d and chan_no = %d;",
        as("auxiliary_type", CODED(segment, kRecordTypes)), as("whole_day", CODED(day, kWholeDays)),
        as("whole_day_type", CODED(day, kWholeDayTypes)), TIMES(RecordSegment, true)),
    .load = LOAD_ONE_TYPE);
}  // namespace record

namespace whole_day {
using Root = One<WholeDaySchedule>;

constexpr Table kTimedCapture = FILL_MISSING_BY(
    single_row, schedule, FORM_KEYS_CHANNEL, 0, "db_get_timing_capture_timeseg",
    "db_save_timing_capture_timeseg",
    .fill = SQL(
        "insert into week_config_list (process_type, chan_no, whole_day, begin_end_time) values(%d, %d, '', '');"),
    .save = SAVE(
        "update week_config_list set whole_day = '%s', begin_end_time = '%s' where process_type = %d and chan_no = %d;",
        COLONS(whole_day), TIMES(PlainSegment, true)),
    .load = LOAD_ONE_TYPE);

constexpr Table kTracking = FILL_MISSING_BY(
    single_row, schedule, FORM_KEYS_TYPE, 0, "db_get_intelligent_track_schedule",
    "db_save_intelligent_track_schedule",
    .fill =
        SQL("insert into  week_config_list (process_type,  whole_day, begin_end_time)values(%d, '', '');"),
    .save =
        SAVE("update week_config_list set whole_day = '%s', begin_end_time = '%s' where process_type = %d;",
             COLONS(whole_day), TIMES(PlainSegment, true)),
    .load = LOAD_ONE_TYPE);
}  // namespace whole_day

namespace vehicle {
using Root = One<VehicleSchedule>;

constexpr Table kByType = FILL_MISSING_BY(
    single_row, schedule, FORM_KEYS_TYPE, 0, "", "db_save_vehicle_timeseg",
    .fill = SQL(
        "insert into  week_config_list (process_type, auxiliary_type, whole_day, whole_day_type, alarm_no, begin_end_time) values(%d, '', '', '', 0, '');"),
    .save = SAVE("update week_config_list set begin_end_time = '%s' where process_type = %d;",
                 TIMES(VehicleSegment, false)));
}  // namespace vehicle

constexpr ScheduleForm kPlain{plain::kByChannel, ScheduleKey::channel};
constexpr ScheduleForm kAlarm{plain::kByAlarm, ScheduleKey::alarm};
constexpr ScheduleForm kRule{plain::kByRule, ScheduleKey::rule};
constexpr ScheduleForm kFaces{plain::kFaceSnapshot, ScheduleKey::channel, false};
constexpr ScheduleForm kRecord{record::kByChannel, ScheduleKey::channel};
constexpr ScheduleForm kCapture{whole_day::kTimedCapture, ScheduleKey::channel};
constexpr ScheduleForm kTracking{whole_day::kTracking, ScheduleKey::nothing};
constexpr ScheduleForm kVehicles{vehicle::kByType, ScheduleKey::nothing};

}  // namespace

const ScheduleForm& schedule_form(int process_type) {
    switch (process_type) {
        case kRecording:
            return kRecord;
        case kAlarmInput:
        case kAlarmOutput:
        case kWirelessAlarm:
            return kAlarm;
        case kIntelligentRule:
            return kRule;
        case kIntelligentTracking:
            return kTracking;
        case kTimedCapture:
            return kCapture;
        case kVehicle:
        case kTrafficVehicle:
            return kVehicles;
        case kFaceSnapshot:
            return kFaces;
        default:
            return kPlain;
    }
}

}  // namespace dbshell
