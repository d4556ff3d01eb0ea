#include "state.h"

#include <algorithm>

int maxEnChanNo = 1;
device_mutex g_db_mutexsem = PTHREAD_MUTEX_INITIALIZER;
std::atomic<bool> closing_flag{false};
std::atomic<bool> database_started{false};

namespace {
std::atomic<DEVICECONFIG*> shared_record{nullptr};
}

DEVICECONFIG* get_cfg_param() {
    return shared_record;
}

void set_cfg_param(DEVICECONFIG* record) {
    shared_record = record;
}

int channel_count() {
    return std::clamp(maxEnChanNo, 1, kMaxChannels);
}
