// Weekly schedules.  Not rows of the catalogue: the savers take the address of any feature's schedule,
// and one pass over the table loads them all.  What differs between the savers are three statements each;
// where a process type's schedule lives in the record is told once, in kHomes.
#include "schedules.h"

#include <cstdio>

#include "catalogue.h"
#include "engine.h"
#include "log.h"
#include "state.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/dbshell.c";

// ------------------------------------------------------------------------------------- text forms
//
constexpr TextCodec kVehicleTimes = schedule_times(sizeof(VehicleSegment), false);
constexpr TextCodec kRecordTimes = schedule_times(sizeof(RecordSegment), true);

constexpr ListItem kRecordType[] = {{offsetof(RecordSegment, record_type), Kind::u8}};
constexpr TextCodec kRecordTypes{encode_list, decode_list, kRecordType, kSegments, sizeof(RecordSegment)};
constexpr ListItem kWholeDay[] = {{offsetof(RecordDay, whole_day), Kind::u16}};
constexpr TextCodec kWholeDays{encode_list, decode_list, kWholeDay, 7, sizeof(RecordDay)};
constexpr ListItem kWholeDayType[] = {{offsetof(RecordDay, whole_day_type), Kind::u8}};
constexpr TextCodec kWholeDayTypes{encode_list, decode_list, kWholeDayType, 7, sizeof(RecordDay)};

#define TIMES(codec) as("begin_end_time", CODED(segment, codec))

// ------------------------------------------------------------------------------------- savers

struct Saver {
    const char* function;
    const Statement& count;
    const Statement& fill;
    const Statement& save;
    const char* fill_failed = "SQL error\n";
    const char* save_failed = "update week_config_list error\n";
};

// The process type is the outer index of every statement, the channel or the alarm the inner one.
namespace by_channel {
using Keys = KeyList<[] { return keys_of(outer("process_type", 0), inner("chan_no")); }>;

#define COUNT_BY_CHANNEL "select count(*) from week_config_list where process_type = %d and chan_no = %d;"
#define FILL_BY_CHANNEL                                                                                 \
    "insert into  week_config_list (process_type, chan_no, auxiliary_type, whole_day, whole_day_type, " \
    "alarm_no, "                                                                                        \
    "begin_end_time) values(%d, %d, '', '', '', 0, '');"

namespace plain {
using Row = PlainSchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_timeseg", ONE(COUNT_BY_CHANNEL), ONE(FILL_BY_CHANNEL),
    ONE("update week_config_list set begin_end_time = '%s' where process_type = %d and chan_no = %d;",
        TIMES(kPlainTimes))};
}  // namespace plain

namespace record {
using Row = RecordSchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_record_alarmtime", ONE(COUNT_BY_CHANNEL), ONE(FILL_BY_CHANNEL),
    ONE("update week_config_list set auxiliary_type = '%s', whole_day = '%s', whole_day_type = '%s', "
        "begin_end_time = "
        "'%s' where process_type = %d and chan_no = %d;",
        as("auxiliary_type", CODED(segment, kRecordTypes)), as("whole_day", CODED(day, kWholeDays)),
        as("whole_day_type", CODED(day, kWholeDayTypes)), TIMES(kRecordTimes))};
}  // namespace record

namespace timed_capture {
using Row = WholeDaySchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{"db_save_timing_capture_timeseg", ONE(COUNT_BY_CHANNEL),
                       ONE("insert into week_config_list (process_type, chan_no, whole_day, begin_end_time) "
                           "values(%d, %d, '', '');"),
                       ONE("update week_config_list set whole_day = '%s', begin_end_time = '%s' where "
                           "process_type = %d and chan_no = %d;",
                           COLONS(whole_day), TIMES(kSignedTimes))};
}  // namespace timed_capture
}  // namespace by_channel

