// Start-up: the shared record, the two semaphores, and the order in which everything else begins.
#ifndef MAIN_DB_MAIN_H
#define MAIN_DB_MAIN_H

#include <sys/types.h>

// System V keys: "DBSM", "DBSP" and "DBSQ", or what DEVICE_ROOT makes of them.
inline constexpr key_t kRecordKey = 0x4442534D;
inline constexpr key_t kLoadedKey = 0x44425350;  // 1 when the record is loaded from the database
inline constexpr key_t kDefaultsKey =
    0x44425351;  // raised by the main application when its defaults are in place

// Creates or opens the shared segment and attaches it.  1 on success, 0 on failure.
int init_shared_memory();

// A set of one semaphore: its id, or -1.
int create_semaphore(key_t key);

// Sets the semaphore to 1.  1 on success, 0 on failure.
int set_semvalue(int id);

// Takes one from the semaphore, waiting while it is 0; given back by the kernel when the process ends.
// 1, or 0 on failure.
int semaphore_wait(int id);

#endif
