// Every table of the catalogue between the record and the database, and the readers of its texts.
#include <cmath>
#include <limits>

#include "core_fixture.h"
#include "walk.h"

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
                EXPECT_TRUE(table->strategy == Strategy::packed ||
                            cell_text(*original, cell) == cell_text(r_, cell))
                    << address_of(cell);
        fresh_database();
        save_all();
        EXPECT_EQ(difference(saved, contents()), "");
    }
}

// A value that two columns store is one that another value's place was taken by.
TEST_F(Catalogue, EveryColumnHasAValueOfItsOwn) {
    static constexpr ListItem kWhole[] = {{0, Kind::block}};
    static constexpr TextCodec kOne{.encode = nullptr, .decode = nullptr, .group = kWhole, .groups = 1};
    const std::set<std::string_view> two_of_one_value{"am_pm_flag", "roadinfo_osd_enable"};
    for (const Table* table : all_tables()) {
        std::set<std::pair<std::size_t, int>> taken;
        for (const Cell& cell : cells_of_table(*table)) {
            const Field& f = *cell.field;
            const bool may_share = two_of_one_value.contains(f.name) || f.home == Home::holder ||
                                   table->name == "intelli_rule_param_sets";
            const TextCodec& codec = f.codec != nullptr ? *f.codec : kOne;
            for (std::size_t g = 0; g < codec.groups; ++g)
                for (const ListItem& item : items_of(codec))
                    EXPECT_TRUE(
                        taken.insert({cell.offset + g * codec.group_stride + item.offset, f.first_bit})
                            .second ||
                        may_share)
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
        EXPECT_TRUE(file_state() == state) << table->set;
    }
    // Two features share a row: the last of them writes it, and the whole store writes it once.
    for (const int changed : {0, 1, 1}) {
        r_.traffic.vehicle.detect.schedule.segment[0][0].begin ^= static_cast<uint32_t>(changed);
        for (int n = 0; n < 2; ++n)
            EXPECT_EQ(set_alldata_to_db(), 0);
    }
    EXPECT_EQ(sqlite3_total_changes(get_db_handle()), changes + 2);
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
        if (table->keys.empty() || table->strategy == Strategy::packed ||
            table->strategy == Strategy::read_only)
            continue;
        std::string columns, values;
        for (const KeyColumn& key : table->keys) {
            columns += (columns.empty() ? "" : ",") + std::string(key.name);
            values += (values.empty() ? "" : ",") +
                      std::to_string(key_value(table->save[0], key, {}, table->counts()));
        }
        sql("replace into " + std::string(table->name) + "(" + columns + ") values(" + values + ");");
        EXPECT_EQ(run(table->get), 0);
        EXPECT_EQ(std::memcmp(&r_, original.get(), sizeof r_), 0) << table->get;
    }
}

// ------------------------------------------------------------------------------------- text forms

