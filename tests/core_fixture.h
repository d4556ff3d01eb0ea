// The core inside the test's process: for every test a zeroed record, and below a root folder of its own a fresh
// database with every table and no rows.  A main application answers that every capability is `capability` and
// every count `hardware_count`, as soon as it is not `silent`.
#ifndef TESTS_CORE_FIXTURE_H
#define TESTS_CORE_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "DB_process_service.h"
#include "DB_uni_process.h"
#include "all_tables.h"
#include "device_debug.h"
#include "device_ipc.h"
#include "device_paths.h"
#include "files.h"
#include "record_access.h"
#include "registry.h"
#include "request_kinds.h"
#include "sec_db_enc.h"
#include "start.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
#include "unique_fd.h"
#include "versions.h"
#include "well_known.h"
#include "work.h"

#include "catalogue.h"
#include "engine.h"
#include "schedules.h"
#include "seal.h"

using namespace dbshell;

// The pauses that the core makes pass at once (store_test.cpp): they are counted, and `on_pause` runs instead.
inline int pauses = 0;
inline std::function<void()> on_pause;

inline std::atomic<int32_t> capability = 0, hardware_count = 16;
inline std::atomic<bool> silent = false;

class Core : public testing::Test {
  protected:
    std::unique_ptr<DEVICECONFIG> record_ = std::make_unique<DEVICECONFIG>();
    DEVICECONFIG& r_ = *record_;

    Core() {
        setenv("DEVICE_ROOT", root_folder().c_str(), 1);
        std::filesystem::remove_all(root_folder() + "/devinfo");
        device_prepare_root();
        std::filesystem::current_path(root_folder());  // where dumps go
        std::filesystem::remove_all("ex1.dump.gz");
        set_cfg_param(record_.get());
        maxEnChanNo = 1;
        closing_flag = false;
        database_started = true;
        pauses = 0;
        capability = 0;
        hardware_count = 16;
        forget_device();
        log_level(0);
        init_tables_fun();
        fresh_database();
    }
    ~Core() override {
        answer_again();
        // Whatever was stored, and however it ended: the seal is true.
        if (get_db_handle() != nullptr && sqlite3_get_autocommit(get_db_handle()) != 0) {
            EXPECT_NE(read_sealed(get_db_path()).seal, Seal::rotten);
        }
        close_database();
        set_cfg_param(nullptr);
        log_level(6);
        on_pause = nullptr;
        unsetenv("DEVICE_ROOT");
    }

    // ---- files

