#include "engine.h"

#include <sqlite3.h>

#include <algorithm>
#include <map>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "messages.h"
#include "record_copy.h"
#include "sec_db_enc.h"
#include "state.h"
#include "store.h"
#include "stored_rows.h"
#include "transaction.h"
#include "walk.h"

namespace dbshell {

namespace {

// Serves all rows of all saves: they run one at a time, under g_db_mutexsem.
Values scratch;

// A prepared statement that is left as it was found.
class Used {
  public:
    explicit Used(sqlite3_stmt* s) : s_(s) {}
    ~Used() {
        sqlite3_reset(s_);
        sqlite3_clear_bindings(s_);
    }
    Used(const Used&) = delete;
    Used& operator=(const Used&) = delete;

  private:
    sqlite3_stmt* s_;
};

// Runs a statement; `asks` is called with each row that it gives until it returns false.  SQLite's code.  Behind a
// transaction that SQLite has rolled back by itself nothing runs: it would be stored on its own.
template <class Asks>
int run(const Statement& statement, Purpose purpose, const Values& values, Asks asks) {
    if (db_transaction_broken())
        return SQLITE_ABORT;
    int rc = SQLITE_OK;
    sqlite3_stmt* s = prepared(statement, purpose, rc);
    if (s == nullptr)
        return rc;
    const Used used(s);
    rc = values.bind(s);
    if (rc == SQLITE_OK)
        while ((rc = db_step(s, statement.table)) == SQLITE_ROW && asks(s)) {
        }
    return rc == SQLITE_DONE || rc == SQLITE_ROW ? SQLITE_OK : db_report_error();
}

int run(const Statement& statement, Purpose purpose, const Values& values) {
    return run(statement, purpose, values, [](sqlite3_stmt*) { return false; });
}

// Runs a count or a delete of the rows that lie within the same indexes.
int run_for_scope(const Table& t, Purpose purpose, Index at, int64_t* count = nullptr) {
    if (db_transaction_broken())
        return SQLITE_ABORT;
    int rc = SQLITE_OK;
    sqlite3_stmt* s = prepared(t.fill[0], purpose, rc, &t);
    if (s == nullptr)
        return rc;
    const Used used(s);
    int parameter = 0;
    for (const KeyColumn& k : t.keys)
        if (is_scope(t, k, purpose) && rc == SQLITE_OK)
            rc = sqlite3_bind_int64(s, ++parameter, key_value(t.fill[0], k, at, t.counts()));
    if (rc == SQLITE_OK)
        rc = db_step(s, t.fill[0].table);
    if (rc == SQLITE_ROW && count != nullptr)
        *count = sqlite3_column_int64(s, 0);
    return rc == SQLITE_DONE || rc == SQLITE_ROW ? SQLITE_OK : db_report_error();
}

// A row that stood under the key of a default row, and lies outside of those that were counted: another save's of the
// same table, stored under a key that is not its own.
bool displaced_a_row = false;

int make_row(const Statement& s) {
    if (const int rc = run(s, Purpose::run, scratch); rc != SQLITE_OK || sqlite3_changes(get_db_handle()) > 0)
        return rc;
    const int rc = run(s, Purpose::take_place, scratch);
    displaced_a_row = displaced_a_row || sqlite3_changes(get_db_handle()) > 0;
    return rc;
}

Status fill_row(const Table& t, const std::byte* base, Index index, Counts counts, const Statement** failed) {
    const int row = index[t.row_level()];
    for (const Statement& s : t.fill) {
        if (!s.serves(row))
            continue;
        scratch.read(t, s, base, index, counts);
        if (const int rc = make_row(s); rc != SQLITE_OK) {
            if (failed != nullptr)
                *failed = &s;
            return {Cause::default_row, rc};
        }
    }
    return {};
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

// Stores a row that the database has, and that differs.
Status change_row(const Table& t, const Statement& s, const std::byte* base, Index index, Counts counts) {
    scratch.read(t, s, base, index, counts);
    return status_of(run(s, Purpose::run, scratch), Cause::write);
}

// `stored`: what the database has of the rows; null where each is asked for.
Status write_rows(const Table& t, std::string_view function, Index at, int given, Counts counts,
                  const std::byte* base, const StoredRows* stored) {
    using State = StoredRows::State;
    return for_each_row(t, at, given, counts, [&](Index index) {
        for (const Statement& s : t.save) {
            if (!s.serves(index[t.row_level()]))
                continue;
            const State state = stored != nullptr ? stored->state(s, index) : State::unknown;
            if (state == State::same)
                continue;
            const Status status = state == State::different ? change_row(t, s, base, index, counts)
                                                            : store_row(t, s, base, index, counts);
            if (!status.ok()) {
                log_store_failure(t, s, function, status, base, index, counts, kError);
                return status;
            }
        }
        return Status();
    });
}

// What the table's own messages call an index that is out of range.
const char* save_key_message(const Table& t, int level) {
    const char* const own = level == 1 ? t.says.save_middle : level == 2 ? t.says.save_third : nullptr;
    if (own != nullptr || t.says.save_key != nullptr)
        return own != nullptr ? own : t.says.save_key;
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

// The function that a whole save logs as: the _single function where the set function only calls it for each owner.
std::string whole_saving_function(const Table& t) {
    const char* const wrapper = wrapper_message(t);
    const bool wraps = wrapper == nullptr || *wrapper != '\0';
    return wraps && t.has_single() ? single_name(t) : std::string(t.set);
}

// What the set functions that one calls have in common.
struct Session {
    std::byte* const copy;  // what is stored, taken from the record
    const Index at;         // what the first of them was given
    const int given;
    std::map<const Table*, StoredRows> stored = {};

    const StoredRows* rows_of(const Table& t, Counts counts) {
        if (!reads_at_once(t, given, counts))
            return nullptr;
        return &stored.try_emplace(&t, t, at, given, copy, counts).first->second;
    }
};

// One call of a set function: what a table tells of the first `given` indexes, and all below them.
class Save {
  public:
    Save(const Table& table, std::string_view function, int given, Session& session)
        : t_(table), function_(function), given_(given), session_(session) {}

    Status run(Index at) {
        if (const Status s = counts_of_save(t_, function_, counts_); !s.ok())
            return s;
        counts_[0] = t_.layout.owner == Owner::none ? counts_[0] : owner_count(t_);
        return at_depth(at, 0);
    }

  private:
    const Table& t_;
    const std::string_view function_;
    const int given_;
    Session& session_;
    Counts counts_;

    // What belongs to the first `depth` indexes, then what lies below.
    Status at_depth(Index at, int depth) {
        const bool makes = t_.strategy == Strategy::ensure || t_.strategy == Strategy::top_up;
        if (makes && depth == t_.made_within && depth >= given_)
            if (const Status s = complete_rows(at); !s.ok()) {
                log_table(t_, function_, t_.says.part, {.number = at[0]});
                return s;
            }
        const Step own[] = {{{}, std::max(t_.layout.owner == Owner::none ? 0 : 1, given_)}};
        const auto steps = t_.steps.empty() ? std::span<const Step>(own) : t_.steps;
        for (const Step& step : steps)
            if (step.depth == depth)
                if (const Status s = take(step, at); !s.ok())
                    return s;
        if (depth == steps.back().depth)
            return {};
        if (depth < given_)
            return at_depth(at, depth + 1);
        const int count = count_at(depth);
        for (at[depth] = 0; at[depth] < count; ++at[depth])
            if (const Status s = at_depth(at, depth + 1); !s.ok()) {
                if (depth == 0 && t_.has_single())
                    log_table(t_, t_.set, wrapper_message(t_), {.number = at[0], .at = at});
                return s;
            }
        return {};
    }

    // Makes the rows that are missing.
    Status complete_rows(Index at) {
        const StoredRows* stored = session_.rows_of(t_, counts_);
        if (stored != nullptr && stored->has_all(at, t_.made_within))
            return {};
        session_.stored.erase(&t_);
        return ensure_rows(t_, writer(), at, counts_);
    }

    // How many there are at a level; what lies deeper than the table's own rows is told by the step's table.
    int count_at(int level) const {
        if (level > t_.row_level())
            for (const Step& step : t_.steps)
                if (step.depth > level)
                    return find_function(step.function).table->count(level);
        return counts_[level];
    }

    Status take(const Step& step, Index at) {
        if (step.function.empty()) {
            const Status status = rows(step, at);
            if (!status.ok())
                log_table(t_, function_, step.message, {.number = at[0], .at = at});
            return status;
        }
        for (const Table* part = find_function(step.function).table; part != nullptr;
             part = next_saved_part(*part)) {
            const std::string function = saving_function(*part);
            if (Save(*part, function, step.depth, session_).run(at).ok())
                continue;
            log_table(t_, function_, step.message, {.number = at[0], .at = at});
            return Cause::write;
        }
        return {};
    }

    std::string writer() const {
        return t_.worker_set.empty() ? std::string(function_) : std::string(t_.worker_set);
    }

    // The table's own rows, and their schedules.
    Status rows(const Step& step, Index at) {
        const Status status = t_.strategy == Strategy::packed
                                  ? save_packed(t_, session_.copy)
                                  : write_rows(t_, writer(), at, step.depth, counts_, session_.copy,
                                               session_.rows_of(t_, counts_));
        if (!status.ok()) {
            log_table(t_, function_, t_.says.part, {.number = at[0]});
            return status;
        }
        return save_schedules_of(t_, at, step.depth, counts_, session_.copy) ? Status() : Cause::other;
    }
};

// Takes what a table and its steps store from the record.
std::byte* take_with_steps(const Table& t) {
    for (const Step& step : t.steps)
        for (const Table* part = find_function(step.function).table; part != nullptr;
             part = next_saved_part(*part))
            take_with_steps(*part);
    std::byte* copy = take_from_record(t);
    if (t.encryption_word)
        reinterpret_cast<DEVICECONFIG*>(copy)->sec_lock_auth.db_enc_version = VersionInUse::get();
    return copy;
}

// A displaced row is made again under its own key, which may displace the next, by a save of all rows.
constexpr int kMostPasses = 256;

int save_at(const Table& t, std::string_view function, Index at, int given) {
    Status status = ready(t, function);
    if (status.ok()) {
        std::byte* const copy = take_with_steps(t);
        int passes = 0;
        do {
            displaced_a_row = false;
            Session session{copy, at, given};
            status = Save(t, function, given, session).run(at);
            given = 0;
            if (++passes == kMostPasses && displaced_a_row) {
                log_table(t, function, "the rows of %T displace one another\n");
                status = Cause::write;
            }
        } while (status.ok() && displaced_a_row);
    } else if (given == 0 && t.has_single())
        log_table(t, t.set, wrapper_message(t));
    return result_of(t.graded.set, status);
}

Status query_failed(const Table& t, int rc, Index at = {}) {
    log_table(t, loading_function(t), t.says.open, {.number = rc, .at = at});
    return {Cause::query, rc};
}

// The rows below one index of the level above `top`.
int64_t rows_below(const Table& t, int top, Counts counts) {
    int64_t rows = 1;
    for (int level = top; level <= t.row_level(); ++level)
        rows *= counts[level];
    return rows;
}

// Tells that there are fewer rows than the table has, where that is told; refuses more, where they are refused.
Status check_row_count(const Table& t) {
    if (!t.refuses_more && t.says.few == nullptr)
        return {};
    Rows rows(t);
    int64_t count = 0;
    while (rows.next())
        ++count;
    if (rows.error() != SQLITE_OK)
        return query_failed(t, rows.error());
    const int64_t wanted = rows_below(t, 0, t.counts());
    if (count < wanted)
        log_table(t, loading_function(t), t.says.few, {.number = wanted, .row = count});
    if (!t.refuses_more || count <= wanted)
        return {};
    log_table(t, loading_function(t), t.says.empty, {.number = -1, .row = count});
    return Cause::other;
}

// Loads the rows that one query gives.
Status read_rows(const Table& t, Rows&& rows, Index at) {
    // Without a key of its own the table is one row.
    const bool keyed =
        t.by_position || t.across_key() != nullptr || t.key_of(0) != nullptr || t.key_of(1) != nullptr;
    const int limit = keyed ? t.load_limit : 1;
    Places places(t, at[0]);
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
    if (rows.error() != SQLITE_OK)
        return query_failed(t, rows.error(), at);
    if (count == 0)
        log_table(t, loading_function(t), t.says.empty);
    return {};
}

Status read_table(const Table& t) {
    if (const Status s = check_row_count(t); !s.ok())
        return s;
    if (t.load.empty())
        return read_rows(t, Rows(t), {});
    // Once for each value of the indexes that the statement takes.
    Counts each(1, 1, 1, 1);
    for (int level = 0; level < t.row_level(); ++level) {
        const KeyColumn* key = t.key_of(level);
        if (key != nullptr && t.load[0].uses(static_cast<std::size_t>(key - t.keys.data())))
            each[level] = level == 0 ? owner_count(t) : t.count(level);
    }
    return for_each_row(t, {}, 0, each, [&](Index at) { return read_rows(t, Rows(t, t.load[0], at), at); });
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

}  // namespace

// ------------------------------------------------------------------------------------- whole tables

int load_table(const Table& t) {
    int result = 0;
    for (const Table* part = &t; part != nullptr; part = next_loaded_part(*part))
        if (const int rc = result_of(part->graded.get, load(*part)); result == 0)
            result = rc;
    return result;
}

int save_table(const Table& t) {
    for (const Table* part = &t; part != nullptr; part = next_saved_part(*part))
        if (const int rc = save_at(*part, whole_saving_function(*part), {}, 0); rc != 0)
            return rc;
    return 0;
}

int save_table_single(const Table& t, Index at, int given) {
    const std::string function = t.has_single() ? single_name(t) : std::string(t.set);
    given = std::min(given, t.indexes);
    for (int level = 0; level < given; ++level) {
        const int count = level == 0 ? owner_count(t) : t.count(level);
        if (at[level] >= 0 && at[level] < count)
            continue;
        log_table(t, function, save_key_message(t, level), {.number = at[level], .at = at});
        return -1;
    }
    for (const Table* part = &t; part != nullptr; part = next_saved_part(*part))
        if (const int rc = save_at(*part, function, at, given); rc != 0)
            return rc;
    return 0;
}

std::optional<int> call_table_function(std::string_view name, Index at, int given) {
    const NamedFunction f = find_function(name);
    switch (f.role) {
        case NamedFunction::Role::get:
            return load_table(*f.table);
        case NamedFunction::Role::set:
            return save_table(*f.table);
        case NamedFunction::Role::single:
            return save_table_single(*f.table, at, given);
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
    const bool fills = s.verb == Verb::update && !t.fill.empty() && t.strategy != Strategy::packed;
    const bool looks = t.strategy == Strategy::fill_missing;
    if (asked != SQLITE_OK) {
        // Whether the row can be looked for, or only its columns are not as told.
        const bool found = !looks || run(s, Purpose::ask_rows, scratch) == SQLITE_OK;
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
        log_table(t, function, t.says.no_record);
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

Status ensure_rows(const Table& t, std::string_view function, Index at, Counts counts) {
    const int64_t wanted = rows_below(t, t.made_within, counts);
    if (wanted == 0)
        return {};
    int64_t count = 0;
    if (const int rc = run_for_scope(t, Purpose::count, at, &count); rc != SQLITE_OK) {
        log_table(t, function, t.says.count, {.number = rc});
        return {Cause::query, rc};
    }
    const bool adds = t.strategy == Strategy::top_up;
    // An update that names no row sets the key of every row: only one may be there.
    const bool one_only =
        !adds && !t.save.empty() && t.save[0].verb == Verb::update && !t.save[0].has_condition();
    if (count >= wanted && !(one_only && count > 1))
        return {};
    if (count > 0 && !adds) {
        if (const int rc = run_for_scope(t, Purpose::remove, at); rc != SQLITE_OK) {
            log_table(t, function, t.says.remove, {.number = rc});
            return {Cause::remove, rc};
        }
        count = 0;
    }
    int64_t row = 0;
    return for_each_row(t, at, t.made_within, counts, [&](Index index) {
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
