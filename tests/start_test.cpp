// Starts: what becomes of every condition of the two database files, and of every version that can be stored.
#include "alter.h"
#include "backup.h"
#include "chain.h"
#include "core_fixture.h"
#include "health.h"

namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;

enum Condition { missing, empty, unrepairable, repairable, keyless, healthy };
constexpr Condition kConditions[] = {missing, empty, unrepairable, repairable, keyless, healthy};

constexpr int packed(int major, int minor = 0) {
    return major << 8 | minor;
}

class Start : public Core {
  protected:
    const std::string main_ = get_db_path(), backup_ = get_db_backup_path();

    // The bytes of a database whose channel has this name and whose tables have rows, changed by `changes`.
    std::string database(const std::string& name, int version, const std::string& changes = "") {
        fresh_database();
        std::strcpy(r_.channel[0].name, name.c_str());
        save_all();
        EXPECT_EQ(db_update_version(version, get_db_handle()), 0);
        if (!changes.empty())
            sql(changes);
        close_database();
        return content(main_);
    }
    // Replaces the page that is the root of a table or index.
    static std::string with_page(const std::string& file, const std::string& name, const std::string& page) {
        write_file(path("page"), file);
        set_db_handle(db_open(path("page").c_str()));
        const auto root = std::stoul(query("select rootpage from sqlite_master where name = '" + name + "'"));
        close_database();
        return std::string(file).replace((root - 1) * 1024, page.size(), page);
    }
    std::string in_condition(Condition condition, const std::string& name, int version) {
        switch (condition) {
            case unrepairable:
                return with_page(database(name, version), "chn_info", std::string(1024, 'x'));
            case repairable:  // the index of a key has no entries
                return with_page(database(name, version), "sqlite_autoindex_chn_comp_info_1",
                                 std::string("\n\0\0\0\0\4\0\0", 8));
            case keyless:
                return database(name, version, "delete from local_port_list;");
            case healthy:
                return database(name, version);
            case missing:
            case empty:
                break;
        }
        return "";
    }
    static void put(const std::string& file, Condition condition, const std::string& bytes) {
        std::filesystem::remove(file);
        if (condition != missing)
            write_file(file, bytes);
    }

    // A start as of a new process, with the main application's default for the channel's name.
    int start(const char* by_default = "default") {
        close_database();
        wipe();
        forget_device();
        std::strcpy(r_.channel[0].name, by_default);
        r_.network.netconfig.mtu = 1;
        return init_database();
    }
    std::string name() const { return r_.channel[0].name; }
    static std::string version() { return query("select version from db_version"); }

    // What the operation log holds, without its times, and with the files as "main" and "backup".
    std::vector<std::string> records() const {
        const std::string log = operation_log();
        std::istringstream lines(log.size() > 70 ? log.substr(70) : "");
        std::vector<std::string> all;
        for (std::string line; std::getline(lines, line);) {
            line = line.substr(std::min(line.find("] ") + 2, line.size()));
            for (const auto& [file, word] : {std::pair{backup_, "backup"}, {main_, "main"}})
                if (const auto at = line.find(file); at != std::string::npos)
                    line.replace(at, file.size(), word);
            all.push_back(line);
        }
        return all;
    }
    // What the check of a file in this condition records of it; empty: nothing.
    static std::string own_line(const char* file, Condition condition) {
        constexpr const char* kSaid[] = {"not exist[2]", "is empty", "format err", "", "key data empty", ""};
        const std::string said = kSaid[condition];
        return said.empty() ? said : "[" + std::string(file) + "]" + said;
    }
    // A new database has no place, or cannot be filled.
    void obstruct(bool no_place) const {
        silent = !no_place;
        if (no_place)
            std::filesystem::create_directories(main_ + ".new/full");
    }
    void clear_the_way() const {
        std::filesystem::remove_all(main_ + ".new");
        answer_again();
    }
};

