// The whole configuration through the engine against the same rows through raw prepared SQLite: one prepared statement a
// table, values bound and read as they are, the same file settings, the same number of commits.
#include <benchmark/benchmark.h>
// The hook is declared only then.
#define SQLITE_ENABLE_PREUPDATE_HOOK 1
#include <sqlite3.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "device_debug.h"
#include "device_ipc.h"
#include "device_paths.h"
#include "engine.h"
#include "record_access.h"
#include "registry.h"
#include "request.h"
#include "seal.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
#include "work.h"

namespace {

using namespace dbshell;

struct Value {
    int64_t number = 0;
    std::string text;
    bool is_text = false;
};

struct RawTable {
    std::string name;
    int columns = 0;
    std::vector<Value> values;  // row by row
};

std::unique_ptr<DEVICECONFIG> record_a, record_b, shared;
std::vector<RawTable> rows_a, rows_b;  // what the database holds for each record

int64_t row_count() {
    int64_t rows = 0;
    for (const RawTable& t : rows_a)
        rows += static_cast<int64_t>(t.values.size()) / t.columns;
    return rows;
}

int64_t value_count() {
    int64_t values = 0;
    for (const RawTable& t : rows_a)
        values += static_cast<int64_t>(t.values.size());
    return values;
}

void fail(const char* what) {
    std::fprintf(stderr, "bench_store: %s\n", what);
    std::exit(1);
}

// Every set function of the registry.
int store_all() {
    Work work;
    if (!work.begin(all_tables()))
        return -1;
    for (int number = 1; number < kTableNumbers; ++number)
        if (const Table* t = table_by_number(number);
            t != nullptr && t->has_registry_set() && save_table(*t) != 0)
            return -1;
    return work.commit() ? 0 : -1;
}

// Every get function of the registry, as the whole-configuration load calls them.
int load_all() {
    Work work;
    if (!work.begin_to_load())
        return -1;
    int failures = 0;
    for (int number = 1; number < kTableNumbers; ++number)
        if (const Table* t = table_by_number(number); t != nullptr)
            failures += load_table(*t) != 0;
    return work.commit() ? failures : -1;
}

// Reads every column as what it is; what a load without a record costs.
template <class Visit>
void raw_read(const std::vector<std::string>& tables, Visit visit) {
    for (const std::string& name : tables) {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(get_db_handle(), ("select * from " + name).c_str(), -1, &s, nullptr) !=
            SQLITE_OK)
            fail("select failed");
        while (sqlite3_step(s) == SQLITE_ROW)
            for (int i = 0; i < sqlite3_column_count(s); ++i)
                visit(name, s, i);
        sqlite3_finalize(s);
    }
}

std::vector<std::string> table_names() {
    std::vector<std::string> names;
    for (const Table* t : all_tables())
        if (std::find(names.begin(), names.end(), t->name) == names.end() && !t->of_older_schema)
            names.emplace_back(t->name);
    return names;
}

std::vector<RawTable> snapshot() {
    std::vector<RawTable> tables;
    raw_read(table_names(), [&](const std::string& name, sqlite3_stmt* s, int i) {
        if (tables.empty() || tables.back().name != name)
            tables.push_back({name, sqlite3_column_count(s), {}});
        Value v;
        v.is_text = sqlite3_column_type(s, i) == SQLITE_TEXT;
        if (v.is_text)
            v.text = reinterpret_cast<const char*>(sqlite3_column_text(s, i));
        else
            v.number = sqlite3_column_int64(s, i);
        tables.back().values.push_back(v);
    });
    return tables;
}

int raw_store(const std::vector<RawTable>& tables) {
    if (db_execsql(get_db_handle(), "begin;") != 0)
        return -1;
    for (const RawTable& t : tables) {
        std::string sql = "replace into " + t.name + " values(?";
        for (int i = 1; i < t.columns; ++i)
            sql += ",?";
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(get_db_handle(), (sql + ")").c_str(), -1, &s, nullptr) != SQLITE_OK)
            fail("prepare failed");
        for (std::size_t at = 0; at < t.values.size(); at += static_cast<std::size_t>(t.columns)) {
            for (int i = 0; i < t.columns; ++i) {
                const Value& v = t.values[at + static_cast<std::size_t>(i)];
                if (v.is_text)
                    sqlite3_bind_text(s, i + 1, v.text.data(), static_cast<int>(v.text.size()),
                                      SQLITE_STATIC);
                else
                    sqlite3_bind_int64(s, i + 1, v.number);
            }
            if (sqlite3_step(s) != SQLITE_DONE)
                fail("replace failed");
            sqlite3_reset(s);
        }
        sqlite3_finalize(s);
    }
    return db_execsql(get_db_handle(), "commit;");
}

// A main application that reports 16 of whatever it is asked for.
int answer_sixteen(void* buffer, int* reply_length, int) {
    const int32_t sixteen = kMaxAlarms;
    std::memcpy(buffer, &sixteen, sizeof sixteen);
    *reply_length = sizeof sixteen;
    return 0;
}

