// Domes: cameras with pan, tilt and zoom of their own.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

// ------------------------------------------------------------------------------------- text forms

// A task: four values of its time, then what is done.
constexpr ListItem kTaskItems[] = {{offsetof(DomeTask, time_value[0]), Kind::u8},
                                   {offsetof(DomeTask, time_value[1]), Kind::u8},
                                   {offsetof(DomeTask, time_value[2]), Kind::u8},
                                   {offsetof(DomeTask, time_value[3]), Kind::u8},
                                   {offsetof(DomeTask, task_value[0]), Kind::i32},
                                   {offsetof(DomeTask, task_value[1]), Kind::i32}};
constexpr TextCodec kTasks{encode_list, decode_list, kTaskItems, sizeof(DomeTimeTask::time_task) / sizeof(DomeTask),
                           sizeof(DomeTask)};

constexpr ListItem kPatrolItems[] = {{offsetof(DomePatrolPoint, preset), Kind::u8},
                                     {offsetof(DomePatrolPoint, value[0]), Kind::u16},
                                     {offsetof(DomePatrolPoint, value[1]), Kind::u16}};
constexpr TextCodec kPatrolPoints{encode_list, decode_list, kPatrolItems, std::size(DomePatrol{}.scanpoint),
                                  sizeof(DomePatrolPoint)};

constexpr ListItem kPatternItems[] = {{offsetof(DomePatternInfo, value[0]), Kind::u32},
                                      {offsetof(DomePatternInfo, value[1]), Kind::u32}};
constexpr TextCodec kPatterns{encode_list, decode_list, kPatternItems, std::size(DomePattern{}.info),
                              sizeof(DomePatternInfo)};

// A privacy mask.
constexpr auto kMaskItems = [] {
    std::array<ListItem, 37> items{};
    std::size_t n = 0;
    const auto add = [&](std::size_t offset, Kind kind, std::size_t width) {
        items[n++] = {static_cast<uint16_t>(offset), kind, static_cast<uint8_t>(width)};
    };
    add(offsetof(DomeMask, head_value), Kind::u8, 3);
    for (std::size_t i = 0; i < 2 * std::size(DomeMask{}.vertex); ++i)
        add(offsetof(DomeMask, vertex) + i * sizeof(int32_t), Kind::i32, 0);
    for (std::size_t i = 0; i < std::size(DomeMask{}.value); ++i)
        add(offsetof(DomeMask, value) + i * sizeof(int32_t), Kind::i32, 0);
    add(offsetof(DomeMask, text), Kind::text, sizeof(DomeMask::text));
    add(offsetof(DomeMask, tail_byte[0]), Kind::u8, 3);
    add(offsetof(DomeMask, tail_byte[1]), Kind::u8, 3);
    add(offsetof(DomeMask, tail_value), Kind::i32, 0);
    return items;
}();
constexpr TextCodec kMasks{.encode = encode_list,
                           .decode = decode_list,
                           .group = {},
                           .groups = std::size(DomePrivacy{}.privacygroup_Input),
                           .group_stride = sizeof(DomeMask),
                           .mixed = kMaskItems};

// A preset: its name, of which 20 characters are loaded, and its values.  Unsigned ones are written as signed, too.
constexpr ListItem kPresetItems[] = {{offsetof(DomePreset, name), Kind::text, sizeof(DomePreset::name), 20},
                                     {offsetof(DomePreset, attr1), Kind::i32},
                                     {offsetof(DomePreset, attr2), Kind::i32},
                                     {offsetof(DomePreset, attr3), Kind::i32},
                                     {offsetof(DomePreset, attr4), Kind::i32},
                                     {offsetof(DomePreset, attr5), Kind::i32},
                                     {offsetof(DomePreset, attr6), Kind::i32},
                                     {offsetof(DomePreset, attr7), Kind::u16},
                                     {offsetof(DomePreset, attr8), Kind::u16},
                                     {offsetof(DomePreset, attr9), Kind::u16},
                                     {offsetof(DomePreset, attr10), Kind::u16},
                                     {offsetof(DomePreset, attr11), Kind::u16},
                                     {offsetof(DomePreset, attr12), Kind::u8},
                                     {offsetof(DomePreset, attr13), Kind::u16},
                                     {offsetof(DomePreset, attr14), Kind::u8}};
