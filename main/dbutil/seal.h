// The seal of a database file: the digest of its rows (row_digest.h) in its header, stored by the commit that it belongs
// to.  A file whose seal is not of its rows, and that nobody has written since, has rotted.
//
//   seal_watches(db);             // a transaction begins
//   ...;
//   return seal_transaction() == 0 && db_execsql(db, "COMMIT;") == 0;
//
// Each row that a prepared statement changes is told by SQLite's pre-update hook.  A transaction that changes many rows, the
// schema, or anything by an SQL text, is counted as a whole.  Where SQLite was built without the hook there are no seals, which is said once.
#ifndef DBUTIL_SEAL_H
#define DBUTIL_SEAL_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "device_db.h"
#include "row_digest.h"

struct sqlite3_stmt;

// ------------------------------------------------------------------------------------- what transactions do

void seal_watches(db_handle db);
// sqlite3_step.
[[nodiscard]] int seal_step(sqlite3_stmt* statement);
// Something was undone that the hook had told before.
void seal_loses_count();
// Stores the seal of the process-wide handle's transaction, if that changed anything.  0, or SQLite's code.
[[nodiscard]] int seal_transaction();

// The header's count of commits; empty where it cannot be read.
[[nodiscard]] std::optional<uint32_t> change_counter(db_handle db);
// A commit that changes nothing but the header, where this process's last one left the counter as told.  False: it did not,
// or the commit failed, and the transaction may be open.
[[nodiscard]] bool commit_once_more(db_handle db, uint32_t counter);

// ------------------------------------------------------------------------------------- what files are

// Unknown also where another process holds the file, and where there are no seals.
struct SealedImage {
    Seal seal = Seal::unknown;
    uint32_t stored = 0, counted = 0;  // digests
    std::unique_ptr<std::byte[]> bytes = {};
    std::size_t size = 0;
    [[nodiscard]] DatabaseImage image() const { return {bytes.get(), size}; }
};

// Reads the file, not what SQLite remembers of it, while no other process writes it.  Of a handle outside of a transaction.
[[nodiscard]] SealedImage read_sealed(db_handle db);
[[nodiscard]] SealedImage read_sealed(const char* path);

// Seals the rows as they are, within a transaction of the handle; only when their digest is `expected`, where that is given.
// 0, or SQLite's code.
[[nodiscard]] int seal_anew(db_handle db, std::optional<uint32_t> expected = {});
// The same in a transaction of its own.
[[nodiscard]] bool seal_file(const char* path);
// Gives a file the seal of the one that its rows were read from.  Whether they are the rows that were sealed, shows then.
[[nodiscard]] bool take_seal(const char* path, const char* of);
// A copy of a database may take the place of an older one: it has not rotted, nor was it torn by another writer.
[[nodiscard]] bool may_be_kept(const char* copy);

#endif
