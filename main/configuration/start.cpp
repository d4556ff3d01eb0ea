#include "start.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "DB_uni_process.h"
#include "all_tables.h"
#include "alter.h"
#include "catalogue.h"
#include "chain.h"
#include "created_table.h"
#include "device_paths.h"
#include "engine.h"
#include "files.h"
#include "health.h"
#include "log.h"
#include "operation_log.h"
#include "recovery.h"
#include "registry.h"
#include "rot.h"
#include "salvage.h"
#include "sec_db_enc.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
#include "versions.h"
#include "well_known.h"
#include "work.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";
constexpr int kLockAttempts = 6;
constexpr int kPatience = 10;  // seconds

// What a start could not do and the next request tries again.
enum class Pending {
    nothing,
    start,         // another process held the database, or it could not be opened
    copy,          // the backup could not be copied over it, or not be looked at
    new_database,  // the old one is given up, and a new one could not be made
};
Pending pending = Pending::nothing;

// True when another process still holds the database after so many attempts, a second apart.
bool is_held(int attempts) {
    if (check_file_not_empty(get_db_path()) != 0)
        return false;
    const OwnDatabase db(db_connect(0, get_db_path(), 0, 0));
    int rc = SQLITE_BUSY;
    for (int attempt = 0; attempt < attempts && (rc == SQLITE_BUSY || rc == SQLITE_LOCKED); ++attempt) {
        if (attempt > 0)
            sleep(1);
        rc = db_execsql(db.get(), "select count(*) from sqlite_master;");
    }
    return rc == SQLITE_BUSY || rc == SQLITE_LOCKED;
}

// ------------------------------------------------------------------------------------- loading

int store_old_version(int version) {
    if (const int rc = db_begin(); rc != 0)
        return rc;
    if (db_update_old_version(version, get_db_handle()) == 0)
        return db_commit();
    db_rollback();
    return -1;
}

void leave_to_next_request() {
    db_handle db = release_db_handle();
    db_close(&db);
    DB_LOG_AS(kError, "init_database", "the database %s is held by another process\n", get_db_path());
    pending = Pending::start;
}

// A table that cannot be loaded keeps its part of the record, and the load says so.  False when another process holds
// the database: the start is left to the next request, as the record holds nothing of what is stored.
bool load_all() {
    const int result = get_alldata_from_db();
    if (result == kNothingLoaded) {
        leave_to_next_request();
        return false;
    }
    if (result != 0)
        DB_LOG_AS(kError, "db_getdata_byversion", "not every table is loaded\n");
    return true;
}

// The record's word is the main application's until then.  Databases from before the field encryption hold none, and
// plain texts.
void load_encryption_word(int version) {
    int rows = 0;
    const bool stored =
        db_query_row_num(get_db_handle(), "select count(*) from sec_lock_auth_db_info;", &rows) == 0 &&
        rows > 0;
    if (!stored && version > 0 && major_of(version) < kEncryptedMajor)
        set_db_enc_version(0);
    else if (dbshell::load_table(dbshell::encryption_word_table()) != 0)
        DB_LOG_AS(kError, "init_database", "the encryption version cannot be loaded\n");
}

// A new database from the record, into which the old one is loaded first where it can be.
int db_get_param_from_devcfg() {
    if (get_db_handle() != nullptr && !load_all())
        return -1;
    switch (rebuild_from_record(kCurrentVersion)) {
        case Rebuilt::complete:
            return 0;
        case Rebuilt::not_created:
        case Rebuilt::not_opened:
            DB_LOG(kError, "%s db_open(%s) failed...\n", "db_get_param_from_devcfg", get_db_path());
            return -1;
        case Rebuilt::not_filled:
        case Rebuilt::not_stamped:
            break;
    }
    DB_LOG(kError, "set_alldata_to_db error\n");
    return -1;
}

// A healthy backup that found no space stays the best there is, and so may one that cannot be opened.  Nothing takes its
// place: a database without it would be copied over it.  Until the copy succeeds the device runs with its values, as far as
// they can be read, and stores nothing.
int wait_for_the_copy() {
    DB_LOG_AS(kError, "init_database", "the backup cannot take the place of the database yet\n");
    if (std::exchange(pending, Pending::copy) != Pending::copy) {
        const ForAWhile backup(db_open(get_db_backup_path()));
        if (get_db_handle() != nullptr) {
            load_encryption_word(db_get_version(get_db_handle()));
            load_all();
        }
    }
    return -1;
}

