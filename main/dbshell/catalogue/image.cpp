// The tables of the image front end: the sensors' pipeline settings, the day and night parameter sets,
// lenses, thermal imaging, cropping and the supplementary light.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

namespace sensors {

constexpr Messages kSays{.write = "%F failed \n",
                         .open = " db_query_open_v2 err\n",
                         .empty = " db_query_rec_count_v2 err\n"};
constexpr Codes kCodes = kGraded;

constexpr Table kTables[] = {
    // The picture's basic levels: brightness, contrast, saturation, sharpness, hue and gain.
    REPLACE(per_sensor, sensor, 21, "db_get_front_param_config", "db_save_front_param_config",
            .says = {.write = "SQL error:\n",
                     .open = " db_query_open_v2 err !\n",
                     .empty = " db_query_rec_count_v2 err !\n"},
            .save = SAVE("replace into front_param_config (idx, brightness_lv, hue_lv, saturation_lv, contrast_lv, sharpness_lv, gain_lv, grayscale, auto_contrast_mode, auto_contrast_level, maxgainvalue) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(brightness_lv, hue_lv, saturation_lv, contrast_lv, sharpness_lv, gain_lv, grayscale,
                                auto_contrast_mode, auto_contrast_level, maxgainvalue))),

    // The sensor's switches: power line frequency, mirroring, scene, digital zoom, defogging, capture mode,
    // zoom limits, exposure and focus regions, local video output.
    REPLACE(per_sensor, sensor, 22, "db_get_front_other_config", "db_save_front_other_config",
            .says = {.wrapper = "%F failed for sensor_no: %d\n"},
            .save = SAVE("replace into front_other_config (idx, local_output, powerline, mirror_ctrl, mirror, scene_mode, black_pwl, color_range, digital_zoom, eptz, dehaze_mode, light_inhibition_enable, light_inhibition_level, lowluminance_enhance, bcorridor_mode, dehaze_level, image_stabilization_mode, capture_mode, capture_mode_enable, zoom_min_limit, zoom_max_limit, ae_region, af_region, sdi_local_output_enable, local_output_hd, lens_distort_correction_enable) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %u, %u, %d, %d, %d);",
                         FIELDS(local_output, powerline, mirror_ctrl, mirror, scene_mode, black_pwl, color_range,
                                digital_zoom, eptz, dehaze_mode, light_inhibition_enable, light_inhibition_level,
                                lowluminance_enhance, bcorridor_mode, dehaze_level, image_stabilization_mode,
                                capture_mode, capture_mode_enable, zoom_min_limit, zoom_max_limit, ae_region, af_region,
                                sdi_local_output_enable, local_output_hd, lens_distort_correction_enable))),

    // Wide dynamic range.
    REPLACE(per_sensor, sensor, 23, "db_get_wdr_config", "db_save_wdr_config",
            .save = SAVE("replace into wdr_config_table (idx, enable, level_one, level_two, contrast_level) values(%d, %d, %d, %d, %d);",
                         FIELDS(wdr.enable, wdr.level_one, wdr.level_two, wdr.contrast_level))),

