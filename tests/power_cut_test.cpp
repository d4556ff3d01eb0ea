// Power cuts: what the service does to its files, and each reply, is recorded (recorder/); then the power goes behind one
// operation after another, and a service is started on each state that the storage may be in (cut_states.h).
//
// POWER_CUT_FACTOR multiplies the number of states (./dev crash).
#include <deque>
#include <span>

#include "chain.h"
#include "operation_log.h"
#include "stored_device.h"

namespace {

std::size_t factor() {
    const char* value = getenv("POWER_CUT_FACTOR");
    return value != nullptr ? std::strtoul(value, nullptr, 10) : 1;
}

// Of the states, by their contents.
struct Part {
    std::size_t number = 0, of = 1;
};

class PowerCut : public StoredDevice {
  protected:
    struct Scenario {
        std::size_t states = 300;             // at least so many are tried, where there are as many
        std::function<void()> drive = [] {};  // the requests, after the start
        bool hastes = false;                  // the service's pauses are short
        bool reloads = false;     // a start gives something else than the record had at the last reply
        bool resets = false;      // the last request is a reset: no backup is left
        const char* logged = "";  // of a start: found in the operation log ever after
        std::function<void(const DEVICECONFIG&)> first = [](const DEVICECONFIG&) {};  // what a start loads
        std::function<void(const DEVICECONFIG&)> last = [](const DEVICECONFIG&) {};   // in the end
    };

    std::vector<Record> expected_;  // what the device holds after the start, and after each reply
    std::size_t starts_ = 0;

    // ---- files

    static std::string at(const Files& files, const char* name) {
        const auto found = files.find(name);
        return found != files.end() ? found->second : "";
    }
    static bool is_healthy(const std::string& database) {
        static std::map<std::size_t, bool> known;
        const auto [found, is_new] = known.try_emplace(std::hash<std::string>()(database));
        if (is_new) {
            write_file("examined", database);
            found->second = check_inactive_db_integrity("examined") == 0;
            std::filesystem::remove("examined");
        }
        return found->second;
    }

    void settle(const char* name) {
        settled_database(name);
        for (int n = 0; n < 2; ++n)
            EXPECT_TRUE(start());
        kill_service();
        std::filesystem::remove(kLog);
    }

    // ---- the service

    // False: it ended, or did not load the record within its time.
    [[nodiscard]] bool start(const std::vector<std::string>& settings = {}) {
        kill_service();
        offer_defaults();
        service_ = start_program("database_process", {}, settings);
        return has_loaded();
    }
    // Of many starts some are the service's.
    [[nodiscard]] bool start_somehow() {
        kill_service();
        return factor() > 1 && ++starts_ % 20 == 0 ? start() : start_up();
    }
    void request(int kind, const ServiceRequest& fields = {}) {
        EXPECT_EQ(call_service(kind, fields), 0) << kind;
        expected_.push_back(copy_of_record());
    }

    // ---- the recording

    CutStates record_run(const std::function<void()>& drive, const std::string& plant = "",
                         bool hastes = false) {
        const std::string log = root_ + ".recorded";
        const Files before = files();
        const auto inodes_before = inodes();
        std::filesystem::remove(log);
        std::vector<std::string> settings{"LD_PRELOAD=" RECORDER, kRecordLog + ("=" + log),
                                          kRecordRoot + ("=" + root_), kRecordPlant + ("=" + plant)};
        if (hastes)
            settings.push_back(kRecordHaste + std::string("=1"));
        EXPECT_TRUE(start(settings));
        expected_ = {copy_of_record()};
        write_file(log + kArmed, "");
        drive();
        kill_service();
        CutStates states(before, inodes_before, log);
        std::filesystem::remove(log + kArmed);
        return states;
    }

    // ---- the judgement