template <uint16_t Count>
inline constexpr TextCodec kPresets{.encode = encode_list,
                                    .decode = decode_list,
                                    .group = {},
                                    .groups = Count,
                                    .group_stride = sizeof(DomePreset),
                                    .mixed = kPresetItems};
// So many presets in a row, of the array that the row begins with.
#define PRESETS(count) coded(plain_field<DomePreset[count]>("preset", 0), kPresets<count>)

// What one table of an older schema held: all patterns and their number, all patrols.
constexpr auto kOldPatternItems = [] {
    constexpr std::size_t kValues = 2 * std::size(DomePattern{}.info);
    std::array<ListItem, kValues + 1> items{};
    for (std::size_t i = 0; i < kValues; ++i)
        items[i] = {static_cast<uint16_t>(offsetof(DomePattern, info) + i * sizeof(uint32_t)), Kind::u32};
    items[kValues] = {offsetof(DomePattern, num), Kind::i32};
    return items;
}();
constexpr TextCodec kOldPatterns{encode_list, decode_list, kOldPatternItems};
constexpr auto kOldPatrolItems = [] {
    constexpr std::size_t kParts = std::size(kPatrolItems);
    constexpr std::size_t kPoints = std::size(DomePatrol{}.scanpoint);
    std::array<ListItem, kPoints * kParts + 2> items{};
    for (std::size_t i = 0; i < kPoints * kParts; ++i) {
        items[i] = kPatrolItems[i % kParts];
        items[i].offset = static_cast<uint16_t>(items[i].offset + offsetof(DomePatrol, scanpoint) +
                                                i / kParts * sizeof(DomePatrolPoint));
    }
    items[kPoints * kParts] = {offsetof(DomePatrol, enable), Kind::i32};
    items[kPoints * kParts + 1] = {offsetof(DomePatrol, patrolnum), Kind::i32};
    return items;
}();
constexpr TextCodec kOldPatrols{encode_list, decode_list, kOldPatrolItems, std::size(DomeSection{}.patrol),
                                sizeof(DomePatrol)};

// ------------------------------------------------------------------------------------- tables

