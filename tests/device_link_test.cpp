// The link to the main application: what becomes of a request when it answers, falls silent, answers late or never.
#include "core_fixture.h"

// The linker puts this call in the place of the IPC library's (CMakeLists.txt).
#define LIBRARY_CALL(prefix) asm(prefix "_Z21ipc_unix_call_serviceiiPKviiPviiPiS2_")
using Call = int(int, int, const void*, int, int, void*, int, int, int*, int*);
Call library_call LIBRARY_CALL("__real_");
Call observed_call LIBRARY_CALL("__wrap_");

namespace {

constexpr int kPatience = 30;  // milliseconds that a test waits for a main application that is silent

std::map<int32_t, int> asked;  // how often each capability or item was
int waited = 0;                // milliseconds of time-outs, were they waited for in full
bool gone = false;             // nobody serves the main application's number

}  // namespace

int observed_call(int service, int kind, const void* request, int length, int flags, void* reply,
                  int capacity, int timeout, int* reply_length, int* result) {
    if (service != kMainApplication)
        return library_call(service, kind, request, length, flags, reply, capacity, timeout, reply_length,
                            result);
    ++asked[static_cast<const int32_t*>(request)[kind == kCapabilityTest ? 1 : 2]];
    if (gone)
        return ipc_unreachable;
    const int rc = library_call(service, kind, request, length, flags, reply, capacity,
                                silent ? kPatience : timeout, reply_length, result);
    waited += rc == ipc_timed_out ? timeout : 0;
    return rc;
}

namespace {

using testing::HasSubstr;
using testing::Not;

class DeviceLink : public Core {
  protected:
    DeviceLink() { start_counting(); }
    ~DeviceLink() override { gone = false; }

    static void start_counting() {
        asked.clear();
        waited = 0;
    }
    static int questions() {
        int sum = 0;
        for (const auto& [id, times] : asked)
            sum += times;
        return sum;
    }

    // The requests that store alarms, with the rows of the three tables on a device of 3 inputs and outputs.
    struct Saving {
        int kind;
        ServiceRequest request;
        const char* rows;
        std::map<int32_t, int> counts;  // asked while it is served
    };
    static std::vector<Saving> savings() {
        return {{EN_UPDATE_ALL_RECORD, {}, "3|3|9", {{514, 1}, {515, 1}}},
                {EN_SAVE_EVENT_PARAM, {}, "3|3|9", {{514, 1}, {515, 1}}},
                {EN_UPDATE_TABLE_LIST, for_tables({14, 18, 14, -1}), "3|0|9", {{514, 1}}},
                {EN_UPDATE_ONE_TABLE_RECORD, for_tables({13}), "0|3|0", {{515, 1}}},
                {EN_UPDATE_ONE_TABLE_RECORD, for_tables({14}), "3|0|0", {{514, 1}}},
                {EN_UPDATE_ONE_TABLE_RECORD, for_tables({18}), "0|0|9", {{514, 1}}}};
    }
    // The rows that a request stores.
    static std::string stored_by(const Saving& saving, Reply reply = kStored) {
        sql("delete from alarm_in_config; delete from alarm_out_config; delete from alarm_trigger_ptz_list;");
        EXPECT_EQ(call(saving.kind, saving.request), reply);
        return query(
            "select (select count(*) from alarm_in_config), (select count(*) from alarm_out_config), "
            "(select count(*) from alarm_trigger_ptz_list)");
    }
};

TEST_F(DeviceLink, CountIsAskedOncePerRequest) {
    randomise(1);
    hardware_count = 3;
    for (const Saving& saving : savings()) {
        start_counting();
        EXPECT_EQ(stored_by(saving), saving.rows);
        std::erase_if(asked,
                      [](const auto& a) { return a.first != kAlarmInputs && a.first != kAlarmOutputs; });
        EXPECT_EQ(asked, saving.counts) << saving.rows;
    }
}

TEST_F(DeviceLink, CapabilitiesAreAskedForEveryChannelOfTheDevice) {
    using Times = std::map<int32_t, int>;
    maxEnChanNo = 3;  // more than the record has
    EXPECT_EQ(call(EN_GET_ALL_RECORD), none(1));
    EXPECT_EQ(asked, (Times{{312, 3},
                            {316, 3},
                            {319, 3},
                            {320, 3},
                            {321, 3},
                            {331, 1},
                            {333, 1},
                            {454, 1},
                            {584, 4},
                            {609, 3},
                            {652, 1},
                            {653, 3}}));
    start_counting();
    capability = 1;
    EXPECT_EQ(set_alldata_to_db(), 0);
    EXPECT_EQ(asked, (Times{{257, 1},
                            {312, 3},
                            {316, 3},
                            {319, 1},
                            {331, 1},
                            {514, 1},
                            {515, 1},
                            {584, 1},
                            {609, 1},
                            {652, 1},
                            {653, 1}}));
}

TEST_F(DeviceLink, WithoutAnyAnswerAlarmsAreNotSaidToBeStored) {
    randomise(1);
    for (const bool unreachable : {false, true}) {
        gone = unreachable;
        silent = !unreachable;
        for (const Saving& saving : savings()) {
            start_counting();
            const auto log = logged([&] { EXPECT_EQ(stored_by(saving, kRefused), "0|0|0"); });
            EXPECT_THAT(log, HasSubstr("get_devcapa_data  HW_ALARM"));
            EXPECT_EQ(waited, unreachable ? 0 : 5000) << saving.rows;
            EXPECT_EQ(query("select count(*) from chn_info"), "0");  // the whole store is rolled back
        }
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({5})), kStored);  // no alarms, no questions
    }
}

