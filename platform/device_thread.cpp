#include "device_thread.h"

#include <sched.h>
#include <sys/prctl.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace {

constexpr size_t kSmallestStack = 256 * 1024;

timespec monotonic_after(int milliseconds) {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    time.tv_sec += milliseconds / 1000;
    time.tv_nsec += milliseconds % 1000 * 1'000'000L;
    if (time.tv_nsec >= 1'000'000'000L) {
        time.tv_sec += 1;
        time.tv_nsec -= 1'000'000'000L;
    }
    return time;
}

struct thread_attributes {
    thread_attributes() { pthread_attr_init(&value); }
    ~thread_attributes() { pthread_attr_destroy(&value); }
    thread_attributes(const thread_attributes&) = delete;
    thread_attributes& operator=(const thread_attributes&) = delete;

    pthread_attr_t value;
};

void ask_for_priority(pthread_attr_t* attributes, int priority) {
    sched_param parameter{};
    parameter.sched_priority = priority;
    pthread_attr_setinheritsched(attributes, PTHREAD_EXPLICIT_SCHED);
    pthread_attr_setschedpolicy(attributes, SCHED_RR);
    pthread_attr_setschedparam(attributes, &parameter);
}

}  // namespace

int pthreadMutexInit(device_mutex* mutex) {
    if (mutex == nullptr)
        return EINVAL;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
    const int result = pthread_mutex_init(mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    return result;
}

int pthreadMutexLock(device_mutex* mutex, int timeout_ms) {
    if (mutex == nullptr)
        return EINVAL;
    if (timeout_ms < 0)
        return pthread_mutex_lock(mutex);
    const timespec deadline = monotonic_after(timeout_ms);
    return pthread_mutex_clocklock(mutex, CLOCK_MONOTONIC, &deadline);
}

int pthreadMutexUnlock(device_mutex* mutex) {
    return mutex == nullptr ? EINVAL : pthread_mutex_unlock(mutex);
}

int pthreadSpawn(pthread_t* id, int priority, size_t stack_bytes, void* (*body)(void*), void* argument) {
    if (id == nullptr || body == nullptr) {
        errno = EINVAL;
        return -1;
    }
    thread_attributes attributes;
    pthread_attr_setdetachstate(&attributes.value, PTHREAD_CREATE_DETACHED);
    const bool prioritised = priority >= 1 && priority <= 99;
    if (prioritised)
        ask_for_priority(&attributes.value, priority);
    int error = pthread_attr_setstacksize(&attributes.value, std::max(stack_bytes, kSmallestStack));
    if (error == 0)
        error = pthread_create(id, &attributes.value, body, argument);
    if (error == EPERM && prioritised) {
        pthread_attr_setinheritsched(&attributes.value, PTHREAD_INHERIT_SCHED);
        error = pthread_create(id, &attributes.value, body, argument);
    }
    if (error == 0)
        return 0;
    errno = error;
    return -1;
}

void setPthreadName(const char* name) {
    if (name != nullptr)
        prctl(PR_SET_NAME, name);
}
