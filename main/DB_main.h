// Start-up: the shared record, the two semaphores, and the order in which everything else begins.
#ifndef MAIN_DB_MAIN_H
#define MAIN_DB_MAIN_H

#include <sys/types.h>

// Creates or opens the shared segment and attaches it.  1 on success, 0 on failure.
[[nodiscard]] int init_shared_memory();

// A set of one semaphore: its id, or -1.
[[nodiscard]] int create_semaphore(key_t key);

// Sets the semaphore to 1.  1 on success, 0 on failure.
[[nodiscard]] int set_semvalue(int id);

// Takes one from the semaphore, waiting while it is 0; given back by the kernel when the process ends.
// 1, or 0 on failure.
[[nodiscard]] int semaphore_wait(int id);

#endif
