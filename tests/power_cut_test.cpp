// Power cuts: every write, truncation, sync and unlink that saves make is recorded; then the power goes after each of them, with
// what was not synced dropped, kept or torn, and the database is opened again.  Nothing acknowledged may be missing.
// Kills: a start or a reset is killed at one system call after another; the next start finds the old or the new.
#include "core_fixture.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "recovery.h"
#include "reset.h"

namespace {

// The process that has armed this is killed at the n-th system call that changes what the storage holds.  Of the many
// writes every 150th counts.
int calls_to_live = 0;
int writes = 0;
bool folders_cannot_be_synced = false;

void count_call() {
    if (calls_to_live > 0 && --calls_to_live == 0)
        kill(getpid(), SIGKILL);
}

}  // namespace

// In the place of the C library's, which names its parameters as a program may not.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
int fsync(int fd) {
    count_call();
    struct stat file {};
    if (folders_cannot_be_synced && fstat(fd, &file) == 0 && S_ISDIR(file.st_mode)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, fd));
}
int fdatasync(int fd) {
    count_call();
    return static_cast<int>(syscall(SYS_fdatasync, fd));
}
int rename(const char* from, const char* to) noexcept {
    count_call();
    return static_cast<int>(syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}
int unlink(const char* path) noexcept {
    count_call();
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}
ssize_t pwrite64(int fd, const void* data, size_t size, off64_t at) {
    if (calls_to_live > 0 && ++writes % 150 == 0)
        count_call();
    return syscall(SYS_pwrite64, fd, data, size, at);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

namespace {

struct Operation {
    enum Kind { write, truncate, sync, unlink, acknowledge } kind;
    std::string file = {};
    sqlite3_int64 offset = 0;  // truncate: the new size; acknowledge: the value whose save has returned
    std::string bytes = {};
};

// Records what SQLite does to its files, through the system's own VFS.
class Recorder {
  public:
    static inline std::vector<Operation> operations;
    static inline bool recording = false;

    Recorder() {
        below_ = sqlite3_vfs_find(nullptr);
        vfs_ = *below_;
        vfs_.zName = "recorder";
        vfs_.szOsFile = static_cast<int>(sizeof(File)) + below_->szOsFile;
        vfs_.xOpen = open;
        vfs_.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
            note({Operation::unlink, base(name)});
            return below_->xDelete(below_, name, sync);
        };
        sqlite3_vfs_register(&vfs_, 1);
    }
    ~Recorder() {
        sqlite3_vfs_unregister(&vfs_);
        sqlite3_vfs_register(below_, 1);
    }

  private:
    struct File {
        sqlite3_io_methods const* methods;
        sqlite3_file* below;
        std::string* name;
    };
    static inline sqlite3_vfs* below_;
    static inline sqlite3_vfs vfs_;
    static inline sqlite3_io_methods methods_;

    static std::string base(const char* path) { return std::filesystem::path(path).filename(); }
    static void note(Operation o) {
        if (recording)
            operations.push_back(std::move(o));
    }
    static sqlite3_file* below(sqlite3_file* f) { return reinterpret_cast<File*>(f)->below; }
    static const std::string& name(sqlite3_file* f) { return *reinterpret_cast<File*>(f)->name; }

    static int open(sqlite3_vfs*, const char* path, sqlite3_file* file, int flags, int* out) {
        auto* f = reinterpret_cast<File*>(file);
        f->below = reinterpret_cast<sqlite3_file*>(f + 1);
        f->methods = nullptr;
        const int rc = below_->xOpen(below_, path, f->below, flags, out);
        if (f->below->pMethods == nullptr)
            return rc;
        f->name = new std::string(path != nullptr ? base(path) : "");
        methods_ = *f->below->pMethods;
        methods_.iVersion = 1;
        methods_.xClose = [](sqlite3_file* g) {
            delete reinterpret_cast<File*>(g)->name;
            return below(g)->pMethods->xClose(below(g));
        };
        methods_.xWrite = [](sqlite3_file* g, const void* data, int n, sqlite3_int64 at) {
            note({Operation::write,
                  name(g),
                  at,
                  {static_cast<const char*>(data), static_cast<std::size_t>(n)}});
            return below(g)->pMethods->xWrite(below(g), data, n, at);
        };
        methods_.xTruncate = [](sqlite3_file* g, sqlite3_int64 size) {
            note({Operation::truncate, name(g), size});
            return below(g)->pMethods->xTruncate(below(g), size);
        };
        methods_.xSync = [](sqlite3_file* g, int how) {
            note({Operation::sync, name(g)});
            return below(g)->pMethods->xSync(below(g), how);
        };
        methods_.xRead = [](sqlite3_file* g, void* to, int n, sqlite3_int64 at) {
            return below(g)->pMethods->xRead(below(g), to, n, at);
        };
        methods_.xFileSize = [](sqlite3_file* g, sqlite3_int64* size) {
            return below(g)->pMethods->xFileSize(below(g), size);
        };
        methods_.xLock = [](sqlite3_file* g, int lock) { return below(g)->pMethods->xLock(below(g), lock); };
        methods_.xUnlock = [](sqlite3_file* g, int lock) {
            return below(g)->pMethods->xUnlock(below(g), lock);
        };
        methods_.xCheckReservedLock = [](sqlite3_file* g, int* held) {
            return below(g)->pMethods->xCheckReservedLock(below(g), held);
        };
        methods_.xFileControl = [](sqlite3_file* g, int code, void* data) {
            return below(g)->pMethods->xFileControl(below(g), code, data);
        };
        methods_.xSectorSize = [](sqlite3_file* g) { return below(g)->pMethods->xSectorSize(below(g)); };
        methods_.xDeviceCharacteristics = [](sqlite3_file*) { return 0; };  // nothing is promised
        f->methods = &methods_;
        return rc;
    }
};

// The files as a power cut leaves them.
using Files = std::map<std::string, std::string>;
enum class Unsynced { dropped, kept, torn, only_last };

void apply(Files& files, const Operation& o, std::size_t bytes) {
    if (o.kind == Operation::unlink) {
        files.erase(o.file);
    } else if (o.kind == Operation::truncate) {
        files[o.file].resize(static_cast<std::size_t>(o.offset));
    } else if (o.kind == Operation::write) {
        std::string& file = files[o.file];
        const auto at = static_cast<std::size_t>(o.offset);
        file.resize(std::max(file.size(), at + bytes));
        file.replace(at, bytes, o.bytes, 0, bytes);
    }
}

Files after_cut(Files files, const std::vector<Operation>& operations, std::size_t cut, Unsynced unsynced) {
    std::vector<const Operation*> pending;
    for (std::size_t i = 0; i < cut; ++i) {
        const Operation& o = operations[i];
        if (o.kind != Operation::sync) {
            pending.push_back(&o);
            continue;
        }
        std::erase_if(pending, [&](const Operation* p) {
            if (p->file == o.file)
                apply(files, *p, p->bytes.size());
            return p->file == o.file;
        });
    }
    for (const Operation* p : pending) {
        const bool last = p == pending.back();
        if (unsynced == Unsynced::kept || (unsynced == Unsynced::only_last && last))
            apply(files, *p, p->bytes.size());
        else if (unsynced == Unsynced::torn)
            apply(files, *p, last ? p->bytes.size() / 2 : p->bytes.size());
    }
    return files;
}

class PowerCut : public Core {};

TEST_F(PowerCut, LosesNothingThatWasAcknowledged) {
    constexpr int kSaves = 10;
    const ServiceRequest request = for_tables({31, 35, kTableListEnd});  // several pages
    ASSERT_EQ(call(EN_UPDATE_TABLE_LIST, request), kStored);
    close_database();
    const Recorder recorder;
    set_db_handle(db_open(get_db_path()));
    const std::string name = "ipc_db";
    Files start{{name, content(get_db_path())}};
    start[name + "-journal"] = content(get_db_path() + std::string("-journal"));
    Recorder::operations.clear();
    Recorder::recording = true;
    for (int i = 1; i <= kSaves; ++i) {
        r_.network.netconfig.mtu = i;
        std::memset(r_.network.ipaddr, i, sizeof r_.network.ipaddr);
        ASSERT_EQ(call(EN_UPDATE_TABLE_LIST, request), kStored);
        Recorder::operations.push_back({Operation::acknowledge, {}, i});
    }
    Recorder::recording = false;
    close_database();

    const std::vector<Operation> operations = Recorder::operations;
    ASSERT_GT(operations.size(), 10u * kSaves);
    int states = 0;
    for (std::size_t cut = 0; cut <= operations.size(); ++cut) {
        sqlite3_int64 acknowledged = 0;
        for (std::size_t i = 0; i < cut; ++i)
            if (operations[i].kind == Operation::acknowledge)
                acknowledged = operations[i].offset;
        for (const auto unsynced : {Unsynced::dropped, Unsynced::kept, Unsynced::torn, Unsynced::only_last}) {
            for (const auto& entry : std::filesystem::directory_iterator(path("")))
                std::filesystem::remove(entry.path());
            for (const auto& [file, bytes] : after_cut(start, operations, cut, unsynced))
                write_file(path(file), bytes);
            set_db_handle(db_open(get_db_path()));
            const std::string mtu = query("select mtu from netconfig_table");
            const auto value = std::strtol(mtu.c_str(), nullptr, 10);
            // The save under way may have arrived whole, or not at all.
            EXPECT_TRUE(value == acknowledged || value == acknowledged + 1)
                << mtu << " after operation " << cut;
            const std::string address = std::to_string(0x01010101LL * value);
            EXPECT_TRUE(value == 0 ||
                        query("select distinct ipv4addr from ipaddr_list where idx < 6") == address);
            EXPECT_EQ(query("pragma integrity_check"), "ok") << "after operation " << cut;
            close_database();
            ++states;
        }
    }
    RecordProperty("states", states);
}

// A new database that has moved into its place is the one that is stored to, although nobody knows whether it stays there.
TEST_F(PowerCut, FileInItsPlaceIsTheOneThatIsOpen) {
    folders_cannot_be_synced = true;
    EXPECT_EQ(rebuild_from_record(kCurrentVersion), Rebuilt::complete);
    EXPECT_EQ(copy_file(get_db_backup_path(), get_db_path()), -1);
    folders_cannot_be_synced = false;
    std::strcpy(r_.channel[0].name, "gate");
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kStored);
    close_database();
    set_db_handle(db_open(get_db_path()));
    EXPECT_EQ(query("select name from chn_info"), "gate");
}

// What a kill leaves is the old database or the new one; and the next start ends where it would have without the kill.
class Killed : public Core {
  protected:
    // The calls after which `work` was killed in a process of its own, from the first to the one that it survived; `check`
    // follows each, and is told whether it did.
    static void at_every_call(const std::function<void()>& prepare, const std::function<void()>& work,
                              const std::function<void(bool)>& check) {
        for (int n = 1;; ++n) {
            SCOPED_TRACE("killed at call " + std::to_string(n));
            prepare();
            const pid_t child = fork();
            if (child == 0) {
                alarm(60);
                calls_to_live = n;
                work();
                _exit(0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            const bool survived = WIFEXITED(status);
            EXPECT_TRUE(survived || (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)) << status;
            check(survived);
            if (survived || HasFailure()) {
                EXPECT_GT(n, 5);
                return;
            }
        }
    }
    std::string database(const char* name, int version) {
        fresh_database();
        std::strcpy(r_.channel[0].name, name);
        r_.device.dev_info.dev_type = 7;
        save_all();
        EXPECT_EQ(db_update_version(version, get_db_handle()), 0);
        close_database();
        return content(get_db_path());
    }
    void start() {
        closing_flag = false;
        close_database();
        wipe();
        std::strcpy(r_.channel[0].name, "default");
        EXPECT_EQ(init_database(), 0);
        for (const auto& entry : std::filesystem::directory_iterator(path("")))
            EXPECT_NE(entry.path().extension(), ".new");
        EXPECT_EQ(query("pragma integrity_check"), "ok");
        EXPECT_EQ(query("select name from chn_info"), r_.channel[0].name);
        EXPECT_EQ(query("select count(*) from sqlite_master where type = 'table'"), "251");
    }
    static void put(const std::string& file, const std::string& bytes) {
        std::filesystem::remove(file);
        std::filesystem::remove(file + "-journal");
        if (!bytes.empty())
            write_file(file, bytes);
    }
};

TEST_F(Killed, StartEndsAsItWouldHave) {
    const std::string current = database("gate", kCurrentVersion), old = database("gate", 1000 << 8),
                      none = database("gate", 0), damaged(3000, 'x');
    const struct {
        std::string main, backup;
        const char *name, *versions;
    } cases[] = {
        {"", "", "default", "302080"},        {damaged, "", "default", "302080"},
        {damaged, current, "gate", "302080"}, {old, "", "gate", "299264"},
        {none, "", "gate", "302080"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.versions + std::to_string(c.main.size()));
        at_every_call(
            [&] {
                close_database();
                put(get_db_path(), c.main);
                put(get_db_backup_path(), c.backup);
            },
            [&] { start(); },
            [&](bool) {
                start();
                EXPECT_STREQ(r_.channel[0].name, c.name);
                EXPECT_EQ(query("select version from db_version"), c.versions);
            });
    }
}

TEST_F(Killed, ResetLeavesTheOldOrTheNew) {
    const std::string before = database("gate", kCurrentVersion);
    for (const int mode : {kResetAll, kResetKeepingAccess})
        at_every_call(
            [&] {
                close_database();
                put(get_db_path(), before);
                put(get_db_backup_path(), before);
                std::strcpy(r_.channel[0].name, "gate");
                r_.device.dev_info.dev_type = 7;
            },
            [&] { _exit(set_system_default_param(mode) == 0 ? 0 : 1); },
            [&](bool acknowledged) {
                const bool is_old = content(get_db_path()) == before;
                EXPECT_FALSE(acknowledged && is_old);
                start();
                EXPECT_STREQ(r_.channel[0].name, is_old ? "gate" : "default");
                EXPECT_EQ(r_.device.dev_info.dev_type, 7);
            });
}

}  // namespace