    // What is wrong with a start on these files; empty: nothing.  `found` is told which of the records it loaded.
    std::string judge(const Files& state, std::span<const Record> acceptable, const Scenario& scenario,
                      const Files& before, Record& found) {
        const std::string backup = at(state, kBackup);
        if (is_healthy(at(before, kBackup)) && !(scenario.resets && backup.empty()) && !is_healthy(backup))
            return "the backup is not what it was, nor a new one";
        put(state);
        if (!start_somehow())
            return "the service does not start";
        const Record loaded = copy_of_record();
        const auto match = std::find_if(acceptable.begin(), acceptable.end(),
                                        [&](const Record& r) { return is_of(loaded, r); });
        if (match == acceptable.end())
            return "it loads neither what was acknowledged nor what was under way: " +
                   first_difference(loaded, acceptable.front());
        found = *match;
        const Files after = files();
        for (const auto& [name, bytes] : after)
            if (name.find(".new") != std::string::npos)
                return name + " is left";
        if (!is_healthy(at(after, kMain)) || at(after, kMain) != at(after, kBackup))
            return "the files are not two healthy ones";
        if (at(after, kLog).find(scenario.logged) == std::string::npos)
            return std::string("the operation log does not tell \"") + scenario.logged + "\"";
        return judge_restarts(state, after, found);
    }

    // The second start may note the version that it found; then nothing changes any more.  What a start does follows
    // from the files that it finds: those that it left as they were, or that others ended with, need no other.
    std::string judge_restarts(Files before, Files after, const Record& found) {
        std::vector<std::pair<std::size_t, const DEVICECONFIG*>> ends;
        for (int starts = 1; after != before; ++starts) {
            Files databases = after;
            databases.erase(kLog);  // nothing reads it
            ends.emplace_back(hash_of(databases), found.get());
            if (settled_.contains(ends.back()))
                break;
            if (starts == 3)
                return "a third start changes files";
            if (!start_somehow())
                return "the service does not start again";
            const Record again = copy_of_record();
            if (!is_of(again, found))
                return "another start loads something else: " + first_difference(again, found);
            before = std::exchange(after, files());
        }
        settled_.insert(ends.begin(), ends.end());
        return "";
    }
    using Seen = std::set<std::pair<std::size_t, const DEVICECONFIG*>>;  // files, and a record
    Seen settled_;  // the record that starts on them load
    Seen tried_;    // the one that was acknowledged last
    // What a database made from a record, or brought up to date, gives when it is loaded is not always that record: rows
    // have defaults.  A cut between the two leaves values of each.
    bool is_of(const Record& loaded, const Record& expected) const {
        if (same(loaded, expected))
            return true;
        for (const auto& [made, reload] : {std::pair(front_, front_reload_), std::pair(back_, back_reload_)})
            if (made != nullptr && same(expected, made) &&
                (same(loaded, reload) || is_of_both(*loaded, *made, *reload)))
                return true;
        return false;
    }
    static bool is_of_both(const DEVICECONFIG& loaded, const DEVICECONFIG& made, const DEVICECONFIG& reload) {
        const auto differs = [&](const Cell& cell, const DEVICECONFIG& other) {
            const auto at = [&](const DEVICECONFIG& r) {
                return reinterpret_cast<const std::byte*>(&r) + cell.offset;
            };
            return std::memcmp(at(loaded), at(other), cell.field->size) != 0 &&
                   cell_text(loaded, cell) != cell_text(other, cell);
        };
        for (const Table* table : all_tables())
            for (const Cell& cell : cells_of_table(*table))
                if (differs(cell, made) && differs(cell, reload))
                    return false;
        return true;
    }
    Record front_, front_reload_, back_, back_reload_;  // of the first start; of one behind the last request
    void start_twice(Record& first, Record& second) {
        for (Record* record : {&first, &second}) {
            EXPECT_TRUE(start());
            *record = copy_of_record();
        }
        kill_service();
        if (!same(first, second))
            std::printf("a second start changes %s\n", first_difference(first, second).c_str());
    }

    struct Outcome {
        std::size_t states = 0, faults = 0;
    };

