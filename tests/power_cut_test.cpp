// Power cuts: what the service does to its files, and each reply, is recorded (recorder/); then the power goes behind one
// operation after another, and a service is started on each state that the storage may be in (cut_states.h).
//
// POWER_CUT_FACTOR multiplies the number of states (./dev crash).
#include "old_databases.h"

#include <fcntl.h>
#include <malloc.h>
#include <signal.h>
#include <spawn.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <deque>
#include <span>

#include "chain.h"
#include "cut_states.h"
#include "operation_log.h"
#include "shared_objects.h"

namespace {

using Record = std::shared_ptr<const DEVICECONFIG>;

constexpr const char *kMain = "devinfo/ipc_db", *kBackup = "devinfo/ipc_db_backup",
                     *kLog = "devinfo/db_op_info.log", *kDump = "ex1.dump.gz";

std::size_t factor() {
    const char* value = getenv("POWER_CUT_FACTOR");
    return value != nullptr ? std::strtoul(value, nullptr, 10) : 1;
}

bool same(const Record& a, const Record& b) {
    return std::memcmp(a.get(), b.get(), sizeof *a) == 0;
}

std::string first_difference(const Record& a, const Record& b) {
    const auto* x = reinterpret_cast<const std::byte*>(a.get());
    const auto* y = reinterpret_cast<const std::byte*>(b.get());
    for (const Table* table : all_tables())
        for (const Cell& cell : cells_of_table(*table))
            if (!std::equal(x + cell.offset, x + cell.offset + cell.field->size, y + cell.offset))
                return address_of(cell);
    return same(a, b) ? "none" : "past the tables";
}

// A process that runs the service's start-up code when it is asked to, each time in a fork of itself.  It is small: what
// a fork costs, and the process that has forked, goes by the memory that they have.
class Starter {
  public:
    explicit Starter(DEVICECONFIG& record) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        here_.reset(ends[0]);
        const unique_fd there(ends[1]);
        pid_ = fork();
        if (pid_ != 0)
            return;
        here_.reset();
        const unique_fd nowhere(::open("/dev/null", O_WRONLY));
        dup2(nowhere.get(), STDOUT_FILENO);
        dup2(nowhere.get(), STDERR_FILENO);
        for (char answer = 0; read(there.get(), &answer, 1) == 1;) {
            const pid_t child = fork();
            if (child == 0) {
                alarm(30);
                closing_flag = false;
                set_cfg_param(&record);
                forget_device();
                static_cast<void>(init_database());  // the record tells
                _exit(0);
            }
            int status = 0;
            answer = waitpid(child, &status, 0) == child && status == 0 ? 1 : 0;
            if (write(there.get(), &answer, 1) != 1)
                break;
        }
        _exit(0);
    }
    ~Starter() {
        here_.reset();
        waitpid(pid_, nullptr, 0);
    }
    Starter(const Starter&) = delete;
    Starter& operator=(const Starter&) = delete;

    [[nodiscard]] bool start() {
        char answer = 0;
        return write(here_.get(), &answer, 1) == 1 && read(here_.get(), &answer, 1) == 1 && answer == 1;
    }

  private:
    unique_fd here_;
    pid_t pid_ = 0;
};

// The service as a process of its own, under the fixture's root; this process is its main application.
class Device {
  public:
    Device() = default;
    ~Device() {
        end();
        shmctl(find_segment()->id, IPC_RMID, nullptr);
        semctl(loaded_.id(), 0, IPC_RMID);
        semctl(defaults_set_.id(), 0, IPC_RMID);
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    DEVICECONFIG& record() { return *shared_.get(); }
    Record copy() { return std::make_shared<const DEVICECONFIG>(record()); }

    // The service's start-up code in a process of its own, which ends with it: it takes a fourth of the time.  Of many
    // starts some are the service's.
    [[nodiscard]] bool start_only(const DEVICECONFIG& defaults) {
        if (factor() > 1 && ++starts_ % 20 == 0) {
            const bool started = start(defaults);
            end();
            return started;
        }
        end();
        std::memcpy(&record(), &defaults, sizeof defaults);
        return starter_.start();
    }
    // False: it ended, or did not load the record within its time.
    [[nodiscard]] bool start(const DEVICECONFIG& defaults, std::vector<std::string> environment = {}) {
        end();
        std::memcpy(&record(), &defaults, sizeof defaults);
        loaded_.set(0);
        defaults_set_.set(1);
        for (const char* name : {"DEVICE_ROOT", "PATH"})
            environment.push_back(name + std::string("=") + getenv(name));
        std::vector<char*> variables;
        variables.reserve(environment.size() + 1);
        for (std::string& variable : environment)
            variables.push_back(variable.data());
        variables.push_back(nullptr);
        std::string program = BIN_DIR "/database_process";
        char* arguments[] = {program.data(), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        EXPECT_EQ(posix_spawn(&pid_, program.c_str(), &actions, nullptr, arguments, variables.data()), 0);
        posix_spawn_file_actions_destroy(&actions);
        for (int second = 0; second < 30; ++second) {
            sembuf take{0, -1, 0};
            const timespec patience{1, 0};
            if (semtimedop(loaded_.id(), &take, 1, &patience) == 0)
                return true;
            if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
                pid_ = 0;
                return false;
            }
        }
        return false;
    }
    void end() {
        if (pid_ <= 0)
            return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }
    static int32_t call(int kind, const ServiceRequest& request) {
        int32_t value = -99;
        int length = 0, result = 0;
        EXPECT_EQ(ipc_unix_call_service(kServiceNumber, kind, &request, sizeof request, 0, &value,
                                        sizeof value, 60000, &length, &result),
                  0);
        return value;
    }

  private:
    const SharedRecord shared_ = SharedRecord::attach_or_create();
    const Semaphore loaded_ = Semaphore::open_or_create(kLoadedKey),
                    defaults_set_ = Semaphore::open_or_create(kDefaultsKey);
    Starter starter_{*shared_.get()};
    std::size_t starts_ = 0;
    pid_t pid_ = 0;
};

// Of the states, by their contents.
struct Part {
    std::size_t number = 0, of = 1;
};

class PowerCut : public OldDatabases {
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

