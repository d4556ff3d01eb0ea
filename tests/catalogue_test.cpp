// Every table of the catalogue between the record and the database, and the readers of its texts.
#include "core_fixture.h"

namespace {

using testing::HasSubstr;

class Catalogue : public Core {};

// ------------------------------------------------------------------------------------- sweeps

TEST_F(Catalogue, RandomRecordSurvivesSaveWipeAndLoad) {
    for (unsigned seed = 1; seed <= 2; ++seed) {
        SCOPED_TRACE(seed);
        fresh_database();
        randomise(seed);
        save_all();
        const Contents saved = contents();
        const auto original = std::make_unique<DEVICECONFIG>(r_);
        wipe();
        load_all();
        for (const Table* table : all_tables())
            for (const Cell& cell : cells_of_table(*table))  // users are packed
                EXPECT_TRUE(table->save_body != nullptr || cell_text(*original, cell) == cell_text(r_, cell))
                    << address_of(cell);
        fresh_database();
        save_all();
        EXPECT_EQ(difference(saved, contents()), "");
    }
}

// A value that two columns store is one that another value's place was taken by.
TEST_F(Catalogue, EveryColumnHasAValueOfItsOwn) {
    for (const Table* table : all_tables()) {
        std::set<std::size_t> taken;
        for (const Cell& cell : cells_of_table(*table)) {
            static constexpr ListItem kWhole[] = {{0, Kind::block}};
            const TextCodec* codec = cell.field->codec;
            for (std::size_t g = 0; g < (codec != nullptr ? codec->groups : 1); ++g)
                for (const ListItem& item : codec != nullptr ? codec->group : std::span(kWhole))
                    EXPECT_TRUE(
                        taken.insert(cell.offset + g * (codec ? codec->group_stride : 0) + item.offset)
                            .second ||
                        cell.field->name == "am_pm_flag")
                        << address_of(cell);
        }
    }
}

TEST_F(Catalogue, UnchangedRecordIsNotWrittenAgain) {
    capability = 1;
    randomise(4);
    save_all();
    const FileState state = file_state();
    const int changes = sqlite3_total_changes(get_db_handle());
    for (const Table* table : all_tables()) {
        EXPECT_TRUE(table->set.empty() || run(table->set) == 0) << table->set;
        EXPECT_EQ(sqlite3_total_changes(get_db_handle()), changes) << table->set;
        EXPECT_TRUE(file_state() == state) << table->set;
    }
    EXPECT_EQ(set_alldata_to_db(), 0);
    EXPECT_EQ(sqlite3_total_changes(get_db_handle()), changes);
    EXPECT_TRUE(file_state() == state);
}

TEST_F(Catalogue, EmptyTablesAndNullColumnsLeaveTheRecordAlone) {
    randomise(5);
    const auto original = std::make_unique<DEVICECONFIG>(r_);
    load_all();
    EXPECT_EQ(std::memcmp(&r_, original.get(), sizeof r_), 0);

    // The one column that says something by its absence.
    sql("insert into chn_info(chn_index) values(1);");
    EXPECT_EQ(run("db_get_chn_info"), 0);
    original->channel[0].osd_size[0] = original->channel[0].osd_size[1] = 255;
    for (const Table* table : all_tables()) {
        std::string columns, values;
        for (const KeyColumn& key : table->keys) {
            columns += (columns.empty() ? "" : ",") + std::string(key.name);
            values += (values.empty() ? "" : ",") + std::to_string(RowIndex{}.key(key));
        }
        if (table->load_body != nullptr || table->keys.empty())
            continue;
        sql("replace into " + std::string(table->name) + "(" + columns + ") values(" + values + ");");
        EXPECT_EQ(run(table->get), 0);
        EXPECT_EQ(std::memcmp(&r_, original.get(), sizeof r_), 0) << table->get;
    }
}

// ---- the stored values against printf

// The columns that a statement stores and what prints each, in the text's order.
std::vector<std::pair<std::string, std::string>> stored_columns(std::string text) {
    const bool update = text.starts_with("update");
    text.erase(0, update ? text.find(" set ") + 5 : text.find('(') + 1);
    std::erase(text, ' ');
    std::istringstream names(text), values(text.substr(text.find("values(") + 7));
    std::vector<std::pair<std::string, std::string>> columns;
    for (std::string name, value; columns.empty() || value.find_first_of(");w") == std::string::npos;) {
        std::getline(names, name, update ? '=' : ',');
        std::getline(update ? names : values, value, ',');
        columns.emplace_back(name.substr(0, name.find(')')), value.substr(0, value.find_first_of(");w")));
    }
    return columns;
}

template <class... Values>
std::string printed(const char* format, Values... values) {
    char text[64];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string printed(const Field& f, const std::byte* at, const std::string& conversion) {
    std::string text;
    if (f.codec != nullptr) {
        if (f.codec->group.empty())
            f.codec->encode(*f.codec, at, text);
        for (unsigned g = 0; g < f.codec->groups; ++g)
            for (const ListItem& item : f.codec->group) {
                long long n = read_number(item.kind, at + g * f.codec->group_stride + item.offset);
                n = f.codec->is_signed ? static_cast<int>(n) : n;
                text += printed("%0*lld", item.width, n) + f.codec->separator;
            }
        std::erase(text, '\0');
    } else if (f.kind == Kind::text) {
        text.assign(reinterpret_cast<const char*>(at), f.size);
        text.resize(strnlen(text.data(), text.size()));
    } else {
        const long long n = f.constant ? f.value : read_number(f.kind, at);
        text = conversion.find("llu") != std::string::npos ? printed("%lld", n)
               : conversion.find('u') != std::string::npos ? printed("%u", static_cast<unsigned>(n))
                                                           : printed("%d", static_cast<int>(n));
    }
    if (f.encrypted == 0)
        return text;
    std::string stored(f.encrypted, '\0');
    db_encrypt(text.c_str(), stored.data(), static_cast<int>(text.size()), f.encrypted);
    return stored.substr(0, stored.find('\0'));
}

TEST_F(Catalogue, StoredValuesAreWhatTheTextsPrint) {
    randomise(6);
    save_all();
    for (const Table* t : all_tables())
        for (int inner = 0; t->save_body == nullptr && !t->set.empty() && inner < t->row_count(); ++inner)
            for (const Statement& s : t->save) {
                if (!s.serves(inner))
                    continue;
                std::string row = " from " + std::string(t->name) + " where 1";
                std::string keys;
                for (const KeyColumn& key : t->keys) {
                    const std::string name(key.name);
                    row += printed(" and %s = %d", name.c_str(), RowIndex{.inner = inner}.key(key));
                    keys += " " + name + " ";
                }
                const auto* base = reinterpret_cast<const std::byte*>(&r_);
                auto field = s.fields.begin();
                for (const auto& [column, conversion] : stored_columns(std::string(s.text))) {
                    if (conversion.find('%') == std::string::npos ||
                        keys.find(" " + column + " ") < keys.size())
                        continue;
                    ASSERT_TRUE(field != s.fields.end() && field->name == column) << s.text;
                    const int32_t offset = field->absolute
                                               ? inner * static_cast<int32_t>(field->inner_stride)
                                               : static_cast<int32_t>(t->layout.base) +
                                                     (inner + 1 - s.origin) * static_cast<int32_t>(s.stride);
                    EXPECT_EQ(query("select " + column + row),
                              printed(*field, base + field->offset + offset, conversion))
                        << column << row;
                    ++field;
                }
                EXPECT_TRUE(field == s.fields.end()) << s.text;
            }
}

// ------------------------------------------------------------------------------------- text forms

TEST_F(Catalogue, TextForms) {
    std::string line;
    for (int i = 0; i < 48; ++i) {
        line += std::to_string(i - 1) + ":";
        r_.event.motion_grid[0][16 + i % 16][i / 16] = i - 1;
    }
    const std::string no_logo = "000,000,00000,00000,00000,00000,";
    const struct {
        const char *address, *value;  // null: set above
        std::string text;
    } cases[] = {
        {"netconfig_table.mac_addr", "0 17 34 205 71 11", "000017034205071011"},
        {"chn_info.osd_size", "1 2 3 4 5 60 7 255", "001,002,003,004,005,060,007,255,"},
        {"chn_info.logo_param", "1 22 333 4444 55555 65535 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0",
         "001,022,00333,04444,55555,65535," + no_logo + no_logo + no_logo},
        {"ipaddr_list.ipv6addr[5]", "1 20 4294967295 0", "1:20:4294967295:0:"},
        {"fisheye_param_cfg.zoom[16]", "-1 2 2147483647 0 0 0 0 0 0 0 0 0 0 0 0 -2147483648",
         "-1,2,2147483647,0,0,0,0,0,0,0,0,0,0,0,0,-2147483648,"},
        {"upnp_config.http_portmap", "1 -2 3", "1:-2:3:"},
        {"wdr_config_table.level_one[1]", "-25536", "-25536"},
        {"email_config_info.verify_type", "-7", "-7"},
        {"motion_detect_list.line_data[1,2]", nullptr, line},
        {"user_mana_info.username[1]", "o'neill", "o'neill"},
        {"user_mana_info.mac_addr[1]", "1 2 3 4 5 6", "001002003004005006"},
        {"ppp_config_info.localSubnetMask", "4294967040", "4294967040"},
    };
    for (const auto& c : cases)
        if (c.value != nullptr)
            set_cell(r_, find_cell(parse_address(c.address)), c.value);
    std::memcpy(r_.network.wep_key[3], "A\xff", 2);
    save_all();
    for (const auto& c : cases) {
        const Address a = parse_address(c.address);
        const std::string row = std::to_string(a.row.value_or(1) - 1);
        EXPECT_EQ(query("select " + a.field + " from " + a.table + " limit 1 offset " + row), c.text)
            << c.address;
    }

    // A WEP key is a list of its 33 bytes before it is encrypted.
    const std::string stored = query("select key_info from wep_key_list where idx = 4");
    char key[512] = {};
    db_decrypt(stored.c_str(), key, static_cast<int>(stored.size()), sizeof key);
    EXPECT_THAT(key, testing::MatchesRegex("65:255:(0:)*"));
    EXPECT_EQ(std::strlen(key), 7u + 31 * 2);
}

TEST_F(Catalogue, ItemsThatATextDoesNotHoldKeepTheirValues) {
    const struct {
        const char *address, *text, *values;  // from nines
    } cases[] = {
        {"fisheye_param_cfg.pix_x[1]", "1,2,3,4,5,6,7,8,-10,10,", "[1,2,3,4,5,6,7,8,-10,10,9,9,9,9,9,9]"},
        {"fisheye_param_cfg.pix_x[1]", "1,2", "[1,2,9,9,9,9,9,9,9,9,9,9,9,9,9,9]"},
        {"fisheye_param_cfg.pix_x[1]", "-5,, 6x,+7,4294967297,--1,0x7,",
         "[-5,0,6,7,1,0,0,9,9,9,9,9,9,9,9,9]"},
        {"fisheye_param_cfg.pix_x[1]", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,",
         "[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16]"},
        {"netconfig_table.mac_addr", "", "[9,9,9,9,9,9]"},
        {"netconfig_table.mac_addr", "001002", "[1,2,9,9,9,9]"},
        {"netconfig_table.mac_addr", "00001703420507101", "[0,17,34,205,71,1]"},
        {"netconfig_table.mac_addr", "255256999-01abc 12345", "[255,0,231,255,0,12]"},
    };
    save_all();
    for (const auto& c : cases) {
        const Address a = parse_address(c.address);
        const Cell cell = find_cell(a);
        set_cell(r_, cell,
                 std::string_view("9 9 9 9 9 9 9 9 9 9 9 9 9 9 9 9").substr(0, *c.address == 'f' ? 31 : 11));
        sql("update " + a.table + " set " + a.field + " = '" + c.text + "' where idx = 1;");
        EXPECT_EQ(run(cell.table->get), 0);
        EXPECT_EQ(cell_text(r_, cell), c.values);
    }
}

TEST_F(Catalogue, ColumnsAreConvertedToTheFieldsWidths) {
    sql("insert into chn_info(chn_index, name, name_enable, battery_osd_position_x) "
        "values(1, '0123456789abcdef0123456789abcdefX', 511, '-1');"
        "insert into wdr_config_table values(1, 40000, ' -1x', '+12', 3.9);");
    load_all();
    const ChannelBlock& channel = r_.channel[0];
    EXPECT_EQ(std::string(channel.name, 33), std::string("0123456789abcdef0123456789abcdef\0", 33));
    EXPECT_TRUE(channel.name_enable == 255 && channel.battery_osd_position_x == 65535);
    const SensorWdr& wdr = r_.sensor[0].wdr;
    EXPECT_TRUE(wdr.enable == -25536 && wdr.level_one == -1 && wdr.level_two == 12 &&
                wdr.contrast_level == 3);
}

// ------------------------------------------------------------------------------------- rows

TEST_F(Catalogue, DefaultRows) {
    const std::pair<const char*, const char*> cases[] = {
        {"dev_info", "1|ipccamera|1|2|1364873814|0|0|0"},
        {"rtcp_config", "1|1"},
        {"email_config_info", "1|admin|58213|0|0|200|0|1|email|0"},
        {"email_addr_list", "1|admin|58213|2;2|admin|58213|2;3|admin|58213|2;4|admin|58213|1"},
        {"local_port_list", "1|1|1|0|0;2|1|2|0|0;3|1|3|0|0;4|1|4|0|0;5|1|5|0|0"},
        {"multicast_port where idx = 4", "4|8860|8862|8864|8666|8868|8870|NULL|NULL|NULL"},
        {"ipaddr_list where idx in (5, 6)", "5|1|5|0||0||0|;6|2|6|0||0||0|"},
    };
    for (const auto& [rows, values] : cases) {
        const std::string_view table = rows;
        EXPECT_EQ(ensure_rows(*find_table(table.substr(0, table.find(' '))), "test", {}), 0) << rows;
        EXPECT_EQ(query("select * from " + std::string(rows)), values);
    }
}

TEST_F(Catalogue, RowsAreCompletedBeforeTheyAreUpdated) {
    const struct {
        std::string table, rows, question, answer;
        int result = 0;
    } cases[] = {
        {"ipaddr_list", "(idx, use_mod, name) values(1,9,'old'),(2,9,'old'),(3,9,'old')",
         "count(*), sum(target), sum(use_mod), max(idx), max(name)", "16|27|136|16|"},
        {"ipaddr_list", "(name) select 'old' from sqlite_master limit 17",
         "count(*), min(name), count(target)", "17|old|0"},
        {"email_addr_list", "(idx, addr_type) values(1,2),(3,2)", "idx, name", "1|NULL;3|NULL", -1},
        {"email_addr_list", "(idx, addr_type) values(1,7),(2,8)", "idx, addr_type", "1|2;2|2;3|2;4|1"},
        {"coordinate_region_list", "(idx, chn_index) values(1,1),(3,1),(4,1),(5,1),(8,1),(10,1),(12,1),(1,2)",
         "chn_index, group_concat(role_of_coor), sum(coor_type)", "1|1,2,0,0,5,6,6,6,6,7|17;2|NULL|NULL"},
        {"onvif_base_config", "(idx, chan_no, subscribe) values(1,2,5)", "chan_no, max(subscribe)",
         "1|0;2|5"},
        {"wep_encrypt_info", "(key_index) values(1),(2)", "*", "0|0|0|0"},
        {"dev_info", "(dev_id) values(1),(2)", "dev_id, dev_name", "0|"},
        {"roi_conf_table",
         "(chan_idx, streamidx, type, type_idx, name) values(1,1,1,2,'old'),(1,1,2,7,'f'),(2,1,1,1,'other')",
         "chan_idx * 10 + type, count(*), count(distinct streamidx * 100 + type_idx), group_concat(name, '')",
         "11|64|64|;12|8|8|f;13|8|8|;14|64|64|;21|1|1|other"},
    };
    for (const auto& c : cases) {
        fresh_database();
        sql("insert into " + c.table + c.rows);
        EXPECT_EQ(run(find_table(c.table)->set), c.result) << c.table << c.rows;
        const bool grouped = c.question.find("chan") < 4 || c.question.starts_with("chn");
        EXPECT_EQ(query("select " + c.question + " from " + c.table + (grouped ? " group by 1" : "")),
                  c.answer);
    }
    EXPECT_EQ(run("db_save_sdi_local_output_config"), 0);  // its row is another table's to make
    EXPECT_EQ(query("select count(*) from front_other_config"), "0");
}

// What has no place in the record is passed over, with the table's message or silently; the other rows load.
TEST_F(Catalogue, RowsOutOfRange) {
    sql("create table roi_param_table(idx integer primary key, streamidx, type, x);");
    const struct {
        const char *rows, *get;
        int result;
        const char *message, *loaded;
    } cases[] = {
        {"front_param_config(idx, maxgainvalue) values(2, 9),(1, 5)", "db_get_front_param_config", 0,
         "invalid sensor_no: 1\n", "front_param_config.maxgainvalue"},
        {"chn_info(chn_index, ps_send_pack_len) values(1, 5),(2, 9)", "db_get_chn_info", 0, "",
         "chn_info.ps_send_pack_len"},
        {"chn_info(chn_index) values(-5)", "db_get_chn_info", -1, "invalid chan_no: -6\n", nullptr},
        {"chn_comp_info(chn_index, channel_no, stream_index, quality) values(1,1,9,9),(2,2,0,9),(2,1,1,5)",
         "db_get_comp_info", 0, "invalid stream_no: 9\n", "chn_comp_info.quality[1,2]"},
        {"local_port_list(idx, port_type, start_port) values(1, 7, 9),(2, 4, 5)", "db_get_local_port", 0,
         "unknown port_type: 7\n", "local_port_list.start_port[4]"},
        {"ipaddr_list(idx, ipv4addr) values(0, 9),(3, 5),(17, 9)", "db_get_ipaddr_list", 0, "",
         "ipaddr_list.ipv4addr[3]"},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, x) values(2,1,1,1,9),(1,1,7,1,9)",
         "db_get_roi_config", 0, "invalid channel_no: 1\n", nullptr},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, x) values(1,9,1,1,9),(1,1,3,8,55)",
         "db_get_roi_config", 0, "invalid streamidx: 8\n", nullptr},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, x) values(1,1,4,9,9),(1,1,4,2,56)",
         "db_get_roi_config", 0, "invalid idx: 8\n", nullptr},
        {"roi_param_table(streamidx, type, x) values(2,1,57),(2,1,58),(9,1,9),(2,5,9)", "db_get_roi_param", 0,
         "invalid streamidx: 8\n", nullptr},
    };
    for (const auto& c : cases) {
        sql(std::string("insert into ") + c.rows);
        const auto log = logged([&] { EXPECT_EQ(run(c.get), c.result) << c.rows; });
        EXPECT_THAT(log, HasSubstr(c.message));
        EXPECT_TRUE(*c.message != '\0' || log.find("invalid") == std::string::npos) << log;
        EXPECT_TRUE(c.loaded == nullptr || cell_text(r_, find_cell(parse_address(c.loaded))) == "5")
            << c.loaded;
    }
    EXPECT_EQ(r_.encoding.roi[0][0].move_track.x, 55);
    EXPECT_EQ(r_.encoding.roi[0][0].plate[1].x, 56);
    EXPECT_EQ(r_.encoding.roi[0][1].region[1].area.x, 58);
    sql("drop table roi_param_table;");
    EXPECT_THAT(logged([] { EXPECT_EQ(run("db_get_roi_param"), 0); }),
                HasSubstr(" roi_param_table is not exist\n"));
}