TEST_F(Catalogue, TextForms) {
    std::string line, scenes;
    for (int i = 0; i < 48; ++i) {
        line += std::to_string(i - 1) + ":";
        r_.event.motion_grid[0][16 + i % 16][i / 16] = i - 1;
    }
    for (int i = 0; i < 56; ++i) {
        scenes += std::to_string(255 - i) + ":";
        r_.analytics.vehicle_detection.schedule.segment[i / 8][i % 8].scene_id =
            static_cast<uint8_t>(255 - i);
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
        {"user_mana_info.permission[1]", "4294967295", "-1"},
        {"user_mana_info.mac_addr[1]", "1 2 3 4 5 6", "001002003004005006"},
        {"ppp_config_info.localSubnetMask", "4294967040", "4294967040"},
        {"ipdome_ptz_pattern.info", "1 4294967295 0 0 0 0 7 8", "1:4294967295:0:0:0:0:7:8:"},
        {"genetec_config.motion_roi_y1", "-0.25", "-0.25"},
        {"onvif_adsecurity_certpath.certid_str[2]", "1 -2 3", "1,-2,3"},
        {"vca_line_cfg.end[2]", "7 -8", "7:-8"},
        {"line_detect_table.linePoint[8]", "1 -2 3 4", "1:-2:3:4:"},
        {"line_detect_table.trigger_record_chan[1]", "18446744073709551615", "-1"},
        {"vehicle_detection_cfg.scene_id", nullptr, scenes},
    };
    for (const auto& c : cases)
        if (c.value != nullptr)
            set_cell(r_, find_cell(parse_address(c.address)), c.value);
    std::memcpy(r_.network.wep_key[3], "A\xff", 2);
    save_all();
    for (const auto& c : cases) {
        const Address a = parse_address(c.address);
        const std::string row = std::to_string((a.indexes.empty() ? 1 : a.indexes.back()) - 1);
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

// A real is stored as "%f" prints it, what is not finite as 0, and loaded into a float's range.
TEST_F(Catalogue, RealsHaveSixDecimals) {
    const struct {
        float value;
        const char *stored, *stored_as_int;
    } cases[] = {
        {0.1F, "0.1", "0.1"},
        {-123456.789F, "-123456.789062", "-123456.789062"},
        {-59.9999995F, "-60.0", "-60"},
        {4e-7F, "0.0", "0"},
        {NAN, "0.0", "0"},
        {-INFINITY, "0.0", "0"},
    };
    Genetec& g = r_.platform.genetec[0];
    for (const auto& c : cases) {
        g.motion_roi_x1 = r_.dome.privacy.gratio = c.value;
        EXPECT_TRUE(run("db_save_genetec_config") == 0 && run("db_save_ipdome_privacy") == 0);
        EXPECT_EQ(query("select motion_roi_x1 from genetec_config"), c.stored);
        EXPECT_EQ(query("select gratio from ipdome_privacy_table"), c.stored_as_int);
    }
    sql("update genetec_config set motion_roi_x0 = -1e300, motion_roi_y0 = ' 2.5e1x', motion_roi_x1 = 3;");
    EXPECT_EQ(run("db_get_genetec_config"), 0);
    EXPECT_EQ(g.motion_roi_x0, std::numeric_limits<float>::lowest());
    EXPECT_TRUE(g.motion_roi_y0 == 25 && g.motion_roi_x1 == 3);
}

const std::string kPresetText = "p:-1:2:-3:4:5:6:7:8:9:10:11:12:13:14:";

void expect_preset(const DomePreset& p, const char* name) {
    EXPECT_STREQ(p.name, name);
    EXPECT_TRUE(p.attr1 == -1 && p.attr2 == 2 && p.attr3 == -3 && p.attr4 == 4 && p.attr5 == 5 &&
                p.attr6 == 6);
    EXPECT_TRUE(p.attr7 == 7 && p.attr11 == 11 && p.attr12 == 12 && p.attr13 == 13 && p.attr14 == 14);
}

TEST_F(Catalogue, DomePresets) {
    DomePreset& last = r_.dome.preset[299];
    std::memcpy(last.name, "a:b'23456789012345678901", sizeof last.name);
    last.attr2 = 0xFFFFFFFF;
    last.attr12 = 12;
    last.attr13 = 0xFFFF;
    save_all();
    EXPECT_EQ(query("select count(*), min(num), max(num) from ipdome_ptz_preset_new"), "30|10|10");
    const std::string empty = ":0:0:0:0:0:0:0:0:0:0:0:0:0:0:";
    std::string row;
    for (int i = 0; i < 9; ++i)
        row += empty;
    EXPECT_EQ(query("select preset from ipdome_ptz_preset_new where idx = 30"),
              row + "a b'23456789012345678901:0:-1:0:0:0:0:0:0:0:0:0:12:65535:0:");
    EXPECT_EQ(run("db_get_ipdome_ptz_preset_new"), 0);
    EXPECT_STREQ(last.name, "a b'2345678901234567");  // 20 characters
    EXPECT_TRUE(last.attr2 == 0xFFFFFFFF && last.attr13 == 0xFFFF);

    // Each row's presets follow those of the rows before it.
    wipe();
    sql("delete from ipdome_ptz_preset_new;"
        "insert into ipdome_ptz_preset_new values(1, 2, '" +
        kPresetText + "x:1:" +
        "'), (2, -1, 'no'), (3, null, 'no'),"
        "(7, 297, 'y:7:'), (8, 10, '" +
        kPresetText + kPresetText + "');");
    EXPECT_EQ(run("db_get_ipdome_ptz_preset_new"), 0);
    expect_preset(r_.dome.preset[0], "p");
    EXPECT_TRUE(r_.dome.preset[1].attr1 == 1 && r_.dome.preset[2].attr1 == 7 && r_.dome.preset[3].attr1 == 0);
    expect_preset(last, "p");
    EXPECT_STREQ(r_.dome.inner_preset[0].name, "");
}

TEST_F(Catalogue, DomeTableOfAnOlderSchema) {
    EXPECT_THAT(logged([] { EXPECT_EQ(run("db_get_ipdome_ptzparam"), 0); }),
                HasSubstr(" ipdome_ptzparam_table is not exist\n"));
    std::string patrol;
    for (int i = 1; i <= 32; ++i)
        patrol += std::to_string(i) + ":00002:00003:";
    sql("create table ipdome_ptzparam_table(idx integer primary key, type int, preset_patrol_pattern text);"
        "insert into ipdome_ptzparam_table values(1, 0, '1:2:3:4:5:6:7:8:004:'),"
        "(2, 1, '" +
        patrol + "00001:00032:" + patrol + "00000:00031:'), (3, 2, 'first:'), (4, 2, '" + kPresetText +
        "'),"
        "(5, 9, 'x:'), (6, 2, '" +
        kPresetText + "');");
    EXPECT_EQ(run("db_get_ipdome_ptzparam"), 0);
    const DomeSection& dome = r_.dome;
    EXPECT_TRUE(dome.pattern.num == 4 && dome.pattern.info[3].value[1] == 8);
    EXPECT_TRUE(dome.patrol[0].enable == 1 && dome.patrol[0].patrolnum == 32 &&
                dome.patrol[1].patrolnum == 31);
    EXPECT_TRUE(dome.patrol[1].scanpoint[31].preset == 32 && dome.patrol[1].scanpoint[31].value[1] == 3);
    EXPECT_STREQ(dome.preset[0].name, "first");
    expect_preset(dome.preset[46], "p");
    expect_preset(dome.preset[92], "p");
}

// Older schemas kept the tracking in two tables, which are only loaded.
TEST_F(Catalogue, DomeTrackingOfAnOlderSchema) {
    sql("insert into intelligent_paramrule(idx, alarm_delaytime, track_holdtime, predict_state, active_track_smooth_mode, zoomcof_adjust, benable, zcoef_value, maxtrackzoom, trackzoomtype, zoomcof) values(1, 1, 2, 99, 3, 4, 5, 6, 7, 8, 99);"
        "insert into intelligent_ctrl_info(idx, benable, bautotrackenable) values(1, 99, 9);");
    DomeTracking expected{};
    expected.alarm_delay_time = 1;
    expected.track_hold_time = 2;
    expected.active_track_smooth_mode = 3;
    expected.zoomcof_adjust = 4;
    expected.zcoef_benable = 5;
    expected.zcoef_value = 6;
    expected.max_track_zoom = 7;
    expected.track_zoom_type = 8;
    EXPECT_EQ(run("db_get_intelligent_paramrule"), 0);
    EXPECT_EQ(std::memcmp(&r_.dome.tracking, &expected, sizeof expected), 0);
    expected.b_auto_track_enable = 9;
    EXPECT_EQ(run("db_get_intelligent_ctrl_info"), 0);
    EXPECT_EQ(std::memcmp(&r_.dome.tracking, &expected, sizeof expected), 0);
}

// A colon within a mask's text is stored as a blank, so that the masks behind it keep their places.
TEST_F(Catalogue, PrivacyMasks) {
    auto& masks = r_.dome.privacy.privacygroup_Input;
    masks[0] = {7, {}, {{1, -2}}, {3}, "it's: a", {8, 255}, {}, -9};
    masks[29].tail_value = 30;
    save_all();
    const std::string text = query("select privacygroup_Input from ipdome_privacy_table");
    std::string first = "007:1:-2:";
    for (int i = 0; i < 18; ++i)
        first += "0:";
    EXPECT_THAT(text, testing::StartsWith(first + "3:0:0:0:0:0:0:0:0:0:0:0:it's  a:008:255:-9:000:0:"));
    wipe();
    load_all();
    EXPECT_STREQ(masks[0].text, "it's  a");
    EXPECT_TRUE(masks[0].tail_value == -9 && masks[1].tail_value == 0 && masks[29].tail_value == 30);
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
        {"onvif_adsecurity_certpath.certid_str[1]", "5,6", "[5,6,9]"},
        {"netconfig_table.mac_addr", "", "[9,9,9,9,9,9]"},
        {"netconfig_table.mac_addr", "001002", "[1,2,9,9,9,9]"},
        {"netconfig_table.mac_addr", "00001703420507101", "[0,17,34,205,71,1]"},
        {"netconfig_table.mac_addr", "255256999-01abc 12345", "[255,0,231,255,0,12]"},
    };
    save_all();
    for (const auto& c : cases) {
        const Address a = parse_address(c.address);
        const Cell cell = find_cell(a);
        const std::size_t items = *c.address == 'f' ? 16 : *c.address == 'n' ? 6 : 3;
        set_cell(r_, cell, std::string_view("9 9 9 9 9 9 9 9 9 9 9 9 9 9 9 9").substr(0, items * 2 - 1));
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

    // The passphrase may fill its member, and is loaded with room for its end.
    auto& phrase = r_.platform.softap.wpa_passphrase;
    std::memset(phrase, 'p', sizeof phrase);
    EXPECT_TRUE(run("db_save_softap_param_config") == 0 && run("db_get_softap_param_config") == 0);
    EXPECT_EQ(std::string(phrase, sizeof phrase), std::string(63, 'p') + std::string(2, '\0'));
}

// ------------------------------------------------------------------------------------- rows

TEST_F(Catalogue, RowsAreCompletedBeforeTheyAreUpdated) {
    const struct {
        std::string rows, question, answer;
        const char* function = nullptr;  // null: the table's
        int given = 0;
    } cases[] = {
        {"ipaddr_list(idx, use_mod, name) values(1,9,'old'),(2,9,'old'),(3,9,'old')",
         "count(*), sum(target), sum(use_mod), max(idx), max(name)", "16|27|136|16|"},
        {"ipaddr_list(name) select 'old' from sqlite_master limit 17", "count(*), min(name), count(target)",
         "17|old|0"},
        {"email_addr_list(idx, addr_type) values(1,2),(3,2)", "idx, name", "1|;2|;3|;4|"},
        {"email_addr_list(idx, addr_type) values(1,7),(2,8)", "idx, addr_type", "1|2;2|2;3|2;4|1"},
        {"onvif_adsecurity_key(idx, ref_counter) values(1,7)", "count(*), max(idx), max(ref_counter)",
         "3|3|0"},
        {"coordinate_region_list(idx, chn_index) values(1,1),(3,1),(4,1),(5,1),(8,1),(10,1),(12,1),(1,2)",
         "chn_index, group_concat(role_of_coor), sum(coor_type) group by 1",
         "1|1,2,0,0,5,6,6,6,6,7|17;2|NULL|NULL"},
        {"onvif_base_config(idx, chan_no, subscribe) values(1,2,5)", "chan_no, max(subscribe) group by 1",
         "1|0;2|5"},
        {"wep_encrypt_info(key_index) values(1),(2)", "*", "0|0|0|0"},
        {"dev_info(dev_id) values(1),(2)", "dev_id, dev_name", "0|"},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, name) "
         "values(1,1,1,2,'old'),(1,1,2,7,'f'),(2,1,1,1,'other')",
         "chan_idx * 10 + type, count(*), count(distinct streamidx * 100 + type_idx), group_concat(name, '') "
         "group by 1",
         "11|64|64|;12|8|8|f;13|8|8|;14|64|64|;21|1|1|other"},
        {"line_detect_table(idx, chan_no, line_no, proc_type) values(1,1,1,9),(9,2,1,9)",
         "chan_no, count(*), max(proc_type), sum(idx = line_no) group by 1", "1|8|1|8;2|1|9|0"},
        {"intelligent_face_detect_config(idx, by_actives) values(1,'old'),(2,'other')",
         "ifnull(chan_no, 2), count(*), max(by_actives) group by 1", "1|1|0:0:0:0:0:0:0:0:;2|1|other"},
        {"region_param_polygon(idx, process_type, point_num) values(1,1,7),(8,1,7),(1,2,7),(1,3,7)",
         "process_type, count(*), max(idx), sum(x_coords <> '') group by 1", "1|8|8|8;2|1|1|1;3|1|1|NULL"},
        {"ipdome_roi_group(group_idx, inputtype_idx, type) values(0,0,7),(0,5,7),(0,23,7),(0,24,7)",
         "count(*), count(distinct group_idx * 100 + inputtype_idx), sum(type)", "193|193|28"},
        // Rows under each other's keys: a row that is made takes none away.
        {"line_detect_table(idx, chan_no, line_no) "
         "values(1,1,5),(2,1,2),(3,1,3),(4,1,4),(5,1,9),(6,1,6),(7,1,7),(8,1,8)",
         "count(*), count(distinct line_no), max(line_no), sum(linePoint <> '')", "8|8|8|8"},
        {"intelligent_polygon(idx, process_type, chan_no, scene_no, rule_no) values(2,3,1,1,1),(3,3,1,1,2),(17,3,1,1,3)",
         "count(*), count(distinct scene_no * 16 + rule_no), sum(x_coords <> '') where process_type = 3",
         "160|160|160", "db_save_intelligent_qor_scene"},
        {"intelligent_polygon(idx, process_type, chan_no, scene_no, rule_no, x_coords) "
         "values(2,3,1,1,1,'5'),(1,3,1,2,1,'7')",
         "count(*) where process_type = 3 and scene_no = 2 and rule_no = 1", "1",
         "db_save_intelligent_scene_single", 2},
    };
    for (const auto& c : cases) {
        const std::string table = c.rows.substr(0, c.rows.find('('));
        fresh_database();
        sql("insert into " + c.rows);
        EXPECT_EQ(run(c.function != nullptr ? c.function : find_table(table)->set, {0, 0}, c.given), 0)
            << c.rows;
        std::string question = c.question;
        const auto rest = std::min(question.find(" where "), question.find(" group by "));
        question.insert(std::min(rest, question.size()), " from " + table);
        EXPECT_EQ(query("select " + question), c.answer) << c.rows;
    }
    EXPECT_EQ(run("db_save_sdi_local_output_config"), 0);  // its row is another table's to make
    EXPECT_EQ(query("select count(*) from front_other_config"), "0");
}