    // Backlight compensation and the rectangle it is measured in.
    REPLACE(per_sensor, sensor, 24, "db_get_blc_config", "db_save_blc_config",
            .says = {.empty = "db_query_rec_count_v2 err\n", .wrapper = "%S error for sensor_no: %d\n"},
            .save = SAVE("replace into blc_config_table (idx, blc_mode, blc_level, pos_x0, pos_y0, pos_x1, pos_y1, area_index)values(%d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(blc_mode, blc_level, pos_x0, pos_y0, pos_x1, pos_y1, area_index))),

    // White balance: the mode, the manual gains and the gains of the automatic balance.
    REPLACE(per_sensor, sensor, 25, "db_get_wb_config", "db_save_wb_config", .says = {.write = "%F failed\n"},
            .save = SAVE("replace into wb_config_table (idx, wb_mode, wb_gain_r, wb_gain_b, awb_rgain, awb_ggain, awb_bgain) values(%d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(wb_mode, wb_gain_r, wb_gain_b, awb_rgain, awb_ggain, awb_bgain))),

    // Digital noise reduction, in space and in time.
    REPLACE(per_sensor, sensor, 26, "db_get_dnr_config", "db_save_dnr_config",
            .save = SAVE("replace into dnr_config_table (idx, dnr_mode, dnr_level, spectral_level, temporal_level) values(%d, %d, %d, %d, %d);",
                         FIELDS(dnr_mode, dnr_level, spectral_level, temporal_level))),

    // Gamma correction.
    REPLACE(per_sensor, sensor, 27, "db_get_gamma_config", "db_save_gamma_config", .says = {.write = "%F failed\n"},
            .save = SAVE("replace into gamma_config_table (idx, enable, level) values(%d, %d, %d);",
                         FIELDS(gamma.enable, gamma.level))),

    // Day/night switching: thresholds, the daily schedule and the infrared light.
    REPLACE(per_sensor, sensor, 28, "db_get_dnf_config", "db_save_dnf_config", .says = {.write = "%F failed\n"},
            .save = SAVE("replace into dnf_config_table (idx, dnf_mode, daytonight_level, nighttoday_level, filter_time, schedule_enabled, begin_time, end_time, begintime_min, begintime_sec, endtime_min, endtime_sec, smart_ir, alarmtrigstate, smart_ir_mode, smart_ir_distance, smart_ir_short_distance, smart_ir_long_distance)values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(dnf_mode, daytonight_level, nighttoday_level, filter_time, schedule_enabled, begin_time,
                                end_time, begintime_min, begintime_sec, endtime_min, endtime_sec, smart_ir,
                                alarmtrigstate, smart_ir_mode, smart_ir_distance, smart_ir_short_distance,
                                smart_ir_long_distance)),
            .unstored = UNSTORED(Unstored{"day_night_type_before_led_on", "never written"})),

    // Exposure times and the iris.
    REPLACE(per_sensor, sensor, 29, "db_get_lens_exposure", "db_save_lens_exposure",
            .says = {.write = "%F falied\n", .wrapper = "%F failed for sensor_no: %d\n"},
            .save = SAVE("replace into lens_exposure_table (idx, exposure_mode, iris_mode, exposure_target, exposure_userset, exposure_set, auto_aperture_level, piris_mode, piris_aperture) values(%d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(exposure_mode, iris_mode, exposure_target, exposure_userset, exposure_set,
                                auto_aperture_level, piris_mode, piris_aperture))),

    // The thermal picture: palette, filters and the interval of the automatic compensation.
    REPLACE(per_sensor, sensor, 30, "db_get_trermal_image", "db_save_trermal_image",
            .says = {.write = "%F failed\n",
                     .open = "db_query_open_v2 err\n",
                     .wrapper = "%F failed for sensor_no: %d\n"},
            .save = SAVE("replace into trermal_image_table (idx, filter_switch, palette_mode, dimmer_mode, enhanced_mode, focus_speed, auto_compensation_interval) values(%d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(filter_switch, palette_mode, dimmer_mode, enhanced_mode, focus_speed,
                                auto_compensation_interval))),
};

}  // namespace sensors