int patch(int version) {
    const UserSection loaded_users = get_cfg_param()->users;
    ChainEnd end = run_patch_chain(version);
    if (end.step_failed) {  // perhaps for a fault of the moment; the accounts as below
        if (major_of(end.version) < kEncryptedMajor)
            get_cfg_param()->users = loaded_users;
        end = run_patch_chain(end.version);
    }
    if (end.complete())
        return 0;
    log_operation("Db patch[%d->%d] failed[%d].Need reconstruct.\n", major_of(version), kCurrentMajor,
                  major_of(end.version));
    DB_LOG_AS(kError, "db_getdata_byversion", "patch database failed, reconstruct it!\n");
    if (db_reconstruct() == 0)
        return 0;
    log_operation("db_reconstruct failed.\n");
    DB_LOG_AS(kError, "db_getdata_byversion", "db_reconstruct failed\n");
    // The step of the encryption moves the accounts in the record, but is undone in the database: a save of the old
    // list would put the default administrator over the first account, which the next start then moves.
    if (major_of(end.version) < kEncryptedMajor)
        get_cfg_param()->users = loaded_users;
    return -1;
}

// ------------------------------------------------------------------------------------- the tree

// The backup may hold what is worth waiting for.
bool is_backup_worth_it() {
    // In this order: what comes into reach in between is looked at.
    const bool out_of_reach = is_out_of_reach(get_db_backup_path());
    return is_healthy(get_db_backup_path()) || out_of_reach;
}

// The copy that an earlier start could not make.  False: it cannot be made yet; not a word in the operation log for every
// request.
bool catch_up_on_the_copy() {
    if (is_healthy(get_db_path()))
        return true;
    if (is_out_of_reach(get_db_backup_path()))
        return false;
    if (!is_healthy(get_db_backup_path()))
        return true;  // it is no good
    if (copy_file(get_db_path(), get_db_backup_path()) != 0)
        return false;
    log_operation("[%s]restored\n", get_db_path());
    return true;
}

// From the condition of the two files to a loaded record and a database of a known version.  0 when that is reached.
int start_by_condition() {
    if (pending == Pending::copy && !catch_up_on_the_copy())
        return -1;
    // What was given up for want of anything better is looked at again: it may have been out of reach.
    const bool again =
        pending == Pending::new_database && !is_healthy(get_db_path()) && !is_backup_worth_it();
    const int condition = again ? kUnrepairable : db_checkandrecovery(get_db_path(), get_db_backup_path());
    if (condition != 0 && !again && is_backup_worth_it())
        return wait_for_the_copy();
    if (condition == kUnrepairable && !is_out_of_reach(get_db_path())) {
        if (!again) {
            const Salvage salvage(get_db_path());
            DB_LOG_AS(kInfo, "init_database", "====totally restore default param====\n");
            salvage.restore();
        }
        DB_LOG_AS(kError, "init_database", "db version = %d\n", kVersionUnreadable);
        pending = Pending::new_database;
        // Told once, however often requests try: the operation log is short.
        const int result = again ? db_get_param_from_devcfg() : db_getdata_byversion(kVersionUnreadable);
        pending = result == 0 ? Pending::nothing : Pending::new_database;
        return result;
    }
    pending = Pending::nothing;
    if (!mend_rot(get_db_path(), get_db_backup_path()))
        restore_rotten(get_db_path(), get_db_backup_path());
    set_db_handle(db_open(get_db_path()));  // healthy, restored, without key rows; or missing or empty
    if (get_db_handle() == nullptr) {
        DB_LOG_AS(kError, "init_database", "the database %s cannot be opened\n", get_db_path());
        pending = Pending::start;
        return -1;
    }
    const int version = db_get_version(get_db_handle());
    DB_LOG_AS(kError, "init_database", "db version = %d\n", version);
    load_encryption_word(version);
    return db_getdata_byversion(version);
}

// ------------------------------------------------------------------------------------- behind the tree

// Texts under the scheme that is bound to the network address are stored anew under the default one, all or none.
void renew_encryption() {
    const uint32_t old = get_db_enc_version();
    if (old >> 8 != kSchemeNetworkAddress)
        return;
    std::puts("\n\n db_enc_version == 1.0.0, should update");
    const dbshell::Table* const word = &dbshell::encryption_word_table();
    set_db_enc_version(kDefaultVersion);
    Work work;
    if (work.begin({&word, 1}) && work.commit())
        return;
    DB_LOG_AS(kError, "init_database", "the texts stay encrypted under %u\n", old);
    set_db_enc_version(old);
}

void refuse_newer_encryption() {
    const uint32_t word = get_db_enc_version();
    if (word >> 8 <= kSchemeDefault)
        return;
    DB_LOG_AS(kError, "init_database",
              "Db encrypt version is decreased, should restore the default parameters. "
              "db_version:[%u], cur_version[%u]\n",
              word >> 8, kSchemeDefault);
    UserEntry& administrator = get_cfg_param()->users.sec_user[0];
    std::memset(administrator.username, 0, sizeof administrator.username);
    std::memset(administrator.passwd, 0, sizeof administrator.passwd);
    std::strcpy(administrator.username, "admin");
    std::strcpy(administrator.passwd, "58213");
}

