// The store: files, schema, transactions.
#include "core_fixture.h"
#include "created_table.h"
#include "recovery.h"
#include "schema.h"

// In the place of the C library's: a test waits for nothing.
unsigned sleep(unsigned) {
    ++pauses;
    if (on_pause)
        on_pause();
    return 0;
}

int usleep(useconds_t) {
    ++pauses;
    return 0;
}

namespace {

using testing::HasSubstr;

class Store : public Core {
  protected:
    static std::string tables_and_version() {
        return query(
            "select count(*), (select version from db_version) from sqlite_master where type = 'table'");
    }

    // A database whose channel has this name, at the current version.
    void stored(const char* name) {
        std::strncpy(r_.channel[0].name, name, sizeof r_.channel[0].name);
        save_all();
        EXPECT_EQ(db_update_version(kCurrentVersion, get_db_handle()), 0);
    }
};

TEST_F(Store, FilesAreComparedBySizeAndBlockSums) {
    const std::string a(1024, 'a'), b(1024, 'b'), one = path("one"), two = path("two"), none = path("none");
    const struct {
        std::string first, second;
        int equal;
    } cases[] = {
        {"", "", 1},
        {"a", "b", 0},
        {"a", "ab", 0},
        {"abcd", "cdab", 1},
        {"abcd", "badc", 0},  // the sums are of little-endian words
        {"abc", "ab\xe3", 0},
        {"ab\xe3", "ab\xe3", 1},
        {a + b, b + a, 0},
        {a + b, a + b, 1},
        {a + "abcd", a + "cdab", 1},
    };
    for (const auto& c : cases) {
        write_file(one, c.first);
        write_file(two, c.second);
        EXPECT_EQ(check_file_equal(one.c_str(), two.c_str()), c.equal) << c.first << " " << c.second;
        EXPECT_EQ(check_file_not_empty(one.c_str()), c.first.empty() ? -1 : 0);
    }
    for (const auto& files : {std::pair{one.c_str(), none.c_str()}, {none.c_str(), one.c_str()}})
        EXPECT_THAT(logged([&] { EXPECT_EQ(check_file_equal(files.first, files.second), 0); }),
                    HasSubstr("can not open file " + none));
    EXPECT_EQ(check_file_equal(nullptr, one.c_str()), 0);
    EXPECT_EQ(check_file_equal(one.c_str(), nullptr), 0);
    EXPECT_EQ(check_file_exist(nullptr), -1);
    EXPECT_EQ(check_file_not_empty(none.c_str()), -1);
}

TEST_F(Store, FileTakesThePlaceOfAnotherWithoutItsJournal) {
    const std::string one = path("one"), two = path("two");
    for (const bool there : {true, false}) {
        write_file(one, "new");
        write_file(two + "-journal", "stale");
        if (there)
            write_file(two, "old");
        EXPECT_TRUE(replace_file(one.c_str(), two.c_str()));
        EXPECT_EQ(content(two), "new");
        EXPECT_FALSE(std::filesystem::exists(one) || std::filesystem::exists(two + "-journal"));
        std::filesystem::remove(two);
    }
    write_file(two, "old");
    std::filesystem::create_directories(path("folder/full"));
    for (const auto& [from, to] : {std::pair{one, two}, {two, path("none/two")}, {two, path("folder")}}) {
        EXPECT_FALSE(replace_file(from.c_str(), to.c_str())) << from << to;
        EXPECT_EQ(content(two), "old");
    }
}

TEST_F(Store, CreatingTwiceKeepsWhatIsThere) {
    EXPECT_EQ(create_list().size(), 250u);
    EXPECT_EQ(tables_and_version(), "251|NULL");
    sql("insert into audio_param_info(idx) values(7);");
    EXPECT_EQ(db_create(get_db_path()), 0);
    EXPECT_EQ(creat_all_table(get_db_handle()), 0);
    EXPECT_EQ(query("select idx from audio_param_info"), "7");
    EXPECT_EQ(creat_all_table(nullptr), -1);

    // Every entry runs, also after one that fails, and the failure is recorded.
    sql("drop table chn_info; drop table push_org_preview_server_config; create index chn_info on "
        "dev_info(dev_id);");
    EXPECT_NE(creat_all_table(get_db_handle()), 0);
    EXPECT_EQ(query("select count(*) from push_org_preview_server_config"), "0");
    EXPECT_THAT(operation_log(), HasSubstr("] create table[3] failed\n"));
    EXPECT_EQ(db_create(path("none/db").c_str()), -1);
    EXPECT_EQ(pauses, 1);  // before the second attempt to open it
}

// Against what SQLite makes of the list; it has capitals of its own for "integer".
TEST_F(Store, CreatedTablesAreReadFromTheList) {
    const std::string made = query("select name from sqlite_master where type = 'table' order by rowid");
    std::string read;
    for (const CreatedTable& table : created_tables()) {
        const std::string name(table.name);
        read += (read.empty() ? "" : ";") + name;
        EXPECT_EQ(created_table(name), &table);
        std::string columns;
        for (const CreatedColumn& column : table.columns) {
            columns +=
                (columns.empty() ? "" : ";") + std::string(column.name) + "|" + std::string(column.type);
            EXPECT_EQ(table.column(column.name), &column);
        }
        EXPECT_EQ(columns, query("select name, lower(type) from pragma_table_info('" + name + "')"));
        EXPECT_EQ(std::count(table.statement.begin(), table.statement.end(), ';'), 1) << name;
    }
    EXPECT_EQ(read, made);
    EXPECT_EQ(created_table("CHN_info"), created_table("chn_info"));
    for (const char* part : {"", "chn", "chn_inf", "chn_info2", "primary"})
        EXPECT_EQ(created_table(part), nullptr) << part;
    for (const char* part : {"", "osd", "sd_size", "primary", "chn_info"})
        EXPECT_EQ(created_table("chn_info")->column(part), nullptr) << part;
}

// What a save needs to survive a power cut is set before anything is stored, however late that is possible.
TEST_F(Store, NothingIsStoredOnAConnectionWithoutItsSettings) {
    const auto settings = [] { return query("pragma journal_mode") + query("pragma synchronous"); };
    const auto save = [this] {
        r_.channel[0].name[0] ^= 1;
        return call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3}));
    };
    EXPECT_EQ(save(), kStored);
    close_database();
    auto locked = std::make_unique<Locked>();
    set_db_handle(db_open(get_db_path()));
    EXPECT_THAT(logged([&] { EXPECT_EQ(save(), kRefused); }),
                HasSubstr("nothing is stored: database is locked"));
    locked.reset();
    EXPECT_EQ(save(), kStored);
    EXPECT_EQ(settings(), "truncate2");

    // Another process keeps the file in a mode of its own: what is stored can be loaded.
    close_database();
    db_handle other = db_connect(0, get_db_path(), 0, 0);
    EXPECT_EQ(db_execsql(other, "pragma journal_mode = wal; select * from chn_info;"), 0);
    set_db_handle(db_open(get_db_path()));
    const Contents before = contents();
    EXPECT_EQ(save(), kRefused);
    EXPECT_EQ(call(EN_SAVE_WIFI_MODE_CONFIG), kRefused);
    EXPECT_EQ(call(EN_SET_DB_VERSION), kRefused);
    EXPECT_EQ(difference(before, contents()), "");
    EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({3})), kStored);
    db_disconnect(other);
    EXPECT_EQ(save(), kStored);
    EXPECT_EQ(settings(), "truncate2");
}

