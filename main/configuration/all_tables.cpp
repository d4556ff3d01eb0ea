#include "all_tables.h"

#include <errno.h>

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "engine.h"
#include "files.h"
#include "log.h"
#include "operation_log.h"
#include "recovery.h"
#include "registry.h"
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

// Tables that the last load of everything passed over, or failed to load: the record does not hold what is stored in
// them.
TableNumbers not_loaded;

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

// What get_alldata_from_db does, once.  kLost: the storage or the memory failed.
constexpr int kLost = kNothingLoaded - 1;
int load_all_tables(const Capabilities& capabilities) {
    Work work;
    if (!work.begin_to_load())
        return kNothingLoaded;
    for (int t = 0; t < kTableNumbers; ++t)
        not_loaded.set(static_cast<std::size_t>(t), capabilities.closed_for(t) != nullptr);
    int result = 0;
    visit_tables(capabilities, "get_alldata_from_db", [&](int t) {
        if (tables_fun[t].get == nullptr) {
            DB_LOG_AS(kError, "get_alldata_from_db", "tables_fun[%d].get is null \n", t);
            return true;
        }
        if (const int rc = work.load(tables_fun[t]); rc != 0) {
            result = rc;
            not_loaded.set(static_cast<std::size_t>(t));
            DB_LOG_AS(kError, "get_alldata_from_db", "get_alldata_from_db failed,table:%d\n", t);
            if (db_transaction_broken() || db_failed_at_the_moment())
                result = kLost;
        }
        return result != kLost;
    });
    return work.commit() || result != 0 ? result : -1;
}

}  // namespace

// A record that lacks a table for a fault of the moment would be stored, by an upgrade or a store of everything.
int get_alldata_from_db() {
    const Capabilities capabilities(kLoad);
    int result = load_all_tables(capabilities);
    if (result == kLost)
        result = load_all_tables(capabilities);
    return result == kLost ? kNothingLoaded : result;
}

bool load_passed_over_tables() {
    const Capabilities capabilities(kLoad);
    Work work;
    if (!work.begin_to_load())
        return false;
    for (int t = 1; t < kTableNumbers; ++t)
        if (capabilities.closed_for(t) != nullptr && tables_fun[t].get != nullptr &&
            work.load(tables_fun[t]) != 0)
            DB_LOG(kInfo, "table %d cannot be loaded\n", t);
    return !db_failed_at_the_moment() && work.commit();
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

bool store_new_database(TableNumbers& passed_over) {
    const Capabilities to_store(kStore), to_load(kLoad);
    if (store_all_tables(to_store) != 0)
        return false;
    passed_over = not_loaded;
    for (int t = 1; t < kTableNumbers; ++t)
        if (to_store.closed_for(t) != nullptr || to_load.closed_for(t) != nullptr)
            passed_over.set(static_cast<std::size_t>(t));
    return true;
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
    // A handle that is still open leads to the file's deleted self: what only that holds is carried over.
    return rebuild_from_record(kCurrentVersion) == Rebuilt::complete ? 0 : -1;
}
