// Device identity, channels, encoding streams, audio, users, regions of interest.
#include <cstring>

#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

// ------------------------------------------------------------------------------------- text forms

// A logo: two bytes and four 16-bit values of its sixteen bytes.
constexpr ListItem kLogoItems[] = {{offsetof(LogoRecord, byte_value[0]), Kind::u8, 3},
                                   {offsetof(LogoRecord, byte_value[1]), Kind::u8, 3},
                                   {offsetof(LogoRecord, word_value[0]), Kind::u16, 5},
                                   {offsetof(LogoRecord, word_value[1]), Kind::u16, 5},
                                   {offsetof(LogoRecord, word_value[2]), Kind::u16, 5},
                                   {offsetof(LogoRecord, word_value[3]), Kind::u16, 5}};
constexpr TextCodec kLogos{encode_list,        decode_list, kLogoItems, std::size(ChannelBlock{}.logo_param),
                           sizeof(LogoRecord), ','};

// The OSD size, eight bytes; without the column the first two mean "as large as fits".
constexpr TextCodec kOsdSize = [] {
    TextCodec codec = kArray<decltype(ChannelBlock::osd_size), ',', 3>;
    codec.absent = [](std::byte* member) { std::memset(member, 255, 2); };
    return codec;
}();

// ------------------------------------------------------------------------------------- tables

// A region of interest of a stream: eight regions, a face, a moving object and eight plates are the rows 1 to 18.
constexpr int kRegions = 18;
static_assert(std::size(StreamRoi{}.region) == 8 && std::size(StreamRoi{}.plate) == 8);
#define AREA(path) FIELDS(path.enable, path.level, path.x, path.y, path.w, path.h)
#define REGIONS(text) \
    PUT_BLOCK(1, 8, sizeof(RoiRegion), text, of_holder(F(region_num)), AREA(region[0].area), F(region[0].name))
#define FACE(text) PUT_BLOCK(9, 9, 0, text, F(face_num), AREA(face))
#define MOVING_OBJECT(text) PUT_BLOCK(10, 10, 0, text, AREA(move_track))
#define PLATES(text) PUT_BLOCK(11, 18, sizeof(RoiArea), text, of_holder(F(plate_num)), AREA(plate[0]))

namespace device {

constexpr Table kTables[] = {
    // The device's identity and the main application's marks on its parameters.
    ENSURE_BY(single_row, device.dev_info, (), 1, "db_get_dev_info", "db_set_dev_info",
              .says = {.write = "update %T error:\n",
                       .count = "db_query_row_num error:\n",
                       .insert = "insert into %T error:\n",
                       .empty = "db_query_rec_count_v2 error: %d\n"},
              .fill = SAVE("insert into dev_info(dev_id,dev_name,dev_type,language,magic_num,para_len,para_version,check_sum)values (1,'ipccamera',1,'2',%d,0,0,0);",
                           value("magic_num", 0x515A5256)),
              .save = SAVE("update dev_info set dev_id=%d,dev_name='%q',dev_type=%d,language = %d,magic_num = %d,para_len = %d,para_version = %d,check_sum=%d;",
                           FIELDS(dev_id, dev_name, dev_type, language, magic_num, para_len, para_version, check_sum))),

    // Hardware switches: arming, lens steps, ageing, stream sending.
    REPLACE(per_sensor, device.hwconfig, 2, "db_get_hwconfig", "db_set_hwconfig", .single = "",
            .says = {.empty = "db_query_rec_count_v2 error: %d\n"},
            .save = SAVE("replace into dev_hwconfig_info (idx, arm_status, lens_focus_step, lens_zoom_step, aging_mode, aging_time, streamsend_enable) values(%d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(arm_status, lens_focus_step, lens_zoom_step, aging_mode, aging_time,
                                streamsend_enable))),