namespace domes {

constexpr Messages kSays{.write = "%T failed\n"};
constexpr Codes kCodes = kGraded;

constexpr Table kTables[] = {
    // The camera module of a dome: lens, exposure, infrared, laser and white light.
    REPLACE(per_sensor, dome.ccd, 74, "db_get_ipdome_ccdparam", "db_save_ipdome_ccdparam",
            .says = {.write = "%T failed:%s\n", .wrapper = "%F failed for sensor_no: %d\n"},
            .save = SAVE("replace into ipdome_ccdparam_table (idx, sharpness_type, low_light_limit, low_light_limit_level, image_stabilize_level, camera_ir_correct, high_sensitivity, initialize_lens, focus_mode, auto_focus_mode, min_focus_distance, zoom_speed_level, focus_speed_level, iris_set, exposure_mode_set, shutter_set, ipdome_gain_set, gain_limit, exposure_compensate, optical_zoom, digital_zoom, chroma_suppress, video_freeze, ir_control_mode, ir_brightness, ir_sensitivity, trig_mode, ir_brightness_limit, ir_movementtrigger, laser_control_mode, laser_trigger_mode, laser_brightness, laser_angle, laser_sensitivity, iris_max_limit, iris_min_limit, shutter_max_limit, shutter_min_limit, laser_brightness_limit, ipdome_scene_mode, optical_zoom_level, focus_pos, ipdome_gamma_type, dome_whitelight_begintime, dome_whitelight_endtime, whitelight_brightness_limit, dome_whitelight_mode, zoom_track_mode) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %u, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
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
    ENSURE(single_row, dome.motionsys, 75, "db_get_ipdome_motionsys", "db_save_ipdome_motionsys",
           .fill = SQL("insert into ipdome_motionsys_table(idx, version, domesize, domespeedmode, Language, DomeAddr, baud, parity, dataBit, stopBit, flowcontrol, ensoftAddr, softAddr, softBaudEnable, softBaudIndex, protocoltype) values(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
           .save = SAVE("update ipdome_motionsys_table set version = %d, domesize = %d, domespeedmode = %d, Language = %d, DomeAddr = %d, baud = %d, parity = %d, dataBit = %d, stopBit = %d, flowcontrol = %d, ensoftAddr = %d, softAddr = %d, softBaudEnable = %d, softBaudIndex = %d, protocoltype = %d where idx = 1;",
                        FIELDS(version, domesize, domespeedmode, Language, DomeAddr, baud, parity, dataBit, stopBit,
                               flowcontrol, ensoftAddr, softAddr, softBaudEnable, softBaudIndex, protocoltype))),

    // The step motor of a dome: its limits and speeds, where it parks.
    ENSURE(
        single_row,
        dome.stepmotor, 76, "db_get_ipdome_stepmotor", "db_save_ipdome_stepmotor", .fill = SQL("insert into ipdome_stepmotor_table(idx, auto_flip, proportinalpan, presetframefreeze, preframefreezestat, manual_mirrored, scan_mirrored, atuo_mirror, maxelevationangle, scan_speed, move_speedlevel, preset_speedlevel, b_panreversed, b_tiltreversed, support_mirror, zeroposdefined, zeropanpos, zeroptiltpos, poweroff_savetime, reboot_time, pt_adjusttime, park_enable, park_time, park_action, park_action_num, limit_ipdome, maxtiltAngle, linear_scan_borderX2, linear_scan_borderX1, proportinal_speedlevel, manual_ctrl_mode, InitPosEnable) values(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, '', 0, 0, 0, 0, 0, 0);"),
        .save = SAVE("update ipdome_stepmotor_table set auto_flip = %d, proportinalpan = %d, presetframefreeze = %d, preframefreezestat = %d, manual_mirrored = %d, scan_mirrored = %d, atuo_mirror = %d, maxelevationangle = %d, scan_speed = %d, move_speedlevel = %d, preset_speedlevel = %d, b_panreversed = %d, b_tiltreversed = %d, support_mirror = %d, zeroposdefined = %d, zeropanpos = %d, zeroptiltpos = %d, poweroff_savetime = %d, reboot_time = %d, pt_adjusttime = %d, park_enable = %d, park_time = %d, park_action = %d, park_action_num = %d, limit_ipdome = '%q', maxtiltAngle = %d, linear_scan_borderX2 = %d, linear_scan_borderX1 = %d, proportinal_speedlevel = %d, manual_ctrl_mode = %d, InitPosEnable = %d where idx = 1;",
                     FIELDS(auto_flip, proportinalpan, presetframefreeze, preframefreezestat,
                            manual_mirrored, scan_mirrored, atuo_mirror, maxelevationangle, scan_speed, move_speedlevel,
                            preset_speedlevel, b_panreversed, b_tiltreversed, support_mirror,
                            zeroposdefined, zeropanpos, zeroptiltpos, poweroff_savetime, reboot_time, pt_adjusttime,
                            park_enable, park_time, park_action, park_action_num, limit_ipdome, maxtiltAngle,
                            linear_scan_borderX2, linear_scan_borderX1, proportinal_speedlevel, manual_ctrl_mode,
                            InitPosEnable))),

    // What a dome shows on the picture.
    ENSURE(single_row, dome.osd, 77, "db_get_ipdome_osdparam", "db_save_ipdome_osdparam",
           .fill = SQL("insert into ipdome_osdparam_table(idx, presetlable, zonelable, zoom, pt, direction, alarm, dt, remote_ctrl, pt_mode, marginis_enable) values(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
           .save = SAVE(
               "update ipdome_osdparam_table set presetlable = %d, zonelable = %d, zoom = %d, pt = %d, direction = %d, alarm = %d, dt = %d, remote_ctrl = %d, pt_mode = %d, marginis_enable = %d where idx = 1;",
               FIELDS(presetlable, zonelable, zoom, pt, direction, alarm, dt, remote_ctrl, pt_mode, marginis_enable))),

    // What a dome does at which time of the week.
    ENSURE(single_row, dome.timetask, 78, "db_get_ipdome_timetask", "db_save_ipdome_timetask",
           .fill = SQL("insert into ipdome_timetask_table(idx, time_task, cur_day, copy_day, parktime, task_enable, reset_one_time, ptadjust_one_time) values(1, '', 0, 0, 0, 0, 0, 0);"),
           .save = SAVE(
               "update ipdome_timetask_table set time_task = '%s', cur_day = %d, copy_day = %d, parktime = %d, task_enable = %d, reset_one_time = %d, ptadjust_one_time = %d where idx = 1;",
               CODED(time_task, kTasks),
               FIELDS(cur_day, copy_day, parktime, task_enable, reset_one_time, ptadjust_one_time))),

    // The auxiliary outputs of a dome, and what each of its alarm inputs sets off.
    ENSURE(single_row, dome.alarm_auxoutput, 79, "db_get_ipdome_alarm_auxoutput", "db_save_ipdome_alarm_auxoutput",
           .fill = SQL("insert into ipdome_alarm_auxoutput(idx, resume, sequence, sequencetime, alarm_num, alarm_input, auxoutput_num, auxoutput_mode_one, auxdwelltime_one, auxoutput_mode_two, auxdwelltime_two) values(1, 0, 0, 0, 0, '', 0, 0, 0, 0, 0);"),
           .save = SAVE("update ipdome_alarm_auxoutput set resume = %d, sequence = %d, sequencetime = %d, alarm_num = %d, alarm_input = '%s', auxoutput_num = %d, auxoutput_mode_one = %d, auxdwelltime_one = %d, auxoutput_mode_two = %d, auxdwelltime_two = %d where idx = 1;",
                        FIELDS(resume, sequence, sequencetime, alarm_num), COLONS(alarm_input),
                        FIELDS(auxoutput_num, auxoutput_mode_one, auxdwelltime_one, auxoutput_mode_two,
                               auxdwelltime_two))),

    // The patterns, patrols and presets of an older schema, a kind of rows each.
    READ_ONLY_BY(single_row, dome, (inner("idx")), 80, "db_get_ipdome_ptzparam", .by_position = true, .rows = 8,
                 .save = PUTS(PUT_BLOCK(1, 1, 0,
                                        "select preset_patrol_pattern from ipdome_ptzparam_table where type = 0;",
                                        as("preset_patrol_pattern", CODED(pattern, kOldPatterns))),
                              PUT_BLOCK(2, 2, 0,
                                        "select preset_patrol_pattern from ipdome_ptzparam_table where type = 1;",
                                        as("preset_patrol_pattern", CODED(patrol, kOldPatrols))),
                              PUT_BLOCK(3, 8, sizeof(DomePreset[46]),
                                        "select preset_patrol_pattern from ipdome_ptzparam_table where type = 2;",
                                        coded(plain_field<
                                                  DomePreset
                                                      [46]>("preset_patrol_pattern", offsetof(Row, preset)),
                                              kPresets<46>))),
                 .load = SQL("select * from ipdome_ptzparam_table;"), .of_older_schema = true),

    // The privacy masks of a dome, and where it looked when they were drawn.
    ENSURE(single_row, dome.privacy, 81, "db_get_ipdome_privacy", "db_save_ipdome_privacy",
           .fill = SQL("insert into ipdome_privacy_table(idx, pan, tilt, tilthalfAngle, gratio, delayTime, isPanReversed, isTiltReversed, privacygroup_enable, privacygroup_Input) values(1, 0, 0, 0, 0, 0, 0, 0, 0, '');"),
           .save = SAVE("update ipdome_privacy_table set pan = %d, tilt = %d, tilthalfAngle = %d, gratio = %f, delayTime = %d, isPanReversed = %d, isTiltReversed = %d, privacygroup_enable = %d, privacygroup_Input = '%s' where idx = 1;",
                        FIELDS(pan, tilt, tilthalfAngle, gratio, delayTime, isPanReversed, isTiltReversed,
                               privacygroup_enable),
                        CODED(privacygroup_Input, kMasks))),

    // The other settings of a dome: infrared light, temperature, fan, lens correction, flicker.
    REPLACE(single_row, dome.other, 82, "db_get_ipdome_other", "db_save_ipdome_other",
            .save =
                SAVE(
                    "replace into ipdome_ir_table (idx, controlmode, brigheness, sensitivenesslevel, temp_ctrl_mode, fan_mode, ldc_mode, vga_mode, anti_flicker, ptz_enable_ctrl) values(1, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                    FIELDS(controlmode, brigheness, sensitivenesslevel, temp_ctrl_mode, fan_mode, ldc_mode, vga_mode,
                           anti_flicker, ptz_enable_ctrl))),

    // The first 276 presets of a dome, as older programs keep them.
    ENSURE_BY(single_row, dome.preset, (inner("idx")), 83, "db_get_ipdome_ptz_preset", "db_save_ipdome_ptz_preset",
              .rows = 12, .fill = SQL("insert into ipdome_ptz_preset(idx, preset) values(%d, '');"),
              .save = PUTS(PUT_BLOCK(1, 12, sizeof(DomePreset[23]),
                                     "update ipdome_ptz_preset set preset = '%s' where idx = %d;", PRESETS(23)))),

    // The presets of a dome, and those that it has by itself.
    ENSURE_BY(single_row, dome.preset, (inner("idx")), 84, "db_get_ipdome_ptz_preset_new",
              "db_save_ipdome_ptz_preset_new", .rows = 30, .holds = "num",
              .fill = SQL("insert into ipdome_ptz_preset_new(idx, num, preset) values(%d, 0, '');"),
              .save = PUTS(PUT_BLOCK(1, 30, sizeof(DomePreset[10]),
                                     "update ipdome_ptz_preset_new set preset = '%s', num = %d where idx = %d;",
                                     PRESETS(10), value("num", 10)))),

    ENSURE_BY(single_row, dome.inner_preset, (inner("idx")), 85, "db_get_ipdome_ptz_inner_preset",
              "db_save_ipdome_ptz_inner_preset", .rows = 2, .holds = "num",
              .fill = SQL("insert into ipdome_ptz_inner_preset(idx, num, preset) values(%d, 0, '');"),
              .save = PUTS(PUT_BLOCK(1, 2, sizeof(DomePreset[10]),
                                     "update ipdome_ptz_inner_preset set preset = '%s', num = %d where idx = %d;",
                                     PRESETS(10), value("num", 10)))),

    // The patterns of a dome: movements that were recorded.
    ENSURE(single_row, dome.pattern, 86, "db_get_ipdome_ptz_pattern", "db_save_ipdome_ptz_pattern",
           .fill = SQL("insert into ipdome_ptz_pattern(idx, num, info) values(1, 0, '');"),
           .save = SAVE("update ipdome_ptz_pattern set num = %d, info = '%s' where idx = 1;", F(num),
                        CODED(info, kPatterns))),

    // The patrols of a dome: 32 points each.
    ENSURE(list, dome.patrol, 87, "db_get_ipdome_ptz_patrol", "db_save_ipdome_ptz_patrol",
           .fill = SQL("insert into ipdome_ptz_patrol(idx, enable, patrolnum, scanpoint) values(%d, 0, 0, '');"),
           .save = SAVE("update ipdome_ptz_patrol set enable = %d, patrolnum = %d, scanpoint = '%s' where idx = %d;",
                        FIELDS(enable, patrolnum), CODED(scanpoint, kPatrolPoints))),

    // Where a dome looked when its regions of interest were drawn.
    ENSURE(single_row, dome.roi_base, 91, "db_get_ipdome_roi_base", "db_save_ipdome_roi_base",
           .fill = SQL("insert into ipdonme_roi_base(idx, pan, tilt, tilthalfangle, gratio, delaytime, ispanreversed, istiltreversed) values(1, 0, 0, 0, 0, 0, 0, 0);"),
           .save = SAVE("update ipdonme_roi_base set pan = %d, tilt = %d, tilthalfangle = %d, gratio = %d, delaytime = %d, ispanreversed = %d, istiltreversed = %d where idx = 1;",
                        FIELDS(pan, tilt, tilthalfangle, gratio, delaytime, ispanreversed, istiltreversed))),

    // The regions of interest of a dome: 8 groups, and in each one for each of 24 inputs.
    FILL_MISSING_BY(per_element_list, dome.roi_group, (outer("group_idx", 0), inner("inputtype_idx", 0)), 92,
                    "db_get_ipdome_roi_group", "db_save_ipdome_roi_group",
                    .says = {.save_key = "param err, stream_num = %d\n"},
                    .fill = SQL("insert into ipdome_roi_group(group_idx, inputtype_idx, type, wholeenable, benable, longitude1, latitude1, longitude2, latitude2, longitude3, latitude3, longitude4, latitude4, centerlongitude, centerlatitude, zoomvalue, bpolygon) values(%d, %d, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
                    .save = SAVE("update ipdome_roi_group set wholeenable=%d,benable=%d, longitude1=%d,latitude1=%d,longitude2=%d,latitude2=%d,longitude3=%d,latitude3=%d,longitude4=%d,latitude4=%d,centerlongitude=%d,centerlatitude=%d,zoomvalue=%d,bpolygon=%d where group_idx=%d and inputtype_idx=%d;",
                                 FIELDS(wholeenable, benable, longitude1, latitude1, longitude2, latitude2, longitude3,
                                        latitude3, longitude4, latitude4, centerlongitude, centerlatitude, zoomvalue,
                                        bpolygon)),
                    .unstored = UNSTORED(Unstored{"idx", "numbered by the database"},
                                         Unstored{"type", "0 in every row"})),
};

}  // namespace domes

namespace tracking {

constexpr Messages kSays{.write = "SQL error:%s\n"};
// A column of older settings, which are only loaded, where at all.
#define OLD(column)                                        \
    Unstored {                                             \
        column, "of older settings, which are only loaded" \
    }

constexpr Table kTables[] = {
    // How a dome follows what moves, and when.
    REPLACE(single_row, dome.tracking, 118, "db_get_intelligent_dome_param", "db_save_intelligent_dome_param",
            .says = {.save_schedule = "db_save_timeseg error\n"},
            .save = SAVE("replace into intelligent_dome_param (idx, b_auto_track_enable, alarm_delay_time, track_hold_time, active_track_smooth_mode, by_stop_track_when_find_face, by_stop_track_threshold, by_stop_track_static, zcoef_benable, track_zoom_type, zcoef_value, height_zoom_cof, zoomcof_adjust, max_track_zoom, patrol_enable, scene_num, scene_index, dwell_time, tracking_pt_mode, tracking_zoom_mode, tracking_speed_adjust, zoom_value_direct, panPos, tiltPos, focusvalue, horizontal_tracking_limit, vertical_tracking_limit) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%s', '%s', %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(b_auto_track_enable, alarm_delay_time, track_hold_time, active_track_smooth_mode,
                                by_stop_track_when_find_face, by_stop_track_threshold, by_stop_track_static,
                                zcoef_benable, track_zoom_type, zcoef_value, height_zoom_cof, zoomcof_adjust,
                                max_track_zoom, patrol_enable, scene_num),
                         COLONS(scene_index), COLONS(dwell_time),
                         FIELDS(tracking_pt_mode, tracking_zoom_mode, tracking_speed_adjust, zoom_value_direct, panPos,
                                tiltPos, focusvalue, horizontal_tracking_limit, vertical_tracking_limit)),
            .schedules = SCHEDULES(WEEKLY(kIntelligentTracking, schedule))),

    // The scenes that a dome follows what moves in, with the limits of its movement.
    REPLACE_BY(list, dome.scene_track, (inner("scene_id", 0)), 119, "db_get_intelligent_dome_scene_track",
               "db_save_intelligent_dome_scene_track",
               .says = {.load_row = "invalid scene_id: %k\n", .load_null = "scene_id is null in row %d\n"},
               .save = SAVE("replace into intelligent_dome_scene_track (scene_id, track_enable, track_duration, curpos_pan, curpos_tilt, curpos_zoom, curpos_focus, leftpos_pan, leftpos_tilt, leftpos_zoom, leftpos_focus, rightpos_pan, rightpos_tilt, rightpos_zoom, rightpos_focus, uppos_pan, uppos_tilt, uppos_zoom, uppos_focus, downpos_pan, downpos_tilt, downpos_zoom, downpos_focus, limit_enable, limit_pan_flag, limit_tilt_flag, pos_3d) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%s');",
                            FIELDS(track_enable, track_duration, curpos_pan, curpos_tilt, curpos_zoom, curpos_focus,
                                   leftpos_pan, leftpos_tilt, leftpos_zoom, leftpos_focus, rightpos_pan, rightpos_tilt,
                                   rightpos_zoom, rightpos_focus, uppos_pan, uppos_tilt, uppos_zoom, uppos_focus,
                                   downpos_pan, downpos_tilt, downpos_zoom, downpos_focus, limit_enable, limit_pan_flag,
                                   limit_tilt_flag),
                            COLONS(pos_3d)),
               .load = SQL("select * from intelligent_dome_scene_track order by scene_id;")),

    // What the dome's computing power is spent on.
    REPLACE(single_row, dome.devResource, 241, "db_get_intelligent_dome_devresource_cfg",
            "db_set_intelligent_dome_devresource_cfg",
            .save = SAVE("replace into intelligent_dome_devresource_cfg (idx, devResource) values(%d, %d);",
                         ROW_ITSELF("devResource"))),

    // The mode that the dome works in.
    REPLACE(single_row, dome.mode, 242, "db_get_intelligent_dome_mode_cfg", "db_set_intelligent_dome_mode_cfg",
            .save = SAVE("replace into intelligent_dome_mode_cfg (idx, enable, mode) values(%d, %d, %d);",
                         FIELDS(enable, mode))),

    // The parameter of the analysis of a channel.
    REPLACE_BY(per_channel, dome.ipsParamValue, (outer("chan_no"), outer("idx")), 243,
               "db_get_intelligent_dome_ipsparamvalue_cfg", "db_set_intelligent_dome_ipsparamvalue_cfg", .single = "",
               .says = {.load_key = "chan_no(%d) is not valid\n"},
               .save = SAVE("replace into intelligent_dome_ipsparamvalue_cfg (idx, chan_no, ipsParamValue) values(%d, %d, %d);",
                            ROW_ITSELF("ipsParamValue"))),

    // The area that a dome watches on a channel, and the position that it watches it from.
    REPLACE_BY(per_channel, dome.witness_area, (outer("chan_no"), outer("idx")), 244,
               "db_get_intelligent_dome_witness_area_cfg", "db_set_intelligent_dome_witness_area_cfg", .single = "",
               .says = {.load_key = "chan_no(%d) is not valid\n"},
               .save = SAVE("replace into intelligent_dome_witness_area_cfg (idx, chan_no, enable, time_threshold, mosaic_enable, pan_pos, tilt_pos, zoom_pos, focus_pos) values(%d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(enable, time_threshold, mosaic_enable, pan_pos, tilt_pos, zoom_pos, focus_pos)),
               .steps = STEPS(itself(1),
                              Step{"db_save_intelligent_dome_polygon", 1, "db_save_intelligent_dome_polygon error\n"})),

    // Its outline, which is saved with it.
    REPLACE_BY(per_channel, dome.witness_area, (outer("chan_no"), always("idx", 1)), 245,
               "db_get_intelligent_dome_witness_area_polygon", "db_save_intelligent_dome_polygon", .single = "",
               .says = {.load_key = "chan_no(%d) is not valid\n"},
               .save = SAVE("replace into intelligent_dome_witness_area_polygon (idx, chan_no, point_num, x_coords, y_coords) values(%d, %d, %u, '%q', '%q');",
                            F(point_num), COLONS(x_coords), COLONS(y_coords)),
               .inner_set = true),

    // What older schemas had of the tracking; the upgrade of the schema carries it over.
    READ_ONLY_BY(single_row, dome.tracking, (always("idx", 1)), 0, "db_get_intelligent_paramrule",
                 .save = SAVE("select alarm_delaytime, track_holdtime, active_track_smooth_mode, zoomcof_adjust, benable, zcoef_value, maxtrackzoom, trackzoomtype from intelligent_paramrule;",
                              as("alarm_delaytime", F(alarm_delay_time)), as("track_holdtime", F(track_hold_time)),
                              FIELDS(active_track_smooth_mode, zoomcof_adjust), as("benable", F(zcoef_benable)),
                              F(zcoef_value), as("maxtrackzoom", F(max_track_zoom)),
                              as("trackzoomtype", F(track_zoom_type))),
                 .unstored = UNSTORED(OLD("alarm_delaytime"), OLD("track_holdtime"), OLD("predict_state"),
                                      OLD("active_track_smooth_mode"), OLD("zoomcof_adjust"), OLD("benable"),
                                      OLD("zcoef_value"), OLD("maxtrackzoom"), OLD("trackzoomtype"), OLD("zoomcof"))),

    READ_ONLY_BY(single_row, dome.tracking, (always("idx", 1)), 0, "db_get_intelligent_ctrl_info",
                 .save = SAVE("select bautotrackenable from intelligent_ctrl_info;",
                              as("bautotrackenable", F(b_auto_track_enable))),
                 .unstored = UNSTORED(OLD("benable"), OLD("intelligentfuntype"), OLD("bresulttostream"),
                                      OLD("bhaveruleinenc"), OLD("bhavetargetinenc"), OLD("bhaveruleinpic"),
                                      OLD("bhavetargetinpic"), OLD("bautotrackenable"), OLD("bcapture"),
                                      OLD("resolution"), OLD("quality"), OLD("width"), OLD("height"))),
};

}  // namespace tracking

constexpr std::span<const Table> kGroups[] = {domes::kTables, tracking::kTables};

}  // namespace

const Domain kDomeTables = kGroups;

}  // namespace dbshell