TEST_F(Start, EveryConditionOfTheTwoFiles) {
    enum Source { main, backup, record };
    constexpr const char* kNames[] = {"main", "backup", "default"};
    const int versions[] = {packed(1175, 5), packed(1180, 3), 0};
    const auto is_good = [](Condition c) { return c == repairable || c == healthy; };
    std::map<Condition, std::string> mains, backups;
    for (const Condition condition : kConditions) {
        mains[condition] = in_condition(condition, "main", versions[main]);
        backups[condition] = in_condition(condition, "backup", versions[backup]);
    }
    for (int both = 0; both < 36; ++both) {
        const Condition m = kConditions[both / 6], b = kConditions[both % 6];
        SCOPED_TRACE("main " + std::to_string(m) + ", backup " + std::to_string(b));
        const Source continues = is_good(m) ? main : is_good(b) ? backup : m == keyless ? main : record;
        for (const std::string& file : {path("db_op_info.log"), std::string("ex1.dump.gz")})
            std::filesystem::remove(file);
        put(main_, m, mains[m]);
        put(backup_, b, backups[b]);
        const std::string log = logged([&] { EXPECT_EQ(start(), 0); });

        std::vector<std::string> lines;
        if (!is_good(m))
            lines = {own_line("main", m), "Main Db is broken"};
        if (!is_good(m) && !is_good(b))
            lines.insert(lines.end(), {own_line("backup", b), "db_restore failed"});
        if (continues == record)
            lines.emplace_back("Db version is -1,Read from cfg");
        EXPECT_THAT(records(), ElementsAreArray(lines));
        EXPECT_EQ(log.find("====totally restore default param====") != log.npos,
                  m == unrepairable && continues == record);
        EXPECT_EQ(
            std::filesystem::exists("ex1.dump.gz"),
            m == repairable || m == unrepairable || (!is_good(m) && (b == unrepairable || b == repairable)));

        EXPECT_EQ(name(), kNames[continues]);
        EXPECT_EQ(query("select name from chn_info"), name());
        EXPECT_EQ(version(), std::to_string(continues == record ? kCurrentVersion : versions[continues]));
        EXPECT_EQ(query("pragma integrity_check"), "ok");
        EXPECT_EQ(query("pragma page_size"), "1024");
        close_database();
        EXPECT_EQ(content(main_), content(backup_));

        // Once more: the second start takes note of the version that it found; the third changes nothing.
        EXPECT_EQ(start(), 0);
        const FileState after_second = file_state();
        EXPECT_EQ(start(), 0);
        EXPECT_TRUE(file_state() == after_second);
        EXPECT_EQ(content(backup_), after_second.first);
        EXPECT_EQ(name(), kNames[continues]);
        for (const auto& entry : std::filesystem::directory_iterator(path("")))
            EXPECT_FALSE(entry.path().string().ends_with(".new")) << entry.path();
    }
}

TEST_F(Start, EveryVersion) {
    constexpr int kRebuilt = packed(1169);
    const struct {
        int version;
        const char* changes;
        int after;
        const char* record;  // of the operation log
    } cases[] = {
        {0,
         "create table \"of \"\"another\"\" schema\"(x); drop table audio_param_info; drop table db_version;",
         kCurrentVersion, "Db version is -1,Read from cfg"},
        {0, "delete from db_version;", kCurrentVersion, "Db version is -2,Read from cfg"},
        {0, "", kCurrentVersion, "Db version is 0,Read from cfg"},
        {-7, "", kCurrentVersion, "Db version is -7,Read from cfg"},
        {packed(3), "", kRebuilt, nullptr},
        {packed(1100, 255), "", kRebuilt, nullptr},
        {packed(1146, 5), "", packed(1169, 5), nullptr},
        {packed(1153), "", kRebuilt, nullptr},
        {packed(1168), "", kRebuilt, nullptr},
        {packed(1167, 1),
         "create trigger no_step before update on db_version when new.version <> old.version "
         "begin select raise(abort, 'test'); end;",
         kRebuilt, "Db patch[1167->1180] failed[1167].Need reconstruct."},
        {packed(1110, 3), "", kRebuilt, "Db patch[1110->1180] failed[1110].Need reconstruct."},
        {packed(1132), "", kRebuilt, "Db patch[1132->1180] failed[1132].Need reconstruct."},
        {packed(1169, 9), "", packed(1169, 9), nullptr},
        {packed(1179), "", packed(1179), nullptr},
        {packed(1180), "", packed(1180), nullptr},
        {packed(1200, 1), "", packed(1200, 1), nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.version >> 8) + " " + c.changes);
        std::filesystem::remove(path("db_op_info.log"));
        write_file(main_, database("gate", c.version, c.changes));
        EXPECT_EQ(start(), 0);
        EXPECT_EQ(records(),
                  c.record == nullptr ? std::vector<std::string>{} : std::vector<std::string>{c.record});
        EXPECT_EQ(name(), "gate");
        EXPECT_EQ(query("select name from chn_info"), "gate");
        EXPECT_EQ(query("select * from db_version"),
                  std::to_string(c.after) + "|" + (c.version > 0 ? std::to_string(c.version) : "NULL"));
        EXPECT_EQ(query("select count(*) from sqlite_master where type = 'table'"), "251");
        close_database();
        EXPECT_EQ(content(main_), content(backup_));
    }
}

