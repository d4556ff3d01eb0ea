// The factory reset.
#ifndef CONFIGURATION_RESET_H
#define CONFIGURATION_RESET_H

enum ResetMode : int {
    kResetAll = 1,
    kResetKeepingAccess = 2,  // network, security and users stay
};

// Makes a new main database that holds only what is kept, from the record, and removes the backup; the next start fills
// the rest with defaults.  In this process the database stays closed from then on, and no backup is taken.  0; -1 with
// the old database in its place, and open if it was.
[[nodiscard]] int set_system_default_param(int mode);

#endif
