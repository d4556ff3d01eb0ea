#include "chain_steps.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "customcfg.h"
#include "engine.h"
#include "log.h"
#include "state.h"
#include "store.h"
#include "work.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

// ------------------------------------------------------------------------------------- changes that steps repeat

constexpr Changes kPassengers{
    .creates =
        "vemta_reg_param heatmap_config passenger_config passenger_region_config security_config "
        "intelligent_other_config region_param_polygon vm_snapshot_normal_param "
        "vm_snapshot_compression_param vm_snapshot_time_segment vm_trigger_chain_param",
    .adds =
        "psia_cgi_config: defog_enable; "
        "audio_exception_detection: audio_steep_drop_enable audio_steep_drop_sensitivity; "
        "intelligent_face_detect_config: face_exposure_enable face_exposure_minduration auto_roi_enable; "
        "intelligent_dome_scene_track: pos_3d; "
        "front_other_config: sdi_local_output_enable local_output_hd mirror_ctrl; "
        "serial_config_table: rs485_enable"};

constexpr Changes kThermal{
    .creates =
        "thermal_front_param area_tailor_cfg lte_4g_param sms_4g_whitelist vehicle_detection_cfg "
        "cloud_storage_cfg heatmap_ptz_config smd_detection_basic_cfg smd_detection_rule_cfg "
        "smd_polygon",
    .adds =
        "te_pic_merge: vehicle_picture_quality; "
        "te_mointor_point: monitor_pointno_info; "
        "roi_conf_table: plate_num; "
        "itc_traffic_cfg: province ptz_enable ptz_scene_name ptz_scene_id ptz_pan_pos ptz_tilt_pos ptz_zoom ptz_focus_pos; "
        "psia_cgi_config: suppLight_enable; "
        "passenger_config: osd_enable osd_point_num osd_point; "
        "ipdome_ir_table: ldc_mode vga_mode anti_flicker; "
        "netconfig_table: multi_discover_mode; "
        "intelligent_dome_param: tracking_speed_adjust"};

constexpr Changes kOpticalZoom{.adds = "ipdome_ccdparam_table: optical_zoom_level focus_pos"};

constexpr Changes kTraffic{.creates =
                               "light_storage_cfg vca_line_cfg traffic_vehicle_detect_cfg traffic_scene_cfg "
                               "traffic_pic_merge traffic_overlap_cfg traffic_mointor_point mega_dsp_cfg",
                           .adds =
                               "itc_traffic_cfg: detection_type; "
                               "passenger_config: line_calibration_benable; "
                               "front_other_config: lens_distort_correction_enable"};

constexpr Changes kIntelligentMonitor{
    .creates =
        "gis_centralized_control_cfg_table vandal_proof_alarm_cfg_table "
        "display_electronic_compass_table alg_ext_param im_mointor_point im_pic_merge im_alg_cfg "
        "im_char_overlap im_its_cap_param im_polygon im_its_preset_scene im_its_preset_rule "
        "im_scene_cruise_schedule im_remote_center im_other_param im_traffic_mpr "
        "onvif_adsecurity_key onvif_adsecurity_cert onvif_adsecurity_certpath "
        "onvif_adsecurity_tlsserver onvif_adsecurity_passphrase",
    .adds =
        "chn_info: byalignment; "
        "ddns_config_info: country_id; "
        "te_its_preset_rule: line_param_nRuleSensitity lane_change_congestion_duration vehicle_exist_duration nRuleSensitity; "
        "te_alg_cfg: bNeedTrackFeturePic trackFeaturePicZoomVal trackFeaturePicZoomWidth picClearThreshold b_need_plate_pic is_trace_enable advanceParamNum indexs keyvals stopDiterDetectSensitive"};

constexpr Changes kSmartEncoding{.adds =
                                     "chn_comp_info: is_smart_h264_enable average_code_rate; "
                                     "light_storage_cfg: sensitivity"};

constexpr Changes kBatteryDisplay{
    .adds = "chn_info: battery_osd_enable battery_osd_position_x battery_osd_position_y"};

// ------------------------------------------------------------------------------------- what no list tells