TEST_F(Start, AdaptsWhatItLoadsAndRemovesOldFiles) {
    for (const char* file : {"devCfg.bin", "devCfg_backup.bin"})
        write_file(device_path("/velmora/") + file, "old");
    write_file(main_, database("gate", kCurrentVersion,
                               "alter table ntp_config_info drop column satellite_interval;"
                               "insert into intelligent_colour_config(chan_no) values(7);"
                               "alter table ipdome_osdparam_table drop column pt_mode;"));
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(device_path("/velmora")));
    EXPECT_EQ(query("select count(*) from intelligent_colour_config"), "0");
    EXPECT_EQ(check_column_exist(get_db_handle(), "ntp_config_info", "satellite_interval"), 1);
    // All or nothing.
    sql("drop table revise_gps_param_config; alter table ntp_config_info drop column satellite_interval;");
    EXPECT_THAT(logged([] { adapt_db(get_db_handle()); }), HasSubstr("adapt_db alter db error\n"));
    EXPECT_EQ(check_column_exist(get_db_handle(), "ntp_config_info", "satellite_interval"), 0);
}

// What the main application did not answer for is neither in the record nor lost; nor is what no function stores, or
// what a load refused.
TEST_F(Start, RebuildKeepsWhatTheRecordDoesNotHold) {
    capability = 1;
    const std::string bytes = database(
        "gate", packed(1000),
        "update vm_trigger_chain_param set trigger_chain = 77;"
        "insert into cb_point_cfg(idx) values(5);"
        "insert into traffic_illegal_dictionary(idx) values(9999);"
        "update traffic_illegal_dictionary set illegal_name = 'kept';"
        "update week_config_list set whole_day = 'kept' where process_type in (select max(process_type) from "
        "week_config_list);");
    for (const int answer : {0, 1}) {
        SCOPED_TRACE(answer);
        write_file(main_, bytes);
        set_db_handle(db_open(main_.c_str()));
        const Contents before = contents();
        const std::string schedules = query("select process_type, count(*) from week_config_list group by 1");
        capability = answer;
        hardware_count = answer == 0 ? 2 : 0;  // alarms that it counted 16 of
        EXPECT_EQ(start(), 0);
        EXPECT_EQ(version(), std::to_string(packed(1169)));
        const Contents after = contents();
        std::set<std::string> kept{"alarm_in_config", "alarm_out_config", "alarm_trigger_ptz_list",
                                   "cb_point_cfg", "traffic_illegal_dictionary"};
        for (const Table* table : all_tables())
            if (is_passed_over(table->number))
                kept.emplace(table->name);
        for (const std::string& table : kept)
            EXPECT_EQ(after.at(table), before.at(table)) << table;
        EXPECT_EQ(query("select process_type, count(*) from week_config_list group by 1"), schedules);
    }
}

// A database that cannot be made anew keeps its place.
TEST_F(Start, FailedRebuildLeavesTheOldDatabase) {
    const std::string bytes = database("gate", packed(1000));
    for (const bool no_place : {false, true}) {
        SCOPED_TRACE(no_place);
        std::filesystem::remove(path("db_op_info.log"));
        write_file(main_, bytes);
        obstruct(no_place);
        EXPECT_EQ(start(), -1);
        clear_the_way();
        const std::vector<std::string> lines = records();
        EXPECT_EQ(lines.empty() ? "" : lines.back(),
                  no_place ? "" : "db_reconstruct.set_alldata_to_db failed");
        EXPECT_EQ(version(), std::to_string(packed(1000)));
        EXPECT_EQ(query("select name from chn_info"), "gate");
        EXPECT_FALSE(std::filesystem::exists(backup_));
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kStored);
    }
}