void set_up() {
    const std::string root = std::filesystem::temp_directory_path() / "bench_store";
    std::filesystem::remove_all(root);
    std::filesystem::create_directories(root);
    setenv("DEVICE_ROOT", root.c_str(), 1);
    device_prepare_root();
    if (ipc_unix_init("velmora", kMainApplication, answer_sixteen, answer_sixteen) != 0)
        fail("service 1 cannot be served");
    const int quiet[2] = {-1, 0};
    set_debug_para_withcheck(quiet, 0, 0);
    shared = std::make_unique<DEVICECONFIG>();
    record_a = std::make_unique<DEVICECONFIG>();
    record_b = std::make_unique<DEVICECONFIG>();
    fill_random(*record_a, 1);
    fill_random(*record_b, 2);
    record_a->sec_lock_auth.db_enc_version = record_b->sec_lock_auth.db_enc_version = 0x01000100;
    set_cfg_param(shared.get());
    init_tables_fun();
    if (db_create(get_db_path()) != 0)
        fail("the database cannot be made");
    set_db_handle(db_open(get_db_path()));
    *shared = *record_b;
    if (store_all() != 0)
        fail("the store failed");
    rows_b = snapshot();
    *shared = *record_a;
    if (store_all() != 0)
        fail("the store failed");
    rows_a = snapshot();
}

void counters(benchmark::State& state) {
    state.counters["rows"] = static_cast<double>(row_count());
    state.counters["values"] = static_cast<double>(value_count());
}

void engine_store_changed(benchmark::State& state) {
    bool a = false;
    for (auto _ : state) {
        state.PauseTiming();
        *shared = a ? *record_a : *record_b;
        a = !a;
        state.ResumeTiming();
        if (store_all() != 0)
            fail("the store failed");
    }
    counters(state);
}

// Without the pre-update hook nothing is known to change, and nothing is sealed.
void engine_store_changed_unsealed(benchmark::State& state) {
    sqlite3_preupdate_hook(get_db_handle(), nullptr, nullptr);
    engine_store_changed(state);
    seal_watches(get_db_handle());
}

void raw_store_changed(benchmark::State& state) {
    bool a = false;
    for (auto _ : state) {
        if (raw_store(a ? rows_a : rows_b) != 0)
            fail("the raw store failed");
        a = !a;
    }
    counters(state);
}

void engine_store_unchanged(benchmark::State& state) {
    if (store_all() != 0)
        fail("the store failed");
    for (auto _ : state)
        if (store_all() != 0)
            fail("the store failed");
    counters(state);
}

void engine_load(benchmark::State& state) {
    for (auto _ : state)
        if (load_all() != 0)
            fail("the load failed");
    counters(state);
}

// As a start does it, with a connection that has read nothing yet.
void engine_first_load(benchmark::State& state) {
    for (auto _ : state) {
        db_handle db = release_db_handle();
        db_close(&db);
        set_db_handle(db_open(get_db_path()));
        if (load_all() != 0)
            fail("the load failed");
    }
    counters(state);
}

void seal_check(benchmark::State& state) {
    if (!seal_file(get_db_path()))
        fail("the database cannot be sealed");
    for (auto _ : state)
        if (read_sealed(get_db_handle()).seal != Seal::intact)
            fail("the database is not as it was sealed");
    counters(state);
}

void raw_load(benchmark::State& state) {
    const auto names = table_names();
    for (auto _ : state) {
        int64_t sum = 0;
        if (db_begin() != 0)
            fail("the load failed");
        raw_read(names, [&](const std::string&, sqlite3_stmt* s, int i) {
            if (sqlite3_column_type(s, i) == SQLITE_TEXT)
                sum += sqlite3_column_bytes(s, i) + sqlite3_column_text(s, i)[0];
            else
                sum += sqlite3_column_int64(s, i);
        });
        if (db_commit() != 0)
            fail("the load failed");
        benchmark::DoNotOptimize(sum);
    }
    counters(state);
}

// One value changed in the record, its table stored and synced.
void engine_store_one_value(benchmark::State& state) {
    const Table* table = table_by_number(31);
    for (auto _ : state) {
        ++shared->network.netconfig.mtu;
        Work work;
        if (!work.begin({&table, 1}) || save_table(*table) != 0 || !work.commit())
            fail("the store failed");
    }
}

void raw_store_one_value(benchmark::State& state) {
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(get_db_handle(), "update netconfig_table set mtu = ? where idx = 1", -1, &s, nullptr);
    int mtu = 0;
    for (auto _ : state) {
        if (db_execsql(get_db_handle(), "begin;") != 0)
            fail("the raw store failed");
        sqlite3_bind_int(s, 1, ++mtu);
        sqlite3_step(s);
        sqlite3_reset(s);
        if (db_execsql(get_db_handle(), "commit;") != 0)
            fail("the raw store failed");
    }
    sqlite3_finalize(s);
}

BENCHMARK(engine_store_changed)->Unit(benchmark::kMillisecond);
BENCHMARK(engine_store_changed_unsealed)->Unit(benchmark::kMillisecond);
BENCHMARK(raw_store_changed)->Unit(benchmark::kMillisecond);
BENCHMARK(engine_store_unchanged)->Unit(benchmark::kMillisecond);
BENCHMARK(engine_load)->Unit(benchmark::kMillisecond);
BENCHMARK(engine_first_load)->Unit(benchmark::kMillisecond);
BENCHMARK(seal_check)->Unit(benchmark::kMillisecond);
BENCHMARK(raw_load)->Unit(benchmark::kMillisecond);
BENCHMARK(engine_store_one_value)->Unit(benchmark::kMillisecond);
BENCHMARK(raw_store_one_value)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    set_up();
    benchmark::RunSpecifiedBenchmarks();
}
