#include "recovery.h"

#include <sqlite3.h>

#include <set>
#include <string>
#include <string_view>

#include "DB_uni_process.h"
#include "all_tables.h"
#include "carried_rows.h"
#include "catalogue.h"
#include "chain.h"
#include "created_table.h"
#include "files.h"
#include "health.h"
#include "log.h"
#include "operation_log.h"
#include "store.h"
#include "versions.h"
#include "work.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

// ------------------------------------------------------------------------------------- past the record

using Names = std::set<std::string_view>;

// The tables that hold what is not in the record: those of functions that were passed over, and those that no function
// stores.
void names_past_the_record(const TableNumbers& passed_over, Names& not_loaded, Names& not_stored) {
    Names stored;
    for (const Table* table : dbshell::all_tables()) {
        if (table->number == 0)
            continue;
        const bool passed = passed_over.test(static_cast<std::size_t>(table->number));
        for (const Table* part = table; passed && part != nullptr; part = dbshell::next_loaded_part(*part))
            not_loaded.insert(part->name);
        for (const Table* part = table; part != nullptr; part = dbshell::next_saved_part(*part))
            if (passed)
                not_loaded.insert(part->name);
            else if (table->has_registry_set())
                stored.insert(part->name);
    }
    for (const CreatedTable& table : created_tables())
        if (!stored.contains(table.name) && !not_loaded.contains(table.name))
            not_stored.insert(table.name);
}

// The schedules of features that were passed over, of process types that the new database has no row of, and those of
// alarms that the device does not count any more.  Their rows are numbered anew.
bool carry_schedules(db_handle old, db_handle fresh) {
    db_cursor cursor;
    if (db_query_open_v2(fresh,
                         "select process_type, ifnull(max(alarm_no), 0) as alarms from week_config_list "
                         "where process_type is not null group by process_type;",
                         &cursor) != 0)
        return false;
    std::string types, further_alarms;
    for (int i = 0; i < db_query_rec_count_v2(&cursor); ++i) {
        const std::string type = db_query_fields_v2(&cursor, "process_type", i);
        types += (types.empty() ? "" : ",") + type;
        further_alarms +=
            " or process_type = " + type + " and alarm_no > " + db_query_fields_v2(&cursor, "alarms", i);
    }
    return carry_rows(old, fresh,
                      {.table = "week_config_list",
                       .where = "process_type not in (" + types + ")" + further_alarms + " order by idx",
                       .without = "idx"});
}

// The tables whose rows the device counts, and counts fewer of than the old database has.
bool names_of_counted(db_handle old, db_handle fresh, Names& counted) {
    for (const Table* table : dbshell::all_tables()) {
        const std::string count = "select count(*) from " + std::string(table->name) + ";";
        int before = 0, now = 0;
        if (table->device_rows == dbshell::DeviceCount::none ||
            db_query_row_num(old, count.c_str(), &before) != 0)
            continue;
        if (db_query_row_num(fresh, count.c_str(), &now) != 0)
            return false;
        if (before > now)
            counted.insert(table->name);
    }
    return true;
}

bool carry_past_the_record(db_handle old, db_handle fresh, const TableNumbers& passed_over) {
    if (old == nullptr)
        return true;
    Names not_loaded, not_stored;
    names_past_the_record(passed_over, not_loaded, not_stored);
    if (!names_of_counted(old, fresh, not_loaded))
        return false;
    for (const char* of_all : {"db_version", "week_config_list"}) {
        not_loaded.erase(of_all);
        not_stored.erase(of_all);
    }
    for (const std::string_view table : not_loaded)
        if (!carry_rows(old, fresh, {.table = table}))
            return false;
    for (const std::string_view table : not_stored)
        if (!carry_rows(old, fresh, {.table = table, .old_one_wins = false}))
            return false;
    return carry_schedules(old, fresh);
}

// ------------------------------------------------------------------------------------- the new database

bool stamp(db_handle fresh, int version, db_handle old) {
    const int previous = old != nullptr ? db_get_old_version(old) : kVersionMissing;
    return db_update_version(version, fresh) == 0 &&
           (previous <= 0 || db_update_old_version(previous, fresh) == 0);
}

Rebuilt build(const char* path, int version, db_handle old) {
    if (db_create(path) != 0)
        return Rebuilt::not_created;
    db_handle fresh = db_open(path);
    if (fresh == nullptr)
        return Rebuilt::not_opened;
    set_db_handle(fresh);
    TableNumbers passed_over;
    Work work;
    if (!work.begin_anew(dbshell::all_tables()) || !store_new_database(passed_over) ||
        !carry_past_the_record(old, fresh, passed_over))
        return Rebuilt::not_filled;
    if (!stamp(fresh, version, old))
        return Rebuilt::not_stamped;
    return work.commit() ? Rebuilt::complete : Rebuilt::not_filled;
}

