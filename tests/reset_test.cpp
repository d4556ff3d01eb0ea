// The factory reset: what is kept, what a failure leaves, and what the next start makes of it.
#include "reset.h"
#include "core_fixture.h"

namespace {

using testing::HasSubstr;

class Reset : public Core {
  protected:
    const std::string main_ = get_db_path(), backup_ = get_db_backup_path();

    void SetUp() override {
        r_.device.dev_info.dev_type = 7;
        r_.network.netconfig.mtu = 1400;
        std::strcpy(r_.channel[0].name, "gate");
        std::strcpy(r_.event.sd_card.password, "pass");
        save_all();
        ASSERT_EQ(db_update_version(kCurrentVersion, get_db_handle()), 0);
        write_file(backup_, content(main_));
    }
    // As a new process does, with defaults of its own.
    void restart() {
        closing_flag = false;
        close_database();
        wipe();
        forget_device();
        r_.network.netconfig.mtu = 1;
        EXPECT_EQ(init_database(), 0);
    }
};

TEST_F(Reset, KeepsWhatItsModeTells) {
    const struct {
        int kind, tables;
        bool keeps_access;
    } modes[] = {{EN_RESET_ALL_FACTORY_PARA, 7, false}, {EN_RESET_FACTORY_PARA_MODE2, 18, true}};
    for (const auto& mode : modes) {
        SCOPED_TRACE(mode.tables);
        SetUp();
        std::filesystem::remove(path("db_op_info.log"));
        EXPECT_EQ(call(mode.kind), kStored);
        EXPECT_TRUE(closing_flag);
        EXPECT_EQ(get_db_handle(), nullptr);
        EXPECT_FALSE(std::filesystem::exists(backup_));
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})).value, -1);

        set_db_handle(db_open(get_db_path()));
        EXPECT_EQ(query("select count(*) from sqlite_master where type = 'table'"),
                  std::to_string(mode.tables));
        EXPECT_EQ(query("select dev_type from dev_info"), "7");
        EXPECT_EQ(query("select count(*) > 0, count(distinct process_type) from week_config_list"), "1|1");

        restart();
        EXPECT_EQ(r_.device.dev_info.dev_type, 7);
        EXPECT_EQ(r_.network.netconfig.mtu, mode.keeps_access ? 1400 : 1);
        EXPECT_STREQ(r_.event.sd_card.password, mode.keeps_access ? "pass" : "");
        EXPECT_STREQ(r_.channel[0].name, "");
        EXPECT_EQ(query("select * from db_version"), std::to_string(kCurrentVersion) + "|NULL");
        EXPECT_EQ(query("select count(*) from sqlite_master where type = 'table'"), "251");
        EXPECT_THAT(operation_log(), HasSubstr("Db version is -1,Read from cfg"));
        EXPECT_EQ(operation_log().find("Main Db is broken") == std::string::npos, mode.keeps_access);
        EXPECT_EQ(content(main_), content(backup_));
    }
}

TEST_F(Reset, FailureLeavesTheOldDatabase) {
    const std::string before = content(main_);
    const struct {
        std::string in_the_way;
        bool backup_stays;
    } cases[] = {
        {main_ + ".new/full", true},       // the new database cannot be made,
        {backup_ + "/full", true},         // the backup cannot be removed: it would undo the reset,
        {main_ + "-journal/full", false},  // the new database cannot take its place
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in_the_way);
        const auto blocked = std::filesystem::path(c.in_the_way).parent_path();
        close_database();
        std::filesystem::remove_all(blocked);
        std::filesystem::create_directories(c.in_the_way);
        for (const int mode : {kResetAll, kResetKeepingAccess}) {
            EXPECT_THAT(logged([&] { EXPECT_EQ(set_system_default_param(mode), -1); }),
                        HasSubstr("database is already closed...\n"));
            EXPECT_EQ(content(main_), before);
            EXPECT_EQ(std::filesystem::exists(backup_), c.backup_stays);
        }
        // One that was open is served on.
        set_db_handle(db_open(get_db_path()));
        EXPECT_EQ(call(EN_RESET_ALL_FACTORY_PARA).value, -1);
        std::filesystem::remove_all(blocked);
        EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({3})), kStored);
        EXPECT_FALSE(closing_flag);
        EXPECT_EQ(query("select name from chn_info"), "gate");
        close_database();
        write_file(main_, before);
        write_file(backup_, before);
    }
    EXPECT_EQ(set_system_default_param(kResetAll), 0);
    EXPECT_NE(content(main_), before);
}

}  // namespace