    // The on-screen display of a channel: name, date, logos, battery, colour.
    REPLACE_BY(per_channel, channel, (outer("chn_index")), 3, "db_get_chn_info", "db_set_chn_info",
               .says = {.write = "SQL error: %s\n"}, .bad_key_ends_load = true, .load_limit = kMaxChannels,
               .save = SAVE("replace into chn_info (chn_index, name, name_enable, osd_type, osd_attr, hour_osd_type, week_disp_enable, am_pm_flag, ps_send_pack_len, enable_date,osd_size, logo_param, osd_color_type, rgb_red, rgb_green, rgb_blue, battery_osd_enable,battery_osd_position_x, battery_osd_position_y, byalignment) values(%d, '%q', %d, %d, %d, %d, %d, %d, %d, %d,'%q', '%q', %d, %d, %d, %d, %d, %d, %d, %u);",
                            FIELDS(name, name_enable, osd_type, osd_attr, hour_osd_type, week_disp_enable),
                            as("am_pm_flag", F(hour_osd_type)), ELSEWHERE(encoding.ps_send_pack_len), F(enable_date),
                            CODED(osd_size, kOsdSize), CODED(logo_param, kLogos),
                            FIELDS(osd_color_type, rgb_red, rgb_green, rgb_blue, battery_osd_enable,
                                   battery_osd_position_x, battery_osd_position_y, byalignment)),
               .unstored = UNSTORED(Unstored{"name_attr", "never written"})),

    // The encoder settings of every stream of a channel.
    REPLACE_BY(per_channel_list, encoding.stream, (outer("channel_no"), inner("stream_index", 0), inner("chn_index")),
               4, "db_get_comp_info", "db_set_comp_info",
               .says = {.write = "save %T err \n",
                        .empty = "record num error: %d\n",
                        .save_key = "Invalid channel_no-%d\n",
                        .load_row = "invalid stream_no: %d\n",
                        .wrapper = "update %T err \n"},
               .graded = {.set = codes(-7)},
               .save = SAVE("replace into chn_comp_info (chn_index, stream_index, channel_no, video_enc_type, stream_type, resolution, bps_type, bitrate, framerate, iframe_inter, bframe_num, eframe_num, quality, enc_complexity, pack_type, rtp_package_len, line_encode, audio_enc_type, enable_svc, audio_bitrate, qp_offset, audio_samplerate, is_smart_h264_enable, average_code_rate, smooth_preview_value) values(%d, %d, %d, %d, %d, %d, %d, %u, %u, %d, %d, %d, %d, %d, %d, %u, %d, %d, %d, %d, %d, %d, %d, %d, %u);",
                            FIELDS(video_enc_type, stream_type, resolution, bps_type, bitrate, framerate, iframe_inter,
                                   bframe_num, eframe_num, quality, enc_complexity, pack_type, rtp_package_len,
                                   line_encode, audio_enc_type, enable_svc, audio_bitrate, qp_offset, audio_samplerate,
                                   is_smart_h264_enable, average_code_rate, smooth_preview_value)),
               .unstored = UNSTORED(Unstored{"contain_ext", "never written"})),

    // Audio input and speaker.
    REPLACE(single_row, encoding.audio_param, 5, "db_get_audio_info", "db_set_audio_info",
            .save = SAVE("replace into audio_param_info (idx, vt_type, audio_in_type, audio_gain, b_audio_denoise, speak_volume)values(1, %d, %d, %d, %d, %d);",
                         FIELDS(vt_type, audio_in_type, audio_gain, b_audio_denoise, speak_volume))),

    // Points and rectangles on the picture: OSD places, regions, an area by its diagonal.
    ENSURE_BY(per_channel, encoding.coordinate_region, (outer("chn_index"), inner("idx")), 7, "db_get_coordinate_list",
              "db_set_coordinate_list", .says = {.count = "db_query_row_num error\n", .insert = "SQL error:\n"},
              .rows = 10,
              .fill = SQL("insert into  coordinate_region_list(idx, chn_index,role_of_coor,coor_type,xcoordinate,ycoordinate,diagonal_x,diagonal_y,width,height)values (%d,%d,0,1,0,0,0,0,0,0);"),
              .save = PUTS(PUT_BLOCK(1, 1, 0,
                                     "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,ycoordinate=%d where idx = 1 and chn_index = %d;",
                                     value("role_of_coor", 1), value("coor_type", 1),
                                     FIELDS(point[0].xcoordinate, point[0].ycoordinate)),
                           PUT_BLOCK(2, 2, 0,
                                     "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,ycoordinate=%d where idx = 2 and chn_index = %d;",
                                     value("role_of_coor", 2), value("coor_type", 1),
                                     FIELDS(point[1].xcoordinate, point[1].ycoordinate)),
                           PUT_BLOCK(5, 5, 0,
                                     "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,ycoordinate=%d,width=%d,height=%d where idx = 5 and chn_index = %d;",
                                     value("role_of_coor", 5), value("coor_type", 2),
                                     FIELDS(rect[0].xcoordinate, rect[0].ycoordinate, rect[0].width, rect[0].height)),
                           PUT_BLOCK(6, 9, sizeof(CoordinateRect),
                                     "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,ycoordinate=%d,width=%d,height=%d where idx = %d and chn_index = %d;",
                                     value("role_of_coor", 6), value("coor_type", 2),
                                     FIELDS(rect[1].xcoordinate, rect[1].ycoordinate, rect[1].width, rect[1].height)),
                           PUT_BLOCK(10, 10, 0,
                                     "update coordinate_region_list set role_of_coor=%d,coor_type=%d,xcoordinate=%d,ycoordinate=%d,diagonal_x=%d,diagonal_y=%d where idx = 10 and chn_index = %d;",
                                     value("role_of_coor", 7), value("coor_type", 3),
                                     FIELDS(diagonal.xcoordinate, diagonal.ycoordinate, diagonal.diagonal_x,
                                            diagonal.diagonal_y))),
              .unused_rows = UNUSED_ROWS(3, 4)),

