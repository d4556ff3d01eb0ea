// What happens to a main database that is broken: restored from the backup, or made anew from the record.
#ifndef CONFIGURATION_RECOVERY_H
#define CONFIGURATION_RECOVERY_H

// Copies the backup over the main database when the backup is healthy.  0 when the main database is healthy then; its
// health code is stored on failure, but for a backup that is itself bad.
[[nodiscard]] int db_restore(const char* main, const char* backup, int* code);

// 0 when the main database is healthy, or was restored; otherwise its health code.
[[nodiscard]] int db_checkandrecovery(const char* main, const char* backup);

// How far a new database came.
enum class Rebuilt { complete, not_created, not_opened, not_filled, not_stamped };

// A new main database, made from the record beside the old one and stamped with the version; it takes the old one's
// place when it is complete, and the process-wide handle is on it.  From the old one, where it is open, it has the
// previous version and, row by row, what is not in the record because the device has not, or could not be asked for,
// the capability.  On failure the old one stays and stays open; but in the place of a file without any table an
// unfilled database stands then, without a version.
[[nodiscard]] Rebuilt rebuild_from_record(int version);

// The same for a database that cannot be patched, with messages of its own.  0 or -1.
[[nodiscard]] int db_reconstruct();

#endif
