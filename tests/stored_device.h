// A device below the fixture's root, for tests that start services on its files: what they contain, the record that it
// shares with the service, and the service.
#ifndef TESTS_STORED_DEVICE_H
#define TESTS_STORED_DEVICE_H

#include <malloc.h>
#include <sys/socket.h>

#include <chrono>
#include <thread>

#include "cut_states.h"
#include "old_databases.h"
#include "programs.h"

using Record = std::shared_ptr<const DEVICECONFIG>;

inline bool same(const Record& a, const Record& b) {
    return std::memcmp(a.get(), b.get(), sizeof *a) == 0;
}

inline std::string first_difference(const Record& a, const Record& b) {
    const auto* x = reinterpret_cast<const std::byte*>(a.get());
    const auto* y = reinterpret_cast<const std::byte*>(b.get());
    for (const Table* table : all_tables())
        for (const Cell& cell : cells_of_table(*table))
            if (!std::equal(x + cell.offset, x + cell.offset + cell.field->size, y + cell.offset))
                return address_of(cell) + " (" + cell_text(*a, cell) + ", not " + cell_text(*b, cell) + ")";
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
        setenv(kRecordHaste, "1", 1);
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
                _exit(init_database() == 0 ? 0 : 1);
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

class StoredDevice : public OldDatabases {
  protected:
    static constexpr const char *kMain = "devinfo/ipc_db", *kBackup = "devinfo/ipc_db_backup",
                                *kLog = "devinfo/db_op_info.log", *kDump = "ex1.dump.gz";

    // Not told before a test runs: the test program is also other tests' second process, under their root.
    const std::string root_ = std::filesystem::path(path("")).parent_path().parent_path();
    const bool closed_ = (close_database(), true);  // before a process is forked that would have it, too
    const SharedRecord shared_record_ = SharedRecord::attach_or_create();
    const Semaphore loaded_ = Semaphore::open_or_create(kLoadedKey),
                    defaults_set_ = Semaphore::open_or_create(kDefaultsKey);
    std::unique_ptr<DEVICECONFIG> defaults_ = std::make_unique<DEVICECONFIG>();
    pid_t service_ = 0;
    int status_ = 0;  // with which it ended

    StoredDevice() {
        hardware_count = 1;
        std::strcpy(defaults_->channel[0].name, "default");
        defaults_->network.netconfig.mtu = 1;
        // The files that are compared come and go, and are large: the memory stays.
        mallopt(M_MMAP_THRESHOLD, 64 << 20);
        mallopt(M_TRIM_THRESHOLD, 512 << 20);
        put({});
    }
    ~StoredDevice() override {
        kill_service();
        remove_shared_objects();
        std::filesystem::remove(kDump);
        std::filesystem::remove(root_ + ".recorded");
    }

    DEVICECONFIG& record() const { return *shared_record_.get(); }
    Record copy_of_record() const { return std::make_shared<const DEVICECONFIG>(record()); }

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
            if (!files.contains(name))
                std::filesystem::remove(name);
        for (const auto& [name, bytes] : files)
            if (!std::filesystem::exists(name) || content(name) != bytes)
                write_file(name, bytes);
    }
    static std::map<uint64_t, std::string> inodes() {
        std::map<uint64_t, std::string> all;
        for (const std::string& name : names()) {
            struct stat status {};
            EXPECT_EQ(stat(name.c_str(), &status), 0);
            all[status.st_ino] = name;
        }
        return all;
    }

    // ---- databases

    static void name_users(UserEntry* users) {
        for (const char* name : {"admin", "guest"}) {
            std::strcpy(users->username, name);
            std::strcpy(users++->passwd, "secret");
        }
    }
    // Of a record with this name, as a service leaves it.
    std::string settled_database(const char* name, int version = kCurrentVersion) {
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
        return content(get_db_path());
    }
    // Nothing can be read of it.
    static std::string damaged(std::string database) { return database.replace(0, 1024, 1024, 'x'); }

    // ---- starts

    // The service's start-up code in a process of its own, which ends with it: it takes a fourth of the service's time.
    [[nodiscard]] bool start_up() {
        record() = *defaults_;
        return starter_.start();
    }
    // The service waits for its defaults.
    void offer_defaults() {
        record() = *defaults_;
        loaded_.set(0);
        defaults_set_.set(1);
    }
    bool lives() {
        if (service_ > 0 && waitpid(service_, &status_, WNOHANG) == service_)
            service_ = 0;
        return service_ > 0;
    }
    // False: not within the time, or the service ended before.
    template <class Condition>
    bool comes_to(Condition condition, std::chrono::seconds time = std::chrono::seconds(30)) {
        using namespace std::chrono_literals;
        const auto end = std::chrono::steady_clock::now() + time;
        for (bool lived = true; !condition(); std::this_thread::sleep_for(100us)) {
            if (!lived || std::chrono::steady_clock::now() > end)
                return false;
            lived = lives();
        }
        return true;
    }
    bool has_loaded() {
        return comes_to([this] { return loaded_.value() == 1; });
    }
    void kill_service() {
        if (service_ > 0)
            status_ = end_program(service_, SIGKILL);
    }

    static constexpr int32_t kNoReply = -99;
    static int32_t call_service(int kind, const ServiceRequest& fields = {}) {
        int32_t value = kNoReply;
        const int error = ipc_unix_call_service(kServiceNumber, kind, &fields, sizeof fields, 0, &value,
                                                sizeof value, 60000);
        return error != 0 ? error : value;
    }

    // ---- what scenarios share

    void rename_channel(const std::string& name) { std::strcpy(record().channel[0].name, name.c_str()); }
    void change_network(int value) {
        record().network.netconfig.mtu = value;
        for (auto& address : record().network.ipaddr)
            std::memset(address.ipv6addr, value, sizeof address.ipv6addr - 1);
    }
    void change_everything() {
        for (const Table* table : all_tables())
            for (const Cell& cell : cells_of_table(*table))
                if (cell.field->kind != Kind::text && cell.field->size == 4)
                    set_cell(record(), cell, "1");
        rename_channel("north");
    }

  private:
    Starter starter_{record()};
};

#endif