    // Starts on the states of a record until enough are tried or so many faults found.
    Outcome replay(const CutStates& recorded, const std::vector<Record>& expected, const Files& before,
                   const Scenario& scenario, std::size_t states, std::size_t most_faults, const Part& part,
                   bool nested = false) {
        constexpr std::size_t kOneByOne = 32, kSubsets = 4, kNested = 10;
        Outcome outcome;
        std::deque<std::pair<Files, Record>> to_cut_again;
        std::set<const DEVICECONFIG*> seen;
        for (const CutStates::Cut& cut : recorded.cuts(kOneByOne, kSubsets * factor(), 1)) {
            if (outcome.states >= states / part.of || outcome.faults >= most_faults)
                break;
            const Files state = recorded.after(cut);
            const std::span acceptable = std::span(expected).subspan(recorded.replies(cut.behind));
            const std::pair key(hash_of(state), acceptable.front().get());
            if (key.first % part.of != part.number || !tried_.insert(key).second)
                continue;
            ++outcome.states;
            Record found;
            if (const std::string fault =
                    judge(state, acceptable.first(std::min<std::size_t>(acceptable.size(), 2)), scenario,
                          before, found);
                !fault.empty()) {
                ++outcome.faults;
                report(fault, recorded, cut);
            } else if (seen.insert(found.get()).second) {
                to_cut_again.emplace_back(state, found);
            } else if (outcome.states % (states / kNested + 1) == 1) {
                to_cut_again.emplace_front(state, found);
            }
        }
        // Where a start has little to do, the others have its share.
        for (std::size_t left = states / 2 / part.of; !nested && !to_cut_again.empty();
             to_cut_again.pop_front()) {
            if (outcome.faults >= most_faults)
                break;
            const auto& [state, found] = to_cut_again.front();
            put(state);
            const CutStates again = record_run([] {});
            const Outcome inner = replay(again, {found}, state, scenario,
                                         left / to_cut_again.size() * part.of, most_faults, part, true);
            left -= inner.states;
            outcome.states += inner.states;
            outcome.faults += inner.faults;
        }
        return outcome;
    }

    static inline bool quiet_ = false;  // faults are expected
    static void report(const std::string& fault, const CutStates& recorded, const CutStates::Cut& cut) {
        if (quiet_)
            return;
        std::ostringstream text;
        text << fault << "; kind " << cut.kind << " of " << cut.one << ", names " << cut.names
             << ", behind operation " << cut.behind << " of " << recorded.operations().size()
             << ", the last of which are";
        for (std::size_t k = std::max<std::size_t>(cut.behind, 6) - 6; k < cut.behind; ++k) {
            const auto& o = recorded.operations()[k];
            text << "\n  " << static_cast<int>(o.what.kind) << " " << o.what.file << " " << o.what.offset
                 << " " << (o.what.kind == Recorded::write ? std::to_string(o.bytes.size()) : o.bytes);
        }
        ADD_FAILURE() << text.str();
    }

    Outcome prove(const Scenario& scenario, const Part& part = {}, const std::string& plant = "",
                  std::size_t most_faults = 3) {
        const Files before = files();
        start_twice(front_, front_reload_);
        put(before);
        settled_.clear();
        const CutStates recorded = record_run(scenario.drive, plant, scenario.hastes);
        EXPECT_TRUE(same(front_, expected_.front()));
        if (scenario.reloads) {
            start_twice(back_, back_reload_);
            expected_.back() = back_;
        }
        scenario.first(*expected_.front());
        scenario.last(*expected_.back());
        const std::vector<Record> expected = expected_;
        EXPECT_EQ(recorded.replies(recorded.operations().size()), expected.size() - 1);
        const auto begin = std::chrono::steady_clock::now();
        const Outcome outcome =
            replay(recorded, expected, before, scenario, scenario.states * factor(), most_faults, part);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        std::printf("%zu operations, %zu states, %zu faults, %.1f s\n", recorded.operations().size(),
                    outcome.states, outcome.faults, seconds.count());
        return outcome;
    }

    // ---- what the scenarios share

