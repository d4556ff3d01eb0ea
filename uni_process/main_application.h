// What the main application, IPC service kMainApplication, can be asked: the commands with their requests, the
// groups and the items.  The answer is an int32, little-endian, in the first four bytes of the reply.
#ifndef UNI_PROCESS_MAIN_APPLICATION_H
#define UNI_PROCESS_MAIN_APPLICATION_H

#include <cstdint>

inline constexpr int kCapabilityTest = 0x1001E;   // CapabilityTestRequest; 1: present, any other: absent
inline constexpr int kCapabilityValue = 0x10026;  // CapabilityValueRequest; the value

inline constexpr int kMainApplicationTimeout = 5000;  // milliseconds

struct CapabilityTestRequest {
    int32_t group, id;
};

struct CapabilityValueRequest {
    int32_t channel, group, id, reserved;  // the channel from 1
};

static_assert(sizeof(CapabilityTestRequest) == 8 && sizeof(CapabilityValueRequest) == 16);

// What there is of something.  Asked of channel 1, for the whole device.
inline constexpr int32_t kHardwareGroup = 4096;
enum HardwareItem : int32_t { kAlarmInputs = 514, kAlarmOutputs = 515, kVideoChannels = 526 };

// What the platform registration counts.
inline constexpr int32_t kRegistrationGroup = 4100;
inline constexpr int32_t kEventSources = 257;

// What the device can do.  What the numbered ones mean is the main application's affair.
inline constexpr int32_t kCapabilityGroup = 8192;
enum class Capability : int32_t {
    unused_312 = 312,
    unused_316 = 316,
    analytics_319 = 319,
    analytics_320 = 320,
    analytics_321 = 321,
    traffic_331 = 331,
    traffic_333 = 333,
    traffic_454 = 454,
    intelligent_monitor = 584,
    colour_filter = 609,
    platform_registration = 652,
    judicial = 653,
};

#endif
