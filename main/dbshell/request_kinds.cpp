#include "request_kinds.h"

#include <algorithm>

#include "catalogue.h"

namespace dbshell {

namespace {

#define SPECIAL(number, args) \
    { number, #number, Args::args }
#define GROUP(number, args, run, ...)                      \
    {                                                      \
        number, #number, Args::args, Run::run, false, 0, { \
            __VA_ARGS__                                    \
        }                                                  \
    }
#define CHECKED_GROUP(number, args, run, ...)             \
    {                                                     \
        number, #number, Args::args, Run::run, true, 0, { \
            __VA_ARGS__                                   \
        }                                                 \
    }
#define SINGLE(number, table) \
    { number, #number, Args::none, Run::single_table, false, table }

// Functions stand in the order in which they are called.
constexpr RequestKind kKinds[] = {
    SPECIAL(REDIRECTION_OUTPUT_OPEN, name),
    SPECIAL(REDIRECTION_OUTPUT_CLOSE, none),
    SPECIAL(BROADCAST_SET_DEBUG, none),
    SPECIAL(EN_CLOSE_DATABASE, none),
    SPECIAL(EN_GET_ONE_COLUMN_RECORD, table),
    SPECIAL(EN_GET_ONE_TABLE_RECORD, table),
    SPECIAL(EN_GET_ALL_RECORD, none),
    SPECIAL(EN_GET_BUILD_INFO, none),
    SPECIAL(EN_SET_DB_VERSION, none),
    SPECIAL(EN_CHECK_DEVCFG_THE_SAME, channel),
    SPECIAL(EN_GET_CURRENT_DB_VERSION, none),
    SPECIAL(EN_GET_OLD_DB_VERSION, none),
    SPECIAL(EN_UPDATE_ONE_COLUMN_RECORD, table),
    SPECIAL(EN_UPDATE_ONE_TABLE_RECORD, table),
    SPECIAL(EN_UPDATE_TABLE_LIST, tables),
    SPECIAL(EN_UPDATE_ALL_RECORD, none),
    SPECIAL(EN_RESET_ALL_FACTORY_PARA, none),
    SPECIAL(EN_RESET_FACTORY_PARA_MODE2, none),
    GROUP(EN_SAVE_EVENT_PARAM, none, all, "db_set_alarm_in", "db_set_alarm_out", "db_set_alarm_trigger_ptz",
          "db_save_exception", "db_set_video_analysis", "db_set_coordinate_list", "db_set_motion_list",
          "db_save_vilost_param", "db_save_audio_exception_detection", "db_save_motdect_exp_param"),
    GROUP(EN_SAVE_IMAGE_PARAM, sensor, all, "db_save_front_param_config_single",
          "db_save_front_other_config_single", "db_save_wdr_config_single", "db_save_blc_config_single",
          "db_save_wb_config_single", "db_save_dnr_config_single", "db_save_gamma_config_single",
          "db_save_dnf_config_single", "db_save_lens_exposure_single", "db_save_trermal_image_single",
          "db_set_coordinate_list_single", "db_save_ipdome_ccdparam_single",
          "db_save_sdi_local_output_config", "db_set_comp_info_single", "db_save_thermal_front_param_single"),
    GROUP(EN_SAVE_NETWORK_PARAM, none, all, "db_save_netconfig", "db_save_ipaddr_list", "db_save_local_port",
          "db_save_local_port_ext", "db_save_wep_encrypt", "db_save_wep_key", "save_ieee_8021x_param_to_db",
          "db_save_rtsp_config", "save_multicast_port_to_db"),
    GROUP(EN_SAVE_PORT_SNMP_PARAM, none, all, "db_save_ipaddr_list", "db_save_local_port",
          "db_save_local_port_ext", "save_snmp_param_to_db", "save_snmp_v3user_param_to_db"),
    GROUP(EN_SAVE_EMAIL_PARAM, none, all, "db_save_ipaddr_list", "save_email_param_to_db",
          "save_email_addr_list_to_db"),
    GROUP(EN_SAVE_DDNS_PARAM, none, all, "db_save_ipaddr_list", "save_ddns_param_to_db"),
    GROUP(EN_SAVE_NTP_PARAM, none, all, "db_save_ipaddr_list", "save_ntp_param_to_db"),
    GROUP(EN_SAVE_PSIA_ALARM_CENTER, none, all, "db_save_ipaddr_list", "save_psia_alarm_center_to_db"),
    GROUP(EN_SAVE_CMS_PARAM, none, all, "db_save_ipaddr_list", "db_set_cms_config"),
    GROUP(EN_SAVE_RECORD_PARAM, none, all, "db_set_record_info", "db_save_net_hd_config",
          "db_save_nas_identification_config"),
    GROUP(EN_SAVE_CAPTURE_PARAM, none, all, "save_auto_capture_param_to_db", "save_image_naming_param_to_db",
          "save_ftp_serv_param_to_db"),
    GROUP(EN_SAVE_DATE_TIME_PARAM, none, all, "save_dst_param_to_db", "save_date_time_param_to_db"),
    GROUP(EN_SAVE_CHANNEL_PARAM, none, all, "db_set_dev_info", "db_set_chn_info", "db_set_comp_info",
          "db_set_audio_info", "db_set_coordinate_list", "db_save_front_other_config"),
    GROUP(EN_SAVE_SERIAL_PTZ_PARAM, none, all, "db_set_serial_config", "db_set_ptz_config",
          "db_set_ptz_config_ext", "db_set_eptz_preset_list", "save_ppp_param_to_db",
          "db_save_sdi_485_enable_config"),
    GROUP(EN_SAVE_ONVIF_PARAM, none, all, "save_weblib_param_to_db", "save_weblib_motdetect_param_to_db",
          "save_onvif_base_param_to_db", "save_onvif_profile_param_to_db", "db_set_video_analysis"),
    GROUP(EN_SAVE_SENSOR_ALARM_PARAM, none, all, "save_callhelp_param_to_db", "save_pir_alarm_to_db",
          "save_wireless_alarm_to_db"),
    GROUP(EN_SAVE_SECURITY_PARAM, none, all, "db_save_security_config", "db_save_psiacgi_config",
          "db_save_rtsp_config"),
    CHECKED_GROUP(EN_SAVE_ROI_PARAM, channel, all, "db_save_roi_config_single", "db_save_fd_param_single"),
    GROUP(EN_SAVE_ISP_PARAM, none, all, "db_save_isp_time_param", "db_save_isp_day_param",
          "db_save_isp_night_param"),
    GROUP(EN_SAVE_FACE_DETECT_PARAM, channel, all, "db_save_intelligent_face_detect_config_single",
          "db_save_intelligent_polygon_single", "db_save_intelligent_size_filter_single"),
    GROUP(EN_SAVE_BEHAVIOR_RULE, channel, all, "db_save_intelligent_behavior_rule_single",
          "db_save_intelligent_line_segment_single"),
    CHECKED_GROUP(EN_SAVE_BEHAVIOR_SCENE, channel_scene, all, "db_save_intelligent_behavior_rule_single",
                  "db_save_intelligent_scene_single"),
    GROUP(EN_SAVE_DOME_TRACKING, none, all, "db_save_intelligent_dome_param",
          "db_save_intelligent_dome_scene_track"),
    GROUP(EN_SAVE_IO_TRAFFIC_PARAM, none, all, "db_save_io_out_cfg", "db_save_itc_traffic_cfg"),
    GROUP(EN_SAVE_TE_CRUISE_PARAM, none, all, "db_save_te_scene_cruise_schedule", "db_save_te_other_param"),
    GROUP(EN_SAVE_HEATMAP_PARAM, none, all, "db_save_heatmap_config", "db_save_region_param_polygon",
          "db_save_heatmap_ptz_cfg"),
    GROUP(EN_SAVE_PASSENGER_PARAM, none, all, "db_save_passenger_config", "db_save_passenger_region_config",
          "db_save_region_param_polygon", "db_save_vca_line_cfg"),
    GROUP(EN_SAVE_VEMTA_PARAM, none, all, "db_save_vemta_reg_config", "db_save_vm_snapshot_normal_param",
          "db_save_vm_snapshot_compression_param", "db_save_vm_snapshot_schedtime_config",
          "db_save_vm_trigger_chain_param"),
    GROUP(EN_SAVE_ALL_SMD_PARAM, none, until_failure, "db_save_smd_detection_cfg"),
    CHECKED_GROUP(EN_SAVE_SMD_PARAM, smd_channel, until_failure, "save_smd_detection_cfg_single"),
    GROUP(EN_SAVE_DOME_PARAM, none, all, "db_save_ipdome_other", "db_save_ipdome_osdparam",
          "db_save_ipdome_motionsys", "db_set_chn_info", "db_set_serial_config", "db_set_edu_serial_config",
          "db_save_sdi_485_enable_config"),
    GROUP(EN_SAVE_LF_PARAM, none, all, "db_set_lf_track_cfg", "db_set_lf_calibrate_info"),
    GROUP(EN_SAVE_MOTION_PARAM, none, all, "db_set_motion_list", "db_set_video_analysis",
          "db_save_motdect_exp_param"),
    GROUP(EN_SAVE_REGION_PARAM, none, all, "db_set_coordinate_list", "db_set_video_analysis"),
    GROUP(EN_SAVE_PPPOE_PARAM, none, until_failure, "save_pppoe_param_to_db"),
    GROUP(EN_SAVE_QOS_PARAM, none, all, "save_qos_param_to_db"),
    GROUP(EN_SAVE_HWCONFIG, none, all, "db_set_hwconfig"),
    GROUP(EN_SAVE_WIRELESS_ALARM, none, all, "save_wireless_alarm_to_db"),
    GROUP(EN_SAVE_PIR_ALARM, none, all, "save_pir_alarm_to_db"),
    GROUP(EN_SAVE_CALLHELP_PARAM, none, all, "save_callhelp_param_to_db"),
    GROUP(EN_SAVE_REMOTE_CTRL, none, until_failure, "save_remote_ctrl_to_db"),
    GROUP(EN_SAVE_IPFILTER_CONFIG, none, until_failure, "db_save_ipfilter_config"),
    GROUP(EN_SAVE_UPNP_CONFIG, none, all, "db_save_upnp_config"),
    GROUP(EN_SAVE_PSIACGI_CONFIG, none, until_failure, "db_save_psiacgi_config"),
    GROUP(EN_SAVE_ONVIF_SCOPE_LIST, none, until_failure, "db_save_onvif_scope_list"),
    GROUP(EN_SAVE_RTCP_CONFIG, none, all, "db_save_rtcp_config"),
    CHECKED_GROUP(EN_SAVE_DISK_QUOTA_PARAM, channel, all, "db_save_disk_quota_param_single"),
    GROUP(EN_SAVE_DEFOCUS_PARAM, channel, all, "db_save_defocus_param_single"),
    GROUP(EN_SAVE_SIP_CONFIG, none, all, "db_save_sip_config"),
    GROUP(EN_SAVE_CATALOG_CONFIG, none, all, "db_save_catalog_config"),
    GROUP(EN_SAVE_LINE_DETECT_CONFIG, channel, all, "db_set_line_detect_config_single"),
    GROUP(EN_SAVE_INTRUSION_DETEC_CONFIG, channel, all, "db_set_intrusion_detec_config_single"),
    GROUP(EN_SAVE_SCENE_CHANGE_DETEC_CONFIG, channel, all, "db_set_scene_change_detec_config_single"),
    GROUP(EN_SAVE_VEHICLE_DETECTION_CFG, none, all, "db_save_vehicle_detection_cfg"),
    GROUP(EN_SAVE_INTELLIGENT_VCA_CTRL_INFO, none, all, "db_save_intelligent_vca_ctrl_info"),
    GROUP(EN_SAVE_AUDIO_DETECT_PARAM, none, all, "db_save_audio_detect_param"),
    GROUP(EN_SAVE_INTELLIGENT_POLYGON, channel, all, "db_save_intelligent_polygon_single"),
    GROUP(EN_SAVE_INTELLIGENT_SIZE_FILTER, channel, all, "db_save_intelligent_size_filter_single"),
    GROUP(EN_SAVE_INTELLIGENT_IVS_PARAM, channel, all, "db_save_intelligent_ivs_param_single"),
    GROUP(EN_SAVE_INFRARED_REMOTE_CTRL_CFG, none, all, "db_save_infrared_remote_ctrl_cfg"),
    GROUP(EN_SAVE_INTELLIGENT_OTHER_CONFIG, none, all, "db_save_intelligent_other_config"),
    GROUP(EN_SAVE_PTZ_CONFIG_EXT, none, all, "db_set_ptz_config_ext"),
    GROUP(EN_SAVE_TE_MOINTOR_POINT, none, all, "db_save_te_mointor_point"),
    GROUP(EN_SAVE_TE_PIC_MERGE, none, all, "db_save_te_pic_merge"),
    GROUP(EN_SAVE_TE_ALG_PARAM, none, all, "db_save_te_alg_cfg", "db_save_alg_ext_param"),
    GROUP(EN_SAVE_TE_CHAR_OVERLAP, none, all, "db_save_te_char_overlap"),
    GROUP(EN_SAVE_TE_ITS_CAP_PARAM, none, all, "db_save_te_its_cap_param"),
    GROUP(EN_SAVE_TE_SINGLE_SCENE, scene, all, "db_save_te_single_scene"),
    GROUP(EN_SAVE_TE_REMOTE_CENTER, none, all, "db_save_te_remote_center"),
    GROUP(EN_SAVE_TE_OTHER_PARAM, none, all, "db_save_te_other_param"),
    GROUP(EN_SAVE_SOCKS_PARAM, none, until_failure, "db_save_socks_param"),
    GROUP(EN_SAVE_ZORVY_CONFIG, none, all, "db_save_zorvy_config"),
    GROUP(EN_SAVE_ZORVY_DEFENSE_PLAN_CONFIG, none, all, "db_save_zorvy_defense_plan_config"),
    GROUP(EN_SAVE_ZORVY_AUTO_ONLINE_PLAN_CONFIG, none, all, "db_save_zorvy_auto_online_plan_config"),
    GROUP(EN_SAVE_ZORVY_MOTION_DETECTION_TIMES, none, all, "db_save_zorvy_motion_detection_times"),
    GROUP(EN_SAVE_ZORVY_ALARM_CONFIG, none, all, "db_save_zorvy_alarm_config"),
    GROUP(EN_SAVE_ZORVY_EVENT_CLOUDSTORAGE_CONFIG, none, all, "db_save_zorvy_event_cloudstorage_config"),
    GROUP(EN_SAVE_ZORVY_CLOUD_RECORD_PLAN_CONFIG, none, all, "db_save_zorvy_cloud_record_plan_config"),
    GROUP(EN_SAVE_ZORVY_STREAM_CONFIG, none, all, "db_save_zorvy_stream_config"),
    GROUP(EN_SAVE_ZORVY_USER_INFO_CONFIG, none, all, "db_save_zorvy_user_info_config"),
    GROUP(EN_SAVE_ALL_ZORVY_PARAM, none, all, "db_save_zorvy_config", "db_save_zorvy_defense_plan_config",
          "db_save_zorvy_auto_online_plan_config", "db_save_zorvy_motion_detection_times",
          "db_save_zorvy_alarm_config", "db_save_zorvy_event_cloudstorage_config",
          "db_save_zorvy_cloud_record_plan_config", "db_save_zorvy_stream_config",
          "db_save_zorvy_user_info_config"),
    GROUP(EN_SAVE_INTELLIGENT_OTHER_CONFIG_77, none, all, "db_save_intelligent_other_config"),
    GROUP(EN_SAVE_MAX_CONNECT_NUM_CONFIG, none, all, "db_save_max_connect_num_config"),
    GROUP(EN_SAVE_INFRARED_REMOTE_CTRL_CFG_79, none, all, "db_save_infrared_remote_ctrl_cfg"),
    GROUP(EN_SAVE_BINOCULAR_CFG, none, all, "db_save_binocular_cfg"),
    GROUP(EN_SAVE_FISHEYE_PARAM, none, all, "db_save_fisheye_param"),
    GROUP(EN_SAVE_AREA_TAILOR_CFG, none, all, "db_save_area_tailor_cfg"),
    GROUP(EN_SAVE_4G_LTE_PARAM, none, all, "db_save_4g_lte_param"),
    GROUP(EN_SAVE_4G_SMS_WHITELIST, none, all, "db_save_4g_sms_whitelist"),
    GROUP(EN_SAVE_VEHICLE_DETECTION_CFG_7F, none, all, "db_save_vehicle_detection_cfg"),
    GROUP(EN_SAVE_CLOUD_STORAGE_CFG, none, all, "db_save_cloud_storage_cfg"),
    GROUP(EN_SAVE_HEATMAP_PTZ_CFG, none, all, "db_save_heatmap_ptz_cfg"),
    GROUP(EN_SAVE_LIGHT_STORAGE_CFG, none, all, "db_save_light_storage_cfg"),
    GROUP(EN_SAVE_TRAFFIC_VEHICLE_DETECT_CFG, none, all, "db_save_traffic_vehicle_detect_cfg"),
    GROUP(EN_SAVE_TRAFFIC_SCENE_CFG, none, all, "db_save_traffic_scene_cfg"),
    GROUP(EN_SAVE_TRAFFIC_PIC_MERGE, none, all, "db_save_traffic_pic_merge"),
    GROUP(EN_SAVE_TRAFFIC_OVERLAP_CFG, none, all, "db_save_traffic_overlap_cfg"),
    GROUP(EN_SAVE_TRAFFIC_MOINTOR_POINT, none, all, "db_save_traffic_mointor_point"),
    GROUP(EN_SAVE_MEGA_DSP_CONFIG, none, all, "db_save_mega_dsp_config"),
    GROUP(EN_SAVE_SEC_USER_INFO, none, all, "db_set_sec_user_info"),
    GROUP(EN_SAVE_SEC_LOCK_AUTH_DB_INFO, none, all, "db_set_sec_lock_auth_db_info"),
    GROUP(EN_SAVE_EDU_SERIAL_CONFIG, none, all, "db_set_edu_serial_config"),
    GROUP(EN_SAVE_VEHICLE_TRAFFIC_DETECT_CFG, none, all, "db_save_vehicle_traffic_detect_cfg"),
    GROUP(EN_SAVE_VEHICLE_SCENE_CFG, none, all, "db_save_vehicle_scene_cfg"),
    GROUP(EN_SAVE_VEHICLE_PIC_MERGE, none, all, "db_save_vehicle_pic_merge"),
    GROUP(EN_SAVE_VEHICLE_OVERLAP_CFG, none, all, "db_save_vehicle_overlap_cfg"),
    GROUP(EN_SAVE_VEHICLE_MOINTOR_POINT, none, all, "db_save_vehicle_mointor_point"),
    GROUP(EN_SAVE_GENETEC_CONFIG, none, all, "db_save_genetec_config"),
    GROUP(EN_SAVE_DOME_BLOCK, name, all),
    GROUP(EN_SAVE_IPC_PT_CONFIG, none, all, "db_save_ipc_pt_config"),
    GROUP(EN_SAVE_WIPER_CONFIG, none, until_failure, "db_save_wiper_config"),
    SINGLE(EN_SAVE_ONVIF_ADSECURITY_KEY_PARAM, 197),
    SINGLE(EN_SAVE_ONVIF_ADSECURITY_CERT_PARAM, 198),
    SINGLE(EN_SAVE_ONVIF_ADSECURITY_CERTPATH_PARAM, 199),
    SINGLE(EN_SAVE_ONVIF_ADSECURITY_TLSSERVER_PARAM, 200),
    SINGLE(EN_SAVE_ONVIF_ADSECURITY_PASSPHRASE_PARAM, 201),
    SINGLE(EN_SAVE_GIS_CENTRALIZED_CONTROL_CFG, 202),
    SINGLE(EN_SAVE_VANDAL_PROOF_ALARM_CFG, 203),
    SINGLE(EN_SAVE_DISPLAY_ELECTRONIC_COMPASS, 204),
    SINGLE(EN_SAVE_INTEL_MONI_MOINTOR_POINT, 205),
    SINGLE(EN_SAVE_INTEL_MONI_PIC_MERGE, 206),
    SINGLE(EN_SAVE_INTEL_MONI_ALG_CFG, 207),
    SINGLE(EN_SAVE_INTEL_MONI_CHAR_OVERLAP, 208),
    SINGLE(EN_SAVE_INTEL_MONI_ITS_CAP_PARAM, 209),
    SINGLE(EN_SAVE_IM_POLYGON, 212),
    GROUP(EN_SAVE_INTEL_MONI_SINGLE_SCENE, scene, all, "db_save_intel_moni_single_scene"),
    SINGLE(EN_SAVE_INTEL_MONI_SCENE_CRUISE_SCHEDULE, 213),
    SINGLE(EN_SAVE_INTEL_MONI_REMOTE_CENTER, 214),
    SINGLE(EN_SAVE_INTEL_MONI_OTHER_PARAM, 215),
    SINGLE(EN_SAVE_INTEL_MONI_MPR_CONFIG, 216),
    GROUP(EN_SAVE_ROADINFO_CFG, channel, all, "db_save_roadinfo_cfg_single"),
    SINGLE(EN_SAVE_SOFTAP_PARAM_CONFIG, 218),
    GROUP(EN_SAVE_PEOPLE_DETECTION_CFG, channel, all, "db_save_people_detection_cfg_single"),
    SINGLE(EN_SAVE_VOICE_CHANGE_CFG, 221),
    SINGLE(EN_SAVE_LED_LIGHT_CFG, 222),
    SINGLE(EN_SAVE_ACTIVE_MCAST_PARAM, 223),
    SINGLE(EN_SAVE_PRIVATE_INFO_CFG, 224),
    SINGLE(EN_SAVE_RS485_LED_CONFIG, 225),
    SINGLE(EN_SAVE_PANORAM_PARAM_CFG, 226),
    SINGLE(EN_SAVE_REVISE_GPS_PARAM, 227),
    SINGLE(EN_SAVE_IPDOME_OSDPARAM, 77),
    SINGLE(EN_SAVE_IO_OUT_CFG, 123),
    SINGLE(EN_SAVE_WIFI_MODE_CONFIG, 228),
    SINGLE(EN_SAVE_SD_HANDLE_TYPE, 229),
    SINGLE(EN_SAVE_SD_ALARM_TIME, 230),
    SINGLE(EN_SAVE_SD_CARD_LOCK_CONFIG, 231),
    SINGLE(EN_SAVE_REVISECOMPASS_PARAM_CONFIG, 232),
    GROUP(EN_SAVE_COLOUR_CONFIG, channel_scene, until_failure, "db_save_colour_config_single"),
    SINGLE(EN_SAVE_STREAM_ENCRYPT_CFG, 234),
    GROUP(EN_SAVE_INTELLI_SCENE, channel_scene, all, "db_save_intelli_scene_config"),
    SINGLE(EN_SAVE_INTELLIGENT_DOME_DEVRESOURCE_CFG, 241),
    SINGLE(EN_SAVE_INTELLIGENT_DOME_MODE_CFG, 242),
    SINGLE(EN_SAVE_INTELLIGENT_DOME_IPSPARAMVALUE_CFG, 243),
    SINGLE(EN_SAVE_INTELLIGENT_DOME_WITNESS_AREA_CFG, 244),
    GROUP(EN_SAVE_MULTI_CCD_PARAM, none, exclusive, "db_set_multi_ccd_cfg",
          "db_set_multi_ccd_time_switch_cfg", "db_set_multi_ccd_preset_switch_param_cfg"),
    SINGLE(EN_SAVE_MULTI_CCD_DEMO_CCDPARA_CFG, 249),
    GROUP(EN_SAVE_MULTI_CCD_DEMO_CCDPARA_CFG_C2, scene, exclusive,
          "db_set_multi_ccd_demo_ccdpara_cfg_single"),
    SINGLE(EN_SAVE_TRAFFIC_ILLEGAL_DICTIONARY, 250),
    SINGLE(EN_SAVE_TRAFFIC_OVERLAP_INFO, 251),
    SINGLE(EN_SAVE_OPEN_PLATFORMAT_APP_PARAM_CFG, 252),
    SINGLE(EN_SAVE_PUSH_ORG_PREVIEW_SERVER_CFG, 253),
};

#undef SPECIAL
#undef GROUP
#undef CHECKED_GROUP
#undef SINGLE

// One block of the dome's settings, by the name that the request gives.
constexpr DomeBlock kDomeBlocks[] = {
    {"System", {"db_save_ipdome_motionsys"}},
    {"Motion", {"db_save_ipdome_stepmotor"}},
    {"Disp", {"db_save_ipdome_osdparam"}},
    {"TimeTask", {"db_save_ipdome_timetask"}},
    {"Alarm", {"db_save_ipdome_alarm_auxoutput"}},
    {"AuxOutPut", {"db_save_ipdome_alarm_auxoutput"}},
    {"Pattern", {"db_save_ipdome_ptz_pattern"}},
    {"Preset", {"db_save_ipdome_ptz_preset_new"}},
    {"Inner_Preset", {"db_save_ipdome_ptz_inner_preset"}},
    {"Patrol", {"db_save_ipdome_ptz_patrol"}},
    {"Privacy", {"db_save_ipdome_privacy"}},
    {"other", {"db_save_ipdome_other"}},
    {"roi", {"db_save_ipdome_roi_base", "db_save_ipdome_roi_group"}},
};

}  // namespace

std::span<const RequestKind> request_kinds() {
    return kKinds;
}

const RequestKind* find_request_kind(int number) {
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const RequestKind& k) { return k.number == number; });
    return found == std::end(kKinds) ? nullptr : &*found;
}

