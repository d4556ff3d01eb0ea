// The storage card's schedule and exception handling: two small tables, keyed by a type of which only the
// storage card, 1, is defined.
#ifndef MAIN_DB_UNI_SAVE_INTERFACE_H
#define MAIN_DB_UNI_SAVE_INTERFACE_H

#include "device_config.h"
#include "device_db.h"

inline constexpr int kStorageCard = 1;

// 0; -1 for a null argument or another type; -2 when the query fails; -4 when the exception entry cannot
// be stored.  Without a row a getter leaves the record as it is.
int db_set_exception_comm(db_handle db, int type, const ExceptionEntry* exception);
int db_get_exception_comm(db_handle db, int type, ExceptionEntry* exception);
int db_set_time_info(db_handle db, int type, const PlainSchedule* schedule);
int db_get_time_info(db_handle db, int type, PlainSchedule* schedule);

#endif
