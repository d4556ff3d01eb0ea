// Silent corruption: rows of the main database that are not what was stored, though nobody wrote them and SQLite's integrity check
// finds nothing.  They are found by the file's seal (seal.h).
#ifndef CONFIGURATION_ROT_H
#define CONFIGURATION_ROT_H

// Mends the main database.  One row or two are put back from the backup where that makes the seal true, so that all that
// is newer stays; a digest that rotted itself is counted anew.  A database that was edited, or never sealed, is sealed as it is.
// What was mended is in the operation log.  False: it has rotted otherwise.  Outside of a transaction.
[[nodiscard]] bool mend_rot(const char* main, const char* backup);

// For one that cannot be mended, with a line in the operation log: the backup is restored where its own seal is true; otherwise the
// database stays as it is.  Without a handle on it.
void restore_rotten(const char* main, const char* backup);

// Copies the main database over the backup, while no other process writes it.  False when it could not be copied, or has
// rotted and could not be mended.
[[nodiscard]] bool refresh_backup();

#endif
