// The seal of the database: kept by every write, true after a vacuum and a reload, and what it finds is mended.
#include "seal.h"

#include "backup.h"
#include "core_fixture.h"

namespace {

class SealTest : public Core {
  protected:
    static Seal seal() { return read_sealed(get_db_path()).seal; }
    static void edit(const std::string& text) {
        db_handle db = db_connect(0, get_db_path(), 0, 0);
        EXPECT_EQ(db_execsql(db, text.c_str()), 0) << text;
        db_disconnect(db);
    }
    static void store(const std::string& text) {
        ASSERT_EQ(db_begin(), 0);
        sqlite3_stmt* statement = nullptr;
        if (db_prepare(
                {text.c_str()}, [&] { return text; }, &statement) == 0) {
            while (db_step(statement, {}) == SQLITE_ROW) {
            }
            sqlite3_reset(statement);
        }
        ASSERT_EQ(db_commit(), 0) << text;
    }
    std::string record_bytes() const {
        return {reinterpret_cast<const char*>(record_.get()), sizeof(DEVICECONFIG)};
    }
    // What a start loads of these files.
    std::string started(const std::string& main, const std::string& backup) {
        close_database();
        std::filesystem::remove(path("db_op_info.log"));
        write_file(get_db_path(), main);
        write_file(get_db_backup_path(), backup);
        wipe();
        EXPECT_EQ(init_database(), 0);
        return record_bytes();
    }
};

TEST_F(SealTest, IsKeptByEveryWrite) {
    randomise(1);
    save_all();
    EXPECT_EQ(seal(), Seal::intact);
    std::set<std::string_view> not_sealed;
    randomise(2);
    for (const Table* table : all_tables())
        if (!table->set.empty()) {
            EXPECT_EQ(run(table->set), 0) << table->set;
            if (seal() != Seal::intact)
                not_sealed.insert(table->set);
        }
    EXPECT_THAT(not_sealed, testing::IsEmpty());
    for (
        const char* text : {
            "delete from ipaddr_list",
            "insert into ipaddr_list(idx) values(7), (8), (9)",
            "replace into ipaddr_list(idx) values(8)",
            "update ipaddr_list set idx = idx + 10",
            "update ipaddr_list set idx = 1",  // fails at its second row
            "insert into ipaddr_list(idx) values(3), (4), (18)",
            "alter table ipaddr_list add column more int default 5",
            "update ipaddr_list set more = 6 where idx = 18",
            "delete from ipaddr_list where idx = 17",
            "alter table ipaddr_list drop column more",
            "create table other(a real, b blob, c text, d integer, primary key(d))",
            "insert into other values(2, x'0102', 'x', 4)",
            "insert into other values(0.5, x'', '', null)",
            "insert into other values('text', 1e300, -1, 9)",
            "update other set a = 3 where d = 4",
            "create table third(a real, b blob, c text, d integer primary key)",
            "insert into third select * from other",
            "update third set a = 1, d = d + 100",
            "create table long(id integer primary key, text varchar(9000))",
            "insert into long values(1, printf('%.9000c', 'x'))",
            "update long set text = text || 'y'",
            "with recursive n(i) as (values(2) union all select i + 1 from n where i < 900) insert into long select i, 'z' || i from n",
            "drop table third",
        }) {
        store(text);
        EXPECT_EQ(seal(), Seal::intact) << text;
    }
    ASSERT_EQ(db_begin(), 0);
    sql("update long set text = 'a' where id = 5");
    {
        const Savepoint savepoint;
        sql("update long set text = 'b' where id < 9");
    }
    ASSERT_EQ(db_commit(), 0);
    EXPECT_EQ(seal(), Seal::intact);
    EXPECT_EQ(query("select count(*) from long where text in ('a', 'b')"), "1");
    // A row that stays as it was is not written.
    const FileState before = file_state();
    store("update long set text = text");
    ASSERT_EQ(db_begin(), 0);
    sql("update long set text = text where id < 5");
    ASSERT_EQ(db_commit(), 0);
    EXPECT_EQ(file_state(), before);
    // What shows no rowid may be numbered anew.
    const uint32_t digest = read_sealed(get_db_path()).counted;
    edit("vacuum;");
    EXPECT_EQ(read_sealed(get_db_path()).counted, digest);
    const std::string copy = path("reloaded");
    ASSERT_EQ(std::system(("sqlite3 " + std::string(get_db_path()) + " .dump | sqlite3 " + copy).c_str()), 0);
    EXPECT_EQ(read_sealed(copy.c_str()).counted, digest);
}

TEST_F(SealTest, AnEditByAnotherProgramStays) {
    EXPECT_EQ(init_database(), 0);
    EXPECT_EQ(seal(), Seal::intact);
    for (const char* text : {"update chn_info set name = 'edited'", "pragma user_version = 7",
                             "pragma journal_mode = wal; update chn_info set name = 'edited again'"}) {
        close_database();
        std::filesystem::remove(path("db_op_info.log"));
        edit(text);
        EXPECT_EQ(seal(), Seal::broken) << text;
        EXPECT_EQ(init_database(), 0);
        EXPECT_EQ(seal(), Seal::intact) << text;
        EXPECT_EQ(operation_log(), "") << text;
    }
    EXPECT_EQ(query("select distinct name from chn_info"), "edited again");
    EXPECT_EQ(content(get_db_path()), content(get_db_backup_path()));
}

// Neighbouring bits, the last of a word, of a text, of a number: none moves only a part of the digest, which others could undo.
TEST_F(SealTest, EveryBitMovesTheWholeDigest) {
    randomise(5);
    save_all();
    std::string image = content(get_db_path());
    const auto digest = [&] { return digest_of(std::as_bytes(std::span(image))); };
    const auto whole = digest();
    ASSERT_TRUE(whole);
    std::mt19937 random(6);
    int moved = 0, weak = 0;
    for (int i = 0; i < 600; ++i) {
        char& byte = image[random() % image.size()];
        const char original = std::exchange(byte, static_cast<char>(byte ^ 1 << random() % 8));
        const uint32_t difference = digest().value_or(*whole) - *whole;
        moved += difference != 0;
        weak += difference != 0 && ((difference & 0xFFFF) == 0 || difference >> 16 == 0);
        byte = original;
    }
    EXPECT_GT(moved, 200);
    EXPECT_LE(weak, 1);
}

// What a flipped bit of the header would switch off, or feign.
TEST_F(SealTest, HeaderThatRotted) {
    EXPECT_EQ(init_database(), 0);
    const std::string good = content(get_db_path()), newest = started(good, good);
    const std::string main = content(get_db_path());
    for (const std::size_t first : {24u, 56u, 60u, 68u})  // counter, encoding, digest, its counter
        for (std::size_t bit = 0; bit < 32; bit += first == 56 ? 1 : 5) {
            std::string flipped = main;
            flipped[first + bit / 8] = static_cast<char>(flipped[first + bit / 8] ^ 1 << bit % 8);
            EXPECT_EQ(started(flipped, main), newest) << first << " " << bit;
            EXPECT_EQ(seal(), Seal::intact) << first << " " << bit;
        }
    // Beside a counter that rotted a row is no edit.
    store("update db_version set old_version = 7");
    std::string both = content(get_db_path());
    const std::string backup = both;
    both[27] = static_cast<char>(both[27] ^ 16);
    const std::size_t row = both.find("0:0:0:0:");
    ASSERT_NE(row, std::string::npos);
    both[row] = '2';
    EXPECT_EQ(started(both, backup), newest);
    EXPECT_THAT(operation_log(), testing::HasSubstr("1 rows put back"));
}

// Where another program has made it a write-ahead log, commits do not all change the counter.
TEST_F(SealTest, AnEditThroughAWriteAheadLogStays) {
    EXPECT_EQ(init_database(), 0);
    const std::string backup = content(get_db_backup_path());
    edit("pragma journal_mode = wal;");
    db_handle other = db_connect(0, get_db_path(), 0, 0);
    std::strcpy(r_.channel[0].name, "saved");
    EXPECT_EQ(run("db_set_chn_info"), 0);
    EXPECT_EQ(db_execsql(other, "update chn_info set osd_type = 42; pragma wal_checkpoint(truncate);"), 0);
    db_disconnect(other);
    close_database();
    EXPECT_NE(seal(), Seal::rotten);
    EXPECT_EQ(init_database(), 0);
    EXPECT_EQ(query("select name, osd_type from chn_info"), "saved|42");
    EXPECT_EQ(seal(), Seal::intact);
    EXPECT_EQ(operation_log().find("rotten"), std::string::npos);
}

// More rows than the backup can explain: the seal belongs to this state of the file, and the rows are other ones.
TEST_F(SealTest, WhatNoRowExplains) {
    std::strcpy(r_.channel[0].name, "backed up");
    EXPECT_EQ(init_database(), 0);
    const std::string backup = content(get_db_backup_path());
    std::strcpy(r_.channel[0].name, "newer");
    EXPECT_EQ(run("db_set_chn_info"), 0);
    const auto rot = [] {
        const auto counter = query("select * from pragma_application_id");
        edit("begin; update ipaddr_list set ipv6addr = 'rot' || idx; pragma application_id = " +
             std::to_string(std::stoll(counter) + 1) + "; commit;");
        EXPECT_EQ(seal(), Seal::rotten);
    };
    rot();
    const std::string rotten = content(get_db_path());
    const struct {
        std::string backup;
        const char *log, *name, *address;
    } starts[] = {{backup, "rotten.Restored", "backed up", "'0:0:0:0:'"},
                  {rotten, "rotten\n", "newer", "'rot1'"},
                  {"", "rotten\n", "newer", "'rot1'"}};
    for (const auto& c : starts) {
        started(rotten, c.backup);
        EXPECT_THAT(operation_log(), testing::HasSubstr(c.log));
        EXPECT_EQ(
            query("select chn_info.name, quote(ipv6addr) from chn_info, ipaddr_list as i where i.idx = 1"),
            c.name + std::string("|") + c.address);
        EXPECT_EQ(seal(), Seal::intact);
        EXPECT_EQ(content(get_db_path()), content(get_db_backup_path()));
    }
    // Two rows are put back though others are newer.
    started(backup, backup);
    store("update user_mana_info set username = 'newer' || idx");
    std::string two = content(get_db_path());
    for (const std::size_t at : {two.find("0:0:0:0:"), two.rfind("0:0:0:0:")})
        two[at] = '3';
    EXPECT_NE(started(two, backup), std::string());
    EXPECT_THAT(operation_log(), testing::HasSubstr("2 rows put back"));
    EXPECT_EQ(query("select count(*) from user_mana_info where username like 'newer%'"), "32");
    // Before a backup every setting is in the record.
    started(backup, backup);
    std::strcpy(r_.channel[0].name, "newest");
    EXPECT_EQ(run("db_set_chn_info"), 0);
    rot();
    int cycles = 0;
    Backup([&](int) { closing_flag = ++cycles >= 4; }).run();
    EXPECT_THAT(operation_log(), testing::HasSubstr("rotten.Made anew"));
    for (const char* file : {get_db_path(), get_db_backup_path()}) {
        EXPECT_EQ(read_sealed(file).seal, Seal::intact);
        EXPECT_EQ(content(file).find("rot1"), std::string::npos);
        EXPECT_NE(content(file).find("newest"), std::string::npos);
    }
}

// One bit of the main database flips; the backup is a little older.  FLIPS tells how often.
TEST_F(SealTest, NoFlippedBitIsLoadedAsASetting) {
    randomise(3);
    save_all();
    store("insert into db_version(version) values(" + std::to_string(kCurrentVersion) + ")");
    const std::string before = content(get_db_path());
    const std::string as_of_backup = started(before, before);
    const std::string backup = content(get_db_backup_path());
    std::strcpy(r_.channel[0].name, "newer");
    EXPECT_EQ(run("db_set_chn_info"), 0);
    const std::string main = content(get_db_path()), newest = started(main, backup);
    ASSERT_NE(newest, as_of_backup);

    std::map<std::string, int> outcomes;
    std::mt19937 random(4);
    const char* const flips = std::getenv("FLIPS");
    for (int i = flips != nullptr ? std::stoi(flips) : 50; i > 0; --i) {
        std::string flipped = main;
        const std::size_t at = random() % flipped.size();
        flipped[at] = static_cast<char>(flipped[at] ^ 1 << random() % 8);
        const std::string loaded = started(flipped, backup), log = operation_log();
        const auto says = [&](const char* part) { return log.find(part) != std::string::npos; };
        const bool restored = says("Restored") || says("Main Db is broken");
        EXPECT_EQ(loaded, restored ? as_of_backup : newest) << "byte " << at << "\n" << log;
        EXPECT_EQ(seal(), Seal::intact);
        ++outcomes[says("put back") ? "row" : says("digest") ? "digest" : restored ? "restored" : "harmless"];
    }
    for (const auto& [outcome, count] : outcomes)
        std::printf("%s: %d\n", outcome.c_str(), count);
}

}  // namespace