TEST_F(DeviceLink, LatestAnswerStandsInForASilentMainApplication) {
    randomise(1);
    capability = 1;
    hardware_count = 9;
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
    hardware_count = 3;
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
    for (const bool unreachable : {false, true}) {
        gone = unreachable;
        silent = !unreachable;
        std::vector<Saving> requests = savings();
        requests.push_back({EN_GET_ALL_RECORD, {}, "0|0|0", {}});
        for (const Saving& saving : requests) {
            start_counting();
            const bool load = saving.kind == EN_GET_ALL_RECORD;
            const auto log =
                logged([&] { EXPECT_EQ(stored_by(saving, load ? none(1) : kStored), saving.rows); });
            EXPECT_THAT(log, Not(HasSubstr("device do not support")));
            EXPECT_EQ(waited, unreachable ? 0 : 5000) << saving.rows;
            EXPECT_TRUE(unreachable || questions() == 1) << questions();
        }
    }
}

TEST_F(DeviceLink, LateAnswerIsDroppedAndTheNextRequestAsksAgain) {
    randomise(1);
    const Saving inputs{EN_UPDATE_ONE_TABLE_RECORD, for_tables({14}), "", {}};
    silent = true;
    hardware_count = 5;
    EXPECT_EQ(stored_by(inputs, kRefused), "0|0|0");
    answer_again();
    EXPECT_EQ(stored_by(inputs), "5|0|0");
    silent = true;
    hardware_count = 7;
    EXPECT_EQ(stored_by(inputs), "5|0|0");
    answer_again();
    EXPECT_EQ(stored_by(inputs), "7|0|0");
}

TEST_F(DeviceLink, OneQuestionAnswersForItself) {
    int value = -5;
    silent = true;
    EXPECT_EQ(get_devcapa_data(1, 4096, 526, &value), -1);
    EXPECT_EQ(has_capability(1, 8192, 584), -1);
    EXPECT_EQ(get_hardware_count(kVideoChannels, &value), -1);
    EXPECT_FALSE(device_has(1, Capability::judicial));
    EXPECT_EQ(value, -5);
    EXPECT_EQ(waited, 4 * 5000);  // no request holds them together
    answer_again();
    capability = 2;
    EXPECT_EQ(has_capability(1, 8192, 584), 2);
    EXPECT_FALSE(device_has(1, Capability::judicial));
    EXPECT_EQ(get_devcapa_data(1, 4096, 526, &value), 0);
    EXPECT_EQ(value, 16);
    ReplyDescriptor reply;
    EXPECT_EQ(communicaite_to_velmora(nullptr, kCapabilityTest, nullptr, 0, &reply, nullptr, 0, 5000), -1);
}

}  // namespace