namespace image {

constexpr Messages kSays{.count = "db_query_row_num error: \n", .insert = "SQL error:\n"};

constexpr Table kTables[] = {
    // The time of day in which the day parameters apply.
    ENSURE(single_row, image.isp_time, 131, "db_get_isp_time_param", "db_save_isp_time_param",
           .fill = SQL("insert into  isp_time_config (idx, work_type, start_hour, start_minute, start_second, stop_hour, stop_minute, stop_second) values (1, 0, 0, 0, 0, 0, 0, 0);"),
           .save = SAVE("update isp_time_config set work_type=%d, start_hour=%d, start_minute=%d, start_second=%d, stop_hour=%d, stop_minute=%d, stop_second=%d where idx = 1;",
                        FIELDS(work_type, start_hour, start_minute, start_second, stop_hour, stop_minute,
                               stop_second))),

    // The serial digital output: two columns of front_other_config; a missing row stays missing.
    UPDATE_ONLY(per_sensor, sensor, 155, "db_get_sdi_local_output_config", "db_save_sdi_local_output_config",
                .single = "", .says = {.write = "SQL error:%s\n"},
                .save = SAVE("update front_other_config set sdi_local_output_enable=%d, local_output_hd=%d where idx=%d;",
                             FIELDS(sdi_local_output_enable, local_output_hd)),
                .load = SQL("select sdi_local_output_enable, local_output_hd from front_other_config where idx=%d;")),

    // The device address of the infrared remote control.
    REPLACE(single_row, image, 168, "db_get_infrared_remote_ctrl_cfg", "db_save_infrared_remote_ctrl_cfg",
            .says = {.write = "SQL error\n"},
            .save = SAVE("replace into infrared_remote_ctrl (idx, infrared_remote_ctrl_address) values(1, %d);",
                         F(infrared_remote_ctrl_address)),
            .load = SQL("select * from infrared_remote_ctrl where idx = 1;")),

    // The binocular camera: how it is mounted, and its five calibration points.
    REPLACE(single_row, image.binocular, 169, "db_get_binocular_cfg", "db_save_binocular_cfg",
            .says = {.write = "SQL error\n"},
            .save = SAVE("replace into binocular_cfg (idx, video_type, enable, calibration_type, camera_height, pitch_angle, incline_angle, human_height, x_coords, y_coords) values(1, %d, %d, %d, %u, %u, %u, %u, '%s', '%s');",
                         FIELDS(video_type, enable, calibration_type, camera_height, pitch_angle, incline_angle,
                                human_height),
                         COLONS(x_coords), COLONS(y_coords)),
            .load = SQL("select * from binocular_cfg where idx = 1;")),

    // The fish-eye lens: per row a mounting and sixteen points.
    REPLACE_BY(list, image.fisheye, (inner("idx"), always("chan_no", 1)), 170, "db_get_fisheye_param",
               "db_save_fisheye_param",
               .save = SAVE("replace into fisheye_param_cfg (idx, chan_no, mount_mode, pix_x, pix_y, zoom) values(%d, %d, %d, '%s', '%s', '%s');",
                            F(mount_mode), COMMAS(pix_x), COMMAS(pix_y), COMMAS(zoom)),
               .load = SQL("select * from fisheye_param_cfg where chan_no = 1;")),

    // The thermal core: flat-field correction, detail enhancement, gain control and zoom.
    REPLACE(per_channel, image.thermal_front, 171, "db_get_thermal_front_param", "db_save_thermal_front_param",
            .says = {.write = "SQL error\n"},
            .save = SAVE("replace into thermal_front_param (idx, ffcmode, ffctime, ffctemp, ddemode, ddealgorithm, ddelevel, agcmode, dzoom) values(%d, %d, %u, %u, %d, %d, %u, %d, %d);",
                         FIELDS(ffcmode, ffctime, ffctemp, ddemode, ddealgorithm, ddelevel, agcmode, dzoom))),

    // The region that a stream is cropped to.
    REPLACE(single_row, image.area_tailor, 172, "db_get_area_tailor_cfg", "db_save_area_tailor_cfg",
            .says = {.write = "SQL error\n"},
            .save = SAVE("replace into area_tailor_cfg (idx, is_avaliable, chan_id, stream_id, x, y, w, h, region_coord_num, region_wh, region_xy) values(1, %d, %u, %u, %u, %u, %u, %u, 1, '%s', '%s');",
                         FIELDS(is_avaliable, chan_id, stream_id, x, y, w, h), COLONS(region_wh), COLONS(region_xy))),

    // The supplementary LED light: brightness of its two beams and the hours it may be on.
    REPLACE(single_row, image.led_light, 222, "db_get_led_light_cfg", "db_save_led_light_cfg",
            .says = {.write = "SQL error:%s\n"},
            .save = SAVE("replace into led_light_cfg (idx, enable, mode, lowbeam_brightness, hightbeam_brightness, start_hour, start_minute, start_second, stop_hour, stop_minute, stop_second, filter_time) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %u);",
                         FIELDS(enable, mode, lowbeam_brightness, hightbeam_brightness, start_hour, start_minute,
                                start_second, stop_hour, stop_minute, stop_second, filter_time))),
};

}  // namespace image

