#include "all_tables.h"

#include <errno.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "engine.h"
#include "files.h"
#include "log.h"
#include "operation_log.h"
#include "registry.h"
#include "schema.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
#include "versions.h"
#include "well_known.h"
#include "work.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

enum Direction : unsigned { kLoad = 1, kStore = 2 };

struct GateCapability {
    Capability id;
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
    std::initializer_list<GateCapability> capabilities;
    std::initializer_list<TableRange> tables;
    const char* message;  // per table passed over; null: none
};

constexpr Gate kGates[] = {
    {true,
     {{Capability::analytics_319}, {Capability::analytics_320}, {Capability::analytics_321}},
     {{109, 111}, {112, 112, kStore}, {113, 117}, {119, 119}},
     nullptr},
    {false,
     {{Capability::traffic_331},
      {Capability::traffic_333},
      {Capability::traffic_454},
      {Capability::intelligent_monitor, kLoad}},
     {{134, 143}},
     nullptr},
    {false, {{Capability::platform_registration}}, {{162, 166}}, nullptr},
    {true, {{Capability::judicial}}, {{235, 245}}, "device do not support judicial\n"},
    {true, {{Capability::colour_filter}}, {{233, 233}}, "device do not support color filter\n"},
    {true, {{Capability::intelligent_monitor}}, {{205, 216}}, "device do not support intell monitor\n"},
};

class Capabilities {
  public:
    explicit Capabilities(Direction direction) : direction_(direction) {
        // Two capabilities are asked per channel without any bearing on the tables; the main application
        // may count on it.
        for (int channel = 0; channel < maxEnChanNo; ++channel)
            for (const Capability unused : {Capability::unused_312, Capability::unused_316})
                static_cast<void>(device_has(channel + 1, unused));
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
    DeviceQueries queries_;  // one, also where no request is served
    bool open_[std::size(kGates)];

    bool present(const Gate& gate) {
        const int channels = gate.any_channel ? maxEnChanNo : 1;
        for (int channel = 0; channel < channels; ++channel)
            for (const GateCapability& c : gate.capabilities)
                if ((c.directions & direction_) != 0 && device_has(channel + 1, c.id))
                    return true;
        return false;
    }
};

// Calls `visit` for every table that the device has, in ascending order, until it returns false.  Those that are passed
// over are logged under the function's name, where it is given.
template <class Visit>
void visit_tables(const Capabilities& capabilities, const char* function, Visit visit) {
    for (int t = 1; t < kTableNumbers; ++t) {
        if (const Gate* gate = capabilities.closed_for(t)) {
            if (gate->message != nullptr && function != nullptr)
                DB_LOG_AS(kError, function, "%s", gate->message);
        } else if (!visit(t)) {
            return;
        }
    }
}

void report_failed_store(int table) {
    DB_LOG_AS(kError, "set_alldata_to_db", "tables_fun[%d].set() failed, going to rollback\n", table);
    log_operation("tables_fun[%d].set failed.Need rollback\n", table);
}

// What set_alldata_to_db does inside its transaction.  0, or -1 at the first failure.
int store_all_tables(const Capabilities& capabilities) {
    std::vector<const Table*> stored;
    visit_tables(capabilities, nullptr, [&](int t) {
        if (tables_fun[t].set != nullptr)
            stored.push_back(dbshell::table_by_number(t));
        return true;
    });
    const dbshell::StoredInOrder order(std::move(stored));
    int failed = 0;
    visit_tables(capabilities, "set_alldata_to_db", [&](int t) {
        if (tables_fun[t].set != nullptr && tables_fun[t].set(tables_fun, kSaveFlag, t) != 0)
            failed = t;
        return failed == 0;
    });
    if (failed == 0)
        return 0;
    report_failed_store(failed);
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

// A database that could not be filled gets its tables at least, so that they can be stored one by one.
void make_empty_tables(db_handle db) {
    if (db_begin() != 0)
        return;
    if (creat_all_table(db) != 0)
        db_rollback();
    else if (db_commit() != 0)
        DB_LOG_AS(kError, "rebuild_from_record", "the database stays without tables\n");
}

}  // namespace

int get_alldata_from_db() {
    const Capabilities capabilities(kLoad);
    Work work;
    if (!work.begin_to_load())
        return -1;
    int result = 0;
    visit_tables(capabilities, __func__, [&](int t) {
        if (tables_fun[t].get == nullptr) {
            DB_LOG_AS(kError, "get_alldata_from_db", "tables_fun[%d].get is null \n", t);
            return true;
        }
        if (const int rc = work.load(tables_fun[t]); rc != 0) {
            result = rc;
            DB_LOG_AS(kError, "get_alldata_from_db", "get_alldata_from_db failed,table:%d\n", t);
        }
        return true;
    });
    return work.commit() || result != 0 ? result : -1;
}

void load_passed_over_tables() {
    const Capabilities capabilities(kLoad);
    Work work;
    if (!work.begin_to_load())
        return;
    for (int t = 1; t < kTableNumbers; ++t)
        if (capabilities.closed_for(t) != nullptr && tables_fun[t].get != nullptr &&
            work.load(tables_fun[t]) != 0)
            DB_LOG(kInfo, "table %d cannot be loaded\n", t);
    static_cast<void>(work.commit());
}

int set_alldata_to_db() {
    if (makesure_database_exist() != 0 && get_db_handle() != nullptr)
        return -1;
    const Capabilities capabilities(kStore);
    Work work;
    if (!work.begin(dbshell::all_tables())) {
        if (work.failed_table() != 0)
            report_failed_store(work.failed_table());
        return -1;
    }
    return store_all_tables(capabilities) == 0 && work.commit() ? 0 : -1;
}

bool is_passed_over(int table) {
    const auto guards = [table](const Gate& gate) {
        return std::any_of(gate.tables.begin(), gate.tables.end(),
                           [table](const TableRange& r) { return table >= r.first && table <= r.last; });
    };
    return std::any_of(std::begin(kGates), std::end(kGates), guards) &&
           Capabilities(kStore).closed_for(table) != nullptr;
}

int rebuild_from_record() {
    const Capabilities capabilities(kStore);
    db_handle db = get_db_handle();
    int tables_before = -1;
    if (db == nullptr)
        return -1;
    {
        Work work;
        if (!work.begin_anew())
            return -1;
        if (db_query_row_num(db, "select count(*) from sqlite_master;", &tables_before) == 0 &&
            drop_all_tables(db) == 0 && creat_all_table(db) == 0 && store_all_tables(capabilities) == 0 &&
            db_update_version(kCurrentVersion, db) == 0)
            return work.commit() ? 0 : -1;
    }
    DB_LOG(kError, "set_alldata_to_db error\n");
    if (tables_before == 0)
        make_empty_tables(db);
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
    if (db == nullptr) {
        DB_LOG_AS(kError, "db_create", "creat_database:sqldb = NULL\n");
        return -1;
    }
    set_db_handle(db);
    return rebuild_from_record();
}
