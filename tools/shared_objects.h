// The System V objects that the device's programs share: the configuration record and the two semaphores that
// order their start.
//
//   const auto record = SharedRecord::attach();       // throws NoRecord when there is none
//   record.get()->sensor[0].wdr.enable = 1;
#ifndef TOOLS_SHARED_OBJECTS_H
#define TOOLS_SHARED_OBJECTS_H

#include <sys/types.h>

#include <memory>
#include <optional>
#include <stdexcept>

#include "device_config.h"
#include "well_known.h"

// The record cannot be reached: there is none, it is too small, or this process may not.
class NoRecord : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class SharedRecord {
  public:
    static SharedRecord attach();            // an existing one
    static SharedRecord attach_or_create();  // with the permissions 0666

    // Other processes write it at any time.
    DEVICECONFIG* get() const { return record_.get(); }

  private:
    struct Detach {
        void operator()(DEVICECONFIG* record) const;
    };
    explicit SharedRecord(int flags);
    std::unique_ptr<DEVICECONFIG, Detach> record_;
};

// What is there; empty: nothing is, or this process may not look.
struct SegmentState {
    int id;
    size_t size;
};
std::optional<SegmentState> find_segment();

class Semaphore {
  public:
    // `key`: kLoadedKey or kDefaultsKey.
    static std::optional<Semaphore> find(key_t key);
    static Semaphore open_or_create(key_t key);  // throws std::system_error

    int id() const { return id_; }
    int value() const;          // -1: it is gone, or may not be read
    void set(int value) const;  // throws std::system_error

  private:
    explicit Semaphore(int id) : id_(id) {}
    int id_;
};

#endif
