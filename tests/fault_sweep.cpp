// Faults of the storage and of the memory: in a service that this process forks each operation of a request or of a
// start fails once (recorder/faults.h), for each error that it can have.  After each the service has told so, serves on,
// leaks nothing, and what a restart loads is what was acknowledged, or what was there.
//
// FAULT_PATHS and FAULT_POINTS tell how many of the points (./dev faults), FAULT_KIND a kind of operation for them all.
#include <execinfo.h>
#include <semaphore.h>
#include <sys/mman.h>

#include "backup.h"
#include "recorder/faults.h"
#include "stored_device.h"

int database_process_main();  // the daemon's main()

namespace {

constexpr uint64_t kForGood = UINT64_MAX;
struct Fault {
    Operation kind;
    int error;
    uint64_t length = 1;  // so many operations in a row
};
constexpr Fault kFaults[] = {
    {Operation::read, EIO},
    {Operation::read, EIO, 12},
    {Operation::write, EIO},
    {Operation::write, ENOSPC},
    {Operation::write, ENOSPC, kForGood},
    {Operation::sync, EIO},
    {Operation::sync, ENOSPC},
    {Operation::open, EIO},
    {Operation::open, ENOSPC},
    {Operation::open, EROFS},
    {Operation::open, EMFILE},
    {Operation::open, EIO, kForGood},
    {Operation::rename, EIO},
    {Operation::rename, ENOSPC},
    {Operation::rename, EROFS},
    {Operation::truncate, EIO},
    {Operation::truncate, EROFS},
    {Operation::unlink, EIO},
    {Operation::unlink, EROFS},
    {Operation::look, EIO},
    {Operation::allocate, ENOMEM},
    {Operation::allocate, ENOMEM, kForGood},
};
constexpr std::size_t kMostPaths = 2'000'000;

// In memory that this process shares with the services that it forks.
struct Shared {
    Faults faults;
    std::atomic<bool> ready;
    sem_t pass, passed;  // of the backup
    Faults::Path paths[kMostPaths];
};

std::size_t setting(const char* name, std::size_t otherwise) {
    const char* value = getenv(name);
    return value != nullptr ? std::strtoul(value, nullptr, 10) : otherwise;
}

class FaultSweep : public StoredDevice {
  protected:
    using Request = std::function<int32_t()>;
    struct Scenario {
        Files files;                           // that the service finds
        Request request = {};                  // what meets the fault; none: the start
        std::function<void()> change = [] {};  // of the record, before it
        Request again = {};                    // afterwards; none: a table is stored
        std::vector<Request> parts = {};       // what a failed request may have done as well
        bool replies = true;                   // otherwise the log tells
        bool backs_up = false;
    };

