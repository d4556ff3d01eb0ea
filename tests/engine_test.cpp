// The engine's hard cases: what another process writes meanwhile, keys that are missing, users that must not be lost,
// results and messages of the few tables that have their own.
#include "core_fixture.h"
#include "messages.h"
#include "values.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class Engine : public Core {
  protected:
    // Runs `work` in the middle of a save, after the first row of the table has been stored.
    class Meanwhile {
      public:
        Meanwhile(const std::string& table, std::function<void()> work) : work_(std::move(work)) {
            const auto call = [](sqlite3_context* context, int, sqlite3_value**) {
                static_cast<Meanwhile*>(sqlite3_user_data(context))->work_();
            };
            EXPECT_EQ(sqlite3_create_function(get_db_handle(), "meanwhile", 0, SQLITE_UTF8, this, call,
                                              nullptr, nullptr),
                      SQLITE_OK);
            for (const std::string event : {"insert", "update"})
                sql("create temp trigger meanwhile_" + event + " after " + event + " on main." + table +
                    " begin select meanwhile(); end;");
        }
        ~Meanwhile() { sql("drop trigger meanwhile_insert; drop trigger meanwhile_update;"); }
        Meanwhile(const Meanwhile&) = delete;
        Meanwhile& operator=(const Meanwhile&) = delete;

      private:
        std::function<void()> work_;
    };
};

// ------------------------------------------------------------------------------------- the record changes meanwhile

TEST_F(Engine, SaveStoresTheRecordOfOneMoment) {
    const struct {
        const char *table, *function, *rows;
    } cases[] = {
        {"user_mana_info", "db_set_usr_info",
         "select idx, username, user_num from user_mana_info where idx <= user_num or idx < 5"},
        {"sec_user_mana_info", "db_set_sec_user_info", "select * from sec_user_mana_info"},
        {"roi_conf_table", "db_save_roi_config",
         "select distinct region_num, enable, plate_num, face_num from roi_conf_table"},
        {"ipaddr_list", "db_save_ipaddr_list", "select * from ipaddr_list"},
        {"week_config_list", "save_wireless_alarm_to_db", "select * from week_config_list"},
        {"alarm_in_config", "db_set_alarm_in", "select * from alarm_in_config"},
    };
    for (const auto& c : cases) {
        fresh_database();
        randomise(7);
        EXPECT_EQ(run(c.function), 0);
        const std::string expected = query(c.rows);
        fresh_database();
        randomise(7);
        {
            const Meanwhile scribbling(c.table, [&] {
                const uint32_t word = r_.sec_lock_auth.db_enc_version;
                std::memset(&r_, 0, sizeof r_);
                r_.sec_lock_auth.db_enc_version = word;
            });
            EXPECT_EQ(run(c.function), 0) << c.function;
        }
        EXPECT_EQ(query(c.rows), expected) << c.function;
    }
}

// ------------------------------------------------------------------------------------- keys

TEST_F(Engine, RowsWithoutTheirKeyAreSkipped) {
    randomise(8);
    const auto original = std::make_unique<DEVICECONFIG>(r_);
    sql("insert into chn_comp_info(chn_index, channel_no, stream_index, quality) values(1, 1, null, 9);"
        "insert into exception_list(idx, exception_no, handle_type) values(1, null, 9);"
        "insert into local_port_list(idx, port_type, start_port) values(1, null, 9);"
        "insert into motion_detect_list(chan_no, line_no, line_data) values(1, null, '9:');"
        "insert into ipdome_roi_group(group_idx, inputtype_idx, benable) values(null, 0, 9);"
        "insert into multi_ccd_demo_ccdpara_config(idx, mode, smartIR) values(1, null, 9);"
        "insert into vm_snapshot_normal_param(process_type, chain_no, line_no, enable) values(1, null, 1, 9);");
    EXPECT_THAT(logged([] { EXPECT_EQ(run("db_get_comp_info"), 0); }), HasSubstr("invalid stream_no: -1\n"));
    EXPECT_THAT(logged([] { EXPECT_EQ(run("db_get_vm_snapshot_normal_param"), 0); }),
                HasSubstr("chain_no:-1 or line_no:0 error\n"));
    for (const char* get : {"db_get_exception", "db_get_local_port", "db_get_motion_list",
                            "db_get_ipdome_roi_group", "db_get_multi_ccd_demo_ccdpara_cfg"})
        EXPECT_EQ(run(get), 0);
    EXPECT_EQ(std::memcmp(&r_, original.get(), sizeof r_), 0);
}

