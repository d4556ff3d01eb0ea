#include "db_uni_save_interface.h"

#include <cstring>

#include "catalogue.h"
#include "engine.h"
#include "log.h"
#include "messages.h"
#include "record_copy.h"

namespace {

using namespace dbshell;

constexpr const char* kSourceFile = "main/db_uni_save_interface.c";

bool present(const char* function, db_handle db, const ExceptionEntry* exception) {
    if (db != nullptr && exception != nullptr)
        return true;
    DB_LOG_AS(kError, function, "input param err, pDatabase = %p,exception= %p \n", static_cast<void*>(db),
              static_cast<const void*>(exception));
    return false;
}

bool present(const char* function, db_handle db, const PlainSchedule* schedule) {
    if (db != nullptr && schedule != nullptr)
        return true;
    DB_LOG_AS(kError, function, "input param err, pDatabase = %p\n", static_cast<void*>(db));
    return false;
}

bool valid_type(const char* function, int type) {
    if (type == kStorageCard)
        return true;
    DB_LOG_AS(kError, function, "input param err, type = %d(%d-%d) \n", type, kStorageCard - 1,
              kStorageCard + 1);
    return false;
}

template <class Entry>
int save(const char* table, const Entry* entry) {
    const Table& t = *find_table(table);
    std::byte* base = record_shaped_buffer();
    std::memcpy(base + t.layout.base, entry, sizeof *entry);
    const Status status = store_row(t, t.save[0], base, {}, t.counts());
    if (!status.ok())
        log_store_failure(t, t.save[0], t.worker_set, status, base, {}, t.counts(), kError);
    return result_of(t.graded.set, status);
}

template <class Entry>
int load(const char* table, Entry* entry) {
    const Table& t = *find_table(table);
    std::byte* base = record_shaped_buffer();
    std::memcpy(base + t.layout.base, entry, sizeof *entry);
    const Status status = load_row(t, t.worker_get, base, {});
    if (status.ok())
        std::memcpy(entry, base + t.layout.base, sizeof *entry);
    return result_of(t.graded.get, status);
}

}  // namespace

int db_set_exception_comm(db_handle db, int type, const ExceptionEntry* exception) {
    return present(__func__, db, exception) && valid_type(__func__, type)
               ? save("exception_list_comm", exception)
               : -1;
}

int db_get_exception_comm(db_handle db, int type, ExceptionEntry* exception) {
    return present(__func__, db, exception) && valid_type(__func__, type)
               ? load("exception_list_comm", exception)
               : -1;
}

int db_set_time_info(db_handle db, int type, const PlainSchedule* schedule) {
    return present(__func__, db, schedule) && valid_type(__func__, type)
               ? save("timesegment_comm_info", schedule)
               : -1;
}

int db_get_time_info(db_handle db, int type, PlainSchedule* schedule) {
    return present(__func__, db, schedule) && valid_type(__func__, type)
               ? load("timesegment_comm_info", schedule)
               : -1;
}
