// Databases of every older schema, with rows, columns, tables and bytes changed, through the upgrade at start.
#include "chain.h"

#include "fuzz.h"

namespace {

class Chain : public Fuzzed {
  public:
    Chain() {
        for (const ChainStep& step : chain_steps())
            for (const int version : {step.from, step.also_from})
                if (version != 0)
                    old_.emplace_back(version, "");
    }

    void run(Input& input) override {
        const auto& [version, bytes] = old(input.byte());
        take_device(input);
        const uint8_t choice = input.byte();
        close_database();
        for (const char* ending : {"-journal", "_backup"})
            std::filesystem::remove(get_db_path() + std::string(ending));
        write_file(get_db_path(), bytes);
        set_db_handle(db_open(get_db_path()));
        static_cast<void>(db_execsql(get_db_handle(), "pragma synchronous=off;"));
        static_cast<void>(db_execsql(get_db_handle(), "begin;"));
        for (int edits = 0; edits < 12 && !input.empty(); ++edits)
            edit(input);
        static_cast<void>(db_execsql(get_db_handle(), "commit;"));
        close_database();
        fill(choice);
        const int result = init_database();
        ASSERT_TRUE(get_db_handle() == nullptr || sqlite3_get_autocommit(get_db_handle()));
        if (result != 0)
            return;
        EXPECT_EQ(check_active_db_integrity(get_db_handle()), 0);
        EXPECT_GE(major_of(db_get_version(get_db_handle())), kLastPatchedMajor);
        EXPECT_TRUE((choice & 64) == 0 || init_database() == 0);
    }

  private:
    // Made when it is first asked for.
    const std::pair<int, std::string>& old(std::size_t number) {
        auto& [version, bytes] = old_[number % old_.size()];
        if (bytes.empty()) {
            forget_device();
            silent = false;
            hardware_count = 2;
            maxEnChanNo = 1;
            fill_random(r_, static_cast<uint64_t>(version));
            older_database(version, 5);
            close_database();
            bytes = content(get_db_path());
        }
        return old_[number % old_.size()];
    }

    void edit(Input& input) {
        const CreatedTable& table = input.one_of(created_tables());
        const std::string name(table.name), column(input.one_of(table.columns).name),
            row = std::to_string(input.byte() % 8 + 1);
        switch (input.byte() % 8) {
            case 0:
            case 1:
                return bound(input, "update " + name + " set " + column + "=? where rowid%" + row + "=0");
            case 2:
                return bound(input, "insert into " + name + "(" + column + ") values(?)");
            case 3:
                return attempt("delete from " + name + " where rowid%" + row + "=0");
            case 4:
                return attempt("alter table " + name + " drop column " + column);
            case 5:
                return attempt("drop table " + name);
            case 6:
                attempt("drop table " + name);
                return attempt("create table " + name + "(x," + column + " blob)");
            default:
                return attempt("create trigger t" + row + " before " +
                               (input.byte() % 2 ? "insert" : "update") + " on " + name +
                               " begin select raise(fail, 't'); end");
        }
    }
    static void attempt(const std::string& sql) {
        static_cast<void>(db_execsql(get_db_handle(), sql.c_str()));  // what is there depends on the version
    }
    static void bound(Input& input, const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(get_db_handle(), sql.c_str(), -1, &statement, nullptr) == SQLITE_OK)
            bind(input, statement);
        sqlite3_step(statement);
        sqlite3_finalize(statement);
    }
    static void bind(Input& input, sqlite3_stmt* statement) {
        const uint8_t type = input.byte();
        if (type % 5 == 0) {
            sqlite3_bind_int64(statement, 1, input.number<int64_t>());
        } else if (type % 5 == 1) {
            sqlite3_bind_double(statement, 1, input.number<double>());
        } else if (type % 5 < 4) {
            std::string value(input.text());
            if (type >= 250)  // longer than any field
                value.resize(5000, '7');
            if (type % 5 == 2)
                sqlite3_bind_text(statement, 1, value.data(), static_cast<int>(value.size()),
                                  SQLITE_TRANSIENT);
            else
                sqlite3_bind_blob(statement, 1, value.data(), static_cast<int>(value.size()),
                                  SQLITE_TRANSIENT);
        }
    }

    std::vector<std::pair<int, std::string>> old_;
};

}  // namespace

FUZZ_TARGET(Chain)
