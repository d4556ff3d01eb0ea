// The patch chain: every older schema, synthesised from the newest by taking away what the later steps bring.
#include "chain.h"

#include "old_databases.h"
#include "repair.h"

namespace {

using testing::HasSubstr;

class Chain : public OldDatabases {
  protected:
    static std::string columns_of(const std::string& table) {
        return query(
            "select group_concat(name || type || pk) from (select name, lower(replace(type, 'integer', "
            "'int')) as type, pk from pragma_table_info('" +
            table + "') order by name)");
    }
    static std::string schema() {
        std::string all;
        for (const CreatedTable& table : created_tables())
            all += std::string(table.name) + columns_of(std::string(table.name)) + "\n";
        return all;
    }
};

TEST_F(Chain, StepsNameFunctionsThatThereAre) {
    int last = 0;
    for (const ChainStep& step : chain_steps()) {
        SCOPED_TRACE(step.from);
        EXPECT_GT(step.from, last);
        EXPECT_GT(step.to, std::max(step.from, step.also_from));
        last = step.from;
        std::vector<std::string> saved = words(step.saves);  // and what their tables' steps name
        for (std::size_t i = 0; i < saved.size(); ++i) {
            const NamedFunction function = find_function(saved[i]);
            ASSERT_EQ(function.role, NamedFunction::Role::set) << saved[i];
            for (const Table* t = function.table; t != nullptr; t = next_saved_part(*t))
                for (const Step& inner : t->steps)
                    if (!inner.function.empty())
                        saved.emplace_back(inner.function);
        }
        for (const std::string& name : words(step.loads))
            EXPECT_EQ(find_function(name).role, NamedFunction::Role::get) << name;
        // What a step makes anew it fills again, with the rows of every function that stores there: the start may be cut
        // before a later step does.
        for (const std::string& name : remakes_of(step))
            for (const Table* table : all_tables())
                if (table->name == name && !table->set.empty()) {
                    EXPECT_NE(std::find(saved.begin(), saved.end(), table->set), saved.end()) << table->set;
                }
    }
    EXPECT_EQ(chain_steps().front().from, kLowestPatchableMajor);
    EXPECT_EQ(chain_steps().back().to, kLastPatchedMajor);
}

// Also of a device that has none of the capabilities, and with a record that another process has filled: what the
// old database held is in the record and in the database, and nothing is missing in the schema.
class ChainFrom : public Chain, public testing::WithParamInterface<int> {};
constexpr int kParts = 4;  // to run beside each other
INSTANTIATE_TEST_SUITE_P(Part, ChainFrom, testing::Range(0, kParts));

TEST_P(ChainFrom, EveryListedVersionKeepsItsValues) {
    const std::string newest = schema();
    for (const ChainStep& step : chain_steps())
        for (const int from : {step.from, step.also_from}) {
            if (from == 0 || from % kParts != GetParam())
                continue;
            SCOPED_TRACE(from);
            randomise(static_cast<unsigned>(from));
            older_database(from, 5);
            const auto original = std::make_unique<DEVICECONFIG>(r_);
            randomise(1);
            static_cast<void>(get_alldata_from_db());  // tables are missing
            const ChainEnd end = run_patch_chain(from << 8 | 5);
            EXPECT_TRUE(end.complete());
            EXPECT_EQ(end.version, kRebuiltVersion | 5);
            EXPECT_EQ(db_get_version(get_db_handle()), end.version);
            EXPECT_TRUE(schema() == newest);
            const auto kept = std::make_unique<DEVICECONFIG>(r_);
            wipe();
            load_all();
            for (const Table* table : all_tables())
                for (const Cell& cell : cells_of_table(*table)) {
                    const std::string column(cell.field->name), name(table->name);
                    if (name == "local_port_list_ext") {  // made from another table by the first step
                        EXPECT_EQ(cell_text(*kept, cell), cell_text(r_, cell)) << address_of(cell);
                    }
                    if (table->strategy == Strategy::packed || !has(name, column, from))
                        continue;
                    EXPECT_EQ(cell_text(r_, cell), cell_text(*original, cell)) << address_of(cell);
                    EXPECT_EQ(cell_text(*kept, cell), cell_text(*original, cell)) << address_of(cell);
                }
        }
}

TEST_F(Chain, UnlistedVersionsEndItWhereTheyAre) {
    for (const int major : {1000, 1100, 1110, 1115, 1120, 1132, 1169, 1180}) {
        EXPECT_EQ(db_update_version(major << 8, get_db_handle()), 0);
        const Contents before = contents();
        const ChainEnd end = run_patch_chain(major << 8);
        EXPECT_EQ(end.complete(), major >= 1169) << major;
        EXPECT_FALSE(end.step_failed);
        EXPECT_EQ(end.version, major << 8);
        EXPECT_EQ(difference(before, contents()), "");
    }
    close_database();
    EXPECT_TRUE(run_patch_chain(1146 << 8).step_failed);
}

TEST_F(Chain, FailedStepLeavesTheVersionBefore) {
    const struct {
        int from, stops_at;
        const char *spoil, *said;
    } cases[] = {
        {1161, 1162,
         "create table if not exists active_mcast_param(idx integer primary key);"
         "create trigger t before insert on active_mcast_param begin select raise(fail, 'x'); end;",
         "parampatchfor_version_1162 save error\n"},
        {1161, 1162, "create trigger t before insert on chn_info begin select raise(fail, 'x'); end;",
         "parampatchfor_version_1162 save error\n"},
        {1104, 1104, "drop table audio_param_info;", "alter table error\n"},
        {1107, 1107, "drop table dnf_config_table;", "do_parampatch] parampatch for version 1107\n"},
        {1107, 1107, "drop table dnf_config_table;", "execute sql error\n"},
        {1107, 1107, "drop table dnf_config_table;", "do_parampatch for version 1107 failed\n"},
        {1101, 1101, "drop table local_port_list;", "delete from local_port_list error\n"},
        {1131, 1131,
         "create trigger t before update of qp_offset on chn_comp_info begin select raise(fail, 'x'); end;",
         "update chn_comp_info qp_offset err\n"},
        {1153, 1153, "drop table disk_quota_list;", "alter db error\n"},
        {1157, 1158, "drop table chn_info;", "alter db error\n"},
    };
    for (const auto& c : cases) {
        older_database(c.from);
        sql(c.spoil);
        EXPECT_EQ(db_get_version(get_db_handle()), c.from << 8);
        EXPECT_THAT(logged([&] {
                        const ChainEnd end = run_patch_chain(c.from << 8);
                        EXPECT_TRUE(end.step_failed && !end.complete());
                        EXPECT_EQ(end.version, c.stops_at << 8);
                    }),
                    HasSubstr(c.said));
        EXPECT_EQ(db_get_version(get_db_handle()), c.stops_at << 8);
        EXPECT_EQ(sqlite3_get_autocommit(get_db_handle()), 1);
        EXPECT_TRUE(c.stops_at != 1162 || columns_of("chn_info").find("battery") == std::string::npos);
    }
}

// Before its step a database has no word, and its texts are clear, whatever is stored.
TEST_F(Chain, EncryptionComesWithItsStep) {
    const auto stored = [] { return query("select passwd from email_config_info"); };
    const std::string word_table(created_table("sec_lock_auth_db_info")->statement);
    for (const auto& [fails, has_row] : {std::pair{true, false}, {false, false}, {false, true}}) {
        wipe();
        older_database(1136);
        if (has_row)
            sql(word_table + "insert into sec_lock_auth_db_info(idx, db_enc_version) values(1, 0);");
        std::strcpy(r_.users.user[0].username, "admin");
        std::strcpy(r_.users.user[0].passwd, "first");
        std::strcpy(r_.users.user[1].username, "guest");
        set_db_enc_version(kDefaultVersion);
        {
            Work work;
            ASSERT_TRUE(work.begin(all_tables()));
            ASSERT_EQ(save_table(*find_table("user_mana_info")), 0);
            ASSERT_TRUE(work.commit());
        }
        sql("update email_config_info set passwd = 'secret';");
        wipe();
        static_cast<void>(get_alldata_from_db());
        EXPECT_EQ(get_db_enc_version(), 0u);
        if (fails)
            sql("create trigger t before insert on alarm_in_config begin select raise(fail, 'x'); end;");
        const ChainEnd end = run_patch_chain(1136 << 8);
        EXPECT_EQ(end.complete(), !fails);
        EXPECT_EQ(end.version >> 8, fails ? 1152 : 1169);
        EXPECT_EQ(get_db_enc_version(), fails ? 0 : kDefaultVersion);
        EXPECT_EQ(stored() == "secret", fails);
        if (fails)
            continue;
        EXPECT_EQ(query("select db_enc_version from sec_lock_auth_db_info"), std::to_string(kDefaultVersion));
        wipe();
        EXPECT_EQ(get_alldata_from_db(), 0);
        EXPECT_EQ(query("select user_num from sec_user_mana_info where idx = 1"), "2");
        EXPECT_STREQ(r_.users.sec_user[0].passwd, "first");
        EXPECT_STREQ(r_.users.sec_user[1].username, "guest");
        EXPECT_STREQ(r_.service.email.passwd, "secret");
    }
}

// Schedules of intelligent rules, in a list that does not tell channels apart yet.
TEST_F(Chain, RulesSchedulesOfAnOlderListAreTheFirstChannels) {
    maxEnChanNo = 2;
    sql("alter table week_config_list drop column chan_no;"
        "insert into week_config_list(process_type, scene, rule, begin_end_time) values(12, 2, 3, '7:8:');");
    const Contents before = contents();
    EXPECT_EQ(run("db_get_alarmtime_config"), 0);
    EXPECT_EQ(difference(before, contents()), "");
    const auto loaded = std::make_unique<DEVICECONFIG>(r_);
    wipe();
    EXPECT_EQ(add_created_column(get_db_handle(), "week_config_list", "chan_no"), 0);
    EXPECT_EQ(run("db_get_alarmtime_config"), 0);
    EXPECT_EQ(std::memcmp(loaded.get(), &r_, sizeof r_), 0);
    wipe();
    EXPECT_NE(std::memcmp(loaded.get(), &r_, sizeof r_), 0);
}

}  // namespace
