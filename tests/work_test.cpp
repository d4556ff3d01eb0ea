// The encryption version word and the texts that it reads never part, whatever the record holds, whatever fails.
#include "core_fixture.h"

namespace {

using testing::HasSubstr;

constexpr uint32_t kDefault = 0x01000100, kOther = 0x01000000;  // their keys differ

class Version : public Core {
  protected:
    uint32_t& version_ = r_.sec_lock_auth.db_enc_version;

    static std::string stored() { return query("select db_enc_version from sec_lock_auth_db_info"); }

    // The whole configuration with a text in some of its encrypted columns, stored under the default word.
    void store_texts() {
        fresh_database();
        wipe();
        std::strcpy(r_.network.pppoe.username, "user");
        std::strcpy(r_.users.sec_user[0].username, "admin");
        std::strcpy(r_.event.sd_card.password, "pass");
        EXPECT_EQ(call(EN_SET_DB_VERSION), kStored);
        EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kStored);
        EXPECT_EQ(version_, kDefault);
    }
    // What a start finds of them.
    std::string texts_after_start() {
        wipe();
        EXPECT_EQ(init_database(), 0);
        return r_.network.pppoe.username + std::string(" ") + r_.users.sec_user[0].username + " " +
               r_.event.sd_card.password;
    }
    static constexpr const char* kTexts = "user admin pass";
};

// The version word that the first encrypted text creates is stored with that text, or goes with it.
TEST_F(Version, SharesTheFateOfItsTexts) {
    std::strcpy(r_.network.pppoe.username, "user");
    for (const int kind : {EN_SAVE_PPPOE_PARAM, EN_UPDATE_TABLE_LIST, EN_UPDATE_ONE_TABLE_RECORD}) {
        const Failing failing("pppoe_config_info", "new.username <> 'admin'");
        EXPECT_EQ(call(kind, for_tables({48, -1})), kRefused);
        EXPECT_EQ(version_, 0u);
        EXPECT_EQ(stored(), "");
    }
    {
        const Failing failing("sec_lock_auth_db_info");
        EXPECT_EQ(call(EN_SAVE_PPPOE_PARAM), kRefused);
        EXPECT_EQ(version_, 0u);
        EXPECT_EQ(query("select username from pppoe_config_info"), "");
    }
    {
        const Failing failing("chn_info");
        EXPECT_EQ(call(EN_UPDATE_TABLE_LIST, for_tables({48, 3, -1})), kRefused);
        EXPECT_EQ(version_, kDefault);
        EXPECT_EQ(stored(), std::to_string(kDefault));
    }
    std::strcpy(r_.network.pppoe.username, "other");
    const Failing failing("pppoe_config_info");
    EXPECT_EQ(call(EN_SAVE_PPPOE_PARAM), kRefused);
    EXPECT_EQ(version_, kDefault);  // the texts in the database need it
}

TEST_F(Version, RecordTakesTheDatabasesWordOrBringsAllTextsUnderItsOwn) {
    constexpr struct {
        int kind, table;
        bool stores_version;
    } requests[] = {
        {EN_SAVE_SEC_LOCK_AUTH_DB_INFO, 0, true}, {EN_UPDATE_ONE_TABLE_RECORD, 187, true},
        {EN_UPDATE_TABLE_LIST, 187, true},        {EN_UPDATE_ALL_RECORD, 0, true},
        {EN_SAVE_PPPOE_PARAM, 0, false},          {EN_UPDATE_ONE_TABLE_RECORD, 231, false},
        {EN_UPDATE_TABLE_LIST, 188, false},       {EN_SAVE_SD_CARD_LOCK_CONFIG, 0, false},
        {EN_GET_ONE_TABLE_RECORD, 48, false},     {EN_GET_ALL_RECORD, 0, false},
    };
    for (const uint32_t recorded : {0u, kOther})
        for (const auto& request : requests) {
            SCOPED_TRACE(std::to_string(request.kind) + " " + std::to_string(request.table) + " " +
                         std::to_string(recorded));
            store_texts();
            version_ = recorded;
            const bool kept = recorded == 0 || !request.stores_version;
            const std::string log = logged([&] { call(request.kind, for_tables({request.table, -1})); });
            EXPECT_EQ(log.find("is not the database's") != log.npos, recorded != 0 && kept);
            EXPECT_EQ(version_, kept ? kDefault : recorded);
            EXPECT_EQ(stored(), std::to_string(version_));
            EXPECT_STREQ(r_.network.pppoe.username, "user");
            EXPECT_EQ(texts_after_start(), kTexts);
        }
}

TEST_F(Version, FailedRequestLeavesWordAndTexts) {
    store_texts();
    const Contents before = contents();
    for (const char* table : {"pppoe_config_info", "sec_user_mana_info", "sec_lock_auth_db_info"})
        for (const int kind : {EN_SAVE_SEC_LOCK_AUTH_DB_INFO, EN_UPDATE_ONE_TABLE_RECORD,
                               EN_UPDATE_TABLE_LIST, EN_UPDATE_ALL_RECORD}) {
            const Failing failing(table);
            version_ = kOther;
            EXPECT_EQ(call(kind, for_tables({187, 48, -1})), kRefused) << table << kind;
            EXPECT_EQ(difference(before, contents()), "");
        }
    EXPECT_THAT(operation_log(), HasSubstr("] tables_fun[48].set failed.Need rollback\n"));
    EXPECT_EQ(texts_after_start(), kTexts);
}