// Of a database that could not be opened the file counts.
bool has_no_tables(db_handle db) {
    int count = 0;
    if (db == nullptr)
        return check_file_not_empty(get_db_path()) != 0;
    return db_query_row_num(db, "select count(*) from sqlite_master;", &count) == 0 && count == 0;
}

// Holds the old database against other processes while its successor is made.
class Held {
  public:
    explicit Held(db_handle db) : db_(db), code_(db == nullptr ? 0 : db_execsql(db, "begin immediate;")) {}
    ~Held() {
        if (db_ != nullptr && code_ == 0)
            db_execsql(db_, "rollback;");
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    // A damaged one cannot be held, and need not be.
    [[nodiscard]] bool by_another() const { return code_ == SQLITE_BUSY || code_ == SQLITE_LOCKED; }

  private:
    db_handle db_;
    int code_;
};

// The process has no database meanwhile; this one again, unless its successor has taken its place.
class SetAside {
  public:
    SetAside() : db_(release_db_handle()) {}
    ~SetAside() {
        if (replaced_)
            return;
        db_handle unfinished = release_db_handle();
        db_close(&unfinished);
        set_db_handle(db_);
    }
    SetAside(const SetAside&) = delete;
    SetAside& operator=(const SetAside&) = delete;
    db_handle get() const { return db_; }
    void replace() {
        replaced_ = true;
        db_close(&db_);
    }

  private:
    db_handle db_;
    bool replaced_ = false;
};

}  // namespace

Rebuilt rebuild_from_record(int version) {
    const DeviceQueries queries;
    SetAside old;
    Rebuilt result = Rebuilt::not_created;
    bool replaced = false;
    if (const Held held(old.get()); !held.by_another()) {
        NewFile next(get_db_path());
        result = build(next.path(), version, old.get());
        db_handle fresh = release_db_handle();
        db_close(&fresh);
        // Tables without rows are better than none: rows can be stored one by one.  The check finishes a rollback that
        // found no space.
        if (result == Rebuilt::complete || (result >= Rebuilt::not_filled && has_no_tables(old.get()) &&
                                            check_inactive_db_integrity(next.path()) == 0))
            replaced = next.take_place() || check_file_exist(next.path()) != 0;  // moved, synced or not
        if (!replaced && result == Rebuilt::complete)
            result = Rebuilt::not_opened;
    }
    if (!replaced)
        return result;
    old.replace();
    set_db_handle(db_open(get_db_path()));
    return get_db_handle() == nullptr ? Rebuilt::not_opened : result;
}

int db_reconstruct() {
    switch (rebuild_from_record(kRebuiltVersion)) {
        case Rebuilt::complete:
            return 0;
        case Rebuilt::not_created:
            DB_LOG(kError, "db_reconstruct: db_create error\n");
            break;
        case Rebuilt::not_opened:
            DB_LOG(kError, "db_reconstruct: db_open error\n");
            log_operation("db_reconstruct.Open %s failed\n", get_db_path());
            break;
        case Rebuilt::not_filled:
            DB_LOG(kError, "db_reconstruct: set_alldata_to_db error\n");
            log_operation("db_reconstruct.set_alldata_to_db failed\n");
            break;
        case Rebuilt::not_stamped:
            log_operation("db_reconstruct.db_update_version failed\n");
            break;
    }
    return -1;
}

int db_restore(const char* main, const char* backup, int* code) {
    if (main == nullptr || backup == nullptr) {
        DB_LOG(kError, "db_restore: dbname is null.\n");
        return -1;
    }
    int backup_code = 0;
    if (const int bad = db_isok(backup, &backup_code); bad != 0) {
        DB_LOG(kInfo, "the backup database is bad, errno = %d.\n", bad);
        return -1;
    }
    if (copy_file(main, backup) != 0)
        DB_LOG(kError, "%s cannot be copied to %s\n", backup, main);
    const int result = db_isok(main, code);
    DB_LOG(kInfo, "restoring main db from backup db %s\n", result == 0 ? "succeeded" : "failed");
    return result;
}

int db_checkandrecovery(const char* main, const char* backup) {
    int code = kFileMissing;
    const int result = db_isok(main, &code);
    DB_LOG(kInfo, "db_main check num=%d\n", result);
    if (result == 0) {
        DB_LOG(kInfo, "main db is ok\n");
        return 0;
    }
    DB_LOG(kInfo, "try to restore main db from backup db\n");
    log_operation("Main Db is broken\n");
    if (db_restore(main, backup, &code) == 0)
        return 0;
    log_operation("db_restore failed\n");
    return code;
}
