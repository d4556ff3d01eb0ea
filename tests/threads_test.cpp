// Requests on several threads, as the IPC library makes them, beside the backup thread, and a factory reset among them.
// What there is to see is the thread sanitizer's.
#include <thread>

#include "backup.h"
#include "core_fixture.h"
#include "health.h"

namespace {

class Threads : public Core {};

TEST_F(Threads, RequestsBackupAndResetTakeTurns) {
    const struct {
        int kind;
        ServiceRequest request;
    } asked[] = {
        {EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})},
        {EN_UPDATE_TABLE_LIST, for_tables({31, 35, kTableListEnd})},
        {EN_SAVE_NETWORK_PARAM, {}},
        {EN_UPDATE_ALL_RECORD, {}},
        {EN_GET_ONE_TABLE_RECORD, for_tables({31})},
    };
    constexpr int kClients = 4, kRounds = 3;
    save_all();
    std::atomic<int> busy = kClients;
    std::vector<std::jthread> threads;
    threads.emplace_back(
        [] { Backup([](int) { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }).run(); });
    for (int client = 0; client < kClients; ++client)
        threads.emplace_back([&, client] {
            bool refused = false;
            for (int round = 0; !refused && !HasFailure(); ++round) {
                busy -= round == kRounds;
                if (round < kRounds) {  // then it settles
                    // Without the lock the sanitizer would tell of the main application's writes.
                    const DatabaseLock lock;
                    r_.network.netconfig.mtu = client * 1000 + round;
                }
                for (const auto& [kind, request] : asked) {
                    const Reply reply = call(kind, request);
                    refused = reply.value < 0;
                    EXPECT_TRUE(reply == kStored || (refused && closing_flag)) << std::hex << kind;
                }
            }
        });
    while (!HasFailure() && (busy > 0 || !std::filesystem::exists(get_db_backup_path())))
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(call(EN_RESET_ALL_FACTORY_PARA), kStored);
    threads.clear();
    EXPECT_EQ(check_inactive_db_integrity(get_db_path()), 0);
    EXPECT_FALSE(std::filesystem::exists(get_db_backup_path()));
    set_db_handle(db_open(get_db_path()));
    EXPECT_EQ(query("select count(*) from sqlite_master where name = 'chn_info'"), "0");
}

}  // namespace