TEST_F(Catalogue, FailuresHaveTheirCodesAndMessages) {
    std::strcpy(r_.channel[0].name, "O'Brien");
    const std::string failing = " begin select raise(fail, ''); end;";
    const struct {
        std::string broken;
        const char* function;
        int result;
        const char* message;
    } cases[] = {
        {"drop table wdr_config_table;", "db_save_wdr_config", -4,
         "db_save_wdr_config_single failed for sensor_no: 0\n"},
        {"", "db_get_wdr_config", -2, " db_query_open_v2 err\n"},
        {"drop table rtsp_config_table;", "db_save_rtsp_config", -2, " db_query_row_num err !\n"},
        {"insert into ipaddr_list(idx) values(1); create trigger b before delete on ipaddr_list" + failing,
         "db_save_ipaddr_list", -5, "delete ipaddr_list err \n"},
        {"create trigger c before insert on chn_info" + failing, "db_set_chn_info", -1,
         "db_set_chn_info_single error for chan_no: 0\n"},
        {"", "db_set_chn_info", -1, "values(1, 'O''Brien', 0, "},
    };
    for (const auto& c : cases) {
        sql(c.broken);
        EXPECT_THAT(logged([&] { EXPECT_EQ(run(c.function), c.result) << c.function; }),
                    HasSubstr(c.message));
    }
    close_database();
    EXPECT_EQ(call_table_function("db_save_gamma_config", 0), -6);
    set_cfg_param(nullptr);
    EXPECT_EQ(call_table_function("db_get_gamma_config", 0), -7);
    EXPECT_EQ(call_table_function("no_such_function", 0), std::nullopt);
    for (const Table* table : all_tables())
        for (const auto function : {table->get, table->set, table->single})
            EXPECT_TRUE(function.empty() || call_table_function(function, 0).value() < 0) << function;
}

