#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "device_db.h"

namespace fs = std::filesystem;

namespace {

class PlatformDb : public testing::Test {
  protected:
    PlatformDb() {
        std::string pattern = testing::TempDir() + "dbXXXXXX";
        folder_ = mkdtemp(pattern.data());
        path_ = folder_ + "/db";
        db_ = db_connect(0, path_.c_str(), 0, 0);
    }
    ~PlatformDb() override {
        db_disconnect(db_);
        fs::remove_all(folder_);
    }
    std::string folder_, path_;
    db_handle db_ = nullptr;
};

constexpr const char* kTable =
    "create table t(id integer primary key, Name text);"
    "insert into t values(1, 'one'); insert into t values(2, ''); insert into t values(3, null);";

TEST_F(PlatformDb, CursorHoldsRowsAsText) {
    ASSERT_NE(nullptr, db_);
    EXPECT_TRUE(fs::exists(path_));
    ASSERT_EQ(0, db_execsql(db_, kTable));
    db_cursor cursor;
    ASSERT_EQ(0, db_query_open_v2(db_, "select * from t order by id; -- all", &cursor));
    EXPECT_EQ(3, db_query_rec_count_v2(&cursor));
    EXPECT_STREQ("1", db_query_fields_v2(&cursor, "ID", 0));
    EXPECT_STREQ("one", db_query_fields_v2(&cursor, "name", 0));
    EXPECT_STREQ("", db_query_fields_v2(&cursor, "name", 1));
    EXPECT_EQ(nullptr, db_query_fields_v2(&cursor, "name", 2));
    EXPECT_EQ(nullptr, db_query_fields_v2(&cursor, "name", 3));
    EXPECT_EQ(nullptr, db_query_fields_v2(&cursor, "name", -1));
    EXPECT_EQ(nullptr, db_query_fields_v2(&cursor, "other", 0));

    // A result outlives its tables; opening the cursor again replaces it, a failed opening empties it.
    ASSERT_EQ(0, db_query_open_v2(db_, "select count(*) from t;", &cursor));
    EXPECT_EQ(0, db_execsql(db_, "drop table t;"));
    EXPECT_EQ(3, db_query_table_rows(&cursor));
    EXPECT_NE(0, db_query_open_v2(db_, "select count(*) from t;", &cursor));
    EXPECT_EQ(0, db_query_rec_count_v2(&cursor));
    EXPECT_EQ(-1, db_query_table_rows(&cursor));
    db_query_close_v2(&cursor);
    db_query_close_v2(&cursor);
}

TEST_F(PlatformDb, CountIsTheFirstValue) {
    struct {
        const char* sql;
        int count;
    } const cases[] = {
        {"select 0", 0},           {"select 2147483647, 5", 2147483647},
        {"select 2147483648", -1}, {"select 7 union select 9", 7},
        {"select -3", -1},         {"select 'x'", -1},
        {"select null", -1},       {"select 1 where 0", -1},
    };
    for (const auto& c : cases) {
        db_cursor cursor;
        EXPECT_EQ(0, db_query_open_v2(db_, c.sql, &cursor));
        EXPECT_EQ(c.count, db_query_table_rows(&cursor)) << c.sql;
    }
}

TEST_F(PlatformDb, FailuresAreCodes) {
    EXPECT_EQ(nullptr, db_connect(0, nullptr, 0, 0));
    EXPECT_EQ(nullptr, db_connect(0, "", 0, 0));
    EXPECT_EQ(nullptr, db_connect(0, (folder_ + "/none/db").c_str(), 0, 0));
    db_disconnect(nullptr);
    EXPECT_NE(0, db_execsql(nullptr, "select 1"));
    EXPECT_NE(0, db_execsql(db_, nullptr));
    EXPECT_NE(0, db_execsql(db_, "create table a(x); nonsense; create table b(x);"));
    EXPECT_EQ(0, db_execsql(db_, "select * from a;"));
    EXPECT_NE(0, db_execsql(db_, "select * from b;"));

    db_cursor cursor{};
    EXPECT_NE(0, db_query_open_v2(nullptr, "select 1", &cursor));
    EXPECT_NE(0, db_query_open_v2(db_, nullptr, &cursor));
    EXPECT_NE(0, db_query_open_v2(db_, "select 1", nullptr));
    EXPECT_NE(0, db_query_open_v2(db_, " ; ", &cursor));
    EXPECT_NE(0, db_query_open_v2(db_, "select 1; select 2;", &cursor));
    EXPECT_EQ(0, db_query_rec_count_v2(&cursor));
    EXPECT_EQ(0, db_query_rec_count_v2(nullptr));
    EXPECT_EQ(nullptr, db_query_fields_v2(nullptr, "x", 0));
    EXPECT_EQ(nullptr, db_query_fields_v2(&cursor, nullptr, 0));
    EXPECT_EQ(-1, db_query_table_rows(nullptr));
    db_query_close_v2(nullptr);

    EXPECT_EQ(nullptr, db_query_open(nullptr, "select 1"));
    EXPECT_EQ(nullptr, db_query_open(db_, nullptr));
    EXPECT_EQ(nullptr, db_query_open(db_, "select none from a;"));
    EXPECT_EQ(nullptr, db_query_open(db_, "select abs(-9223372036854775808);"));  // prepares, fails to run
    EXPECT_NE(0, db_query_close(nullptr));
    db_query* query = db_query_open(db_, "select x from a;");
    ASSERT_NE(nullptr, query);
    EXPECT_EQ(0, db_execsql(db_, "drop table a;"));  // an open probe blocks nothing
    EXPECT_EQ(0, db_query_close(query));
}

TEST_F(PlatformDb, LockedDatabaseIsBusyAtOnceAndNotDamaged) {
    ASSERT_EQ(0, db_execsql(db_, kTable));
    db_handle other = db_connect(0, path_.c_str(), 0, 0);
    ASSERT_EQ(0, db_execsql(other, "begin exclusive;"));
    EXPECT_EQ(SQLITE_BUSY, db_execsql(db_, "begin exclusive;"));
    EXPECT_EQ(SQLITE_BUSY, check_active_db_integrity(db_));
    EXPECT_EQ(SQLITE_BUSY, check_inactive_db_integrity(path_.c_str()));
    db_disconnect(other);
    EXPECT_EQ(0, check_active_db_integrity(db_));
}

TEST_F(PlatformDb, IntegrityTellsDamage) {
    ASSERT_EQ(0, db_execsql(db_, kTable));
    ASSERT_EQ(0, db_execsql(db_, "create index i on t(name);"));
    EXPECT_EQ(0, check_active_db_integrity(db_));
    EXPECT_EQ(0, check_inactive_db_integrity(path_.c_str()));
    EXPECT_GT(0, check_active_db_integrity(nullptr));
    EXPECT_GT(0, check_inactive_db_integrity(nullptr));
    EXPECT_GT(0, check_inactive_db_integrity(folder_.c_str()));
    EXPECT_GT(0, check_inactive_db_integrity((folder_ + "/none").c_str()));
    EXPECT_FALSE(fs::exists(folder_ + "/none"));

    const auto size = fs::file_size(path_);
    const std::string copy = folder_ + "/copy";
    const auto damaged = [&](std::streamoff offset) {
        fs::copy_file(path_, copy, fs::copy_options::overwrite_existing);
        std::fstream(copy, std::ios::in | std::ios::out | std::ios::binary)
            .seekp(offset)
            .write("damage!!", 8);
        return check_inactive_db_integrity(copy.c_str());
    };
    EXPECT_GT(0, damaged(0));                                      // the file's header
    EXPECT_GT(0, damaged(static_cast<std::streamoff>(size) - 8));  // a row of the index
    fs::resize_file(copy, size / 2);
    EXPECT_GT(0, check_inactive_db_integrity(copy.c_str()));
    std::ofstream(copy) << "this is text and no database at all";
    EXPECT_GT(0, check_inactive_db_integrity(copy.c_str()));
    fs::resize_file(copy, 0);
    EXPECT_EQ(0, check_inactive_db_integrity(copy.c_str()));
}

// A crash inside a transaction leaves a journal that only a writer can roll back.
TEST_F(PlatformDb, InterruptedTransactionIsNotDamage) {
    ASSERT_EQ(0, db_execsql(db_, kTable));
    ASSERT_EQ(0, db_execsql(db_,
                            "pragma cache_size = 1; pragma cache_spill = 1; begin;"
                            "insert into t(name) with recursive n(i) as (select 1 union all select i + 1 "
                            "from n where i < 5000) select hex(randomblob(50)) from n;"));
    const std::string crashed = folder_ + "/crashed";
    fs::copy_file(path_, crashed);
    fs::copy_file(path_ + "-journal", crashed + "-journal");
    ASSERT_EQ(0, db_execsql(db_, "rollback;"));
    EXPECT_EQ(0, check_inactive_db_integrity(crashed.c_str()));
    db_handle recovered = db_connect(0, crashed.c_str(), 0, 0);
    db_cursor cursor;
    EXPECT_EQ(0, db_query_open_v2(recovered, "select count(*) from t;", &cursor));
    EXPECT_EQ(3, db_query_table_rows(&cursor));
    db_disconnect(recovered);
}

}  // namespace