    Shared& shared_ = *static_cast<Shared*>(mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                                                 MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    const unique_fd output_{memfd_create("output", 0)};
    std::string plant_;

    FaultSweep() {
        void* calls[2];
        static_cast<void>(backtrace(calls, 2));  // it loads a library when it is first called
        prepare_encryption();
        sem_init(&shared_.pass, 1, 0);
        sem_init(&shared_.passed, 1, 0);
    }
    ~FaultSweep() override {
        kill_service();
        munmap(&shared_, sizeof shared_);
    }

    // ---- the service

    void become_a_service() {
        alarm(60);
        for (int fd = STDERR_FILENO + 1; fd < 256; ++fd)  // connections of this process
            if (struct stat status{}; fstat(fd, &status) == 0 && S_ISSOCK(status.st_mode))
                close(fd);
        ftruncate(output_.get(), 0);
        lseek(output_.get(), 0, SEEK_SET);
        dup2(output_.get(), STDOUT_FILENO);
        dup2(output_.get(), STDERR_FILENO);
        std::setvbuf(stdout, nullptr, _IOLBF, 0);
        setenv(kRecordLog, (root_ + ".recorded").c_str(), 1);
        setenv(kRecordRoot, root_.c_str(), 1);
        setenv(kRecordHaste, "1", 1);
        setenv(kRecordPlant, plant_.c_str(), 1);
        setenv("LD_PRELOAD", RECORDER, 1);  // for what it runs
        signal(SIGSEGV, [](int number) {    // the report tells where
            void* calls[40];
            faults = nullptr;
            backtrace_symbols_fd(calls, backtrace(calls, 40), STDERR_FILENO);
            signal(number, SIG_DFL);
            raise(number);
        });
        closing_flag = false;
        forget_device();
        faults = &shared_.faults;
    }
    // Begins with the start.
    void fork_daemon() {
        offer_defaults();
        database_started = false;
        if ((service_ = fork()) == 0) {
            become_a_service();
            faults->armed = true;
            _exit(database_process_main());
        }
    }
    // As after its start; the database is open.
    void fork_service(const Scenario& scenario) {
        shared_.ready = false;
        database_started = true;
        if ((service_ = fork()) == 0) {
            become_a_service();
            init_debug_task(0, 0);
            set_cfg_param(&record());
            pthreadMutexInit(&g_db_mutexsem);
            pthread_t thread{};
            if (ipc_unix_init("database_process", kServiceNumber, db_service_task, db_service_task) != 0 ||
                (scenario.backs_up && pthreadSpawn(&thread, 0, kBackupStack, back_up, &shared_) != 0))
                _exit(9);
            shared_.ready = true;
            for (;;)
                pause();
        }
        EXPECT_TRUE(comes_to([this] { return shared_.ready.load(); }));
        EXPECT_EQ(call_service(EN_GET_CURRENT_DB_VERSION), kCurrentVersion);
        std::filesystem::resize_file(root_ + ".recorded", 0);
        if (scenario.backs_up) {  // its first sample
            EXPECT_TRUE(has_backed_up());
        }
    }
    static void* back_up(void* memory) {
        auto* shared = static_cast<Shared*>(memory);
        Backup([shared](int) {
            sem_post(&shared->passed);
            while (sem_wait(&shared->pass) != 0) {
            }
        }).run();
        return nullptr;
    }
    bool has_backed_up() {
        return comes_to([this] { return sem_trywait(&shared_.passed) == 0; });
    }
    std::vector<std::string> descriptors() const {
        std::vector<std::string> all;
        for (const auto& fd :
             std::filesystem::directory_iterator("/proc/" + std::to_string(service_) + "/fd"))
            if (std::error_code gone; exists(fd.symlink_status(gone)))
                all.push_back(std::filesystem::read_symlink(fd.path(), gone).string());
        return all;
    }
    std::string output() const {
        std::string text(static_cast<std::size_t>(lseek(output_.get(), 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(output_.get(), text.data(), text.size(), 0), std::ssize(text));
        return text;
    }
    // The lines of errors and warnings.
    static std::set<std::string> complaints(const std::string& text) {
        std::istringstream lines(text);
        std::set<std::string> found;
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("[1]") || line.starts_with("[2]") || line.starts_with("[3]"))
                found.insert(line);
        return found;
    }

    // ---- restarts

    // What a start loads from files, and another after it.
    struct Restarted {
        Record record;
        std::string wrong;  // empty: nothing
    };
    std::map<std::size_t, Restarted> restarted_;
    std::map<std::size_t, Record> loaded_records_;  // each once

    const Restarted& restart(const Files& state) {
        Files databases = state;
        databases.erase(kLog);
        const auto [found, is_new] = restarted_.try_emplace(hash_of(databases));
        Restarted& result = found->second;
        if (!is_new)
            return result;
        const Files before = files();
        const Record kept = copy_of_record();
        put(state);
        for (int n = 0; n < 2; ++n)
            if (!start_up())
                result.wrong = "a restart fails";
        if (content(kMain) != content(kBackup))
            result.wrong = "a restart leaves two databases";
        const auto hash =
            std::hash<std::string_view>()({reinterpret_cast<const char*>(&record()), sizeof(DEVICECONFIG)});
        result.record = loaded_records_.try_emplace(hash, copy_of_record()).first->second;
        record() = *kept;
        put(before);
        return result;
    }
    // What is wrong with a restart on the files; empty: it loads one of the records.
    std::string judge_restart(const char* when, const Files& state, const std::vector<Record>& acceptable) {
        const Restarted& found = restart(state);
        std::string differences;
        for (const Record& r : acceptable) {
            if (same(found.record, r))
                return found.wrong.empty() ? "" : found.wrong + " " + when;
            differences += " " + first_difference(found.record, r);
        }
        return found.wrong + " a restart loads something else " + when + ":" + differences;
    }

    // ---- a point: one operation, one fault

    struct Point {
        Fault fault;
        uint64_t number = 0;
    };

    // What came of it.
    struct Run {
        bool lived = true;         // and did not hang
        int32_t reply = 0;         // of the request; of a start 0: it has loaded
        Files files, synced;       // then; what of them is on the storage for sure
        std::string said;          // by then
        Record live;               // the record by then
        int32_t again = kNoReply;  // the reply to the request afterwards
        Files last;                // after that
        Record live_again;
        std::vector<std::string> descriptors;
        bool has_more = false;  // than usual: a reset that failed leaves the database open
    };

    void prepare(const Scenario& scenario) {
        close_database();
        put(scenario.files);
        record() = *defaults_;
        if (!scenario.request)
            return;
        record() = *restart(scenario.files).record;
        set_db_handle(db_open(get_db_path()));
        sql("select count(*) from sqlite_master");
    }

    // A request that failed is followed by a store, to see that the service goes on.
    static bool stores_next(const Scenario& scenario, int32_t reply) {
        return !scenario.again || (scenario.replies && scenario.request && reply != 0);
    }

    // `descriptors`: how many it usually has open afterwards; a connection is closed a little later.
    Run run(const Scenario& scenario, const Point& point, std::size_t descriptors = 0) {
        prepare(scenario);
        const auto inodes_before = inodes();
        Faults& f = shared_.faults;
        f.armed = false;
        f.kind = point.fault.kind, f.error = point.fault.error, f.length = point.fault.length;
        f.number = point.number;
        f.swallowed = plant_ == "sync taken for done";
        for (auto& seen : f.seen)
            seen = 0;
        f.failed = 0, f.depth = 0, f.noted_paths = 0;
        std::filesystem::remove(root_ + ".recorded");
        Run run;
        if (scenario.request) {
            fork_service(scenario);
            scenario.change();
            f.armed = true;
            run.reply = scenario.request();
        } else {
            fork_daemon();
            run.reply = has_loaded() ? 0 : -1;
        }
        f.armed = false;
        run.live = copy_of_record();
        run.said = output();
        run.files = files();
        const CutStates states(scenario.files, inodes_before, root_ + ".recorded");
        run.synced = states.after({CutStates::Cut::dropped, states.operations().size(), 0, 0});
        run.lived = lives();
        // A start that failed, or a replacement of the database whose success is uncertain, is made up for by the first
        // requests.
        const bool uncertain = !scenario.request || point.fault.length > 1,
                   stores = stores_next(scenario, run.reply);
        for (int n = 0; run.lived && run.again != 0 && n < (uncertain ? 3 : 1); ++n) {
            if (stores)
                record().sensor[0].gamma.level = 7;
            run.again =
                stores ? call_service(EN_UPDATE_ONE_TABLE_RECORD, for_tables({27})) : scenario.again();
        }
        run.live_again = copy_of_record();
        if (run.again == kNoReply || !lives())
            run.lived = false;
        if (run.lived && descriptors == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        run.has_more = stores && scenario.again;
        const auto are_closed = [&] {
            run.descriptors = this->descriptors();
            return descriptors == 0 || run.descriptors.size() <= descriptors + run.has_more;
        };
        if (run.lived)
            comes_to(are_closed, std::chrono::seconds(3));
        kill_service();
        run.last = files();
        return run;
    }

    struct Expected {
        Run run;                      // without a fault
        Record before, after, twice;  // what a restart loads
        std::vector<Record> parts;
    };

    // The record with what is stored after each request.
    static Record with_gamma(const Record& base, const Record& stored) {
        auto result = std::make_shared<DEVICECONFIG>(*base);
        for (const Cell& cell : cells_of_table(*find_table("gamma_config_table")))
            std::memcpy(reinterpret_cast<std::byte*>(result.get()) + cell.offset,
                        reinterpret_cast<const std::byte*>(stored.get()) + cell.offset, cell.field->size);
        return result;
    }

    // What is wrong with a run that met a fault.
    std::string judge(const Scenario& scenario, const Expected& expected, const Fault& fault,
                      const Run& run) {
        const bool done = run.reply == 0 && scenario.replies;
        // What could be undone is.
        const bool undone =
            run.reply != 0 && scenario.replies && scenario.request && fault.length != kForGood;
        std::vector<Record> acceptable, last{expected.after, expected.twice};
        if (!undone)
            acceptable.push_back(expected.after);
        if (!done) {
            acceptable.insert(acceptable.end(), expected.parts.begin(), expected.parts.end());
            acceptable.push_back(expected.before);
        }
        // A start may end with a message.
        const bool may_end =
            !scenario.request && WIFEXITED(status_) && WEXITSTATUS(status_) != 0 && !run.said.empty();
        if (!run.lived && !may_end)
            return "the service has ended, or hangs, status " + std::to_string(status_);
        for (const auto& [when, state] :
             {std::pair{"at once", &run.files}, {"of what was synced", &run.synced}})
            if (std::string wrong = judge_restart(when, *state, acceptable); !wrong.empty())
                return wrong;
        const auto usual = complaints(expected.run.said), said = complaints(run.said);
        const bool told = !std::includes(usual.begin(), usual.end(), said.begin(), said.end());
        const bool claims_all = run.reply == 0 && (!scenario.replies || (!scenario.request && run.lived));
        if (claims_all && !told && !same(run.live, expected.run.live))
            return "another record, and not a word: " + first_difference(run.live, expected.run.live);
        if (!run.lived)
            return "";
        if (run.again != 0)
            return "the next request fails: " + std::to_string(run.again);
        if (stores_next(scenario, run.reply)) {
            last.clear();
            for (const Record& r : acceptable)
                last.push_back(with_gamma(r, run.live_again));
        }
        if (std::string wrong = judge_restart("after the next request", run.last, last); !wrong.empty())
            return wrong;
        if (run.descriptors.size() > expected.run.descriptors.size() + run.has_more)
            return "descriptors stay open, the last is " + run.descriptors.back();
        return "";
    }

    // ---- a sweep over the points of a scenario

    // Of what the same calls lead to `FAULT_PATHS` operations, evenly; all for 0.  Of those as many as `FAULT_POINTS`, in even
    // steps; all for 0.
    std::vector<Point> chosen_points(std::size_t noted, const std::string& kind) {
        const std::size_t paths = setting("FAULT_PATHS", 2), wanted = setting("FAULT_POINTS", 30);
        std::map<std::pair<Operation, uint32_t>, std::vector<uint64_t>> by_path;
        for (std::size_t i = 0; i < std::min(noted, kMostPaths); ++i)
            by_path[{shared_.paths[i].kind, shared_.paths[i].calls}].push_back(shared_.paths[i].number);
        std::vector<Point> points, chosen;
        for (const Fault& fault : kFaults)
            for (const auto& [path, numbers] : by_path) {
                if (path.first != fault.kind ||
                    (!kind.empty() && kind != kOperationNames[static_cast<int>(fault.kind)]))
                    continue;
                const std::size_t some = paths == 0 ? numbers.size() : std::min(paths, numbers.size());
                for (std::size_t i = 0; i < some; ++i)
                    points.push_back({fault, numbers[i * numbers.size() / some]});
            }
        const std::size_t step = wanted == 0 ? 1 : std::max<std::size_t>(points.size() / wanted, 1);
        for (std::size_t i = std::mt19937(1)() % step; i < points.size(); i += step)
            chosen.push_back(points[i]);
        std::printf("%zu points of %zu\n", chosen.size(), points.size());
        return chosen;
    }

    struct Outcome {
        std::size_t points = 0, faults = 0;
    };

    // With a planted fault: until it is seen.
    Outcome sweep(const Scenario& scenario, const std::string& plant = "",
                  const std::string& planted_in = "") {
        const char* const named = getenv("FAULT_KIND");
        const std::string kind = named != nullptr ? named : planted_in;
        Faults& f = shared_.faults;
        f.paths = shared_.paths, f.most_paths = kMostPaths;
        Expected expected;
        expected.run = run(scenario, {});
        f.paths = nullptr;
        for (std::size_t i = 0; i < kOperations; ++i)
            std::printf("%s %llu, ", kOperationNames[i], static_cast<unsigned long long>(f.seen[i]));
        const std::vector<Point> points = chosen_points(f.noted_paths, kind);
        EXPECT_EQ(expected.run.reply, 0) << expected.run.said;
        EXPECT_EQ(expected.run.again, 0);
        expected.before = restart(scenario.files).record;
        expected.after = restart(expected.run.files).record;
        expected.twice = restart(expected.run.last).record;
        EXPECT_EQ(restart(expected.run.last).wrong, "");
        for (const auto& part : scenario.parts) {
            Scenario only = scenario;
            only.request = part;
            expected.parts.push_back(restart(run(only, {}).files).record);
        }
        plant_ = plant;
        Outcome outcome;
        for (const Point& point : points) {
            if (outcome.faults >= (plant.empty() ? 8 : 1))
                break;
            const Run met = run(scenario, point, expected.run.descriptors.size());
            if (f.failed == 0)
                continue;
            ++outcome.points;
            const std::string wrong = judge(scenario, expected, point.fault, met);
            if (wrong.empty())
                continue;
            ++outcome.faults;
            if (plant.empty())
                report(wrong, point, met);
        }
        std::printf("%zu points, %zu faults\n", outcome.points, outcome.faults);
        return outcome;
    }
    void report(const std::string& wrong, const Point& point, const Run& met) const {
        std::string calls;
        const int depth = std::min(shared_.faults.depth.load(), 24);
        char** const lines = backtrace_symbols(shared_.faults.calls, depth);
        for (int i = 1; i < depth; ++i)
            calls += std::string("\n  ") + lines[i];
        std::free(lines);
        const Fault& fault = point.fault;
        ADD_FAILURE() << wrong << "; " << kOperationNames[static_cast<int>(fault.kind)] << " " << point.number
                      << (fault.length > 1 ? " and after it" : "") << ", error " << fault.error << ", reply "
                      << met.reply << calls << "\n"
                      << met.said.substr(met.said.size() - std::min<std::size_t>(met.said.size(), 1500));
    }

    // ---- scenarios

    // Main, and a backup that is older.
    Files with_backup() {
        put({{kMain, settled_database("old gate")}});
        for (int n = 0; n < 2; ++n)
            EXPECT_TRUE(start_up());
        const std::string backup = content(kBackup);
        put({{kMain, backup}});
        set_db_handle(db_open(get_db_path()));
        sql("update chn_info set name = 'gate';");
        close_database();
        EXPECT_TRUE(seal_file(kMain));
        Files made = {{kMain, content(kMain)}, {kBackup, backup}};
        put({});
        return made;
    }
    Scenario save(std::initializer_list<int32_t> tables) {
        return {
            .files = with_backup(),
            .request = [request = for_tables(tables)] { return call_service(EN_UPDATE_TABLE_LIST, request); },
            .change =
                [this] {
                    rename_channel("north");
                    change_network('a');
                }};
    }
    Scenario single_save() {
        Scenario scenario = save({});
        scenario.request = [] { return call_service(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})); };
        scenario.change = [this] { rename_channel("north"); };
        return scenario;
    }
    Scenario group_save() {
        Scenario scenario = save({});
        scenario.request = [] { return call_service(EN_SAVE_NETWORK_PARAM); };
        scenario.change = [this] { change_network('a'); };
        return scenario;
    }
    Scenario list_save() {
        Scenario scenario = save({31, 3, kTableListEnd});
        for (const int32_t table : {31, 3})
            scenario.parts.emplace_back([request = for_tables({table, kTableListEnd})] {
                return call_service(EN_UPDATE_TABLE_LIST, request);
            });
        return scenario;
    }
    Scenario whole_store() {
        return {.files = with_backup(),
                .request = [] { return call_service(EN_UPDATE_ALL_RECORD); },
                .change = [this] { change_everything(); }};
    }
    Scenario load() {
        return {.files = with_backup(),
                .request =
                    [] {
                        const int32_t reply = call_service(EN_GET_ALL_RECORD);
                        return reply == kNoReply ? 0 : reply;  // it has none
                    },
                .change = [this] { rename_channel("nobody's"); },
                .replies = false};
    }
    Scenario reset(int kind) {
        const auto ask = [kind] { return call_service(kind); };
        return {.files = with_backup(), .request = ask, .again = ask};
    }
    Scenario backup_pass() {
        const auto pass = [this]() -> int32_t {
            sem_post(&shared_.pass);
            return has_backed_up() ? 0 : -1;
        };
        return {.files = with_backup(),
                .request = pass,
                .again =
                    [pass] {  // a pass may wait for the record to settle
                        for (int n = 0; n < 6; ++n)
                            if (pass() != 0 || content(kMain) == content(kBackup))
                                break;
                        return content(kMain) == content(kBackup) ? 0 : -1;
                    },
                .replies = false,
                .backs_up = true};
    }
    Scenario restore() {
        Scenario scenario = {.files = with_backup()};
        scenario.files[kMain] = damaged(scenario.files[kMain]);
        return scenario;
    }
    Scenario rebuild() { return {.files = {{kMain, settled_database("gate", 1000 << 8)}}}; }
    Scenario upgrade(int major) {
        put({});
        std::strcpy(r_.channel[0].name, "gate");
        r_.network.netconfig.mtu = 1400;
        name_users(major < kEncryptedMajor ? r_.users.user : r_.users.sec_user);
        older_database(major);
        close_database();
        return {.files = {{kMain, content(kMain)}}};
    }
};

#define SWEEP(NAME, SCENARIO)                    \
    TEST_F(FaultSweep, NAME) {                   \
        const Outcome outcome = sweep(SCENARIO); \
        EXPECT_EQ(outcome.faults, 0u);           \
        EXPECT_GE(outcome.points, 20u);          \
    }
SWEEP(SingleSave, single_save())
SWEEP(GroupSave, group_save())
SWEEP(ListSave, list_save())
SWEEP(WholeStore, whole_store())
SWEEP(Load, load())
SWEEP(ResetOfAll, reset(EN_RESET_ALL_FACTORY_PARA))
SWEEP(ResetKeepingAccess, reset(EN_RESET_FACTORY_PARA_MODE2))
SWEEP(BackupPass, backup_pass())
SWEEP(FirstStart, Scenario{})
SWEEP(HealthyStart, {.files = with_backup()})
SWEEP(Restore, restore())
SWEEP(Rebuild, rebuild())
SWEEP(PatchSteps, upgrade(1162))
SWEEP(Chain, upgrade(1101))

// The test of the test: what the recorder does in the service's place is seen.
#define PLANT(NAME, PLANTED, KIND)                                 \
    TEST_F(FaultSweep, Sees##NAME) {                               \
        EXPECT_GT(sweep(single_save(), PLANTED, KIND).faults, 0u); \
    }
PLANT(SwallowedSync, "sync taken for done", "sync")
PLANT(SwallowedCommit, "COMMIT taken for done", "write")
PLANT(OpenDescriptor, "descriptor left open", "open")

}  // namespace