void renew_backup() {
    if (check_file_equal(get_db_path(), get_db_backup_path()) == 1)
        return;
    DB_LOG_AS(kError, "init_database", "ipc_db_backup need backup.\n");
    if (!refresh_backup())
        DB_LOG_AS(kError, "init_database", "the backup is not refreshed\n");
}

// The main application's own files of an older release.
void remove_old_files() {
    for (const char* file : {"/velmora/devCfg.bin", "/velmora/devCfg_backup.bin"})
        std::remove(device_path(file).c_str());
}

int start(int lock_attempts) {
    db_handle db = release_db_handle();
    db_close(&db);
    if (pending != Pending::new_database && is_held(lock_attempts)) {
        leave_to_next_request();
        return -1;
    }
    for (const char* file : {get_db_path(), get_db_backup_path()})
        const NewFile unfinished(file);  // of a start that a power cut ended
    const int result = start_by_condition();
    if (pending == Pending::nothing && get_db_handle() == nullptr)
        pending = Pending::start;  // what took its place could not be opened
    if (pending != Pending::nothing)
        return result;
    // The texts first: the backup has what a start ends with.
    renew_encryption();
    if (result == 0)
        renew_backup();
    refuse_newer_encryption();
    return result;
}

}  // namespace

int db_getdata_byversion(int version) {
    if (version <= 0) {
        DB_LOG(kInfo, "try to read param from cfg file to db\n");
        log_operation("Db version is %d,Read from cfg\n", version);
        return db_get_param_from_devcfg();
    }
    if (store_old_version(version) != 0)
        DB_LOG(kError, "old_version is not stored\n");
    const bool is_current = major_of(version) >= kCurrentMajor;
    const bool is_old = major_of(version) < kLowestPatchableMajor;
    DB_LOG(is_old ? kError : kInfo, is_current ? "Direct read from the database\n"
                                    : is_old   ? "  read param and restore database\n"
                                               : "The database need patch up\n");
    if (!load_all())
        return -1;
    if (!is_old) {
        adapt_db(get_db_handle());
        return is_current ? 0 : patch(version);
    }
    if (db_reconstruct() == 0)
        return 0;
    DB_LOG(kError, "db_reconstruct failed\n");
    return -1;
}

void adapt_db(db_handle db) {
    constexpr struct {
        const char *table, *column;
    } kAdded[] = {
        {"ipdome_osdparam_table", "pt_mode"},
        {"revise_gps_param_config", "revise_mode"},
        {"intelligent_face_detect_config", "byBackgroundPic"},
        {"ntp_config_info", "satellite_interval"},
    };
    constexpr const char* kEmptied = "intelligent_colour_config";
    const auto is_empty = [&] {
        int rows = -1;
        const std::string count = std::string("select count(*) from ") + kEmptied + ";";
        bool complete = db_query_row_num(db, count.c_str(), &rows) == 0 && rows == 0;
        for (const CreatedColumn& column : created_table(kEmptied)->columns)
            complete = complete && check_column_exist(db, kEmptied, std::string(column.name).c_str()) == 1;
        return complete;
    };
    if (db_begin() != 0)
        return;
    int result = 0;
    for (const auto& added : kAdded)
        result |= add_column(db, added.table, added.column, "int");
    // A table that is empty already is not written again.
    if (!is_empty()) {
        if (delete_table(db, (std::string("drop table ") + kEmptied + ";").c_str()) != 0)
            DB_LOG(kError, "%s was not there\n", kEmptied);
        result |= add_table(db, std::string(created_table(kEmptied)->statement).c_str());
    }
    if (result == 0 && db_commit() == 0)
        return;
    DB_LOG(kError, "%s alter db error\n", "adapt_db");
    db_rollback();
}

int init_database() {
    const DeviceQueries queries;
    init_tables_fun();
    int result = -1;
    pending = Pending::nothing;
    set_patience(kPatience);
    if (closing_flag)
        DB_LOG(kInfo, "the database was closed before it was opened\n");
    else
        result = start(kLockAttempts);
    set_patience(0);
    remove_old_files();
    database_started = true;
    return result;
}

void open_again(bool is_new) noexcept try {
    if (!is_new)
        set_db_handle(db_open(get_db_path()));
    if (get_db_handle() == nullptr)
        pending = Pending::start;
} catch (const std::exception&) {  // for want of memory
    pending = Pending::start;
}

bool was_load_pending() {
    const Pending before = pending;
    try {
        if (before != Pending::nothing && !closing_flag && start(1) != 0)
            DB_LOG(kError, "the database is still not started\n");
    } catch (...) {
        pending = before;
        throw;
    }
    return before != Pending::nothing;
}