const RequestKind* find_request_kind(std::string_view name) {
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const RequestKind& k) { return k.name == name; });
    return found == std::end(kKinds) ? nullptr : &*found;
}

std::span<const DomeBlock> dome_blocks() {
    return kDomeBlocks;
}

const DomeBlock* find_dome_block(std::string_view name) {
    const auto found = std::find_if(std::begin(kDomeBlocks), std::end(kDomeBlocks),
                                    [&](const DomeBlock& b) { return b.name == name; });
    return found == std::end(kDomeBlocks) ? nullptr : &*found;
}

bool are_available(std::initializer_list<const char*> functions) {
    return std::all_of(functions.begin(), functions.end(), [](std::string_view name) {
        return find_function(name).role != NamedFunction::Role::none;
    });
}

bool is_available(const RequestKind& kind) {
    if (kind.run == Run::special)
        return true;
    if (kind.run == Run::single_table) {
        const Table* table = table_by_number(kind.table);
        return table != nullptr && table->has_registry_set();
    }
    if (kind.args == Args::name)
        return std::any_of(std::begin(kDomeBlocks), std::end(kDomeBlocks),
                           [](const DomeBlock& b) { return are_available(b.functions); });
    return are_available(kind.functions);
}

std::string_view args_text(Args args) {
    switch (args) {
        case Args::table:
            return "table";
        case Args::tables:
            return "tables";
        case Args::channel:
            return "channel";
        case Args::sensor:
            return "sensor";
        case Args::channel_scene:
            return "channel scene";
        case Args::smd_channel:
            return "smd channel";
        case Args::scene:
            return "scene";
        case Args::name:
            return "name";
        case Args::none:
            break;
    }
    return "";
}

}  // namespace dbshell
