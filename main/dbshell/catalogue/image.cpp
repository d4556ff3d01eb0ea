// The tables of the image front end: the sensors' pipeline settings, the day and night parameter sets,
// lenses, thermal imaging, cropping and the supplementary light.
#include "catalogue.h"

namespace {

// What the per-sensor tables log; a null wrapper is the shape's own.
constexpr Messages sensor_says(const char* write, const char* wrapper = nullptr) {
    return {.write = write,
            .open = " db_query_open_v2 err\n",
            .empty = " db_query_rec_count_v2 err\n",
            .wrapper = wrapper};
}

// The day and the night parameter set have the same columns.
#define ISP_FIELDS                                                                                       \
    FIELDS(brightness, contrast, sharp, gain, gray, WB_mode, WB_Rgain, WB_Bgain, awb_Rgain, awb_Ggain,   \
           awb_Bgain, image_stabilization_mode, image_stabilization_level, exposureuserset, exposureset, \
           digital_noise_enable, digital_noise_level, spectral_level, temporal_level, WDR_enable,        \
           WDR_level1, WDR_level2, WDR_cantrast_level, light_inhibition_enable, light_inhibition_level,  \
           BL_mode, BL_level, positionx0, positiony0, positionx1, positiony1, dehaze_mode, dehaze_level, \
           saturationLevel)

constexpr Table kTables[] = {
    // The picture's basic levels: brightness, contrast, saturation, sharpness, hue and gain.
    TABLE(
        per_sensor, sensor, .number = 21, .get = "db_get_front_param_config",
        .set = "db_save_front_param_config", .single = "db_save_front_param_config_single",
        .says = {.open = " db_query_open_v2 err !\n", .empty = " db_query_rec_count_v2 err !\n"},
        .graded = true,
        .save = SAVE("replace into front_param_config (idx, brightness_lv, hue_lv, saturation_lv, "
                     "contrast_lv, sharpness_lv, gain_lv, grayscale, auto_contrast_mode, "
                     "auto_contrast_level, maxgainvalue) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                     FIELDS(brightness_lv, hue_lv, saturation_lv, contrast_lv, sharpness_lv, gain_lv,
                            grayscale, auto_contrast_mode, auto_contrast_level, maxgainvalue))),

    // The sensor's switches: power line frequency, mirroring, scene, digital zoom, defogging, capture mode,
    // zoom limits, exposure and focus regions, local video output.
    TABLE(per_sensor, sensor, .number = 22, .get = "db_get_front_other_config",
          .set = "db_save_front_other_config", .single = "db_save_front_other_config_single",
          .says = sensor_says("db_save_front_other_config failed \n",
                              "db_save_front_other_config failed for sensor_no: %d\n"),
          .graded = true,
          .save = SAVE(
              "replace into front_other_config (idx, local_output, powerline, mirror_ctrl, mirror, "
              "scene_mode, black_pwl, color_range, digital_zoom, eptz, dehaze_mode, light_inhibition_enable, "
              "light_inhibition_level, lowluminance_enhance, bcorridor_mode, dehaze_level, "
              "image_stabilization_mode, capture_mode, capture_mode_enable, zoom_min_limit, zoom_max_limit, "
              "ae_region, af_region, sdi_local_output_enable, local_output_hd, "
              "lens_distort_correction_enable) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, "
              "%d, %d, %d, %d, %d, %d, %d, %d, %u, %u, %d, %d, %d);",
              FIELDS(local_output, powerline, mirror_ctrl, mirror, scene_mode, black_pwl, color_range,
                     digital_zoom, eptz, dehaze_mode, light_inhibition_enable, light_inhibition_level,
                     lowluminance_enhance, bcorridor_mode, dehaze_level, image_stabilization_mode,
                     capture_mode, capture_mode_enable, zoom_min_limit, zoom_max_limit, ae_region, af_region,
                     sdi_local_output_enable, local_output_hd, lens_distort_correction_enable))),

