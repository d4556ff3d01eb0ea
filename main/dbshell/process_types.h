// The process types of week_config_list: whose weekly schedule a row holds.  Numbers are stored: never reuse one.
#ifndef DBSHELL_PROCESS_TYPES_H
#define DBSHELL_PROCESS_TYPES_H

namespace dbshell {

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

}  // namespace dbshell

#endif
