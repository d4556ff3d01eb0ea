// Requests: what each kind replies and stores, and what is left of one that fails.
#include "core_fixture.h"

namespace {

using testing::HasSubstr;

class Service : public Core {
  protected:
    static bool is_reset(int kind) {
        return kind == EN_RESET_ALL_FACTORY_PARA || kind == EN_RESET_FACTORY_PARA_MODE2;
    }
    static std::ptrdiff_t operation_log_lines() {
        const std::string log = operation_log();
        return std::count(log.begin() + std::min<std::ptrdiff_t>(70, std::ssize(log)), log.end(), '\n');
    }
};

TEST_F(Service, EveryKindOfTheRangeReplies) {
    randomise(1);
    ServiceRequest request{};
    std::strcpy(request.name, "no block");
    for (int number = EN_SAVE_EVENT_PARAM; number <= kLastReplyKind; ++number) {
        const RequestKind* kind = find_request_kind(number);
        const bool works = kind != nullptr && kind->args != Args::name && is_available(*kind);
        EXPECT_EQ(call(number, request), works ? kStored : kRefused) << std::hex << number;
        EXPECT_TRUE(sqlite3_get_autocommit(get_db_handle())) << std::hex << number;
    }
    // Each has stored all of its tables.
    const int changes = sqlite3_total_changes(get_db_handle());
    for (const RequestKind& kind : request_kinds()) {
        std::vector<std::string_view> functions(kind.functions.begin(), kind.functions.end());
        if (is_available(kind) && kind.run == Run::single_table)
            functions.push_back(table_by_number(kind.table)->set);
        for (const std::string_view function : functions) {
            EXPECT_EQ(run(function, {0, 0}, 2), 0);
            EXPECT_EQ(sqlite3_total_changes(get_db_handle()), changes) << kind.name << function;
        }
    }
}

TEST_F(Service, SpecialKinds) {
    ServiceRequest same{}, other{};
    same.channel_no = 887608;
    other.channel_no = 887609;
    const struct {
        int kind;
        ServiceRequest request;
        Reply reply;
    } cases[] = {
        {EN_GET_ONE_TABLE_RECORD, for_tables({0}), {0, 4, -2}},  // no version yet
        {EN_SET_DB_VERSION, {}, kStored},
        {EN_GET_ONE_TABLE_RECORD, for_tables({0}), {0, 4, 302080}},
        {EN_GET_CURRENT_DB_VERSION, {}, {0, 4, 302080}},
        {EN_GET_OLD_DB_VERSION, {}, {0, 4, -2}},
        {EN_CHECK_DEVCFG_THE_SAME, same, kStored},
        {EN_CHECK_DEVCFG_THE_SAME, other, kRefused},
        {EN_UPDATE_ONE_COLUMN_RECORD, for_tables({3}), kRefused},
        {EN_GET_ONE_COLUMN_RECORD, for_tables({3}), none(1, 3)},
        {EN_GET_ALL_RECORD, {}, none(1)},
        {EN_GET_BUILD_INFO, {}, none(-1)},
        {BROADCAST_SET_DEBUG, for_tables({-1, 0}), none(1, -1)},
        {REDIRECTION_OUTPUT_CLOSE, {}, none(1)},
        {EN_GET_ONE_TABLE_RECORD, for_tables({3}), kStored},
        {EN_GET_ONE_TABLE_RECORD, for_tables({34}), kRefused},  // no such table
        {EN_UPDATE_ONE_TABLE_RECORD, for_tables({3}), kStored},
        {EN_UPDATE_ONE_TABLE_RECORD, for_tables({0}), kRefused},
        {EN_UPDATE_ONE_TABLE_RECORD, for_tables({9}), kRefused},  // it is only loaded
        {EN_SAVE_IM_POLYGON, {}, kRefused},
        {EN_UPDATE_ALL_RECORD, {}, kStored},
        {0x60006, for_tables({5}), none(1, 5)},
        {0x6001B, {}, none(1)},
        {0x600C7, {}, none(1)},
        {-1, {}, none(1)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(call(c.kind, c.request), c.reply) << std::hex << c.kind << " " << c.request.table_name[0];
    for (const int table : {-1, 254, 255, INT_MAX, INT_MIN})
        for (const int kind : {EN_GET_ONE_TABLE_RECORD, EN_UPDATE_ONE_TABLE_RECORD})
            EXPECT_EQ(call(kind, for_tables({table})), kRefused) << table;
    EXPECT_EQ(save_single_table_info(0), -1);
    EXPECT_EQ(save_single_table_info(254), -1);
    EXPECT_THAT(logged([] { call(0x61099); }), HasSubstr("load_type(0x61099) error--\n"));
}

TEST_F(Service, RequestWithoutABufferHasNoReply) {
    for (const RequestKind& kind : request_kinds()) {
        if (get_db_handle() == nullptr)  // one of the kinds closes it
            set_db_handle(db_open(get_db_path()));
        int length = 77;
        EXPECT_NE(db_service_task(nullptr, &length, kind.number), 0) << kind.name;
        EXPECT_EQ(length, 77) << kind.name;
    }
}

TEST_F(Service, IndexOutOfRangeIsRefusedAndChangesNothing) {
    randomise(1);
    const FileState state = file_state();
    for (const int channels : {1, 100}) {  // 100: more than the record has room for
        maxEnChanNo = channels;
        for (const RequestKind& kind : request_kinds())
            for (const int index : {-1, INT_MAX, INT_MIN, kind.args == Args::scene ? 64 : 1}) {
                if (kind.args < Args::channel || kind.args > Args::scene || kind.run == Run::special)
                    continue;
                ServiceRequest request{};
                request.channel_no = request.sensor_no = request.scene_no = request.smd_type = index;
                EXPECT_EQ(call(kind.number, request), kRefused) << kind.name << index;
            }
    }
    ServiceRequest request{};
    for (const int index : {10, -1}) {
        request.scene_no = request.smd_type = index;
        for (const int kind : {EN_SAVE_BEHAVIOR_SCENE, EN_SAVE_SMD_PARAM})
            EXPECT_EQ(call(kind, request), kRefused) << std::hex << kind;
    }
    EXPECT_TRUE(file_state() == state);
}

// ------------------------------------------------------------------------------------- failures

TEST_F(Service, FailureAnywhereRollsTheGroupBack) {
    randomise(1);
    save_all();
    randomise(2);
    const FileState state = file_state();
    for (const RequestKind& kind : request_kinds()) {
        if (kind.run == Run::special || kind.args == Args::name || !is_available(kind))
            continue;
        std::vector<const Table*> tables;
        if (kind.run == Run::single_table)
            tables.push_back(table_by_number(kind.table));
        for (const char* function : kind.functions)
            tables.push_back(find_function(function).table);
        for (const Table* table : tables) {
            const Failing failing(table->name);
            EXPECT_EQ(call(kind.number), kRefused) << kind.name << table->name;
            EXPECT_TRUE(file_state() == state) << kind.name << table->name;
        }
    }
}

TEST_F(Service, FailedTableOfAListKeepsItsRowsAndTheOthersAreStored) {
    randomise(1);
    save_all();
    const Contents before = contents();
    const auto changed = [&] { return difference(before, contents()); };
    randomise(2);
    const Failing failing("ipaddr_list", "new.idx = 9");
    constexpr Reply kWriteRefused{0, 4, static_cast<int>(Cause::write)};
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({35})), kWriteRefused);
    EXPECT_EQ(changed(), "");
    EXPECT_EQ(call(EN_UPDATE_TABLE_LIST, for_tables({3, 35, 5, -1, 6})), kWriteRefused);
    EXPECT_EQ(changed(), "audio_param_info chn_info ");
    // A number outside the registry fails; one without a set function is passed over.
    EXPECT_EQ(call(EN_UPDATE_TABLE_LIST, for_tables({0, 254, 131, -2, 132})), kRefused);
    EXPECT_EQ(changed(), "audio_param_info chn_info isp_day_param_config isp_time_config ");
    EXPECT_EQ(call(EN_UPDATE_TABLE_LIST, for_tables({9, 0, 2, 23, 24, 25, 26, 27, 28, 29})), kStored);
    const std::string all_ten = changed();
    EXPECT_EQ(std::count(all_ten.begin(), all_ten.end(), ' '), 12);
    EXPECT_EQ(call(EN_UPDATE_TABLE_LIST, for_tables({-1, 7, 7, 7, 7, 7, 7, 7, 7, 7})), kStored);
    EXPECT_EQ(changed(), all_ten);
}

// What begins, keeps and undoes may fail itself: no request says that it did what was lost, nothing half done is
// kept, and the next request works.
TEST_F(Service, FailingTransactionStatements) {
    randomise(1);
    save_all();
    int volume = 0;
    using Denied = std::pair<int, std::string>;
    const auto deny = [](void* denied, int action, const char* operation, const char*, const char*,
                         const char*) {
        const auto* d = static_cast<const Denied*>(denied);
        return action == d->first && operation == d->second ? SQLITE_DENY : SQLITE_OK;
    };
    for (const auto& [denied, kind] : {std::pair{Denied{SQLITE_SAVEPOINT, "BEGIN"}, EN_UPDATE_TABLE_LIST},
                                       {{SQLITE_SAVEPOINT, "RELEASE"}, EN_UPDATE_TABLE_LIST},
                                       {{SQLITE_SAVEPOINT, "ROLLBACK"}, EN_UPDATE_TABLE_LIST},
                                       {{SQLITE_TRANSACTION, "COMMIT"}, EN_UPDATE_ONE_TABLE_RECORD},
                                       {{SQLITE_TRANSACTION, "COMMIT"}, EN_GET_ONE_TABLE_RECORD},
                                       {{SQLITE_TRANSACTION, "ROLLBACK"}, EN_SAVE_NETWORK_PARAM}}) {
        SCOPED_TRACE(denied.second + std::to_string(kind));
        const Contents before = contents();
        randomise(2);
        {
            const Failing failing("ipaddr_list", "new.idx = 9");
            Denied copy = denied;
            sqlite3_set_authorizer(get_db_handle(), deny, &copy);
            EXPECT_LT(call(kind, for_tables({3, 35, -1})).value, 0);
            sqlite3_set_authorizer(get_db_handle(), nullptr, nullptr);
        }
        r_.encoding.audio_param.speak_volume = ++volume;
        EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({5})), kStored);
        EXPECT_EQ(difference(before, contents()), "audio_param_info ");
        EXPECT_TRUE(sqlite3_get_autocommit(get_db_handle()));
    }
}