// The image parameters by day and by night: isp_day_param_config (db_get_isp_day_param, db_save_isp_day_param) and
// isp_night_param_config (db_get_isp_night_param, db_save_isp_night_param).
namespace isp {

constexpr Messages kSays{.count = "db_query_row_num error: \n", .insert = "SQL error:\n"};

struct Day {
    static constexpr int number = 132;
    static constexpr std::string_view table = "day", function = "day";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, image.isp_day);
};
struct Night {
    static constexpr int number = 133;
    static constexpr std::string_view table = "night", function = "night";
    static constexpr std::size_t offset = offsetof(DEVICECONFIG, image.isp_night);
};

template <class Twin>
struct Family {
    struct Root {
        IspParam param;
    };
    static constexpr std::size_t kRootOffset = Twin::offset;
    static constexpr Table kTables[] = {
        ENSURE(single_row, param, Twin::number, "db_get_isp_{f}_param", "db_save_isp_{f}_param",
               .fill = SQL("insert into  isp_{t}_param_config (idx, brightness, contrast, sharp, gain, gray, WB_mode, WB_Rgain, WB_Bgain, awb_Rgain, awb_Ggain, awb_Bgain, image_stabilization_mode, image_stabilization_level, exposureuserset, exposureset, digital_noise_enable, digital_noise_level, spectral_level, temporal_level, WDR_enable, WDR_level1, WDR_level2, WDR_cantrast_level, light_inhibition_enable, light_inhibition_level, BL_mode, BL_level, positionx0, positiony0, positionx1, positiony1, dehaze_mode, dehaze_level, saturationLevel) values (1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
               .save = SAVE("update isp_{t}_param_config set brightness=%d, contrast=%d, sharp=%d, gain=%d, gray=%d, WB_mode=%d, WB_Rgain=%d, WB_Bgain=%d, awb_Rgain=%d, awb_Ggain=%d, awb_Bgain=%d, image_stabilization_mode=%d, image_stabilization_level=%d, exposureuserset=%d, exposureset=%d, digital_noise_enable=%d, digital_noise_level=%d, spectral_level=%d, temporal_level=%d, WDR_enable=%d, WDR_level1=%d, WDR_level2=%d, WDR_cantrast_level=%d, light_inhibition_enable=%d, light_inhibition_level=%d, BL_mode=%d, BL_level=%d, positionx0=%d, positiony0=%d, positionx1=%d, positiony1=%d, dehaze_mode=%d, dehaze_level=%d, saturationLevel = %d  where idx = 1;",
                            FIELDS(brightness, contrast, sharp, gain, gray, WB_mode, WB_Rgain, WB_Bgain, awb_Rgain,
                                   awb_Ggain, awb_Bgain, image_stabilization_mode, image_stabilization_level,
                                   exposureuserset, exposureset, digital_noise_enable, digital_noise_level,
                                   spectral_level, temporal_level, WDR_enable, WDR_level1, WDR_level2,
                                   WDR_cantrast_level, light_inhibition_enable, light_inhibition_level, BL_mode,
                                   BL_level, positionx0, positiony0, positionx1, positiony1, dehaze_mode, dehaze_level,
                                   saturationLevel))),
    };
};

}  // namespace isp

constexpr std::span<const Table> kGroups[] = {sensors::kTables, image::kTables, isp::Family<isp::Day>::kTables,
                                              isp::Family<isp::Night>::kTables};

}  // namespace

const Domain kImageTables = kGroups;

}  // namespace dbshell