TEST_F(Engine, FewerAlarmsThanBefore) {
    auto& actions = r_.ptz.ptz_index;
    for (const int alarms : {16, 8}) {
        hardware_count = alarms;
        for (int i = 0; i < 3 * kMaxAlarms; ++i)
            actions[i / kMaxAlarms][i % kMaxAlarms] = alarms * 1000 + i;
        EXPECT_EQ(run("db_set_alarm_trigger_ptz"), 0);
    }
    wipe();
    EXPECT_EQ(run("db_get_alarm_trigger_ptz"), 0);
    for (int type = 0; type < 3; ++type)
        for (int alarm = 0; alarm < 8; ++alarm)
            EXPECT_EQ(actions[type][alarm], 8000 + type * kMaxAlarms + alarm);
    EXPECT_EQ(query("select idx, chn, trig_type from alarm_trigger_ptz_list where idx in (9, 24)"),
              "9|0|2;24|7|3");
}

// ------------------------------------------------------------------------------------- event sources

TEST_F(Engine, EventSourcesAreAsManyAsTheDeviceHas) {
    const auto save = [](const char* table) { EXPECT_EQ(run(find_table(table)->set), 0) << table; };
    const std::string classes = " group by process_type";
    hardware_count = 2;
    randomise(8);
    for (const auto& [table, columns, rows] :
         {std::array{"vm_snapshot_normal_param", "count(*)", "14;6;16;8;1;1"},
          {"vm_snapshot_compression_param", "count(*)", "14;6;16;8;1;1"},
          {"vm_snapshot_time_segment", "count(*), length(b_used) - length(replace(b_used, ':', ''))",
           "2|28;2|56"},
          {"vm_trigger_chain_param", "count(*), max(line_no), min(trigger_chain not like '%:%:%:%')",
           "6|3|1;16|1|1;8|1|1;1|1|1;1|1|1"}}) {
        save(table);
        EXPECT_EQ(query(std::string("select ") + columns + " from " + table + classes), rows) << table;
    }

    // Missing rows of a class are made anew with all of it; the other classes keep theirs.
    sql("update vm_trigger_chain_param set line_no = 9 where process_type = 4 and chain_no = 8;"
        "delete from vm_trigger_chain_param where process_type = 3 and chain_no = 5;"
        "update vm_trigger_chain_param set line_no = 9 where process_type = 3;");
    save("vm_trigger_chain_param");
    EXPECT_EQ(query("select count(*), max(line_no) from vm_trigger_chain_param" + classes),
              "6|3;16|1;8|9;1|1;1|1");

    // What another process sees of a number that was never answered: all that the record holds.
    fresh_database();
    forget_device();
    silent = true;
    const DeviceQueries queries;
    save("vm_snapshot_normal_param");
    EXPECT_EQ(query("select count(*) from vm_snapshot_normal_param" + classes), "112;48;16;8;1;1");
}

// ------------------------------------------------------------------------------------- secure users

