// Traffic: plate recognition and lanes, traffic events and intelligent monitoring, the scenes of a single channel, road
// names, what pictures are overlaid with, cameras that follow.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

// ------------------------------------------------------------------------------------- what several tables have

// A block of lanes, as three tables have four of.
constexpr int kLaneBlocks = std::size(ItcTraffic{}.lane);
#define LANE_COLUMNS \
    "b_init, draw_rule, default_chn, total_lane_num, recog_frame_num, bright_value, lane_num, locate_num, plate_osd, b_send_jpeg1, b_send_jpeg2, vehicle_logo_recog, designed_plate_width, recog_mode, time_limit, layered, frame_num, use_init_rect, pr_area_mode, u_region, province, vep_lane_num, lane_line_x0, lane_line_y0, lane_line_x1, lane_line_y1, ptz_enable, ptz_scene_name, ptz_scene_id, ptz_pan_pos, ptz_tilt_pos, ptz_zoom, ptz_focus_pos"
#define LANE_VALUES \
    "%d, %d, '%q', %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%q', %d, %d, '%q', '%q', '%q', '%q', %d, '%q', %d, %d, %d, %d, %d"
#define LANE(path)                                                                                                  \
    FIELDS(path.b_init, path.draw_rule, path.default_chn, path.total_lane_num, path.recog_frame_num,                \
           path.bright_value, path.lane_num, path.locate_num, path.plate_osd, path.b_send_jpeg1, path.b_send_jpeg2, \
           path.vehicle_logo_recog, path.designed_plate_width, path.recog_mode, path.time_limit, path.layered,      \
           path.frame_num, path.use_init_rect, path.pr_area_mode),                                                  \
        COLONS(path.u_region), FIELDS(path.province, path.vep_lane_num), COLONS(path.lane_line_x0),                 \
        COLONS(path.lane_line_y0), COLONS(path.lane_line_x1), COLONS(path.lane_line_y1),                            \
        FIELDS(path.ptz_enable, path.ptz_scene_name, path.ptz_scene_id, path.ptz_pan_pos, path.ptz_tilt_pos,        \
               path.ptz_zoom, path.ptz_focus_pos)

// How the pictures of one event become one.
#define MERGE_COLUMNS \
    "save_type, two_pic_merge_type, three_pic_merge_type, four_pic_merge_type, five_pic_merge_type, six_pic_merge_type, quality_type, picture_quality, picture_size, vehicle_picture_quality"
#define MERGE_VALUES "%d, %d, %d, %d, %d, %d, %d, %d, %d, %d"
#define MERGE                                                                                             \
    FIELDS(save_type, two_pic_merge_type, three_pic_merge_type, four_pic_merge_type, five_pic_merge_type, \
           six_pic_merge_type, quality_type, picture_quality, picture_size, vehicle_picture_quality)

// The characters on a picture.
#define OVERLAP_COLUMNS \
    "is_overlap, items_stlye, start_pos_top_permillage, start_pos_left_permillage, char_size, fore_clor_RGB, back_clor_RGB, char_interval, line_interval, text_content_index"
#define OVERLAP_VALUES "%d, %d, %d, %d, %d, %u, %u, %d, %d, '%s'"
#define OVERLAP                                                                                                    \
    FIELDS(is_overlap, items_stlye, start_pos_top_permillage, start_pos_left_permillage, char_size, fore_clor_RGB, \
           back_clor_RGB, char_interval, line_interval),                                                           \
        COLONS(text_content_index)

// Where the camera stands.
#define POINT_COLUMNS \
    "camera_no, direction_no, monitor_point_no, monitor_info1, monitor_info2, monitor_info3, monitor_direction, monitor_pointno_info"
#define POINT_VALUES "'%q', %d, %d, '%q', '%q', '%q', '%q', '%q'"
#define POINT                                                                                     \
    FIELDS(mointor_point.camera_no, mointor_point.direction_no, mointor_point.monitor_point_no,   \
           mointor_point.monitor_info1, mointor_point.monitor_info2, mointor_point.monitor_info3, \
           mointor_point.monitor_direction, monitor_pointno_info)

constexpr Messages kSays{.write = "SQL error:%m\n"};

// ------------------------------------------------------------------------------------- traffic events, monitoring

