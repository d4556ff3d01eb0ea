// The tools: field access to the record over the whole catalogue, and dbctl against a running system.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "programs.h"
#include "record_access.h"

#include "catalogue.h"

namespace {

using namespace dbshell;

using Record = std::unique_ptr<DEVICECONFIG>;

Record zero_record() {
    return std::make_unique<DEVICECONFIG>();
}

Record random_record(uint64_t seed) {
    Record record = zero_record();
    fill_random(*record, seed);
    return record;
}

bool same(const DEVICECONFIG& a, const DEVICECONFIG& b) {
    const auto* const bytes = reinterpret_cast<const std::byte*>(&a);
    return std::equal(bytes, bytes + sizeof a, reinterpret_cast<const std::byte*>(&b));
}

// ------------------------------------------------------------------------------------- record access

// Each field in the first and the last row that has it: its address leads back to it, and its text, set in an
// empty record, gives its value and touches nothing else.
TEST(RecordAccess, EveryFieldRoundTripsByItsAddressAndText) {
    const Record source = random_record(1), target = zero_record();
    int fields = 0;
    for (const Table* table : all_tables()) {
        const std::vector<Cell> cells = cells_of_table(*table);
        for (const Cell& cell : cells) {
            const auto same_field = [&](const Cell& other) { return other.field->name == cell.field->name; };
            const bool first = &*std::find_if(cells.begin(), cells.end(), same_field) == &cell;
            const bool last = &*std::find_if(cells.rbegin(), cells.rend(), same_field) == &cell;
            if (!first && !last)
                continue;
            ++fields;
            const std::string address = address_of(cell);
            ASSERT_EQ(find_cell(parse_address(address)).offset, cell.offset) << address;
            set_cell(*target, cell, cell_text(*source, cell));
            ASSERT_EQ(cell_json(*target, cell), cell_json(*source, cell)) << address;
            std::memset(reinterpret_cast<std::byte*>(target.get()) + cell.offset, 0, cell.field->size);
        }
    }
    EXPECT_GT(fields, 500);
    EXPECT_TRUE(same(*target, *zero_record()));
}

TEST(RecordAccess, WholeRecordRoundTripsAsJson) {
    const Record source = random_record(2), target = zero_record();
    Json tables = Json::object();
    for (const Table* table : all_tables())
        tables[table_label(*table)] = table_json(*source, *table, true);
    fill_from_json(*target, Json::parse(tables.dump()));
    EXPECT_TRUE(same(*source, *target));

    // Secrets that are not shown are null, and null changes nothing.
    for (const Table* table : all_tables())
        tables[table_label(*table)] = table_json(*source, *table, false);
    fill_from_json(*target, tables);
    EXPECT_TRUE(same(*source, *target));
    EXPECT_TRUE(tables["user_mana_info"][0]["passwd"].is_null());
}

TEST(RecordAccess, RandomRecordIsRepeatableAndKeepsWhatNoTableStores) {
    const Record record = random_record(3);
    EXPECT_TRUE(same(*record, *random_record(3)));
    EXPECT_FALSE(same(*record, *random_record(4)));
    EXPECT_EQ(record->sec_lock_auth.db_enc_version, 0u);

    std::size_t full_texts = 0;
    const Record rest = random_record(3);
    for (const Table* table : all_tables())
        for (const Cell& cell : cells_of_table(*table)) {
            const auto* text = reinterpret_cast<const char*>(record.get()) + cell.offset;
            if (cell.field->kind == Kind::text && strnlen(text, cell.field->size) == cell.field->size)
                ++full_texts;
            std::memset(reinterpret_cast<std::byte*>(rest.get()) + cell.offset, 0, cell.field->size);
        }
    EXPECT_GT(full_texts, 20u);
    EXPECT_TRUE(same(*rest, *zero_record()));
}

// How an attempt ends: the reason of its error, or that there is none.
template <class Attempt>
std::string outcome(Attempt attempt) {
    try {
        attempt();
    } catch (const AccessError& error) {
        constexpr const char* kNames[] = {"syntax", "unknown", "row", "value"};
        return kNames[static_cast<int>(error.reason())];
    }
    return "fine";
}

TEST(RecordAccess, AddressesThatDoNotFitAreRefused) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"fine",
         {"chn_info.name", "chn_info[1].name", "3.name[1]", "db_set_chn_info.name[1]",
          "chn_comp_info.bitrate[1,8]", "chn_comp_info.bitrate[8]"}},
        {"syntax",
         {"", ".name", "chn_info.", "chn_info.name.name", "chn_info.name[", "chn_info.name[]",
          "chn_info.name[0]", "chn_info.name[-1]", "chn_info.name[1]x", "chn_info.name[1][1]",
          "chn_info.name[99999999999]", "chn_info[1]"}},  // the last is no single value
        {"unknown", {"no_such_table.name[1]", "0.name[1]", "9999.name[1]", "chn_info.no_such_field[1]"}},
        {"row",
         {"chn_info.name[2]", "chn_info.name[1,1]", "chn_comp_info.bitrate[2,1]",
          "chn_comp_info.bitrate[1,9]", "chn_comp_info.bitrate[1,1,1]",
          "chn_comp_info.bitrate",              // eight values
          "coordinate_region_list.width[1]",    // a row without this field
          "coordinate_region_list.width[3]"}},  // a row without any
    };
    for (const auto& [expected, addresses] : cases)
        for (const char* address : addresses)
            EXPECT_EQ(outcome([&] { find_cell(parse_address(address)); }), expected) << address;
}