bool store_qp_offsets(Work&) {
    int stream = 0;
    for (const StreamConfig& s : get_cfg_param()->encoding.stream[0]) {
        const std::string sql = "update chn_comp_info set qp_offset = " + std::to_string(s.qp_offset) +
                                " where chn_index = " + std::to_string(++stream);
        if (db_execsql(get_db_handle(), sql.c_str()) != 0) {
            DB_LOG_AS(kError, "parampatchfor_version_1131", "update chn_comp_info qp_offset err\n");
            return false;
        }
    }
    return true;
}

// The encrypted list starts with the administrator, wherever the old one had it.  A full list without one would never
// be stored: its last entry goes, and stays in the old table.
void make_room_for_administrator(std::span<UserEntry> users) {
    const auto is_named = [](const char* name) {
        return [name](const UserEntry& u) { return std::strncmp(u.username, name, sizeof u.username) == 0; };
    };
    const auto administrator = std::find_if(users.begin(), users.end(), is_named("admin"));
    if (administrator != users.end()) {
        std::swap(users.front(), *administrator);
    } else if (std::none_of(users.begin(), users.end(), is_named(""))) {
        DB_LOG_AS(kWarning, "parampatchfor_version_1152", "the last user gives way to the administrator\n");
        users.back() = {};
    }
}

// The accounts move to the encrypted list, the old one gets a default administrator, and what was clear is encrypted.
bool encrypt_texts(Work& work) {
    if (!work.stores_clear())
        return true;
    std::puts("\n\n upgrade to 5.3.0  or higher");
    UserSection& users = get_cfg_param()->users;
    std::copy(std::begin(users.user), std::end(users.user), users.sec_user);
    make_room_for_administrator(users.sec_user);
    UserEntry administrator{};
    std::strcpy(administrator.username, "admin");
    std::strcpy(administrator.passwd, "58213");
    administrator.permission = 0xFFFFFFFF;
    administrator.preview_permision = administrator.record_permision = 0xFFFFFFFF;
    administrator.playback_permision = administrator.ptzctrl_permision = 0xFFFFFFFF;
    std::fill(std::begin(users.user), std::end(users.user), UserEntry{});
    users.user[0] = administrator;
    work.start_encryption();
    bool stored = true;
    for (const Table* t : dbshell::all_tables())
        if (dbshell::has_encrypted_columns(*t) && dbshell::save_table(*t) != 0)
            stored = false;
    return stored;
}

bool take_over_lanes(Work&) {
    static_cast<void>(read_customcfg());  // without the file the record has the defaults
    return true;
}

bool refresh_height(Work&) {
    static_cast<void>(fix_height_by_standard());
    return true;
}

// ------------------------------------------------------------------------------------- the steps