// What has no place in the record is passed over, with the table's message or silently; the other rows load.
TEST_F(Catalogue, RowsOutOfRange) {
    sql("create table roi_param_table(idx integer primary key, streamidx, type, x);"
        "drop table intelligent_dome_scene_track;"
        "create table intelligent_dome_scene_track(scene_id, track_duration);");
    const struct {
        const char *rows, *message, *loaded;
        int result = 0;
    } cases[] = {
        {"front_param_config(idx, maxgainvalue) values(2, 9),(1, 5)", "invalid sensor_no: 1\n",
         "front_param_config.maxgainvalue"},
        {"chn_info(chn_index, ps_send_pack_len) values(1, 5),(2, 9)", "", "chn_info.ps_send_pack_len"},
        {"chn_info(chn_index) values(-5)", "invalid chan_no: -6\n", nullptr, -1},
        {"chn_comp_info(chn_index, channel_no, stream_index, quality) values(1,1,9,9),(2,2,0,9),(2,1,1,5)",
         "invalid stream_no: 9\n", "chn_comp_info.quality[1,2]"},
        {"local_port_list(idx, port_type, start_port) values(1, 7, 9),(2, 4, 5)", "unknown port_type: 7\n",
         "local_port_list.start_port[4]"},
        {"ipaddr_list(idx, ipv4addr) values(0, 9),(3, 5),(17, 9)", "", "ipaddr_list.ipv4addr[3]"},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, x) values(2,1,1,1,9),(1,1,7,1,9)",
         "invalid channel_no: 1\n", nullptr},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, x) values(1,9,1,1,9),(1,1,3,8,55)",
         "invalid streamidx: 8\n", nullptr},
        {"roi_conf_table(chan_idx, streamidx, type, type_idx, x) values(1,1,4,9,9),(1,1,4,2,56)",
         "invalid idx: 8\n", nullptr},
        {"lte_4g_param(idx, n_mtu_size) values(0, 9),(1, 5),(2, 9)", "invalid idx = 1\n",
         "lte_4g_param.n_mtu_size"},
        {"open_platformat_app_param_config(idx, app_type) values(5, 9),(4, 5)",
         " db_get_open_platformat_app_param_cfg idx(4) err\n",
         "open_platformat_app_param_config.app_type[4]"},
        {"genetec_config(idx, chan_no, serial_port) values(1, 1, 5),(1, 2, 9)",
         " db_get_genetec_config chan_no(1) err !\n", "genetec_config.serial_port"},
        {"vm_snapshot_normal_param(process_type, chain_no, line_no, enable) values(1,17,2,9),(1,2,7,5)",
         "chain_no:16 or line_no:1 error\n", "vm_snapshot_normal_param:1.enable[2,7]"},
        {"vm_snapshot_normal_param(process_type, chain_no, line_no, enable) values(2,3,4,9),(6,1,1,5)",
         "chain_no:2 or line_no:3 error\n", "vm_snapshot_normal_param:6.enable"},
        {"vm_trigger_chain_param(process_type, chain_no, line_no) values(4,9,1)", "chain_no:8 error\n",
         nullptr},
        {"roi_param_table(streamidx, type, x) values(2,1,57),(2,1,58),(9,1,9),(2,5,9)",
         "invalid streamidx: 8\n", nullptr},
        {"intelligent_dome_scene_track values(10, 9),(0, 5)", "invalid scene_id: 10\n",
         "intelligent_dome_scene_track.track_duration[1]"},
        {"intelligent_dome_scene_track values(9, 5),(null, 9)", "scene_id is null in row 0\n",
         "intelligent_dome_scene_track.track_duration[10]"},
        {"multi_ccd_demo_ccdpara_config(idx, mode, smartIR) values(9, 8, 9),(8, 7, 5)",
         " db_get_multi_ccd_demo_ccdpara_cfg mode8 err\n", "multi_ccd_demo_ccdpara_config.smartIR[8]"},
        {"intelligent_dome_witness_area_cfg(idx, chan_no, mosaic_enable) values(1, 2, 9),(2, 1, 5)",
         "chan_no(1) is not valid\n", "intelligent_dome_witness_area_cfg.mosaic_enable[1]"},
        {"itc_traffic_cfg(idx, b_init) values(4, 9),(0, 5)", "", "itc_traffic_cfg.b_init[1]"},
        {"vehicle_scene_cfg(idx, chan_no, scene_type, b_init) values(null, 1, 2, 9),(3, 1, 1, 9),(3, 1, 2, 5)",
         "db_get_vehicle_scene_cfg idx is empty...\n", "vehicle_scene_cfg.b_init[4]"},
        {"lf_calibrate_info(lf_track_no, lf_coordinate_no, x) values(5, 1, 9),(4, 6, 5)",
         "lf_track_no(4) err\n", "lf_calibrate_info.x[4,6]"},
        {"lf_calibrate_info(lf_track_no, lf_coordinate_no, x) values(1, 7, 9),(1, 2, 5)",
         "lf_coordinate_no(6) err\n", "lf_calibrate_info.x[1,2]"},
        {"lf_calibrate_info(lf_track_no, lf_coordinate_no, x) values(1, 3, 5)",
         "db_query_rec_count_v2 lf_track_cfg record not enough(5), 24\n", "lf_calibrate_info.x[1,3]"},
        {"roadinfo_config(channel, idx, intersection_idx, road_name_idx, pan_pos) "
         "values(2, 1, 1, 1, 9),(1, 1, 4, 6, 5)",
         "invalid chan_no: 1\n", "roadinfo_config.pan_pos[1,4,6]"},
        {"roadinfo_config(channel, idx, intersection_idx, road_name_idx, road_name_enable) "
         "values(1, 2, 5, 1, 9),(1, 3, 1, 6, 5)",
         "invalid intersection_idx: 4\n", "roadinfo_config.road_name_enable[1,1,6]"},
        {"roadinfo_config(channel, idx, intersection_idx, road_name_idx) values(1, 4, 1, 7)",
         "invalid road_name_idx: 6\n", nullptr},
        {"traffic_illegal_dictionary(idx, illegal_code) values(7, 5),(8, 9)", "",
         "traffic_illegal_dictionary.illegal_code[7]"},
        {"traffic_illegal_dictionary(idx, illegal_code) values(1, 9),(2, 9),(3, 9),(4, 9),(5, 9),(6, 9)",
         "db_query_rec_count_v2  the row_num is 8 error\n", "traffic_illegal_dictionary.illegal_code[7]", -1},
        {"traffic_overlap_info(idx, item_enable) select row_number() over (), 9 from sqlite_master limit 25",
         "db_query_rec_count_v2 the row number is 25. error: -1\n", nullptr, -1},
        {"multi_ccd_preset_switch_param_config(idx, stopTime) values(65, 9),(64, 5)",
         " db_get_multi_ccd_preset_switch_param_cfg preset_idx(8) err\n",
         "multi_ccd_preset_switch_param_config.stopTime[8,8]"},
        {"line_detect_table(idx, chan_no, line_no, enable_line) values(1, 2, 1, 9),(2, null, null, 5)",
         "invalid chan_no: 1\n", "line_detect_table.enable_line[2]"},
        {"line_detect_table(idx, chan_no, line_no, enable, enable_line) "
         "values(3, 1, 9, 8, 8),(4, 1, 1, 5, 5),(5, 1, 6, 7, 5)",
         "invalid detect line no: 8\n", "line_detect_table.enable[1]"},
        {"line_detect_table(idx, chan_no) values(9, 1)", "invalid detect line no: 8\n",
         "line_detect_table.enable_line[6]"},
        {"intrusion_detect_table(idx, chan_no, enable, byRate) values(9, 1, 8, 8),(1, 1, 5, 6),(8, 1, 7, 7)",
         "invalid intrusion region_no: 8\n", "intrusion_detect_table.enable[1]"},
        {"intelli_rule_param_sets(chan_no, scene_id, rule_id, type, time_duration) "
         "values(1, 0, null, 3, 9),(1, 9, 7, 3, 5)",
         "] rule_id(-1) is not valid\n", "intelli_rule_param_sets.time_duration[10,8,3]"},
        {"smd_detection_basic_cfg(chan_no, smd_type, enable) values(2, 1, 9),(1, 1, 5)",
         "db_get_smd_detection_basic_cfg] invalid chan_no: 1\n", "smd_detection_basic_cfg.enable[2]"},
        {"vca_line_cfg values(1, 1, 1, 2, '9:9', '9:9'),(1, 1, 2, 1, '5:5', '6:6'),(1, 2, 1, 1, '8', '8')",
         "vca line num error: 2\n", nullptr},
        {"multi_ccd_preset_switch_param_config(idx) values(0)",
         " db_get_multi_ccd_preset_switch_param_cfg switch_idx(-1) err\n", nullptr},
    };
    for (const auto& c : cases) {
        const std::string rows = c.rows, table = rows.substr(0, rows.find_first_of("( "));
        sql("insert into " + rows);
        const auto log = logged([&] { EXPECT_EQ(run(find_table(table)->get), c.result) << rows; });
        EXPECT_THAT(log, HasSubstr(c.message));
        EXPECT_TRUE(*c.message != '\0' || log.find("invalid") == std::string::npos) << log;
        EXPECT_TRUE(c.loaded == nullptr || cell_text(r_, find_cell(parse_address(c.loaded))) == "5")
            << c.loaded;
    }
    EXPECT_EQ(r_.encoding.roi[0][0].move_track.x, 55);
    EXPECT_EQ(r_.encoding.roi[0][0].plate[1].x, 56);
    EXPECT_EQ(r_.encoding.roi[0][1].region[1].area.x, 58);
    EXPECT_EQ(r_.analytics.vca_line[0].start[0], 0);
    EXPECT_EQ(r_.analytics.vca_line[1].end[1], 6);
    sql("drop table roi_param_table;");
    EXPECT_THAT(logged([] { EXPECT_EQ(run("db_get_roi_param"), 0); }),
                HasSubstr(" roi_param_table is not exist\n"));
    // A row is told once, by the part that it belongs to.
    sql("insert into intelligent_polygon(idx, process_type, chan_no) values(1, 1, 2);");
    const auto told = logged([] { EXPECT_EQ(run("db_get_intelligent_polygon"), 0); });
    EXPECT_EQ(told.find("invalid chan_no: 1\n"), told.rfind("invalid")) << told;
}