// What is reserved: two strings of 32 bytes.
constexpr ListItem kReservedItems[] = {{0, Kind::text, sizeof(TeOtherParam::reserved_str[0])}};
constexpr TextCodec kReservedTexts{.encode = encode_list,
                                   .decode = decode_list,
                                   .group = {},
                                   .groups = std::size(TeOtherParam{}.reserved_str),
                                   .group_stride = sizeof(TeOtherParam::reserved_str[0]),
                                   .mixed = kReservedItems};

// The te_ and the im_ tables.  The numbers of the second lie `further` behind those of the first.
struct Events {
    static constexpr bool first = true;
    static constexpr int further = 0;
    static constexpr std::string_view table = "te", function = "te";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, traffic_event);
};
struct Monitoring {
    static constexpr bool first = false;
    static constexpr int further = 71;
    static constexpr std::string_view table = "im", function = "intel_moni";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, intel_moni.twin);
};

template <class Twin>
struct EventTables {
    struct Root {
        TrafficEventArea area;
    };
    static constexpr std::size_t kRootOffset = Twin::offset;
    static constexpr Table kTables[] = {
        REPLACE(single_row, area, 134 + Twin::further, "db_get_{f}_mointor_point", "db_save_{f}_mointor_point",
                .save = SAVE("replace into {t}_mointor_point (idx, " POINT_COLUMNS ") values(%d, " POINT_VALUES ");",
                             POINT)),

        REPLACE(single_row, area.pic_merge, 135 + Twin::further, "db_get_{f}_pic_merge", "db_save_{f}_pic_merge",
                .save = SAVE("replace into {t}_pic_merge (idx, " MERGE_COLUMNS ") values(%d, " MERGE_VALUES ");",
                             MERGE)),

        // What the analysis looks for, and when it is sure.
        REPLACE(single_row, area, 136 + Twin::further, "db_get_{f}_alg_cfg", "db_save_{f}_alg_cfg",
                .save = SAVE("replace into {t}_alg_cfg (idx, default_chn, scene_model, is_night_light_on, camera_height, pic_add_target_info, pic_add_rule_info, video_add_target_info, video_add_rule_info, parking_threshold, is_in_tunel, obj_detect, bg_update_rate, bg_change_ratio, obj_generate_rate, time_switch_threshold, light_bright, vsd_detect_sensitiviness, evidence_picture_ratio, night_dis_down, night_dis_up, track_time, track_tilt_limited[, bNeedTrackFeturePic, trackFeaturePicZoomVal, trackFeaturePicZoomWidth, picClearThreshold, b_need_plate_pic, is_trace_enable, advanceParamNum, indexs, keyvals, stopDiterDetectSensitive, b_osd_overlay]) values(%d, '%s', %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d[, %d, %d, %d, %d, %d, %d, %d, '%s', '%s', %d, %d]);",
                             FIELDS(alg_cfg.default_chn, alg_cfg.scene_model, alg_cfg.is_night_light_on,
                                    alg_cfg.camera_height, alg_cfg.pic_add_target_info, alg_cfg.pic_add_rule_info,
                                    alg_cfg.video_add_target_info, alg_cfg.video_add_rule_info,
                                    alg_cfg.parking_threshold, alg_cfg.is_in_tunel, alg_cfg.obj_detect,
                                    alg_cfg.bg_update_rate, alg_cfg.bg_change_ratio, alg_cfg.obj_generate_rate,
                                    alg_cfg.time_switch_threshold, alg_cfg.light_bright,
                                    alg_cfg.vsd_detect_sensitiviness, alg_cfg.evidence_picture_ratio,
                                    alg_cfg.night_dis_down, alg_cfg.night_dis_up, alg_cfg.track_time,
                                    alg_cfg.track_tilt_limited),
                             FIRST_HAS(FIELDS(alg_extension.bNeedTrackFeturePic, alg_extension.trackFeaturePicZoomVal,
                                              alg_extension.trackFeaturePicZoomWidth, alg_extension.picClearThreshold,
                                              alg_extension.b_need_plate_pic, alg_extension.is_trace_enable,
                                              alg_extension.advanceParamNum),
                                       COLONS(alg_extension.indexs), COLONS(alg_extension.keyvals),
                                       FIELDS(alg_extension.stopDiterDetectSensitive, alg_cfg.b_osd_overlay)))),

        REPLACE(single_row, area.char_overlap, 137 + Twin::further, "db_get_{f}_char_overlap",
                "db_save_{f}_char_overlap",
                .save = SAVE("replace into {t}_char_overlap (idx, " OVERLAP_COLUMNS ") values(%d, " OVERLAP_VALUES ");",
                             OVERLAP)),

        // When and how often a picture is taken.
        REPLACE(single_row, area.its_cap_param, 138 + Twin::further, "db_get_{f}_its_cap_param",
                "db_save_{f}_its_cap_param",
                .save = SAVE("replace into {t}_its_cap_param (idx, car_rect_x, car_rect_y, car_rect_width, car_rect_height, is_plate_rec, img_num, snap_one_timeout, tsk_time_out, plate_match_ratio, image_interval, image_type) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%s', '%s');",
                             FIELDS(car_rect_x, car_rect_y, car_rect_width, car_rect_height, is_plate_rec, img_num,
                                    snap_one_timeout, tsk_time_out, plate_match_ratio),
                             COLONS(image_interval), COLONS(image_type))),

        // Which scenes are looked at in which part of the day, and for how long.
        REPLACE_BY(grid, area.cruise.segment, (outer("day"), inner("time_segment")), 142 + Twin::further,
                   "db_get_{f}_scene_cruise_schedule", "db_save_{f}_scene_cruise_schedule",
                   .save = SAVE("replace into {t}_scene_cruise_schedule (day, time_segment, start_time, stop_time, scene_index, continue_time)values(%d, %d, %u, %u, '%s', '%s');",
                                FIELDS(start_time, stop_time), COLONS(scene_index), COLONS(continue_time))),

        // Where pictures are sent, and how files and folders are named there.
        REPLACE(single_row, area, 143 + Twin::further, "db_get_{f}_remote_center", "db_save_{f}_remote_center",
                .save = SAVE("replace into {t}_remote_center (idx, monitor_upload_protocal, monitor_addr, monitor_port, fortify_addr, upload_types, upload_interval, upload_timeout, ftp_enable, ftp_addr, ftp_port, ftp_usr_name, ftp_passwd, ftp_upload_types, event_dir_name, break_rule_dir_name, break_rule_pic_name, event_picture_name, plat_picture_name) values(%d, %d, '%s', %d, '%s', '%s', %d, %d, %d, '%s', %d, '%s', '%s', '%s', '%s', '%s', '%s', '%s', '%s');",
                             FIELDS(monitor_center.monitor_upload_protocal, monitor_center.monitor_addr,
                                    monitor_center.monitor_port, monitor_center.fortify_addr),
                             COLONS(monitor_center.upload_types),
                             FIELDS(upload_time.upload_interval, upload_time.upload_timeout, ftp.ftp_enable,
                                    ftp.ftp_addr, ftp.ftp_port, ftp.ftp_usr_name, ftp.ftp_passwd),
                             COLONS(ftp.ftp_upload_types), COLONS(ftp.event_dir_name), COLONS(ftp.break_rule_dir_name),
                             COLONS(ftp.break_rule_pic_name), COLONS(ftp.event_picture_name),
                             COLONS(ftp.plat_picture_name))),

        // The code of the violation, the voice that tells it, and what is reserved.
        REPLACE(single_row, area, 144 + Twin::further, "db_get_{f}_other_param", "db_save_{f}_other_param",
                .save = SAVE("replace into {t}_other_param (idx, illegal_code, schedule_enable, voice_type, voice_id, [ptz_oper_type, ptz_oper_delay_time, ]reserved_int, reserved_str, reserved_choice) values(%d, %d, %d, '%s', '%s', [%d, %d, ]'%s', '%s', '%s');",
                             FIELDS(illegal_code, cruise.schedule_enable, other_param.voice_type, other_param.voice_id),
                             FIRST_HAS(FIELDS(other_param.ptz_oper_type, other_param.ptz_oper_delay_time)),
                             COLONS(other_param.reserved_int), CODED(other_param.reserved_str, kReservedTexts),
                             COLONS(other_param.reserved_choice))),
    };
};