TEST_F(Store, MissingDatabaseIsMadeAgainByTheNextFullSave) {
    randomise(1);
    EXPECT_EQ(set_alldata_to_db(), 0);
    const FileState state = file_state();
    EXPECT_EQ(makesure_database_exist(), 0);
    EXPECT_TRUE(file_state() == state);

    std::filesystem::remove(get_db_path());
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
    ASSERT_TRUE(std::filesystem::exists(get_db_path()));
    EXPECT_EQ(tables_and_version(), "251|302080");
    EXPECT_EQ(query("select dev_type from dev_info"), std::to_string(r_.device.dev_info.dev_type));

    // Where no file can be made nothing is said to be stored, neither a change nor an unchanged record.
    std::filesystem::remove_all(path(""));
    EXPECT_THAT(logged([] { EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused); }),
                HasSubstr("creat_database:sqldb = NULL\n"));
    r_.device.dev_info.dev_type ^= 1;
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused);
    device_prepare_root();
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
    EXPECT_TRUE(std::filesystem::exists(get_db_path()));
    EXPECT_EQ(query("select dev_type from dev_info"), std::to_string(r_.device.dev_info.dev_type));
}

TEST_F(Store, LockedDatabaseIsNotMadeAnewAndStaysUsable) {
    stored("gate");
    const FileState state = file_state();
    {
        const Locked locked;
        EXPECT_EQ(rebuild_from_record(kCurrentVersion), Rebuilt::not_created);
    }
    EXPECT_TRUE(file_state() == state);
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
}

// ------------------------------------------------------------------------------------- loading and storing all

TEST_F(Store, TablesThatTheDeviceLacksArePassedOver) {
    for (const auto& work : {get_alldata_from_db, set_alldata_to_db})
        for (const int present : {0, 1}) {
            capability = present;
            std::istringstream log(logged([&] { EXPECT_EQ(work(), 0); }));
            int refusals = 0;
            for (std::string line; std::getline(log, line);)
                refusals += line.ends_with("device do not support intell monitor");
            EXPECT_EQ(refusals, present == 0 ? 12 : 0);
        }
}

TEST_F(Store, StatementThatCannotBePreparedGivesSqlitesOwnCode) {
    close_database();
    const Locked locked;
    set_db_handle(db_open(get_db_path()));
    const auto failure = [](const char* function) {
        return logged([&] { EXPECT_NE(call_table_function(function, 0), 0); });
    };
    EXPECT_THAT(failure("db_get_exception"), HasSubstr(": 5\n"));
    EXPECT_THAT(failure("db_set_sec_user_info"), HasSubstr("db_query_row_num error rc 5:\n"));
}

TEST_F(Store, FailingLoadGoesOnAndTellsTheLastFailure) {
    r_.service.cur_wifi_mode = 5;
    stored("gate");
    sql("drop table wdr_config_table; update chn_info set chn_index = 2;");
    wipe();
    const auto log = logged([] { EXPECT_EQ(get_alldata_from_db(), -2); });
    for (const char* table : {"3", "23"})
        EXPECT_THAT(log, HasSubstr(std::string("get_alldata_from_db failed,table:") + table + "\n"));
    EXPECT_EQ(r_.service.cur_wifi_mode, 5);
    EXPECT_EQ(sqlite3_get_autocommit(get_db_handle()), 1);
}

}  // namespace
