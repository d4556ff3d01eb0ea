// Threads and mutexes of the device.
#ifndef PLATFORM_DEVICE_THREAD_H
#define PLATFORM_DEVICE_THREAD_H

#include <pthread.h>

#include <cstddef>

using device_mutex = pthread_mutex_t;

// The mutex operations return 0 or an errno value; a null mutex is EINVAL. The mutex checks its use:
// locking it twice from one thread is EDEADLK, unlocking one that the thread does not hold EPERM.
int pthreadMutexInit(device_mutex* mutex);
// Waits at most `timeout_ms` milliseconds (ETIMEDOUT), for ever when it is negative.
int pthreadMutexLock(device_mutex* mutex, int timeout_ms);
int pthreadMutexUnlock(device_mutex* mutex);

// Starts `body(argument)` on a detached thread and stores its id in `id`. 0, or -1 with errno.
// `priority` (1 to 99) asks for round-robin scheduling and is ignored where the process may not have it;
// any other value runs the thread like its creator. `stack_bytes` is raised to 256 KiB when smaller.
int pthreadSpawn(pthread_t* id, int priority, size_t stack_bytes, void* (*body)(void*), void* argument);

// Names the calling thread; at most 15 characters are kept. Does nothing for null.
void setPthreadName(const char* name);

#endif