TEST_F(Service, FailedFullSaveStoresNothingAndIsRecorded) {
    randomise(1);
    const FileState state = file_state();
    const int pages = std::stoi(query("pragma page_count"));
    for (const int room : {-1, 0, 1}) {  // pages on the disk; -1: enough, but a table fails
        std::filesystem::remove(path("db_op_info.log"));
        query("pragma max_page_count = " + std::to_string(room < 0 ? 100000 : pages + room));
        {
            const Failing failing("trermal_image_table", room < 0 ? "1" : "0");
            EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused);
        }
        EXPECT_EQ(operation_log_lines(), 1);
        EXPECT_THAT(operation_log(),
                    HasSubstr(room < 0 ? "] tables_fun[30].set failed.Need rollback\n" : "Need"));
        EXPECT_EQ(room < 0 ? kRefused : call(EN_SAVE_NETWORK_PARAM), kRefused);
        EXPECT_EQ(room < 0 ? kRefused : call(EN_UPDATE_TABLE_LIST, for_tables({58, 3, 5, 6, -1})), kRefused);
        EXPECT_TRUE(sqlite3_get_autocommit(get_db_handle()));
        EXPECT_EQ(check_inactive_db_integrity(get_db_path()), 0);
        EXPECT_TRUE(file_state() == state) << room;
    }
    query("pragma max_page_count = 100000");
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
}

