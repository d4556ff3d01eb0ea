// Faults of the storage and of the memory: in a service that this process forks each operation of a request or of a
// start fails once (recorder/faults.h), for each error that it can have.  After each the service has told so, serves on,
// leaks nothing, and what a restart loads is what was acknowledged, or what was there.
//
// FAULT_PATHS and FAULT_POINTS tell how many of the points (./dev faults).
#include <execinfo.h>
#include <fcntl.h>
#include <malloc.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/wait.h>

#include "backup.h"
#include "cut_states.h"
#include "old_databases.h"
#include "recorder/faults.h"
#include "shared_objects.h"

int database_process_main();  // the daemon's main()

namespace {

struct Fault {
    Operation kind;
    int error;
    bool lasting = false;
};
constexpr Fault kFaults[] = {
    {Operation::read, EIO},        {Operation::write, EIO},
    {Operation::write, ENOSPC},    {Operation::write, ENOSPC, true},
    {Operation::sync, EIO},        {Operation::sync, ENOSPC},
    {Operation::open, EIO},        {Operation::open, ENOSPC},
    {Operation::open, EROFS},      {Operation::open, EMFILE},
    {Operation::rename, EIO},      {Operation::rename, ENOSPC},
    {Operation::rename, EROFS},    {Operation::truncate, EIO},
    {Operation::truncate, EROFS},  {Operation::unlink, EIO},
    {Operation::unlink, EROFS},    {Operation::look, EIO},
    {Operation::allocate, ENOMEM}, {Operation::allocate, ENOMEM, true},
};

constexpr const char *kMain = "devinfo/ipc_db", *kBackup = "devinfo/ipc_db_backup",
                     *kLog = "devinfo/db_op_info.log";

using Record = std::shared_ptr<DEVICECONFIG>;

std::size_t hash_of_record(const DEVICECONFIG& record) {
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(&record), sizeof record});
}

std::string first_difference(const DEVICECONFIG& a, const DEVICECONFIG& b) {
    const auto *x = reinterpret_cast<const std::byte*>(&a), *y = reinterpret_cast<const std::byte*>(&b);
    for (const Table* table : all_tables())
        for (const Cell& cell : cells_of_table(*table))
            if (!std::equal(x + cell.offset, x + cell.offset + cell.field->size, y + cell.offset))
                return address_of(cell) + " (" + cell_text(a, cell) + ", not " + cell_text(b, cell) + ")";
    return "past the tables";
}

// In memory that this process shares with the services that it forks.
struct Shared {
    Faults faults;
    std::atomic<bool> ready;
    sem_t pass, passed;  // of the backup
};

class FaultSweep : public OldDatabases {
  protected:
    struct Scenario {
        Files files;                                       // that the service finds
        std::function<int32_t()> request = {};             // what meets the fault; none: the start
        std::function<void()> change = [] {};              // of the record, before it
        std::function<int32_t()> again = {};               // afterwards; none: a table is stored
        std::vector<std::function<int32_t()>> parts = {};  // what a failed request may have done as well
        bool replies = true;                               // otherwise the log tells
        bool backs_up = false;
    };

