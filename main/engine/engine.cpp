#include "engine.h"

#include <sqlite3.h>

#include <algorithm>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "messages.h"
#include "record_copy.h"
#include "sec_db_enc.h"
#include "state.h"
#include "store.h"
#include "walk.h"

namespace dbshell {

namespace {

// Serves all rows of all saves: they run one at a time, under g_db_mutexsem.
Values scratch;

// Runs a statement; `asks` is called with each row that it gives until it returns false.  SQLite's code.
template <class Asks>
int run(const Statement& statement, Purpose purpose, const Values& values, Asks asks) {
    int rc = SQLITE_OK;
    sqlite3_stmt* s = prepared(statement, purpose, rc);
    if (s == nullptr)
        return rc;
    rc = values.bind(s);
    if (rc == SQLITE_OK)
        while ((rc = sqlite3_step(s)) == SQLITE_ROW && asks(s)) {
        }
    rc = rc == SQLITE_DONE || rc == SQLITE_ROW ? SQLITE_OK : db_report_error();
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
    return rc;
}

int run(const Statement& statement, Purpose purpose, const Values& values) {
    return run(statement, purpose, values, [](sqlite3_stmt*) { return false; });
}

// Runs a count or a delete of an owner's rows.
int run_for_owner(const Table& t, Purpose purpose, int outer, int64_t* count = nullptr) {
    const KeyColumn* key = t.scope();
    int rc = SQLITE_OK;
    sqlite3_stmt* s = prepared(t.fill[0], purpose, rc, key);
    if (s == nullptr)
        return rc;
    if (key != nullptr)
        rc = sqlite3_bind_int(s, 1, (key->constant() ? 0 : outer) + key->bias);
    if (rc == SQLITE_OK)
        rc = sqlite3_step(s);
    if (rc == SQLITE_ROW && count != nullptr)
        *count = sqlite3_column_int64(s, 0);
    rc = rc == SQLITE_DONE || rc == SQLITE_ROW ? SQLITE_OK : db_report_error();
    sqlite3_reset(s);
    return rc;
}

Status fill_row(const Table& t, const std::byte* base, Index index, Counts counts, const Statement** failed) {
    const int row = index[t.row_level()];
    for (const Statement& s : t.fill) {
        if (!s.serves(row))
            continue;
        scratch.read(t, s, base, index, counts);
        if (const int rc = run(s, Purpose::run, scratch); rc != SQLITE_OK) {
            if (failed != nullptr)
                *failed = &s;
            return {Cause::default_row, rc};
        }
    }
    return {};
}

// Visits the indexes of an owner's rows, or of all rows where there is no owner, in order, until one fails.
template <class Visit>
Status for_each_row(const Table& t, int outer, Counts counts, Visit visit) {
    Index index{outer};
    const int top = t.layout.owner == Owner::none ? 0 : 1;
    const int deepest = t.row_level();
    for (int level = top; level <= deepest; ++level)
        if (counts[level] <= 0)
            return {};
    while (true) {
        if (const Status s = visit(index); !s.ok())
            return s;
        int level = deepest;
        while (level >= top && ++index[level] == counts[level])
            index[level--] = 0;
        if (level < top)
            return {};
    }
}

// How many of each level a save stores: as many as the device has.
Status counts_of_save(const Table& t, std::string_view function, Counts& counts) {
    counts = t.counts();
    if (t.device_rows == DeviceCount::none)
        return {};
    if (t.device_rows == DeviceCount::event_sources || t.device_rows == DeviceCount::listed_sources) {
        int sources = kVmChains;
        if (get_event_source_count(&sources) == 0)
            sources = std::clamp(sources, 0, kVmChains);
        counts.sources = sources;
        if (t.device_rows == DeviceCount::event_sources)
            counts[t.outermost_level()] = sources;
        return {};
    }
    int rows = 0;
    const auto item = t.device_rows == DeviceCount::alarm_inputs ? kAlarmInputs : kAlarmOutputs;
    if (get_hardware_count(item, &rows) != 0) {
        log_table(t, function, t.device_silent);
        return Cause::query;
    }
    counts[t.row_level()] = std::clamp(rows, 0, t.row_count());
    return {};
}

Status write_rows(const Table& t, std::string_view function, int outer, Counts counts,
                  const std::byte* base) {
    if (t.strategy == Strategy::ensure || t.strategy == Strategy::top_up)
        if (const Status s = ensure_rows(t, function, outer, counts); !s.ok())
            return s;
    return for_each_row(t, outer, counts, [&](Index index) {
        for (const Statement& s : t.save) {
            if (!s.serves(index[t.row_level()]))
                continue;
            if (const Status status = store_row(t, s, base, index, counts); !status.ok()) {
                log_store_failure(t, s, function, status, base, index, counts, kError);
                return status;
            }
        }
        return Status();
    });
}

// What the table's own messages call the owner's index that is out of range.
const char* save_key_message(const Table& t) {
    if (t.says.save_key != nullptr)
        return t.says.save_key;
    return t.layout.owner == Owner::sensor    ? "Invalid sensor_no-%d\n"
           : t.layout.owner == Owner::channel ? "invalid chan_no: %d\n"
                                              : nullptr;
}

const char* wrapper_message(const Table& t) {
    if (t.says.wrapper != nullptr)
        return t.says.wrapper;
    return t.layout.owner == Owner::sensor    ? "%S failed for sensor_no: %d\n"
           : t.layout.owner == Owner::channel ? "%S error for chan_no: %d\n"
                                              : nullptr;
}

// The rows of one owner with what belongs to them.
Status save_owner(const Table& t, std::string_view function, int outer) {
    std::byte* copy = take_from_record(t);
    if (t.encryption_word)
        reinterpret_cast<DEVICECONFIG*>(copy)->sec_lock_auth.db_enc_version = VersionInUse::get();
    Counts counts;
    if (const Status s = counts_of_save(t, function, counts); !s.ok())
        return s;
    const std::string worker = t.worker_set.empty() ? std::string(function) : std::string(t.worker_set);
    const Status status =
        t.strategy == Strategy::packed ? save_packed(t, copy) : write_rows(t, worker, outer, counts, copy);
    if (!status.ok()) {
        log_table(t, function, t.says.part, {.number = outer});
        return status;
    }
    if (!save_schedules_of(t, outer, counts, copy))
        return Cause::other;
    if (t.then.function.empty())
        return {};
    const Table* next = find_function(t.then.function).table;
    if (next != nullptr && save_table_single(*next, outer) == 0)
        return {};
    log_table(t, function, t.then.message);
    return Cause::other;
}

// Loads the rows that one query gives.
Status read_rows(const Table& t, Rows&& rows, int outer) {
    // Without a key of its own the table is one row.
    const bool keyed =
        t.by_position || t.across_key() != nullptr || t.key_of(0) != nullptr || t.key_of(1) != nullptr;
    const int limit = keyed ? t.load_limit : 1;
    Places places(t, outer);
    int count = 0, filled = 0;
    while ((limit == 0 || count < limit) && rows.next()) {
        ++count;
        if (!t.holds.empty()) {
            filled = rows.read_groups(t, record_base(), filled);
        } else if (const auto index = places.of(rows)) {
            for (const Statement& s : t.save)
                if (places.serves(s, rows, *index))
                    rows.read(t, s, record_base(), *index);
        } else if (places.owner_unknown() && t.bad_key_ends_load) {
            return Cause::other;
        }
    }
    if (rows.error() != SQLITE_OK) {
        log_table(t, loading_function(t), t.says.open, {.number = rows.error()});
        return {Cause::query, rows.error()};
    }
    if (count == 0)
        log_table(t, loading_function(t), t.says.empty);
    return {};
}

Status read_table(const Table& t) {
    if (t.load.empty())
        return read_rows(t, Rows(t), 0);
    const KeyColumn* key = t.key_of(0);
    const bool per_owner = key != nullptr && t.load[0].uses(static_cast<std::size_t>(key - t.keys.data()));
    for (int outer = 0; outer < (per_owner ? owner_count(t) : 1); ++outer)
        if (const Status s = read_rows(t, Rows(t, t.load[0], outer), outer); !s.ok())
            return s;
    return {};
}

// A table of an older schema need not be there any more.
Status find_older(const Table& t, bool& there) {
    int rc = SQLITE_OK;
    sqlite3_stmt* s = prepared(t.load[0], Purpose::exists, rc);
    if (s != nullptr) {
        rc = sqlite3_bind_text(s, 1, t.name.data(), static_cast<int>(t.name.size()), SQLITE_STATIC);
        if (rc == SQLITE_OK)
            rc = sqlite3_step(s) == SQLITE_ROW ? SQLITE_OK : db_report_error();
        there = rc == SQLITE_OK && sqlite3_column_int(s, 0) != 0;
        sqlite3_reset(s);
    }
    if (rc != SQLITE_OK) {
        log_table(t, t.get, t.says.count, {.number = rc});
        return {Cause::other, rc};
    }
    if (!there)
        log_table(t, t.get, " %T is not exist\n");
    return {};
}

Status load(const Table& t) {
    if (const Status s = ready(t, t.get); !s.ok())
        return s;
    if (t.of_older_schema) {
        bool there = false;
        if (const Status s = find_older(t, there); !s.ok() || !there)
            return s;
    }
    const Status status = t.week_list != WeekList::none    ? load_week_list(t)
                          : t.strategy == Strategy::packed ? load_packed(t)
                                                           : read_table(t);
    if (!status.ok())
        return status;
    if (t.encryption_word)
        log_table(t, t.get, "\n\ndb_enc_version = %d\n\n", {.number = get_db_enc_version()});
    return load_schedules_of(t) ? Status() : Cause::other;
}

// Every owner's rows of one entry; stops at the first that fails.
int save_owners(const Table& t) {
    if (t.layout.owner == Owner::none)
        return save_table_single(t, 0);
    for (int outer = 0; outer < owner_count(t); ++outer) {
        if (const int rc = save_table_single(t, outer); rc != 0) {
            if (t.has_single())
                log_table(t, t.set, wrapper_message(t), {.number = outer});
            return rc;
        }
    }
    return 0;
}

}  // namespace

// ------------------------------------------------------------------------------------- whole tables

int load_table(const Table& t) {
    for (const Table* part = &t; part != nullptr; part = next_part(*part))
        if (const int rc = result_of(part->graded.get, load(*part)); rc != 0)
            return rc;
    return 0;
}

int save_table(const Table& t) {
    for (const Table* part = &t; part != nullptr; part = next_part(*part))
        if (const int rc = save_owners(*part); rc != 0)
            return rc;
    return 0;
}

int save_table_single(const Table& t, int outer) {
    const std::string function = t.has_single() ? single_name(t) : std::string(t.set);
    if (outer < 0 || outer >= owner_count(t)) {
        log_table(t, function, save_key_message(t), {.number = outer});
        return -1;
    }
    Status status = ready(t, function);
    if (status.ok())
        status = save_owner(t, function, outer);
    return result_of(t.graded.set, status);
}

std::optional<int> call_table_function(std::string_view name, int outer) {
    const NamedFunction f = find_function(name);
    switch (f.role) {
        case NamedFunction::Role::get:
            return load_table(*f.table);
        case NamedFunction::Role::set:
            return save_table(*f.table);
        case NamedFunction::Role::single:
            return save_table_single(*f.table, outer);
        case NamedFunction::Role::none:
            break;
    }
    return {};
}

// ------------------------------------------------------------------------------------- one row

Status store_row(const Table& t, const Statement& s, const std::byte* base, Index index, Counts counts) {
    scratch.read(t, s, base, index, counts);
    bool there = false, changes = false;
    const int asked = run(s, Purpose::ask, scratch, [&](sqlite3_stmt* row) {
        there = true;
        changes = s.verb == Verb::update && sqlite3_column_int(row, 0) != 0;
        return s.verb == Verb::update && !changes;
    });
    const bool fills = t.strategy == Strategy::fill_missing;
    if (asked != SQLITE_OK) {
        // Whether the row can be looked for, or only its columns are not as told.
        const bool found = !fills || run(s, Purpose::ask_rows, scratch) == SQLITE_OK;
        return {found ? Cause::write : Cause::query, asked};
    }
    if (fills && !there) {
        if (const Status status = fill_row(t, base, index, counts, nullptr); !status.ok())
            return status;
        scratch.read(t, s, base, index, counts);
        changes = true;
    }
    if (s.verb == Verb::replace)
        changes = !there;
    return changes ? status_of(run(s, Purpose::run, scratch), Cause::write) : Status();
}

void log_store_failure(const Table& t, const Statement& s, std::string_view function, Status status,
                       const std::byte* base, Index index, Counts counts, int level) {
    if (!s.function.empty())
        function = s.function;
    const Told told{.number = status.code()};
    switch (status.cause()) {
        case Cause::query:
            return log_table(t, function, t.says.count, told);
        case Cause::default_row:
            return log_table(t, function, t.says.insert, told, level);
        default:
            return log_table(t, function, t.says.write,
                             {.number = status.code(), .statement = rendered(t, s, base, index, counts)},
                             level);
    }
}

Status load_row(const Table& t, std::string_view function, std::byte* base, Index index) {
    Rows rows(t, t.load[0], index);
    if (rows.next())
        rows.read(t, t.save[0], base, index);
    if (rows.error() == SQLITE_OK)
        return {};
    log_table(t, function, t.says.open, {.number = rows.error()});
    return {Cause::query, rows.error()};
}

Status ready(const Table& t, std::string_view function) {
    if (get_cfg_param() == nullptr) {
        log_table(t, function, "get_cfg_param err\n");
        return Cause::no_record;
    }
    if (get_db_handle() == nullptr) {
        log_table(t, function, " get_db_handle err\n");
        return Cause::no_database;
    }
    return {};
}

// ------------------------------------------------------------------------------------- between the files

int owner_count(const Table& t) {
    return t.layout.owner == Owner::channel ? std::min(channel_count(), t.count(0))
           : t.layout.owner == Owner::none  ? 1
                                            : t.count(0);
}

std::byte* record_base() {
    return reinterpret_cast<std::byte*>(get_cfg_param());
}

Status ensure_rows(const Table& t, std::string_view function, int outer, Counts counts) {
    int64_t wanted = 1;
    for (int level = t.layout.owner == Owner::none ? 0 : 1; level <= t.row_level(); ++level)
        wanted *= counts[level];
    if (wanted == 0)
        return {};
    int64_t count = 0;
    if (const int rc = run_for_owner(t, Purpose::count, outer, &count); rc != SQLITE_OK) {
        log_table(t, function, t.says.count, {.number = rc});
        return {Cause::query, rc};
    }
    const bool adds = t.strategy == Strategy::top_up;
    // An update that names no row sets the key of every row: only one may be there.
    const bool one_only = !adds && !t.save.empty() && !t.save[0].has_condition();
    if (count >= wanted && !(one_only && count > 1))
        return {};
    if (count > 0 && !adds) {
        if (const int rc = run_for_owner(t, Purpose::remove, outer); rc != SQLITE_OK) {
            log_table(t, function, t.says.remove, {.number = rc});
            return {Cause::remove, rc};
        }
        count = 0;
    }
    int64_t row = 0;
    return for_each_row(t, outer, counts, [&](Index index) {
        if (row++ < count)
            return Status();
        const Statement* failed = nullptr;
        const Status status = fill_row(t, nullptr, index, counts, &failed);
        if (!status.ok())
            log_table(t, function, t.says.insert,
                      {.number = status.code(), .statement = rendered(t, *failed, nullptr, index, counts)});
        return status;
    });
}

}  // namespace dbshell
