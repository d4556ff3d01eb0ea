// The schema version that a database carries: one row of the table db_version, packed (major << 8 | minor).
#ifndef DBUTIL_VERSIONS_H
#define DBUTIL_VERSIONS_H

#include "device_db.h"

inline constexpr int kEncryptedMajor = 1154;  // texts are encrypted from here on

constexpr int major_of(int version) {
    return version >> 8 & 0xFFFF;
}

inline constexpr int kVersionUnreadable = -1;  // the query failed
inline constexpr int kVersionMissing = -2;     // no row, or no value in it

// The packed version, or one of the two codes above.
[[nodiscard]] int db_get_version(db_handle db);
// The version that the database had when this process started.
[[nodiscard]] int db_get_old_version(db_handle db);

// 0 or -1.
[[nodiscard]] int db_update_version(int version, db_handle db);
[[nodiscard]] int db_update_old_version(int version, db_handle db);

#endif
