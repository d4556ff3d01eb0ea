// Serial ports, PTZ, domes.
#include <algorithm>
#include <cstring>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "engine.h"
#include "state.h"

namespace {

// ------------------------------------------------------------------------------------- text forms

// One member of every point of a port's cruise sequences, sequence by sequence.
template <std::size_t Offset, Kind K, uint8_t Width>
inline constexpr ListItem kPointItem[] = {{Offset, K, Width}};
template <std::size_t Offset, Kind K, uint8_t Width>
inline constexpr TextCodec kPoints{encode_list,
                                   decode_list,
                                   kPointItem<Offset, K, Width>,
                                   sizeof(PtzPort::sequence) / sizeof(PtzSequencePoint),
                                   sizeof(PtzSequencePoint),
                                   ','};
#define POINTS(column, member, kind, width) \
    as(column, CODED(port[0].sequence, (kPoints<offsetof(PtzSequencePoint, member), kind, width>)))

// One corner of the 16 electronic presets of a row.
template <std::size_t Offset>
inline constexpr ListItem kCornerItem[] = {{Offset, Kind::i32}};
template <std::size_t Offset>
inline constexpr TextCodec kCorners{encode_list, decode_list,        kCornerItem<Offset>,
                                    16,          sizeof(EptzPreset), ','};
#define CORNERS(member) coded(ROW_ITSELF(#member), kCorners<offsetof(EptzPreset, member)>)

// The names of a port's presets, with a comma behind every one.  A comma within a name would move all names
// behind it to the next preset: it is stored as a blank.
using PresetNames = decltype(PtzPort::presetName);

void encode_names(const TextCodec&, const std::byte* member, std::string& text) {
    PresetNames names;
    std::memcpy(&names, member, sizeof names);
    for (const auto& name : names) {
        const auto start = text.size();
        text.append(name, strnlen(name, sizeof name));
        std::replace(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), ',', ' ');
        text += ',';
    }
}