namespace by_alarm {
using Keys = KeyList<[] { return keys_of(outer("process_type", 0), inner("alarm_no", 0)); }>;
using Row = PlainSchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_alarm_timeseg",
    ONE("select count(*) from week_config_list where process_type = %d and alarm_no = %d;"),
    ONE("insert into  week_config_list (process_type, auxiliary_type, whole_day, whole_day_type, alarm_no, "
        "begin_end_time) values(%d, '', '', '', %d, '');"),
    ONE("update week_config_list set begin_end_time = '%s' where process_type = %d and alarm_no = %d;",
        TIMES(kPlainTimes))};
}  // namespace by_alarm

namespace by_type {
using Keys = KeyList<[] { return keys_of(outer("process_type", 0)); }>;

#define COUNT_BY_TYPE "select count(*) from week_config_list where process_type = %d;"

namespace vehicle {
using Row = VehicleSchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_vehicle_timeseg", ONE(COUNT_BY_TYPE),
    ONE("insert into  week_config_list (process_type, auxiliary_type, whole_day, whole_day_type, alarm_no, "
        "begin_end_time) values(%d, '', '', '', 0, '');"),
    ONE("update week_config_list set begin_end_time = '%s' where process_type = %d;", TIMES(kVehicleTimes))};
}  // namespace vehicle

namespace tracking {
using Row = WholeDaySchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_intelligent_track_schedule", ONE(COUNT_BY_TYPE),
    ONE("insert into  week_config_list (process_type,  whole_day, begin_end_time)values(%d, '', '');"),
    ONE("update week_config_list set whole_day = '%s', begin_end_time = '%s' where process_type = %d;",
        COLONS(whole_day), TIMES(kSignedTimes))};
}  // namespace tracking
}  // namespace by_type

// One row, whose channel is rewritten: the channel is a value of the update.
namespace face_snapshot {
using Keys = KeyList<[] { return keys_of(outer("process_type", 0), inner("chan_no")); }>;
using Row = PlainSchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_face_snap_schedule",
    ONE(COUNT_BY_TYPE),
    ONE("insert into  week_config_list (process_type,  chan_no, begin_end_time)values(%d, %d, '');"),
    ONE("update week_config_list set begin_end_time = '%s', chan_no = %d where process_type = %d;",
        TIMES(kSignedTimes)),
    "SQL error\n",
    "update face snap week_config_list error:%s\n"};
}  // namespace face_snapshot

namespace by_rule {
using Keys = KeyList<[] {
    return keys_of(always("process_type", kIntelligentRule), outer("scene"), inner("rule"), third("chan_no"));
}>;
using Row = PlainSchedule;
using Shape = single_row<Row>;
constexpr Saver kSaver{
    "db_save_alarmtime_config",
    ONE("select count(*) from week_config_list where scene=%d and rule=%d and process_type=%d and chan_no = "
        "%d;"),
    ONE("insert into week_config_list(process_type,scene,rule, chan_no) values(%d,%d,%d,%d);"),
    ONE("update week_config_list set begin_end_time='%s' where process_type=%d and scene=%d and rule=%d and "
        "chan_no = "
        "%d;",
        TIMES(kSignedTimes)),
    "insert into week_config_list err \n"};
}  // namespace by_rule

// Makes the row when there is none, then stores the schedule in it.  Duplicates are left, and all are
// stored to.
int save(const Saver& saver, const void* schedule, RowIndex index) {
    const auto* row = static_cast<const std::byte*>(schedule);
    if (get_db_handle() == nullptr) {
        DB_LOG_AS(kError, saver.function, "get_db_handle error\n");
        return -1;
    }
    int64_t rows = 0;
    if (const int rc = count_rows(saver.count, index, rows); rc != 0) {
        DB_LOG_AS(kError, saver.function, "db_query_row_num error\n");
        return -1;
    }
    if (rows <= 0)
        if (const int rc = execute(saver.fill, nullptr, index); rc != 0) {
            log_table(saver.function, saver.fill_failed, rc, {}, kNotice);
            return -1;
        }
    if (const int rc = execute(saver.save, row, index); rc != 0) {
        log_table(saver.function, saver.save_failed, rc, rendered(saver.save, row, index), kNotice);
        return -1;
    }
    return 0;
}