// ------------------------------------------------------------------------------------- users

TEST_F(Catalogue, UserListsArePacked) {
    auto& users = r_.users.user;
    std::strcpy(users[0].username, "ann");
    std::strcpy(users[2].username, "o'neill");
    EXPECT_EQ(run("db_set_usr_info"), 0);
    EXPECT_EQ(query("select idx, username, user_num from user_mana_info where idx in (1, 2, 32)"),
              "1|ann|2;2|o'neill|0;32||0");
    wipe();
    std::strcpy(users[2].username, "stays");
    EXPECT_EQ(run("db_get_usr_info"), 0);
    EXPECT_STREQ(users[1].username, "o'neill");
    EXPECT_STREQ(users[2].username, "stays");

    // A number of users that cannot be, and a row without a name.
    sql("update user_mana_info set user_num = 4000000000, username = 'u' || idx; "
        "insert into user_mana_info(idx, username) values(33, 'u33');");
    EXPECT_EQ(run("db_get_usr_info"), 0);
    EXPECT_STREQ(users[31].username, "u32");
    sql("update user_mana_info set username = 'v' || idx;"
        "update user_mana_info set username = null where idx = 5;");
    EXPECT_EQ(run("db_get_usr_info"), 0);
    EXPECT_STREQ(users[3].username, "v4");
    EXPECT_STREQ(users[5].username, "u6");
}

