#include "backup.h"

#include <unistd.h>

#include <cstdio>
#include <exception>

#include "device_thread.h"
#include "files.h"
#include "log.h"
#include "operation_log.h"
#include "recovery.h"
#include "rot.h"
#include "sec_db_enc.h"
#include "second_try.h"
#include "state.h"
#include "store.h"
#include "well_known.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";
constexpr int kSettlingSamples = 20, kSettlingSeconds = 5;
constexpr int kAttempts = 2;

// Gives the mutex up while the caller sleeps: requests do not wait for that.
class Unlocked {
  public:
    Unlocked() { pthreadMutexUnlock(&g_db_mutexsem); }
    ~Unlocked() { pthreadMutexLock(&g_db_mutexsem, -1); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;
};

bool is_closed() {
    return closing_flag || get_db_handle() == nullptr;
}

bool differs_from_backup() {
    return check_file_equal(get_db_path(), get_db_backup_path()) == 0;
}

// A damaged or rotten database is made anew from the record, which holds every setting, and not copied: the backup keeps the
// last good one until the next cycle.
bool backup_db_file() {
    db_handle db = get_db_handle();
    if (db == nullptr)
        return false;
    int integrity = 0;
    const bool damaged = is_so([&] { return (integrity = check_active_db_integrity(db)) < 0; });
    if (damaged && rebuild_from_record(kCurrentVersion) != Rebuilt::complete)
        DB_LOG(kError, "the damaged database cannot be made anew\n");
    if (integrity != 0)
        return false;
    if (!mend_rot(get_db_path(), get_db_backup_path())) {
        if (rebuild_from_record(kCurrentVersion) == Rebuilt::complete)
            log_operation("[%s]rotten.Made anew\n", get_db_path());
        else
            DB_LOG(kError, "the rotten database cannot be made anew\n");
        return false;
    }
    bool copied = !differs_from_backup();
    for (int attempt = 0; !copied && attempt < kAttempts; ++attempt)
        copied = refresh_backup();
    return copied;
}

void sleep_unless_closing(int seconds) {
    for (int second = 0; second < seconds && !closing_flag; ++second)
        sleep(1);
}

}  // namespace

bool Backup::config_unchanged() {
    Digest digest;
    compute_md5(get_cfg_param(), sizeof(DEVICECONFIG), digest.data());
    if (digest == sampled_)
        return true;
    sampled_ = digest;
    return false;
}

bool Backup::settles() {
    for (int sample = 1; sample <= kSettlingSamples; ++sample) {
        {
            const Unlocked unlocked;
            sleep_(kSettlingSeconds);
        }
        if (is_closed())
            return false;
        if (sample < kSettlingSamples && config_unchanged())
            return true;
    }
    last_backup_ok_ = false;
    return false;
}

bool Backup::need_backup() {
    if (config_unchanged())
        return !last_backup_ok_ || differs_from_backup();
    if (first_sample_) {
        first_sample_ = false;
        return false;
    }
    return settles();
}

// The seconds until the next one.
int Backup::cycle() {
    if (need_backup()) {
        std::puts("---------need_backup-----------------");
        last_backup_ok_ = backup_db_file();
        std::puts(last_backup_ok_ ? "---------backup success----------------"
                                  : "---------backup failed----------------");
        interval_ = last_backup_ok_ ? kInterval : kIntervalAfterFailure;
    }
    return interval_;
}

void Backup::run() {
    for (;;) {
        int seconds = 0;
        {
            const DatabaseLock lock;
            if (closing_flag)
                return;
            try {
                seconds = cycle();
            } catch (const std::exception& e) {
                DB_LOG_AS(kError, "backup_dev_cfg", "%s\n", e.what());
                last_backup_ok_ = false;
                seconds = kIntervalAfterFailure;
            }
        }
        sleep_(seconds);
    }
}

void* backup_dev_cfg(void*) {
    setPthreadName("ipc_backup_cfg");
    std::puts("---------------------This is backup_dev_cfg-------------------");
    Backup(sleep_unless_closing).run();
    return nullptr;
}