bool valid_type(const Saver& saver, const void* schedule, int process_type) {
    if (schedule != nullptr && process_type >= 1 && process_type <= kLastProcessType)
        return true;
    DB_LOG_AS(kError, saver.function, "invalid input param\n");
    return false;
}

bool valid_channel(const char* function, int64_t channel) {
    if (channel >= 0 && channel < channel_count())
        return true;
    std::printf("maxEnchanno: %d\n", maxEnChanNo);
    log_table(function, "invalid chan_no: %d\n", channel);
    return false;
}

int save_for_channel(const Saver& saver, const void* schedule, int process_type, int channel) {
    if (!valid_type(saver, schedule, process_type) || !valid_channel(saver.function, channel))
        return -1;
    return save(saver, schedule, {process_type, channel});
}

// ------------------------------------------------------------------------------------- homes

enum class Keyed : uint8_t { by_nothing, by_channel, by_alarm, by_smd };

// Where the schedule of a process type lives: one, or one per channel or alarm.
struct Home {
    int process_type;
    Keyed keyed;
    uint32_t offset;
    uint32_t stride;
    const Saver& saver;  // whose fields the row's columns are
};

#define HOME_OF(type, keyed, element, member, saver)                                                        \
    {                                                                                                       \
        type, keyed, offsetof(DEVICECONFIG, element.member), sizeof(std::declval<DEVICECONFIG&>().element), \
            saver                                                                                           \
    }

constexpr auto& kPlain = by_channel::plain::kSaver;
constexpr auto& kOfVehicle = by_type::vehicle::kSaver;

constexpr Home kHomes[] = {
    HOME_OF(kAlarmInput, Keyed::by_alarm, event.alarm_in[0], schedule, kPlain),
    HOME_OF(kAlarmOutput, Keyed::by_alarm, event.alarm_out[0], schedule, kPlain),
    HOME_OF(kMotionAnalysis, Keyed::by_channel, event.video_analysis[0], type1.schedule, kPlain),
    HOME_OF(kHideAnalysis, Keyed::by_nothing, event.video_analysis[0], type2.schedule, kPlain),
    HOME_OF(kWirelessAlarm, Keyed::by_alarm, event.wireless_schedule[0], segment, kPlain),
    HOME_OF(kPirAlarm, Keyed::by_nothing, event.pir_schedule, segment, kPlain),
    HOME_OF(kCallHelp, Keyed::by_nothing, event.callhelp_schedule, segment, kPlain),
    HOME_OF(kVideoLoss, Keyed::by_channel, event.video_loss[0], schedule, kPlain),
    HOME_OF(kAudioDetection, Keyed::by_nothing, event.audio_detect, schedule, kPlain),
    HOME_OF(kFaceDetection, Keyed::by_channel, analytics.face_detection[0], schedule, kPlain),
    HOME_OF(kAudioException, Keyed::by_nothing, analytics.audio_exception, schedule, kPlain),
    HOME_OF(kIntrusion, Keyed::by_channel, analytics.intrusion_detect[0], schedule, kPlain),
    HOME_OF(kLineDetection, Keyed::by_channel, analytics.line_detect[0], schedule, kPlain),
    HOME_OF(kSceneChange, Keyed::by_channel, analytics.scene_change[0], schedule, kPlain),
    HOME_OF(kHeatMap, Keyed::by_nothing, analytics.heatmap, schedule, kPlain),
    HOME_OF(kPassengerCount, Keyed::by_nothing, analytics.passenger, schedule, kPlain),
    HOME_OF(kVehicle, Keyed::by_nothing, analytics.vehicle_detection, schedule, kOfVehicle),
    HOME_OF(kVehicle, Keyed::by_nothing, traffic.vehicle.detect, schedule, kOfVehicle),
    {kFirstSmd, Keyed::by_smd, offsetof(DEVICECONFIG, analytics.smd[0][0].schedule),
     sizeof(AnalyticsSection::smd[0]), kPlain},
    HOME_OF(kTrafficVehicle, Keyed::by_nothing, traffic.traffic.detect, schedule, kOfVehicle),
    HOME_OF(kPeopleDetection, Keyed::by_channel, analytics.people_detection[0], schedule, kPlain),
    HOME_OF(kVandalProof, Keyed::by_nothing, event.vandal_proof[0], schedule, kPlain),
};

