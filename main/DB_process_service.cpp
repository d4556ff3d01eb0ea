#include "DB_process_service.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <span>
#include <vector>

#include "DB_uni_process.h"
#include "all_tables.h"
#include "device_debug.h"
#include "engine.h"
#include "log.h"
#include "registry.h"
#include "request.h"
#include "request_kinds.h"
#include "reset.h"
#include "start.h"
#include "state.h"
#include "store.h"
#include "transaction.h"
#include "versions.h"
#include "well_known.h"
#include "work.h"

namespace {

using namespace dbshell;

constexpr const char* kSourceFile = "main/DB_process_service.c";
constexpr int kNoTable = 255;  // what a request without a buffer asks for
constexpr int kMaxScenes = 10;
constexpr int kMaxSmdTypes = 10;

// A copy of the request, taken before anything is done with it.
struct Request {
    ServiceRequest fields{};
    void* buffer;

    explicit Request(void* data) : buffer(data) {
        for (int32_t& table : fields.table_name)
            table = kNoTable;
        if (data != nullptr)
            std::memcpy(&fields, data, sizeof fields);
        fields.name[kNameLimit] = '\0';
    }
    int table() const { return fields.table_name[0]; }
};

// ------------------------------------------------------------------------------------- groups

// The indexes that a kind hands on to its functions.
struct Indexes {
    Index at;
    int given = 1;
};
Indexes index_arguments(const RequestKind& kind, const ServiceRequest& request) {
    switch (kind.args) {
        case Args::sensor:
            return {request.sensor_no};
        case Args::scene:
            return {request.scene_no};
        case Args::channel_scene:
            return {{request.channel_no, request.scene_no}, 2};
        case Args::smd_channel:
            return {{request.channel_no, request.smd_type}, 2};
        default:
            return {request.channel_no};
    }
}

bool arguments_valid(const RequestKind& kind, const ServiceRequest& r) {
    const std::string function(kind.name);
    const bool channel_valid = r.channel_no >= 0 && r.channel_no < channel_count();
    if (kind.args == Args::channel_scene) {
        if (channel_valid && r.scene_no >= 0 && r.scene_no < kMaxScenes)
            return true;
        DB_LOG_AS(kError, function.c_str(), "param err: chan_no=%d, scene_no=%d\n", r.channel_no, r.scene_no);
        return false;
    }
    if (kind.args == Args::smd_channel && (r.smd_type < 0 || r.smd_type >= kMaxSmdTypes)) {
        DB_LOG_AS(kError, function.c_str(), "input smd_type err:%d\n", r.smd_type);
        return false;
    }
    if (!channel_valid)
        DB_LOG_AS(kError, function.c_str(), "invalid chan_no: %d\n", r.channel_no);
    return channel_valid;
}

bool begin(Work& work, bool exclusive, TableSpan stores, const char* function) {
    if (!exclusive)
        return work.begin(stores);
    if (work.begin_exclusive(stores))
        return true;
    if (work.is_locked_out())
        DB_LOG_AS(kError, function, "try_db_begin_exclusive failed\n");
    return false;
}

int run_functions(Run run, std::initializer_list<const char*> functions, const Indexes& indexes) {
    if (!are_available(functions)) {
        DB_LOG_AS(kError, "db_service_task", "a table of this request kind is not supported\n");
        return -1;
    }
    std::vector<const Table*> stores;
    for (const std::string_view name : functions)
        stores.push_back(find_function(name).table);
    Work work;
    if (!begin(work, run == Run::exclusive, stores, "db_service_task"))
        return -1;
    int failures = 0;
    for (const std::string_view name : functions) {
        failures += call_table_function(name, indexes.at, indexes.given).value_or(-1) != 0;
        if (failures != 0 && (run == Run::until_failure || db_transaction_lost()))
            break;
    }
    return failures == 0 && work.commit() ? 0 : -1;
}

int save_dome_block(const ServiceRequest& request) {
    const DomeBlock* block = find_dome_block(request.name);
    if (block == nullptr) {
        dev_debug_v1(kError, kDatabaseModule, "main/dbshell.c", __LINE__, "save_ipdome_param_single",
                     "save_ipdome_param_single failed\n");
        return -1;
    }
    return run_functions(Run::all, block->functions, {});
}

int run_group(const RequestKind& kind, const ServiceRequest& request) {
    if (kind.validated && !arguments_valid(kind, request))
        return -1;
    if (kind.run == Run::single_table)
        return save_single_table_info(kind.table);
    if (kind.args == Args::name)
        return save_dome_block(request);
    return run_functions(kind.run, kind.functions, index_arguments(kind, request));
}

// ------------------------------------------------------------------------------------- single kinds

int close_database() {
    closing_flag = true;
    db_handle db = get_db_handle();
    if (db == nullptr)
        DB_LOG_AS(kError, "db_service_task", "database is already closed.\n");
    else
        db_close(&db);
    return 0;
}

int refuse_table(const char* function, int table) {
    DB_LOG_AS(kError, function, "Input table_index error:%d\n", table);
    return -1;
}

int get_one_table(int table) {
    const TableEntry* entry = registry_entry(table);
    if (entry == nullptr)
        return refuse_table(__func__, table);
    int result = -1;
    if (entry->get != nullptr) {
        Work work;
        if (!work.begin_to_load())
            return -1;
        result = work.load(*entry);
        if (!work.commit() && result == 0)
            result = -1;
    } else if (table == 0) {
        result = db_get_version(get_db_handle());
        std::printf("\ndb version = %d\n", result);
    }
    return result;
}

int update_one_table(int table) {
    constexpr int kLine = 172;  // clients' log readers look for it
    std::printf("EN_UPDATE_ONE_TABLE_RECORD, --%d---%d\n", table, kLine);
    const TableEntry* entry = registry_entry(table);
    if (entry == nullptr)
        return refuse_table(__func__, table);
    if (entry->set == nullptr) {
        std::printf("EN_UPDATE_ONE_TABLE_RECORD, tables_fun[%d].set is null\n", table);
        return -1;
    }
    const Table* stores = table_by_number(table);
    Work work;
    if (!work.begin({&stores, 1}))
        return -1;
    const int result = work.store_apart(*entry);
    return work.commit() || result != 0 ? result : -1;
}

int update_table_list(const int32_t (&tables)[kTableListSize]) {
    const std::span list(std::begin(tables), std::find(std::begin(tables), std::end(tables), kTableListEnd));
    std::vector<const Table*> stores;
    for (const int table : list)
        if (const Table* t = table_by_number(table))
            stores.push_back(t);
    Work work;
    if (!work.begin(stores))
        return -1;
    int result = 0;
    for (const int table : list) {
        const TableEntry* entry = registry_entry(table);
        if (entry == nullptr) {
            result |= refuse_table(__func__, table);
        } else if (entry->set == nullptr) {
            std::printf("EN_UPDATE_ONE_TABLE_RECORD, tables_fun[%d].set is null\n", table);
        } else {
            result |= work.store_apart(*entry);
            if (db_transaction_lost())
                break;
        }
    }
    return work.commit() || result != 0 ? result : -1;
}

// Between a begin and a commit, whatever the function's result.
template <class Begin, class Function>
int committed(Begin begin, Function function) {
    if (begin() != 0)
        return -1;
    const int result = function();
    return db_commit() == 0 ? result : -1;
}

void redirect_output(const void* path) {
    DB_LOG_AS(kInfo, "db_service_task", "receive REDIRECTION_OUTPUT_OPEN\n");
    int output = -1;
    int error = -1;
    if (redirection_output(path, &output, &error) == -1)
        DB_LOG_AS(kError, "db_service_task", "redirection_output failure.\n");
    DB_LOG_AS(kInfo, "db_service_task", "receive REDIRECTION_OUTPUT_OPEN\n");
    std::puts("printf receive REDIRECTION_OUTPUT_OPEN");
}

void cancel_redirection() {
    DB_LOG_AS(kInfo, "db_service_task", "receive REDIRECTION_OUTPUT_CLOSE\n");
    int output = -1;
    int error = -1;
    if (rdirection_output_cancle(&output, &error) == -1)
        DB_LOG_AS(kError, "db_service_task", "rdirection_output_cancle failure.\n");
}

void print_build_info() {
    char text[1024] = {};
    if (get_build_info(text, sizeof text) != nullptr)
        std::printf("svn info:%s\n", text);
}

// What the handler does with a request: the result that is replied, or the handler's own result when
// there is no reply.
struct Outcome {
    std::optional<int32_t> reply;
    int handler_result = 1;
};

// True for the kinds that cannot be answered without the database.
bool needs_database(int load_type) {
    switch (load_type) {
        case REDIRECTION_OUTPUT_OPEN:
        case REDIRECTION_OUTPUT_CLOSE:
        case BROADCAST_SET_DEBUG:
        case EN_CLOSE_DATABASE:
        case EN_GET_ONE_COLUMN_RECORD:
        case EN_GET_BUILD_INFO:
        case EN_CHECK_DEVCFG_THE_SAME:
        case EN_GET_CURRENT_DB_VERSION:
        case EN_UPDATE_ONE_COLUMN_RECORD:
            return false;
        default:
            return find_request_kind(load_type) != nullptr;
    }
}

// True for the kinds that put the record, or what belongs to it, into the database.
bool stores(int load_type) {
    return load_type == EN_SET_DB_VERSION ||
           (load_type >= EN_UPDATE_ONE_TABLE_RECORD && load_type <= kLastReplyKind);
}

// Before start-up has done with the database nobody may open, make or ask it.  Later, a record that was not
// loaded must not replace what is stored.  Nor may the request that loads it at last: what its sender wanted
// stored is gone.
bool is_refused(int load_type) {
    if (!needs_database(load_type))
        return false;
    if (!database_started) {
        DB_LOG_AS(kError, "db_service_task", "load_type(0x%x) before the database is started: refused\n",
                  static_cast<unsigned>(load_type));
        return true;
    }
    if (!was_load_pending() || !stores(load_type))
        return false;
    DB_LOG_AS(kError, "db_service_task", "the database had not been loaded yet: nothing is stored\n");
    return true;
}

Outcome refusal(int load_type) {
    if (load_type == EN_GET_ALL_RECORD)
        return {};
    return {-1};
}

Outcome run(int load_type, const Request& request) {
    const int table = request.table();
    if (is_refused(load_type))
        return refusal(load_type);
    switch (load_type) {
        case REDIRECTION_OUTPUT_OPEN:
            redirect_output(request.buffer);
            return {};
        case REDIRECTION_OUTPUT_CLOSE:
            cancel_redirection();
            return {};
        case BROADCAST_SET_DEBUG:
            DB_LOG_AS(kInfo, "db_service_task", "receive BROADCAST_SET_DEBUG\n");
            if (set_debug_para_withcheck(request.buffer, 0, 0) != 0)
                DB_LOG_AS(kError, "db_service_task", "set netprocess debug info err.\n");
            return {};
        case EN_CLOSE_DATABASE:
            return {close_database()};
        case EN_GET_ONE_COLUMN_RECORD:
            std::printf("EN_GET_ONE_COLUMN_RECORD, --%d\n", table);
            return {};
        case EN_GET_ONE_TABLE_RECORD:
            return {get_one_table(table)};
        case EN_GET_ALL_RECORD:
            std::puts("EN_GET_ALL_RECORD----");
            static_cast<void>(get_alldata_from_db());  // there is no reply; what failed is logged
            return {};
        case EN_GET_BUILD_INFO:
            print_build_info();
            return {.reply = {}, .handler_result = -1};
        case EN_RESET_ALL_FACTORY_PARA: {
            const int result = set_system_default_param(kResetAll);
            std::printf("EN_RESET_ALL_FACTORY_PARA ret = %d\n", result);
            return {result};
        }
        case EN_RESET_FACTORY_PARA_MODE2:
            return {set_system_default_param(kResetKeepingAccess)};
        case EN_SET_DB_VERSION:
            std::puts("EN_SET_DB_VERSION----");
            return {committed(db_begin, [] { return db_update_version(kCurrentVersion, get_db_handle()); })};
        case EN_CHECK_DEVCFG_THE_SAME:
            std::puts("EN_CHECK_DEVCFG_THE_SAME----");
            return {request.fields.channel_no == static_cast<int32_t>(sizeof(DEVICECONFIG)) ? 0 : -1};
        case EN_GET_CURRENT_DB_VERSION:
            std::puts("EN_GET_CURRENT_DB_VERSION----");
            return {kCurrentVersion};
        case EN_GET_OLD_DB_VERSION:
            std::puts("EN_GET_OLD_DB_VERSION----");
            return {committed(db_begin_to_load, [] { return db_get_old_version(get_db_handle()); })};
        case EN_UPDATE_ONE_COLUMN_RECORD:
            std::printf("EN_UPDATE_ONE_COLUMN_RECORD, --%d\n", table);
            return {-1};
        case EN_UPDATE_ONE_TABLE_RECORD:
            return {update_one_table(table)};
        case EN_UPDATE_TABLE_LIST:
            return {update_table_list(request.fields.table_name)};
        case EN_UPDATE_ALL_RECORD:
            std::puts("EN_UPDATE_ALL_RECORD---");
            return {set_alldata_to_db()};
        default:
            break;
    }
    const RequestKind* kind = find_request_kind(load_type);
    if (kind != nullptr && kind->run != Run::special)
        return {run_group(*kind, request.fields)};
    DB_LOG_AS(kError, "db_service_task", "load_type(0x%x) error--\n", static_cast<unsigned>(load_type));
    if (load_type >= kFirstReplyKind && load_type <= kLastReplyKind)
        return {-1};
    return {};
}

}  // namespace

