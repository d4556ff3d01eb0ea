// Weekly schedules: 7 days of 8 segments, kept for all features in the one table week_config_list.
//
// A row is told apart by its process_type and one key.  A feature's set function saves its schedule at
// its end:
//
//   if (db_save_timeseg(&record->schedule, kVideoLoss, channel) != 0) ...
//
// Savers return 0, or -1 with a log message.  They take the schedule's address in the record, and indexes
// counted from 0 unless told otherwise.  Begin and end are stored as the record holds them.
#ifndef DBSHELL_SCHEDULES_H
#define DBSHELL_SCHEDULES_H

#include "device_config.h"
#include "field.h"

// The process types that have a home in the record.
enum ProcessType : int {
    kRecording = 1,
    kAlarmInput = 2,
    kAlarmOutput = 3,
    kMotionAnalysis = 4,
    kHideAnalysis = 5,
    kWirelessAlarm = 6,
    kPirAlarm = 7,
    kCallHelp = 8,
    kVideoLoss = 9,
    kAudioDetection = 10,
    kFaceDetection = 11,
    kIntelligentRule = 12,
    kAudioException = 13,
    kIntrusion = 14,
    kLineDetection = 15,
    kSceneChange = 16,
    kIntelligentTracking = 17,
    kTimedCapture = 18,
    kHeatMap = 19,
    kPassengerCount = 20,
    kVehicle = 21,   // two features share the one row
    kFirstSmd = 22,  // one per SMD type
    kLastSmd = 31,
    kTrafficVehicle = 32,
    kPeopleDetection = 33,
    kFaceSnapshot = 34,
    kVandalProof = 35,
    kLastProcessType = kVandalProof,
};

// The text form of begin_end_time: a colon list of begin and end of every segment, day by day.  Some
// features write the words unsigned, some signed.
inline constexpr int kSegments = 7 * 8;
inline constexpr ListItem kBeginEnd[] = {{0, Kind::u32}, {4, Kind::u32}};

constexpr TextCodec schedule_times(uint16_t segment_size, bool is_signed) {
    return {encode_list, decode_list, kBeginEnd, kSegments, segment_size, ':', is_signed};
}
inline constexpr TextCodec kPlainTimes = schedule_times(sizeof(PlainSegment), false);
inline constexpr TextCodec kSignedTimes = schedule_times(sizeof(PlainSegment), true);

// By process type and channel; by process type and alarm number, which counts from 1; by process type alone.
int db_save_timeseg(const PlainSchedule* schedule, int process_type, int channel);
int db_save_alarm_timeseg(const PlainSchedule* schedule, int process_type, int alarm_no);
int db_save_vehicle_timeseg(const VehicleSchedule* schedule, int process_type);

// The features with a layout or a key of their own.
int db_save_record_alarmtime(const RecordSchedule* schedule, int channel);
int db_save_timing_capture_timeseg(const WholeDaySchedule* schedule, int channel);
int db_save_intelligent_track_schedule(const WholeDaySchedule* schedule);
int db_save_face_snap_schedule(const PlainSchedule* schedule, int channel);
int db_save_alarmtime_config(const PlainSchedule* schedule, int scene, int rule, int channel);

// Called from their features' get functions.  0, or a failure code.
int db_get_record_alarmtime();
int db_get_timing_capture_timeseg();
int db_get_intelligent_track_schedule();
int db_get_face_snap_schedule();

#endif