// The preset scenes of the te_ and the im_ tables.  A scene is saved with its polygons and its rules.
template <class M>
using scene_lists = rows_below<M, Owner::element, decltype(TrafficEventArea::preset_scene)>;

// What a polygon bounds is told by its process type.  (clang 14 takes the type from a class alone.)
template <int type>
using OfType = std::integral_constant<int, type>;
template <class Twin, class Type>
struct EventPolygons {
    struct Root {
        TrafficEventArea area;
    };
    static constexpr std::size_t kRootOffset = Twin::offset;
    static constexpr Table
        kTable = ENSURE_BY(scene_lists, area.preset_scene[0].polygon[Type::value - 1],
                           (only("process_type", Type::value), outer("scene_no"), inner("idx")),
                           Type::value == 1 ? 141 + Twin::further : 0, "db_get_{f}_polygon", "db_save_{f}_polygon",
                           .single = "",
                           .fill = SQL("insert into {t}_polygon (idx, process_type, by_enable, point_num, x_coords, y_coords, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, '', '', 1, %d, 0);"),
                           .save = SAVE("update {t}_polygon set point_num = %d, x_coords = '%s', y_coords = '%s' where idx = %d and process_type = %d and scene_no = %d;",
                                        F(point_num), COLONS(x_coords), COLONS(y_coords)),
                           .load = SQL("select * from {t}_polygon where process_type = %d;"), .inner_set = true);
};

