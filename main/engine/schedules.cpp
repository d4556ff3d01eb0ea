#include "schedules.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "catalogue.h"
#include "engine.h"
#include "messages.h"
#include "state.h"
#include "store.h"
#include "walk.h"

namespace dbshell {

namespace {

// ------------------------------------------------------------------------------------- saving

// The key of a schedule in the order of its form's columns; a channel stands behind what else the key has.
struct ScheduleIndex {
    Index row;
    int channel;
};

// Makes the row when there is none, then stores the schedule in it.  Duplicates are left, and all are stored to.
int save_schedule(const ScheduleForm& form, const void* schedule, int process_type,
                  const ScheduleIndex& index) {
    const Table& t = form.table;
    if (schedule == nullptr || process_type < 1 || process_type > kLastProcessType) {
        log_table(t, t.set, "invalid input param\n");
        return -1;
    }
    const bool by_channel = form.key == ScheduleKey::channel || form.key == ScheduleKey::rule;
    if (by_channel && (index.channel < 0 || index.channel >= channel_count())) {
        std::printf("maxEnchanno: %d\n", maxEnChanNo);
        log_table(t, t.set, "invalid chan_no: %d\n", {.number = index.channel});
        return -1;
    }
    if (get_db_handle() == nullptr) {
        log_table(t, t.set, "get_db_handle error\n");
        return -1;
    }
    const auto* base = static_cast<const std::byte*>(schedule);
    const Status status = store_row(t, t.save[0], base, index.row, t.counts());
    if (status.ok())
        return 0;
    log_store_failure(t, t.save[0], t.set, status, base, index.row, t.counts(),
                      form.quiet ? kNotice : kError);
    return -1;
}

// The key of a table's schedule that lies at an index.
ScheduleIndex key_of(const ScheduleForm& form, const Schedule& s, int process_type, Index at) {
    const int number = at[s.keyed == Schedule::Keyed::by_row ? 1 : 0];
    switch (form.key) {
        case ScheduleKey::rule:
            return {{0, at[1], at[2], at[0]}, at[0]};
        case ScheduleKey::alarm:  // alarms are numbered from 1
            return {{process_type, number + 1}, 0};
        case ScheduleKey::channel:
        case ScheduleKey::nothing:
            break;
    }
    return {{process_type, number}, number};
}

int save_schedule(const void* schedule, int process_type, int key) {
    const ScheduleForm& form = schedule_form(process_type);
    return save_schedule(form, schedule, process_type, {{process_type, key}, key});
}

// ------------------------------------------------------------------------------------- loading

// Reads the current row into the schedule at an offset of the record.
void read_schedule(Rows& rows, const ScheduleForm& form, std::size_t offset) {
    rows.read(form.table, form.table.save[0], record_base() + offset, {});
}

// The row's channel, or empty when it is out of range; a row without one is the first channel's.
std::optional<int> channel_of(const Rows& rows, int64_t& channel) {
    channel = rows.key("chan_no").value_or(1) - 1;
    if (channel < 0 || channel >= channel_count())
        return {};
    return static_cast<int>(channel);
}

// The index of an alarm's row; empty when it is out of range, which is logged.
std::optional<int> alarm_of(const Table& t, const Rows& rows) {
    const int64_t alarm = rows.key("alarm_no").value_or(0) - 1;
    if (alarm >= 0 && alarm < kMaxAlarms)
        return static_cast<int>(alarm);
    log_table(t, t.get, "invalid alarm_no: %d\n", {.number = alarm});
    return {};
}

Status load_features(const Table& t) {
    Rows rows(t, t.load[0], {});
    for (int row = 0; rows.next(); ++row) {
        int64_t wanted = 0;
        const auto channel = channel_of(rows, wanted);
        if (!channel) {
            log_table(t, t.get, "invalid chan_no(%d) for row_no(%k)\n", {.number = wanted, .key = row});
            continue;
        }
        const auto process_type = static_cast<int>(rows.key("process_type").value_or(0));
        const ScheduleForm& form = schedule_form(process_type);
        if (!form.table.get.empty())
            continue;  // it has a loader of its own
        std::optional<int> index = channel;
        for (const ScheduleHome& home : schedule_homes()) {
            if (process_type < home.process_type || process_type >= home.process_type + home.types)
                continue;
            if (form.key == ScheduleKey::alarm && !(index = alarm_of(t, rows)))
                break;
            read_schedule(rows, form,
                          home.offset + static_cast<std::size_t>(*index) * home.stride +
                              static_cast<std::size_t>(process_type - home.process_type) * home.type_stride);
        }
    }
    if (rows.error() == 0)
        return {};
    log_table(t, t.get, t.says.open, {.number = rows.error()});
    return {Cause::other, rows.error()};
}

const ScheduleHome& home_of(int process_type) {
    const auto homes = schedule_homes();
    for (const ScheduleHome& home : homes)
        if (home.process_type == process_type)
            return home;
    return homes[0];
}

// Of all channels in one query, because an older schema does not tell them apart.
Status load_rules(const Table& t) {
    const ScheduleHome& home = home_of(kIntelligentRule);
    const ScheduleForm& form = schedule_form(kIntelligentRule);
    std::vector<int> count(static_cast<std::size_t>(channel_count()));
    Rows rows(t, t.load[0], {});
    while (rows.next()) {
        int64_t wanted = 0;
        const auto channel = channel_of(rows, wanted);
        if (!channel)
            continue;
        ++count[static_cast<std::size_t>(*channel)];
        const int64_t scene = rows.key("scene").value_or(0) - 1;
        const int64_t rule = rows.key("rule").value_or(0) - 1;
        if (scene >= 0 && scene < home.scenes && rule >= 0 && rule < home.rules)
            read_schedule(rows, form,
                          home.offset + static_cast<std::size_t>(*channel) * home.stride +
                              static_cast<std::size_t>(scene) * home.scene_stride +
                              static_cast<std::size_t>(rule) * home.rule_stride);
    }
    if (rows.error() != 0) {
        log_table(t, t.get, t.says.open, {.number = rows.error()});
        return {Cause::query, rows.error()};
    }
    for (const int rows_of_channel : count)
        if (rows_of_channel == 0)
            log_table(t, t.get, t.says.empty);
    return {};
}

// The loader of one process type that has one of its own.
int load_type(int process_type) {
    const Table& t = schedule_form(process_type).table;
    if (!ready(t, t.get).ok())
        return -1;
    Rows rows(t, t.load[0], process_type);
    while (rows.next()) {
        int64_t wanted = 0;
        const auto channel = channel_of(rows, wanted);
        if (!channel) {
            log_table(t, t.get, "invalid chan_no: %d\n", {.number = wanted});
            continue;
        }
        const ScheduleHome& home = home_of(process_type);
        read_schedule(rows, schedule_form(process_type),
                      home.offset + static_cast<std::size_t>(*channel) * home.stride);
    }
    if (rows.error() == 0)
        return 0;
    log_table(t, t.get, t.says.open, {.number = rows.error()});
    return static_cast<int>(Cause::query);
}

// ------------------------------------------------------------------------------------- for a table

// Logs a table's message on its schedule's saver or loader that failed, by default the one's name and " error\n".
bool moved(const Table& t, std::string_view function, std::string_view mover, const char* message,
           int result) {
    if (result == 0)
        return true;
    const std::string common = std::string(mover) + " error\n";
    log_table(t, function, message != nullptr ? message : common.c_str(), {.number = result});
    return false;
}

const StoredInOrder* current_order = nullptr;  // one at a time, under g_db_mutexsem

}  // namespace

StoredInOrder::StoredInOrder(std::vector<const Table*> tables) : tables_(std::move(tables)) {
    current_order = this;
}

StoredInOrder::~StoredInOrder() {
    current_order = nullptr;
}

bool StoredInOrder::leaves_to_another(const Table& table, int process_type) {
    if (current_order == nullptr)
        return false;
    const auto& tables = current_order->tables_;
    const auto here = std::find(tables.begin(), tables.end(), &table);
    return here != tables.end() && std::any_of(here + 1, tables.end(), [&](const Table* later) {
               return std::any_of(later->schedules.begin(), later->schedules.end(),
                                  [&](const Schedule& s) { return s.process_type == process_type; });
           });
}

bool save_schedules_of(const Table& t, Index at, int given, Counts counts, const std::byte* copy) {
    const std::string function = saving_function(t);
    for (const Schedule& s : t.schedules) {
        if (StoredInOrder::leaves_to_another(t, s.process_type))
            continue;
        const SchedulePlaces places = places_of(t, s);
        const ScheduleForm& form = schedule_form(s.process_type);
        const char* message = t.says.save_schedule != nullptr ? t.says.save_schedule : t.says.schedule;
        Counts each(1, 1, 1, 1);
        for (std::size_t level = 0; level < places.stride.size(); ++level)
            if (places.stride[level] != 0)
                each.at[level] = counts.at[level];
        const Status saved = for_each_row(t, at, given, each, [&](Index index) -> Status {
            const int type = s.process_type + (s.keyed == Schedule::Keyed::by_type ? index[1] : 0);
            const int result =
                save_schedule(form, copy + places.offset(index), type, key_of(form, s, type, index));
            return moved(t, function, form.table.set, message, result) ? Status() : Cause::other;
        });
        if (!saved.ok())
            return false;
    }
    return true;
}

bool load_schedules_of(const Table& t) {
    for (const Schedule& s : t.schedules) {
        const std::string_view loader = schedule_form(s.process_type).table.get;
        const bool has_its_own_table = s.keyed == Schedule::Keyed::by_rule;
        if (!loader.empty() && !has_its_own_table &&
            !moved(t, t.get, loader, t.says.schedule, load_type(s.process_type)))
            return false;
    }
    return true;
}

Status load_week_list(const Table& t) {
    return t.week_list == WeekList::features ? load_features(t) : load_rules(t);
}

}  // namespace dbshell