    static std::function<void(const DEVICECONFIG&)> is_named(const std::string& name) {
        return [name](const DEVICECONFIG& r) { EXPECT_EQ(r.channel[0].name, name); };
    }
    void save_tables(int saves) {
        for (int i = 1; i <= saves; ++i) {
            change_network(i);
            request(EN_UPDATE_TABLE_LIST, for_tables({31, 35, kTableListEnd}));
        }
    }
    Scenario group_save() {
        settle("gate");
        return {.states = 240, .drive = [this] { save_tables(6); }, .first = is_named("gate")};
    }
    Scenario restore() {
        const std::string backup = settled_database("backup");
        put({{kMain, damaged(settled_database("gate"))}, {kBackup, backup}});
        return {.states = 320, .logged = "Main Db is broken\n", .first = is_named("backup")};
    }
    Scenario rebuild() {
        put({{kMain, settled_database("gate", 1000 << 8)}});
        return {.states = 160, .first = is_named("gate")};
    }
    Scenario backup() {
        settle("gate");
        const auto save_and_wait = [this] {
            rename_channel("north");
            request(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3}));
            for (int n = 0; n < 500 && content(kMain) != content(kBackup); ++n)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            EXPECT_EQ(content(kMain), content(kBackup));
        };
        return {.states = 240, .drive = save_and_wait, .hastes = true, .last = is_named("north")};
    }
    Scenario reset(int kind) {
        settle("gate");
        return {.states = 240,
                .drive = [this, kind] { request(kind); },
                .reloads = true,
                .resets = true,
                .first = is_named("gate"),
                .last =
                    [kind](const DEVICECONFIG& r) {
                        EXPECT_STREQ(r.channel[0].name, "default");
                        EXPECT_EQ(r.device.dev_info.dev_type, 7);
                        EXPECT_EQ(r.network.netconfig.mtu, kind == EN_RESET_FACTORY_PARA_MODE2 ? 1400 : 1);
                    }};
    }
    Scenario first_start() {
        put({});
        return {.states = 240, .logged = "Db version is -1,Read from cfg\n", .first = is_named("default")};
    }
    Scenario single_save() {
        settle("gate");
        const auto save = [this] {
            for (int i = 1; i <= 8; ++i) {
                rename_channel("name " + std::to_string(i));
                request(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3}));
            }
        };
        return {.states = 240, .drive = save, .first = is_named("gate"), .last = is_named("name 8")};
    }
    Scenario whole_store() {
        settle("gate");
        const auto store = [this] {
            change_everything();
            request(EN_UPDATE_ALL_RECORD);
        };
        return {.states = 240,
                .drive = store,
                .reloads = true,
                .first = is_named("gate"),
                .last = is_named("north")};
    }
    Scenario patch_step() {
        put({{kMain, settled_database("gate", 1168 << 8)}});
        return {.states = 300, .first = is_named("gate")};
    }
    // From the oldest schema there is, which holds a value of somebody's in every row and column, to the newest.
    Scenario chain() {
        capability = 1;
        hardware_count = 16;
        put({});
        randomise(kLowestPatchableMajor);
        std::strcpy(r_.users.user[1].username, "guest");
        std::strcpy(r_.users.user[1].passwd, "secret");
        for (const Table* table : all_tables())
            if (table->name == "intelligent_colour_config")  // starts empty it
                for (const Cell& cell : cells_of_table(*table))
                    set_cell(r_, cell, "0");
        const Record original = std::make_shared<const DEVICECONFIG>(r_);
        older_database(kLowestPatchableMajor);
        close_database();
        return {.states = 120, .first = [this, original](const DEVICECONFIG& r) {
                    for (const Table* table : all_tables())
                        for (const Cell& cell : cells_of_table(*table))
                            if (table->strategy != Strategy::packed &&
                                has(std::string(table->name), std::string(cell.field->name),
                                    kLowestPatchableMajor)) {
                                EXPECT_EQ(cell_text(r, cell), cell_text(*original, cell)) << address_of(cell);
                            }
                    EXPECT_STREQ(r.users.sec_user[1].username, "guest");
                    EXPECT_STREQ(r.users.sec_user[1].passwd, "secret");
                }};
    }
    // Beginning with the page that is the root of a table or index.
    static std::string replaced(std::string database, const std::string& root_of, const std::string& bytes) {
        write_file(get_db_path(), database);
        set_db_handle(db_open(get_db_path()));
        const auto root = query("select rootpage from sqlite_master where name = '" + root_of + "'");
        close_database();
        return database.replace((std::stoul(root) - 1) * 1024, bytes.size(), bytes);
    }
    // The index of a key has no entries.
    Scenario self_repair() {
        const std::string empty_leaf{10, 0, 0, 0, 0, 4, 0, 0};
        put({{kMain, replaced(settled_database("gate"), "sqlite_autoindex_chn_comp_info_1", empty_leaf)}});
        return {.states = 120, .first = is_named("gate")};
    }
    // The channels cannot be read, the network can.
    Scenario salvage() {
        put({{kMain, replaced(settled_database("gate"), "chn_info", std::string(1024, 'x'))}});
        return {
            .states = 160, .logged = "Db version is -1,Read from cfg\n", .first = [](const DEVICECONFIG& r) {
                EXPECT_STREQ(r.channel[0].name, "default");
                EXPECT_EQ(r.network.netconfig.mtu, 1400);
            }};
    }
    Scenario encryption() {
        settled_database("gate");
        fresh_database();
        r_.sec_lock_auth.db_enc_version = 0x01000000;
        save_all();
        EXPECT_EQ(db_update_version(kCurrentVersion, get_db_handle()), 0);
        close_database();
        return {.states = 320, .first = [](const DEVICECONFIG& r) {
                    EXPECT_EQ(r.sec_lock_auth.db_enc_version, kDefaultVersion);
                    EXPECT_STREQ(r.network.pppoe.username, "user");
                }};
    }
    Scenario log_wrap() {
        Scenario restoring = restore();
        for (int line = 0; line < 34; ++line)
            log_operation("line %d of a log that is nearly full\n", line);
        EXPECT_GT(content(kLog).size(), 1900u);
        return restoring;
    }
};