TEST_F(Version, DatabaseWithoutAWordTakesTheRecordsWithItsFirstText) {
    for (const char* change : {"delete from sec_lock_auth_db_info", "drop table sec_lock_auth_db_info",
                               "update sec_lock_auth_db_info set db_enc_version = null",
                               "update sec_lock_auth_db_info set db_enc_version = 0"}) {
        SCOPED_TRACE(change);
        store_texts();
        sql(change);
        sql("update pppoe_config_info set username = 'clear'");
        version_ = kOther;
        EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({48})), kStored);
        EXPECT_STREQ(r_.network.pppoe.username, "clear");
        EXPECT_EQ(version_, std::strstr(change, "= 0") != nullptr ? 0 : kOther);
        if (std::strstr(change, "drop") != nullptr)
            continue;
        EXPECT_EQ(stored().find(std::to_string(kOther)), std::string::npos);
        EXPECT_EQ(call(EN_SAVE_PPPOE_PARAM), kStored);
        EXPECT_EQ(stored(), std::to_string(version_));
        EXPECT_NE(version_, 0u);
        std::memset(&r_, 0, sizeof r_);
        EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({48})), kStored);
        EXPECT_STREQ(r_.network.pppoe.username, "clear");
    }
    // Made from a record that has one, it has that.
    close_database();
    std::filesystem::remove(get_db_path());
    version_ = 0x00000100;
    EXPECT_EQ(init_database(), 0);
    EXPECT_EQ(stored(), std::to_string(0x00000100));
}

// A word that is lost altogether is most likely the one that this system makes.
TEST_F(Version, TextsWithoutAnyWordAreReadUnderTheDefault) {
    store_texts();
    for (const char* change : {"delete from sec_lock_auth_db_info", "drop table sec_lock_auth_db_info",
                               "create table sec_lock_auth_db_info(idx integer primary key, db_enc_version)",
                               "insert into sec_lock_auth_db_info values(1, 'abc')"}) {
        sql(change);
        std::memset(&r_, 0, sizeof r_);
        EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({48})), kStored);
        EXPECT_STREQ(r_.network.pppoe.username, "user") << change;
        EXPECT_EQ(version_, kDefault);
    }
}

// Another process writes its own word while a request is at work.
TEST_F(Version, OneWordForTheWholeRequest) {
    const auto interfere = [](sqlite3_context* context, int, sqlite3_value**) {
        *static_cast<uint32_t*>(sqlite3_user_data(context)) = kOther;
    };
    for (const int kind : {EN_UPDATE_ALL_RECORD, EN_UPDATE_TABLE_LIST, EN_SAVE_PPPOE_PARAM}) {
        store_texts();
        sqlite3_create_function(get_db_handle(), "interfere", 0, SQLITE_UTF8, &version_, interfere, nullptr,
                                nullptr);
        for (const char* table : {"chn_info", "pppoe_config_info"})
            sql("create temp trigger write_" + std::string(table) + " after update on main." + table +
                " begin select interfere(); end; create temp trigger add_" + table +
                " after insert on main." + table + " begin select interfere(); end;");
        std::strcpy(r_.channel[0].name, "gate");
        std::strcpy(r_.network.pppoe.username, "other");
        std::strcpy(r_.network.pppoe.passwd, "second text");
        EXPECT_EQ(call(kind, for_tables({3, 48, 187, -1})), kStored);
        EXPECT_EQ(version_, kOther);
        EXPECT_EQ(stored(), std::to_string(kDefault));
        EXPECT_EQ(texts_after_start(), "other admin pass");
        EXPECT_STREQ(r_.network.pppoe.passwd, "second text");
    }
}

TEST_F(Version, NothingEncryptedIsMovedWhileTheWordCannotBeRead) {
    store_texts();
    const Contents before = contents();
    const auto unreadable = [](void*, int action, const char* table, const char*, const char*, const char*) {
        const bool denied = action == SQLITE_READ && table == std::string_view("sec_lock_auth_db_info");
        return denied ? SQLITE_DENY : SQLITE_OK;
    };
    sqlite3_set_authorizer(get_db_handle(), unreadable, nullptr);
    std::strcpy(r_.network.pppoe.username, "other");
    std::strcpy(r_.channel[0].name, "gate");
    for (const int table : {48, 187})
        EXPECT_EQ(call(EN_UPDATE_TABLE_LIST, for_tables({3, table, -1})), kRefused);
    EXPECT_EQ(call(EN_UPDATE_ALL_RECORD), kRefused);
    EXPECT_EQ(call(EN_GET_ONE_TABLE_RECORD, for_tables({48})), kRefused);
    EXPECT_STREQ(r_.network.pppoe.username, "other");
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kStored);
    r_.channel[0].name[0] = '\0';
    call(EN_GET_ALL_RECORD);
    EXPECT_STREQ(r_.channel[0].name, "gate");
    sqlite3_set_authorizer(get_db_handle(), nullptr, nullptr);
    EXPECT_EQ(difference(before, contents()), "chn_info ");
}

}  // namespace
