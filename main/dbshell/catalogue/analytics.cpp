// Video analytics: detectors and their areas.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

// ------------------------------------------------------------------------------------- text forms

// The scene of each segment of a vehicle schedule.
constexpr ListItem kSceneItem[] = {{offsetof(VehicleSegment, scene_id), Kind::u8}};
constexpr TextCodec kScenes{encode_list, decode_list, kSceneItem, kSegments, sizeof(VehicleSegment)};

// A pair of numbers without a separator behind it.
constexpr TextCodec kPair = [] {
    TextCodec codec = kArray<int32_t[2], ':'>;
    codec.joined = true;
    return codec;
}();

// ------------------------------------------------------------------------------------- tables

namespace detectors {

constexpr Table kTables[] = {
    // Face detection on a channel.
    REPLACE(per_channel, analytics.face_detection, 88, "db_get_fd_param", "db_save_fd_param",
            .save = SAVE("replace into fd_param_table (idx, enable_fd, enable_disp, level, interval, b_need_detail, recordchan_triggered, handle_type, alarmout_triggered, capture_triggered) values(%d, %d, %d, %d, %d, %d, '%s', %d, %d, %d);",
                         FIELDS(enable_fd, enable_disp, level, interval, b_need_detail), COLONS(recordchan_triggered),
                         FIELDS(handle_type, alarmout_triggered, capture_triggered)),
            .schedules = SCHEDULES(WEEKLY(kFaceDetection, schedule))),

    // The alarms on the loss of the sound and on its sudden rise or fall.
    ENSURE(single_row, analytics.audio_exception, 102, "db_get_audio_exception_detection",
           "db_save_audio_exception_detection",
           .fill = SQL("insert into audio_exception_detection(idx, audioin_exception_enable, sound_intensity_mutation_enable, sensitivity, threshold, handle_type, rigger_rec_chn, alarm_out_triggered, audio_steep_drop_enable, audio_steep_drop_sensitivity, enable_audio_loss, audio_loss_sensitivity) values(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
           .save = SAVE("update audio_exception_detection set audioin_exception_enable = %d, sound_intensity_mutation_enable = %d, sensitivity = %d, threshold = %d, handle_type = %d, rigger_rec_chn = %llu, alarm_out_triggered = %d, audio_steep_drop_enable = %d, audio_steep_drop_sensitivity = %d, enable_audio_loss = %d, audio_loss_sensitivity = %d where idx = 1;",
                        FIELDS(audioin_exception_enable, sound_intensity_mutation_enable, sensitivity, threshold,
                               handle_type, rigger_rec_chn, alarm_out_triggered, audio_steep_drop_enable,
                               audio_steep_drop_sensitivity, enable_audio_loss, audio_loss_sensitivity)),
           .schedules = SCHEDULES(WEEKLY(kAudioException, schedule))),

    // The alarm on a picture out of focus.
    REPLACE(per_channel, analytics.defocus, 103, "db_get_defocus_param", "db_save_defocus_param",
            .save = SAVE("replace into defocus_config_info (idx, enable_defocus, defocus_level, handle_type, alarmout_trigger, capture_triggered) values(%d, %d, %d, %d, %d, %d);",
                         FIELDS(enable_defocus, defocus_level, handle_type, alarmout_trigger, capture_triggered))),

    // The alarm on a camera that is turned to another scene.
    REPLACE(per_channel, analytics.scene_change, 108, "db_get_scene_change_detec_config",
            "db_set_scene_change_detec_config",
            .save = SAVE("replace into scene_change_detect_table (idx, enable, sensitive_level, handleType, alarmOutTriggered, trigger_record_chan, capture_triggered) values(%d, %d, %d, %d, %d, %llu, %d);",
                         FIELDS(enable, sensitive_level, handleType, alarmOutTriggered, trigger_record_chan,
                                capture_triggered)),
            .schedules = SCHEDULES(WEEKLY(kSceneChange, schedule))),

    // The areas of the expert motion detection, with settings of their own by day and by night.
    REPLACE_BY(per_channel_list, analytics.motion_area, (outer("chan_no"), inner("idx"), inner("area_no")), 130,
               "db_get_motdect_exp_param", "db_save_motdect_exp_param",
               .save = SAVE("replace into motdect_exp_param (idx, chan_no, area_no, object_area_proportion, sensitive_level, day_objectarea_proportion, day_sensitive_level, night_objectarea_proportion, night_sensitive_level, x, y, width, height) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(object_area_proportion, sensitive_level, day_objectarea_proportion,
                                   day_sensitive_level, night_objectarea_proportion, night_sensitive_level, x, y, width,
                                   height))),
};

}  // namespace detectors