constexpr ChainStep kSteps[] = {
    {.from = 1101,
     .to = 1102,
     .changes = {.creates = "local_port_list_ext",
                 .adds = "multicast_port: other_video_port other_audio_port other_metadata_port"},
     .statements = {{"delete from local_port_list where port_type not between 1 and 5;",
                     "delete from local_port_list error\n"},
                    {"insert into local_port_list_ext select * from local_port_list;",
                     "insert into local_port_list_ext error\n"}},
     .loads = "db_get_local_port_ext",
     .creates_failed = "create table local_port_list_ext error\n",
     .changes_failed = "alter table multicast_port error\n"},
    {.from = 1102,
     .to = 1103,
     .changes = {.creates = "rtcp_config"},
     .saves = "db_save_rtcp_config",
     .changes_failed = "create table error\n",
     .save_failed = "insert and update table rtcp_config error\n"},
    // The saves of roi_param_table ended with the table: what stands in it is read, and kept in later ones.
    {.from = 1103,
     .to = 1104,
     .changes = {.creates = "fd_param_table"},
     .statements = {{"CREATE TABLE IF NOT EXISTS roi_param_table(idx integer primary key, streamidx int, "
                     "region_num int, face_num int, type int, enable int, level int, x int, y int, w int, "
                     "h int, name verchar(32));",
                     "create table C_ROI_PARAM error\n"}},
     .changes_failed = "create table C_FD_PARAM error\n"},
    {.from = 1104,
     .to = 1105,
     .changes = {.adds = "front_other_config: bcorridor_mode dehaze_level; "
                         "ipdome_ccdparam_table: trig_mode; "
                         "audio_param_info: b_audio_denoise; "
                         "chn_comp_info: enable_svc"},
     .changes_failed = "alter table error\n"},
    {.from = 1105,
     .to = 1106,
     .changes = {.creates = "intelligent_paramrule intelligent_ctrl_info intelligent_ivs_key_param_list "
                            "cb_point_cfg intelligent_qor_patrol_routecfg intelligent_qor_scene_config "
                            "intelligent_polygon_size_filter intelligent_qor_rule_config",
                 .adds = "week_config_list: scene rule"},
     .changes_failed = "alter and creat table error\n"},
    {.from = 1106,
     .to = 1107,
     .drops = "roi_param_table",
     .changes = {.creates = "roi_conf_table ipdonme_roi_base ipdome_roi_group"},
     .saves = "db_save_ipdome_roi_base db_save_ipdome_roi_group",
     .changes_failed = "drop and creat table error\n"},
    {.from = 1107,
     .to = 1108,
     .says_its_version = true,
     .changes = {.adds = "dnf_config_table: day_night_type_before_led_on"},
     .changes_failed = "execute sql error\n"},
    {.from = 1108,
     .to = 1109,
     .changes = {.creates = "ptz_config_info_ext"},
     .saves = "db_set_ptz_config_ext",
     .changes_failed = "creat table error\n"},
    {.from = 1109,
     .to = 1114,
     .changes = {.creates = "audio_exception_detection cms_config intrusion_detect_table "
                            "defocus_config_info line_detect_table",
                 .adds = "front_other_config: image_stabilization_mode"},
     .saves = "db_set_cms_config",
     .changes_failed = "alter and creat table error\n",
     .save_failed = "db_set_cms_config error\n"},
    {.from = 1114,
     .to = 1116,
     .changes = {.creates = "sip_config", .adds = "audio_param_info: speak_volume"},
     .saves = "db_set_audio_info",
     .changes_failed = "alter and creat table error\n"},
    {.from = 1116,
     .to = 1123,
     .changes = {.creates = "intelligent_polygon intelligent_size_filter intelligent_face_detect_config "
                            "intelligent_vca_ctrl_info intelligent_ivs_param intelligent_line_segment "
                            "intelligent_behavior_rule intelligent_qor_scene intelligent_qor_rule "
                            "intelligent_dome_param intelligent_dome_scene_track itc_dev_cfg "
                            "itc_io_out_cfg catalog_config scene_change_detect_table nas_identification "
                            "wiper",
                 .adds = "psia_alarm_to_center: interval_times; "
                         "lens_exposure_table: piris_mode piris_aperture; "
                         "dnf_config_table: smart_ir_mode smart_ir_distance; "
                         "net_hd_config: mount_nfs; "
                         "fd_param_table: handle_type alarmout_triggered"},
     .loads = "db_get_intelligent_paramrule db_get_intelligent_ctrl_info",
     .saves = "db_save_intelligent_behavior_rule db_save_intelligent_dome_scene_track "
              "db_save_intelligent_qor_scene db_save_intelligent_ivs_param db_save_catalog_config "
              "db_save_lens_exposure db_save_wiper_config"},
    {.from = 1123,
     .to = 1124,
     .changes = {.creates = "socks_param"},
     .saves = "db_save_socks_param",
     .changes_failed = "creat table error\n",
     .save_failed = "db_save_socks_param error\n"},
    {.from = 1124,
     .to = 1129,
     .changes =
         {.creates = "motdect_exp_param isp_time_config isp_day_param_config isp_night_param_config "
                     "te_mointor_point te_pic_merge te_alg_cfg te_char_overlap te_its_cap_param "
                     "te_its_preset_scene te_its_preset_rule te_scene_cruise_schedule "
                     "te_remote_center te_polygon te_other_param itc_traffic_cfg socks_local_ip",
          .adds =
              "ipdome_ccdparam_table: ir_brightness_limit ir_movementtrigger; "
              "ipdome_ir_table: temp_ctrl_mode; "
              "chn_comp_info: audio_bitrate; "
              "psia_cgi_config: ir_enable telnet_enable; "
              "video_analysis_config: motdect_mode switch_daynight_settings start_hour start_minute start_second stop_hour stop_minute stop_second; "
              "front_other_config: capture_mode capture_mode_enable"},
     .saves = "db_save_isp_time_param db_save_te_char_overlap db_save_te_its_cap_param "
              "db_save_te_scene_cruise_schedule db_save_te_remote_center"},
    {.from = 1129,
     .to = 1131,
     .changes = {.adds = "ipdome_ir_table: fan_mode; "
                         "te_alg_cfg: evidence_picture_ratio; "
                         "chn_comp_info: qp_offset"}},
    {.from = 1131,
     .to = 1133,
     .changes =
         {.adds =
              "ipdome_ccdparam_table: laser_control_mode laser_trigger_mode laser_brightness laser_angle laser_sensitivity iris_max_limit iris_min_limit shutter_max_limit shutter_min_limit; "
              "front_other_config: zoom_min_limit zoom_max_limit"},
     .also = store_qp_offsets},
    {.from = 1133,
     .to = 1134,
     .changes = {.adds = "psia_cgi_config: abf_disable; "
                         "line_detect_table: enable_dual_vca; "
                         "intrusion_detect_table: enable_dual_vca"}},
    {.from = 1134, .to = 1135, .changes = {.adds = "front_other_config: ae_region af_region"}},
    {.from = 1135,
     .to = 1136,
     .changes = {.creates = "ipc_pt_config"},
     .saves = "db_save_ipc_pt_config",
     .changes_failed = "add table error\n",
     .save_failed = "db_save_ipc_pt_config error\n"},
    {.from = 1136,
     .to = 1137,
     .changes =
         {.creates = "genetec_config",
          .adds =
              "chn_info: rgb_red rgb_green rgb_blue osd_color_type; "
              "record_info: record_stream_type record_passback record_lock_duration record_backup svc_level; "
              "net_hd_config: nas_server_addr disk_type iscsi_port; "
              "nas_identification: nas_server_addr disk_type iscsi_port; "
              "email_config_info: verify_type; "
              "auto_capture_config: cap_time_enable; "
              "psia_cgi_config: led_enable"},
     .saves = "db_save_net_hd_config db_save_nas_identification_config"},
    {.from = 1137,
     .to = 1138,
     .changes = {.creates = "zorvy_config zorvy_defense_plan_config zorvy_auto_online_plan_config "
                            "zorvy_motion_detection_times zorvy_alarm_config "
                            "zorvy_event_cloudstorage_config zorvy_cloud_record_plan_config "
                            "zorvy_stream_config zorvy_user_info_config"},
     .saves = "db_save_zorvy_defense_plan_config db_save_zorvy_auto_online_plan_config "
              "db_save_zorvy_motion_detection_times db_save_zorvy_alarm_config "
              "db_save_zorvy_event_cloudstorage_config db_save_zorvy_cloud_record_plan_config "
              "db_save_zorvy_stream_config db_save_zorvy_user_info_config"},
    {.from = 1138,
     .to = 1139,
     .changes = {.creates = "io_out_cfg",
                 .adds = "dnf_config_table: smart_ir_short_distance smart_ir_long_distance; "
                         "ipdome_ccdparam_table: laser_brightness_limit"},
     .saves = "db_save_io_out_cfg db_save_dnf_config"},
    {.from = 1139,
     .to = 1140,
     .changes = {.adds = "ipdome_stepmotor_table: linear_scan_borderX2 linear_scan_borderX1"}},
    {.from = 1140,
     .to = 1141,
     .changes =
         {.adds =
              "te_its_preset_rule: rule_type line_aid_type trun_round_angle_tolerance start_point_x start_point_y end_point_x end_point_y cross_lane_duration cross_lane_sensitive_level lane_change_sensitive_level imag_evidence_num region_imag_evidence_num; "
              "te_alg_cfg: track_time track_tilt_limited"},
     .repeats = {&kPassengers},
     .saves = "db_save_sdi_485_enable_config db_save_vemta_reg_config db_save_passenger_region_config "
              "db_save_intelligent_dome_scene_track db_save_region_param_polygon "
              "db_save_vm_snapshot_normal_param db_save_vm_snapshot_compression_param "
              "db_save_vm_snapshot_schedtime_config db_save_vm_trigger_chain_param"},
    {.from = 1141,
     .to = 1142,
     .changes = {.adds = "passenger_config: calibration_enable rec_num rect_xy rect_wh"},
     .repeats = {&kPassengers}},
    {.from = 1142,
     .to = 1143,
     .changes = {.creates = "max_connect_num infrared_remote_ctrl ipdome_ptz_preset_new "
                            "ipdome_ptz_inner_preset",
                 .adds = "chn_comp_info: audio_samplerate; "
                         "sip_config: transport_type std_reg_interval gb_reg_interval; "
                         "ipdome_ccdparam_table: ipdome_scene_mode"},
     .repeats = {&kPassengers},
     .saves = "db_save_sip_config db_save_max_connect_num_config db_save_infrared_remote_ctrl_cfg "
              "db_save_ipdome_ptz_preset_new db_save_ipdome_ptz_inner_preset"},
    {.from = 1143, .to = 1144, .changes = {.creates = "binocular_cfg"}, .saves = "db_save_binocular_cfg"},
    {.from = 1144, .to = 1145, .changes = {.adds = "ipdome_stepmotor_table: proportinal_speedlevel"}},
    {.from = 1145, .to = 1146, .changes = {.creates = "fisheye_param_cfg"}},
    {.from = 1146, .to = 1147},
    {.from = 1147, .to = 1148},
    {.from = 1148,
     .to = 1149,
     .changes = {.adds = "lte_4g_param: whole_day dial_type begin_end_time operator"},
     .repeats = {&kThermal}},
    {.from = 1149, .to = 1150, .repeats = {&kOpticalZoom}},
    {.from = 1150,
     .to = 1151,
     .changes = {.adds = "lte_4g_param: sms_receipt_operation; "
                         "smd_detection_rule_cfg: target_type"},
     .repeats = {&kTraffic},
     .saves = "db_save_sdi_local_output_config",
     .save_failed = "1150 save error\n"},
    {.from = 1151,
     .to = 1152,
     .changes = {.adds = "security_config: illegal_login_lock"},
     .saves = "db_save_intelligent_behavior_rule",
     .save_failed = "1151 save error\n"},
    {.from = 1152,
     .to = 1154,
     .also_from = 1153,
     .changes =
         {.creates = "sec_lock_auth_db_info sec_user_mana_info lf_track_cfg lf_calibrate_info "
                     "edu_serial_config_table",
          .adds =
              "ipdome_stepmotor_table: manual_ctrl_mode; "
              "itc_traffic_cfg: lane_dir; "
              "week_config_list: chan_no; "
              "weblib_motdetect_info: chan_no; "
              "blc_config_table: pos_x0 pos_y0 pos_x1 pos_y1; "
              "vilost_param_table: capture_triggered; "
              "fd_param_table: capture_triggered; "
              "defocus_config_info: capture_triggered; "
              "scene_change_detect_table: capture_triggered; "
              "roi_conf_table: chan_idx; "
              "intelligent_dome_param: tracking_pt_mode tracking_zoom_mode panPos tiltPos focusvalue zoom_value_direct; "
              "ipdome_osdparam_table: remote_ctrl; "
              "serial_config_table: rs232_address; "
              "ipdome_ccdparam_table: ipdome_gamma_type; "
              "exception_list: email_capture_triggered capture_triggered; "
              "intelligent_qor_rule: email_capture_triggered capture_triggered; "
              "alarm_in_config: email_capture_triggered capture_triggered; "
              "video_analysis_config: email_capture_triggered capture_triggered"},
     .remakes_if_there = "onvif_base_config genetec_config",
     .remakes = "video_analysis_config chn_comp_info motion_detect_list disk_quota_list "
                "intelligent_polygon intelligent_size_filter",
     .also = encrypt_texts,
     .saves = "db_set_sec_lock_auth_db_info db_set_sec_user_info db_save_ipdome_stepmotor "
              "save_onvif_base_param_to_db db_save_genetec_config db_set_lf_track_cfg "
              "db_set_lf_calibrate_info db_set_motion_list db_save_blc_config "
              "save_weblib_motdetect_param_to_db db_save_disk_quota_param db_save_vilost_param "
              "db_save_fd_param db_save_defocus_param db_save_intelligent_polygon "
              "db_save_people_detect_polygon db_save_intelligent_size_filter "
              "db_set_scene_change_detec_config db_save_ipdome_osdparam "
              "db_set_serial_config db_set_edu_serial_config db_save_exception "
              "db_save_intelligent_qor_rule db_set_alarm_in "
              "db_set_video_analysis db_set_comp_info",
     .save_failed = "1152 save error\n"},
    // The schedule of tracking is stored with intelligent_dome_param.
    {.from = 1154,
     .to = 1155,
     .changes = {.creates = "vehicle_traffic_detect_cfg vehicle_scene_cfg vehicle_pic_merge "
                            "vehicle_overlap_cfg vehicle_mointor_point fisheye_param_cfg "
                            "video_analysis_config",
                 .adds = "traffic_scene_cfg: lane_dir; "
                         "zorvy_config: region; "
                         "line_detect_table: chan_no line_no capture_triggered email_capture_triggered; "
                         "ftp_serv_list: up_ftp_enable"},
     .repeats = {&kThermal, &kOpticalZoom, &kTraffic},
     .remakes_if_there = "motdect_exp_param intrusion_detect_table coordinate_region_list",
     .saves =
         "db_save_ipdome_other db_save_intelligent_dome_param db_save_traffic_scene_cfg "
         "db_save_itc_traffic_cfg db_set_video_analysis db_save_zorvy_config db_save_fisheye_param "
         "db_save_thermal_front_param db_save_area_tailor_cfg db_save_4g_sms_whitelist "
         "db_save_vehicle_detection_cfg db_save_te_pic_merge db_save_te_mointor_point db_save_roi_config "
         "db_save_cloud_storage_cfg db_save_heatmap_ptz_cfg db_save_psiacgi_config db_save_4g_lte_param "
         "db_save_passenger_config db_save_vca_line_cfg db_save_traffic_vehicle_detect_cfg "
         "db_save_traffic_pic_merge db_save_traffic_overlap_cfg db_save_traffic_mointor_point "
         "db_save_front_other_config db_save_mega_dsp_config db_save_smd_detection_cfg "
         "db_save_motdect_exp_param db_set_intrusion_detec_config db_save_heatmap_config "
         "save_pir_alarm_to_db save_callhelp_param_to_db db_save_audio_detect_param "
         "db_set_line_detect_config db_set_record_info db_set_alarm_out save_wireless_alarm_to_db "
         "db_set_coordinate_list "
         "db_save_vehicle_traffic_detect_cfg db_save_vehicle_scene_cfg db_save_vehicle_pic_merge "
         "db_save_vehicle_overlap_cfg db_save_vehicle_mointor_point db_save_te_char_overlap "
         "db_save_intelligent_vca_ctrl_info",
     .save_failed = "1155 save error\n"},
    {.from = 1155,
     .to = 1156,
     .saves = "db_save_intelligent_ivs_param db_set_hwconfig db_save_intelligent_qor_rule",
     .save_failed = "1156 save error\n"},
    {.from = 1156, .to = 1157, .loads = "db_get_tfs_schedule_enable", .saves = "db_save_te_other_param"},
    {.from = 1157,
     .to = 1158,
     .changes = {.adds = "security_config: active_status https_enable"},
     .saves = "db_save_security_config",
     .save_failed = "1157 save error\n"},
    {.from = 1158,
     .to = 1159,
     .repeats = {&kIntelligentMonitor},
     .also = take_over_lanes,
     .saves = "db_set_gis_centralized_control_cfg db_set_vandal_proof_alarm_cfg "
              "db_set_display_electronic_compass save_ddns_param_to_db db_save_te_scene_param "
              "db_save_te_alg_cfg db_save_intel_moni_mointor_point db_save_intel_moni_pic_merge "
              "db_save_intel_moni_alg_cfg db_save_intel_moni_char_overlap "
              "db_save_intel_moni_its_cap_param db_save_intel_moni_scene_param "
              "db_save_intel_moni_scene_cruise_schedule db_save_intel_moni_remote_center "
              "db_save_intel_moni_other_param db_save_intel_moni_mpr_config",
     .save_failed = "1158 save error\n"},
    {.from = 1159,
     .to = 1160,
     .changes = {.creates = "roadinfo_config"},
     .saves = "db_save_roadinfo_cfg",
     .save_failed = "1159 save error\n"},
    {.from = 1160,
     .to = 1161,
     .repeats = {&kSmartEncoding},
     .remakes_if_there = "roadinfo_config",
     .saves = "db_save_light_storage_cfg db_save_roadinfo_cfg",
     .save_failed = "%s save error\n"},
    {.from = 1161,
     .to = 1162,
     .changes = {.creates = "softap_param people_detection_cfg voice_change_cfg led_light_cfg",
                 .adds = "audio_exception_detection: enable_audio_loss audio_loss_sensitivity"},
     .saves = "db_save_softap_param_config db_save_people_detection_config "
              "db_save_audio_exception_detection db_save_voice_change_cfg",
     .save_failed = "%s save error\n"},
    {.from = 1162,
     .to = 1163,
     .changes = {.creates = "active_mcast_param"},
     .repeats = {&kBatteryDisplay},
     .saves = "db_save_active_mcast_param db_set_chn_info",
     .save_failed = "%s save error\n"},
    {.from = 1163,
     .to = 1164,
     .changes = {.creates = "rs485_led_config"},
     .saves = "db_set_rs485_led_config",
     .save_failed = "%s save error\n"},
    {.from = 1164,
     .to = 1166,
     .also_from = 1165,
     .changes = {.creates = "private_info_cfg panoram_param_config",
                 .adds = "ipdome_osdparam_table: marginis_enable"},
     .repeats = {&kBatteryDisplay},
     .saves = "db_save_ipdome_osdparam",
     .save_failed = "%s save error\n"},
    {.from = 1166,
     .to = 1167,
     .changes = {.creates = "revise_gps_param_config"},
     .repeats = {&kIntelligentMonitor, &kSmartEncoding},
     .saves = "db_save_revise_gps_param",
     .save_failed = "%s save error\n"},
    {.from = 1167,
     .to = 1168,
     .changes =
         {.creates = "panoram_param_config",
          .adds =
              "ipdome_ccdparam_table: dome_whitelight_begintime dome_whitelight_endtime whitelight_brightness_limit dome_whitelight_mode"},
     .also = refresh_height,
     .saves = "db_set_chn_info db_save_ipdome_ccdparam",
     .save_failed = "%s save error\n"},
    {.from = 1168,
     .to = 1169,
     .changes =
         {.creates = "wifi_mode_config exception_list_comm timesegment_comm_info "
                     "sd_card_lock_config",
          .adds =
              "auto_capture_config: stream_id; "
              "ftp_serv_list: interval_days begin_time; "
              "chn_comp_info: smooth_preview_value; "
              "intelligent_face_detect_config: handleType alarmOutTriggered email_capture_triggered capture_triggered record_triggered; "
              "led_light_cfg: filter_time; "
              "isp_day_param_config: saturationLevel; "
              "isp_night_param_config: saturationLevel; "
              "netconfig_table: wifi_enable; "
              "sip_config: sip_version"},
     .saves = "save_auto_capture_param_to_db save_ftp_serv_param_to_db db_set_comp_info "
              "db_save_intelligent_face_detect_config db_save_led_light_cfg db_save_isp_night_param "
              "db_save_isp_day_param db_save_netconfig db_save_wifi_mode_config "
              "db_set_sd_card_lock_config db_set_sd_handle_type db_set_sd_alarm_time db_save_sip_config",
     .save_failed = "%s save error\n"},
};

}  // namespace

std::span<const ChainStep> chain_steps() {
    return kSteps;
}