void decode_names(const TextCodec&, std::string_view text, std::byte* member) {
    constexpr std::size_t kLength = sizeof(PresetNames{}[0]);
    for (std::size_t i = 0; i < std::size(PresetNames{}) && !text.empty(); ++i, member += kLength) {
        const auto comma = std::min(text.find(','), text.size());
        const auto length = std::min(comma, kLength);
        std::memcpy(member, text.data(), length);
        std::memset(member + length, 0, kLength - length);
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
}

constexpr TextCodec kPresetNames{encode_names, decode_names, {}};

// ------------------------------------------------------------------------------------- for the odd tables

PtzSection& ptz() {
    return get_cfg_param()->ptz;
}

template <class Row>
std::byte* bytes_of(Row& row) {
    return reinterpret_cast<std::byte*>(&row);
}

int write_row(const Table& t, const Statement& s, const std::byte* row, RowIndex index) {
    const int rc = execute(s, row, index);
    if (rc == 0)
        return kDone;
    log_table(t.set, t.says.write, rc, rendered(s, row, index));
    return result_of(t, kWriteFailed);
}

// The result of a load when no row is left.
int load_end(const Table& t, const Rows& rows) {
    if (rows.error() == 0)
        return kDone;
    log_table(t.get, t.says.open, rows.error());
    return result_of(t, kQueryFailed);
}

// ensure_rows() for a number of rows that only the save knows.
Result ensure(const Table& t, int rows) {
    Table whole = t;
    whole.rows = rows;
    return ensure_rows(whole, t.set, {});
}

// ------------------------------------------------------------------------------------- serial ports
//
// Not rows of the catalogue: five columns of a port are bits of one word of the record.  The statements take
// a row with a member for each, which is unpacked from the word and packed into it again.

struct PortBits {
    int32_t baudrateIdx, databits, stopbits, parity, flowcontrol;
};

struct BitField {
    int32_t PortBits::*column;
    int first, count;

    constexpr uint32_t mask() const { return ((1u << count) - 1) << first; }
};
constexpr BitField kBitFields[] = {{&PortBits::baudrateIdx, 0, 4},
                                   {&PortBits::databits, 4, 2},
                                   {&PortBits::stopbits, 6, 1},
                                   {&PortBits::parity, 7, 2},
                                   {&PortBits::flowcontrol, 9, 2}};

// `Ports` is a copy of what the record holds.
template <class Ports>
struct PortRow {
    PortBits bits;
    Ports ports;
};

uint32_t& attribute_of(Serial& ports, int port) {
    return ports.attribute[port];
}
uint32_t& attribute_of(EduSerial& port, int) {
    return port.attribute;
}

template <class Ports>
PortRow<Ports> unpacked(const Ports& ports, int port) {
    PortRow<Ports> row{{}, ports};
    for (const BitField& f : kBitFields)
        row.bits.*f.column = static_cast<int32_t>((attribute_of(row.ports, port) & f.mask()) >> f.first);
    return row;
}

template <class Ports>
int save_port(const Table& t, const Statement& s, const Ports& ports, int port, RowIndex index) {
    PortRow<Ports> row = unpacked(ports, port);
    return write_row(t, s, bytes_of(row), index);
}

// Columns that are NULL and bits that no column holds keep their values.
template <class Ports>
void read_port(Rows& rows, const Statement& s, Ports& ports, int port) {
    PortRow<Ports> row = unpacked(ports, port);
    rows.read(s, bytes_of(row), {});
    uint32_t& attribute = attribute_of(row.ports, port);
    for (const BitField& f : kBitFields)
        attribute =
            (attribute & ~f.mask()) | ((static_cast<uint32_t>(row.bits.*f.column) << f.first) & f.mask());
    ports = row.ports;
}

#define PORT_BITS bits.baudrateIdx, bits.databits, bits.stopbits, bits.parity, bits.flowcontrol

namespace serial {

using Row = PortRow<Serial>;
using Shape = single_row<Row>;
using Keys = KeyList<[] { return keys_of(inner("serial_type")); }>;
constexpr int kPorts = std::size(Serial{}.attribute);
constexpr std::span<const Statement> kSave = PUTS(
    PUT("update serial_config_table set "
        "baudrateIdx=%d,databits=%d,stopbits=%d,parity=%d,flowcontrol=%d,rs232_mode=%d, rs232_address = %d "
        "where serial_type = 1;",
        FIELDS(PORT_BITS, ports.rs232_mode, ports.rs232_address)),
    PUT("update serial_config_table set "
        "baudrateIdx=%d,databits=%d,stopbits=%d,parity=%d,flowcontrol=%d,rs485_decode_type=%d,"
        "rs485_decode_addr=%d where serial_type = 2;",
        FIELDS(PORT_BITS, ports.rs485_decode_type, ports.rs485_decode_addr)));
static_assert(kSave.size() == kPorts);

int save(const Table& t, int) {
    if (const Result r = ensure(t, kPorts); r != kDone)
        return result_of(t, r);
    const Serial ports = ptz().serial;
    for (int port = 0; port < kPorts; ++port)
        if (const int rc = save_port(t, kSave[static_cast<std::size_t>(port)], ports, port, {}); rc != kDone)
            return rc;
    return kDone;
}

int load(const Table& t) {
    Rows rows(t);
    while (rows.next()) {
        const int64_t type = rows.key("serial_type", 0);
        if (type >= 1 && type <= kPorts)
            read_port(rows, kSave[static_cast<std::size_t>(type - 1)], ptz().serial,
                      static_cast<int>(type - 1));
    }
    return load_end(t, rows);
}

}  // namespace serial

// One RS-232 port per channel.
namespace edu_serial {

using Row = PortRow<EduSerial>;
using Shape = single_row<Row>;
constexpr int kType = 1;
using Keys = KeyList<[] { return keys_of(always("idx", 1), outer("chn_no"), always("serial_type", kType)); }>;
constexpr auto& kSave =
    ONE("replace into edu_serial_config_table (idx, chn_no, serial_type, baudrateIdx, databits, stopbits, "
        "parity, flowcontrol, rs232_mode, rs232_address) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
        FIELDS(PORT_BITS, ports.rs232_mode, ports.rs232_address));

int save(const Table& t, int channel) {
    return save_port(t, kSave, ptz().edu_serial[channel], 0, {channel});
}

int load(const Table& t) {
    Rows rows(t);
    while (rows.next()) {
        const int64_t channel = rows.key("chn_no", 1);
        if (channel < 1 || channel > channel_count())
            log_table(t.get, "invalid chan_no: %d\n", channel - 1);
        else if (rows.key("serial_type", kType) == kType)
            read_port(rows, kSave, ptz().edu_serial[channel - 1], 0);
    }
    return load_end(t, rows);
}

}  // namespace edu_serial

#undef PORT_BITS

// ------------------------------------------------------------------------------------- PTZ ports
//
// Loaded by position, not by idx: the k-th row is port k.

int load_ptz_config(const Table& t) {
    Rows rows(t);
    for (int port = 0; port < t.row_count() && rows.next(); ++port) {
        const RowIndex index{.inner = port};
        for (const Statement& s : t.save)
            if (s.serves(port))
                rows.read(s, row_at(t, s, index), index);
    }
    return load_end(t, rows);
}

// ------------------------------------------------------------------------------------- alarm actions
//
// Not rows of the catalogue: how many rows there are, and which alarm and trigger type a row belongs to,
// depends on how many alarms the device has.  They follow one another type by type.

constexpr int kTriggerTypes = std::size(PtzSection{}.ptz_index);

int save_alarm_trigger_ptz(const Table& t, int) {
    int alarms = 0;
    if (get_hardware_count(kAlarmInputs, &alarms) != 0) {
        log_table(t.set, "get_devcapa_data  HW_ALARMOUT_NUM error: \n");
        return result_of(t, kQueryFailed);
    }
    alarms = std::min(alarms, kMaxAlarms);
    if (alarms <= 0)
        return kDone;
    const int row_count = kTriggerTypes * alarms;
    if (const Result r = ensure(t, row_count); r != kDone)
        return result_of(t, r);
    for (int row = 0; row < row_count; ++row) {
        const RowIndex index{.outer = row / alarms, .inner = row, .third = row % alarms};
        const std::byte* action = bytes_of(ptz().ptz_index[index.outer][index.third]);
        if (const int rc = write_row(t, t.save[0], action, index); rc != kDone)
            return rc;
    }
    return kDone;
}

int load_alarm_trigger_ptz(const Table& t) {
    Rows rows(t);
    while (rows.next()) {
        const int64_t type = rows.key("trig_type", 0);
        const int64_t alarm = rows.key("chn", -1);
        if (type >= 1 && type <= kTriggerTypes && alarm >= 0 && alarm < kMaxAlarms)
            rows.read(t.save[0], bytes_of(ptz().ptz_index[type - 1][alarm]), {});
    }
    return load_end(t, rows);
}

// ------------------------------------------------------------------------------------- tables

constexpr Table kTables[] = {
    // The RS-232 and the RS-485 port.
    TABLE_BY(single_row, ptz.serial, (inner("idx"), inner("serial_type")), .number = 15,
             .get = "db_get_serial_config", .set = "db_set_serial_config",
             .count = SQL("select count(*) from serial_config_table;"),
             .fill = SQL("insert into serial_config_table(idx, serial_type, baudrateIdx, databits, stopbits, "
                         "parity, flowcontrol, rs232_mode, rs485_decode_type, rs485_decode_addr, "
                         "rs485_enable, rs232_address) values(%d, %d, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
             .load = SQL("select * from serial_config_table;"), .load_body = serial::load,
             .save_body = serial::save),

    // The numbers of the presets, cruises and tracks, kept in row 1, and the cruise sequences and preset
    // names of every port.
    TABLE_BY(
        single_row, ptz.ptz, (inner("idx")), .number = 16, .get = "db_get_ptz_config",
        .set = "db_set_ptz_config", .rows = std::size(PtzConfig{}.port),
        .count = SQL("select count(*) from ptz_config_info_list;"),
        .fill = SQL("insert into ptz_config_info_list(idx, port_index, ptzPreset, ptzCruise, ptzTrack, "
                    "ptzSeqPara_no, ptzSeqPara_speed, ptzSeqPara_time, presetName) values(%d, 2, ' ', ' ', "
                    "' ', ' ', ' ', ' ', ' ');"),
        .save =
            PUTS(PUT_BLOCK(1, 1, 0,
                           "update ptz_config_info_list set port_index=2,ptzPreset = '%s', ptzCruise = '%s', "
                           "ptzTrack= '%s'  where idx =1;",
                           COMMAS3(ptzPreset), COMMAS3(ptzCruise), COMMAS3(ptzTrack)),
                 PUT_BLOCK(1, std::size(PtzConfig{}.port), sizeof(PtzPort),
                           "update ptz_config_info_list set ptzSeqPara_no = '%s', ptzSeqPara_speed = '%s', "
                           "ptzSeqPara_time = '%s', presetName = '%s' where idx = %d;",
                           POINTS("ptzSeqPara_no", preset_no, Kind::u8, 3),
                           POINTS("ptzSeqPara_speed", speed, Kind::u8, 3),
                           POINTS("ptzSeqPara_time", dwell_time, Kind::u16, 5),
                           CODED(port[0].presetName, kPresetNames))),
        .load_body = load_ptz_config),

    // The zoom and focus of every preset.
    TABLE_BY(list, ptz.ptz_ext, (inner("preset_no")), .number = 17, .get = "db_get_ptz_config_ext",
             .set = "db_set_ptz_config_ext", .count = SQL("select count(*) from ptz_config_info_ext;"),
             .fill = SQL("insert into ptz_config_info_ext(preset_no, ptz_preset_zoom, ptz_preset_focus) "
                         "values(%d, 0, 0);"),
             .save = SAVE("update ptz_config_info_ext set ptz_preset_zoom = %d, ptz_preset_focus = %d where "
                          "preset_no = %d;",
                          FIELDS(ptz_preset_zoom, ptz_preset_focus))),

    // The PTZ action that an alarm sets off, for each trigger type.
    TABLE_BY(single_row, ptz.ptz_index, (inner("idx"), third("chn", 0), outer("trig_type")), .number = 18,
             .get = "db_get_alarm_trigger_ptz", .set = "db_set_alarm_trigger_ptz",
             .rows = kTriggerTypes * kMaxAlarms, .count = SQL("select count(*) from alarm_trigger_ptz_list;"),
             .fill = SQL("insert into alarm_trigger_ptz_list(idx, chn, trig_type, ptz_index) "
                         "values(%d, 0, 0, 0);"),
             .save = PUTS(PUT_BLOCK(1, kTriggerTypes* kMaxAlarms, sizeof(int32_t),
                                    "update alarm_trigger_ptz_list set chn = %d, trig_type = %d, ptz_index = "
                                    "%d where idx = %d;",
                                    plain_field<int32_t>("ptz_index", 0))),
             .load_body = load_alarm_trigger_ptz, .save_body = save_alarm_trigger_ptz),

    // The electronic presets: rectangles of the picture, 16 in a row.
    TABLE(list, ptz.eptz_preset, .number = 19, .get = "db_get_eptz_preset_list",
          .set = "db_set_eptz_preset_list", .count = SQL("select count(*) from eptz_preset_list;"),
          .fill = SQL("insert into eptz_preset_list(idx, upper_left_x, upper_left_y, lower_right_x, "
                      "lower_right_y) values(%d, '', '', '', '');"),
          .save = SAVE("update eptz_preset_list set upper_left_x = '%s', upper_left_y = '%s', lower_right_x "
                       "= '%s', lower_right_y = '%s' where idx = %d;",
                       CORNERS(upper_left_x), CORNERS(upper_left_y), CORNERS(lower_right_x),
                       CORNERS(lower_right_y))),

    // The camera module of a dome: lens, exposure, infrared, laser and white light.
    TABLE(per_sensor, dome.ccd, .number = 74, .get = "db_get_ipdome_ccdparam",
          .set = "db_save_ipdome_ccdparam", .single = "db_save_ipdome_ccdparam_single",
          .says = {.write = "ipdome_ccdparam_table failed:%s\n",
                   .wrapper = "db_save_ipdome_ccdparam failed for sensor_no: %d\n"},
          .graded = true,
          .save = SAVE(
              "replace into ipdome_ccdparam_table (idx, sharpness_type, low_light_limit, "
              "low_light_limit_level, image_stabilize_level, camera_ir_correct, high_sensitivity, "
              "initialize_lens, focus_mode, auto_focus_mode, min_focus_distance, zoom_speed_level, "
              "focus_speed_level, iris_set, exposure_mode_set, shutter_set, ipdome_gain_set, gain_limit, "
              "exposure_compensate, optical_zoom, digital_zoom, chroma_suppress, video_freeze, "
              "ir_control_mode, ir_brightness, ir_sensitivity, trig_mode, ir_brightness_limit, "
              "ir_movementtrigger, laser_control_mode, laser_trigger_mode, laser_brightness, laser_angle, "
              "laser_sensitivity, iris_max_limit, iris_min_limit, shutter_max_limit, shutter_min_limit, "
              "laser_brightness_limit, ipdome_scene_mode, optical_zoom_level, focus_pos, ipdome_gamma_type, "
              "dome_whitelight_begintime, dome_whitelight_endtime, whitelight_brightness_limit, "
              "dome_whitelight_mode, zoom_track_mode) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, "
              "%d, %u, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, "
              "%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
              FIELDS(sharpness_type, low_light_limit, low_light_limit_level, image_stabilize_level,
                     camera_ir_correct, high_sensitivity, initialize_lens, focus_mode, auto_focus_mode,
                     min_focus_distance, zoom_speed_level, focus_speed_level, iris_set, exposure_mode_set,
                     shutter_set, ipdome_gain_set, gain_limit, exposure_compensate, optical_zoom,
                     digital_zoom, chroma_suppress, video_freeze, ir_control_mode, ir_brightness,
                     ir_sensitivity, trig_mode, ir_brightness_limit, ir_movementtrigger, laser_control_mode,
                     laser_trigger_mode, laser_brightness, laser_angle, laser_sensitivity, iris_max_limit,
                     iris_min_limit, shutter_max_limit, shutter_min_limit, laser_brightness_limit,
                     ipdome_scene_mode, optical_zoom_level, focus_pos, ipdome_gamma_type,
                     dome_whitelight_begintime, dome_whitelight_endtime, whitelight_brightness_limit,
                     dome_whitelight_mode, zoom_track_mode))),

    // The motion system of a dome: its size, speed, address and control line.
    TABLE(single_row, dome.motionsys, .number = 75, .get = "db_get_ipdome_motionsys",
          .set = "db_save_ipdome_motionsys", .says = {.write = "ipdome_motionsys_table failed\n"},
          .graded = true, .count = SQL("select count(*) from ipdome_motionsys_table;"),
          .fill = SQL("insert into ipdome_motionsys_table(idx, version, domesize, domespeedmode, Language, "
                      "DomeAddr, baud, parity, dataBit, stopBit, flowcontrol, ensoftAddr, softAddr, "
                      "softBaudEnable, softBaudIndex, protocoltype) values(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "
                      "0, 0, 0, 0, 0);"),
          .save = SAVE(
              "update ipdome_motionsys_table set version = %d, domesize = %d, domespeedmode = %d, "
              "Language = %d, DomeAddr = %d, baud = %d, parity = %d, dataBit = %d, stopBit = %d, "
              "flowcontrol = %d, ensoftAddr = %d, softAddr = %d, softBaudEnable = %d, softBaudIndex "
              "= %d, protocoltype = %d where idx = 1;",
              FIELDS(version, domesize, domespeedmode, Language, DomeAddr, baud, parity, dataBit, stopBit,
                     flowcontrol, ensoftAddr, softAddr, softBaudEnable, softBaudIndex, protocoltype))),

    // What a dome shows on the picture.
    TABLE(single_row, dome.osd, .number = 77, .get = "db_get_ipdome_osdparam",
          .set = "db_save_ipdome_osdparam", .says = {.write = "ipdome_osdparam_table failed\n"},
          .graded = true, .count = SQL("select count(*) from ipdome_osdparam_table;"),
          .fill = SQL("insert into ipdome_osdparam_table(idx, presetlable, zonelable, zoom, pt, direction, "
                      "alarm, dt, remote_ctrl, pt_mode, marginis_enable) values(1, 0, 0, 0, 0, 0, 0, 0, 0, "
                      "0, 0);"),
          .save = SAVE("update ipdome_osdparam_table set presetlable = %d, zonelable = %d, zoom = %d, pt = "
                       "%d, direction = %d, alarm = %d, dt = %d, remote_ctrl = %d, pt_mode = %d, "
                       "marginis_enable = %d where idx = 1;",
                       FIELDS(presetlable, zonelable, zoom, pt, direction, alarm, dt, remote_ctrl, pt_mode,
                              marginis_enable))),

    // The other settings of a dome: infrared light, temperature, fan, lens correction, flicker.
    TABLE(single_row, dome.other, .number = 82, .get = "db_get_ipdome_other", .set = "db_save_ipdome_other",
          .says = {.write = "ipdome_ir_table failed\n"}, .graded = true,
          .save = SAVE("replace into ipdome_ir_table (idx, controlmode, brigheness, sensitivenesslevel, "
                       "temp_ctrl_mode, fan_mode, ldc_mode, vga_mode, anti_flicker, ptz_enable_ctrl) "
                       "values(1, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                       FIELDS(controlmode, brigheness, sensitivenesslevel, temp_ctrl_mode, fan_mode, ldc_mode,
                              vga_mode, anti_flicker, ptz_enable_ctrl))),

    // Whether the RS-485 port is on: one column of serial_config_table; a missing row stays missing.
    TABLE_BY(
        single_row, ptz.serial, (always("serial_type", 2)), .number = 156,
        .get = "db_get_sdi_485_enable_config", .set = "db_save_sdi_485_enable_config",
        .says = {.write = "SQL error:%s\n"},
        .save = SAVE("update serial_config_table set rs485_enable=%d where serial_type=2;", F(rs485_enable)),
        .load = SQL("select rs485_enable from serial_config_table where serial_type=2;")),

    // The serial port of a channel.
    TABLE_BY(per_channel, ptz.edu_serial, (outer("chn_no")), .number = 191, .get = "db_get_edu_serial_config",
             .set = "db_set_edu_serial_config", .says = {.write = "SQL error:%s\n"},
             .load = SQL("select * from edu_serial_config_table;"), .load_body = edu_serial::load,
             .save_body = edu_serial::save),
};

}  // namespace

const std::span<const Table> kPtzTables = kTables;
