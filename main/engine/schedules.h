// Weekly schedules by their savers' and loaders' names.  A table's set function saves the schedules that its entry
// names; these are for callers that have a schedule elsewhere.
//
//   if (db_save_timeseg(&schedule, kVideoLoss, channel) != 0) ...
//
// Savers return 0, or -1 with a log message.  Indexes count from 0 unless told otherwise.
#ifndef ENGINE_SCHEDULES_H
#define ENGINE_SCHEDULES_H

#include "device_config.h"
#include "process_types.h"

// By process type and channel; by process type and alarm number, which counts from 1; by process type alone.
[[nodiscard]] int db_save_timeseg(const PlainSchedule* schedule, int process_type, int channel);
[[nodiscard]] int db_save_alarm_timeseg(const PlainSchedule* schedule, int process_type, int alarm_no);
[[nodiscard]] int db_save_vehicle_timeseg(const VehicleSchedule* schedule, int process_type);

// The features with a layout or a key of their own.
[[nodiscard]] int db_save_record_alarmtime(const RecordSchedule* schedule, int channel);
[[nodiscard]] int db_save_timing_capture_timeseg(const WholeDaySchedule* schedule, int channel);
[[nodiscard]] int db_save_intelligent_track_schedule(const WholeDaySchedule* schedule);
[[nodiscard]] int db_save_face_snap_schedule(const PlainSchedule* schedule, int channel);
[[nodiscard]] int db_save_alarmtime_config(const PlainSchedule* schedule, int scene, int rule, int channel);

// Load the schedules of one process type into the record.  0, or a failure code.
[[nodiscard]] int db_get_record_alarmtime();
[[nodiscard]] int db_get_timing_capture_timeseg();
[[nodiscard]] int db_get_intelligent_track_schedule();
[[nodiscard]] int db_get_face_snap_schedule();

#endif