    // Wide dynamic range.
    TABLE(per_sensor, sensor, .number = 23, .get = "db_get_wdr_config", .set = "db_save_wdr_config",
          .single = "db_save_wdr_config_single", .says = sensor_says("db_save_wdr_config failed \n"),
          .graded = true,
          .save = SAVE("replace into wdr_config_table (idx, enable, level_one, level_two, contrast_level) "
                       "values(%d, %d, %d, %d, %d);",
                       FIELDS(wdr.enable, wdr.level_one, wdr.level_two, wdr.contrast_level))),

    // Backlight compensation and the rectangle it is measured in.
    TABLE(per_sensor, sensor, .number = 24, .get = "db_get_blc_config", .set = "db_save_blc_config",
          .single = "db_save_blc_config_single",
          .says = {.write = "db_save_blc_config failed \n",
                   .open = " db_query_open_v2 err\n",
                   .empty = "db_query_rec_count_v2 err\n",
                   .wrapper = "db_save_blc_config_single error for sensor_no: %d\n"},
          .graded = true,
          .save = SAVE("replace into blc_config_table (idx, blc_mode, blc_level, pos_x0, pos_y0, pos_x1, "
                       "pos_y1, area_index)values(%d, %d, %d, %d, %d, %d, %d, %d);",
                       FIELDS(blc_mode, blc_level, pos_x0, pos_y0, pos_x1, pos_y1, area_index))),

    // White balance: the mode, the manual gains and the gains of the automatic balance.
    TABLE(per_sensor, sensor, .number = 25, .get = "db_get_wb_config", .set = "db_save_wb_config",
          .single = "db_save_wb_config_single", .says = sensor_says("db_save_wb_config failed\n"),
          .graded = true,
          .save = SAVE("replace into wb_config_table (idx, wb_mode, wb_gain_r, wb_gain_b, awb_rgain, "
                       "awb_ggain, awb_bgain) values(%d, %d, %d, %d, %d, %d, %d);",
                       FIELDS(wb_mode, wb_gain_r, wb_gain_b, awb_rgain, awb_ggain, awb_bgain))),

    // Digital noise reduction, in space and in time.
    TABLE(per_sensor, sensor, .number = 26, .get = "db_get_dnr_config", .set = "db_save_dnr_config",
          .single = "db_save_dnr_config_single", .says = sensor_says("db_save_dnr_config failed \n"),
          .graded = true,
          .save = SAVE("replace into dnr_config_table (idx, dnr_mode, dnr_level, spectral_level, "
                       "temporal_level) values(%d, %d, %d, %d, %d);",
                       FIELDS(dnr_mode, dnr_level, spectral_level, temporal_level))),

    // Gamma correction.
    TABLE(per_sensor, sensor, .number = 27, .get = "db_get_gamma_config", .set = "db_save_gamma_config",
          .single = "db_save_gamma_config_single", .says = sensor_says("db_save_gamma_config failed\n"),
          .graded = true,
          .save = SAVE("replace into gamma_config_table (idx, enable, level) values(%d, %d, %d);",
                       FIELDS(gamma.enable, gamma.level))),