TEST_F(Start, FailedUpgradeLeavesTheAccountsWhereTheyAre) {
    UserEntry* const users = r_.users.user;
    std::strcpy(users[0].username, "root");
    std::strcpy(users[0].passwd, "first");
    std::strcpy(users[1].username, "guest");
    write_file(main_, database("gate", packed(1152),
                               "drop table sec_lock_auth_db_info; drop table sec_user_mana_info;"));
    silent = true;
    EXPECT_EQ(start(), -1);
    answer_again();
    EXPECT_EQ(version(), std::to_string(packed(1152)));
    EXPECT_STREQ(users[0].username, "root");
    EXPECT_STREQ(users[1].username, "guest");
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({6})), kStored);

    EXPECT_EQ(start(), 0);
    EXPECT_EQ(version(), std::to_string(packed(1169)));
    const UserEntry* const moved =
        std::find_if(std::begin(r_.users.sec_user), std::end(r_.users.sec_user),
                     [](const UserEntry& u) { return std::strcmp(u.username, "root") == 0; });
    ASSERT_NE(moved, std::end(r_.users.sec_user));
    EXPECT_STREQ(moved->passwd, "first");
}

TEST_F(Start, SalvagesTheNetworkOfADatabaseThatIsGivenUp) {
    r_.sec_lock_auth.db_enc_version = kDefaultVersion;
    std::strcpy(r_.network.pppoe.username, "user");
    r_.network.netconfig.mtu = 1400;
    std::strcpy(r_.platform.zorvy.config.alarm_server, "alarm.example");
    r_.platform.zorvy.config.alarm_port = 77;
    r_.platform.zorvy.config.lbs_port = 78;
    const std::string bytes = in_condition(unrepairable, "main", kCurrentVersion), junk(1024, 'x');
    const struct {
        std::string also_damaged;
        bool network, alarm;
    } cases[] = {{"chn_info", true, true},
                 {"pppoe_config_info", false, true},
                 {"zorvy_config", true, false},
                 {"sec_lock_auth_db_info", false, false},
                 {"all", false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.also_damaged);
        write_file(main_, c.also_damaged == "all" ? junk : with_page(bytes, c.also_damaged, junk));
        std::filesystem::remove(backup_);
        EXPECT_EQ(start(), 0);
        EXPECT_STREQ(r_.network.pppoe.username, c.network ? "user" : "");
        EXPECT_EQ(query("select mtu from netconfig_table"), c.network ? "1400" : "1");
        EXPECT_STREQ(r_.platform.zorvy.config.alarm_server, c.alarm ? "alarm.example" : "");
        EXPECT_EQ(r_.platform.zorvy.config.alarm_port, c.alarm ? 77 : 0);
        EXPECT_EQ(r_.platform.zorvy.config.lbs_port, 0);
        EXPECT_EQ(name(), "default");
    }
}

// ------------------------------------------------------------------------------------- locks and the rest

TEST_F(Start, LosesNothingOfALockedDatabase) {
    write_file(main_, database("gate", kCurrentVersion));
    const FileState state = file_state();
    auto locked = std::make_unique<Locked>();
    EXPECT_EQ(start(), -1);
    EXPECT_GE(std::exchange(pauses, 0), 5);
    EXPECT_EQ(name(), "default");
    EXPECT_TRUE(file_state() == state);
    EXPECT_EQ(operation_log(), "");

    // The lock goes: what a client of the unloaded record wants stored is refused, and the record is loaded.
    locked.reset();
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kRefused);
    EXPECT_EQ(name(), "gate");
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kStored);

    locked = std::make_unique<Locked>();
    on_pause = [&] { pauses == 3 ? locked.reset() : void(); };
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(pauses, 3);
    EXPECT_EQ(name(), "gate");
}

// For ten seconds: what is out of reach for good is restored.
TEST_F(Start, WaitsForADatabaseThatCannotBeReached) {
    const std::string newer = database("newer", kCurrentVersion), older = database("older", kCurrentVersion);
    for (const int seconds : {3, 99}) {
        SCOPED_TRACE(seconds);
        close_database();
        for (const std::string& file : {main_, path("db_op_info.log")})
            std::filesystem::remove(file);
        std::filesystem::create_symlink(main_, main_);
        write_file(backup_, older);
        pauses = 0;
        on_pause = [&] {
            if (pauses != seconds)
                return;
            std::filesystem::remove(main_);
            write_file(main_, newer);
        };
        EXPECT_EQ(start(), 0);
        EXPECT_EQ(name(), seconds == 3 ? "newer" : "older");
        EXPECT_EQ(pauses, seconds == 3 ? 3 : 10);
        EXPECT_EQ(operation_log().empty(), seconds == 3);
    }
}

