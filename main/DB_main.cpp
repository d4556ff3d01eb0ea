#include "DB_main.h"

#include <errno.h>
#include <malloc.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "DB_process_service.h"
#include "DB_uni_process.h"
#include "backup.h"
#include "device_ipc.h"
#include "device_paths.h"
#include "log.h"
#include "request.h"
#include "sec_db_enc.h"
#include "start.h"
#include "state.h"
#include "well_known.h"

namespace {

constexpr const char* kSourceFile = "main/DB_main.c";
constexpr int kAnyoneMayUse = 0666;

union SemaphoreArgument {
    int value;
    semid_ds* status;
    unsigned short* values;
};

int ask_channel_count() {
    int channels = 0;
    if (get_hardware_count(kVideoChannels, &channels) != 0) {
        DB_LOG_AS(kError, "main", "get capa chan_num failed...\n");
        channels = 1;
    }
    if (channels < 1) {
        DB_LOG_AS(kError, "main", "maxEnChanNo(%d) error...\n", channels);
        channels = 1;
    }
    return channels;
}

}  // namespace

int init_shared_memory() {
    const int id = shmget(device_ipc_key(kRecordKey), sizeof(DEVICECONFIG), IPC_CREAT | kAnyoneMayUse);
    if (id == -1) {
        std::printf("%s(%d)shmget failed, sizeof(DEVICECONFIG) = %d, errno = %d...\n", "init_shared_memory",
                    220, static_cast<int>(sizeof(DEVICECONFIG)), errno);
        return 0;
    }
    void* address = shmat(id, nullptr, 0);
    if (address == reinterpret_cast<void*>(-1)) {
        std::printf("%s(%d)shmat failed, errno = %d...\n", "init_shared_memory", 227, errno);
        return 0;
    }
    set_cfg_param(static_cast<DEVICECONFIG*>(address));
    std::printf("shared memory address is: %p, sizeof(DEVICECONFIG) = %d\n", address,
                static_cast<int>(sizeof(DEVICECONFIG)));
    return 1;
}

int create_semaphore(key_t key) {
    const int id = semget(device_ipc_key(key), 1, IPC_CREAT | kAnyoneMayUse);
    if (id == -1)
        std::printf("semget err, errno = %d\n", errno);
    return id;
}

int set_semvalue(int id) {
    SemaphoreArgument argument{};
    argument.value = 1;
    if (semctl(id, 0, SETVAL, argument) == 0)
        return 1;
    std::printf("set_semvalue err, errno = %d\n", errno);
    return 0;
}

int semaphore_wait(int id) {
    sembuf take{0, -1, SEM_UNDO};
    int rc = 0;
    do
        rc = semop(id, &take, 1);
    while (rc == -1 && errno == EINTR);
    if (rc == 0)
        return 1;
    std::printf("semaphore_wait err, errno = %d\n", errno);
    return 0;
}

int main() try {
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);  // what is larger goes back to the system when it is freed
    for (const int ignored : {SIGPIPE, SIGTTIN, SIGTTOU, SIGXFSZ})  // writes tell their errors
        signal(ignored, SIG_IGN);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);  // a killed process leaves what it has said
    std::puts("\nEnter DB_main-------------------");
    init_debug_task(0, 0);
    prepare_encryption();
    if (!device_prepare_root()) {
        std::fprintf(stderr, "database_process: the folders below DEVICE_ROOT cannot be made: %s\n",
                     std::strerror(errno));
        return 1;
    }
    if (init_shared_memory() != 1) {
        DB_LOG(kError, "failed to init shared memory...\n");
        return 0;
    }
    if (pthreadMutexInit(&g_db_mutexsem) != 0)
        DB_LOG(kSevere, "pthreadMutexInit g_db_mutexsem failed ......\n");
    const auto serve = [] {
        return ipc_unix_init("database_process", kServiceNumber, db_service_task, db_service_task);
    };
    if (serve() != 0 && (errno == EADDRINUSE || serve() != 0)) {
        if (errno == EADDRINUSE) {
            std::fprintf(stderr, "database_process: another one serves this device already\n");
            return 1;
        }
        DB_LOG(kError, "the service cannot be registered, errno = %d...\n", errno);
    }

    const int loaded = create_semaphore(kLoadedKey);
    if (loaded == -1) {
        DB_LOG(kError, "create_semaphore 1 failed, errno = %d...\n", errno);
        return 0;
    }
    const int defaults_set = create_semaphore(kDefaultsKey);
    if (defaults_set == -1) {
        DB_LOG(kError, "create_semaphore 2 failed, errno = %d...\n", errno);
        return 0;
    }
    std::puts("wait velmora set default...");
    if (semaphore_wait(defaults_set) != 1) {
        DB_LOG(kError, "the defaults cannot be waited for...\n");
        return 0;
    }

    {
        const DatabaseLock lock;  // requests may be waiting already
        const DeviceQueries queries;
        maxEnChanNo = ask_channel_count();
        std::printf("going to init database:%d\n", maxEnChanNo);
        if (init_database() != 0)
            DB_LOG(kError, "the record is not what is stored...\n");
    }
    DB_LOG(kInfo, "After init_database...\n");
    std::puts("goint to set_semvalue 1...");
    if (set_semvalue(loaded) != 1)
        DB_LOG(kError, "nobody learns that the record is loaded...\n");

    pthread_t backup{};
    if (pthreadSpawn(&backup, kBackupPriority, kBackupStack, backup_dev_cfg, nullptr) != 0)
        DB_LOG(kSevere, "the pthread backup_dev_cfg failed [%d]...........\n", errno);

    std::puts("\ndatabase going to sleep----------");
    for (;;) {
        sleep(100000);
        std::puts("sleep here...");
    }
} catch (const std::exception& e) {
    // Whoever started it starts it again; nothing that is stored has changed by half.
    std::fprintf(stderr, "database_process: the start failed: %s\n", e.what());
    std::_Exit(1);  // others of its threads may be running
}