int query_failed(std::string_view function, const char* message, const Rows& rows, int result) {
    if (rows.error() == 0)
        return kDone;
    log_table(function, message, rows.error());
    return result;
}

// The index of an alarm's row; empty when it is out of range, which is logged.
std::optional<int> alarm_of(std::string_view function, const Rows& rows) {
    const int64_t alarm = rows.key("alarm_no", 0) - 1;
    if (alarm >= 0 && alarm < kMaxAlarms)
        return static_cast<int>(alarm);
    log_table(function, "invalid alarm_no: %d\n", alarm);
    return {};
}

void read_home(const Table& t, Rows& rows, int process_type, int channel) {
    auto* record = reinterpret_cast<std::byte*>(get_cfg_param());
    for (const Home& home : kHomes) {
        const bool smd = home.keyed == Keyed::by_smd && process_type >= kFirstSmd && process_type <= kLastSmd;
        if (!smd && home.process_type != process_type)
            continue;
        std::size_t offset = home.offset;
        if (home.keyed == Keyed::by_alarm) {
            const auto alarm = alarm_of(t.get, rows);
            if (!alarm)
                return;
            offset += static_cast<std::size_t>(*alarm) * home.stride;
        } else if (home.keyed != Keyed::by_nothing) {
            offset += static_cast<std::size_t>(channel) * home.stride;
            if (smd)
                offset += static_cast<std::size_t>(process_type - kFirstSmd) * sizeof(SmdDetection);
        }
        rows.read(home.saver.save, record + offset, {});
    }
}

// ------------------------------------------------------------------------------------- loaders

namespace one_type {
using Row = PlainSchedule;
using Shape = single_row<Row>;
using Keys = KeyList<[] { return keys_of(outer("process_type", 0)); }>;
constexpr auto& kSelect = ONE("select * from week_config_list where process_type = %d;");
}  // namespace one_type

// Every process type but those that have a loader of their own.
int load_week_list(const Table& t) {
    Rows rows(t.load[0], {});
    for (int row = 0; rows.next(); ++row) {
        const auto process_type = static_cast<int>(rows.key("process_type", 0));
        const int64_t channel = rows.key("chan_no", 1) - 1;
        if (channel < 0 || channel >= channel_count()) {
            DB_LOG_AS(kError, "db_get_week_list", "invalid chan_no(%d) for row_no(%d)\n",
                      static_cast<int>(channel), row);
            continue;
        }
        read_home(t, rows, process_type, static_cast<int>(channel));
    }
    return query_failed(t.get, t.says.open, rows, -1);
}

int load_rule_schedules(const Table& t) {
    for (int channel = 0; channel < channel_count(); ++channel) {
        Rows rows(t.load[0], {.third = channel});
        auto& scenes = get_cfg_param()->analytics.qor_scene[channel];
        while (rows.next()) {
            const int64_t scene = rows.key("scene", 0) - 1;
            const int64_t rule = rows.key("rule", 0) - 1;
            if (scene >= 0 && scene < std::ssize(scenes) && rule >= 0 &&
                rule < std::ssize(scenes[scene].rule))
                rows.read(by_rule::kSaver.save,
                          reinterpret_cast<std::byte*>(&scenes[scene].rule[rule].schedule), {});
        }
        if (rows.error() != 0)
            return query_failed(t.get, t.says.open, rows, kQueryFailed);
    }
    return kDone;
}

// Reads the rows of one process type into the schedules that `home` gives for their channels.
template <class Schedule>
int load_type(const char* function, int process_type, const Saver& saver, Schedule* (*home)(int channel)) {
    if (ready(function) != kDone)
        return -1;
    Rows rows(one_type::kSelect, {process_type});
    while (rows.next()) {
        const int64_t channel = rows.key("chan_no", 1) - 1;
        if (channel < 0 || channel >= channel_count())
            log_table(function, "invalid chan_no: %d\n", channel);
        else
            rows.read(saver.save, reinterpret_cast<std::byte*>(home(static_cast<int>(channel))), {});
    }
    return query_failed(function, "db_query_open_v2 error: \n", rows, kQueryFailed);
}