// The lock comes when the start has found none and the files have been examined.
TEST_F(Start, LockedLoadIsFollowedByNoStore) {
    for (const int version : {0, packed(1000), packed(1168), kCurrentVersion}) {
        SCOPED_TRACE(version);
        write_file(main_, database("gate", version));
        std::strcpy(r_.channel[0].name, "default");
        set_db_handle(db_open(main_.c_str()));
        auto locked = std::make_unique<Locked>();
        EXPECT_EQ(db_getdata_byversion(version), -1);
        locked.reset();
        EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused);
        EXPECT_EQ(name(), "gate");
        EXPECT_EQ(query("select name from chn_info"), "gate");
        EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
    }
}

TEST_F(Start, GivenUpDatabaseThatCannotBeReplacedIsTriedAgain) {
    for (const bool no_place : {false, true}) {
        SCOPED_TRACE(no_place);
        close_database();
        write_file(main_, "no database");
        for (const std::string& file : {backup_, path("db_op_info.log")})
            std::filesystem::remove(file);
        obstruct(no_place);
        EXPECT_EQ(start("first"), -1);
        EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused);
        EXPECT_EQ(content(main_), "no database");
        const auto lines = records();  // the start's alone
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "Db version is -1,Read from cfg"), 1);
        clear_the_way();
        EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused);  // it is made meanwhile
        EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
        EXPECT_EQ(query("select name from chn_info"), "first");
    }
}

// The device runs with the backup's values until it can be copied, and nothing takes the backup's place.
TEST_F(Start, HealthyBackupThatCannotBeCopiedIsKept) {
    const std::string kept = database("backup", kCurrentVersion);
    for (const Condition condition : {missing, empty, unrepairable, keyless}) {
        SCOPED_TRACE(condition);
        const std::string bytes = in_condition(condition, "main", kCurrentVersion);
        close_database();
        put(main_, condition, bytes);
        write_file(backup_, kept);
        std::filesystem::create_directories(main_ + ".new/full");
        EXPECT_EQ(start(), -1);
        EXPECT_EQ(name(), "backup");
        const std::string log = operation_log();
        std::strcpy(r_.channel[0].name, "unsaved");
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kRefused);
        EXPECT_EQ(name(), "unsaved");
        EXPECT_EQ(operation_log(), log);
        int cycles = 0;
        Backup([&](int) { closing_flag = ++cycles == 3; }).run();
        closing_flag = false;
        EXPECT_TRUE(content(backup_) == kept);
        EXPECT_EQ(std::filesystem::exists(main_), condition != missing);
        EXPECT_TRUE(condition == missing || content(main_) == bytes);

        std::filesystem::remove_all(main_ + ".new");
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kRefused);  // it is copied meanwhile
        EXPECT_EQ(name(), "backup");
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kStored);
    }
}

TEST_F(Start, EncryptionOfEarlierAndLaterReleases) {
    constexpr uint32_t kEarlier = 0x01000000, kLater = 0x01000200;
    const auto texts = [&] {
        return r_.network.pppoe.username + std::string(" ") + r_.users.sec_user[0].username + " " +
               r_.users.sec_user[0].passwd + " " + r_.event.sd_card.password;
    };
    const auto stored = [&](uint32_t word, const std::string& changes = "") {
        r_.sec_lock_auth.db_enc_version = word;
        std::strcpy(r_.network.pppoe.username, "user");
        std::strcpy(r_.users.sec_user[0].username, "admin");
        std::strcpy(r_.users.sec_user[0].passwd, "secret");
        std::strcpy(r_.event.sd_card.password, "pass");
        write_file(main_, database("gate", kCurrentVersion, changes));
    };
    const auto word = [] { return query("select db_enc_version from sec_lock_auth_db_info"); };

    // Every text is stored anew under the default scheme, or none.
    stored(kEarlier,
           "create trigger fail before update on sd_card_lock_config begin select raise(abort, ''); end;"
           "create trigger fail2 before insert on sd_card_lock_config begin select raise(abort, ''); end;");
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(word(), std::to_string(kEarlier));
    EXPECT_EQ(r_.sec_lock_auth.db_enc_version, kEarlier);
    sql("drop trigger fail; drop trigger fail2;");
    for (int n = 0; n < 2; ++n) {
        EXPECT_EQ(start(), 0);
        EXPECT_EQ(word(), std::to_string(kDefaultVersion));
        EXPECT_EQ(texts(), "user admin secret pass");
        EXPECT_EQ(content(main_), content(backup_));
    }
    stored(kLater);
    EXPECT_THAT(logged([&] { EXPECT_EQ(start(), 0); }),
                HasSubstr("db_version:[65538], cur_version[65537]\n"));
    EXPECT_EQ(texts(), "user admin 58213 pass");

    // Before the encryption there was no word, and the texts were plain, whatever the record's word is.
    stored(kDefaultVersion,
           "drop table sec_lock_auth_db_info; update db_version set version = 1153 << 8;"
           "update pppoe_config_info set username = 'plain';");
    close_database();
    wipe();
    r_.sec_lock_auth.db_enc_version = kDefaultVersion;
    EXPECT_EQ(init_database(), 0);
    EXPECT_STREQ(r_.network.pppoe.username, "plain");
}

