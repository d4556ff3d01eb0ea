// Starts on database files of any content: a database whose bytes are overwritten, or only the input's bytes; with a backup,
// a journal, or none.
#include "fuzz.h"

namespace {

class Start : public Fuzzed {
  public:
    void run(Input& input) override {
        take_device(input);
        const uint8_t choice = input.byte();
        const bool has_backup = (choice & 1) != 0, has_journal = (choice & 2) != 0, raw = (choice & 12) == 12;
        const bool backup_healthy = (choice & 16) != 0;
        const std::string journal(has_journal ? input.text() : "");
        std::string main = raw ? std::string(input.rest()) : edited(input);
        close_database();
        for (const char* ending : {"", "-journal", "_backup", "_backup-journal"})
            std::filesystem::remove(get_db_path() + std::string(ending));
        if (has_journal)
            write_file(path("ipc_db-journal"), journal);
        if (has_backup)
            write_file(get_db_backup_path(), backup_healthy ? seed() : main);
        write_file(get_db_path(), main);
        wipe();
        closing_flag = false;
        const int result = init_database();
        if (has_backup && backup_healthy) {
            EXPECT_EQ(result, 0);
        }
        expect_settled(result, (choice & 32) != 0);
    }

  private:
    std::string edited(Input& input) const {
        std::string file = seed();
        if (const uint8_t cut = input.byte(); cut > 200)
            file.resize(file.size() * (cut - 200u) / 56);
        while (!input.empty() && !file.empty()) {
            // Of a few pages at the start, where the header and the schema are, or of all.
            const uint32_t at = input.number<uint32_t>();
            const std::size_t offset =
                at % (at % 4 == 0 ? std::min<std::size_t>(file.size(), 1024) : file.size());
            const std::string_view bytes = input.text();
            file.replace(offset, bytes.size(), bytes);
        }
        return file;
    }

    // A start that went well has a healthy database, which the next one finds as it is.
    void expect_settled(int result, bool again) {
        database_started = true;
        if (result != 0)
            return;
        ASSERT_NE(get_db_handle(), nullptr);
        EXPECT_TRUE(sqlite3_get_autocommit(get_db_handle()));
        EXPECT_EQ(check_inactive_db_integrity(get_db_path()), 0);
        EXPECT_GT(db_get_version(get_db_handle()), 0);
        if (!again)
            return;
        EXPECT_EQ(init_database(), 0);  // stores the version before
        const std::string main = content(get_db_path());
        EXPECT_EQ(init_database(), 0);
        EXPECT_TRUE(content(get_db_path()) == main);
    }
};

}  // namespace

FUZZ_TARGET(Start)
