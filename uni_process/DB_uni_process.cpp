#include "DB_uni_process.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "build_info.h"
#include "device_ipc.h"
#include "log.h"
#include "request.h"
#include "state.h"

namespace {

constexpr const char* kSourceFile = "uni_process/DB_uni_process.c";
constexpr int kCapabilityGroup = 8192;
constexpr int kReplySize = 128;

static_assert(std::string_view(BUILD_INFO).size() == kBuildInfoLength);

int32_t first_word(const std::array<char, kReplySize>& reply) {
    int32_t word = 0;
    std::memcpy(&word, reply.data(), sizeof word);
    return word;
}

// A channel number may lie outside the record: only channel 1 has a block.
const SensorBlock* sensor_of(int channel) {
    const DEVICECONFIG* record = get_cfg_param();
    if (channel != 1)
        DB_LOG_AS(kError, "get_videostandard", "get_videostandard error.chan_no is %d.\n", channel);
    return record != nullptr ? &record->sensor[0] : nullptr;
}

// The IPC result of the latest capability test tells a time-out from an absent main application.
int last_result = 0;

// The operation that runs now, under g_db_mutexsem.
const CapabilityQuery* current_query = nullptr;

}  // namespace

int communicaite_to_velmora(RequestDescriptor* request, int command, const void* data, int length,
                            ReplyDescriptor* reply, void* reply_data, int capacity, int timeout) {
    if (request == nullptr || reply == nullptr)
        return -1;
    *request = {command, data, length};
    reply->data = reply_data;
    reply->capacity = capacity;
    last_result = ipc_unix_call_service(kMainApplication, command, data, length, reply->flags, reply_data,
                                        capacity, timeout);
    if (last_result != 0) {
        DB_LOG(kError, "%d:ipc_unix_call_service failed, ret = %d.\n", command, last_result);
        return -1;
    }
    if (reply_data != nullptr)
        DB_LOG(kInfo, "communicaite_to_velmora %d : service_result %d\n", command,
               static_cast<const unsigned char*>(reply_data)[0]);
    else
        DB_LOG(kInfo, "communicaite_to_velmora %d \n", command);
    return 0;
}

int has_capability(int /*channel*/, int group, int id) {
    // The main application's test takes no channel.
    const int32_t data[2] = {group, id};
    RequestDescriptor request;
    ReplyDescriptor reply;
    std::array<char, kReplySize> answer{};
    if (communicaite_to_velmora(&request, kCapabilityTest, data, sizeof data, &reply, answer.data(),
                                kReplySize, kMainApplicationTimeout) != 0)
        return -1;
    return first_word(answer);
}

int get_devcapa_data(int channel, int group, int id, int* result) {
    const int32_t data[4] = {channel, group, id, 0};
    std::array<char, kReplySize> answer{};
    const int rc = ipc_unix_call_service(kMainApplication, kCapabilityValue, data, sizeof data, 0,
                                         answer.data(), kReplySize, kMainApplicationTimeout);
    if (rc != 0) {
        DB_LOG(kError, "%d:ipc_unix_call_service failed, ret = %d.\n", kCapabilityValue, rc);
        return -1;
    }
    DB_LOG(kError, "communicaite_to_velmora %d : service_result %d\n", kCapabilityValue,
           static_cast<unsigned char>(answer[0]));
    if (result != nullptr)
        *result = first_word(answer);
    return 0;
}

CapabilityQuery::CapabilityQuery() {
    current_query = this;
}

CapabilityQuery::~CapabilityQuery() {
    current_query = nullptr;
}

bool CapabilityQuery::has(int channel, int id) {
    if (timed_out_)
        return false;
    const int answer = has_capability(channel, kCapabilityGroup, id);
    if (answer == -1 && last_result != 0) {
        unanswered_ = true;
        timed_out_ = last_result == ipc_timed_out;
    }
    return answer == 1;
}

bool CapabilityQuery::unanswered() {
    return current_query != nullptr && current_query->unanswered_;
}

int get_hardware_count(HardwareItem item, int* count) {
    constexpr int kHardwareGroup = 4096;
    if (!CapabilityQuery::unanswered())
        return get_devcapa_data(1, kHardwareGroup, item, count);
    *count = 0;
    return 0;
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