namespace areas {

constexpr Table kTables[] = {
    // The lines of a channel that nobody is to cross; its own settings stand in the row of the first one.
    ENSURE_BY(per_channel, analytics.line_detect,
              (outer("chan_no"), or_else(inner("line_no"), "idx"), across("idx", outer, inner)), 105,
              "db_get_line_detect_config", "db_set_line_detect_config",
              .says = {.load_row = "invalid detect line no: %d\n"}, .rows = std::size(LineDetect{}.line),
              .load_limit = std::size(LineDetect{}.line),
              .fill = SQL("insert into line_detect_table (idx, chan_no, proc_type, enable, enable_dual_vca, handleType, alarmOutTriggered, trigger_record_chan, enable_line, cross_direction, sensitivity, linePoint, line_no, capture_triggered, email_capture_triggered) values(%d, %d, 1, 0, 0, 0, 0, 0, 0, 0, 0, '', %d, 0, 0);"),
              .save = PUTS(PUT_BLOCK(1, 1, 0,
                                     "update line_detect_table set enable=%d, handleType=%d, alarmOutTriggered=%u, capture_triggered = %u, email_capture_triggered = %u, trigger_record_chan = %lld where chan_no = %d and line_no = 1;",
                                     FIELDS(enable, handleType, alarmOutTriggered, capture_triggered,
                                            email_capture_triggered, trigger_record_chan)),
                           PUT_BLOCK(1, std::size(LineDetect{}.line), sizeof(DetectLine),
                                     "update line_detect_table set enable_line=%d, cross_direction=%d, sensitivity=%d, linePoint='%s' where chan_no = %d and line_no = %d;",
                                     FIELDS(line[0].enable_line, line[0].cross_direction, line[0].sensitivity),
                                     COLONS(line[0].linePoint))),
              .schedules = SCHEDULES(WEEKLY(kLineDetection, schedule)),
              .unstored = UNSTORED(Unstored{"proc_type", "set once, with the default row"},
                                   Unstored{"enable_dual_vca", "set once, with the default row"})),

    // The regions of a channel that nobody is to enter; its own settings stand in the row of the first one.
    ENSURE_BY(per_channel, analytics.intrusion_detect, (inner("idx"), outer("chan_no")), 106,
              "db_get_intrusion_detec_config", "db_set_intrusion_detec_config",
              .says = {.load_row = "invalid intrusion region_no: %d\n"}, .rows = std::size(IntrusionDetect{}.region),
              .fill = SQL("insert into intrusion_detect_table (idx, chan_no, proc_type, enable, enable_dual_vca, handleType, alarmOutTriggered, trigger_record_chan, str_enable, bySensitivity, byRate, wDuration, point_num, polygonPoint) values(%d, %d, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, '');"),
              .save = PUTS(PUT_BLOCK(1, 1, 0,
                                     "update intrusion_detect_table set enable=%d, enable_dual_vca=%d, handleType=%d, alarmOutTriggered=%d, trigger_record_chan=%llu where chan_no = %d and idx = 1;",
                                     FIELDS(enable, enable_dual_vca, handleType, alarmOutTriggered,
                                            trigger_record_chan)),
                           PUT_BLOCK(1, std::size(IntrusionDetect{}.region), sizeof(IntrusionRegion),
                                     "update intrusion_detect_table set str_enable=%d, bySensitivity=%d, byRate=%d, wDuration=%d, point_num=%d, polygonPoint='%s' where chan_no = %d and idx = %d;",
                                     FIELDS(region[0].str_enable, region[0].bySensitivity, region[0].byRate,
                                            region[0].wDuration, region[0].point_num),
                                     COLONS(region[0].polygonPoint))),
              .schedules = SCHEDULES(WEEKLY(kIntrusion, schedule)),
              .unstored = UNSTORED(Unstored{"proc_type", "1 in every row"})),
};

}  // namespace areas