int save_single_table_info(int table) {
    if (table < 1 || table >= kTableNumbers)
        return refuse_table(__func__, table);
    const TableEntry& entry = tables_fun[table];
    if (entry.set == nullptr)
        return -1;
    const Table* stores = table_by_number(table);
    Work work;
    return begin(work, true, {&stores, 1}, __func__) && entry.set(tables_fun, kSaveFlag, table) == 0 &&
                   work.commit()
               ? 0
               : -1;
}

int db_service_task(void* buffer, int* reply_length, int load_type) {
    const Request request(buffer);
    const ServiceRequest& r = request.fields;
    std::printf("This is database process,  table_name = %d,load_type = 0x%x\n", request.table(),
                static_cast<unsigned>(load_type));
    std::printf("channel_no = %d, sensor_no = %d, smd_type = %d, scene_no = %d\n", r.channel_no, r.sensor_no,
                r.smd_type, r.scene_no);
    const DatabaseLock lock;
    const DeviceQueries queries;
    Outcome outcome;
    try {
        outcome = run(load_type, request);
    } catch (const std::exception& e) {
        DB_LOG(kError, "load_type(0x%x) failed: %s\n", static_cast<unsigned>(load_type), e.what());
        outcome = refusal(load_type);
    }
    if (!outcome.reply || buffer == nullptr || reply_length == nullptr)
        return outcome.handler_result;
    std::memcpy(buffer, &*outcome.reply, sizeof *outcome.reply);
    *reply_length = sizeof *outcome.reply;
    return 0;
}