// ------------------------------------------------------------------------------------- dump and reload

TEST_F(Start, ReloadCountsOnlyWhenItIsComplete) {
    const std::string bytes = in_condition(repairable, "main", kCurrentVersion);
    int code = 0;
    EXPECT_EQ(db_isok(nullptr, &code), -1);
    EXPECT_EQ(db_isok(main_.c_str(), nullptr), -1);

    // The dump cannot be written, or the file's name is none that a command takes.
    const std::string quoted = path("it's"), blank = path("a b"), far = path(std::string(90, 'x'));
    for (const std::string& file : {main_, quoted, blank, far}) {
        SCOPED_TRACE(file);
        write_file(file, bytes);
        std::filesystem::remove_all("ex1.dump.gz");
        if (file == main_)
            std::filesystem::create_directories("ex1.dump.gz/full");
        EXPECT_EQ(db_isok(file.c_str(), &code), -1);
        EXPECT_EQ(code, kUnrepairable);
        EXPECT_EQ(content(file), bytes);
    }
    std::filesystem::remove_all("ex1.dump.gz");
    EXPECT_EQ(db_isok(main_.c_str(), &code), 0);
    EXPECT_EQ(code, kUnrepairable);  // untouched

    // The programs of the device fail in the middle.
    const std::string programs = path("bin"), found = std::getenv("PATH");
    std::filesystem::create_directories(programs);
    const std::pair<const char*, const char*> failing[] = {
        {"gzip", "head -c 100"},
        {"gzip", "printf 'BEGIN;\\n' | /bin/gzip -c"},
        {"zcat", "/bin/zcat \"$@\" | head -n 100"},
        {"sqlite3", "case \"$1\" in *.new) exec cat >/dev/null;; esac; exec /usr/bin/sqlite3 \"$@\""},
        // The disk is full in the middle of the reload, and SQLite has rolled back what was before.
        {"sqlite3",
         "case \"$1\" in *.new) exec tail -n 30 | /usr/bin/sqlite3 \"$@\" ;; esac; exec /usr/bin/sqlite3 \"$@\""},
    };
    for (const auto& [program, script] : failing) {
        SCOPED_TRACE(script);
        const std::string file = programs + "/" + program;
        write_file(file, std::string("#!/bin/sh\n") + script + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::all);
        write_file(main_, bytes);
        setenv("PATH", (programs + ":" + found).c_str(), 1);
        EXPECT_EQ(db_isok(main_.c_str(), &code), -1);
        setenv("PATH", found.c_str(), 1);
        EXPECT_EQ(content(main_), bytes);
        EXPECT_FALSE(std::filesystem::exists(main_ + ".new"));
        std::filesystem::remove(file);
    }
    EXPECT_EQ(db_isok(main_.c_str(), &code), 0);
}

// The shell that reloads a dump runs all that is in it; a schema that another wrote may hold commands.
TEST_F(Start, RepairRunsNoCommandsOfADatabase) {
    const std::string made = path("made");
    for (const std::string& text :
         {"\n.shell touch " + made + "\n", " attach ''" + made + "'' as more; create table more.t(a);"}) {
        put(main_, healthy, in_condition(repairable, "gate", kCurrentVersion));
        set_db_handle(db_open(main_.c_str()));
        sql("create table odd(a); pragma writable_schema = on;"
            "update sqlite_master set sql = 'create table odd(a);" +
            text + "' where name = 'odd';");
        EXPECT_EQ(start(), 0);
        EXPECT_FALSE(std::filesystem::exists(made)) << text;
    }
}

}  // namespace