template <class Twin>
struct EventScenes {
    struct Root {
        TrafficEventArea area;
    };
    static constexpr std::size_t kRootOffset = Twin::offset;

    // Each belongs to a rule.
    static constexpr Table kRulePolygons = ENSURE_BY(
        scene_lists, area.preset_scene[0].polygon[3],
        (only("process_type", 4), outer("scene_no"), inner("rule_no"), inner("idx")), 0, "db_get_{f}_polygon",
        "db_save_{f}_polygon", .single = "",
        .fill = SQL("insert into {t}_polygon (idx, process_type, by_enable, point_num, x_coords, y_coords, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, '', '', 1, %d, %d);"),
        .save = SAVE("update {t}_polygon set point_num = %d, x_coords = '%s', y_coords = '%s' where process_type = %d and scene_no = %d and rule_no = %d;",
                     F(point_num), COLONS(x_coords), COLONS(y_coords)),
        .load = SQL("select * from {t}_polygon where process_type = %d;"), .inner_set = true,
        .unstored = UNSTORED(Unstored{"by_enable", "these polygons are always on"}, Unstored{"chan_no", "always 1"}));

    static constexpr Table kTables[] = {
        REPLACE_BY(per_element, area.preset_scene, (outer("scene_no"), always("chan_no", 1)), 139 + Twin::further,
                   "db_get_{f}_scene_param", "db_save_{f}_scene_param", .single = NAME("db_save_{f}_single_scene"),
                   .says = {.save_key = "param err: scene_no=%d\n",
                            .wrapper = "db_save_te_scene_param error for scene_no: %d\n"},
                   .save = SAVE("replace into {t}_its_preset_scene (chan_no, scene_no, enale, direction_no, scene_name, is_ivt_enable, is_plate_rec, is_event_det_enable, plate_filter_time, snap_one_timeout, task_time_out, plate_match_ratio, P, T, Z, F, reference_num, shield_num, world_width, world_length, image_pt_x, image_pt_y, lane_point_x0, lane_point_y0, lane_point_x1, lane_point_y1, lane_num, rule_num, start_point_x, start_point_y, end_point_x, \tend_point_y) values(1, %u, %u, %u, '%s', %u, %u, %u, %u, %u, %u, %u, %u, %u, %u, %u, %u, %u, %f, %f, '%s', '%s', %u, %u, %u, %u, %u, %u, '%s', '%s', '%s', '%s');",
                                FIELDS(enale, direction_no, scene_name, is_ivt_enable, is_plate_rec,
                                       is_event_det_enable, plate_filter_time, snap_one_timeout, task_time_out,
                                       plate_match_ratio, P, T, Z, F, reference_num, shield_num, world_width,
                                       world_length),
                                COLONS(image_pt_x), COLONS(image_pt_y),
                                FIELDS(lane_point_x0, lane_point_y0, lane_point_x1, lane_point_y1, lane_num, rule_num),
                                COLONS(start_point_x), COLONS(start_point_y), COLONS(end_point_x), COLONS(end_point_y)),
                   .steps = STEPS(Step{NAME("db_save_{f}_polygon"), 1, "db_save_te_polygon error for scene_no: %1\n"},
                                  Step{NAME("db_save_{f}_rule_param"), 1}, itself(1))),

        // What a scene's rules look for, and how long it must last.
        REPLACE_BY(scene_lists, area.preset_scene[0].rule, (outer("scene_no"), inner("rule_no"), always("chan_no", 1)),
                   140 + Twin::further, "db_get_{f}_rule_param", "db_save_{f}_rule_param", .single = "",
                   .save = SAVE("replace into {t}_its_preset_rule (chan_no, scene_no, rule_no, id, enable, voice_trigger_enable, rule_type, aid_type, line_aid_type, size_filter_enable, size_filter_mode, min_rect_x, min_rect_y, min_rect_width, min_rect_height, max_rect_x, max_rect_y, max_rect_width, max_rect_height, parking_duration, pedestrian_duration, debris_duration, congestion_length, congestion_duration, inverse_duration, inverse_angle_tolerance, inverse_distance, imag_num, trun_round_angle_tolerance, start_point_x, start_point_y, end_point_x, end_point_y, img_interval, img_type, cross_lane_duration, cross_lane_sensitive_level, lane_change_sensitive_level, imag_evidence_num, region_imag_evidence_num[, line_param_nRuleSensitity, lane_change_congestion_duration, vehicle_exist_duration, nRuleSensitity]) values(1, %d, %d, %d, %d, %d, %d, '%s', '%s', %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%s', '%s', %d, %d, %d, %d, %d[, %d, %d, %d, %d]);",
                                FIELDS(id, enable, voice_trigger_enable, rule_type), COLONS(aid_type),
                                COLONS(line_aid_type),
                                FIELDS(size_filter_enable, size_filter_mode, min_rect_x, min_rect_y, min_rect_width,
                                       min_rect_height, max_rect_x, max_rect_y, max_rect_width, max_rect_height,
                                       parking_duration, pedestrian_duration, debris_duration, congestion_length,
                                       congestion_duration, inverse_duration, inverse_angle_tolerance, inverse_distance,
                                       imag_num, trun_round_angle_tolerance, start_point_x, start_point_y, end_point_x,
                                       end_point_y),
                                COLONS(img_interval), COLONS(img_type),
                                FIELDS(cross_lane_duration, cross_lane_sensitive_level, lane_change_sensitive_level,
                                       imag_evidence_num, region_imag_evidence_num),
                                FIRST_HAS(FIELDS(line_param_nRuleSensitity, lane_change_congestion_duration,
                                                 vehicle_exist_duration, nRuleSensitity))),
                   .inner_set = true),

        EventPolygons<Twin, OfType<1>>::kTable,
        EventPolygons<Twin, OfType<2>>::kTable,
        EventPolygons<Twin, OfType<3>>::kTable,
        kRulePolygons,
        EventPolygons<Twin, OfType<5>>::kTable,
    };
};

