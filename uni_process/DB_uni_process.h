// The link to the main application: capability tests and values, and the video standard it keeps in the
// record.
//
//   const DatabaseLock lock;
//   const DeviceQueries queries;   // for the whole request
//   if (device_has(1, Capability::judicial)) ...
//   int inputs = 0;
//   if (get_hardware_count(kAlarmInputs, &inputs) != 0) ...   // never answered: not known
#ifndef UNI_PROCESS_DB_UNI_PROCESS_H
#define UNI_PROCESS_DB_UNI_PROCESS_H

#include <cstdint>

#include "main_application.h"

struct RequestDescriptor {
    int32_t command = 0;
    const void* data = nullptr;
    int32_t length = 0;
};

struct ReplyDescriptor {
    int32_t flags = 0;
    void* data = nullptr;
    int32_t capacity = 0;
};

// ------------------------------------------------------------------------------------- one question
//
// Asked now, whatever has been answered or timed out before.

// One request to the main application.  0, or -1 when there was no answer within `timeout` milliseconds
// or a descriptor is missing.
[[nodiscard]] int communicaite_to_velmora(RequestDescriptor* request, int command, const void* data,
                                          int length, ReplyDescriptor* reply, void* reply_data, int capacity,
                                          int timeout);

// 1: the capability is present; any other value: it is not.  -1: no answer.
[[nodiscard]] int has_capability(int channel, int group, int id);

// 0 with the value in *result; -1 with *result untouched.
[[nodiscard]] int get_devcapa_data(int channel, int group, int id, int* result);

// ------------------------------------------------------------------------------------- what the device is
//
// What a device has does not change while it runs: every answer is remembered for the life of the process, the
// latest of each question, and stands in when the main application does not answer.  Only for the thread
// that holds g_db_mutexsem.

// The questions of one request, or of start-up.  Among them a time-out is waited for once, after it nothing is
// asked any more; and each count is asked once.  One inside another belongs to the outer; a question outside
// of all has one to itself.
class [[nodiscard]] DeviceQueries {
  public:
    DeviceQueries();
    ~DeviceQueries();
    DeviceQueries(const DeviceQueries&) = delete;
    DeviceQueries& operator=(const DeviceQueries&) = delete;
};

// False also when it was never answered.
[[nodiscard]] bool device_has(int channel, Capability capability);

// How many alarm inputs, alarm outputs or video channels the device has.  0 with the number in *count; -1, with
// *count untouched, when it was never answered.
[[nodiscard]] int get_hardware_count(HardwareItem item, int* count);

// The same of the event sources that the platform registration knows.
[[nodiscard]] int get_event_source_count(int* count);

// Forgets every answer, as a new process has none.
void forget_device();

// ------------------------------------------------------------------------------------- beside it

// The video standard of a channel, counted from 1; only channel 1 exists, any other logs and gives
// channel 1's.
[[nodiscard]] uint8_t get_videostandard(int channel);

// A picture height under the current video standard, from its low 16 bits.
[[nodiscard]] int convert_height_by_standard(int value);

// Converts the record's height under video standard 1 and returns it; under any other changes nothing and
// returns the standard.
int fix_height_by_standard();

// The build information, 182 characters, copied and terminated when the buffer holds more than that;
// otherwise printed.
inline constexpr int kBuildInfoLength = 182;
const char* get_build_info(char* buffer, int size);

#endif