TEST_F(Engine, NoSecureUserIsLostOrTurnedIntoAnother) {
    auto& users = r_.users.sec_user;
    using Accounts = std::map<std::string, std::string>;
    const struct {
        std::vector<std::pair<const char*, const char*>> before;  // name and password
        std::vector<const char*> after;                           // names
    } cases[] = {
        {{{"carol", "1"}, {"", ""}, {"bob", "2"}}, {"admin", "carol", "bob"}},
        {{{"carol", "1"}, {"bob", "2"}, {"", ""}}, {"admin", "bob", "carol"}},
        {{{"admin", "1"}, {"bob", "2"}}, {"admin", "bob"}},
        {{{"carol", "1"}, {"admin", "2"}, {"bob", "3"}}, {"admin", "", "bob", "carol"}},
        {{{"administrator", "1"}}, {"admin", "administrator"}},
    };
    for (const auto& c : cases) {
        fresh_database();
        wipe();
        Accounts accounts;
        for (std::size_t i = 0; i < c.before.size(); ++i) {
            std::strcpy(users[i].username, c.before[i].first);
            std::strcpy(users[i].passwd, c.before[i].second);
            users[i].permission = 7;
            accounts.emplace(c.before[i]);
        }
        accounts.erase("");
        accounts.try_emplace("admin", "");
        EXPECT_EQ(run("db_set_sec_user_info"), 0);
        for (std::size_t i = 0; i < c.after.size(); ++i)
            EXPECT_STREQ(users[i].username, c.after[i]) << i;
        for (const uint64_t mask :
             {uint64_t{users[0].permission}, uint64_t{users[0].preview_permision},
              uint64_t{users[0].record_permision}, uint64_t{users[0].playback_permision},
              uint64_t{users[0].ptzctrl_permision}})
            EXPECT_EQ(mask, 0xFFFFFFFF);
        EXPECT_TRUE(users[0].priority == 2 && users[0].user_level == 2);
        // The database and the record agree on who there is.
        const auto stored = std::make_unique<DEVICECONFIG>(r_);
        std::memset(users, 0, sizeof users);
        EXPECT_EQ(run("db_get_sec_user_info"), 0);
        for (const auto* list : {&stored->users.sec_user, &users}) {
            Accounts found;
            for (const UserEntry& user : *list)
                if (user.username[0] != '\0' && !found.emplace(user.username, user.passwd).second)
                    ADD_FAILURE() << user.username << " is there twice";
            EXPECT_EQ(found, accounts);
        }
    }

    // Nowhere to go: nothing is stored, nothing is changed.
    wipe();
    for (UserEntry& user : users)
        std::strcpy(user.username, ("u" + std::to_string(&user - users)).c_str());
    const auto full = std::make_unique<DEVICECONFIG>(r_);
    const Contents before = contents();
    EXPECT_EQ(call(EN_SAVE_SEC_USER_INFO), kRefused);
    EXPECT_EQ(difference(before, contents()), "");
    EXPECT_EQ(std::memcmp(users, full->users.sec_user, sizeof users), 0);
}

TEST_F(Engine, AdministratorWhoHadNoNameIsARowFromTheNextSaveOn) {
    std::strcpy(r_.users.sec_user[3].username, "carol");
    for (const char* users : {"1", "2"}) {
        EXPECT_EQ(run("db_set_sec_user_info"), 0);
        EXPECT_STREQ(r_.users.sec_user[0].username, "admin");
        EXPECT_EQ(query("select user_num from sec_user_mana_info where idx = 1"), users);
    }
}

// ------------------------------------------------------------------------------------- results

TEST_F(Engine, ResultsThatTellTheirCause) {
    sql("create table roi_param_table(idx integer primary key, streamidx, type);");
    EXPECT_EQ(run("db_get_roi_param"), 0);
    sql("drop table roi_param_table; create virtual table roi_param_table using fts5(type);"
        "insert into roi_param_table values('1'); delete from roi_param_table_content;"
        "drop table roi_param_table_content;");
    EXPECT_EQ(run("db_get_roi_param"), -2);
    const struct {
        const char* function;
        int without_database, without_record;
    } cases[] = {{"db_get_roi_param", -1, -1},        {"db_save_voice_change_cfg", -6, -7},
                 {"db_get_voice_change_cfg", -1, -1}, {"db_set_comp_info", -1, -7},
                 {"db_set_comp_info_single", -1, -7}, {"db_get_comp_info", -1, -1}};
    close_database();
    for (const auto& c : cases)
        EXPECT_EQ(call_table_function(c.function, 0), c.without_database) << c.function;
    fresh_database();
    set_cfg_param(nullptr);
    for (const auto& c : cases)
        EXPECT_EQ(call_table_function(c.function, 0), c.without_record) << c.function;
}

// ------------------------------------------------------------------------------------- messages

