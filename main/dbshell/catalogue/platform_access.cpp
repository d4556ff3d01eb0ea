// Login security and remote access.
#include "main/dbshell/catalogue.h"
#include "main/log.h"
#include "main/state.h"

namespace {

constexpr const char* kSourceFile = "main/dbshell.c";

int note_encryption_version(const Table&) {
    DB_LOG_AS(kError, "db_get_sec_lock_auth_db_info", "\n\ndb_enc_version = %u\n\n",
              get_cfg_param()->sec_lock_auth.db_enc_version);
    return 0;
}

constexpr Table kTables[] = {
    // The login lock policy, the password rules, and the version of the field encryption in use.
    TABLE(
        single_row, sec_lock_auth, .number = 187, .get = "db_get_sec_lock_auth_db_info",
        .set = "db_set_sec_lock_auth_db_info",
        .save = SAVE(
            "replace into sec_lock_auth_db_info (idx, lockcount, locktype, lockipcount, locktime, minpwdlen, "
            "maxpwdlen, complexity, db_enc_version) values(1, %u, %u, %u, %u, %u, %u, %u, %u);",
            FIELDS(lockcount, locktype, lockipcount, locktime, minpwdlen, maxpwdlen, complexity,
                   db_enc_version)),
        .also_load = note_encryption_version),
};

}  // namespace

const std::span<const Table> kPlatformTables = kTables;