namespace faces {

constexpr Table kTables[] = {
    // Snapshots of faces on a channel.
    ENSURE_BY(per_channel, analytics.face_snap, (outer("idx"), outer("chan_no")), 111,
              "db_get_intelligent_face_detect_config", "db_save_intelligent_face_detect_config",
              .fill = SQL("insert into intelligent_face_detect_config (idx, by_snap_time, by_snap_interval, by_snap_threshold, by_generate_rate, by_sensitive, by_reference_bright, pic_size, pic_quality, chan_no, face_exposure_enable, face_exposure_minduration, by_actives, auto_roi_enable, nkeys, nvalues, handleType, alarmOutTriggered, email_capture_triggered, capture_triggered, record_triggered, byBackgroundPic) values(%d, 0, 0, 0, 0, 0, 0, 0, 0, %d, 0, 0, '', '', '', '', 0, 0, 0, 0, 0, 0);"),
              .save = SAVE("update intelligent_face_detect_config set by_snap_time = %d, by_snap_interval = %d, by_snap_threshold = %d, by_generate_rate = %d, by_sensitive = %d, by_reference_bright = %d, pic_size = %d, pic_quality = %d, chan_no = %d, face_exposure_enable = %d, face_exposure_minduration = %d, by_actives = '%s', auto_roi_enable = '%s', nkeys = '%s', nvalues = '%s', handleType = %d, alarmOutTriggered = %d, email_capture_triggered = %d, capture_triggered = %d, record_triggered = %llu, byBackgroundPic = %d where idx = %d;",
                           FIELDS(by_snap_time, by_snap_interval, by_snap_threshold, by_generate_rate, by_sensitive,
                                  by_reference_bright, pic_size, pic_quality, face_exposure_enable,
                                  face_exposure_minduration),
                           COLONS(by_actives), COLONS(auto_roi_enable), COLONS(nkeys), COLONS(nvalues),
                           FIELDS(handleType, alarmOutTriggered, email_capture_triggered, capture_triggered,
                                  record_triggered, byBackgroundPic)),
              .schedules = SCHEDULES(WEEKLY(kFaceSnapshot, schedule))),
};

}  // namespace faces