    // Day/night switching: thresholds, the daily schedule and the infrared light.
    TABLE(per_sensor, sensor, .number = 28, .get = "db_get_dnf_config", .set = "db_save_dnf_config",
          .single = "db_save_dnf_config_single", .says = sensor_says("db_save_dnf_config failed\n"),
          .graded = true,
          .save = SAVE("replace into dnf_config_table (idx, dnf_mode, daytonight_level, nighttoday_level, "
                       "filter_time, schedule_enabled, begin_time, end_time, begintime_min, begintime_sec, "
                       "endtime_min, endtime_sec, smart_ir, alarmtrigstate, smart_ir_mode, "
                       "smart_ir_distance, smart_ir_short_distance, smart_ir_long_distance)values(%d, %d, "
                       "%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                       FIELDS(dnf_mode, daytonight_level, nighttoday_level, filter_time, schedule_enabled,
                              begin_time, end_time, begintime_min, begintime_sec, endtime_min, endtime_sec,
                              smart_ir, alarmtrigstate, smart_ir_mode, smart_ir_distance,
                              smart_ir_short_distance, smart_ir_long_distance))),

    // Exposure times and the iris.
    TABLE(per_sensor, sensor, .number = 29, .get = "db_get_lens_exposure", .set = "db_save_lens_exposure",
          .single = "db_save_lens_exposure_single",
          .says = sensor_says("db_save_lens_exposure falied\n",
                              "db_save_lens_exposure failed for sensor_no: %d\n"),
          .graded = true,
          .save = SAVE("replace into lens_exposure_table (idx, exposure_mode, iris_mode, exposure_target, "
                       "exposure_userset, exposure_set, auto_aperture_level, piris_mode, piris_aperture) "
                       "values(%d, %d, %d, %d, %d, %d, %d, %d, %d);",
                       FIELDS(exposure_mode, iris_mode, exposure_target, exposure_userset, exposure_set,
                              auto_aperture_level, piris_mode, piris_aperture))),

    // The thermal picture: palette, filters and the interval of the automatic compensation.
    TABLE(per_sensor, sensor, .number = 30, .get = "db_get_trermal_image", .set = "db_save_trermal_image",
          .single = "db_save_trermal_image_single",
          .says = {.write = "db_save_trermal_image failed\n",
                   .open = "db_query_open_v2 err\n",
                   .empty = " db_query_rec_count_v2 err\n",
                   .wrapper = "db_save_trermal_image failed for sensor_no: %d\n"},
          .graded = true,
          .save = SAVE(
              "replace into trermal_image_table (idx, filter_switch, palette_mode, dimmer_mode, "
              "enhanced_mode, focus_speed, auto_compensation_interval) values(%d, %d, %d, %d, %d, %d, %d);",
              FIELDS(filter_switch, palette_mode, dimmer_mode, enhanced_mode, focus_speed,
                     auto_compensation_interval))),

    // The time of day in which the day parameters apply.
    TABLE(single_row, image.isp_time, .number = 131, .get = "db_get_isp_time_param",
          .set = "db_save_isp_time_param",
          .says = {.count = "db_query_row_num error: \n", .insert = "SQL error:\n"},
          .count = SQL("select count(*) from isp_time_config;"),
          .fill = SQL("insert into  isp_time_config (idx, work_type, start_hour, start_minute, start_second, "
                      "stop_hour, stop_minute, stop_second) values (1, 0, 0, 0, 0, 0, 0, 0);"),
          .save = SAVE("update isp_time_config set work_type=%d, start_hour=%d, start_minute=%d, "
                       "start_second=%d, stop_hour=%d, stop_minute=%d, stop_second=%d where idx = 1;",
                       FIELDS(work_type, start_hour, start_minute, start_second, stop_hour, stop_minute,
                              stop_second))),

    // The image parameters by day.
    TABLE(single_row, image.isp_day, .number = 132, .get = "db_get_isp_day_param",
          .set = "db_save_isp_day_param",
          .says = {.count = "db_query_row_num error: \n", .insert = "SQL error:\n"},
          .count = SQL("select count(*) from isp_day_param_config;"),
          .fill = SQL("insert into  isp_day_param_config (idx, brightness, contrast, sharp, gain, gray, "
                      "WB_mode, WB_Rgain, WB_Bgain, awb_Rgain, awb_Ggain, awb_Bgain, "
                      "image_stabilization_mode, image_stabilization_level, exposureuserset, exposureset, "
                      "digital_noise_enable, digital_noise_level, spectral_level, temporal_level, "
                      "WDR_enable, WDR_level1, WDR_level2, WDR_cantrast_level, light_inhibition_enable, "
                      "light_inhibition_level, BL_mode, BL_level, positionx0, positiony0, positionx1, "
                      "positiony1, dehaze_mode, dehaze_level, saturationLevel) values (1, 0, 0, 0, 0, 0, 0, "
                      "0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
          .save = SAVE("update isp_day_param_config set brightness=%d, contrast=%d, sharp=%d, gain=%d, "
                       "gray=%d, WB_mode=%d, WB_Rgain=%d, WB_Bgain=%d, awb_Rgain=%d, awb_Ggain=%d, "
                       "awb_Bgain=%d, image_stabilization_mode=%d, image_stabilization_level=%d, "
                       "exposureuserset=%d, exposureset=%d, digital_noise_enable=%d, digital_noise_level=%d, "
                       "spectral_level=%d, temporal_level=%d, WDR_enable=%d, WDR_level1=%d, WDR_level2=%d, "
                       "WDR_cantrast_level=%d, light_inhibition_enable=%d, light_inhibition_level=%d, "
                       "BL_mode=%d, BL_level=%d, positionx0=%d, positiony0=%d, positionx1=%d, positiony1=%d, "
                       "dehaze_mode=%d, dehaze_level=%d, saturationLevel = %d  where idx = 1;",
                       ISP_FIELDS)),

    // The image parameters by night.
    TABLE(single_row, image.isp_night, .number = 133, .get = "db_get_isp_night_param",
          .set = "db_save_isp_night_param",
          .says = {.count = "db_query_row_num error: \n", .insert = "SQL error:\n"},
          .count = SQL("select count(*) from isp_night_param_config;"),
          .fill = SQL("insert into  isp_night_param_config (idx, brightness, contrast, sharp, gain, gray, "
                      "WB_mode, WB_Rgain, WB_Bgain, awb_Rgain, awb_Ggain, awb_Bgain, "
                      "image_stabilization_mode, image_stabilization_level, exposureuserset, exposureset, "
                      "digital_noise_enable, digital_noise_level, spectral_level, temporal_level, "
                      "WDR_enable, WDR_level1, WDR_level2, WDR_cantrast_level, light_inhibition_enable, "
                      "light_inhibition_level, BL_mode, BL_level, positionx0, positiony0, positionx1, "
                      "positiony1, dehaze_mode, dehaze_level, saturationLevel) values (1, 0, 0, 0, 0, 0, 0, "
                      "0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);"),
          .save = SAVE("update isp_night_param_config set brightness=%d, contrast=%d, sharp=%d, gain=%d, "
                       "gray=%d, WB_mode=%d, WB_Rgain=%d, WB_Bgain=%d, awb_Rgain=%d, awb_Ggain=%d, "
                       "awb_Bgain=%d, image_stabilization_mode=%d, image_stabilization_level=%d, "
                       "exposureuserset=%d, exposureset=%d, digital_noise_enable=%d, digital_noise_level=%d, "
                       "spectral_level=%d, temporal_level=%d, WDR_enable=%d, WDR_level1=%d, WDR_level2=%d, "
                       "WDR_cantrast_level=%d, light_inhibition_enable=%d, light_inhibition_level=%d, "
                       "BL_mode=%d, BL_level=%d, positionx0=%d, positiony0=%d, positionx1=%d, positiony1=%d, "
                       "dehaze_mode=%d, dehaze_level=%d, saturationLevel = %d  where idx = 1;",
                       ISP_FIELDS)),

    // The serial digital output: two columns of front_other_config; a missing row stays missing.
    TABLE(
        per_sensor, sensor, .number = 155, .get = "db_get_sdi_local_output_config",
        .set = "db_save_sdi_local_output_config", .says = {.write = "SQL error:%s\n"},
        .save =
            SAVE("update front_other_config set sdi_local_output_enable=%d, local_output_hd=%d where idx=%d;",
                 FIELDS(sdi_local_output_enable, local_output_hd)),
        .load = SQL("select sdi_local_output_enable, local_output_hd from front_other_config where idx=%d;")),

    // The device address of the infrared remote control.
    TABLE(single_row, image, .number = 168, .get = "db_get_infrared_remote_ctrl_cfg",
          .set = "db_save_infrared_remote_ctrl_cfg", .says = {.write = "SQL error\n"},
          .save = SAVE("replace into infrared_remote_ctrl (idx, infrared_remote_ctrl_address) values(1, %d);",
                       F(infrared_remote_ctrl_address)),
          .load = SQL("select * from infrared_remote_ctrl where idx = 1;")),

    // The binocular camera: how it is mounted, and its five calibration points.
    TABLE(single_row, image.binocular, .number = 169, .get = "db_get_binocular_cfg",
          .set = "db_save_binocular_cfg", .says = {.write = "SQL error\n"},
          .save = SAVE("replace into binocular_cfg (idx, video_type, enable, calibration_type, "
                       "camera_height, pitch_angle, incline_angle, human_height, x_coords, y_coords) "
                       "values(1, %d, %d, %d, %u, %u, %u, %u, '%s', '%s');",
                       FIELDS(video_type, enable, calibration_type, camera_height, pitch_angle, incline_angle,
                              human_height),
                       COLONS(x_coords), COLONS(y_coords)),
          .load = SQL("select * from binocular_cfg where idx = 1;")),

    // The fish-eye lens: per row a mounting and sixteen points.
    TABLE_BY(list, image.fisheye, (inner("idx"), always("chan_no", 1)), .number = 170,
             .get = "db_get_fisheye_param", .set = "db_save_fisheye_param",
             .save = SAVE("replace into fisheye_param_cfg (idx, chan_no, mount_mode, pix_x, pix_y, zoom) "
                          "values(%d, %d, %d, '%s', '%s', '%s');",
                          F(mount_mode), COMMAS(pix_x), COMMAS(pix_y), COMMAS(zoom)),
             .load = SQL("select * from fisheye_param_cfg where chan_no = 1;")),

    // The thermal core: flat-field correction, detail enhancement, gain control and zoom.
    TABLE(per_channel, image.thermal_front, .number = 171, .get = "db_get_thermal_front_param",
          .set = "db_save_thermal_front_param", .single = "db_save_thermal_front_param_single",
          .says = {.write = "SQL error\n"},
          .save = SAVE("replace into thermal_front_param (idx, ffcmode, ffctime, ffctemp, ddemode, "
                       "ddealgorithm, ddelevel, agcmode, dzoom) values(%d, %d, %u, %u, %d, %d, %u, %d, %d);",
                       FIELDS(ffcmode, ffctime, ffctemp, ddemode, ddealgorithm, ddelevel, agcmode, dzoom))),

    // The region that a stream is cropped to.
    TABLE(single_row, image.area_tailor, .number = 172, .get = "db_get_area_tailor_cfg",
          .set = "db_save_area_tailor_cfg", .says = {.write = "SQL error\n"},
          .save = SAVE(
              "replace into area_tailor_cfg (idx, is_avaliable, chan_id, stream_id, x, y, w, h, "
              "region_coord_num, region_wh, region_xy) values(1, %d, %u, %u, %u, %u, %u, %u, 1, '%s', '%s');",
              FIELDS(is_avaliable, chan_id, stream_id, x, y, w, h), COLONS(region_wh), COLONS(region_xy))),

    // The supplementary LED light: brightness of its two beams and the hours it may be on.
    TABLE(
        single_row, image.led_light, .number = 222, .get = "db_get_led_light_cfg",
        .set = "db_save_led_light_cfg", .says = {.write = "SQL error:%s\n"},
        .save = SAVE("replace into led_light_cfg (idx, enable, mode, lowbeam_brightness, "
                     "hightbeam_brightness, start_hour, start_minute, start_second, stop_hour, stop_minute, "
                     "stop_second, filter_time) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %u);",
                     FIELDS(enable, mode, lowbeam_brightness, hightbeam_brightness, start_hour, start_minute,
                            start_second, stop_hour, stop_minute, stop_second, filter_time))),
};

}  // namespace

const std::span<const Table> kImageTables = kTables;