TEST_F(Catalogue, FailuresHaveTheirCodesAndMessages) {
    std::strcpy(r_.channel[0].name, "O'Brien");
    r_.intel_moni.mpr[15].line.p1x = 1;
    const std::string failing = " begin select raise(fail, ''); end;";
    const struct {
        std::string broken;
        const char* function;
        int result;
        const char* message;
    } cases[] = {
        {spoiled("wdr_config_table"), "db_save_wdr_config", -4,
         "db_save_wdr_config_single failed for sensor_no: 0\n"},
        {"", "db_get_wdr_config", -2, " db_query_open_v2 err\n"},
        {spoiled("rtsp_config_table"), "db_save_rtsp_config", -2, " db_query_row_num err !\n"},
        {"insert into ipaddr_list(idx) values(1); create trigger b before delete on ipaddr_list" + failing,
         "db_save_ipaddr_list", -5, "delete ipaddr_list err \n"},
        {"create trigger c before insert on chn_info" + failing, "db_set_chn_info", -1,
         "db_set_chn_info_single error for chan_no: 0\n"},
        {"", "db_set_chn_info", -1, "values(1, 'O''Brien', 0, "},
        {spoiled("week_config_list"), "db_save_intelligent_dome_param", -1, "db_save_timeseg error\n"},
        {"", "db_save_vehicle_detection_cfg", -1, "db_save_timeseg error\n"},
        {"", "db_save_intelligent_face_detect_config", -1, "db_save_face_snap_schedule error\n"},
        {"", "db_get_intelligent_dome_param", -1, "db_get_intelligent_track_schedule error\n"},
        {"", "db_save_vehicle_traffic_detect_cfg", -1, "db_save_timeseg error\n"},
        {"create trigger f before update on im_traffic_mpr begin select raise(fail, 'why'); end;",
         "db_save_intel_moni_mpr_config", -1, "db_save_intel_moni_mpr_config failed:why\n"},
        {spoiled("roadinfo_config"), "db_save_roadinfo_cfg", -1,
         "db_save_roadinfo_cfg_single failed(no such table: main.gone)\n"},
        {"", "db_get_traffic_illegal_dictionary", 0, "the row_num is 0 error\n"},
        {spoiled("intelligent_dome_witness_area_polygon"), "db_set_intelligent_dome_witness_area_cfg", -1,
         "db_save_intelligent_dome_polygon error\n"},
        {"create trigger d before insert on multi_ccd_demo_ccdpara_config when new.mode = 1" + failing,
         "db_set_multi_ccd_demo_ccdpara_cfg", -1,
         " db_set_multi_ccd_demo_ccdpara_cfg_single scene_no1 err\n"},
        {spoiled("softap_param"), "db_save_softap_param_config", -1,
         "db_save_softap_param_config failed(no such table: main.gone)\n"},
        {"create trigger e before insert on lte_4g_param" + failing, "db_save_4g_lte_param", -1,
         "insert into lte_4g_param err\n"},
        {"", "db_save_4g_lte_param", -1, "db_save_4g_lte_param error: \n"},
    };
    for (const auto& c : cases) {
        sql(c.broken);
        EXPECT_THAT(logged([&] { EXPECT_EQ(run(c.function), c.result) << c.function; }),
                    HasSubstr(c.message));
    }
    for (const int group : {-1, 8})
        EXPECT_THAT(logged([&] { EXPECT_EQ(run("db_save_ipdome_roi_group_single", group), -1); }),
                    HasSubstr("param err, stream_num = " + std::to_string(group)));
    EXPECT_THAT(logged([] {
                    EXPECT_EQ(run("db_save_colour_config_single", {0, 10}, 2), -1);
                }),
                HasSubstr("param err: chan_no=0, scene_no=10\n"));
    close_database();
    set_cfg_param(nullptr);
    EXPECT_THAT(logged([] { EXPECT_EQ(call_table_function("db_save_traffic_overlap_info", 0), -1); }),
                HasSubstr("ptraffic_osd_cfg is NULL\n"));
    EXPECT_EQ(call_table_function("no_such_function", 0), std::nullopt);
    for (const Table* table : all_tables())
        for (const std::string& function :
             {std::string(table->get), std::string(table->set), single_name(*table)})
            EXPECT_TRUE(function.empty() || call_table_function(function, 0).value() < 0) << function;
}