namespace rules {

constexpr Table kTables[] = {
    // What each of the analyses works on, and how it is controlled.
    ENSURE(list, analytics.vca_ctrl, 112, "db_get_intelligent_vca_ctrl_info", "db_save_intelligent_vca_ctrl_info",
           .fill = SQL("insert into intelligent_vca_ctrl_info (idx, by_vca_enable, by_vca_type, by_stream_with_vca, by_mode, by_ctrl_type) values(%d, 0, 0, 0, 0, 0);"),
           .save = SAVE("update intelligent_vca_ctrl_info set by_vca_enable = %d, by_vca_type = %d, by_stream_with_vca = %d, by_mode = %d, by_ctrl_type = %d where idx = %d;",
                        FIELDS(by_vca_enable, by_vca_type, by_stream_with_vca, by_mode, by_ctrl_type))),

    // The parameters of the analysis of a channel, told by their number alone.
    REPLACE_BY(per_channel_list, analytics.ivs_value, (inner("idx"), outer("chan_no")), 113,
               "db_get_intelligent_ivs_param", "db_save_intelligent_ivs_param",
               .save = SAVE("replace into intelligent_ivs_param (idx, chan_no, value) values(%d, %d, %d);",
                            ROW_ITSELF("value"))),

    // The segments of known length by which a channel's picture is calibrated.
    REPLACE_BY(per_channel_list, analytics.line_segment, (inner("idx"), outer("intel_chan_no")), 114,
               "db_get_intelligent_line_segment", "db_save_intelligent_line_segment",
               .save = SAVE("replace into intelligent_line_segment (idx, intel_chan_no, by_line_mode, start_point_x, start_point_y, end_point_x, end_point_y, value) values(%d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(by_line_mode, start_point_x, start_point_y, end_point_x, end_point_y, value))),

    // What the rules of a channel draw and capture, and how its camera is placed.
    REPLACE(per_channel, analytics.behavior_rule, 115, "db_get_intelligent_behavior_rule",
            "db_save_intelligent_behavior_rule",
            .save = SAVE("replace into intelligent_behavior_rule (idx, b_dsp_add_target, b_dsp_add_rule, b_dsppic_add_target, b_dsppic_add_rule, b_capture_pic, resolution, quality, width, height, scene_total_num, scene_num, curren_scene, calibration_enable, line_seg_num, camera_mode, camera_height, camera_angle, horizon) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(b_dsp_add_target, b_dsp_add_rule, b_dsppic_add_target, b_dsppic_add_rule, b_capture_pic,
                                resolution, quality, width, height, scene_total_num, scene_num, curren_scene,
                                calibration_enable, line_seg_num, camera_mode, camera_height, camera_angle, horizon))),

    // Whether recordings can be searched by what the analyses found.
    REPLACE(single_row, analytics.enabled_intelligent_retrieval, 120, "db_get_intelligent_other_config",
            "db_save_intelligent_other_config",
            .save = SAVE("replace into intelligent_other_config (idx, enabled_intelligent_retrieval) values(%d, %d);",
                         ROW_ITSELF("enabled_intelligent_retrieval"))),

    // Further parameters of the analysis of traffic events.
    REPLACE(single_row, analytics.alg_ext, 219, "db_get_alg_ext_param", "db_save_alg_ext_param",
            .save = SAVE("replace into alg_ext_param (idx, bNeedTrackFeturePic, trackFeturePicZoomVal, trackFeturePicZoomPixs, picClearThreshold, advanceParamNum, indexs, keyvals, b_cruise_adapt, cruise_adapt_time) values(%d, %d, %d, %d, %d, %d, '%s', '%s', %d, %d);",
                         FIELDS(bNeedTrackFeturePic, trackFeturePicZoomVal, trackFeturePicZoomPixs, picClearThreshold,
                                advanceParamNum),
                         COLONS(indexs), COLONS(keyvals), FIELDS(b_cruise_adapt, cruise_adapt_time))),
};

}  // namespace rules

namespace counting {

#define FILL_REGION \
    "insert into region_param_polygon (idx, process_type, point_num, x_coords, y_coords) values(%d, %d, 0, '', '');"
#define UPDATE_REGION                                                                                      \
    "update region_param_polygon set point_num = %d, x_coords = '%s', y_coords = '%s' where idx = %d and " \
    "process_type = %d;"

constexpr Table kTables[] = {
    // The map of where people stay.
    REPLACE(single_row, analytics.heatmap, 157, "db_get_heatmap_config", "db_save_heatmap_config",
            .save = SAVE("replace into heatmap_config (idx, enable, sensitivity, background_update_rate, scene_change_level, track_enable, min_size, handle_type, alarm_out_triggered) values(%d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(enable, sensitivity, background_update_rate, scene_change_level, track_enable, min_size,
                                handle_type, alarm_out_triggered)),
            .schedules = SCHEDULES(WEEKLY(kHeatMap, schedule))),