// ------------------------------------------------------------------------------------- the scenes of a single channel

// The traffic_ and the vehicle_ tables: rows of type 1 and 2.
struct Traffic {
    static constexpr bool first = true;
    static constexpr int type = 1, further = 0, process_type = kTrafficVehicle;
    static constexpr std::string_view table = "traffic", function = "traffic";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, traffic.traffic);
};
struct Vehicle {
    static constexpr bool first = false;
    static constexpr int type = 2, further = 11, process_type = kVehicle;
    static constexpr std::string_view table = "vehicle", function = "vehicle";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, traffic.vehicle);
};

constexpr ListItem kSceneId[] = {{offsetof(VehicleSegment, scene_id), Kind::u8}};
constexpr TextCodec kSceneIds{encode_list, decode_list, kSceneId, kSegments, sizeof(VehicleSegment)};

#define TYPED(key, type_column) (key, always("chan_no", 1), always(type_column, Twin::type))

template <class Twin>
struct SceneTables {
    struct Root {
        SceneTwin twin;
    };
    static constexpr std::size_t kRootOffset = Twin::offset;
    static constexpr Table kTables[] = {
        // What a detected vehicle sets off, and the scene of each segment of its schedule.
        REPLACE_BY(single_row, twin.detect, TYPED(always("idx", 1), "detect_type"), 181 + Twin::further,
                   "db_get_[traffic_vehicle|vehicle_traffic]_detect_cfg",
                   "db_save_[traffic_vehicle|vehicle_traffic]_detect_cfg",
                   .says = {.save_schedule = "db_save_timeseg error\n"},
                   .save = SAVE("replace into [traffic_vehicle|vehicle_traffic]_detect_cfg (idx, chan_no, detect_type, b_enable, handle_type, alarm_out_triggered, scene_id) values(%d, %d, %d, %d, %d, %d, '%s');",
                                FIELDS(b_enable, handle_type, alarm_out_triggered),
                                as("scene_id", CODED(schedule, kSceneIds))),
                   .load = SQL("select * from [traffic_vehicle|vehicle_traffic]_detect_cfg where idx = 1 and chan_no = 1 and detect_type = %d;"),
                   .schedules = SCHEDULES(WEEKLY(Twin::process_type, schedule))),

        // The lanes of each scene.
        REPLACE_BY(single_row, twin, TYPED(inner("idx", 0), "scene_type"), 182 + Twin::further, "db_get_{f}_scene_cfg",
                   "db_save_{f}_scene_cfg", .says = {.load_null = "%G idx is empty...\n"}, .rows = kLaneBlocks,
                   .save = PUTS(PUT_BLOCK(1, kLaneBlocks, sizeof(LaneConfig),
                                          "replace into {t}_scene_cfg (idx, chan_no, scene_type, " LANE_COLUMNS
                                          ", lane_dir) values(%d, %d, %d, " LANE_VALUES ", '%s');",
                                          LANE(scene[0]), COLONS(scene[0].lane_dir))),
                   .load = SQL("select * from {t}_scene_cfg where chan_no = 1 and scene_type = %d;")),

        REPLACE_BY(single_row, twin.pic_merge, TYPED(always("idx", 1), "merge_type"), 183 + Twin::further,
                   "db_get_{f}_pic_merge", "db_save_{f}_pic_merge",
                   .save = SAVE("replace into {t}_pic_merge (idx, chan_no, merge_type, " MERGE_COLUMNS
                                ") values(%d, %d, %d, " MERGE_VALUES ");",
                                MERGE),
                   .load = SQL("select * from {t}_pic_merge where idx = 1 and chan_no = 1 and merge_type = %d;")),

        REPLACE_BY(single_row, twin.overlap, TYPED(always("idx", 1), "overlap_type"), 184 + Twin::further,
                   "db_get_{f}_overlap_cfg", "db_save_{f}_overlap_cfg",
                   .save = SAVE("replace into {t}_overlap_cfg (idx, chan_no, overlap_type, " OVERLAP_COLUMNS
                                ") values(%d, %d, %d, " OVERLAP_VALUES ");",
                                OVERLAP),
                   .load = SQL("select * from {t}_overlap_cfg where idx = 1 and chan_no = 1 and overlap_type = %d;")),

        REPLACE_BY(single_row, twin, TYPED(always("idx", 1), "mointor_point_type"), 185 + Twin::further,
                   "db_get_{f}_mointor_point", "db_save_{f}_mointor_point",
                   .save = SAVE("replace into {t}_mointor_point (idx, chan_no, mointor_point_type, " POINT_COLUMNS
                                ") values(%d, %d, %d, " POINT_VALUES ");",
                                POINT),
                   .load = SQL("select * from {t}_mointor_point where idx = 1 and chan_no = 1 and mointor_point_type = %d;")),
    };
};

