// What the self-repair reads: SQLite's messages and the statements that failed.
#include "repair.h"

#include "created_table.h"
#include "fuzz.h"

namespace {

class Repair : public Fuzzed {
  public:
    void run(Input& input) override {
        const uint8_t choice = input.byte();
        if (choice % 3 == 0)
            parse(kMessages[input.byte() % std::size(kMessages)], std::string(input.rest()));
        else
            repair(input, kBeginnings[choice % std::size(kBeginnings)], choice % 3 == 1);
    }

  private:
    static constexpr const char* kBeginnings[] = {"replace into ", " insert into  ", "UPDATE "};
    static constexpr const char* kMessages[] = {"", "no such column: ", "table t has no column named ",
                                                "no such table: "};
    struct Close {
        void operator()(sqlite3* db) const { sqlite3_close(db); }
    };
    using Database = std::unique_ptr<sqlite3, Close>;

    static bool is_part(std::string_view part, std::string_view of) {
        return part.empty() || (part.data() >= of.data() && part.end() <= of.end());
    }
    static void parse(const std::string& message, const std::string& rest) {
        const std::string text = message + rest;
        const MissingPart missing = parse_errmsg(text);
        EXPECT_TRUE(is_part(missing.name, text));
        EXPECT_TRUE(missing.kind != MissingPart::other || missing.name.empty());
        // A word that no other message follows is the name.
        if (!message.empty() && rest.find(' ') == std::string::npos) {
            EXPECT_TRUE(rest.starts_with(missing.name) && missing.name.starts_with(word(rest)));
        }
        EXPECT_TRUE(is_part(parse_tablename_from_sql(text), text));
    }

    // Half of the tables, each with its first column.
    static Database small_database() {
        sqlite3* db = nullptr;
        EXPECT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
        sqlite3_limit(db, SQLITE_LIMIT_ATTACHED, 0);  // no file is reached
        sqlite3_limit(db, SQLITE_LIMIT_LENGTH, 100'000);
        sqlite3_progress_handler(
            db, 100'000, [](void*) { return 1; }, nullptr);
        for (std::size_t i = 0; i < 8; ++i) {
            const CreatedTable& table = created_tables()[i * 2];
            const std::string sql =
                "create table " + std::string(table.name) + "(" + std::string(table.columns[0].name) + ");";
            EXPECT_EQ(db_execsql(db, sql.c_str()), 0);
        }
        return Database(db);
    }

    // A statement that names tables and columns of the list, or any text behind its first word.
    static void repair(Input& input, const std::string& beginning, bool named) {
        const Database db = small_database();
        std::string sql = beginning;
        if (named) {
            const CreatedTable& table = created_tables()[input.byte() % 16];
            sql += table.name;
            const std::string_view one = input.one_of(table.columns).name, other = word(input.text());
            sql += beginning[0] == 'U' ? " set " + std::string(one) + "=1," + std::string(other) + "=2"
                                       : "(" + std::string(one) + "," + std::string(other) + ") values(1,2)";
        } else {
            sql += input.rest();
        }
        static_cast<void>(db_execsql_adapt(db.get(), sql.c_str()));
        if (named)
            expect_created_columns(db.get());
    }
    static std::string_view word(std::string_view text) {
        const auto is_part_of_word = [](char c) {
            return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
        };
        return {text.begin(), std::find_if_not(text.begin(), text.end(), is_part_of_word)};
    }

    // Whatever was added is in the create list.
    static void expect_created_columns(sqlite3* db) {
        const auto check = [](void*, int, char** values, char**) {
            const CreatedTable* table = created_table(values[0]);
            EXPECT_TRUE(table != nullptr && table->column(values[1]) != nullptr) << values[0] << values[1];
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(db,
                               "select t.name, c.name from sqlite_master t, pragma_table_info(t.name) c "
                               "where t.type = 'table'",
                               check, nullptr, nullptr),
                  SQLITE_OK);
    }
};

}  // namespace

FUZZ_TARGET(Repair)