// Each tries so many states at least: all together more than 5,000.
#define PROVE_PART(NAME, STATES, SCENARIO, NUMBER, OF)             \
    TEST_F(PowerCut, NAME) {                                       \
        const Outcome outcome = prove(SCENARIO, Part{NUMBER, OF}); \
        EXPECT_EQ(outcome.faults, 0u);                             \
        EXPECT_GE(outcome.states, STATES);                         \
    }
#define PROVE(NAME, STATES, SCENARIO) PROVE_PART(NAME, STATES, SCENARIO, 0, 1)
PROVE(FirstStart, 350u, first_start())
PROVE(SingleSave, 350u, single_save())
PROVE(GroupSave, 350u, group_save())
PROVE(WholeStore, 350u, whole_store())
PROVE(Backup, 300u, backup())
PROVE(PatchStep, 440u, patch_step())
PROVE_PART(ChainFirstPart, 85u, chain(), 0, 2)
PROVE_PART(ChainSecondPart, 85u, chain(), 1, 2)
PROVE(SelfRepair, 175u, self_repair())
PROVE(Salvage, 235u, salvage())
PROVE(Restore, 470u, restore())
PROVE(Rebuild, 235u, rebuild())
PROVE(ResetOfAll, 350u, reset(EN_RESET_ALL_FACTORY_PARA))
PROVE(ResetKeepingAccess, 350u, reset(EN_RESET_FACTORY_PARA_MODE2))
PROVE(Encryption, 470u, encryption())
PROVE(LogWrap, 470u, log_wrap())

// The test of the test: each fault that the recorder commits in the service's place is seen.
#define PLANT(NAME, FAULT, SCENARIO)                         \
    TEST_F(PowerCut, Sees##NAME) {                           \
        quiet_ = true;                                       \
        EXPECT_GT(prove(SCENARIO, {}, FAULT, 1).faults, 0u); \
        quiet_ = false;                                      \
    }
PLANT(SynchronousNormal, "synchronous normal", group_save())
PLANT(SkippedSync, "skipped fdatasync", group_save())
PLANT(DeletedJournal, "journal deleted", group_save())
PLANT(BackupCopiedInPlace, "backup copied in place", backup())
PLANT(ReplyBeforeCommit, "replies before the commit", single_save())
PLANT(ReplyBeforeRename, "replies before the rename", reset(EN_RESET_ALL_FACTORY_PARA))
PLANT(RebuildThatDeletesFirst, "deletes before it rebuilds", rebuild())

}  // namespace