    // Not told before a test runs: the test program is also other tests' second process, under their root.
    const std::string root_ = std::filesystem::path(path("")).parent_path().parent_path();
    const bool closed_ = (close_database(), true);  // before a process is forked that would have it, too
    Device device_;
    std::unique_ptr<DEVICECONFIG> defaults_ = std::make_unique<DEVICECONFIG>();
    std::vector<Record> expected_;  // what the device holds after the start, and after each reply

    PowerCut() {
        hardware_count = 1;
        std::strcpy(defaults_->channel[0].name, "default");
        defaults_->network.netconfig.mtu = 1;
        // The files that are compared come and go, and are large: the memory stays.
        mallopt(M_MMAP_THRESHOLD, 64 << 20);
        mallopt(M_TRIM_THRESHOLD, 512 << 20);
        std::filesystem::remove(get_db_path());
    }
    ~PowerCut() override { std::filesystem::remove(kDump); }

    // ---- files

    static std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(path("")))
            all.push_back("devinfo/" + entry.path().filename().string());
        if (std::filesystem::exists(kDump))
            all.emplace_back(kDump);
        return all;
    }
    static Files files() {
        Files all;
        for (const std::string& name : names())
            all[name] = content(name);
        return all;
    }
    static void put(const Files& files) {
        for (const std::string& name : names())
            std::filesystem::remove(name);
        for (const auto& [name, bytes] : files)
            write_file(name, bytes);
    }
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

    // A database of the record, as a service leaves it.
    std::string settled_database(const char* name, int version = kCurrentVersion) {
        put({});
        fresh_database();
        wipe();
        std::strcpy(r_.channel[0].name, name);
        r_.device.dev_info.dev_type = 7;
        r_.network.netconfig.mtu = 1400;
        std::strcpy(r_.network.pppoe.username, "user");
        save_all();
        EXPECT_EQ(db_update_version(version, get_db_handle()), 0);
        close_database();
        return content(get_db_path());
    }
    void settle(const char* name) {
        settled_database(name);
        for (int n = 0; n < 2; ++n)
            EXPECT_TRUE(device_.start(*defaults_));
        device_.end();
        std::filesystem::remove(kLog);
    }

    // ---- requests

    void request(int kind, const ServiceRequest& fields = {}) {
        EXPECT_EQ(Device::call(kind, fields), 0) << kind;
        expected_.push_back(device_.copy());
    }

    // ---- the record

    CutStates record(const std::function<void()>& drive, const std::string& plant = "", bool hastes = false) {
        const std::string log = root_ + ".recorded";
        std::map<uint64_t, std::string> inodes;
        for (const std::string& name : names()) {
            struct stat status {};
            EXPECT_EQ(stat(name.c_str(), &status), 0);
            inodes[status.st_ino] = name;
        }
        const Files before = files();
        std::filesystem::remove(log);
        std::vector<std::string> environment{"LD_PRELOAD=" RECORDER, kRecordLog + ("=" + log),
                                             kRecordRoot + ("=" + root_), kRecordPlant + ("=" + plant)};
        if (hastes)
            environment.push_back(kRecordHaste + std::string("=1"));
        expected_.clear();
        EXPECT_TRUE(device_.start(*defaults_, environment));
        expected_.push_back(device_.copy());
        write_file(log + kArmed, "");
        drive();
        device_.end();
        CutStates states(before, inodes, log);
        std::filesystem::remove(log);
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
        if (!device_.start_only(*defaults_))
            return "the service does not start";
        const Record loaded = device_.copy();
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
            if (!device_.start_only(*defaults_))
                return "the service does not start again";
            const Record again = device_.copy();
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
            EXPECT_TRUE(device_.start(*defaults_));
            *record = device_.copy();
        }
        device_.end();
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
            const CutStates again = record([] {});
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
        const CutStates recorded = record(scenario.drive, plant, scenario.hastes);
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
            device_.record().network.netconfig.mtu = i;
            for (auto& address : device_.record().network.ipaddr)
                std::memset(address.ipv6addr, i, sizeof address.ipv6addr);
            request(EN_UPDATE_TABLE_LIST, for_tables({31, 35, kTableListEnd}));
        }
    }
    Scenario group_save() {
        settle("gate");
        return {.states = 240, .drive = [this] { save_tables(6); }, .first = is_named("gate")};
    }
    // Nothing can be read of it.
    static std::string damaged(std::string database) { return database.replace(0, 1024, 1024, 'x'); }
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
            std::strcpy(device_.record().channel[0].name, "north");
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
                std::strcpy(device_.record().channel[0].name, ("name " + std::to_string(i)).c_str());
                request(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3}));
            }
        };
        return {.states = 240, .drive = save, .first = is_named("gate"), .last = is_named("name 8")};
    }
    Scenario whole_store() {
        settle("gate");
        const auto store = [this] {
            for (const Table* table : all_tables())
                for (const Cell& cell : cells_of_table(*table))
                    if (cell.field->kind != Kind::text && cell.field->size == 4)
                        set_cell(device_.record(), cell, "1");
            std::strcpy(device_.record().channel[0].name, "north");
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