TEST(RecordAccess, ValuesThatDoNotFitAreRefusedAndChangeNothing) {
    const std::string full(32, 'x'), with_null("a\0b", 3);
    const struct {
        const char* address;
        std::vector<std::pair<std::string, std::string>> shown;  // as it is then shown
        std::vector<std::string> refused;
    } cases[] = {
        {"wdr_config_table.enable[1]",
         {{"-32768", "-32768"}, {"0x7fff", "32767"}},
         {"32768", "-32769", "", "-", "+1", "1.5", "1 "}},
        {"front_param_config.hue_lv[1]", {{"255", "255"}}, {"256", "-1"}},
        {"user_mana_info.preview_permision[32]",
         {{"18446744073709551615", "18446744073709551615"}},
         {"18446744073709551616", "99999999999999999999999", "-1"}},
        {"chn_info.name[1]",
         {{full, full},
          {"it's; \"x\"", "it's; \"x\""},
          {"\xC3\xA9\xE2\x82\xAC", "\xC3\xA9\xE2\x82\xAC"},
          {"\xC3(\xED\xA0\x80\xC0\xAF", "\\xC3(\\xED\\xA0\\x80\\xC0\\xAF"},
          {"\\x1b[2J\\\\", "\\x1B[2J\\\\"},
          {"\xC2\x9B", "\\xC2\\x9B"},
          {"", ""}},
         {full + "x", "a\\x00", with_null, "\\n", "\\x1", "\\"}},
        {"revise_gps_param_config.latitude_second[1]", {{"-1.5", "-1.5"}}, {"nan", "1e39", "1.5 "}},
        {"netconfig_table.mac_addr[1]",
         {{"0,17,34,51,68,255", "[0,17,34,51,68,255]"}, {"[1, 2, 3, 4, 5, 0x6]", "[1,2,3,4,5,6]"}},
         {"1 2 3 4 5", "1 2 3 4 5 6 7", "1 2 3 4 5 256", "1 2 3 4 5 -1", "1 2 3 4 5 x"}},
    };
    const Record record = random_record(5);
    for (const auto& c : cases) {
        const Cell cell = find_cell(parse_address(c.address));
        for (const auto& [value, shown] : c.shown) {
            set_cell(*record, cell, value);
            EXPECT_EQ(cell_text(*record, cell), shown) << c.address << value;
        }
        const std::string before = cell_text(*record, cell);
        for (const std::string& value : c.refused) {
            EXPECT_EQ(outcome([&] { set_cell(*record, cell, value); }), "value") << c.address << value;
            EXPECT_EQ(cell_text(*record, cell), before) << c.address << value;
        }
    }
}