    const std::string root_ = std::filesystem::path(path("")).parent_path().parent_path();
    const SharedRecord record_memory_ = SharedRecord::attach_or_create();
    DEVICECONFIG& record() const { return *record_memory_.get(); }
    const Semaphore loaded_ = Semaphore::open_or_create(kLoadedKey),
                    defaults_set_ = Semaphore::open_or_create(kDefaultsKey);
    Shared* const shared_ = [] {
        void* memory =
            mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        return new (memory) Shared{};
    }();
    static constexpr std::size_t kMostPaths = 2'000'000, kPoints = 30;
    Faults::Path* const paths_ =
        static_cast<Faults::Path*>(mmap(nullptr, kMostPaths * sizeof(Faults::Path), PROT_READ | PROT_WRITE,
                                        MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    const unique_fd output_{memfd_create("output", 0)};
    std::unique_ptr<DEVICECONFIG> defaults_ = std::make_unique<DEVICECONFIG>();
    pid_t pid_ = 0;
    std::string plant_;

    FaultSweep() {
        hardware_count = 1;
        std::strcpy(defaults_->channel[0].name, "default");
        defaults_->network.netconfig.mtu = 1;
        close_database();
        mallopt(M_MMAP_THRESHOLD, 64 << 20);  // states and records come and go
        mallopt(M_TRIM_THRESHOLD, 512 << 20);
        void* calls[2];
        static_cast<void>(backtrace(calls, 2));  // it loads a library when it is first called
        prepare_encryption();
        sem_init(&shared_->pass, 1, 0);
        sem_init(&shared_->passed, 1, 0);
        put({});
    }
    ~FaultSweep() override {
        kill_service();
        shmctl(find_segment()->id, IPC_RMID, nullptr);
        semctl(loaded_.id(), 0, IPC_RMID);
        semctl(defaults_set_.id(), 0, IPC_RMID);
        munmap(shared_, sizeof *shared_);
        munmap(paths_, kMostPaths * sizeof(Faults::Path));
        std::filesystem::remove(root_ + ".recorded");
    }

    // ---- files

    static std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(path("")))
            all.push_back("devinfo/" + entry.path().filename().string());
        return all;
    }
    static Files files() {
        Files all;
        for (const std::string& name : names())
            all[name] = read_file(name);
        return all;
    }
    // A file that is there stays, with other bytes: the database may be open.
    static void put(const Files& files) {
        for (const std::string& name : names())
            if (!files.contains(name))
                std::filesystem::remove(name);
        for (const auto& [name, bytes] : files)
            if (!std::filesystem::exists(name) || read_file(name) != bytes)
                write_file(name, bytes);
    }
    // Of what a start loads from.
    static std::size_t hash_of(const Files& files) {
        std::size_t hash = 0;
        for (const auto& [name, bytes] : files)
            if (name != kLog)
                for (const std::string* part : {&name, &bytes})
                    hash = hash * 1000003 + std::hash<std::string>()(*part);
        return hash;
    }
    static std::string read_file(const std::string& name) {
        const unique_fd file(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
        const off_t size = lseek(file.get(), 0, SEEK_END);
        std::string bytes(static_cast<std::size_t>(std::max<off_t>(size, 0)), '\0');
        EXPECT_EQ(pread(file.get(), bytes.data(), bytes.size(), 0), std::ssize(bytes));
        return bytes;
    }

    // ---- processes

    // This process stays as it is.
    template <class Work>
    void apart(Work work) {
        std::fflush(stdout);
        const pid_t child = fork();
        if (child == 0) {
            work();
            std::fflush(stdout);
            _exit(HasFailure() ? 1 : 0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

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
        faults = &shared_->faults;
    }
    // Begins with the start.
    void fork_daemon() {
        loaded_.set(0);
        defaults_set_.set(1);
        database_started = false;
        if ((pid_ = fork()) == 0) {
            become_a_service();
            faults->armed = true;
            _exit(database_process_main());
        }
    }
    // As after its start; the database is open.
    void fork_service(const Scenario& scenario) {
        shared_->ready = false;
        database_started = true;
        if ((pid_ = fork()) == 0) {
            become_a_service();
            init_debug_task(0, 0);
            set_cfg_param(&record());
            pthreadMutexInit(&g_db_mutexsem);
            pthread_t thread{};
            if (ipc_unix_init("database_process", kServiceNumber, db_service_task, db_service_task) != 0 ||
                (scenario.backs_up && pthreadSpawn(&thread, 0, kBackupStack, back_up, shared_) != 0))
                _exit(9);
            shared_->ready = true;
            for (;;)
                pause();
        }
        for (int n = 0; n < 20000 && !shared_->ready; ++n)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        EXPECT_EQ(call_service(EN_GET_CURRENT_DB_VERSION), kCurrentVersion);
        std::filesystem::resize_file(root_ + ".recorded", 0);
        if (scenario.backs_up)  // its first sample
            back_up_once();
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
    // False: it has ended, or hangs.
    bool back_up_once() {
        timespec end{};
        clock_gettime(CLOCK_REALTIME, &end);
        end.tv_sec += 20;
        for (int n = 0; n < 1000; ++n) {
            timespec slice{};
            clock_gettime(CLOCK_REALTIME, &slice);
            slice.tv_nsec += 20'000'000;
            slice.tv_sec += slice.tv_nsec / 1'000'000'000;
            slice.tv_nsec %= 1'000'000'000;
            if (sem_timedwait(&shared_->passed, &slice) == 0)
                return true;
            if (!lives())
                return false;
        }
        return false;
    }
    int status_ = 0;
    bool lives() {
        if (pid_ > 0 && waitpid(pid_, &status_, WNOHANG) == pid_)
            pid_ = 0;
        return pid_ > 0;
    }
    void kill_service() {
        if (pid_ <= 0)
            return;
        kill(pid_, SIGKILL);
        waitpid(pid_, &status_, 0);
        pid_ = 0;
    }
    // The loaded record is announced; false: the service has ended, or hangs.
    bool wait_until_loaded() {
        for (int n = 0; n < 6000; ++n) {
            sembuf take{0, -1, 0};
            const timespec patience{0, 5'000'000};
            if (semtimedop(loaded_.id(), &take, 1, &patience) == 0)
                return true;
            if (!lives())
                return false;
        }
        return false;
    }
    std::size_t descriptors() const {
        const std::filesystem::directory_iterator all("/proc/" + std::to_string(pid_) + "/fd");
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
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
            if (line.size() > 2 && line[0] == '[' && line[1] >= '1' && line[1] <= '3' && line[2] == ']')
                found.insert(line);
        return found;
    }

    // ---- requests

    static constexpr int32_t kNoReply = -99;
    static int32_t call_service(int kind, const ServiceRequest& fields = {}) {
        int32_t value = kNoReply;
        int length = 0, result = 0;
        const int error = ipc_unix_call_service(kServiceNumber, kind, &fields, sizeof fields, 0, &value,
                                                sizeof value, 20000, &length, &result);
        return error != 0 ? error : value;
    }
    static int32_t store_gamma() { return call_service(EN_UPDATE_ONE_TABLE_RECORD, for_tables({27})); }
    // What a record is after that.
    Record with_gamma(const DEVICECONFIG& base) const {
        auto result = std::make_shared<DEVICECONFIG>(base);
        for (const Cell& cell : cells_of_table(*find_table("gamma_config_table")))
            std::memcpy(reinterpret_cast<std::byte*>(result.get()) + cell.offset,
                        reinterpret_cast<const std::byte*>(&record()) + cell.offset, cell.field->size);
        return result;
    }

    // ---- restarts

    // What a start loads from the files, and another after it; null, with the reason: they do not, or something else.
    Record restart(const Files& state, std::string& reason) {
        const Files before = files();
        put(state);
        Record first;
        for (int n = 0; n < 2; ++n) {
            std::memcpy(&record(), defaults_.get(), sizeof *defaults_);
            const pid_t child = fork();
            if (child == 0) {
                alarm(30);
                const int nowhere = ::open("/dev/null", O_WRONLY);
                dup2(nowhere, STDOUT_FILENO);
                dup2(nowhere, STDERR_FILENO);
                setenv(kRecordHaste, "1", 1);
                closing_flag = false;
                if (get_db_handle() != nullptr)
                    static_cast<void>(release_db_handle());  // this process's
                set_cfg_param(&record());
                forget_device();
                _exit(init_database() == 0 ? 0 : 1);
            }
            int status = 0;
            waitpid(child, &status, 0);
            if (status != 0)
                reason = "a restart fails";
            first = std::make_shared<DEVICECONFIG>(record());
        }
        if (content(kMain) != content(kBackup))
            reason = "a restart leaves two databases";
        put(before);
        return first;
    }
    struct Restarted {
        std::size_t record;
        std::string reason;
    };
    std::map<std::size_t, Restarted> restarted_;
    const Restarted& restarted(const Files& state) {
        const auto [found, is_new] = restarted_.try_emplace(hash_of(state));
        if (is_new) {
            const DEVICECONFIG kept = record();
            std::string reason;
            found->second.record = hash_of_record(*restart(state, reason));
            found->second.reason = reason;
            record() = kept;
        }
        return found->second;
    }
    // What is wrong with a restart on the files; empty: it loads one of the records.
    std::string judge_restart(const char* when, const Files& state, const std::vector<Record>& acceptable) {
        const Restarted& found = restarted(state);
        if (!found.reason.empty())
            return found.reason + " " + when;
        for (const Record& r : acceptable)
            if (hash_of_record(*r) == found.record)
                return "";
        const DEVICECONFIG kept = record();
        std::string reason, differences;
        const Record loaded = restart(state, reason);
        record() = kept;
        for (const Record& r : acceptable)
            differences += " " + first_difference(*loaded, *r);
        return std::string("a restart loads something else ") + when + ":" + differences;
    }

    // ---- points

    // What came of a run.
    struct Run {
        bool lived = true;         // and did not hang
        int32_t reply = 0;         // of the request; of a start 0: it has loaded
        Files files;               // then
        Files synced;              // what of them is on the storage for sure
        std::string said;          // by then
        Record live;               // the record by then
        int32_t again = kNoReply;  // the reply to the request afterwards
        Files last;                // after that
        Record wanted_again;       // what is in the record then
        std::size_t descriptors = 0;
        std::string open;  // what they are
        int exit_status = 0;
    };
    std::unique_ptr<DEVICECONFIG> start_record_ = std::make_unique<DEVICECONFIG>();
    ino_t open_inode_ = 0;

    static ino_t inode_of(const char* name) {
        struct stat status {};
        return stat(name, &status) == 0 ? status.st_ino : 0;
    }
    void prepare(const Scenario& scenario) {
        put(scenario.files);
        if (scenario.request && (get_db_handle() == nullptr || inode_of(kMain) != open_inode_)) {
            close_database();
            put(scenario.files);
            set_db_handle(db_open(get_db_path()));
            sql("select count(*) from sqlite_master");
            put(scenario.files);
            open_inode_ = inode_of(kMain);
        }
        record() = scenario.request ? *start_record_ : *defaults_;
    }
    Files synced(const Files& before, const std::map<uint64_t, std::string>& inodes) const {
        const CutStates states(before, inodes, root_ + ".recorded");
        const std::size_t all = states.operations().size();
        return states.after({CutStates::Cut::dropped, all, 0, 0});
    }

    Run run(const Scenario& scenario, const Fault& fault, uint64_t number) {
        prepare(scenario);
        std::map<uint64_t, std::string> inodes;
        for (const std::string& name : names())
            inodes[inode_of(name.c_str())] = name;
        Faults& f = shared_->faults;
        f.armed = false;
        f.kind = fault.kind, f.error = fault.error, f.lasting = fault.lasting, f.number = number;
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
            f.armed = false;
        } else {
            fork_daemon();
            run.reply = wait_until_loaded() ? 0 : -1;
            f.armed = false;
        }
        run.live = std::make_shared<DEVICECONFIG>(record());
        run.said = output();
        run.files = files();
        run.synced = synced(scenario.files, inodes);
        if (!lives()) {
            run.exit_status = status_;
            run.lived = false;
            return run;
        }
        if (scenario.again) {
            run.again = scenario.again();
        } else {
            for (int n = 0; n < (scenario.request ? 1 : 3) && run.again != 0; ++n) {
                record().sensor[0].gamma.level = 7;
                run.again = store_gamma();
            }
        }
        run.wanted_again = std::make_shared<DEVICECONFIG>(record());
        run.lived = run.again != kNoReply && lives();
        int patience = 0;
        // The service closes a connection a little later.
        do
            std::this_thread::sleep_for(std::chrono::milliseconds(usual_descriptors_ == 0 ? 100 : 0));
        while (run.lived && (run.descriptors = descriptors()) > usual_descriptors_ &&
               usual_descriptors_ != 0 && ++patience < 10000);
        for (const auto& fd : std::filesystem::directory_iterator("/proc/" + std::to_string(pid_) + "/fd"))
            run.open += " " + std::filesystem::read_symlink(fd.path()).string();
        kill_service();
        run.last = files();
        return run;
    }
    std::size_t usual_descriptors_ = 0;

    struct Expected {
        Run run;                      // without a fault
        Record before, after, twice;  // what a restart loads
        std::vector<Record> parts;
    };

    // What is wrong with a run that met a fault.
    std::string judge(const Scenario& scenario, const Expected& expected, const Run& run, bool& silent) {
        const auto gamma = [&](const Record& r) { return scenario.again ? r : with_gamma(*r); };
        const bool done = run.reply == 0 && scenario.replies;
        std::vector<Record> acceptable;
        if (!done) {
            acceptable = expected.parts;
            acceptable.push_back(expected.before);
        }
        acceptable.push_back(expected.after);
        if (!run.lived) {
            const bool may_end = !scenario.request && WIFEXITED(run.exit_status) &&
                                 WEXITSTATUS(run.exit_status) != 0 && !run.said.empty();
            if (!may_end)
                return "the service has ended, or hangs, status " + std::to_string(run.exit_status);
        }
        for (const auto& [when, state] :
             {std::pair{"at once", &run.files}, {"of what was synced", &run.synced}})
            if (std::string fault = judge_restart(when, *state, acceptable); !fault.empty())
                return fault;
        const auto usual = complaints(expected.run.said), said = complaints(run.said);
        const bool told = !std::includes(usual.begin(), usual.end(), said.begin(), said.end());
        silent = done && !told;
        if (!done && !told && run.reply == 0)
            if (hash_of_record(*run.live) != hash_of_record(*expected.run.live))
                return "another record, and not a word: " + first_difference(*run.live, *expected.run.live);
        if (!scenario.request && run.lived && !told &&
            hash_of_record(*run.live) != hash_of_record(*expected.run.live))
            return "another record, and not a word: " + first_difference(*run.live, *expected.run.live);
        if (!run.lived)
            return "";
        if (run.again != 0)
            return "the next request fails: " + std::to_string(run.again);
        record() = *run.wanted_again;
        std::vector<Record> last;
        if (scenario.again)
            for (const Record& r : {expected.after, expected.twice})
                last.push_back(r);
        else
            for (const Record& r : acceptable)
                last.push_back(gamma(r));
        if (std::string fault = judge_restart("after the next request", run.last, last); !fault.empty())
            return fault;
        if (run.descriptors > usual_descriptors_)
            return std::to_string(run.descriptors) + " descriptors instead of " +
                   std::to_string(usual_descriptors_) + run.open;
        return "";
    }

    struct Outcome {
        std::size_t points = 0, faults = 0, silent = 0;
    };
    static inline bool quiet_ = false;

    // The points of a scenario: of what the same calls lead to `FAULT_PATHS` operations, evenly; all for 0.  Of those
    // as many as `FAULT_POINTS`, in even steps; all for 0.
    struct Point {
        Fault fault;
        uint64_t number;
    };
    static std::size_t setting(const char* name, std::size_t otherwise) {
        const char* value = getenv(name);
        return value != nullptr ? std::strtoul(value, nullptr, 10) : otherwise;
    }
    std::vector<Point> points_of(std::size_t noted) {
        const std::size_t paths = setting("FAULT_PATHS", 2), wanted = setting("FAULT_POINTS", kPoints);
        const char* const only = getenv("FAULT_KIND");
        std::map<std::pair<Operation, uint32_t>, std::vector<uint64_t>> by_path;
        for (std::size_t i = 0; i < std::min(noted, kMostPaths); ++i)
            by_path[{paths_[i].kind, paths_[i].calls}].push_back(paths_[i].number);
        std::vector<Point> points, chosen;
        for (const Fault& fault : kFaults)
            for (const auto& [path, numbers] : by_path) {
                if (path.first != fault.kind ||
                    (only != nullptr && std::string(only) != kOperationNames[static_cast<int>(fault.kind)]))
                    continue;
                const std::size_t some = paths == 0 ? numbers.size() : std::min(paths, numbers.size());
                for (std::size_t i = 0; i < some; ++i)
                    points.push_back({fault, numbers[i * numbers.size() / some]});
            }
        if (const std::size_t number = setting("FAULT_NUMBER", 0); number != 0)
            return {{{Operation::allocate, ENOMEM, true}, number}};
        const std::size_t step = wanted == 0 ? 1 : std::max<std::size_t>(points.size() / wanted, 1);
        all_points_ = points.size();
        for (std::size_t i = std::mt19937(1)() % step; i < points.size(); i += step)
            chosen.push_back(points[i]);
        return chosen;
    }

    std::size_t all_points_ = 0;

    Outcome sweep(const Scenario& scenario, const std::string& plant = "", std::size_t most_faults = 8) {
        restarted_.clear();
        close_database();
        std::string reason;
        *start_record_ = *restart(scenario.files, reason);
        Expected expected;
        usual_descriptors_ = 0;
        Faults& f = shared_->faults;
        f.paths = paths_, f.most_paths = kMostPaths;
        expected.run = run(scenario, {}, 0);
        f.paths = nullptr;
        const std::vector<Point> points = points_of(f.noted_paths);
        uint64_t seen[kOperations];
        std::copy(std::begin(f.seen), std::end(f.seen), seen);
        EXPECT_EQ(expected.run.reply, 0) << expected.run.said;
        EXPECT_EQ(expected.run.again, 0);
        usual_descriptors_ = expected.run.descriptors;
        expected.before = restart(scenario.files, reason);
        expected.after = restart(expected.run.files, reason);
        expected.twice = restart(expected.run.last, reason);
        EXPECT_EQ(reason, "");
        for (const auto& part : scenario.parts) {
            Scenario only = scenario;
            only.request = part;
            expected.parts.push_back(restart(run(only, {}, 0).files, reason));
        }
        plant_ = plant;
        Outcome outcome;
        Outcome of_kind[kOperations];
        for (const Point& point : points) {
            if (outcome.faults >= most_faults)
                break;
            const Run met = run(scenario, point.fault, point.number);
            if (shared_->faults.failed == 0)
                continue;
            bool silent = false;
            const std::string wrong = judge(scenario, expected, met, silent);
            if (!wrong.empty())
                report(wrong, point, met);
            for (Outcome* o : {&outcome, &of_kind[static_cast<int>(point.fault.kind)]}) {
                ++o->points;
                o->faults += !wrong.empty();
                o->silent += silent;
            }
        }
        for (std::size_t kind = 0; kind < kOperations; ++kind)
            if (seen[kind] != 0)
                std::printf("%-9s %7llu operations %6zu points %3zu faults %5zu without a word\n",
                            kOperationNames[kind], static_cast<unsigned long long>(seen[kind]),
                            of_kind[kind].points, of_kind[kind].faults, of_kind[kind].silent);
        std::printf("%zu of %zu points, %zu faults\n", outcome.points, all_points_, outcome.faults);
        return outcome;
    }
    std::string calls() const {
        std::string text;
        char** lines = backtrace_symbols(shared_->faults.calls, shared_->faults.depth);
        for (int i = 1; i < std::min(shared_->faults.depth.load(), 24); ++i)
            text += std::string("\n  ") + lines[i];
        std::free(lines);
        return text;
    }
    void report(const std::string& wrong, const Point& point, const Run& met) const {
        if (quiet_)
            return;
        const Fault& fault = point.fault;
        ADD_FAILURE() << wrong << "; " << kOperationNames[static_cast<int>(fault.kind)] << " " << point.number
                      << (fault.lasting ? " and all after it" : "") << ", error " << fault.error << ", reply "
                      << met.reply << calls() << "\n"
                      << met.said.substr(met.said.size() > 1500 ? met.said.size() - 1500 : 0);
    }

    // ---- scenarios

    static void name_users(UserEntry* users) {
        for (const char* name : {"admin", "guest"}) {
            std::strcpy(users->username, name);
            std::strcpy(users++->passwd, "secret");
        }
    }
    // A database of the record, as a service leaves it.
    Files settled(const char* name, int version = kCurrentVersion) {
        apart([&] {
            put({});
            fresh_database();
            wipe();
            std::strcpy(r_.channel[0].name, name);
            r_.device.dev_info.dev_type = 7;
            r_.network.netconfig.mtu = 1400;
            std::strcpy(r_.network.pppoe.username, "user");
            name_users(r_.users.sec_user);
            save_all();
            EXPECT_EQ(db_update_version(version, get_db_handle()), 0);
            close_database();
        });
        Files made = {{kMain, content(kMain)}};
        put({});
        return made;
    }
    // With a backup that is older.
    Files with_backup(const char* name, const char* older) {
        Files all = settled(older);
        for (int n = 0; n < 2; ++n) {
            std::string reason;
            put(all);
            static_cast<void>(restart_in_place());
            all = files();
        }
        const std::string backup = all.at(kBackup);
        apart([&] {
            put({{kMain, backup}});
            set_db_handle(db_open(get_db_path()));
            sql("update chn_info set name = '" + std::string(name) + "';");
            close_database();
        });
        Files made = {{kMain, content(kMain)}, {kBackup, backup}};
        put({});
        return made;
    }
    bool restart_in_place() {
        const Files now = files();
        apart([&] {
            const int nowhere = ::open("/dev/null", O_WRONLY);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            record() = *defaults_;
            set_cfg_param(&record());
            forget_device();
            EXPECT_EQ(init_database(), 0);
            close_database();
        });
        return true;
    }
    void rename_channel(const char* name) { std::strcpy(record().channel[0].name, name); }

    Scenario single_save() {
        return {.files = with_backup("gate", "old gate"),
                .request = [] { return call_service(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})); },
                .change = [this] { rename_channel("north"); }};
    }
    void change_network() {
        record().network.netconfig.mtu = 1300;
        for (auto& address : record().network.ipaddr)
            std::memset(address.ipv6addr, 'a', sizeof address.ipv6addr - 1);
    }
    Scenario group_save() {
        return {.files = with_backup("gate", "old gate"),
                .request = [] { return call_service(EN_SAVE_NETWORK_PARAM); },
                .change = [this] { change_network(); }};
    }
    Scenario list_save() {
        const auto save = [](std::initializer_list<int32_t> tables) {
            return [request = for_tables(tables)] { return call_service(EN_UPDATE_TABLE_LIST, request); };
        };
        return {.files = with_backup("gate", "old gate"),
                .request = save({31, 3, kTableListEnd}),
                .change =
                    [this] {
                        rename_channel("north");
                        change_network();
                    },
                .parts = {save({31, kTableListEnd}), save({3, kTableListEnd})}};
    }
    Scenario whole_store() {
        return {.files = with_backup("gate", "old gate"),
                .request = [] { return call_service(EN_UPDATE_ALL_RECORD); },
                .change =
                    [this] {
                        for (const Table* table : all_tables())
                            for (const Cell& cell : cells_of_table(*table))
                                if (cell.field->kind != Kind::text && cell.field->size == 4)
                                    set_cell(record(), cell, "1");
                        rename_channel("north");
                    }};
    }
    Scenario load() {
        return {.files = with_backup("gate", "old gate"),
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
        return {.files = with_backup("gate", "old gate"), .request = ask, .again = ask};
    }
    Scenario backup_pass() {
        const auto pass = [this]() -> int32_t {
            sem_post(&shared_->pass);
            return back_up_once() ? 0 : -1;
        };
        return {.files = with_backup("gate", "old gate"),
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
    Scenario first_start() { return {}; }
    Scenario healthy_start() { return {.files = with_backup("gate", "old gate")}; }
    Scenario restore() {
        Files all = with_backup("gate", "old gate");
        all[kMain].replace(0, 1024, 1024, 'x');
        return {.files = all};
    }
    Scenario rebuild() { return {.files = settled("gate", 1000 << 8)}; }
    Scenario upgrade(int major) {
        apart([&] {
            put({});
            wipe();
            std::strcpy(r_.channel[0].name, "gate");
            r_.network.netconfig.mtu = 1400;
            name_users(major < kEncryptedMajor ? r_.users.user : r_.users.sec_user);
            older_database(major);
            close_database();
        });
        const Files made = {{kMain, content(kMain)}};
        put({});
        return {.files = made};
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
SWEEP(FirstStart, first_start())
SWEEP(HealthyStart, healthy_start())
SWEEP(Restore, restore())
SWEEP(Rebuild, rebuild())
SWEEP(PatchSteps, upgrade(1162))
SWEEP(Chain, upgrade(1101))

// The test of the test: what the recorder does in the service's place is seen.
#define PLANT(NAME, PLANTED, KIND, SCENARIO)               \
    TEST_F(FaultSweep, Sees##NAME) {                       \
        quiet_ = true;                                     \
        setenv("FAULT_KIND", KIND, 1);                     \
        EXPECT_GT(sweep(SCENARIO, PLANTED, 1).faults, 0u); \
        unsetenv("FAULT_KIND");                            \
        quiet_ = false;                                    \
    }
PLANT(SwallowedSync, "sync taken for done", "sync", single_save())
PLANT(SwallowedCommit, "COMMIT taken for done", "write", single_save())
PLANT(OpenDescriptor, "descriptor left open", "open", single_save())

}  // namespace