TEST_F(Catalogue, SecureUserListStartsWithTheAdministrator) {
    const UserEntry& first = r_.users.sec_user[0];
    std::strcpy(r_.users.sec_user[3].username, "carol");
    EXPECT_EQ(run("db_set_sec_user_info"), 0);
    EXPECT_STREQ(first.username, "admin");
    EXPECT_TRUE(first.permission == 0xFFFFFFFF && first.priority == 2 && first.user_level == 2);
    for (const uint64_t mask :
         {first.preview_permision, first.record_permision, first.playback_permision, first.ptzctrl_permision})
        EXPECT_EQ(mask, 0xFFFFFFFFu);
    EXPECT_EQ(query("select user_num, substr(username, 1, 1) from sec_user_mana_info where idx < 3"),
              "1|:;0|");
    EXPECT_EQ(run("db_get_sec_user_info"), 0);
    EXPECT_STREQ(first.username, "carol");
    EXPECT_EQ(run("db_set_sec_user_info"), 0);  // the first entry has a name now, and is a row
    EXPECT_EQ(query("select username, permission from sec_user_mana_info where idx = 1"),
              ":8e:da:26:2d:46:7a:ab:13:aa:5c:f7:a4:30:31:6a:ec|-1");
}

// ------------------------------------------------------------------------------------- statement texts