    // Regions of interest of an older schema, without a channel and in the order of their rows.
    READ_ONLY_BY(per_channel_list, encoding.roi, (outer("chan_idx"), inner("streamidx"), within(third("type_idx"))), 89,
                 "db_get_roi_param",
                 .says = {.open = "db_query_open_v2 roi_param_table error: %d\n",
                          .empty = "db_query_rec_count_v2 error: %d\n",
                          .load_key = "invalid channel_no: %d\n",
                          .load_middle = "invalid streamidx: %d\n"},
                 .graded = {.get = codes(-2)}, .by_position = true, .rows = kRegions,
                 .save = PUTS(REGIONS("select region_num, enable, level, x, y, w, h, name from roi_param_table where type = 1;"),
                              FACE("select face_num, enable, level, x, y, w, h from roi_param_table where type = 2;"),
                              MOVING_OBJECT("select enable, level, x, y, w, h from roi_param_table where type = 3;"),
                              PLATES("select plate_num, enable, level, x, y, w, h from roi_param_table where type = 4;")),
                 .load = SQL("select * from roi_param_table;"), .of_older_schema = true),

    // Regions of interest of every stream: regions, face, moving object, licence plates.
    FILL_MISSING_BY(per_channel_list, encoding.roi, (outer("chan_idx"), inner("streamidx"), within(third("type_idx"))),
                    90, "db_get_roi_config", "db_save_roi_config",
                    .says = {.write = "update roi_conf_table error:\n",
                             .count = "db_query_row_num error\n",
                             .open = " db_query_open_v2 err\n",
                             .empty = " db_query_rec_count_v2 err\n",
                             .save_key = "param err, channel_no=%d, stream_no=0\n",
                             .load_key = "invalid channel_no: %d\n",
                             .load_middle = "invalid streamidx: %d\n",
                             .load_row = "invalid idx: %d\n",
                             .wrapper = "db_save_roi_config err--channel_no = %d:\n",
                             .part = "db_save_roi_config_single error channel_no = %d:\n"},
                    .rows = kRegions,
                    .fill = PUTS(PUT_BLOCK(1, 8, 0,
                                           "insert into roi_conf_table(chan_idx, streamidx, region_num, face_num, type,type_idx,enable,level, x, y, w, h, name) values (%d,%d,0,0,1,%d,0,0,0,0,0,0,'');"),
                                 PUT_BLOCK(9, 9, 0,
                                           "insert into roi_conf_table (chan_idx, streamidx, type, type_idx, region_num, face_num, enable, level, x, y, w, h, name) values(%d, %d, %d, 1, 0, 0, 0, 0, 0, 0, 0, 0, '');",
                                           value("type", 2)),
                                 PUT_BLOCK(10, 10, 0,
                                           "insert into roi_conf_table (chan_idx, streamidx, type, type_idx, region_num, face_num, enable, level, x, y, w, h, name) values(%d, %d, %d, 1, 0, 0, 0, 0, 0, 0, 0, 0, '');",
                                           value("type", 3)),
                                 PUT_BLOCK(11, 18, 0,
                                           "insert into roi_conf_table(chan_idx, streamidx, region_num, face_num, plate_num, type,type_idx,enable,level, x, y, w, h, name) values (%d, %d,0,0,0,4,%d,0,0,0,0,0,0,'');")),
                    .save = PUTS(
                        logs_as("db_save_roi_region_cfg_single",
                                REGIONS("update roi_conf_table set region_num=%d,enable=%d,level=%d, x=%d, y=%d, w=%d, h=%d, name='%q' where type_idx=%d and type=1 and streamidx=%d and chan_idx = %d;")),
                        logs_as("db_save_roi_face_cfg_single", FACE(
                                                                   "update roi_conf_table set face_num=%d, enable=%d, level=%d, x=%d, y=%d, w=%d, h=%d where chan_idx = %d and streamidx = %d and type = 2;")),
                        logs_as("db_save_roi_move_track_cfg_single",
                                MOVING_OBJECT("update roi_conf_table set enable=%d, level=%d, x=%d, y=%d, w=%d, h=%d where chan_idx=%d and streamidx=%d and type=3;")),
                        logs_as("db_save_roi_plate_cfg_sigle",
                                PLATES("update roi_conf_table set plate_num=%d, enable=%d,level=%d, x=%d, y=%d, w=%d, h=%d  where type_idx=%d and type=4 and streamidx=%d and chan_idx = %d;"))),
                    .unstored = UNSTORED(Unstored{"idx", "the database's own number of the row"},
                                         Unstored{"type", "set once, with the default row"})),

