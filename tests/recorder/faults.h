// Faults of the storage and of the memory: the recorder's functions (recorder.cpp) fail once, or from then on, where a
// test says so.  What they would fail at is counted all the same.
#ifndef TESTS_FAULTS_H
#define TESTS_FAULTS_H

#include <atomic>
#include <cstddef>
#include <cstdint>

// What can fail.  Of files only those below the recorded root count; allocations are also SQLite's.
enum class Operation : uint32_t { read, write, sync, open, rename, truncate, unlink, look, allocate };
inline constexpr const char* kOperationNames[] = {"read",     "write",  "sync", "open",    "rename",
                                                  "truncate", "unlink", "look", "allocate"};
inline constexpr std::size_t kOperations = std::size(kOperationNames);

// In memory that the test shares with the service.
struct Faults {
    std::atomic<bool> armed;
    Operation kind;
    uint64_t number;  // the failing one, from 1; 0: none
    int error;        // errno
    uint64_t length;  // so many from there on fail
    bool swallowed;   // it is not done, and says that it was
    std::atomic<uint64_t> seen[kOperations];
    std::atomic<uint64_t> failed;
    std::atomic<int> depth;  // of the calls that led to the first that failed
    void* calls[40];
    // Where it is not null: of each operation, by what calls it came about.
    struct Path {
        Operation kind;
        uint32_t number, calls;  // a hash
    };
    Path* paths;
    std::size_t most_paths;
    std::atomic<std::size_t> noted_paths;
};
inline Faults* faults = nullptr;  // null: nothing fails, nothing is counted

// A call of one of the functions.  While it lives its own allocations do not count.
class Hooked {
  public:
    Hooked(Operation operation, int fd);
    Hooked(Operation operation, const char* path);
    ~Hooked();
    Hooked(const Hooked&) = delete;
    Hooked& operator=(const Hooked&) = delete;

    // With errno.
    bool fails() const { return fails_; }
    int result() const { return faults->swallowed ? 0 : -1; }

  private:
    bool fails_ = false;
};

#endif