constexpr Table kTables[] = {
    // The schedules of all features but recording, timed capture, tracking, face snapshot and intelligent
    // rules.
    TABLE_BY(single_row, event, (always("process_type", kLastProcessType + 1)), .number = 9,
             .get = "db_get_week_list", .says = {.open = "db_query_open_v2 error: \n"},
             .load = SQL("select * from week_config_list where process_type < %d;"),
             .load_body = load_week_list),

    // The schedules of the intelligent rules, one per scene, rule and channel.
    TABLE_BY(single_row, analytics, (third("chan_no")), .number = 101, .get = "db_get_alarmtime_config",
             .says = {.open = " db_query_open_v2 err\n"},
             .load = SQL("select * from week_config_list where process_type=12 and chan_no = %d;"),
             .load_body = load_rule_schedules),
};

}  // namespace

const std::span<const Table> kScheduleTables = kTables;

int db_save_timeseg(const PlainSchedule* schedule, int process_type, int channel) {
    return save_for_channel(kPlain, schedule, process_type, channel);
}

int db_save_alarm_timeseg(const PlainSchedule* schedule, int process_type, int alarm_no) {
    return valid_type(by_alarm::kSaver, schedule, process_type)
               ? save(by_alarm::kSaver, schedule, {process_type, alarm_no})
               : -1;
}

int db_save_vehicle_timeseg(const VehicleSchedule* schedule, int process_type) {
    return valid_type(kOfVehicle, schedule, process_type) ? save(kOfVehicle, schedule, {process_type}) : -1;
}

int db_save_record_alarmtime(const RecordSchedule* schedule, int channel) {
    return save_for_channel(by_channel::record::kSaver, schedule, kRecording, channel);
}

int db_save_timing_capture_timeseg(const WholeDaySchedule* schedule, int channel) {
    return save_for_channel(by_channel::timed_capture::kSaver, schedule, kTimedCapture, channel);
}

int db_save_intelligent_track_schedule(const WholeDaySchedule* schedule) {
    return valid_type(by_type::tracking::kSaver, schedule, kIntelligentTracking)
               ? save(by_type::tracking::kSaver, schedule, {kIntelligentTracking})
               : -1;
}

int db_save_face_snap_schedule(const PlainSchedule* schedule, int channel) {
    return save_for_channel(face_snapshot::kSaver, schedule, kFaceSnapshot, channel);
}

int db_save_alarmtime_config(const PlainSchedule* schedule, int scene, int rule, int channel) {
    const Saver& saver = by_rule::kSaver;
    if (!valid_type(saver, schedule, kIntelligentRule) || !valid_channel(saver.function, channel))
        return -1;
    return save(saver, schedule, {scene, rule, channel});
}

int db_get_record_alarmtime() {
    return load_type<RecordSchedule>(__func__, kRecording, by_channel::record::kSaver, [](int channel) {
        return &get_cfg_param()->event.record[channel].schedule;
    });
}

int db_get_timing_capture_timeseg() {
    return load_type<WholeDaySchedule>(
        __func__, kTimedCapture, by_channel::timed_capture::kSaver,
        [](int channel) { return &get_cfg_param()->event.auto_capture[channel].schedule; });
}

int db_get_intelligent_track_schedule() {
    return load_type<WholeDaySchedule>(__func__, kIntelligentTracking, by_type::tracking::kSaver,
                                       [](int) { return &get_cfg_param()->dome.tracking.schedule; });
}

int db_get_face_snap_schedule() {
    return load_type<PlainSchedule>(__func__, kFaceSnapshot, face_snapshot::kSaver, [](int channel) {
        return &get_cfg_param()->analytics.face_snap[channel].schedule;
    });
}