TEST(SqlText, ReadsTheFormsOfTheCatalogue) {
    const std::pair<const char*, const char*> cases[] = {
        // q: between quotes, w: names the row
        {"replace into t (a, b,c)values(%d, '%q',%llu);", "0 t a:d b:sq c:l"},
        {"insert into  t(a,b) values (1,'x,;)');", "1 t a:- b:-"},
        {"update t set a=%u,b = '%d' , c='' where k = %d and m=2;", "2 t a:u b:dq c:- k:dw m:-w"},
        {"delete from t;", "3 t"},
        {"select count(*) from t where a = %d;", "4 t a:dw"},
        {"select a, b from t where a < %d order by a ASC;", "5 t a:dw"},
        {"SELECT * from t;", "5 t"},
    };
    for (const auto& [text, expected] : cases) {
        const SqlText parsed(text);
        std::string read = std::to_string(static_cast<int>(parsed.verb)) + " " + std::string(parsed.table);
        for (std::size_t i = 0; i < parsed.slots; ++i) {
            const auto& [column, value, conversion, where] = parsed.slot[i];
            read += " " + std::string(column) + ":" + (conversion.kind != 0 ? conversion.kind : '-') +
                    (conversion.quoted ? "q" : "") + (where ? "w" : "");
        }
        EXPECT_EQ(read, expected) << text;
    }
}

TEST(SqlText, RefusesAnythingElse) {
    for (const char* text : {"",
                             ";",
                             "drop table t;",
                             "updates t set a = 1;",
                             "update t set a = 1",
                             "update t a = 1;",
                             "update t set a;",
                             "update t set a = ;",
                             "update t set a = 1 where;",
                             "replace t(a) values(1);",
                             "replace into t values(1);",
                             "replace into t(a, b) values(1);",
                             "replace into t(a) values(1, 2);",
                             "replace into t(a) values('1);",
                             "update t set a = %s;",
                             "update t set a = %x;",
                             "update t set a = '%5d';",
                             "delete t;",
                             "select * into t;",
                             "update t set a = 1; update t set a = 2;"})
        EXPECT_THROW(SqlText{text}, const char*) << text;
}

}  // namespace
