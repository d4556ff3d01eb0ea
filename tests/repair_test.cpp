// What an older database lacks is added when a statement needs it.
#include "core_fixture.h"

#include "alter.h"
#include "created_table.h"
#include "repair.h"

namespace {

using testing::HasSubstr;

class Repair : public Core {
  protected:
    static std::string columns_of(const std::string& table) {
        return query(
            "select group_concat(name || ' ' || lower(type)) from (select * from pragma_table_info('" +
            table + "') order by name)");
    }
    static std::string schema() { return query("select sql from sqlite_master order by name"); }
};

TEST_F(Repair, TextsRunAgainWithWhatTheyLacked) {
    const struct {
        const char *before, *sql, *found, *value;
    } cases[] = {
        {"alter table chn_info drop column osd_size;",
         "replace into chn_info(chn_index, osd_size) values(1, 'x');",
         "select osd_size, (select type from pragma_table_info('chn_info') where name = 'osd_size') from chn_info",
         "x|varchar(64)"},
        {"alter table security_config drop column https_enable; insert into security_config(idx) values(1);",
         "update security_config set https_enable = 1;", "select https_enable from security_config", "1"},
        // A name that ends another one is no part of it; two columns of one statement.
        {"alter table front_other_config drop column mirror; alter table front_other_config drop column eptz;",
         "  INSERT INTO  front_other_config (idx, mirror, eptz) values(1, 2, 3);",
         "select mirror, eptz from front_other_config", "2|3"},
        {"drop table lte_4g_param;", "insert into lte_4g_param(idx) values(1);",
         "select count(*) from lte_4g_param", "1"},
        // The second table of an entry that makes two.
        {"drop table ipdome_ptz_preset_new;", "insert into ipdome_ptz_preset_new(idx) values(1);",
         "select count(*) from ipdome_ptz_preset_new", "1"},
        // The statement's table stands at its start.
        {"alter table dev_info drop column dev_name; insert into dev_info(dev_id) values(1);",
         "update dev_info set dev_name = 'insert into chn_info (';", "select dev_name from dev_info",
         "insert into chn_info ("},
        // Rows that had no channel are the first one's.
        {"alter table week_config_list drop column chan_no; insert into week_config_list(process_type) values(9);",
         "update week_config_list set begin_end_time = '1' where process_type = 9 and chan_no = 1;",
         "select begin_end_time, chan_no from week_config_list", "1|1"},
        {"drop table db_version; create table db_version(version integer primary key); insert into db_version "
         "values(5);",
         "update db_version set old_version = 7;", "select * from db_version", "5|7"},
    };
    for (const auto& c : cases) {
        fresh_database();
        sql(c.before);
        EXPECT_EQ(db_execsql_adapt(get_db_handle(), c.sql), 0) << c.sql;
        EXPECT_EQ(query(c.found), c.value) << c.sql;
    }
}

TEST_F(Repair, NothingElseIsRepaired) {
    sql("drop table chn_info; drop table lte_4g_param; alter table wdr_config_table drop column enable;");
    const std::string before = schema(), name(3000, 'n');
    const struct {
        std::string sql;
        const char* said;
    } cases[] = {
        {"delete from chn_info;", "It's not a update record sql:delete from chn_info;"},
        {"select * from chn_info;", "It's not a update record sql:"},
        {"alter table chn_info add column x;", "It's not a update record sql:"},
        {"update dev_info set no_such = 1;", "no such column:no_such"},
        {"update dev_info set type = 1;", "no such column:type"},  // a part of dev_type
        {"update dev_info set primary_key = 1;", "find_create_sql_by_tablename_and_column failed 1...\n"},
        {"update no_such set a = 1;", "find_create_sql_by_tablename_and_column failed 2...\n"},
        {"update lte set a = 1;", "find_create_sql_by_tablename_and_column failed 2...\n"},
        {"update dev_info set dev_name = (select name from chn_info);",
         "find_create_sql_by_tablename_and_column failed 2...\n"},
        {"update " + name + " set a = 1;", "tablename too long(3000), please check\n"},
        {"update dev_info set " + name + " = 1;", "failed 1...\n"},
        {"update", "It's not a update record sql:update\n"},
        {"update ", "parse_tablename_from_sql failed...do nothing\n"},
        {"update (", "parse_tablename_from_sql failed...do nothing\n"},
        {"update dev_info sot dev_name = 1;", "errmsg_parse_ret = 2\n"},
    };
    for (const auto& c : cases) {
        EXPECT_THAT(logged([&] { EXPECT_EQ(db_execsql_adapt(get_db_handle(), c.sql.c_str()), 1); }),
                    HasSubstr(c.said))
            << c.sql;
        EXPECT_EQ(db_execsql_adapt(get_db_handle(), "update dev_info set dev_type = 1;"), 0);
    }
    EXPECT_EQ(db_execsql_adapt(nullptr, "select 1;"), -1);
    EXPECT_EQ(db_execsql_adapt(get_db_handle(), nullptr), -1);
    EXPECT_EQ(run("db_get_chn_info"), -1);  // nor does a load change the schema
    EXPECT_EQ(run("db_get_wdr_config"), 0);
    EXPECT_EQ(schema(), before);
    const Locked locked;
    EXPECT_EQ(db_execsql_adapt(get_db_handle(), "insert into dev_info(dev_id) values(1);"), SQLITE_BUSY);
}

TEST_F(Repair, FailuresInARowAreRefusedOnce) {
    const auto run = [](const char* text) { return db_execsql_adapt(get_db_handle(), text); };
    constexpr const char* kGood = "update dev_info set dev_type = 1;";
    const auto fail = [&](int times) {
        for (int i = 0; i < times; ++i)
            EXPECT_EQ(run("update dev_info set no_such = 1;"), 1);
    };
    EXPECT_EQ(run(kGood), 0);
    for (const bool repairs : {false, true}) {
        fail(20);
        if (repairs)
            sql("alter table dev_info drop column dev_type;");
        EXPECT_EQ(run(kGood), 0);  // starts the count anew
        fail(21);
        EXPECT_THAT(logged([&] { EXPECT_EQ(run(kGood), 1); }), HasSubstr("db_execsql too many time\n"));
    }
}

TEST_F(Repair, MessagesAreReadWhole) {
    const struct {
        const char* message;
        MissingPart::Kind kind;
        const char* name;
    } cases[] = {
        {"no such column: osd_size", MissingPart::column, "osd_size"},
        {"table chn_info has no column named x4", MissingPart::column, "x4"},
        {"no such table: lte_4g_param", MissingPart::table, "lte_4g_param"},
        {"no such column: \"x\" - should this be a string?", MissingPart::column, ""},
        {"no such table: ", MissingPart::table, ""},
        {"near \"x\": syntax error", MissingPart::other, ""},
    };
    for (const auto& c : cases) {
        const MissingPart part = parse_errmsg(c.message);
        EXPECT_TRUE(part.kind == c.kind && part.name == c.name) << c.message;
    }
}

// Every type of the create list can be added, and adding again changes nothing.
TEST_F(Repair, ColumnsAreAddedWithTheirTypes) {
    for (const CreatedTable& table : created_tables()) {
        const std::string name(table.name), whole = columns_of(name);
        set_db_handle(db_connect(0, ":memory:", 0, 0));
        ASSERT_EQ(add_table(get_db_handle(), std::string(table.statement).c_str()), 0);
        for (const CreatedColumn& column : table.columns) {
            EXPECT_EQ(add_created_column(get_db_handle(), table.name, column.name), 0);
            // A key's column stays.
            (void)db_execsql(get_db_handle(),
                             ("alter table " + name + " drop column " + std::string(column.name)).c_str());
            EXPECT_EQ(add_created_column(get_db_handle(), table.name, column.name), 0) << name;
        }
        EXPECT_EQ(columns_of(name), whole);
        set_db_handle(db_open(get_db_path()));
    }
    EXPECT_THAT(logged([] {
                    EXPECT_EQ(add_column(get_db_handle(), "chn_info", "osd_size", "int"), 0);
                    EXPECT_EQ(add_column(get_db_handle(), "no_such", "a", "int"), -1);
                }),
                testing::AllOf(HasSubstr("column osd_size already exists in table chn_info\n"),
                               HasSubstr("ERROR: failed to add column a to table no_such\n")));
    EXPECT_EQ(add_column(nullptr, "chn_info", "a", "int"), -1);
    EXPECT_EQ(check_column_exist(get_db_handle(), "chn_info", nullptr), 0);
    EXPECT_EQ(add_created_column(get_db_handle(), "chn_info", "no_such"), -1);
}

// Every table that functions store: a save makes it, and again its columns where there are only the keys, for which
// its statements have been prepared before.
TEST_F(Repair, EverySaveRepairsItsTable) {
    std::map<std::string, std::string> whole, keys;
    for (const CreatedTable& table : created_tables()) {
        const std::string name(table.name);
        whole[name] = columns_of(name);
        keys[name] = query("select group_concat(name) from pragma_table_info('" + name + "') where pk > 0");
    }
    std::set<std::string> done;
    for (const Table* table : all_tables()) {
        const std::string name(table->name);
        // An entry that only updates has another one for its rows.
        if (table->set.empty() || table->save.empty() || table->strategy == Strategy::update_only ||
            !whole.contains(name) || !done.insert(name).second)
            continue;
        set_db_handle(db_connect(0, ":memory:", 0, 0));
        EXPECT_EQ(save_table(*table), 0) << name;
        EXPECT_EQ(columns_of(name), whole[name]);
        sql("drop table " + name);
        sql("create table " + name + "(" +
            (keys[name].empty() ? "x" : keys[name] + ", primary key(" + keys[name] + ")") + ");");
        EXPECT_EQ(save_table(*table), 0) << name;
        for (const Statement& s : table->save)
            for (const Slot& slot : s.slots)
                EXPECT_EQ(
                    check_column_exist(get_db_handle(), name.c_str(), std::string(s.column(slot)).c_str()), 1)
                    << name << "." << s.column(slot);
        set_db_handle(db_open(get_db_path()));
    }
    EXPECT_GT(done.size(), 100u);
}

}  // namespace
