// The backup thread: when it copies, how long it sleeps, and what it leaves alone.
#include "backup.h"

#include "core_fixture.h"

namespace {

using testing::ElementsAre;

class BackupThread : public Core {
  protected:
    const std::string main_ = get_db_path(), backup_ = get_db_backup_path();
    std::vector<int> slept_;

    // Cycles with what happens during each sleep; behind the last the thread is told to end.
    void run(std::vector<std::function<void()>> during) {
        slept_.clear();
        closing_flag = false;
        Backup([&](int seconds) {
            // Nobody waits for a sleeper; one that held it would get EDEADLK.
            EXPECT_EQ(pthreadMutexLock(&g_db_mutexsem, -1), 0);
            pthreadMutexUnlock(&g_db_mutexsem);
            if (slept_.size() < during.size() && during[slept_.size()])
                during[slept_.size()]();
            slept_.push_back(seconds);
            closing_flag = closing_flag || slept_.size() >= during.size();
        }).run();
    }
    void change() { ++r_.network.netconfig.mtu; }
    void save() { EXPECT_EQ(call(EN_SAVE_NETWORK_PARAM), kStored); }
    bool is_backed_up() const { return content(main_) == content(backup_); }
};

TEST_F(BackupThread, CopiesWhatChangedAndSettled) {
    const auto nothing = [] {};
    // The first cycle takes note of the record; the second finds that there is no backup.
    run({[&] { EXPECT_FALSE(std::filesystem::exists(backup_)); }, nothing});
    EXPECT_THAT(slept_, ElementsAre(600, 600));
    EXPECT_TRUE(is_backed_up());

    // Nothing changed: nothing is written.
    const auto written = std::filesystem::last_write_time(backup_);
    run({nothing, nothing, nothing});
    EXPECT_THAT(slept_, ElementsAre(600, 600, 600));
    EXPECT_EQ(std::filesystem::last_write_time(backup_), written);

    // A change of the record is waited out, here for two samples.
    run({[&] { change(), save(); }, [&] { change(); }, nothing, nothing});
    EXPECT_THAT(slept_, ElementsAre(600, 5, 5, 600));
    EXPECT_TRUE(is_backed_up());

    // A change of the database alone.
    run({[] { sql("insert into cb_point_cfg(idx) values(5)"); }, nothing});
    EXPECT_THAT(slept_, ElementsAre(600, 600));
    EXPECT_TRUE(is_backed_up());
}

TEST_F(BackupThread, WaitsForARecordThatKeepsChanging) {
    for (const bool also_in_the_last_sleep : {false, true}) {
        std::filesystem::remove(backup_);
        std::vector<std::function<void()>> during(1 + 20, [&] { change(); });
        if (!also_in_the_last_sleep)
            during.back() = nullptr;
        during.emplace_back([&] { EXPECT_FALSE(std::filesystem::exists(backup_)); });
        during.resize(during.size() + 1 + (also_in_the_last_sleep ? 1 : 0));
        run(during);
        std::vector<int> seconds{600};
        seconds.insert(seconds.end(), 20, 5);
        seconds.push_back(600);
        // What was not waited out is backed up without waiting when the next sample finds it unchanged.
        if (also_in_the_last_sleep)
            seconds.push_back(5);
        seconds.push_back(600);
        EXPECT_EQ(slept_, seconds);
        EXPECT_TRUE(is_backed_up());
    }
}

// What the main application is asked in one request is not taken for the next one's answer.
TEST_F(BackupThread, RequestsDuringItsSleepAreEachOnTheirOwn) {
    const int table = find_table("alarm_in_config")->number;
    const auto save = [&](int inputs) {
        hardware_count = inputs;
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({table})), kStored);
        EXPECT_EQ(query("select count(*) from alarm_in_config"), std::to_string(inputs));
        change();
    };
    run({[&] { change(); }, [&] { save(4); }, [&] { save(6); }, nullptr, nullptr});
    EXPECT_THAT(slept_, ElementsAre(600, 5, 5, 5, 600));
}

TEST_F(BackupThread, TriesAFailedBackupAgainAndKeepsTheOldOne) {
    write_file(backup_, "old");
    std::filesystem::create_directories(backup_ + ".new/full");
    run({nullptr, [&] { EXPECT_EQ(content(backup_), "old"); },
         [&] { std::filesystem::remove_all(backup_ + ".new"); }, nullptr});
    EXPECT_THAT(slept_, ElementsAre(600, 300, 300, 600));
    EXPECT_TRUE(is_backed_up());
}

TEST_F(BackupThread, LooksAgainAfterEverySleep) {
    const auto closed = [&] { EXPECT_EQ(call(EN_CLOSE_DATABASE), kStored); };
    run({[&] { change(), save(); }, closed, nullptr, nullptr});
    EXPECT_THAT(slept_, ElementsAre(600, 5, 600));
    EXPECT_FALSE(std::filesystem::exists(backup_));

    set_db_handle(db_open(get_db_path()));
    run({[&] { change(), save(); }, [] { close_database(); }, nullptr, nullptr});
    EXPECT_FALSE(std::filesystem::exists(backup_));
}

TEST_F(BackupThread, MakesADamagedDatabaseAnewBeforeItIsCopied) {
    std::strcpy(r_.channel[0].name, "gate");
    save_all();
    const auto root = std::stoul(query("select rootpage from sqlite_master where name = 'audio_param_info'"));
    close_database();
    std::string bytes = content(main_);
    write_file(main_, bytes.replace((root - 1) * 1024, 1024, std::string(1024, 'x')));
    write_file(backup_, "old");
    set_db_handle(db_open(get_db_path()));
    run({nullptr,
         [&] {
             EXPECT_EQ(content(backup_), "old");
             EXPECT_EQ(query("pragma integrity_check"), "ok");
             EXPECT_EQ(query("select name, version from chn_info, db_version"),
                       "gate|" + std::to_string(kCurrentVersion));
         },
         nullptr});
    EXPECT_THAT(slept_, ElementsAre(600, 300, 600));
    EXPECT_TRUE(is_backed_up());
}

}  // namespace
