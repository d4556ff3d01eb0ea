// Files of the store: what they are compared and replaced with.
#ifndef DBUTIL_FILES_H
#define DBUTIL_FILES_H

[[nodiscard]] int check_file_exist(const char* path);      // 0 when readable and writable; -1 with errno
[[nodiscard]] int check_file_not_empty(const char* path);  // 0 when it holds at least one byte; -1
// 1 when both have the same size and the same sums of 16-bit words in every 1024-byte block; 0 otherwise.
[[nodiscard]] int check_file_equal(const char* path1, const char* path2);

// Moves the database file `from` to the place of `to`, durably: after a power cut there is the old file or the new
// one.  A journal beside `to` would be played back into the new file: it is removed first.  False, with a log
// line, when that failed; the file may have moved then, but a power cut may still undo it.
[[nodiscard]] bool replace_file(const char* from, const char* to);

// Removes the rollback journal of a database file that is no more.  False: it is still there.
[[nodiscard]] bool remove_journal(const char* path);

#endif
