// Device identity, channels, encoding streams, audio, users, regions of interest.
#include <algorithm>
#include <cstring>

#include "catalogue.h"
#include "engine.h"
#include "state.h"

namespace {

// ------------------------------------------------------------------------------------- text forms

// A logo: two bytes and four 16-bit values of its sixteen bytes.
constexpr ListItem kLogoItems[] = {
    {offsetof(LogoRecord, byte_value[0]), Kind::u8, 3},  {offsetof(LogoRecord, byte_value[1]), Kind::u8, 3},
    {offsetof(LogoRecord, word_value[0]), Kind::u16, 5}, {offsetof(LogoRecord, word_value[1]), Kind::u16, 5},
    {offsetof(LogoRecord, word_value[2]), Kind::u16, 5}, {offsetof(LogoRecord, word_value[3]), Kind::u16, 5}};
constexpr TextCodec kLogos{encode_list,        decode_list, kLogoItems, std::size(ChannelBlock{}.logo_param),
                           sizeof(LogoRecord), ','};

// The OSD size, eight bytes; without the column the first two mean "as large as fits".
constexpr TextCodec kOsdSize = [] {
    TextCodec codec = kArray<decltype(ChannelBlock::osd_size), ',', 3>;
    codec.absent = [](std::byte* member) { std::memset(member, 255, 2); };
    return codec;
}();

// ------------------------------------------------------------------------------------- user lists
//
// Not rows of the catalogue: the users are packed.  Entries without a name are left out, the k-th that
// has one is row k, and row 1 tells how many there are.

constexpr bool has_name(const UserEntry& user) {
    return user.username[0] != '\0';
}

// save[0] stores one user, save[1] the number of users in the third index.
int save_users(const Table& t, const bool (&filled)[32]) {
    if (const Result r = ensure_rows(t, t.set, {}); r != kDone)
        return result_of(t, r);
    int packed = 0;
    for (int i = 0; i < t.row_count(); ++i) {
        if (!filled[i])
            continue;
        const std::byte* entry = row_at(t, t.save[0], {.inner = i});
        const RowIndex row{.inner = packed++};
        if (const int rc = execute(t.save[0], entry, row); rc != 0) {
            log_table(t.set, t.says.write, rc, rendered(t.save[0], entry, row));
            return result_of(t, kWriteFailed);
        }
    }
    if (const int rc = execute(t.save[1], nullptr, {.third = packed}); rc != 0) {
        log_table(t.set, t.says.write, rc);
        return result_of(t, kWriteFailed);
    }
    return kDone;
}

template <std::size_t N>
void find_filled(const UserEntry (&users)[N], bool (&filled)[N]) {
    for (std::size_t i = 0; i < N; ++i)
        filled[i] = has_name(users[i]);
}

int save_user_list(const Table& t, int) {
    bool filled[32];
    find_filled(get_cfg_param()->users.user, filled);
    return save_users(t, filled);
}

// The first entry of the secure list is always the administrator; which entries are stored is decided
// before it is.
int save_secure_user_list(const Table& t, int) {
    auto& users = get_cfg_param()->users.sec_user;
    bool filled[32];
    find_filled(users, filled);
    UserEntry administrator = users[0];
    std::memset(administrator.username, 0, sizeof administrator.username);
    std::memcpy(administrator.username, "admin", 5);
    administrator.permission = 0xFFFFFFFF;
    administrator.priority = administrator.user_level = 2;
    administrator.preview_permision = administrator.record_permision = 0xFFFFFFFF;
    administrator.playback_permision = administrator.ptzctrl_permision = 0xFFFFFFFF;
    users[0] = administrator;
    return save_users(t, filled);
}

int load_users(const Table& t) {
    Rows rows(t);
    int64_t users = 0;
    for (int i = 0; rows.next(); ++i) {
        if (i == 0)
            users = std::min<int64_t>(rows.key("user_num", 0), t.row_count());
        if (i >= users || rows.is_null(rows.column("username")))
            break;
        rows.read(t.save[0], row_at(t, t.save[0], {.inner = i}), {.inner = i});
    }
    if (rows.error() != 0) {
        log_table(t.get, t.says.open, rows.error());
        return result_of(t, kQueryFailed);
    }
    return kDone;
}

// ------------------------------------------------------------------------------------- regions of interest
//
// Not rows of the catalogue: one table holds four kinds of region for every channel and stream, told
// apart by the column `type`, and a missing row is added wherever it is missing.

struct RoiKind {
    const char* function;
    int type;
    int count;          // regions of a stream
    std::size_t first;  // where they lie in StreamRoi, and how far apart
    std::size_t stride;
    const Statement& there;  // several regions: selects the numbers of those that have a row; one: counts it
    const Statement& fill;
    const Statement& save;
};

namespace roi {

// The first two indexes are the channel and the stream, the third the region.
using Keys = KeyList<[] { return keys_of(outer("chan_idx"), inner("streamidx"), third("type_idx")); }>;

#define OF_STREAM(path) ELSEWHERE_IN(encoding.roi, path)

using Shape = single_row<RoiArea>;
using Row = RoiArea;
#define AREA FIELDS(enable, level, x, y, w, h)
constexpr auto& kSaveFace =
    ONE("update roi_conf_table set face_num=%d, enable=%d, level=%d, x=%d, y=%d, w=%d, h=%d where chan_idx = "
        "%d and "
        "streamidx = %d and type = 2;",
        OF_STREAM(face_num), AREA);
constexpr auto& kSaveMoveTrack =
    ONE("update roi_conf_table set enable=%d, level=%d, x=%d, y=%d, w=%d, h=%d where chan_idx=%d and "
        "streamidx=%d and "
        "type=3;",
        AREA);
constexpr auto& kSavePlate =
    ONE("update roi_conf_table set plate_num=%d, enable=%d,level=%d, x=%d, y=%d, w=%d, h=%d  where "
        "type_idx=%d and "
        "type=4 and streamidx=%d and chan_idx = %d;",
        OF_STREAM(plate_num), AREA);
#undef AREA

namespace region {
using Row = RoiRegion;
constexpr auto& kSave =
    ONE("update roi_conf_table set region_num=%d,enable=%d,level=%d, x=%d, y=%d, w=%d, h=%d, name='%q' where "
        "type_idx=%d and type=1 and streamidx=%d and chan_idx = %d;",
        OF_STREAM(region_num), FIELDS(area.enable, area.level, area.x, area.y, area.w, area.h, name));
}  // namespace region

#define ONE_AREA_FILL                                                                                        \
    "insert into roi_conf_table (chan_idx, streamidx, type, type_idx, region_num, face_num, enable, level, " \
    "x, y, w, "                                                                                              \
    "h, name) values(%d, %d, %d, 1, 0, 0, 0, 0, 0, 0, 0, 0, '');"

constexpr RoiKind kKinds[] = {
    {"db_save_roi_region_cfg_single", 1, std::size(StreamRoi{}.region), offsetof(StreamRoi, region),
     sizeof(RoiRegion),
     ONE("select type_idx from roi_conf_table where type=1 and chan_idx = %d and streamidx=%d;"),
     ONE("insert into roi_conf_table(chan_idx, streamidx, region_num, face_num, type,type_idx,enable,level, "
         "x, y, w, h, "
         "name) values (%d,%d,0,0,1,%d,0,0,0,0,0,0,'');"),
     region::kSave},
    {"db_save_roi_face_cfg_single", 2, 1, offsetof(StreamRoi, face), 0,
     ONE("select count(*) from roi_conf_table where chan_idx = %d and streamidx = %d and type = 2;"),
     ONE(ONE_AREA_FILL, value("type", 2)), kSaveFace},
    {"db_save_roi_move_track_cfg_single", 3, 1, offsetof(StreamRoi, move_track), 0,
     ONE("select count(*) from roi_conf_table where chan_idx = %d and streamidx = %d and type = 3;"),
     ONE(ONE_AREA_FILL, value("type", 3)), kSaveMoveTrack},
    {"db_save_roi_plate_cfg_sigle", 4, std::size(StreamRoi{}.plate), offsetof(StreamRoi, plate),
     sizeof(RoiArea),
     ONE("select type_idx from roi_conf_table where type=4 and chan_idx = %d and streamidx=%d;"),
     ONE("insert into roi_conf_table(chan_idx, streamidx, region_num, face_num, plate_num, "
         "type,type_idx,enable,level, x, "
         "y, w, h, name) values (%d, %d,0,0,0,4,%d,0,0,0,0,0,0,'');"),
     kSavePlate},
};
constexpr int kMaxRegions = 8;

const RoiKind* kind_of_type(int64_t type) {
    for (const RoiKind& k : kKinds)
        if (k.type == type)
            return &k;
    return nullptr;
}

std::byte* region_at(const RoiKind& kind, RowIndex index) {
    return reinterpret_cast<std::byte*>(&get_cfg_param()->encoding.roi[index.outer][index.inner]) +
           kind.first + static_cast<std::size_t>(index.third) * kind.stride;
}

Result save_kind(const Table& t, const RoiKind& kind, RowIndex index) {
    bool there[kMaxRegions] = {};
    Rows rows(kind.there, index);
    while (rows.next()) {
        const int64_t n = rows.number(0);
        if (kind.count == 1)
            there[0] = n > 0;
        else if (n >= 1 && n <= kind.count)
            there[n - 1] = true;
    }
    if (rows.error() != 0) {
        log_table(kind.function, t.says.count, rows.error());
        return kQueryFailed;
    }
    for (index.third = 0; index.third < kind.count; ++index.third) {
        const std::byte* region = region_at(kind, index);
        if (!there[index.third])
            if (const int rc = execute(kind.fill, nullptr, index); rc != 0) {
                log_table(kind.function, "insert into roi_conf_table err \n", rc);
                return kInsertFailed;
            }
        if (const int rc = execute(kind.save, region, index); rc != 0) {
            log_table(kind.function, t.says.write, rc);
            return kWriteFailed;
        }
    }
    return kDone;
}

int save(const Table& t, int channel) {
    for (int stream = 0; stream < kMaxStreams; ++stream)
        for (const RoiKind& kind : kKinds)
            if (const Result r = save_kind(t, kind, {channel, stream}); r != kDone) {
                log_table(t.single, "db_save_roi_config_single error channel_no = %d:\n", channel);
                return result_of(t, r);
            }
    return kDone;
}

// Reads every row into the region that `place` finds for it; a row without one is passed over.
template <class Place>
int load_rows(const Table& t, Place place) {
    Rows rows(t);
    while (rows.next()) {
        const int64_t channel = rows.key("chan_idx", 1) - 1;
        if (channel < 0 || channel >= channel_count()) {
            log_table(t.get, "invalid channel_no: %d\n", channel);
            continue;
        }
        const int64_t stream = rows.key("streamidx", 0) - 1;
        if (stream < 0 || stream >= kMaxStreams) {
            log_table(t.get, "invalid streamidx: %d\n", stream);
            continue;
        }
        RowIndex index{static_cast<int>(channel), static_cast<int>(stream)};
        const RoiKind* kind = kind_of_type(rows.key("type", 0));
        if (kind != nullptr && place(rows, *kind, index))
            rows.read(kind->save, region_at(*kind, index), index);
    }
    if (rows.error() != 0) {
        log_table(t.get, t.says.open, rows.error());
        return result_of(t, kQueryFailed);
    }
    return kDone;
}

int load(const Table& t) {
    return load_rows(t, [&t](const Rows& rows, const RoiKind& kind, RowIndex& index) {
        if (kind.count == 1)
            return true;
        const int64_t region = rows.key("type_idx", 0) - 1;
        if (region < 0 || region >= kind.count) {
            log_table(t.get, "invalid idx: %d\n", region);
            return false;
        }
        index.third = static_cast<int>(region);
        return true;
    });
}

constexpr auto& kLegacyCount =
    ONE("select count(*) from sqlite_master where type='table' and name= 'roi_param_table';");

// The table of older schemas: no channel, and the regions of a stream in the order of their rows.
int load_legacy(const Table& t) {
    int64_t tables = 0;
    if (const int rc = count_rows(kLegacyCount, {}, tables); rc != 0) {
        log_table(t.get, t.says.count, rc);
        return kQueryFailed;
    }
    if (tables == 0) {
        log_table(t.get, " roi_param_table is not exist\n");
        return kDone;
    }
    int next[kMaxStreams] = {};
    return load_rows(t, [&next](const Rows&, const RoiKind& kind, RowIndex& index) {
        if (kind.count > 1)
            index.third = next[index.inner]++;
        return index.third < kind.count;
    });
}

#undef ONE_AREA_FILL
#undef OF_STREAM

}  // namespace roi

// ------------------------------------------------------------------------------------- tables

#define USER_LIST_FILL(table)                                                                    \
    "insert into  " table                                                                        \
    "(idx,username,passwd,ipv4_addr,ipv6_addr,mac_addr,permission,priority,user_level,user_num," \
    "preview_permision,playback_permision,record_permision,ptzctrl_permision) values "           \
    "(%d,'','',0,'','',0,0,0,0,0,0,0,0);"
#define USER_LIST_SAVE(table)                                                                         \
    "update " table                                                                                   \
    " set username='%q',passwd='%q',ipv4_addr=%u,ipv6_addr='%q',mac_addr='%q',permission=%d,"         \
    "priority=%d,user_level=%d,preview_permision=%llu,playback_permision=%llu,record_permision=%llu," \
    "ptzctrl_permision=%llu where idx = %d;"
#define USER_RIGHTS                                                                                   \
    FIELDS(permission, priority, user_level, preview_permision, playback_permision, record_permision, \
           ptzctrl_permision)

constexpr Table kTables[] = {
    // The device's identity and the main application's marks on its parameters.
    TABLE_BY(
        single_row, device.dev_info, (), .number = 1, .get = "db_get_dev_info", .set = "db_set_dev_info",
        .says = {.write = "update dev_info error:\n",
                 .count = "db_query_row_num error:\n",
                 .insert = "insert into dev_info error:\n",
                 .empty = "db_query_rec_count_v2 error: %d\n"},
        .count = SQL("select count(*) from dev_info;"),
        .fill = SAVE("insert into dev_info(dev_id,dev_name,dev_type,language,magic_num,para_len,para_version,"
                     "check_sum)values (1,'ipccamera',1,'2',%d,0,0,0);",
                     value("magic_num", 0x515A5256)),
        .save =
            SAVE("update dev_info set dev_id=%d,dev_name='%q',dev_type=%d,language = %d,magic_num = %d,"
                 "para_len = %d,para_version = %d,check_sum=%d;",
                 FIELDS(dev_id, dev_name, dev_type, language, magic_num, para_len, para_version, check_sum))),

    // Hardware switches: arming, lens steps, ageing, stream sending.
    TABLE(
        per_sensor, device.hwconfig, .number = 2, .get = "db_get_hwconfig", .set = "db_set_hwconfig",
        .says = {.empty = "db_query_rec_count_v2 error: %d\n"},
        .save = SAVE(
            "replace into dev_hwconfig_info (idx, arm_status, lens_focus_step, lens_zoom_step, aging_mode, "
            "aging_time, streamsend_enable) values(%d, %d, %d, %d, %d, %d, %d);",
            FIELDS(arm_status, lens_focus_step, lens_zoom_step, aging_mode, aging_time, streamsend_enable))),

    // The on-screen display of a channel: name, date, logos, battery, colour.
    TABLE_BY(per_channel, channel, (outer("chn_index")), .number = 3, .get = "db_get_chn_info",
             .set = "db_set_chn_info", .single = "db_set_chn_info_single",
             .says = {.write = "SQL error: %s\n"}, .bad_key_ends_load = true, .load_limit = kMaxChannels,
             .save = SAVE(
                 "replace into chn_info (chn_index, name, name_enable, osd_type, osd_attr, hour_osd_type, "
                 "week_disp_enable, am_pm_flag, ps_send_pack_len, enable_date,osd_size, logo_param, "
                 "osd_color_type, rgb_red, rgb_green, rgb_blue, battery_osd_enable,battery_osd_position_x, "
                 "battery_osd_position_y, byalignment) values(%d, '%q', %d, %d, %d, %d, %d, %d, %d, "
                 "%d,'%q', '%q', %d, %d, %d, %d, %d, %d, %d, %u);",
                 FIELDS(name, name_enable, osd_type, osd_attr, hour_osd_type, week_disp_enable),
                 as("am_pm_flag", F(hour_osd_type)), ELSEWHERE(encoding.ps_send_pack_len), F(enable_date),
                 CODED(osd_size, kOsdSize), CODED(logo_param, kLogos),
                 FIELDS(osd_color_type, rgb_red, rgb_green, rgb_blue, battery_osd_enable,
                        battery_osd_position_x, battery_osd_position_y, byalignment))),

    // The encoder settings of every stream of a channel.
    TABLE_BY(
        per_channel_list, encoding.stream,
        (outer("channel_no"), inner("stream_index", 0), inner("chn_index")), .number = 4,
        .get = "db_get_comp_info", .set = "db_set_comp_info", .single = "db_set_comp_info_single",
        .says = {.write = "save chn_comp_info err \n",
                 .empty = "record num error: %d\n",
                 .save_key = "Invalid channel_no-%d\n",
                 .load_row = "invalid stream_no: %d\n",
                 .wrapper = "update chn_comp_info err \n"},
        .save = SAVE(
            "replace into chn_comp_info (chn_index, stream_index, channel_no, video_enc_type, stream_type, "
            "resolution, bps_type, bitrate, framerate, iframe_inter, bframe_num, eframe_num, quality, "
            "enc_complexity, pack_type, rtp_package_len, line_encode, audio_enc_type, enable_svc, "
            "audio_bitrate, qp_offset, audio_samplerate, is_smart_h264_enable, average_code_rate, "
            "smooth_preview_value) values(%d, %d, %d, %d, %d, %d, %d, %u, %u, %d, %d, %d, %d, %d, %d, %u, "
            "%d, %d, %d, %d, %d, %d, %d, %d, %u);",
            FIELDS(video_enc_type, stream_type, resolution, bps_type, bitrate, framerate, iframe_inter,
                   bframe_num, eframe_num, quality, enc_complexity, pack_type, rtp_package_len, line_encode,
                   audio_enc_type, enable_svc, audio_bitrate, qp_offset, audio_samplerate,
                   is_smart_h264_enable, average_code_rate, smooth_preview_value))),

    // Audio input and speaker.
    TABLE(single_row, encoding.audio_param, .number = 5, .get = "db_get_audio_info",
          .set = "db_set_audio_info",
          .save =
              SAVE("replace into audio_param_info (idx, vt_type, audio_in_type, audio_gain, b_audio_denoise, "
                   "speak_volume)values(1, %d, %d, %d, %d, %d);",
                   FIELDS(vt_type, audio_in_type, audio_gain, b_audio_denoise, speak_volume))),

    // Users and their rights.
    TABLE_BY(list, users.user, (inner("idx"), third("user_num", 0)), .number = 6, .get = "db_get_usr_info",
             .set = "db_set_usr_info",
             .says = {.count = "db_query_row_num error rc %d:\n", .insert = "SQL error:\n"},
             .count = SQL("select count(*) from user_mana_info;"),
             .fill = SQL(USER_LIST_FILL("user_mana_info")),
             .save = PUTS(PUT(USER_LIST_SAVE("user_mana_info"), FIELDS(username, passwd, ipv4_addr),
                              COLONS(ipv6_addr), DIGITS(mac_addr), USER_RIGHTS),
                          PUT_FOR(1, 1, "update user_mana_info set user_num=%d where idx = 1;")),
             .load_body = load_users, .save_body = save_user_list),

    // Points and rectangles on the picture: OSD places, regions, an area by its diagonal.
    TABLE_BY(
        per_channel, encoding.coordinate_region, (outer("chn_index"), inner("idx")), .number = 7,
        .get = "db_get_coordinate_list", .set = "db_set_coordinate_list",
        .single = "db_set_coordinate_list_single",
        .says = {.count = "db_query_row_num error\n", .insert = "SQL error:\n"}, .rows = 10,
        .count = SQL("select count(*) from coordinate_region_list where chn_index = %d;"),
        .fill = SQL("insert into  coordinate_region_list(idx, chn_index,role_of_coor,coor_type,xcoordinate,"
                    "ycoordinate,diagonal_x,diagonal_y,width,height)values (%d,%d,0,1,0,0,0,0,0,0);"),
        .save =
            PUTS(PUT_BLOCK(1, 1, 0,
                           "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,"
                           "ycoordinate=%d where idx = 1 and chn_index = %d;",
                           value("role_of_coor", 1), value("coor_type", 1),
                           FIELDS(point[0].xcoordinate, point[0].ycoordinate)),
                 PUT_BLOCK(2, 2, 0,
                           "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,"
                           "ycoordinate=%d where idx = 2 and chn_index = %d;",
                           value("role_of_coor", 2), value("coor_type", 1),
                           FIELDS(point[1].xcoordinate, point[1].ycoordinate)),
                 PUT_BLOCK(5, 5, 0,
                           "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,"
                           "ycoordinate=%d,width=%d,height=%d where idx = 5 and chn_index = %d;",
                           value("role_of_coor", 5), value("coor_type", 2),
                           FIELDS(rect[0].xcoordinate, rect[0].ycoordinate, rect[0].width, rect[0].height)),
                 PUT_BLOCK(6, 9, sizeof(CoordinateRect),
                           "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,"
                           "ycoordinate=%d,width=%d,height=%d where idx = %d and chn_index = %d;",
                           value("role_of_coor", 6), value("coor_type", 2),
                           FIELDS(rect[1].xcoordinate, rect[1].ycoordinate, rect[1].width, rect[1].height)),
                 PUT_BLOCK(10, 10, 0,
                           "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,"
                           "ycoordinate=%d,diagonal_x=%d,diagonal_y=%d where idx = 10 and chn_index = %d;",
                           value("role_of_coor", 7), value("coor_type", 3),
                           FIELDS(diagonal.xcoordinate, diagonal.ycoordinate, diagonal.diagonal_x,
                                  diagonal.diagonal_y)))),

    // Regions of interest of an older schema; read until the table is gone.
    TABLE(single_row, encoding.roi, .number = 89, .get = "db_get_roi_param",
          .says = {.open = "db_query_open_v2 roi_param_table error: %d\n"}, .graded = true,
          .load = SQL("select * from roi_param_table;"), .load_body = roi::load_legacy),

    // Regions of interest of every stream: regions, face, moving object, licence plates.
    TABLE_BY(per_channel, encoding.roi, (outer("chan_idx")), .number = 90, .get = "db_get_roi_config",
             .set = "db_save_roi_config", .single = "db_save_roi_config_single",
             .says = {.write = "update roi_conf_table error:\n",
                      .count = "db_query_row_num error\n",
                      .open = " db_query_open_v2 err\n",
                      .save_key = "param err, channel_no=%d, stream_no=0\n",
                      .wrapper = "db_save_roi_config err--channel_no = %d:\n"},
             .load = SQL("select * from roi_conf_table;"), .load_body = roi::load, .save_body = roi::save),

    // The users of the secure list; names and passwords are stored encrypted.
    TABLE_BY(list, users.sec_user, (inner("idx"), third("user_num", 0)), .number = 188,
             .get = "db_get_sec_user_info", .set = "db_set_sec_user_info",
             .says = {.count = "db_query_row_num error rc %d:\n", .insert = "SQL error:\n"},
             .count = SQL("select count(*) from sec_user_mana_info;"),
             .fill = SQL(USER_LIST_FILL("sec_user_mana_info")),
             .save = PUTS(
                 PUT(USER_LIST_SAVE("sec_user_mana_info"), ENCRYPTED(username, 128), ENCRYPTED(passwd, 64),
                     F(ipv4_addr), COLONS(ipv6_addr), DIGITS(mac_addr), USER_RIGHTS),
                 PUT_FOR(1, 1, "update sec_user_mana_info set user_num=%d where idx = 1;")),
             .load_body = load_users, .save_body = save_secure_user_list),

    // Voice change of the speaker.
    TABLE_BY(single_row, encoding.voice_change, (always("idx", 1), always("chan_no", 1)), .number = 221,
             .get = "db_get_voice_change_cfg", .set = "db_save_voice_change_cfg",
             .says = {.write = "SQL error\n"}, .graded_access = true,
             .save = SAVE(
                 "replace into voice_change_cfg (idx, chan_no, b_enable, voice_change_level) values(%d, %d, "
                 "%u, %d);",
                 FIELDS(b_enable, voice_change_level)),
             .load = SQL("select * from voice_change_cfg where idx = 1 and chan_no = 1;")),
};

}  // namespace

const std::span<const Table> kDeviceTables = kTables;
