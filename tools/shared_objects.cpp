#include "shared_objects.h"

#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/shm.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>

#include "device_paths.h"

namespace {

constexpr int kPermissions = 0666;

// semctl's fourth argument; the caller defines it.
union semun {
    int val;
    semid_ds* buf;
    unsigned short* array;
};

[[noreturn]] void no_record(int error) {
    switch (error) {
        case ENOENT:
            throw NoRecord("there is no shared record: the main application is not running on this root");
        case EINVAL:
            throw NoRecord("the shared record is smaller than " + std::to_string(sizeof(DEVICECONFIG)) +
                           " bytes: it belongs to another version");
        default:
            throw NoRecord("the shared record cannot be attached: " + std::generic_category().message(error));
    }
}

}  // namespace

SharedRecord::SharedRecord(int flags) {
    const int id = shmget(device_ipc_key(kRecordKey), sizeof(DEVICECONFIG), flags);
    if (id == -1)
        no_record(errno);
    void* const address = shmat(id, nullptr, 0);
    if (address == reinterpret_cast<void*>(-1))
        no_record(errno);
    record_.reset(static_cast<DEVICECONFIG*>(address));
}

SharedRecord SharedRecord::attach() {
    return SharedRecord(0);
}

SharedRecord SharedRecord::attach_or_create() {
    return SharedRecord(IPC_CREAT | kPermissions);
}

void SharedRecord::Detach::operator()(DEVICECONFIG* record) const {
    shmdt(record);
}

std::optional<SegmentState> find_segment() {
    const int id = shmget(device_ipc_key(kRecordKey), 0, 0);
    shmid_ds state{};
    if (id == -1 || shmctl(id, IPC_STAT, &state) == -1)
        return std::nullopt;
    return SegmentState{id, state.shm_segsz};
}

std::optional<Semaphore> Semaphore::find(key_t key) {
    const int id = semget(device_ipc_key(key), 1, 0);
    if (id == -1)
        return std::nullopt;
    return Semaphore(id);
}

Semaphore Semaphore::open_or_create(key_t key) {
    const int id = semget(device_ipc_key(key), 1, IPC_CREAT | kPermissions);
    if (id == -1)
        throw std::system_error(errno, std::generic_category(), "a semaphore cannot be made");
    return Semaphore(id);
}

int Semaphore::value() const {
    return semctl(id_, 0, GETVAL);
}

void Semaphore::set(int value) const {
    semun argument{};
    argument.val = value;
    if (semctl(id_, 0, SETVAL, argument) == -1)
        throw std::system_error(errno, std::generic_category(), "a semaphore cannot be set");
}