    // Voice change of the speaker.
    REPLACE_BY(single_row, encoding.voice_change, (always("idx", 1), always("chan_no", 1)), 221,
               "db_get_voice_change_cfg", "db_save_voice_change_cfg", .says = {.write = "SQL error\n"},
               .graded = {.set = codes(-6, -7)},
               .save = SAVE("replace into voice_change_cfg (idx, chan_no, b_enable, voice_change_level) values(%d, %d, %u, %d);",
                            FIELDS(b_enable, voice_change_level)),
               .load = SQL("select * from voice_change_cfg where idx = 1 and chan_no = 1;")),
};

}  // namespace device

// Users and their rights: user_mana_info (db_get_usr_info, db_set_usr_info), and the secure list with names and
// passwords encrypted: sec_user_mana_info (db_get_sec_user_info, db_set_sec_user_info).
namespace users {

constexpr Messages kSays{.count = "db_query_row_num error rc %d:\n", .insert = "SQL error:\n"};

struct Plain {
    static constexpr int number = 6;
    static constexpr bool secure = false;
    static constexpr std::string_view table{}, function = "usr";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, users.user);
};
struct Secure {
    static constexpr int number = 188;
    static constexpr bool secure = true;
    static constexpr std::string_view table = "sec_", function = "sec_user";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, users.sec_user);
};

template <class Twin>
struct List {
    struct Root {
        UserEntry user[std::size(UserSection{}.user)];
    };
    static constexpr std::size_t kRootOffset = Twin::offset;
    static constexpr Field kept(Field f, uint16_t capacity) { return Twin::secure ? encrypted(f, capacity) : f; }
    static constexpr Table kTables[] = {
        PACKED_BY(list, user, (inner("idx"), third("user_num", 0)), Twin::number, "db_get_{f}_info", "db_set_{f}_info",
                  .by_position = true, .administrator = Twin::secure,
                  .fill = SQL("insert into  {t}user_mana_info(idx,username,passwd,ipv4_addr,ipv6_addr,mac_addr,permission,priority,user_level,user_num,preview_permision,playback_permision,record_permision,ptzctrl_permision) values (%d,'','',0,'','',0,0,0,0,0,0,0,0);"),
                  .save = PUTS(PUT("update {t}user_mana_info set username='%q',passwd='%q',ipv4_addr=%u,ipv6_addr='%q',mac_addr='%q',permission=%d,priority=%d,user_level=%d,preview_permision=%llu,playback_permision=%llu,record_permision=%llu,ptzctrl_permision=%llu where idx = %d;",
                                   kept(F(username), 128), kept(F(passwd), 64), F(ipv4_addr), COLONS(ipv6_addr),
                                   DIGITS(mac_addr),
                                   FIELDS(permission, priority, user_level, preview_permision, playback_permision,
                                          record_permision, ptzctrl_permision)),
                               PUT("update {t}user_mana_info set user_num=%d where idx = 1;"))),
    };
};

}  // namespace users

constexpr std::span<const Table> kGroups[] = {device::kTables, users::List<users::Plain>::kTables,
                                              users::List<users::Secure>::kTables};

}  // namespace

const Domain kDeviceTables = kGroups;

}  // namespace dbshell