TEST(RecordAccess, DefaultsThatDoNotFitAreRefused) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"fine",
         {R"({})", R"({"chn_info": {"name": "gate"}, "3": [{"name": "door"}], "user_mana_info": [{}, null]})",
          R"({"chn_comp_info": [[{"bitrate": 1}, {"bitrate": 2}]]})",
          R"({"netconfig_table": {"mac_addr": [1, 2, 3, 4, 5, 6], "mtu": "1500"}})"}},
        {"value",
         {R"([])", R"({"chn_info": 1})", R"({"chn_info": [[[{}]]]})", R"({"chn_info": {"name": {"a": 1}}})",
          R"({"chn_info": {"name_enable": true}})", R"({"chn_info": {"name_enable": 1.0}})",
          R"({"chn_info": {"name_enable": [1]}})", R"({"netconfig_table": {"mac_addr": [1, 2, [3], 4]}})"}},
        {"unknown", {R"({"user_mana_info": {"idx": 1}})", R"({"nothing": {}, "chn_info": {"no": 1}})"}},
        {"row", {R"({"chn_info": [{}, {"name": "second channel"}]})"}},
    };
    for (const auto& [expected, defaults] : cases)
        for (const char* json : defaults) {
            const Record record = zero_record();
            EXPECT_EQ(outcome([&] { fill_from_json(*record, Json::parse(json)); }), expected) << json;
        }
}

// ------------------------------------------------------------------------------------- the running system

struct Ran {
    int status;
    std::string output;  // standard output
};

// A device of its own: its root, its programs, its shared objects.
class System : public testing::Test {
  protected:
    System() {
        std::string pattern = testing::TempDir() + "system-XXXXXX";
        root_ = mkdtemp(pattern.data());
        setenv("DEVICE_ROOT", root_.c_str(), 1);
    }
    void TearDown() override {
        stop_system();
        unsetenv("DEVICE_ROOT");
        std::filesystem::remove_all(root_);
    }

    // Ends the programs and removes what they share, so that a new start waits for new defaults.
    void stop_system() {
        end_program(service_, SIGKILL);
        end_program(velmora_, SIGTERM);
        remove_shared_objects();
    }

    // A program in the background, with its output in a file of its name.
    pid_t start(const std::string& program, std::vector<std::string> arguments = {}) const {
        return start_program(program, std::move(arguments), {}, root_ + "/" + program + ".log");
    }

    void start_system(const std::vector<std::string>& arguments = {}) {
        velmora_ = start("velmora", arguments);
        service_ = start("database_process");
        ASSERT_EQ(dbctl("status --wait 120").status, 0);
    }

    // The arguments are a shell's words.
    Ran dbctl(const std::string& arguments, const std::string& input = "") const {
        const std::string command = "printf '%s' '" + input + "' | '" BIN_DIR "/dbctl' " + arguments +
                                    " 2>>'" + root_ + "/dbctl.log'";
        FILE* pipe = popen(command.c_str(), "r");
        std::string output;
        char chunk[4096];
        while (const std::size_t length = fread(chunk, 1, sizeof chunk, pipe))
            output.append(chunk, length);
        const int status = pclose(pipe);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
    }

    struct Case {
        const char* arguments;
        int status;
        const char* output = nullptr;  // null: not looked at
    };
    void expect(std::initializer_list<Case> cases) const {
        for (const Case& c : cases) {
            const Ran ran = dbctl(c.arguments);
            EXPECT_EQ(ran.status, c.status) << c.arguments;
            if (c.output != nullptr) {
                EXPECT_EQ(ran.output, c.output) << c.arguments;
            }
        }
    }

    std::string root_;
    pid_t velmora_ = 0, service_ = 0;
};

