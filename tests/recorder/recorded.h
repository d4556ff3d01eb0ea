// What the recorder has seen of a program and of those that it ran, in the order in which it happened: one file of
// operations, each with its bytes behind it.
#ifndef TESTS_RECORDED_H
#define TESTS_RECORDED_H

#include <cstdint>

// Of the program that records:
inline constexpr const char* kRecordLog = "RECORD_LOG";    // the file that operations are appended to
inline constexpr const char* kRecordRoot = "RECORD_ROOT";  // the folder whose files are recorded
inline constexpr const char* kRecordPlant =
    "RECORD_PLANT";  // a fault to commit, in the words of recorder.cpp
inline constexpr const char* kRecordHaste = "RECORD_HASTE";  // set: a second of sleep takes a millisecond
inline constexpr const char* kArmed = ".armed";  // a file of the log's name and this: replies may be planted

enum class Recorded : uint32_t {
    create,       // file: its inode; bytes: its name
    write,        // at an offset of a file
    truncate,     // offset: the size
    sync,         // of a file
    sync_folder,  // bytes: its name
    rename,       // bytes: both names, each with its NUL
    unlink,       // bytes: the name
    reply,        // of the service; offset: the reply's value
};

// Names are relative to the root.
struct RecordedHeader {
    Recorded kind;
    uint32_t length;  // of the bytes
    uint64_t file;
    int64_t offset;
};

#endif
