// What the process holds once: the shared record, the channel count, the mutex around every database
// access and the closing flag.  Set by start-up, read by everything else.
#ifndef MAIN_STATE_H
#define MAIN_STATE_H

#include <atomic>

#include "device_config.h"
#include "device_thread.h"

// The attached record, shared with the main application, which writes it at any time: read a length, an
// index or a count from it once, and bound it.  Null before it is attached.
DEVICECONFIG* get_cfg_param();
void set_cfg_param(DEVICECONFIG* record);

// Video channels of the device, at least 1, as the main application gave it.  Keys are checked against it.
extern int maxEnChanNo;

// How many channels a loop over the record may visit: maxEnChanNo, never past the record's capacity.
int channel_count();

// Serialises every database access of the request service and the backup thread.
extern device_mutex g_db_mutexsem;

// Set by the close request; never cleared.  From then on the database stays closed until the process
// restarts.
extern std::atomic<bool> closing_flag;

// Set when start-up has done with the database, whatever came of it.  Before that the record is not loaded and the
// database is nobody's.
extern std::atomic<bool> database_started;

class DatabaseLock {
  public:
    DatabaseLock() { pthreadMutexLock(&g_db_mutexsem, -1); }
    ~DatabaseLock() { pthreadMutexUnlock(&g_db_mutexsem); }
    DatabaseLock(const DatabaseLock&) = delete;
    DatabaseLock& operator=(const DatabaseLock&) = delete;
};

#endif
