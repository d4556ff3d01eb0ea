// The link to the main application: capability tests and values, and the video standard it keeps in the
// record.
#ifndef UNI_PROCESS_DB_UNI_PROCESS_H
#define UNI_PROCESS_DB_UNI_PROCESS_H

#include <cstdint>

inline constexpr int kCapabilityTest = 0x1001E;       // request {int32 group, int32 id}
inline constexpr int kCapabilityValue = 0x10026;      // request {int32 channel, group, id, 0}
inline constexpr int kMainApplicationTimeout = 5000;  // milliseconds

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

// One request to the main application.  0, or -1 when there was no answer within `timeout` milliseconds
// or a descriptor is missing.
int communicaite_to_velmora(RequestDescriptor* request, int command, const void* data, int length,
                            ReplyDescriptor* reply, void* reply_data, int capacity, int timeout);

// 1: the capability is present; any other value: it is not.  -1: no answer.
int has_capability(int channel, int group, int id);

// 0 with the value in *result; -1 with *result untouched.
int get_devcapa_data(int channel, int group, int id, int* result);

// The capability tests of one operation on the whole configuration.  Once a test has timed out, the rest
// count as absent without being asked.
class CapabilityQuery {
  public:
    CapabilityQuery();
    ~CapabilityQuery();
    CapabilityQuery(const CapabilityQuery&) = delete;
    CapabilityQuery& operator=(const CapabilityQuery&) = delete;

    bool has(int channel, int id);

    // True within an operation one of whose tests got no answer.
    static bool unanswered();

  private:
    bool unanswered_ = false;
    bool timed_out_ = false;
};

// How many alarm inputs or outputs the device has.  0 with the number in *count, -1 when there was no
// answer.  Within an operation whose capability tests got no answer it has none, and is not asked again.
enum HardwareItem : int { kAlarmInputs = 514, kAlarmOutputs = 515 };
int get_hardware_count(HardwareItem item, int* count);

// The video standard of a channel, counted from 1; only channel 1 exists, any other logs and gives
// channel 1's.
uint8_t get_videostandard(int channel);

// A picture height under the current video standard, from its low 16 bits.
int convert_height_by_standard(int value);

// Converts the record's height under video standard 1 and returns it; under any other changes nothing and
// returns the standard.
int fix_height_by_standard();

// The build information, 182 characters, copied and terminated when the buffer holds more than that;
// otherwise printed.
inline constexpr int kBuildInfoLength = 182;
const char* get_build_info(char* buffer, int size);

#endif