// ------------------------------------------------------------------------------------- the rest

// A lane with its line; a line.
#define MPR_LINE(path, n)                                                                                   \
    as("p1x" n, F(path.p1x)), as("p1y" n, F(path.p1y)), as("p2x" n, F(path.p2x)), as("p2y" n, F(path.p2y)), \
        as("lane_type" n, F(path.lane_type))
#define MPR_LANE(path, n) as("lane_no" n, F(path.lane_no)), MPR_LINE(path.line, n)

// The intersections of each channel.
template <class M>
struct per_intersection {
    using Row = std::remove_extent_t<M>;
    static constexpr Layout layout{.owner = Owner::channel,
                                   .depth = 2,
                                   .level = {{{kMaxChannels, sizeof(RoadInfo)}, {std::extent_v<M>, sizeof(Row)}}}};
    static constexpr uint32_t row_stride = 0;
};
constexpr int kRoadNames = std::size(Intersection{}.road_name);

constexpr Table kTables[] = {
    // Plate recognition: the lanes of each block, and what holds for the whole device, which stands in every row.
    REPLACE_BY(single_row, traffic.itc_traffic, (inner("idx", 0)), 124, "db_get_itc_traffic_cfg",
               "db_save_itc_traffic_cfg", .says = {.load_null = "%G idx is empty...\n"}, .rows = kLaneBlocks,
               .save = PUTS(PUT_BLOCK(1, kLaneBlocks, sizeof(LaneConfig),
                                      "replace into itc_traffic_cfg (idx, enable_tps, interval_tps, " LANE_COLUMNS
                                      ", detection_type, lane_dir) values(%d, %d, %d, " LANE_VALUES ", %d, '%s');",
                                      of_holder(F(enable_tps)), of_holder(F(interval_tps)), LANE(lane[0]),
                                      of_holder(F(detection_type)), COLONS(lane[0].lane_dir)))),

    // Of te_other_param only whether the cruise has a schedule.
    READ_ONLY_BY(single_row, traffic_event.cruise, (always("idx", 1)), 0, "db_get_tfs_schedule_enable",
                 .save = SAVE("select schedule_enable from te_other_param;", F(schedule_enable)),
                 .load = SQL("select * from te_other_param;")),

    // What the stream is packed into.
    REPLACE_BY(single_row, traffic.mega_dsp, (always("chn_index", 1)), 186, "db_get_mega_dsp_config",
               "db_save_mega_dsp_config",
               .save = SAVE("replace into mega_dsp_cfg (chn_index, enable_mega_dsp, mega_dsp_magic, stream_pack_type, audio_enc_type, voice_talk_type, need_ps_sys_header, test_stream_pack_type) values(%d, %d, %d, '%s', %d, %d, %d, '%s');",
                            FIELDS(enable_mega_dsp, mega_dsp_magic), COLONS(stream_pack_type),
                            FIELDS(audio_enc_type, voice_talk_type, need_ps_sys_header),
                            COLONS(test_stream_pack_type))),

    // The cameras that follow what this one sees, with their logins.
    REPLACE_BY(list, traffic.lf_track, (inner("lf_track_no"), inner("idx")), 189, "db_get_lf_track_cfg",
               "db_set_lf_track_cfg",
               .save = SAVE("replace into lf_track_cfg (idx, lf_track_no, ip_address, user_name, pass_word, port, login, addressing_format_type, calibrate_type, is_calibrated, valid_calibrate_num, track_enable, track_mode, track_time) values(%d, %d, '%q', '%q', '%q', %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(ip_address, user_name, pass_word, port, login, addressing_format_type,
                                   calibrate_type, is_calibrated, valid_calibrate_num, track_enable, track_mode,
                                   track_time))),

    // The points that the picture of each was matched by.
    REPLACE_BY(grid, traffic.lf_calibrate,
               (outer("lf_track_no"), inner("lf_coordinate_no"), across("idx", outer, inner)), 190,
               "db_get_lf_calibrate_info", "db_set_lf_calibrate_info",
               .says = {.load_key = "lf_track_no(%d) err\n",
                        .load_row = "lf_coordinate_no(%d) err\n",
                        .few = "db_query_rec_count_v2 lf_track_cfg record not enough(%r), %d\n"},
               .save = SAVE("replace into lf_calibrate_info (idx, lf_track_no, lf_coordinate_no, x, y, pan_pos, tilt_pos, zoom_pos) values(%d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(x, y, pan_pos, tilt_pos, zoom_pos))),

    // The marked lanes of each scene, and one more line.
    ENSURE(list, intel_moni.mpr, 216, "db_get_intel_moni_mpr_config", "db_save_intel_moni_mpr_config",
           .says = {.write = "%F failed:%m\n"},
           .fill = SQL("insert into im_traffic_mpr(idx, nearbn1, farbn1, nearbn2, farbn2, enable, lane_num, lane_no1, p1x1, p1y1, p2x1, p2y1, lane_type1, lane_no2, p1x2, p1y2, p2x2, p2y2, lane_type2, lane_no3, p1x3, p1y3, p2x3, p2y3, lane_type3, lane_no4, p1x4, p1y4, p2x4, p2y4, lane_type4, p1x, p1y, p2x, p2y, lane_type) values(%d, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
           .save = SAVE("update im_traffic_mpr set nearbn1 = %d, farbn1 = %d, nearbn2 = %d, farbn2 = %d, enable = %d, lane_num = %d, lane_no1 = %d, p1x1 = %d, p1y1 = %d, p2x1 = %d, p2y1 = %d, lane_type1 = %u, lane_no2 = %d, p1x2 = %d, p1y2 = %d, p2x2 = %d, p2y2 = %d, lane_type2 = %u, lane_no3 = %d, p1x3 = %d, p1y3 = %d, p2x3 = %d, p2y3 = %d, lane_type3 = %u, lane_no4 = %d, p1x4 = %d, p1y4 = %d, p2x4 = %d, p2y4 = %d, lane_type4 = %u, p1x = %d, p1y = %d, p2x = %d, p2y = %d, lane_type = %u where idx = %d;",
                        FIELDS(nearbn1, farbn1, nearbn2, farbn2, enable, lane_num), MPR_LANE(lane[0], "1"),
                        MPR_LANE(lane[1], "2"), MPR_LANE(lane[2], "3"), MPR_LANE(lane[3], "4"), MPR_LINE(line, ""))),

    // The names of the roads at each intersection.
    REPLACE_BY(per_intersection, traffic.roadinfo[0].intersection,
               (outer("channel"), inner("intersection_idx"), third("road_name_idx"), across("idx", inner, third)), 217,
               "db_get_roadinfo_cfg", "db_save_roadinfo_cfg",
               .says = {.write = "%S failed(%m)\n",
                        .load_middle = "invalid intersection_idx: %d\n",
                        .load_row = "invalid road_name_idx: %d\n"},
               .rows = kRoadNames,
               .save = PUTS(PUT_BLOCK(1, kRoadNames, sizeof(RoadName),
                                      "replace into roadinfo_config (idx, channel, intersection_idx, roadinfo_osd_enable, intersection_enable, intersection_id, pan_pos, tilt_pos, zoom_pos, road_name_idx, road_name_enable, road_text) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%q');",
                                      ELSEWHERE_IN(traffic.roadinfo, roadinfo_osd_enable),
                                      of_holder(F(intersection_enable)), of_holder(F(intersection_id)),
                                      of_holder(F(pan_pos)), of_holder(F(tilt_pos)), of_holder(F(zoom_pos)),
                                      FIELDS(road_name[0].road_name_enable, road_name[0].road_text)))),

    // The violations and their names.
    REPLACE(list, traffic.illegal_dictionary, 250, "db_get_traffic_illegal_dictionary",
            "db_save_traffic_illegal_dictionary",
            .says = {.empty = "db_query_rec_count_v2  the row_num is %r error\n",
                     .no_record = "ptraffic_illegal_dictionary is NULL\n"},
            .refuses_more = true,
            .save = SAVE("replace into traffic_illegal_dictionary (idx, illegal_code, illegal_name) values(%d, %d, '%q');",
                         FIELDS(illegal_code, illegal_name))),

    // The items of the overlay.
    REPLACE(list, traffic.overlap_info, 251, "db_get_traffic_overlap_info", "db_save_traffic_overlap_info",
            .says = {.empty = "db_query_rec_count_v2 the row number is %r. error: %d\n",
                     .no_record = "ptraffic_osd_cfg is NULL\n"},
            .refuses_more = true,
            .save = SAVE("replace into traffic_overlap_info (idx,overlay_text,item_enable,item_type,changeline_num,space_num) values(%d,'%q',%d,%d,%d,%d);",
                         FIELDS(overlay_text, item_enable, item_type, changeline_num, space_num))),
};

constexpr std::span<const Table> kGroups[] = {EventTables<Events>::kTables,
                                              EventScenes<Events>::kTables,
                                              EventTables<Monitoring>::kTables,
                                              EventScenes<Monitoring>::kTables,
                                              SceneTables<Traffic>::kTables,
                                              SceneTables<Vehicle>::kTables,
                                              kTables};

}  // namespace

const Domain kTrafficTables = kGroups;

}  // namespace dbshell
