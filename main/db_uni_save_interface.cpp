#include "db_uni_save_interface.h"

#include "catalogue.h"
#include "engine.h"
#include "log.h"
#include "schedules.h"
#include "state.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/db_uni_save_interface.c";

int set_exception(const Table&, int) {
    return db_set_exception_comm(get_db_handle(), kStorageCard, &get_cfg_param()->event.sd_card.exception);
}

int get_exception(const Table&) {
    return db_get_exception_comm(get_db_handle(), kStorageCard, &get_cfg_param()->event.sd_card.exception);
}

int set_schedule(const Table&, int) {
    return db_set_time_info(get_db_handle(), kStorageCard, &get_cfg_param()->event.sd_card.schedule);
}

int get_schedule(const Table&) {
    return db_get_time_info(get_db_handle(), kStorageCard, &get_cfg_param()->event.sd_card.schedule);
}

constexpr Table kTables[] = {
    // What an exception of the storage card sets off.
    TABLE_BY(
        single_row, event.sd_card.exception, (outer("exception_type", 0)), .number = 229,
        .get = "db_get_sd_handle_type", .set = "db_set_sd_handle_type",
        .says = {.write = "exception_list_comm save err:%s\n"}, .graded_access = true,
        .save = SAVE("replace into exception_list_comm (exception_type, handle_type, alarm_out_triggered, "
                     "email_capture_triggered, capture_triggered) values(%d, %u, %u, %u, %u);",
                     FIELDS(handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered)),
        .load = SQL("select * from exception_list_comm where exception_type = %d;"),
        .load_body = get_exception, .save_body = set_exception),

    // When the storage card's alarm is armed.
    TABLE_BY(single_row, event.sd_card.schedule, (outer("type", 0)), .number = 230,
             .get = "db_get_sd_alarm_time", .set = "db_set_sd_alarm_time",
             .says = {.write = "update timesegment_comm_info failed:%s\n"},
             .save = SAVE("replace into timesegment_comm_info(type, begin_end_time) values(%d, '%s');",
                          as("begin_end_time", CODED(segment, kSignedTimes))),
             .load = SQL("select * from timesegment_comm_info where type = %d;"), .load_body = get_schedule,
             .save_body = set_schedule),
};

constexpr const Table& kException = kTables[0];
constexpr const Table& kSchedule = kTables[1];

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

int save(const Table& t, const char* function, int type, const void* entry, int failed) {
    const auto* row = static_cast<const std::byte*>(entry);
    if (const int rc = execute(t.save[0], row, {type}); rc != 0) {
        log_table(function, t.says.write, rc, rendered(t.save[0], row, {type}));
        return failed;
    }
    return kDone;
}

int load(const Table& t, const char* function, int type, void* entry) {
    Rows rows(t.load[0], {type});
    if (rows.next())
        rows.read(t.save[0], static_cast<std::byte*>(entry), {type});
    if (rows.error() != 0) {
        log_table(function, t.says.open, rows.error());
        return kQueryFailed;
    }
    return kDone;
}

}  // namespace

const std::span<const Table> kStorageCardTables = kTables;

int db_set_exception_comm(db_handle db, int type, const ExceptionEntry* exception) {
    return present(__func__, db, exception) && valid_type(__func__, type)
               ? save(kException, __func__, type, exception, kWriteFailed)
               : -1;
}

int db_get_exception_comm(db_handle db, int type, ExceptionEntry* exception) {
    return present(__func__, db, exception) && valid_type(__func__, type)
               ? load(kException, __func__, type, exception)
               : -1;
}

int db_set_time_info(db_handle db, int type, const PlainSchedule* schedule) {
    return present(__func__, db, schedule) && valid_type(__func__, type)
               ? save(kSchedule, __func__, type, schedule, -1)
               : -1;
}

int db_get_time_info(db_handle db, int type, PlainSchedule* schedule) {
    return present(__func__, db, schedule) && valid_type(__func__, type)
               ? load(kSchedule, __func__, type, schedule)
               : -1;
}