TEST_F(System, AnswersByExitStatusAndOutput) {
    expect({
        {"--help", 0},
        {"", 2},
        {"no-such-command", 2},
        {"call", 2},
        {"status --wait 0.01", 6},
        {"get chn_info", 5, ""},
        {"set chn_info.name x", 5, ""},
        {"call EN_GET_CURRENT_DB_VERSION", 5, ""},
        {"log", 0},
    });
    setenv("DEVICE_ROOT", (root_ + "/mistyped").c_str(), 1);
    expect({{"log", 5, ""}, {"status", 5, ""}, {"log --help", 0}});
    setenv("DEVICE_ROOT", root_.c_str(), 1);
    const Ran down = dbctl("status --json");
    EXPECT_EQ(down.status, 0);
    EXPECT_EQ(Json::parse(down.output)["segment_id"], nullptr);

    start_system();
    expect({
        {"call EN_GET_CURRENT_DB_VERSION", 0, "302080\n"},
        {"call 0x6001e --json", 0, "{\"kind\":\"EN_GET_CURRENT_DB_VERSION\",\"reply\":302080}\n"},
        {"call 393246 --plain", 2},
        {"call EN_CHECK_DEVCFG_THE_SAME", 0, "0\n"},
        {"call EN_CHECK_DEVCFG_THE_SAME --channel 1", 1, "-1\n"},
        {"call EN_GET_ALL_RECORD --json", 0, "{\"kind\":\"EN_GET_ALL_RECORD\",\"reply\":null}\n"},
        {"call EN_GET_ONE_TABLE_RECORD --table 0", 0, "302080\n"},
        {"call EN_GET_ONE_TABLE_RECORD", 2, ""},
        {"call EN_UPDATE_ONE_TABLE_RECORD --table 9999", 1, "-1\n"},
        {"call EN_UPDATE_TABLE_LIST --table chn_info --table 1", 0, "0\n"},
        {"call --table 1 --table chn_info EN_UPDATE_TABLE_LIST", 0, "0\n"},
        {"call EN_UPDATE_TABLE_LIST $(printf ' --table %d' 1 2 3 4 5 6 7 21 22 23 24)", 2},
        {"call EN_UPDATE_ONE_TABLE_RECORD --table no_such_table", 3, ""},
        {"call EN_NO_SUCH_KIND", 3, ""},
        {"call 0x600FF --json", 0, "{\"kind\":\"0x600ff\",\"reply\":null}\n"},
        {"get no_such_table", 3, ""},
        {"get chn_info.no_such_field", 3, ""},
        {"get chn_info[2]", 2, ""},
        {"get 'chn_info['", 2, ""},
        {"describe no_such_table", 3, ""},
        {"set wdr_config_table.enable -5", 0, ""},
        {"get wdr_config_table.enable", 0, "-5\n"},
        {"get wdr_config_table.enable --json", 0, "-5\n"},
        {"set wdr_config_table.enable 32768", 2, ""},
        {"set wdr_config_table.enable", 2, ""},  // an empty standard input
        {"set chn_info.name 'North \"gate\"'", 0, ""},
        {"get chn_info.name", 0, "North \"gate\"\n"},
        {"get chn_info.name --json", 0, "\"North \\\"gate\\\"\"\n"},
        {"set user_mana_info.passwd[2] on-the-command-line", 2, ""},
        {"get user_mana_info.passwd[2] --show-secrets", 0, "\n"},
    });
    EXPECT_EQ(dbctl("set user_mana_info.passwd[2]", "quiet\n").status, 0);
    expect({{"get user_mana_info.passwd[2]", 0, "******\n"},
            {"get user_mana_info.passwd[2] --json", 0, "null\n"},
            {"get user_mana_info.passwd[2] --show-secrets", 0, "quiet\n"}});

    const Json up = Json::parse(dbctl("status --json").output);
    EXPECT_EQ(up["ready"], true);
    EXPECT_EQ(up["versions"]["current"], 1180);
    EXPECT_EQ(up["versions"]["stored"], 1180);
    EXPECT_EQ(up["health"]["record_size_matches"], true);

    kill(service_, SIGSTOP);
    EXPECT_EQ(waitpid(service_, nullptr, WUNTRACED), service_);  // it has stopped
    expect({{"call EN_GET_CURRENT_DB_VERSION --timeout 50", 6, ""}});
    end_program(service_, SIGKILL);
    expect({{"call EN_GET_CURRENT_DB_VERSION", 5, ""}, {"status --wait 0.01", 6}});
}