    // The count of people who pass: how the camera is placed, what it shows, what it reports.
    REPLACE(single_row, analytics.passenger, 158, "db_get_passenger_config", "db_save_passenger_config",
            .save = SAVE("replace into passenger_config (idx, enable, handle_type, alarm_out_triggered, setup_height, view_angle, horizontal_distance, focal_length, calibration_enable, rec_num, rect_xy, rect_wh, osd_enable, osd_point_num, osd_point, line_calibration_benable, b_sec_upload_enable, data_upload_cycle) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%s', '%s', %d, %d, '%s', %d, %d, %d);",
                         FIELDS(enable, handle_type, alarm_out_triggered, setup_height, view_angle, horizontal_distance,
                                focal_length, calibration_enable, rec_num),
                         COLONS(rect_xy), COLONS(rect_wh), FIELDS(osd_enable, osd_point_num), COLONS(osd_point),
                         FIELDS(line_calibration_benable, b_sec_upload_enable, data_upload_cycle)),
            .schedules = SCHEDULES(WEEKLY(kPassengerCount, schedule))),

    // Where people are counted, and how fast they go.
    REPLACE(single_row, analytics.passenger_region, 159, "db_get_passenger_region_config",
            "db_save_passenger_region_config",
            .save = SAVE("replace into passenger_region_config (idx, sensitivity, speed_space, speed_time, count_speed, detecte_type, size_correct, start_point, end_point) values(%d, %d, %d, %d, %d, %d, %d, '%s', '%s');",
                         FIELDS(sensitivity, speed_space, speed_time, count_speed, detecte_type, size_correct),
                         COLONS(start_point), COLONS(end_point))),

    // The outlines that the heat map is drawn in, and the one that people are counted in.
    ENSURE_BY(list, analytics.region_polygon_type1, (inner("idx"), only("process_type", 1)), 161,
              "db_get_region_param_polygon", "db_save_region_param_polygon", .fill = SQL(FILL_REGION),
              .save = SAVE(UPDATE_REGION, F(point_num), COLONS(x_coords), COLONS(y_coords))),
    ENSURE_BY(single_row, analytics.region_polygon_type2, (always("idx", 1), only("process_type", 2)), 0,
              "db_get_region_param_polygon", "db_save_region_param_polygon", .fill = SQL(FILL_REGION),
              .save = SAVE(UPDATE_REGION, F(point_num), COLONS(x_coords), COLONS(y_coords)),
              .load = SQL("select * from region_param_polygon where idx = %d and process_type = %d;")),

    // The detection of vehicles, and the scene that it works in at each time of the week.
    REPLACE(single_row, analytics.vehicle_detection, 175, "db_get_vehicle_detection_cfg",
            "db_save_vehicle_detection_cfg", .says = {.save_schedule = "db_save_timeseg error\n"},
            .save = SAVE("replace into vehicle_detection_cfg (idx, b_enable, handle_type, alarm_out_triggered, scene_id) values(%d, %d, %d, %d, '%s');",
                         FIELDS(b_enable, handle_type, alarm_out_triggered),
                         as("scene_id", CODED(schedule.segment, kScenes))),
            .schedules = SCHEDULES(WEEKLY(kVehicle, schedule))),

    // The lines that people are counted at; each row holds one.
    REPLACE_BY(per_element, analytics.vca_line,
               (outer("process_type"), always("idx", 1), always("chan_no", 1), only("num", 1)), 180,
               "db_get_vca_line_cfg", "db_save_vca_line_cfg", .single = "",
               .says = {.load_only = "vca line num error: %d\n"},
               .save = SAVE("replace into vca_line_cfg (idx, chan_no, process_type, num, start, end) values(%d, %d, %d, %d, '%s', '%s');",
                            CODED(start, kPair), CODED(end, kPair)),
               .load = SQL("select * from vca_line_cfg where idx = 1 and chan_no = 1 and process_type = %d;")),
};

}  // namespace counting

constexpr std::span<const Table> kGroups[] = {detectors::kTables, areas::kTables, faces::kTables, rules::kTables,
                                              counting::kTables};

}  // namespace

const Domain kAnalyticsTables = kGroups;

}  // namespace dbshell