    static std::string path(const std::string& name) { return root_folder() + "/devinfo/" + name; }
    static std::string content(const std::string& file) {
        std::ifstream in(file, std::ios::binary | std::ios::ate);
        std::string bytes(in ? static_cast<std::size_t>(in.tellg()) : 0, '\0');
        in.seekg(0).read(bytes.data(), std::ssize(bytes));
        return bytes;
    }
    static void write_file(const std::string& file, const std::string& bytes) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
    }
    static std::string operation_log() { return content(path("db_op_info.log")); }

    // The database file with the time of its last change.
    using FileState = std::pair<std::string, std::filesystem::file_time_type>;
    static FileState file_state() {
        return {content(get_db_path()), std::filesystem::last_write_time(get_db_path())};
    }

    // ---- database

    static void close_database() {
        db_handle db = get_db_handle();
        db_close(&db);
    }
    static void fresh_database() {
        close_database();
        std::filesystem::remove(get_db_path());
        ASSERT_EQ(db_create(get_db_path()), 0);
        set_db_handle(db_open(get_db_path()));
    }
    static void sql(const std::string& text) {
        ASSERT_EQ(db_execsql(get_db_handle(), text.c_str()), 0) << text << sqlite3_errmsg(get_db_handle());
    }
    // In a table's place something that cannot be read, nor repaired.
    static std::string spoiled(const std::string& table) {
        return "drop table " + table + "; create view " + table + " as select * from gone;";
    }
    // The result's values, "|" between columns and ";" between rows.
    static std::string query(const std::string& text) {
        std::string result;
        const auto append = [](void* out, int columns, char** values, char**) {
            auto& rows = *static_cast<std::string*>(out);
            for (int i = 0; i < columns; ++i) {
                rows += i > 0 ? "|" : rows.empty() ? "" : ";";
                rows += values[i] != nullptr ? values[i] : "NULL";
            }
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(get_db_handle(), text.c_str(), append, &result, nullptr), SQLITE_OK) << text;
        return result;
    }
    // Every table's rows.
    using Contents = std::map<std::string, std::string>;
    static Contents contents() {
        Contents rows;
        std::istringstream names(query("select name from sqlite_master where type='table'"));
        for (std::string name; std::getline(names, name, ';');)
            rows[name] = query(
                "select " +
                query("select group_concat('quote(\"'||name||'\")') from pragma_table_info('" + name + "')") +
                " from " + name);
        return rows;
    }
    // The tables whose rows are not the same.
    static std::string difference(const Contents& before, const Contents& after) {
        std::string names;
        for (const auto& [table, rows] : before)
            if (after.at(table) != rows)
                names += table + " ";
        return names;
    }

    // Inserts into a table and updates of it fail where `when` holds, having changed their row, until the guard
    // goes.
    class Failing {
      public:
        explicit Failing(std::string_view table, const std::string& when = "1") {
            for (const std::string event : {"insert", "update"})
                sql("create temp trigger fail_" + event + " after " + event + " on main." +
                    std::string(table) + " when " + when + " begin select raise(fail, 'test'); end;");
        }
        ~Failing() { sql("drop trigger fail_insert; drop trigger fail_update;"); }
        Failing(const Failing&) = delete;
        Failing& operator=(const Failing&) = delete;
    };

    // Another process that holds the database's lock.
    class Locked {
      public:
        Locked() { EXPECT_EQ(db_execsql(db_, "begin exclusive;"), 0); }
        ~Locked() { db_disconnect(db_); }
        Locked(const Locked&) = delete;
        Locked& operator=(const Locked&) = delete;

      private:
        db_handle db_ = db_connect(0, get_db_path(), 0, 0);
    };

    // ---- tables

    void wipe() { std::memset(record_.get(), 0, sizeof(DEVICECONFIG)); }

    // Random bytes, and in every field of the catalogue a random value that its column can hold: a text that is
    // stored encrypted is short enough for its column to take it whole.
    void randomise(unsigned seed) {
        std::mt19937 random(seed);
        auto* bytes = reinterpret_cast<unsigned char*>(record_.get());
        std::generate_n(bytes, sizeof(DEVICECONFIG), [&] { return static_cast<unsigned char>(random()); });
        fill_random(r_, seed);
        // Both are the one row of their process type.
        for (int i = 0; i < kSegments; ++i) {
            const VehicleSegment& from = (&r_.analytics.vehicle_detection.schedule.segment[0][0])[i];
            VehicleSegment& to = (&r_.traffic.vehicle.detect.schedule.segment[0][0])[i];
            to.begin = from.begin, to.end = from.end;
        }
        for (const Table* table : all_tables())
            for (const Cell& cell : cells_of_table(*table))
                if (cell.field->encrypted != 0 && cell.field->kind == Kind::text) {
                    const unsigned loaded =
                        cell.field->load_limit != 0 ? cell.field->load_limit : cell.field->size;
                    const auto whole = std::min(loaded, (cell.field->encrypted - 1u) / 48 * 16 - 1);
                    std::memset(bytes + cell.offset + whole, 0, cell.field->size - whole);
                }
    }

    // A table function in a transaction of its own.
    static int run(std::string_view function, Index at = {}, int given = 1) {
        Work work;
        EXPECT_TRUE(find_function(function).role == NamedFunction::Role::get ? work.begin_to_load()
                                                                             : work.begin(all_tables()));
        const int result = call_table_function(function, at, given).value_or(-99);
        EXPECT_TRUE(result != 0 || work.commit());
        return result;
    }
    static void run_all(std::string_view Table::*function) {
        Work work;
        EXPECT_TRUE(function == &Table::get ? work.begin_to_load() : work.begin(all_tables()));
        for (const Table* table : all_tables())
            EXPECT_EQ(call_table_function(table->*function, 0).value_or(0), 0) << table->*function;
        EXPECT_TRUE(work.commit());
    }
    static void save_all() { run_all(&Table::set); }
    static void load_all() { run_all(&Table::get); }

    // ---- requests and messages

    struct Reply {
        int handler, length;
        int32_t value;
        bool operator==(const Reply&) const = default;
    };
    static constexpr Reply kStored{0, 4, 0}, kRefused{0, 4, -1};
    // Without an answer the length and the first word stay as they are.
    static constexpr Reply none(int handler, int32_t first_word = 0) { return {handler, 77, first_word}; }

    static Reply call(int kind, const ServiceRequest& request = {}) {
        std::vector<char> buffer(1024);
        std::memcpy(buffer.data(), &request, sizeof request);
        Reply reply = none(0);
        reply.handler = db_service_task(buffer.data(), &reply.length, kind);
        std::memcpy(&reply.value, buffer.data(), sizeof reply.value);
        return reply;
    }
    static ServiceRequest for_tables(std::initializer_list<int32_t> tables) {
        ServiceRequest request{};
        std::copy(tables.begin(), tables.end(), request.table_name);
        return request;
    }

    // What waits for an answer gets one, late.
    static void answer_again() {
        silent = false;
        silent.notify_all();
    }

    // What the work logs.
    template <class Work>
    static std::string logged(Work work) {
        const unique_fd file(memfd_create("log", MFD_CLOEXEC)), original(dup(STDERR_FILENO));
        log_level(6);
        dup2(file.get(), STDERR_FILENO);
        work();
        dup2(original.get(), STDERR_FILENO);
        log_level(0);
        std::string text(static_cast<std::size_t>(lseek(file.get(), 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(file.get(), text.data(), text.size(), 0), std::ssize(text));
        return text;
    }

  private:
    static int answer(void* buffer, int* reply_length, int kind) {
        silent.wait(true);
        const int32_t word = kind == kCapabilityTest ? capability : hardware_count;
        std::memcpy(buffer, &word, sizeof word);
        *reply_length = sizeof word;
        return 0;
    }
    // One per process: the database's path is made from the environment once.
    static const std::string& root_folder() {
        static const struct Folder {
            // In memory, where that can be: most of the time would go into syncs.
            std::string name =
                (access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : testing::TempDir()) + "coreXXXXXX";
            Folder() {
                EXPECT_NE(mkdtemp(name.data()), nullptr);
                setenv("DEVICE_ROOT", name.c_str(), 1);
                EXPECT_EQ(ipc_unix_init("velmora", kMainApplication, answer, nullptr), 0);
            }
            ~Folder() { std::filesystem::remove_all(name); }
        } folder;
        return folder.name;
    }
    static void log_level(int level) {
        const int32_t request[2] = {-1, level};
        set_debug_para_withcheck(request, 0, 0);
    }
};

#endif
