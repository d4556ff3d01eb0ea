#include "all_tables.h"

#include <errno.h>

#include <initializer_list>
#include <string>

#include "DB_uni_process.h"
#include "log.h"
#include "operation_log.h"
#include "registry.h"
#include "schema.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
#include "versions.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

enum Direction : unsigned { kLoad = 1, kStore = 2 };

struct CapabilityId {
    int id;
    unsigned directions = kLoad | kStore;
};

struct TableRange {
    int first, last;
    unsigned directions = kLoad | kStore;
};

// Tables that only some devices have.  The tables are passed over unless one of the capabilities is
// present on one of the channels.
struct Gate {
    bool any_channel;  // channels 1 to maxEnChanNo; otherwise channel 1 only
    std::initializer_list<CapabilityId> capabilities;
    std::initializer_list<TableRange> tables;
    const char* message;  // per table passed over; null: none
};

constexpr Gate kGates[] = {
    {true, {{319}, {320}, {321}}, {{109, 111}, {112, 112, kStore}, {113, 117}, {119, 119}}, nullptr},
    {false, {{331}, {333}, {454}, {584, kLoad}}, {{134, 143}}, nullptr},
    {false, {{652}}, {{162, 166}}, nullptr},
    {true, {{653}}, {{235, 245}}, "device do not support judicial\n"},
    {true, {{609}}, {{233, 233}}, "device do not support color filter\n"},
    {true, {{584}}, {{205, 216}}, "device do not support intell monitor\n"},
};

class Capabilities {
  public:
    explicit Capabilities(Direction direction) : direction_(direction) {
        // Two capabilities are asked per channel without any bearing on the tables; the main application
        // may count on it.
        for (int channel = 1; channel <= channel_count(); ++channel) {
            query_.has(channel, 312);
            query_.has(channel, 316);
        }
        for (std::size_t i = 0; i < std::size(kGates); ++i)
            open_[i] = present(kGates[i]);
    }

    // The gate that closes the table, or null.
    const Gate* closed_for(int table) const {
        for (std::size_t i = 0; i < std::size(kGates); ++i) {
            if (open_[i])
                continue;
            for (const TableRange& r : kGates[i].tables)
                if (table >= r.first && table <= r.last && (r.directions & direction_) != 0)
                    return &kGates[i];
        }
        return nullptr;
    }

  private:
    Direction direction_;
    CapabilityQuery query_;
    bool open_[std::size(kGates)];

    bool present(const Gate& gate) {
        const int channels = gate.any_channel ? channel_count() : 1;
        for (int channel = 1; channel <= channels; ++channel)
            for (const CapabilityId& c : gate.capabilities)
                if ((c.directions & direction_) != 0 && query_.has(channel, c.id))
                    return true;
        return false;
    }
};

// Calls `visit` for every table that the device has, in ascending order, until it returns false.
template <class Visit>
void visit_tables(const Capabilities& capabilities, const char* function, Visit visit) {
    for (int t = 1; t < kTableNumbers; ++t) {
        if (const Gate* gate = capabilities.closed_for(t)) {
            if (gate->message != nullptr)
                DB_LOG_AS(kError, function, "%s", gate->message);
        } else if (!visit(t)) {
            return;
        }
    }
}

// What set_alldata_to_db does inside its transaction.  0, or -1 at the first failure.
int store_all_tables(const Capabilities& capabilities) {
    int failed = 0;
    visit_tables(capabilities, "set_alldata_to_db", [&](int t) {
        if (tables_fun[t].set != nullptr && tables_fun[t].set(tables_fun, kSaveFlag, t) != 0)
            failed = t;
        return failed == 0;
    });
    if (failed == 0)
        return 0;
    DB_LOG_AS(kError, "set_alldata_to_db", "tables_fun[%d].set() failed, going to rollback\n", failed);
    log_operation("tables_fun[%d].set failed.Need rollback\n", failed);
    return -1;
}

int drop_all_tables(db_handle db) {
    db_cursor cursor{};
    int rc = db_query_open_v2(
        db, "select name from sqlite_master where type='table' and name not like 'sqlite_%';", &cursor);
    for (int i = 0; rc == 0 && i < db_query_rec_count_v2(&cursor); ++i) {
        std::string quoted;
        const char* name = db_query_fields_v2(&cursor, "name", i);
        for (const char* c = name != nullptr ? name : ""; *c != '\0'; ++c)
            quoted.append(*c == '"' ? 2 : 1, *c);
        rc = db_execsql(db, ("drop table \"" + quoted + "\";").c_str());
    }
    db_query_close_v2(&cursor);
    return rc;
}

}  // namespace

int get_alldata_from_db() {
    const Capabilities capabilities(kLoad);
    if (!db_begin_unless_closed())
        return -1;
    int result = 0;
    visit_tables(capabilities, __func__, [&](int t) {
        if (tables_fun[t].get == nullptr) {
            DB_LOG_AS(kError, "get_alldata_from_db", "tables_fun[%d].get is null \n", t);
            return true;
        }
        if (const int rc = tables_fun[t].get(tables_fun, kLoadFlag, t); rc != 0) {
            result = rc;
            DB_LOG_AS(kError, "get_alldata_from_db", "get_alldata_from_db failed,table:%d\n", t);
        }
        return true;
    });
    db_commit();
    return result;
}

int set_alldata_to_db() {
    if (makesure_database_exist() != 0 && get_db_handle() != nullptr)
        return -1;
    const Capabilities capabilities(kStore);
    if (!db_begin_unless_closed())
        return -1;
    if (store_all_tables(capabilities) != 0) {
        db_rollback();
        return -1;
    }
    return db_commit() == 0 ? 0 : -1;
}

int rebuild_from_record() {
    const Capabilities capabilities(kStore);
    db_handle db = get_db_handle();
    int tables_before = -1;
    if (db == nullptr || db_begin() != 0)
        return -1;
    if (db_query_row_num(db, "select count(*) from sqlite_master;", &tables_before) == 0 &&
        drop_all_tables(db) == 0 && creat_all_table(db) == 0 && store_all_tables(capabilities) == 0 &&
        db_update_version(kCurrentVersion, db) == 0)
        return db_commit() == 0 ? 0 : -1;
    DB_LOG(kError, "set_alldata_to_db error\n");
    db_rollback();
    // An empty database gets its tables at least, so that they can be stored one by one.
    if (tables_before == 0 && db_begin() == 0) {
        creat_all_table(db);
        db_commit();
    }
    return -1;
}

int makesure_database_exist() {
    if (check_file_exist(get_db_path()) == 0)
        return 0;
    if (errno != ENOENT) {
        DB_LOG(kError, "check_file_exist return failed(errno = %d)\n", errno);
        return -1;
    }
    if (closing_flag)
        return -1;
    // The file is gone: a handle that is still open leads to its deleted self, and what is stored there is lost.
    db_handle db = db_open(get_db_path());
    if (db == nullptr)
        return -1;
    set_db_handle(db);
    return rebuild_from_record();
}
