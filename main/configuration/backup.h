// The backup thread: copies the main database to the backup when the configuration or the database has changed and the
// configuration has settled.
//
//   pthreadSpawn(&id, kBackupPriority, kBackupStack, backup_dev_cfg, nullptr);
#ifndef CONFIGURATION_BACKUP_H
#define CONFIGURATION_BACKUP_H

#include <array>
#include <cstddef>
#include <functional>
#include <utility>

inline constexpr int kBackupPriority = 50;
inline constexpr std::size_t kBackupStack = 256 * 1024;  // it may have to make the database anew

class Backup {
  public:
    // Sleeps so many seconds, less when the closing flag is set meanwhile.  Called without the mutex.
    using Sleep = std::function<void(int seconds)>;
    explicit Backup(Sleep sleep) : sleep_(std::move(sleep)) {}

    // One cycle after another, until the closing flag is set.
    void run();

  private:
    static constexpr int kInterval = 600, kIntervalAfterFailure = 300;  // seconds
    using Digest = std::array<unsigned char, 16>;

    Sleep sleep_;
    bool last_backup_ok_ = true, first_sample_ = true;
    int interval_ = kInterval;
    Digest sampled_{};

    int cycle();
    bool need_backup();
    bool settles();
    bool config_unchanged();
};

// The thread's body.
void* backup_dev_cfg(void*);

#endif