using namespace dbshell;

int db_save_timeseg(const PlainSchedule* schedule, int process_type, int channel) {
    return save_schedule(schedule_form(kVideoLoss), schedule, process_type,
                         {{process_type, channel}, channel});
}

int db_save_alarm_timeseg(const PlainSchedule* schedule, int process_type, int alarm_no) {
    return save_schedule(schedule_form(kAlarmInput), schedule, process_type, {{process_type, alarm_no}, 0});
}

int db_save_vehicle_timeseg(const VehicleSchedule* schedule, int process_type) {
    return save_schedule(schedule_form(kVehicle), schedule, process_type, {process_type, 0});
}

int db_save_record_alarmtime(const RecordSchedule* schedule, int channel) {
    return dbshell::save_schedule(schedule, kRecording, channel);
}

int db_save_timing_capture_timeseg(const WholeDaySchedule* schedule, int channel) {
    return dbshell::save_schedule(schedule, kTimedCapture, channel);
}

int db_save_intelligent_track_schedule(const WholeDaySchedule* schedule) {
    return dbshell::save_schedule(schedule, kIntelligentTracking, 0);
}

int db_save_face_snap_schedule(const PlainSchedule* schedule, int channel) {
    return dbshell::save_schedule(schedule, kFaceSnapshot, channel);
}

int db_save_alarmtime_config(const PlainSchedule* schedule, int scene, int rule, int channel) {
    return save_schedule(schedule_form(kIntelligentRule), schedule, kIntelligentRule,
                         {{0, scene, rule, channel}, channel});
}

int db_get_record_alarmtime() {
    return load_type(kRecording);
}

int db_get_timing_capture_timeseg() {
    return load_type(kTimedCapture);
}

int db_get_intelligent_track_schedule() {
    return load_type(kIntelligentTracking);
}

int db_get_face_snap_schedule() {
    return load_type(kFaceSnapshot);
}