TEST_F(System, HealsItselfAndTellsSo) {
    expect({{"health", 1}});  // nothing is there yet
    start_system();
    const std::string threads = "grep -qs ipc_backup_cfg /proc/" + std::to_string(service_) + "/task/*/comm";
    bool backs_up = false;
    for (int attempt = 0; !backs_up && attempt < 1000; ++attempt) {
        backs_up = std::system(threads.c_str()) == 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(backs_up);
    expect({{"set chn_info.name 'North gate'", 0},
            {"call EN_UPDATE_ONE_TABLE_RECORD --table chn_info", 0, "0\n"},
            {"set chn_info.name 'not stored'", 0}});
    stop_system();
    start_system();  // refreshes the backup
    expect({{"get chn_info.name", 0, "North gate\n"}, {"health", 0}});
    stop_system();
    const std::string database = root_ + "/devinfo/ipc_db";
    std::ofstream(database) << "no database";
    const Ran broken = dbctl("health --json");
    EXPECT_EQ(broken.status, 1);
    EXPECT_EQ(Json::parse(broken.output)["problems"], Json({"main is damaged"}));
    start_system();
    expect({{"get chn_info.name", 0, "North gate\n"}});
    const Ran healed = dbctl("health --json");
    EXPECT_EQ(healed.status, 0);
    const Json health = Json::parse(healed.output);
    EXPECT_EQ(health["main"]["version"], 1180);
    EXPECT_EQ(health["main"]["key_rows"], health["backup"]["key_rows"]);
    EXPECT_EQ(health["log"].back()["message"], "Main Db is broken");

    expect({{"call EN_RESET_ALL_FACTORY_PARA", 0, "0\n"},
            {"call EN_UPDATE_ONE_TABLE_RECORD --table chn_info", 1},
            {"health --plain", 1}});
    stop_system();
    start_system();
    expect({{"get chn_info.name", 0, "\n"}, {"health", 0}});
}

TEST_F(System, SecondMainApplicationLeavesTheRecordAlone) {
    start_system();
    expect({{"set chn_info.name kept", 0}});
    int status = 0;
    waitpid(start("velmora"), &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
    waitpid(start("velmora", {"--capability", "1:2"}), &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 2);
    expect({{"get chn_info.name", 0, "kept\n"}, {"status --wait 10", 0}});
}

TEST_F(System, StartWaitsOnceForASilentMainApplication) {
    start_system({"--silent"});
    std::ifstream file(root_ + "/database_process.log");
    const std::string log{std::istreambuf_iterator<char>(file), {}}, failure = "ipc_unix_call_service failed";
    EXPECT_NE(log.find("get capa chan_num failed..."), std::string::npos);
    EXPECT_EQ(log.find(failure), log.rfind(failure)) << log;
}

TEST_F(System, LogShowsTheOldestRecordFirst) {
    std::filesystem::create_directories(root_ + "/devinfo");
    const std::string record[] = {"[2024-01-02 03:04:05] one\n", "[2024-01-02 03:04:06] two\x1b\n",
                                  "[2024-01-02 03:04:07] three\n"};
    const auto header = [](std::size_t position) {
        std::string text =
            "***DB_LOG_INFO***\nLOG_TOTAL_LEN:0\nLOG_LAST_WRITE_POS:" + std::to_string(position) + "\n\n";
        text.resize(70);
        return text;
    };
    const struct {
        std::string file;
        int status;
        const char* output;
    } cases[] = {
        {header(70), 0, ""},
        {header(70 + 26 + 27) + record[0] + record[1], 0,
         "2024-01-02 03:04:05\tone\n2024-01-02 03:04:06\ttwo\\x1B\n"},
        // The third has overwritten the first and the beginning of the second.
        {header(70 + 28) + record[2] + record[1].substr(2) + record[0], 0,
         "2024-01-02 03:04:05\tone\n2024-01-02 03:04:07\tthree\n"},
        {header(99999) + record[0], 0, "2024-01-02 03:04:05\tone\n"},
        {header(3) + record[0], 0, "2024-01-02 03:04:05\tone\n"},
        {std::string(70, 'x') + record[0], 1, ""},
        {"short", 1, ""},
        {"", 1, ""},
    };
    for (const auto& c : cases) {
        std::ofstream(root_ + "/devinfo/db_op_info.log", std::ios::binary) << c.file;
        const Ran ran = dbctl("log --plain");
        EXPECT_EQ(ran.status, c.status) << c.file;
        EXPECT_EQ(ran.output, c.output) << c.file;
    }
}

}  // namespace