TEST_F(Engine, MessagesOfTheirOwn) {
    sql("create table roi_param_table(idx integer primary key, streamidx, type);"
        "insert into image_naming_list(idx, item_order) values(16, 1), (0, 1);");
    randomise(9);
    std::strcpy(r_.encoding.roi[0][0].region[0].name, "x");
    r_.event.video_analysis[0].type1.rigger_rec_chn = 0x8000000000000000u;
    const auto line = [](const char* table) { return ":" + std::to_string(find_table(table)->line) + " "; };
    const struct {
        std::string broken;
        const char* function;
        std::string message;
    } cases[] = {
        {"", "db_get_roi_param", "db_query_rec_count_v2 error: 0\n"},
        {"", "db_get_roi_config", " db_query_rec_count_v2 err\n"},
        {"", "db_get_alarmtime_config", " db_query_rec_count_v2 err\n"},
        {"", "get_image_naming_param_from_db", "param err: chan_no=1, i=0\n"},
        {"", "get_image_naming_param_from_db", "param err: chan_no=0, i=-1\n"},
        {spoiled("roi_conf_table"), "db_save_roi_config", "db_save_roi_region_cfg_single] "},
        {spoiled("wdr_config_table"), "db_save_wdr_config",
         "main/dbshell.c" + line("wdr_config_table") + "db_save_wdr_config_single] "},
        {"", "db_save_wdr_config", "SQL error:1, no such table: main.gone\n"},
        {spoiled("exception_list_comm"), "db_set_sd_handle_type",
         "main/db_uni_save_interface.c" + line("exception_list_comm") +
             "db_set_exception_comm] exception_list_comm save err:replace into"},
        {"create temp trigger a before update on vilost_param_table begin select raise(fail, ''); end;"
         "create temp trigger b before update on video_analysis_config when new.type_idx = 1 begin select raise(fail, ''); end;",
         "db_set_video_analysis", "db_set_video_analysis_single error for chan_no: 0\n"},
        {"create temp trigger d before insert on intelli_polygon_info begin select raise(fail, ''); end;",
         "db_set_intelli_scene_config",
         "db_set_intelli_scene_config] db_set_intelli_polygon_info_single(0-0-0) SQL error\n"},
        {"", "db_set_intelli_scene_config", "SQL error:replace into intelli_polygon_info (chan_no,"},
        {"create temp trigger g before insert on week_config_list begin select raise(fail, ''); end;",
         "db_save_smd_detection_cfg", "db_save_smd_detection_basic_cfg_single] db_save_timeseg error\n"},
        {"drop trigger g; create temp trigger e before insert on smd_polygon begin select raise(fail, ''); end;",
         "db_save_smd_detection_cfg", "db_save_smd_detection_cfg] smd_polygon error for scene_no: 0\n"},
        {"create temp trigger f before update on intelligent_polygon begin select raise(fail, ''); end;",
         "db_save_intelligent_qor_scene",
         "db_save_intelligent_qor_scene] db_save_intelligent_qor_rule error\n"},
    };
    for (const auto& c : cases) {
        sql(c.broken);
        // "[2][52][main/dbshell.c:12 function] message"
        const std::string log = logged([&] { (void)call_table_function(c.function, 0); });
        EXPECT_THAT(log, HasSubstr(c.message)) << c.function;
    }
    // A failed schedule is a notice, but for the face snapshot's.
    sql("create temp trigger c before insert on week_config_list begin select raise(fail, ''); end;");
    const PlainSchedule schedule{};
    EXPECT_THAT(logged([&] { EXPECT_EQ(db_save_timeseg(&schedule, kVideoLoss, 0), -1); }),
                HasSubstr("[4][52][main/dbshell.c:"));
    EXPECT_THAT(logged([&] { EXPECT_EQ(db_save_face_snap_schedule(&schedule, 0), -1); }),
                Not(HasSubstr("[4][52]")));
}

TEST_F(Engine, MasksAreShownUnsigned) {
    r_.event.disk_quota[0][0].content = 0xFFFFFFFFFFFFFFFEu;
    const Table& t = *find_table("disk_quota_list");
    EXPECT_EQ(
        rendered(t, t.save[0], reinterpret_cast<const std::byte*>(&r_), {}, t.counts()),
        "replace into disk_quota_list (chan_no, data_type, b_enable, quota_type, content, channel_ratio) "
        "values(1, 1, 0, 0, 18446744073709551614, 0);");
}

}  // namespace