// Masked in every log line and output of a tool.
TEST_F(Catalogue, CredentialsAreSecret) {
    for (const char* address :
         {"psia_alarm_to_center.pass_word", "sip_config.std_password", "sip_config.gb_password",
          "cms_config.password", "cloud_storage_cfg.passwd", "socks_param.passwd",
          "private_info_cfg.secret_key", "zorvy_config.permanent_code", "lf_track_cfg.pass_word[4]",
          "im_remote_center.ftp_passwd"})
        EXPECT_TRUE(find_cell(parse_address(address)).field->secret()) << address;
    EXPECT_FALSE(find_cell(parse_address("zorvy_config.permanent_code_change_count")).field->secret());
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

// ------------------------------------------------------------------------------------- statement texts

TEST(SqlText, ReadsTheFormsOfTheCatalogue) {
    const std::pair<const char*, const char*> cases[] = {
        // q: between quotes, w: names the row, s: is read
        {"replace into t (a, b,c)values(%d, '%q',%llu);", "0 t a:d b:sq c:l"},
        {"insert into  t(a,b) values (1,'x,;)');", "1 t a:- b:-"},
        {"replace into t (a, b) values(%ld, %lld);", "0 t a:d b:l"},
        {"update t set a=%u,b = '%d' , c='' where k = %d and m=2;", "2 t a:u b:dq c:- k:dw m:-w"},
        {"update t set a=%f;", "2 t a:f"},
        {"select count(*) from t where a = %d;", "3 t a:dw"},
        {"select a, b from t where a < %d order by a ASC;", "4 t a:-s b:-s a:dw"},
        {"SELECT * from t;", "4 t"},
    };
    for (const auto& [text, expected] : cases) {
        const SqlText parsed(text);
        std::string read = std::to_string(static_cast<int>(parsed.verb)) + " " + std::string(parsed.table);
        for (std::size_t i = 0; i < parsed.slots; ++i) {
            const auto& [column, value, conversion, role] = parsed.slot[i];
            read += " " + std::string(column) + ":" + (conversion.kind != 0 ? conversion.kind : '-') +
                    (conversion.quoted ? "q" : "") +
                    (role == SlotRole::condition  ? "w"
                     : role == SlotRole::selected ? "s"
                                                  : "");
        }
        EXPECT_EQ(read, expected) << text;
    }
}

TEST(SqlText, RefusesAnythingElse) {
    constexpr const char* kTexts[] = {"",
                                      ";",
                                      "drop table t;",
                                      "delete from t;",
                                      "select * into t;",
                                      "updates t set a = 1;",
                                      "update t set a = 1",
                                      "update t a = 1;",
                                      "update t set a;",
                                      "update t set a = ;",
                                      "update t set a = 1 where;",
                                      "update t set a = 1; update t set a = 2;",
                                      "replace t(a) values(1);",
                                      "replace into t values(1);",
                                      "replace into t(a, b) values(1);",
                                      "replace into t(a) values(1, 2);",
                                      "replace into t(a) values('1);",
                                      "update t set a = %s;",
                                      "update t set a = %x;",
                                      "update t set a = '%5d';"};
    for (const char* text : kTexts)
        EXPECT_THROW(SqlText{text}, const char*) << text;
}

}  // namespace