TEST_F(Service, LockedDatabase) {
    randomise(1);
    const FileState state = file_state();
    auto locked = std::make_unique<Locked>();
    for (const int kind : {EN_SAVE_CHANNEL_PARAM, EN_UPDATE_ALL_RECORD, EN_UPDATE_ONE_TABLE_RECORD,
                           EN_UPDATE_TABLE_LIST, EN_SET_DB_VERSION, EN_GET_ONE_TABLE_RECORD})
        EXPECT_EQ(call(kind, for_tables({3, 5, -1})), kRefused) << std::hex << kind;
    EXPECT_EQ(pauses, 0);
    EXPECT_THAT(logged([] { EXPECT_EQ(call(EN_SAVE_WIFI_MODE_CONFIG), kRefused); }),
                HasSubstr("try_db_begin_exclusive failed\n"));
    EXPECT_EQ(pauses, 6);
    EXPECT_TRUE(file_state() == state);

    on_pause = [&] { pauses == 8 ? locked.reset() : void(); };
    EXPECT_EQ(call(EN_SAVE_WIFI_MODE_CONFIG), kStored);
    EXPECT_EQ(pauses, 8);
}

// Before start-up has the database, and behind its end, it is neither touched nor made.
TEST_F(Service, RequestsWithoutTheDatabase) {
    ServiceRequest same{};
    same.channel_no = 887608;
    const auto expect_refusals = [&](bool there) {
        if (!there)
            std::filesystem::remove(get_db_path());
        const std::string before = content(get_db_path());
        for (const RequestKind& kind : request_kinds())
            if (kind.number == EN_SET_DB_VERSION || kind.number == EN_GET_ONE_TABLE_RECORD ||
                (kind.number >= EN_GET_OLD_DB_VERSION && !(closing_flag && is_reset(kind.number)))) {
                EXPECT_EQ(call(kind.number, for_tables({3, -1})), kRefused) << kind.name;
            }
        EXPECT_EQ(call(EN_GET_ALL_RECORD), none(1));
        EXPECT_EQ(call(EN_GET_BUILD_INFO), none(-1));
        EXPECT_EQ(call(BROADCAST_SET_DEBUG, for_tables({-1, 0})), none(1, -1));
        EXPECT_EQ(call(EN_GET_CURRENT_DB_VERSION), (Reply{0, 4, 302080}));
        EXPECT_EQ(call(EN_CHECK_DEVCFG_THE_SAME, same), kStored);
        EXPECT_EQ(std::filesystem::exists(get_db_path()), there);
        EXPECT_EQ(content(get_db_path()), before);
        EXPECT_EQ(get_db_handle(), nullptr);
    };
    EXPECT_EQ(call(EN_CLOSE_DATABASE), kStored);
    EXPECT_THAT(logged([] { EXPECT_EQ(call(EN_CLOSE_DATABASE), kStored); }),
                HasSubstr("database is already closed.\n"));
    expect_refusals(true);
    closing_flag = database_started = false;
    expect_refusals(true);
    EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({0})), kRefused);
    expect_refusals(false);
    EXPECT_EQ(call(EN_CLOSE_DATABASE), kStored);  // and start-up keeps to it
    EXPECT_EQ(init_database(), -1);
    expect_refusals(false);
}

}  // namespace
