#include "DB_uni_process.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>

#include "build_info.h"
#include "device_ipc.h"
#include "log.h"
#include "request.h"
#include "state.h"

namespace {

constexpr const char* kSourceFile = "uni_process/DB_uni_process.c";
constexpr int kReplySize = 128;

static_assert(std::string_view(BUILD_INFO).size() == kBuildInfoLength);

// A channel number may lie outside the record: only channel 1 has a block.
const SensorBlock* sensor_of(int channel) {
    const DEVICECONFIG* record = get_cfg_param();
    if (channel != 1)
        DB_LOG_AS(kError, "get_videostandard", "get_videostandard error.chan_no is %d.\n", channel);
    return record != nullptr ? &record->sensor[0] : nullptr;
}

// A reply's bytes, zero where the main application sends fewer.
using ReplyBuffer = std::array<char, kReplySize>;

int32_t first_word(const ReplyBuffer& reply) {
    int32_t word = 0;
    std::memcpy(&word, reply.data(), sizeof word);
    return word;
}

// Each asks one question.  The IPC library's result: 0 with the answer in *answer, or an ipc_error.

int ask(int command, const void* data, int length, int flags, void* reply, int capacity, int timeout) {
    constexpr const char* kFunction = "communicaite_to_velmora";
    const int rc =
        ipc_unix_call_service(kMainApplication, command, data, length, flags, reply, capacity, timeout);
    if (rc != 0)
        DB_LOG_AS(kError, kFunction, "%d:ipc_unix_call_service failed, ret = %d.\n", command, rc);
    else if (reply != nullptr)
        DB_LOG_AS(kInfo, kFunction, "communicaite_to_velmora %d : service_result %d\n", command,
                  *static_cast<const unsigned char*>(reply));
    else
        DB_LOG_AS(kInfo, kFunction, "communicaite_to_velmora %d \n", command);
    return rc;
}

int ask_capability(int group, int id, int32_t* answer) {
    const CapabilityTestRequest data{group, id};
    ReplyBuffer reply{};
    const int rc =
        ask(kCapabilityTest, &data, sizeof data, 0, reply.data(), kReplySize, kMainApplicationTimeout);
    if (rc == 0)
        *answer = first_word(reply);
    return rc;
}

int ask_value(int channel, int group, int id, int32_t* answer) {
    constexpr const char* kFunction = "get_devcapa_data";
    const CapabilityValueRequest data{channel, group, id, 0};
    ReplyBuffer reply{};
    const int rc = ipc_unix_call_service(kMainApplication, kCapabilityValue, &data, sizeof data, 0,
                                         reply.data(), kReplySize, kMainApplicationTimeout);
    if (rc != 0) {
        DB_LOG_AS(kError, kFunction, "%d:ipc_unix_call_service failed, ret = %d.\n", kCapabilityValue, rc);
        return rc;
    }
    DB_LOG_AS(kError, kFunction, "communicaite_to_velmora %d : service_result %d\n", kCapabilityValue,
              static_cast<unsigned char>(reply[0]));
    *answer = first_word(reply);
    return 0;
}

// Without a channel: a capability test takes none, and counts are the device's.
struct Question {
    int command, group, id;
    bool operator<(const Question& other) const {
        return std::tie(command, group, id) < std::tie(other.command, other.group, other.id);
    }
};

struct Remembered {
    std::optional<int32_t> answer;
    uint64_t asked_by = 0;  // the number of the DeviceQueries that asked last
};

// What the process knows of the device.  Used under g_db_mutexsem.
struct Device {
    std::map<Question, Remembered> remembered;
    int open_queries = 0;
    uint64_t queries = 0;  // the number of the outermost DeviceQueries
    bool timed_out = false;
};
Device device;

std::optional<int32_t> answer_to(const Question& question) {
    const DeviceQueries queries;
    Remembered& known = device.remembered[question];
    const bool is_test = question.command == kCapabilityTest;
    // A test is repeated: the main application is asked for every channel.
    if (device.timed_out || (!is_test && known.asked_by == device.queries))
        return known.answer;
    known.asked_by = device.queries;
    int32_t answer = 0;
    const int rc = is_test ? ask_capability(question.group, question.id, &answer)
                           : ask_value(1, question.group, question.id, &answer);
    if (rc == 0)
        known.answer = answer;
    device.timed_out = rc == ipc_timed_out;
    return known.answer;
}

int get_count(int group, int id, int* count) {
    const auto answer = answer_to({kCapabilityValue, group, id});
    if (!answer)
        return -1;
    *count = *answer;
    return 0;
}

}  // namespace

int communicaite_to_velmora(RequestDescriptor* request, int command, const void* data, int length,
                            ReplyDescriptor* reply, void* reply_data, int capacity, int timeout) {
    if (request == nullptr || reply == nullptr)
        return -1;
    *request = {command, data, length};
    reply->data = reply_data;
    reply->capacity = capacity;
    return ask(command, data, length, reply->flags, reply_data, capacity, timeout) == 0 ? 0 : -1;
}

int has_capability(int /*channel*/, int group, int id) {
    int32_t answer = 0;
    return ask_capability(group, id, &answer) == 0 ? answer : -1;
}

int get_devcapa_data(int channel, int group, int id, int* result) {
    int32_t answer = 0;
    if (ask_value(channel, group, id, &answer) != 0)
        return -1;
    if (result != nullptr)
        *result = answer;
    return 0;
}

DeviceQueries::DeviceQueries() {
    if (device.open_queries++ > 0)
        return;
    ++device.queries;
    device.timed_out = false;
}

DeviceQueries::~DeviceQueries() {
    --device.open_queries;
}

bool device_has(int /*channel*/, Capability capability) {
    return answer_to({kCapabilityTest, kCapabilityGroup, static_cast<int>(capability)}) == 1;
}

int get_hardware_count(HardwareItem item, int* count) {
    return get_count(kHardwareGroup, item, count);
}

int get_event_source_count(int* count) {
    return get_count(kRegistrationGroup, kEventSources, count);
}

void forget_device() {
    device.remembered.clear();
}

uint8_t get_videostandard(int channel) {
    const SensorBlock* sensor = sensor_of(channel);
    return sensor != nullptr ? sensor->video_standard : uint8_t{0};
}

int convert_height_by_standard(int value) {
    constexpr int kPalHeight = 576;
    constexpr int kNtscHeight = 480;
    const int height = value & 0xFFFF;
    if (get_videostandard(1) != 1)
        return std::min(height, kPalHeight);
    return height < kNtscHeight ? height * kPalHeight / kNtscHeight : kPalHeight;
}

int fix_height_by_standard() {
    const uint8_t standard = get_videostandard(1);
    DEVICECONFIG* record = get_cfg_param();
    if (standard != 1 || record == nullptr)
        return standard;
    uint16_t& height = record->channel[0].battery_osd_position_y;
    height = static_cast<uint16_t>(convert_height_by_standard(height));
    return height;
}

const char* get_build_info(char* buffer, int size) {
    if (buffer != nullptr && size != 0)
        buffer[0] = '\0';
    if (buffer != nullptr && size > kBuildInfoLength) {
        std::memcpy(buffer, BUILD_INFO, kBuildInfoLength + 1);
    } else {
        std::puts("#############   sys svn info beg   #############");
        std::puts(BUILD_INFO);
        std::puts("#############   sys svn info end   #############");
    }
    return BUILD_INFO;
}
