// Files of the store: what they are compared and replaced with.
#ifndef DBUTIL_FILES_H
#define DBUTIL_FILES_H

#include <string>

[[nodiscard]] int check_file_exist(const char* path);      // 0 when readable and writable; -1 with errno
[[nodiscard]] int check_file_not_empty(const char* path);  // 0 when it holds at least one byte; -1
// 1 when both have the same size and the same sums of 16-bit words in every 1024-byte block; 0 otherwise.
[[nodiscard]] int check_file_equal(const char* path1, const char* path2);

// Moves the database file `from` to the place of `to`, durably: after a power cut there is the old file or the new
// one.  A journal beside `to` would be played back into the new file: it is removed first.  False, with a log
// line, when that failed; the file may have moved then, but a power cut may still undo it.
[[nodiscard]] bool replace_file(const char* from, const char* to);

// A file that is built beside the one whose place it will take, "<place>.new", so that a failure or a power cut at any
// time leaves the old one or the whole new one.
//
//   NewFile next(path);
//   return write(next.path()) && next.take_place();
//
// What has not taken the place goes with the object, and its journal; what a power cut left goes with the next.
class NewFile {
  public:
    explicit NewFile(const char* place);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    const char* path() const { return path_.c_str(); }
    [[nodiscard]] bool take_place() { return replace_file(path(), place_.c_str()); }

  private:
    std::string place_, path_;
    void remove() const;
};

// The file's content, and what the folder names, are on the storage.
[[nodiscard]] bool sync_file(const char* path);
[[nodiscard]] bool sync_folder_of(const char* path);

// Copies a file over another, which stays as it is on failure, also when the copy is not `accepted`.  0 or -1.
[[nodiscard]] int copy_file(const char* to, const char* from, bool (*accepted)(const char* copy) = nullptr);

// Removes the rollback journal of a database file that is no more.  False: it is still there.
[[nodiscard]] bool remove_journal(const char* path);

#endif
