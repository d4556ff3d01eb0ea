#include "schema.h"

namespace {

// "verchar" and "interger" are types that fielded databases carry; SQLite reads them for their affinity.
// The entry of infrared_remote_ctrl makes ipdome_ptz_preset_new too.
constexpr const char* kCreateList[] = {
    "CREATE TABLE IF NOT EXISTS db_version(version integer primary key, old_version integer);",
    "CREATE TABLE IF NOT EXISTS dev_info(dev_id integer primary key, dev_name verchar(32), "
    "dev_type int, language int, magic_num int, para_len int, para_version int, check_sum int);",
    "CREATE TABLE IF NOT EXISTS dev_hwconfig_info(idx integer primary key, arm_status int, "
    "lens_focus_step int, lens_zoom_step int, aging_mode int, aging_time int, streamsend_enable int);",
    "CREATE TABLE IF NOT EXISTS chn_info(chn_index integer primary key, name varchar(64), "
    "name_attr int, name_enable int, osd_type int, osd_attr int, hour_osd_type int, "
    "week_disp_enable int, am_pm_flag int, ps_send_pack_len int, enable_date int, "
    "osd_size varchar(64), logo_param text, rgb_red int, rgb_green int, rgb_blue int, "
    "osd_color_type int, byalignment int, battery_osd_enable int, battery_osd_position_x int, "
    "battery_osd_position_y int);",
    "CREATE TABLE IF NOT EXISTS chn_comp_info(chn_index int, channel_no int, stream_index int, "
    "video_enc_type int, stream_type int, resolution int, bitrate int, framerate int, "
    "iframe_inter int, bframe_num int, eframe_num int, quality int, enc_complexity int, "
    "pack_type int, rtp_package_len int, contain_ext int, line_encode int, bps_type int, "
    "audio_enc_type int, enable_svc int, audio_bitrate int, qp_offset int, audio_samplerate int, "
    "is_smart_h264_enable int, average_code_rate int, smooth_preview_value int, "
    "primary key(chn_index, channel_no));",
    "CREATE TABLE IF NOT EXISTS audio_param_info(idx integer primary key, vt_type int, "
    "audio_in_type int, audio_gain int, b_audio_denoise int, speak_volume int);",
    "CREATE TABLE IF NOT EXISTS user_mana_info(idx integer primary key, username verchar(64), "
    "passwd verchar(64), ipv4_addr unsigned int, ipv6_addr verchar(64), mac_addr verchar(64), "
    "permission int, priority int, user_level int, user_num int, "
    "preview_permision unsigned long long, playback_permision unsigned long long, "
    "record_permision unsigned long long, ptzctrl_permision unsigned long long);",
    "CREATE TABLE IF NOT EXISTS coordinate_region_list(idx integer, chn_index int, role_of_coor int, "
    "coor_type int, xcoordinate int, ycoordinate int, diagonal_x int, diagonal_y int, width int, "
    "height int, primary key(idx, chn_index));",
    "CREATE TABLE IF NOT EXISTS record_info(idx integer primary key, need_rec int, cyclic_rec int, "
    "pre_rec_time int, rec_delay_time int, record_stream_type int, record_passback int, "
    "record_lock_duration int, record_backup int, svc_level int);",
    "CREATE TABLE IF NOT EXISTS week_config_list(idx integer primary key, chan_no int, "
    "process_type int, auxiliary_type text, whole_day text, whole_day_type text, alarm_no int, "
    "begin_end_time text, scene int, rule int);",
    "CREATE TABLE IF NOT EXISTS daytime_config_list(idx integer primary key);",
    "CREATE TABLE IF NOT EXISTS video_analysis_config(chan_no integer, type_idx integer, enable int, "
    "level int, handle_type int, rigger_rec_chn int, alarm_out_triggered int, display int, "
    "motdect_mode int, switch_daynight_settings int, start_hour int, start_minute int, "
    "start_second int, stop_hour int, stop_minute int, stop_second int, email_capture_triggered int, "
    "capture_triggered int, primary key(chan_no, type_idx));",
    "CREATE TABLE IF NOT EXISTS motion_detect_list(chan_no integer, line_no integer, line_data text, "
    "primary key(chan_no, line_no));",
    "CREATE TABLE IF NOT EXISTS alarm_out_config(no integer primary key, name verchar(64), "
    "delay_time int);",
    "CREATE TABLE IF NOT EXISTS alarm_in_config(no integer primary key, name verchar(64), "
    "alarm_type int, deal_needed int, handle_type int, rigger_rec_chn text(129), "
    "alarm_out_triggered int, ptztrack_enabled text(129), ptzcruise_enabled text(129), "
    "ptzpreset_enabled text(129), email_capture_triggered int, capture_triggered int);",
    "CREATE TABLE IF NOT EXISTS serial_config_table(idx integer primary key, serial_type int, "
    "baudrateIdx int, databits int, stopbits int, parity int, flowcontrol int, rs232_mode int, "
    "rs485_decode_type int, rs485_decode_addr int, rs485_enable int, rs232_address int);",
    "CREATE TABLE IF NOT EXISTS ptz_config_info_list(idx integer primary key, port_index int, "
    "ptzPreset text, ptzCruise text, ptzTrack text, ptzSeqPara_no text, ptzSeqPara_speed text, "
    "ptzSeqPara_time text, presetName text);",
    "CREATE TABLE IF NOT EXISTS alarm_trigger_ptz_list(idx integer primary key, chn int, "
    "trig_type int, ptz_index int);",
    "CREATE TABLE IF NOT EXISTS eptz_preset_list(idx integer primary key, upper_left_x int, "
    "upper_left_y int, lower_right_x int, lower_right_y int);",
    "CREATE TABLE IF NOT EXISTS exception_list(idx integer primary key, exception_no int, "
    "handle_type int, alarm_out_triggered int, email_capture_triggered int, capture_triggered int);",
    "CREATE TABLE IF NOT EXISTS front_param_config(idx integer primary key, brightness_lv int, "
    "hue_lv int, saturation_lv int, contrast_lv int, sharpness_lv int, gain_lv int, grayscale int, "
    "auto_contrast_mode int, auto_contrast_level int, maxgainvalue int);",
    "CREATE TABLE IF NOT EXISTS front_other_config(idx integer primary key, local_output int, "
    "powerline int, mirror_ctrl int, mirror int, scene_mode int, black_pwl int, color_range int, "
    "digital_zoom int, eptz int, dehaze_mode int, light_inhibition_enable int, "
    "light_inhibition_level int, lowluminance_enhance int, bcorridor_mode int, dehaze_level int, "
    "image_stabilization_mode int, capture_mode int, capture_mode_enable int, zoom_min_limit int, "
    "zoom_max_limit int, ae_region int, af_region int, sdi_local_output_enable int, "
    "local_output_hd int, lens_distort_correction_enable integer);",
    "CREATE TABLE IF NOT EXISTS wdr_config_table(idx integer primary key, enable int, level_one int, "
    "level_two int, contrast_level int);",
    "CREATE TABLE IF NOT EXISTS blc_config_table(idx integer primary key, blc_mode int, "
    "blc_level int, area_index int, pos_x0 int, pos_y0 int, pos_x1 int, pos_y1 int);",
    "CREATE TABLE IF NOT EXISTS wb_config_table(idx integer primary key, wb_mode int, wb_gain_r int, "
    "wb_gain_b int, awb_rgain int, awb_ggain int, awb_bgain int);",
    "CREATE TABLE IF NOT EXISTS dnr_config_table(idx integer primary key, dnr_mode int, "
    "dnr_level int, spectral_level int, temporal_level int);",
    "CREATE TABLE IF NOT EXISTS gamma_config_table(idx integer primary key, enable int, level int);",
    "CREATE TABLE IF NOT EXISTS dnf_config_table(idx integer primary key, dnf_mode int, "
    "daytonight_level int, nighttoday_level int, filter_time int, schedule_enabled int, "
    "begin_time int, end_time int, begintime_min int, begintime_sec int, endtime_min int, "
    "endtime_sec int, smart_ir int, alarmtrigstate int, day_night_type_before_led_on int, "
    "smart_ir_mode int, smart_ir_distance int, smart_ir_short_distance int, "
    "smart_ir_long_distance int);",
    "CREATE TABLE IF NOT EXISTS lens_exposure_table(idx integer primary key, exposure_mode int, "
    "iris_mode int, exposure_target int, exposure_userset int, exposure_set int, "
    "auto_aperture_level int, piris_mode int, piris_aperture int);",
    "CREATE TABLE IF NOT EXISTS trermal_image_table(idx integer primary key, filter_switch int, "
    "palette_mode int, dimmer_mode int, enhanced_mode int, focus_speed int, "
    "auto_compensation_interval int);",
    "CREATE TABLE IF NOT EXISTS netconfig_table(idx integer primary key, nictype int, "
    "mac_addr verchar(32), wifi_mac verchar(32), mtu int, media_type int, dhcp_enable int, "
    "auto_dns_enable int, nic_mode int, mana_mode int, security int, ssid verchar(128), "
    "eth0_dhcp_enable int, ipv6_mode int, multi_discover_mode integer, wifi_enable int);",
    "CREATE TABLE IF NOT EXISTS wep_encrypt_info(key_index integer primary key, key_len int, "
    "key_type int, auth_mode int);",
    "CREATE TABLE IF NOT EXISTS wep_key_list(idx integer primary key, key_info verchar(128));",
    "CREATE TABLE IF NOT EXISTS wpa_encrypt_info(idx integer primary key);",
    "CREATE TABLE IF NOT EXISTS ipaddr_list(idx integer primary key, target int, use_mod int, "
    "ipv4addr unsigned int, ipv6addr verchar(64), ipv4mask unsigned int, ipv6mask verchar(64), "
    "ipport int, name verchar(64));",
    "CREATE TABLE IF NOT EXISTS local_port_list(idx integer primary key, port_mode int, "
    "port_type int, start_port int, end_port int);",
    "CREATE TABLE IF NOT EXISTS local_port_list_ext(idx integer primary key, port_mode int, "
    "port_type int, start_port int, end_port int);",
    "CREATE TABLE IF NOT EXISTS net_hd_config(idx integer primary key, hdtype integer, "
    "serveripv4 integer, serveripv6 varchar(64), directory varchar(256), mount_nfs integer, "
    "nas_server_addr varchar(128), disk_type integer, iscsi_port integer);",
    "CREATE TABLE IF NOT EXISTS rtsp_config_table(idx integer primary key, enable_auth int);",
    "CREATE TABLE IF NOT EXISTS email_config_info(idx integer primary key, user_name verchar(128), "
    "passwd verchar(64), attachment int, server_verify int, mail_interval int, ssl_verify int, "
    "enabled int, subject verchar(64), verify_type int);",
    "CREATE TABLE IF NOT EXISTS email_addr_list(idx integer primary key, name verchar(128), "
    "addr verchar(256), addr_type int);",
    "CREATE TABLE IF NOT EXISTS qos_config_info(idx integer primary key, manage_dscp int, "
    "alarm_dscp int, video_dscp int, audio_dscp int, flag int, enable int);",
    "CREATE TABLE IF NOT EXISTS snmp_config_info(idx integer primary key, enable_snmpv1 int, "
    "enable_snmpv2c int, enable_snmpv3 int, read_community verchar(64), write_community verchar(64), "
    "trap_community verchar(64));",
    "CREATE TABLE IF NOT EXISTS snmp_v3user_info(idx integer primary key, user_type int, "
    "user_name verchar(64), auth_passwd verchar(32), priv_passwd verchar(32), auth_algorithm int, "
    "priv_algorithm int, security_level int);",
    "CREATE TABLE IF NOT EXISTS ieee_8021x_info(idx integer primary key, eap_identity verchar(128), "
    "password verchar(64), enable_wpa int, eapol_version int, eap_type int);",
    "CREATE TABLE IF NOT EXISTS ntp_config_info(idx integer primary key, enable_ntp int, "
    "interval int, timediff_hour int, timediff_min int, satellite_interval int);",
    "CREATE TABLE IF NOT EXISTS ppp_config_info(idx integer primary key, phone_number verchar(32), "
    "ppp_attribute int, remoteIpv4Addr unsigned int, remoteIpv6Addr verchar(32), "
    "localIpv4Addr unsigned int, localIpv6Addr verchar(32), localSubnetMask verchar(32), "
    "username verchar(64), password verchar(32), mtu int);",
    "CREATE TABLE IF NOT EXISTS pppoe_config_info(idx integer primary key, username verchar(128), "
    "passwd verchar(128), enable int);",
    "CREATE TABLE IF NOT EXISTS ddns_config_info(idx integer primary key, enable_ddns int, "
    "host_type int, port int, username verchar(128), passwd verchar(128), domain_name verchar(128), "
    "server_name verchar(128), res verchar(32), country_id int);",
    "CREATE TABLE IF NOT EXISTS auto_capture_config(idx integer primary key, name_order verchar(32), "
    "name_delimiter int, trigger_times verchar(64), event_interval int, event_cap_mode int, "
    "evnt_cap_num int, evnt_pic_size int, evnt_pic_quality int, time_interval int, "
    "time_pic_size int, time_pic_quality int, save_sd_enable int, up_ftp_enable int, "
    "cap_time_enable int, stream_id int);",
    "CREATE TABLE IF NOT EXISTS image_naming_list(idx integer primary key, item_order int);",
    "CREATE TABLE IF NOT EXISTS ftp_serv_list(idx integer primary key, serv_addr_v4 unsigned int, "
    "serv_addr_v6 verchar(64), serv_port int, username verchar(128), passwd verchar(64), "
    "dir_level int, top_dir_mode int, sec_dir_mode int, serv_add_domain verchar(64), "
    "top_custo_dir verchar(64), sub_custo_dir verchar(64), version int, protocol_type int, "
    "server_type int, addr_type int, anony int, up_ftp_enable int, interval_days unsigned int, "
    "begin_time unsigned int, prefix_name verchar(128), ftp_name_type int);",
    "CREATE TABLE IF NOT EXISTS dst_config_info(idx integer primary key, zone_index integer, "
    "dst_enable integer, zone_offset_hour integer, zone_offset_min integer, dst_offset_min integer, "
    "dst_abbr verchar(8), timezone_abbr verchar(8));",
    "CREATE TABLE IF NOT EXISTS date_time_list(idx integer primary key, time_type int, mouth int, "
    "day int, hour int, minute int, sec int, weekno int);",
    "CREATE TABLE IF NOT EXISTS weblib_config(idx integer primary key, upnp_enable int, "
    "zero_config_enable int, tz_env verchar(64));",
    "CREATE TABLE IF NOT EXISTS weblib_motdetect_info(idx integer primary key, chan_no int, "
    "enable text(65), sensitivity_level text(65), mask_enabled text(65), x0 text(97), y0 text(97), "
    "x1 text(97), y1 text(97), x2 text(97), y2 text(97), x3 text(97), y3 text(97), existed text(65));",
    "CREATE TABLE IF NOT EXISTS onvif_base_config(idx integer, chan_no int, "
    "proxy_addr_v4 unsigned int, proxy_addr_v6 verchar(64), nondiscoverable int, subscribe int, "
    "topic_filter text, content_filter text, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS onvif_profile_list(idx integer primary key, name verchar(32), "
    "profile_type int, token verchar(32), video_source verchar(32), audio_source verchar(32), "
    "video_enc verchar(32), audio_enc verchar(32), video_analysis verchar(32), ptz verchar(32), "
    "metadata verchar(32), audio_output verchar(32), audio_dec verchar(32));",
    "CREATE TABLE IF NOT EXISTS multicast_port(idx integer primary key, main_video_port int, "
    "main_audio_port int, main_metadata_port int, sub_video_port int, sub_audio_port int, "
    "sub_metadata_port int, other_video_port int, other_audio_port int, other_metadata_port int);",
    "CREATE TABLE IF NOT EXISTS remote_ctrl_list(idx integer primary key, arming_delay int, "
    "remote_ctrl_cnt int, remote_ctrl text);",
    "CREATE TABLE IF NOT EXISTS wireless_alarm_param(idx integer primary key, "
    "wirelessalarm_name verchar(32), benable_wirelessalarm int, handleType int, "
    "alarmOutTriggered int, recordchan_triggered text, wireless_sensor text);",
    "CREATE TABLE IF NOT EXISTS pir_alarm_param(idx integer primary key, piralarm_name verchar(32), "
    "benable_piralarm int, handleType int, alarmOutTriggered int, recordchan_triggered text);",
    "CREATE TABLE IF NOT EXISTS callhelp_alarm_param(idx integer primary key, "
    "callhelp_name verchar(32), benable_callhelp int, handleType int, alarmOutTriggered int, "
    "recordchan_triggered text);",
    "CREATE TABLE IF NOT EXISTS psia_alarm_to_center(idx integer primary key, protcol_type int, "
    "auth_metod int, param_format int, add_format int, url text, host_name verchar(32), "
    "port_num int, user_name verchar(32), pass_word verchar(32), wps_enable int, "
    "wps_pincode verchar(32), interval_times int);",
    "CREATE TABLE IF NOT EXISTS psia_cgi_config(idx integer primary key, dest_port int, "
    "source_port int, login_anony int, ir_enable int, telnet_enable int, abf_disable int, "
    "led_enable int, defog_enable int, suppLight_enable int);",
    "CREATE TABLE IF NOT EXISTS genetec_config(idx integer, chan_no int, serial_port int, "
    "genetec_mjpeg_quality int, genetec_motion_sensitivity int, motion_roi_x0 float, "
    "motion_roi_y0 float, motion_roi_x1 float, motion_roi_y1 float, motion_on_threshold int, "
    "motion_off_threshold int, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS ip_filter_table(idx integer primary key, enable_v4 int, "
    "filter_type_v4 int, enable_v6 int, filter_type_v6 int, ipaddress text, ipv6address text);",
    "CREATE TABLE IF NOT EXISTS upnp_config(idx integer primary key, enable int, portmap int, "
    "type int, res1 int, router_lan_ip_v4 int, router_lan_ip_v6 verchar(64), "
    "http_portmap verchar(64), command_portmap verchar(64), rtsp_portmap verchar(64), "
    "friend_name verchar(64));",
    "CREATE TABLE IF NOT EXISTS onvif_scope_list(idx integer primary key, uri verchar(128), "
    "type int);",
    "CREATE TABLE IF NOT EXISTS disk_quota_list(b_enable integer, chan_no integer, "
    "data_type integer, quota_type integer, content integer, channel_ratio integer, "
    "primary key(chan_no, data_type));",
    "CREATE TABLE IF NOT EXISTS audio_detect_param(idx integer primary key, enable int, level int, "
    "handletype int, alarmouttriggered int, recordchan_triggered int);",
    "CREATE TABLE IF NOT EXISTS rtcp_config(idx integer primary key, enable int);",
    "CREATE TABLE IF NOT EXISTS ipdome_ccdparam_table(idx integer primary key, sharpness_type int, "
    "low_light_limit int, low_light_limit_level int, image_stabilize_level int, "
    "camera_ir_correct int, high_sensitivity int, initialize_lens int, focus_mode int, "
    "auto_focus_mode int, min_focus_distance int, zoom_speed_level int, focus_speed_level int, "
    "iris_set unsigned int, exposure_mode_set int, shutter_set int, ipdome_gain_set int, "
    "gain_limit int, exposure_compensate int, optical_zoom int, digital_zoom int, "
    "chroma_suppress int, video_freeze int, ir_control_mode int, ir_brightness int, "
    "ir_sensitivity int, trig_mode int, ir_brightness_limit int, ir_movementtrigger int, "
    "laser_control_mode int, laser_trigger_mode int, laser_brightness int, laser_angle int, "
    "laser_sensitivity int, iris_max_limit int, iris_min_limit int, shutter_max_limit int, "
    "shutter_min_limit int, laser_brightness_limit int, ipdome_scene_mode int, "
    "optical_zoom_level int, focus_pos int, ipdome_gamma_type int, dome_whitelight_begintime int, "
    "dome_whitelight_endtime int, whitelight_brightness_limit int, dome_whitelight_mode int, "
    "zoom_track_mode int);",
    "CREATE TABLE IF NOT EXISTS ipdome_motionsys_table(idx integer primary key, version int, "
    "domesize int, domespeedmode int, Language int, DomeAddr int, baud int, parity int, dataBit int, "
    "stopBit int, flowcontrol int, ensoftAddr int, softAddr int, softBaudEnable int, "
    "softBaudIndex int, protocoltype int);",
    "CREATE TABLE IF NOT EXISTS ipdome_osdparam_table(idx integer primary key, presetlable int, "
    "zonelable int, zoom int, pt int, direction int, alarm int, dt int, remote_ctrl int, "
    "pt_mode int, marginis_enable int);",
    "CREATE TABLE IF NOT EXISTS ipdome_timetask_table(idx integer primary key, time_task text, "
    "cur_day int, copy_day int, parktime int, task_enable int, reset_one_time int, "
    "ptadjust_one_time int);",
    "CREATE TABLE IF NOT EXISTS ipdome_alarm_auxoutput(idx integer primary key, resume int, "
    "sequence int, sequencetime int, alarm_num int, alarm_input text, auxoutput_num int, "
    "auxoutput_mode_one int, auxdwelltime_one int, auxoutput_mode_two int, auxdwelltime_two int);",
    "CREATE TABLE IF NOT EXISTS ipdome_stepmotor_table(idx integer primary key, auto_flip int, "
    "proportinalpan int, presetframefreeze int, preframefreezestat int, manual_mirrored int, "
    "scan_mirrored int, atuo_mirror int, maxelevationangle int, scan_speed int, move_speedlevel int, "
    "preset_speedlevel int, b_panreversed int, b_tiltreversed int, support_mirror int, "
    "zeroposdefined int, zeropanpos int, zeroptiltpos int, poweroff_savetime int, reboot_time int, "
    "pt_adjusttime int, park_enable int, park_time int, park_action int, park_action_num int, "
    "limit_ipdome verchar(256), maxtiltAngle int, linear_scan_borderX2 int, "
    "linear_scan_borderX1 int, proportinal_speedlevel int, manual_ctrl_mode int, InitPosEnable int);",
    "CREATE TABLE IF NOT EXISTS ipdome_privacy_table(idx integer primary key, pan int, tilt int, "
    "tilthalfAngle int, gratio int, delayTime int, isPanReversed int, isTiltReversed int, "
    "privacygroup_enable int, privacygroup_Input text);",
    "CREATE TABLE IF NOT EXISTS ipdome_ir_table(idx integer primary key, controlmode int, "
    "brigheness int, sensitivenesslevel int, temp_ctrl_mode int, fan_mode int, ldc_mode int, "
    "vga_mode int, anti_flicker int, ptz_enable_ctrl int);",
    "CREATE TABLE IF NOT EXISTS vilost_param_table(idx integer primary key, enablealarm int, "
    "alarmouttriggered int, handletype int, capture_triggered int);",
    "CREATE TABLE IF NOT EXISTS ipdome_ptz_preset(idx integer primary key, preset text);",
    "CREATE TABLE IF NOT EXISTS ipdome_ptz_pattern(idx integer primary key, num int, info text);",
    "CREATE TABLE IF NOT EXISTS ipdome_ptz_patrol(idx integer primary key, enable int, "
    "patrolnum int, scanpoint text);",
    "CREATE TABLE IF NOT EXISTS fd_param_table(idx integer primary key, enable_fd int, "
    "enable_disp int, level int, interval int, b_need_detail int, recordchan_triggered verchar(255), "
    "handle_type int, alarmout_triggered int, capture_triggered int);",
    "CREATE TABLE IF NOT EXISTS roi_conf_table(idx integer primary key, chan_idx int, streamidx int, "
    "region_num int, face_num int, plate_num int, type int, type_idx int, enable int, level int, "
    "x int, y int, w int, h int, name verchar(32));",
    "CREATE TABLE IF NOT EXISTS ipdonme_roi_base(idx integer primary key, pan int, tilt int, "
    "tilthalfangle int, gratio int, delaytime int, ispanreversed int, istiltreversed int);",
    "CREATE TABLE IF NOT EXISTS ipdome_roi_group(idx integer primary key, group_idx int, "
    "inputtype_idx int, type int, wholeenable int, benable int, longitude1 int, latitude1 int, "
    "longitude2 int, latitude2 int, longitude3 int, latitude3 int, longitude4 int, latitude4 int, "
    "centerlongitude int, centerlatitude int, zoomvalue int, bpolygon int);",
    "CREATE TABLE IF NOT EXISTS intelligent_paramrule(idx integer primary key, alarm_delaytime int, "
    "track_holdtime int, predict_state int, active_track_smooth_mode int, zoomcof_adjust int, "
    "benable int, zcoef_value int, maxtrackzoom int, trackzoomtype int, zoomcof int);",
    "CREATE TABLE IF NOT EXISTS intelligent_ctrl_info(idx integer primary key, benable int, "
    "intelligentfuntype int, bresulttostream int, bhaveruleinenc int, bhavetargetinenc int, "
    "bhaveruleinpic int, bhavetargetinpic int, bautotrackenable int, bcapture int, resolution int, "
    "quality int, width int, height int);",
    "CREATE TABLE IF NOT EXISTS intelligent_ivs_key_param_list(idx integer primary key, ivs_idx int, "
    "type int, num int, param_num int, param_idx verchar(320), param_value verchar(320));",
    "CREATE TABLE IF NOT EXISTS cb_point_cfg(idx integer primary key, benable int, trackmode int, "
    "followchan int);",
    "CREATE TABLE IF NOT EXISTS intelligent_qor_patrol_routecfg(idx integer primary key, enable int, "
    "scenenum int, sceneindex verchar(255), dwelltime verchar(255));",
    "CREATE TABLE IF NOT EXISTS intelligent_qor_scene_config(idx integer primary key, "
    "scene_total_num int, scene_num int, curren_scene int, scenename verchar(32), id int, "
    "enable int, ruleenable int, panpos int, tiltpos int, zoom int, trackenable int, "
    "trackduration int, limitenable int, leftpos_pan int, leftpos_tilt int, leftpos_zoom int, "
    "rightpos_pan int, rightpos_tilt int, rightpos_zoom int, uppos_pan int, uppos_tilt int, "
    "uppos_zoom int, downpos_pan int, downpos_tilt int, downpos_zoom int, limitpanflag int, "
    "limittiltflag int);",
    "CREATE TABLE IF NOT EXISTS intelligent_polygon_size_filter(idx integer primary key, scene int, "
    "rule int, type int, enable int, mode int, point_num int, min_x int, min_y int, min_w int, "
    "min_h int, max_x int, max_y int, max_w int, max_h int);",
    "CREATE TABLE IF NOT EXISTS intelligent_qor_rule_config(idx integer primary key, scene int, "
    "rule int, rule_num int, rulename verchar(32), id int, enable int, rule_type int, "
    "sensitivity int, updateflag int, event_type int, rules_param verchar(64), "
    "vcatriggerrecchans int, handletype int, alarmouttriggered int);",
    "CREATE TABLE IF NOT EXISTS ptz_config_info_ext(preset_no integer primary key, "
    "ptz_preset_zoom integer, ptz_preset_focus integer);",
    "CREATE TABLE IF NOT EXISTS audio_exception_detection(idx integer primary key, "
    "audioin_exception_enable int, sound_intensity_mutation_enable int, sensitivity int, "
    "threshold int, handle_type int, rigger_rec_chn int, alarm_out_triggered int, "
    "audio_steep_drop_enable int, audio_steep_drop_sensitivity int, enable_audio_loss int, "
    "audio_loss_sensitivity int);",
    "CREATE TABLE IF NOT EXISTS cms_config(idx integer primary key, udp_port int, puid varchar(32), "
    "password varchar(16));",
    "CREATE TABLE IF NOT EXISTS intrusion_detect_table(idx integer, chan_no integer, "
    "proc_type integer, enable integer, enable_dual_vca integer, handleType integer, "
    "alarmOutTriggered integer, trigger_record_chan integer, str_enable integer, "
    "bySensitivity integer, byRate integer, wDuration integer, point_num integer, "
    "polygonPoint varchar(256), primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS defocus_config_info(idx integer primary key, enable_defocus integer, "
    "defocus_level integer, handle_type integer integer, alarmout_trigger integer, "
    "capture_triggered int);",
    "CREATE TABLE IF NOT EXISTS line_detect_table(idx integer primary key, chan_no integer, "
    "proc_type integer, enable integer, enable_dual_vca integer, handleType integer, "
    "alarmOutTriggered integer, trigger_record_chan integer, enable_line integer, "
    "cross_direction integer, sensitivity integer, linePoint varchar(256), line_no integer, "
    "capture_triggered integer, email_capture_triggered integer);",
    "CREATE TABLE IF NOT EXISTS sip_config(idx integer primary key, transport_type int, "
    "local_port int, stream_idx int, std_enable int, std_registrar verchar(128), std_reg_port int, "
    "std_proxy varchar(128), std_proxy_port int, std_dispname verchar(64), std_username varchar(64), "
    "std_authid varchar(64), std_password varchar(32), std_expires int, std_reg_interval int, "
    "gb_enable int, gb_registrar verchar(128), gb_reg_port int, serverid verchar(64), "
    "serverdomain varchar(128), gb_username varchar(64), gb_authid varchar(64), "
    "gb_password varchar(32), gb_expires int, livetime int, hbtime int, hbcount int, "
    "gb_reg_interval int, sip_version int);",
    "CREATE TABLE IF NOT EXISTS scene_change_detect_table(idx integer primary key, enable int, "
    "sensitive_level int, handleType int, alarmOutTriggered int, trigger_record_chan int, "
    "capture_triggered int);",
    "CREATE TABLE IF NOT EXISTS intelligent_polygon(idx int, process_type int, by_enable int, "
    "point_num int, x_coords varchar(128), y_coords varchar(128), chan_no int, scene_no int, "
    "rule_no int, primary key(idx, process_type, chan_no));",
    "CREATE TABLE IF NOT EXISTS intelligent_size_filter(idx int, process_type int, by_enable int, "
    "by_mode int, x_min int, y_min int, width_min int, height_min int, x_max int, y_max int, "
    "width_max int, height_max int, chan_no int, scene_no int, rule_no int, primary key(idx, "
    "process_type, chan_no));",
    "CREATE TABLE IF NOT EXISTS intelligent_face_detect_config(idx integer primary key, "
    "by_snap_time int, by_snap_interval int, by_snap_threshold int, by_generate_rate int, "
    "by_sensitive int, by_reference_bright int, pic_size int, pic_quality int, chan_no int, "
    "face_exposure_enable int, face_exposure_minduration int, by_actives varchar(128), "
    "auto_roi_enable varchar(128), nkeys varchar(128), nvalues varchar(128), handleType int, "
    "alarmOutTriggered int, email_capture_triggered int, capture_triggered int, "
    "record_triggered integer, byBackgroundPic int);",
    "CREATE TABLE IF NOT EXISTS intelligent_vca_ctrl_info(idx integer primary key, "
    "by_vca_enable int, by_vca_type int, by_stream_with_vca int, by_mode int, by_ctrl_type int);",
    "CREATE TABLE IF NOT EXISTS intelligent_ivs_param(idx integer, chan_no int, value int, "
    "primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS intelligent_line_segment(idx int, intel_chan_no int, "
    "by_line_mode int, start_point_x int, start_point_y int, end_point_x int, end_point_y int, "
    "value int, primary key(idx, intel_chan_no));",
    "CREATE TABLE IF NOT EXISTS intelligent_behavior_rule(idx integer primary key, "
    "b_dsp_add_target int, b_dsp_add_rule int, b_dsppic_add_target int, b_dsppic_add_rule int, "
    "b_capture_pic int, resolution int, quality int, width int, height int, scene_total_num int, "
    "scene_num int, curren_scene int, calibration_enable int, line_seg_num int, camera_mode int, "
    "camera_height int, camera_angle int, horizon int);",
    "CREATE TABLE IF NOT EXISTS intelligent_qor_scene(chan_no int, scene_no int, "
    "scene_name varchar(32), id int, enable int, rule_enable int, rule_num int, primary key(chan_no, "
    "scene_no));",
    "CREATE TABLE IF NOT EXISTS intelligent_qor_rule(chan_no int, scene_no int, rule_no int, "
    "rule_name varchar(32), id int, enable int, rule_type int, target_type int, sensitivity int, "
    "update_rule int, event_type int, event_param varchar(128), handle_type int, "
    "alarmout_triggered int, trigger_rec_chan varchar(128), email_capture_triggered int, "
    "capture_triggered int, primary key(chan_no, scene_no, rule_no));",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_param(idx integer primary key, "
    "b_auto_track_enable int, alarm_delay_time int, track_hold_time int, "
    "active_track_smooth_mode int, by_stop_track_when_find_face int, by_stop_track_threshold int, "
    "by_stop_track_static int, zcoef_benable int, track_zoom_type int, zcoef_value int, "
    "height_zoom_cof int, zoomcof_adjust int, max_track_zoom int, patrol_enable int, scene_num int, "
    "scene_index varchar(128), dwell_time varchar(128), tracking_pt_mode int, "
    "tracking_zoom_mode int, tracking_speed_adjust int, zoom_value_direct int, panPos int, "
    "tiltPos int, focusvalue int, horizontal_tracking_limit int, vertical_tracking_limit int);",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_scene_track(scene_id integer primary key, "
    "track_enable int, track_duration int, curpos_pan int, curpos_tilt int, curpos_zoom int, "
    "curpos_focus int, leftpos_pan int, leftpos_tilt int, leftpos_zoom int, leftpos_focus int, "
    "rightpos_pan int, rightpos_tilt int, rightpos_zoom int, rightpos_focus int, uppos_pan int, "
    "uppos_tilt int, uppos_zoom int, uppos_focus int, downpos_pan int, downpos_tilt int, "
    "downpos_zoom int, downpos_focus int, limit_enable int, limit_pan_flag int, limit_tilt_flag int, "
    "pos_3d varchar(256));",
    "CREATE TABLE IF NOT EXISTS itc_dev_cfg(idx integer primary key, led_multiple integer, "
    "led_duty integer, led_light_stauts integer, led_io_out_mode integer, power_sync_rang integer, "
    "power_frequency integer);",
    "CREATE TABLE IF NOT EXISTS itc_io_out_cfg(idx integer primary key, io_out_mode integer, "
    "io_out_benable integer, io_out_status integer, flash_mode integer, related_io_in integer, "
    "time_delay integer, time_pluse integer, ahead_time integer, freq_multi integer, "
    "duty_rate integer);",
    "CREATE TABLE IF NOT EXISTS io_out_cfg(idx integer primary key, io_work_mode integer, "
    "io_default_state integer, io_work_state integer, led_freq_multi integer, "
    "led_duty_ratio integer, flashlight_enable integer, start_hour integer, start_min integer, "
    "stop_hour integer, stop_min integer, power_sync_enble integer, power_sync_rang integer);",
    "CREATE TABLE IF NOT EXISTS itc_traffic_cfg(idx integer primary key, enable_tps integer, "
    "interval_tps integer, b_init integer, draw_rule integer, default_chn varchar(8), "
    "total_lane_num integer, recog_frame_num integer, bright_value integer, lane_num integer, "
    "locate_num integer, plate_osd integer, b_send_jpeg1 integer, b_send_jpeg2 integer, "
    "vehicle_logo_recog integer, designed_plate_width integer, recog_mode integer, "
    "time_limit integer, layered integer, frame_num integer, use_init_rect integer, "
    "pr_area_mode integer, u_region varchar(256), province integer, vep_lane_num integer, "
    "lane_line_x0 varchar(128), lane_line_y0 varchar(128), lane_line_x1 varchar(128), "
    "lane_line_y1 varchar(128), ptz_enable integer, ptz_scene_name varchar(64), "
    "ptz_scene_id integer, ptz_pan_pos integer, ptz_tilt_pos integer, ptz_zoom integer, "
    "ptz_focus_pos integer, detection_type integer, lane_dir varchar(64));",
    "CREATE TABLE IF NOT EXISTS catalog_config(idx integer primary key, item_num, "
    "item_id varchar(64));",
    "CREATE TABLE IF NOT EXISTS nas_identification(idx integer primary key, hdtype int, "
    "serveripv4 integer, serveripv6 varchar(64), directory varchar(256), mount_nfs integer, "
    "username varchar(128), password varchar(64), nas_server_addr varchar(128), disk_type integer, "
    "iscsi_port integer);",
    "CREATE TABLE IF NOT EXISTS wiper(id integer primary key, idx integer, mode integer, "
    "speed integer, count integer, cycle_interval_time integer, cycle_time integer);",
    "CREATE TABLE IF NOT EXISTS socks_param(idx integer primary key, socks_enable integer, "
    "socks_type integer, server_port integer, server_family integer, server_addr varchar(64), "
    "local_ip_v4 varchar(64), local_ip_v6 varchar(64), local_netmask_v4 varchar(64), "
    "local_netmask_v6 varchar(64), user_name varchar(32), passwd varchar(32));",
    "CREATE TABLE IF NOT EXISTS socks_local_ip(idx integer primary key, local_ip_v4 varchar(64), "
    "local_ip_v6 varchar(64), local_netmask_v4 varchar(64), local_netmask_v6 varchar(64));",
    "CREATE TABLE IF NOT EXISTS motdect_exp_param(idx integer, chan_no integer, area_no integer, "
    "object_area_proportion integer, sensitive_level integer, day_objectarea_proportion integer, "
    "day_sensitive_level integer, night_objectarea_proportion integer, "
    "night_sensitive_level integer, x integer, y integer, width integer, height integer, "
    "primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS isp_time_config(idx integer primary key, work_type int, "
    "start_hour int, start_minute int, start_second int, stop_hour int, stop_minute int, "
    "stop_second int);",
    "CREATE TABLE IF NOT EXISTS isp_day_param_config(idx integer primary key, brightness int, "
    "contrast int, sharp int, gain int, gray int, WB_mode int, WB_Rgain int, WB_Bgain int, "
    "awb_Rgain int, awb_Ggain int, awb_Bgain int, image_stabilization_mode int, "
    "image_stabilization_level int, exposureuserset int, exposureset int, digital_noise_enable int, "
    "digital_noise_level int, spectral_level int, temporal_level int, WDR_enable int, "
    "WDR_level1 int, WDR_level2 int, WDR_cantrast_level int, light_inhibition_enable int, "
    "light_inhibition_level int, BL_mode int, BL_level int, positionx0 int, positiony0 int, "
    "positionx1 int, positiony1 int, dehaze_mode int, dehaze_level int, saturationLevel int);",
    "CREATE TABLE IF NOT EXISTS isp_night_param_config(idx integer primary key, brightness int, "
    "contrast int, sharp int, gain int, gray int, WB_mode int, WB_Rgain int, WB_Bgain int, "
    "awb_Rgain int, awb_Ggain int, awb_Bgain int, image_stabilization_mode int, "
    "image_stabilization_level int, exposureuserset int, exposureset int, digital_noise_enable int, "
    "digital_noise_level int, spectral_level int, temporal_level int, WDR_enable int, "
    "WDR_level1 int, WDR_level2 int, WDR_cantrast_level int, light_inhibition_enable int, "
    "light_inhibition_level int, BL_mode int, BL_level int, positionx0 int, positiony0 int, "
    "positionx1 int, positiony1 int, dehaze_mode int, dehaze_level int, saturationLevel int);",
    "CREATE TABLE IF NOT EXISTS te_mointor_point(idx integer primary key, camera_no varchar(32), "
    "direction_no integer, monitor_point_no integer, monitor_info1 varchar(64), "
    "monitor_info2 varchar(64), monitor_info3 varchar(64), monitor_direction varchar(64), "
    "monitor_pointno_info varchar(64));",
    "CREATE TABLE IF NOT EXISTS te_pic_merge(idx integer primary key, save_type integer, "
    "two_pic_merge_type integer, three_pic_merge_type integer, four_pic_merge_type integer, "
    "five_pic_merge_type integer, six_pic_merge_type integer, quality_type integer, "
    "picture_quality integer, picture_size integer, vehicle_picture_quality integer);",
    "CREATE TABLE IF NOT EXISTS te_alg_cfg(idx integer primary key, default_chn varchar(32), "
    "scene_model integer, is_night_light_on integer, camera_height integer, "
    "pic_add_target_info integer, pic_add_rule_info integer, video_add_target_info integer, "
    "video_add_rule_info integer, parking_threshold integer, is_in_tunel integer, "
    "obj_detect integer, bg_update_rate integer, bg_change_ratio integer, obj_generate_rate integer, "
    "time_switch_threshold integer, light_bright integer, vsd_detect_sensitiviness integer, "
    "evidence_picture_ratio integer, night_dis_down integer, night_dis_up integer, "
    "track_time integer, track_tilt_limited integer, bNeedTrackFeturePic integer, "
    "trackFeaturePicZoomVal integer, trackFeaturePicZoomWidth integer, picClearThreshold integer, "
    "b_need_plate_pic integer, is_trace_enable integer, advanceParamNum integer, indexs varchar(64), "
    "keyvals varchar(64), stopDiterDetectSensitive integer, b_osd_overlay integer);",
    "CREATE TABLE IF NOT EXISTS te_char_overlap(idx integer primary key, is_overlap integer, "
    "items_stlye integer, start_pos_top_permillage integer, start_pos_left_permillage integer, "
    "char_size integer, fore_clor_RGB integer, back_clor_RGB integer, char_interval integer, "
    "line_interval integer, text_content_index varchar(128));",
    "CREATE TABLE IF NOT EXISTS te_its_cap_param(idx integer primary key, car_rect_x integer, "
    "car_rect_y integer, car_rect_width integer, car_rect_height integer, is_plate_rec integer, "
    "img_num integer, snap_one_timeout integer, tsk_time_out integer, plate_match_ratio integer, "
    "image_interval varchar(64), image_type varchar(64));",
    "CREATE TABLE IF NOT EXISTS te_its_preset_scene(chan_no integer, scene_no integer, "
    "enale integer, direction_no integer, scene_name varchar(32), is_ivt_enable integer, "
    "is_plate_rec integer, is_event_det_enable integer, plate_filter_time integer, "
    "snap_one_timeout integer, task_time_out integer, plate_match_ratio integer, P integer, "
    "T integer, Z integer, F integer, reference_num integer, shield_num integer, world_width real, "
    "world_length real, image_pt_x varchar(32), image_pt_y varchar(32), lane_point_x0 integer, "
    "lane_point_y0 integer, lane_point_x1 integer, lane_point_y1 integer, lane_num integer, "
    "rule_num integer, start_point_x varchar(64), start_point_y varchar(64), "
    "end_point_x varchar(64), end_point_y varchar(64), primary key(chan_no, scene_no));",
    "CREATE TABLE IF NOT EXISTS te_its_preset_rule(chan_no integer, scene_no integer, "
    "rule_no integer, id integer, enable integer, voice_trigger_enable integer, rule_type integer, "
    "aid_type varchar(64), line_aid_type varchar(64), size_filter_enable integer, "
    "size_filter_mode integer, min_rect_x integer, min_rect_y integer, min_rect_width integer, "
    "min_rect_height integer, max_rect_x integer, max_rect_y integer, max_rect_width integer, "
    "max_rect_height integer, parking_duration integer, pedestrian_duration integer, "
    "debris_duration integer, congestion_length integer, congestion_duration integer, "
    "inverse_duration integer, inverse_angle_tolerance integer, inverse_distance integer, "
    "imag_num integer, trun_round_angle_tolerance integer, start_point_x integer, "
    "start_point_y integer, end_point_x integer, end_point_y integer, img_interval varchar(64), "
    "img_type varchar(64), cross_lane_duration integer, cross_lane_sensitive_level integer, "
    "lane_change_sensitive_level integer, imag_evidence_num integer, "
    "region_imag_evidence_num integer, line_param_nRuleSensitity interger, "
    "lane_change_congestion_duration integer, vehicle_exist_duration integer, "
    "nRuleSensitity integer, primary key(chan_no, scene_no, rule_no));",
    "CREATE TABLE IF NOT EXISTS te_scene_cruise_schedule(day integer, time_segment integer, "
    "start_time integer, stop_time integer, scene_index varchar(264), continue_time varchar(264), "
    "primary key(day, time_segment));",
    "CREATE TABLE IF NOT EXISTS te_remote_center(idx integer primary key, "
    "monitor_upload_protocal integer, monitor_addr varchar(128), monitor_port integer, "
    "fortify_addr varchar(128), upload_types varchar(264), upload_interval integer, "
    "upload_timeout integer, ftp_enable integer, ftp_addr varchar(128), ftp_port varchar(128), "
    "ftp_usr_name varchar(128), ftp_passwd varchar(64), ftp_upload_types varchar(264), "
    "event_dir_name varchar(512), break_rule_dir_name varchar(512), "
    "break_rule_pic_name varchar(512), event_picture_name varchar(512), "
    "plat_picture_name varchar(512));",
    "CREATE TABLE IF NOT EXISTS te_polygon(idx integer, process_type integer, by_enable integer, "
    "point_num integer, x_coords varchar(128), y_coords varchar(128), chan_no integer, "
    "scene_no integer, rule_no integer, primary key(idx, process_type, chan_no, scene_no, rule_no));",
    "CREATE TABLE IF NOT EXISTS te_other_param(idx integer primary key, illegal_code integer, "
    "schedule_enable integer, voice_type varchar(64), voice_id varchar(64), ptz_oper_type integer, "
    "ptz_oper_delay_time integer, reserved_int varchar(64), reserved_str varchar(256), "
    "reserved_choice varchar(64));",
    "CREATE TABLE IF NOT EXISTS ipc_pt_config(idx integer primary key, pt_p_position integer, "
    "pt_t_position integer, pt_p_totalsteps integer, pt_t_totalsteps integer);",
    "CREATE TABLE IF NOT EXISTS zorvy_config(idx integer primary key, b_enable integer, "
    "lbs_server varchar(32), lbs_port integer, alarm_server varchar(32), alarm_port integer, "
    "permanent_code varchar(32), enable_permanent integer, enable_cloud integer, region integer, "
    "permanent_code_change_count integer, b_permanent_code_modify integer);",
    "CREATE TABLE IF NOT EXISTS zorvy_defense_plan_config(idx integer primary key, enable integer, "
    "begin_end_time text);",
    "CREATE TABLE IF NOT EXISTS zorvy_auto_online_plan_config(idx integer primary key, "
    "enable integer, begin_end_time text);",
    "CREATE TABLE IF NOT EXISTS zorvy_motion_detection_times(weekday integer primary key, "
    "report_time integer, reported_flag integer, motdet_num text);",
    "CREATE TABLE IF NOT EXISTS zorvy_alarm_config(idx integer primary key, alarm_mode integer, "
    "alarm_span integer, alarm_sound_mode integer);",
    "CREATE TABLE IF NOT EXISTS zorvy_event_cloudstorage_config(idx integer primary key, "
    "enable_event_cloudstorage integer);",
    "CREATE TABLE IF NOT EXISTS zorvy_cloud_record_plan_config(idx integer primary key, "
    "enable integer, update_date integer, begin_end_time text);",
    "CREATE TABLE IF NOT EXISTS zorvy_stream_config(idx integer primary key, stream_type integer, "
    "bit_type integer, video_enc_complexity integer, video_enc_type integer, reslution integer, "
    "stream_attr integer, iframe_interval integer, max_bit_rate integer, video_frame_rate integer, "
    "quality integer, bset_enc_type integer, bset_aud_type integer, encoder_type integer, "
    "audio_type integer, bframe_num integer, enable_svc integer);",
    "CREATE TABLE IF NOT EXISTS zorvy_user_info_config(idx integer primary key, user_id varchar(32));",
    "CREATE TABLE IF NOT EXISTS vemta_reg_param(idx integer primary key, enable integer, "
    "cms_ipv4addr integer, cms_ipv6addr varchar(64), cms_port integer, dev_id varchar(32), "
    "address_type integer, domain_name varchar(64));",
    "CREATE TABLE IF NOT EXISTS heatmap_config(idx integer primary key, enable integer, "
    "sensitivity integer, background_update_rate integer, scene_change_level integer, "
    "track_enable integer, min_size integer, handle_type integer, alarm_out_triggered integer);",
    "CREATE TABLE IF NOT EXISTS passenger_config(idx integer primary key, enable integer, "
    "handle_type integer, alarm_out_triggered integer, setup_height integer, view_angle integer, "
    "horizontal_distance integer, focal_length integer, calibration_enable integer, rec_num integer, "
    "rect_xy varchar(256), rect_wh varchar(256), osd_enable integer, osd_point_num integer, "
    "osd_point varchar(256), line_calibration_benable integer, b_sec_upload_enable integer, "
    "data_upload_cycle integer);",
    "CREATE TABLE IF NOT EXISTS passenger_region_config(idx integer primary key, "
    "sensitivity integer, speed_space integer, speed_time integer, count_speed integer, "
    "detecte_type integer, size_correct integer, start_point varchar(32), end_point varchar(32));",
    "CREATE TABLE IF NOT EXISTS intelligent_other_config(idx integer primary key, "
    "enabled_intelligent_retrieval integer);",
    "CREATE TABLE IF NOT EXISTS security_config(idx integer primary key, security_level integer, "
    "cmdcheck_level integer, loginlevel integer, web_auth integer, ssh_enable integer, "
    "illegal_login_lock integer, active_status integer, https_enable integer);",
    "CREATE TABLE IF NOT EXISTS region_param_polygon(idx int, process_type int, point_num int, "
    "x_coords varchar(128), y_coords varchar(128), primary key(idx, process_type));",
    "CREATE TABLE IF NOT EXISTS vm_snapshot_normal_param(process_type int, chain_no int, "
    "line_no int, enable int, stor_type int, snapshot_type int, primary key(process_type, chain_no, "
    "line_no));",
    "CREATE TABLE IF NOT EXISTS vm_snapshot_compression_param(process_type int, chain_no int, "
    "line_no int, revolution int, quality int, frequency int, interval int, "
    "primary key(process_type, chain_no, line_no));",
    "CREATE TABLE IF NOT EXISTS vm_snapshot_time_segment(process_type int, chain_no int, "
    "b_used varchar(128), start_stop_time varchar(1280), primary key(process_type, chain_no));",
    "CREATE TABLE IF NOT EXISTS vm_trigger_chain_param(process_type int, chain_no int, line_no int, "
    "trigger_chain varchar(256), primary key(process_type, chain_no, line_no));",
    "CREATE TABLE IF NOT EXISTS max_connect_num(idx integer, chan_no integer, "
    "preview_max_link integer, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS infrared_remote_ctrl(idx integer primary key, "
    "infrared_remote_ctrl_address integer); "
    "CREATE TABLE IF NOT EXISTS ipdome_ptz_preset_new(idx integer primary key, num int, "
    "preset varchar(1440));",
    "CREATE TABLE IF NOT EXISTS ipdome_ptz_inner_preset(idx integer primary key, num int, "
    "preset varchar(1440));",
    "CREATE TABLE IF NOT EXISTS binocular_cfg(idx integer primary key, video_type integer, "
    "enable integer, calibration_type integer, camera_height integer, pitch_angle integer, "
    "incline_angle integer, human_height integer, x_coords varchar(128), y_coords varchar(128));",
    "CREATE TABLE IF NOT EXISTS fisheye_param_cfg(idx integer, chan_no integer, mount_mode integer, "
    "pix_x varchar(128), pix_y varchar(128), zoom varchar(128), primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS thermal_front_param(idx integer primary key, ffcmode integer, "
    "ffctime integer, ffctemp integer, ddemode integer, ddealgorithm integer, ddelevel integer, "
    "agcmode integer, dzoom integer);",
    "CREATE TABLE IF NOT EXISTS area_tailor_cfg(idx integer primary key, is_avaliable integer, "
    "chan_id integer, stream_id integer, x integer, y integer, w integer, h integer, "
    "region_coord_num integer, region_wh varchar(256), region_xy varchar(256));",
    "CREATE TABLE IF NOT EXISTS lte_4g_param(idx integer primary key, by_enable_3g integer, "
    "by_diak_methold integer, by_switch_methold integer, prior_mode integer, off_line_time integer, "
    "dial_num varchar(128), username varchar(128), password varchar(128), apn_name varchar(128), "
    "UIMCardNum varchar(128), n_mtu_size integer, verify_proto integer, max_bit_ul integer, "
    "max_bit_dl integer, by_traffic_class integer, b_enable_sms_alarm integer, "
    "l_sms_read_stat integer, whole_day text, dial_type text, begin_end_time text, operator integer, "
    "sms_receipt_operation integer);",
    "CREATE TABLE IF NOT EXISTS sms_4g_whitelist(idx integer primary key, byWhiteList varchar(64), "
    "iPhoneCfg integer, iAlarmHandler integer);",
    "CREATE TABLE IF NOT EXISTS vehicle_detection_cfg(idx integer primary key, b_enable integer, "
    "handle_type integer, alarm_out_triggered integer, scene_id varchar(1024));",
    "CREATE TABLE IF NOT EXISTS cloud_storage_cfg(idx integer primary key, b_enable integer, "
    "ipv4_addr integer, ipv6_addr varchar(128), port_no integer, usrname varchar(64), "
    "passwd varchar(64), cloud_pool_id varchar(256));",
    "CREATE TABLE IF NOT EXISTS heatmap_ptz_config(idx integer primary key, chan_no integer, "
    "enable integer, scene_name varchar(128), scene_id integer, pan_pos integer, tilt_pos integer, "
    "zoom_pos integer, focus_pos integer);",
    "CREATE TABLE IF NOT EXISTS smd_detection_basic_cfg(chan_no integer, smd_type integer, "
    "enable integer, handle_type integer, alarm_out_triggered integer, "
    "record_chan unsigned long long, primary key(chan_no, smd_type));",
    "CREATE TABLE IF NOT EXISTS smd_detection_rule_cfg(idx integer, chan_no integer, "
    "smd_type integer, enable integer, sensitivity integer, rate integer, cross_direction integer, "
    "duration integer, pan_tilt_pos varchar(32), zoom_focus_value varchar(32), pos_3d varchar(256), "
    "target_type integer, primary key(idx, chan_no, smd_type));",
    "CREATE TABLE IF NOT EXISTS smd_polygon(idx integer, chan_no integer, smd_type integer, "
    "point_num integer, x_coords varchar(512), y_coords varchar(512), primary key(idx, chan_no, "
    "smd_type));",
    "CREATE TABLE IF NOT EXISTS light_storage_cfg(idx integer, chan_no integer, enable integer, "
    "sdcard_time integer, sensitivity integer, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS vca_line_cfg(idx integer, chan_no integer, process_type integer, "
    "num integer, start varchar(256), end varchar(256), primary key(idx, chan_no, process_type));",
    "CREATE TABLE IF NOT EXISTS traffic_vehicle_detect_cfg(idx integer, chan_no integer, "
    "detect_type integer, b_enable integer, handle_type integer, alarm_out_triggered integer, "
    "scene_id varchar(1024), primary key(idx, chan_no, detect_type));",
    "CREATE TABLE IF NOT EXISTS traffic_scene_cfg(idx integer, chan_no integer, scene_type integer, "
    "b_init integer, draw_rule integer, default_chn varchar(8), total_lane_num integer, "
    "recog_frame_num integer, bright_value integer, lane_num integer, locate_num integer, "
    "plate_osd integer, b_send_jpeg1 integer, b_send_jpeg2 integer, vehicle_logo_recog integer, "
    "designed_plate_width integer, recog_mode integer, time_limit integer, layered integer, "
    "frame_num integer, use_init_rect integer, pr_area_mode integer, u_region varchar(256), "
    "province integer, vep_lane_num integer, lane_line_x0 varchar(128), lane_line_y0 varchar(128), "
    "lane_line_x1 varchar(128), lane_line_y1 varchar(128), ptz_enable integer, "
    "ptz_scene_name varchar(64), ptz_scene_id integer, ptz_pan_pos integer, ptz_tilt_pos integer, "
    "ptz_zoom integer, ptz_focus_pos integer, lane_dir varchar(64), primary key(idx, chan_no, "
    "scene_type));",
    "CREATE TABLE IF NOT EXISTS traffic_pic_merge(idx integer, chan_no integer, merge_type integer, "
    "save_type integer, two_pic_merge_type integer, three_pic_merge_type integer, "
    "four_pic_merge_type integer, five_pic_merge_type integer, six_pic_merge_type integer, "
    "quality_type integer, picture_quality integer, picture_size integer, "
    "vehicle_picture_quality integer, primary key(idx, chan_no, merge_type));",
    "CREATE TABLE IF NOT EXISTS traffic_overlap_cfg(idx integer, chan_no integer, "
    "overlap_type integer, is_overlap integer, items_stlye integer, "
    "start_pos_top_permillage integer, start_pos_left_permillage integer, char_size integer, "
    "fore_clor_RGB integer, back_clor_RGB integer, char_interval integer, line_interval integer, "
    "text_content_index varchar(128), primary key(idx, chan_no, overlap_type));",
    "CREATE TABLE IF NOT EXISTS traffic_mointor_point(idx integer, chan_no integer, "
    "mointor_point_type integer, camera_no varchar(32), direction_no integer, "
    "monitor_point_no integer, monitor_info1 varchar(64), monitor_info2 varchar(64), "
    "monitor_info3 varchar(64), monitor_direction varchar(64), monitor_pointno_info varchar(64), "
    "primary key(idx, chan_no, mointor_point_type));",
    "CREATE TABLE IF NOT EXISTS mega_dsp_cfg(chn_index integer primary key, enable_mega_dsp integer, "
    "mega_dsp_magic integer, stream_pack_type varchar(128), audio_enc_type integer, "
    "voice_talk_type integer, need_ps_sys_header integer, test_stream_pack_type varchar(128));",
    "CREATE TABLE IF NOT EXISTS sec_lock_auth_db_info(idx integer primary key, lockcount integer, "
    "locktype integer, lockipcount integer, locktime integer, minpwdlen integer, maxpwdlen integer, "
    "complexity integer, db_enc_version integer);",
    "CREATE TABLE IF NOT EXISTS sec_user_mana_info(idx integer primary key, username verchar(128), "
    "passwd verchar(64), ipv4_addr unsigned int, ipv6_addr verchar(64), mac_addr verchar(64), "
    "permission int, priority int, user_level int, user_num int, "
    "preview_permision unsigned long long, playback_permision unsigned long long, "
    "record_permision unsigned long long, ptzctrl_permision unsigned long long);",
    "CREATE TABLE IF NOT EXISTS lf_track_cfg(idx integer, lf_track_no integer, "
    "ip_address varchar(128), user_name varchar(64), pass_word varchar(32), port integer, "
    "login integer, addressing_format_type integer, calibrate_type integer, is_calibrated integer, "
    "valid_calibrate_num integer, track_enable integer, track_mode integer, track_time integer, "
    "primary key(idx, lf_track_no));",
    "CREATE TABLE IF NOT EXISTS lf_calibrate_info(idx integer, lf_track_no integer, "
    "lf_coordinate_no integer, x integer, y integer, pan_pos integer, tilt_pos integer, "
    "zoom_pos integer, primary key(lf_track_no, lf_coordinate_no));",
    "CREATE TABLE IF NOT EXISTS edu_serial_config_table(idx integer, chn_no integer, "
    "serial_type integer, baudrateIdx integer, databits integer, stopbits integer, parity integer, "
    "flowcontrol integer, rs232_mode integer, rs232_address integer, primary key(idx, chn_no, "
    "serial_type));",
    "CREATE TABLE IF NOT EXISTS vehicle_traffic_detect_cfg(idx integer, chan_no integer, "
    "detect_type integer, b_enable integer, handle_type integer, alarm_out_triggered integer, "
    "scene_id varchar(1024), primary key(idx, chan_no, detect_type));",
    "CREATE TABLE IF NOT EXISTS vehicle_scene_cfg(idx integer, chan_no integer, scene_type integer, "
    "b_init integer, draw_rule integer, default_chn varchar(8), total_lane_num integer, "
    "recog_frame_num integer, bright_value integer, lane_num integer, locate_num integer, "
    "plate_osd integer, b_send_jpeg1 integer, b_send_jpeg2 integer, vehicle_logo_recog integer, "
    "designed_plate_width integer, recog_mode integer, time_limit integer, layered integer, "
    "frame_num integer, use_init_rect integer, pr_area_mode integer, u_region varchar(256), "
    "province integer, vep_lane_num integer, lane_line_x0 varchar(128), lane_line_y0 varchar(128), "
    "lane_line_x1 varchar(128), lane_line_y1 varchar(128), ptz_enable integer, "
    "ptz_scene_name varchar(64), ptz_scene_id integer, ptz_pan_pos integer, ptz_tilt_pos integer, "
    "ptz_zoom integer, ptz_focus_pos integer, lane_dir varchar(64), primary key(idx, chan_no, "
    "scene_type));",
    "CREATE TABLE IF NOT EXISTS vehicle_pic_merge(idx integer, chan_no integer, merge_type integer, "
    "save_type integer, two_pic_merge_type integer, three_pic_merge_type integer, "
    "four_pic_merge_type integer, five_pic_merge_type integer, six_pic_merge_type integer, "
    "quality_type integer, picture_quality integer, picture_size integer, "
    "vehicle_picture_quality integer, primary key(idx, chan_no, merge_type));",
    "CREATE TABLE IF NOT EXISTS vehicle_overlap_cfg(idx integer, chan_no integer, "
    "overlap_type integer, is_overlap integer, items_stlye integer, "
    "start_pos_top_permillage integer, start_pos_left_permillage integer, char_size integer, "
    "fore_clor_RGB integer, back_clor_RGB integer, char_interval integer, line_interval integer, "
    "text_content_index varchar(128), primary key(idx, chan_no, overlap_type));",
    "CREATE TABLE IF NOT EXISTS vehicle_mointor_point(idx integer, chan_no integer, "
    "mointor_point_type integer, camera_no varchar(32), direction_no integer, "
    "monitor_point_no integer, monitor_info1 varchar(64), monitor_info2 varchar(64), "
    "monitor_info3 varchar(64), monitor_direction varchar(64), monitor_pointno_info varchar(64), "
    "primary key(idx, chan_no, mointor_point_type));",
    "CREATE TABLE IF NOT EXISTS onvif_adsecurity_key(idx int primary key, rsakey_id int, "
    "hasprivatekey int, externally_gen int, rsakey_status int, ref_counter int, "
    "rsakeyalias varchar(64));",
    "CREATE TABLE IF NOT EXISTS onvif_adsecurity_cert(idx int primary key, cert_id int, "
    "rsakey_id int, ref_counter int, certalias varchar(64));",
    "CREATE TABLE IF NOT EXISTS onvif_adsecurity_certpath(idx int primary key, certpath_id int, "
    "ref_counter int, certid_str varchar(64), certpathalias varchar(64));",
    "CREATE TABLE IF NOT EXISTS onvif_adsecurity_tlsserver(idx int primary key, certpath_id int);",
    "CREATE TABLE IF NOT EXISTS onvif_adsecurity_passphrase(idx int primary key, passphrase_id int, "
    "passphrasealias varchar(64), passphrasecontent varchar(64));",
    "CREATE TABLE IF NOT EXISTS gis_centralized_control_cfg_table(idx interger primary key, "
    "ctrl_mode interger, timeout interger);",
    "CREATE TABLE IF NOT EXISTS vandal_proof_alarm_cfg_table(idx interger primary key, "
    "sensitivity integer, handleType integer, benable integer, trigger_record_chan integer, "
    "alarmOutTriggered integer, email_capture_triggered integer, capture_triggered integer);",
    "CREATE TABLE IF NOT EXISTS display_electronic_compass_table(idx interger primary key, "
    "displayElectronicCompass interger);",
    "CREATE TABLE IF NOT EXISTS im_mointor_point(idx integer primary key, camera_no varchar(32), "
    "direction_no integer, monitor_point_no integer, monitor_info1 varchar(64), "
    "monitor_info2 varchar(64), monitor_info3 varchar(64), monitor_direction varchar(64), "
    "monitor_pointno_info varchar(64));",
    "CREATE TABLE IF NOT EXISTS im_pic_merge(idx integer primary key, save_type integer, "
    "two_pic_merge_type integer, three_pic_merge_type integer, four_pic_merge_type integer, "
    "five_pic_merge_type integer, six_pic_merge_type integer, quality_type integer, "
    "picture_quality integer, picture_size integer, vehicle_picture_quality integer);",
    "CREATE TABLE IF NOT EXISTS im_alg_cfg(idx integer primary key, default_chn varchar(32), "
    "scene_model integer, is_night_light_on integer, camera_height integer, "
    "pic_add_target_info integer, pic_add_rule_info integer, video_add_target_info integer, "
    "video_add_rule_info integer, parking_threshold integer, is_in_tunel integer, "
    "obj_detect integer, bg_update_rate integer, bg_change_ratio integer, obj_generate_rate integer, "
    "time_switch_threshold integer, light_bright integer, vsd_detect_sensitiviness integer, "
    "evidence_picture_ratio integer, night_dis_down integer, night_dis_up integer, "
    "track_time integer, track_tilt_limited integer);",
    "CREATE TABLE IF NOT EXISTS im_char_overlap(idx integer primary key, is_overlap integer, "
    "items_stlye integer, start_pos_top_permillage integer, start_pos_left_permillage integer, "
    "char_size integer, fore_clor_RGB integer, back_clor_RGB integer, char_interval integer, "
    "line_interval integer, text_content_index varchar(128));",
    "CREATE TABLE IF NOT EXISTS im_its_cap_param(idx integer primary key, car_rect_x integer, "
    "car_rect_y integer, car_rect_width integer, car_rect_height integer, is_plate_rec integer, "
    "img_num integer, snap_one_timeout integer, tsk_time_out integer, plate_match_ratio integer, "
    "image_interval varchar(64), image_type varchar(64));",
    "CREATE TABLE IF NOT EXISTS im_polygon(idx integer, process_type integer, by_enable integer, "
    "point_num integer, x_coords varchar(128), y_coords varchar(128), chan_no integer, "
    "scene_no integer, rule_no integer, primary key(idx, process_type, chan_no, scene_no, rule_no));",
    "CREATE TABLE IF NOT EXISTS im_its_preset_scene(chan_no integer, scene_no integer, "
    "enale integer, direction_no integer, scene_name varchar(32), is_ivt_enable integer, "
    "is_plate_rec integer, is_event_det_enable integer, plate_filter_time integer, "
    "snap_one_timeout integer, task_time_out integer, plate_match_ratio integer, P integer, "
    "T integer, Z integer, F integer, reference_num integer, shield_num integer, world_width real, "
    "world_length real, image_pt_x varchar(32), image_pt_y varchar(32), lane_point_x0 integer, "
    "lane_point_y0 integer, lane_point_x1 integer, lane_point_y1 integer, lane_num integer, "
    "rule_num integer, start_point_x varchar(64), start_point_y varchar(64), "
    "end_point_x varchar(64), end_point_y varchar(64), primary key(chan_no, scene_no));",
    "CREATE TABLE IF NOT EXISTS im_its_preset_rule(chan_no integer, scene_no integer, "
    "rule_no integer, id integer, enable integer, voice_trigger_enable integer, rule_type integer, "
    "aid_type varchar(64), line_aid_type varchar(64), size_filter_enable integer, "
    "size_filter_mode integer, min_rect_x integer, min_rect_y integer, min_rect_width integer, "
    "min_rect_height integer, max_rect_x integer, max_rect_y integer, max_rect_width integer, "
    "max_rect_height integer, parking_duration integer, pedestrian_duration integer, "
    "debris_duration integer, congestion_length integer, congestion_duration integer, "
    "inverse_duration integer, inverse_angle_tolerance integer, inverse_distance integer, "
    "imag_num integer, trun_round_angle_tolerance integer, start_point_x integer, "
    "start_point_y integer, end_point_x integer, end_point_y integer, img_interval varchar(64), "
    "img_type varchar(64), cross_lane_duration integer, cross_lane_sensitive_level integer, "
    "lane_change_sensitive_level integer, imag_evidence_num integer, "
    "region_imag_evidence_num integer, primary key(chan_no, scene_no, rule_no));",
    "CREATE TABLE IF NOT EXISTS im_scene_cruise_schedule(day integer, time_segment integer, "
    "start_time integer, stop_time integer, scene_index varchar(264), continue_time varchar(264), "
    "primary key(day, time_segment));",
    "CREATE TABLE IF NOT EXISTS im_remote_center(idx integer primary key, "
    "monitor_upload_protocal integer, monitor_addr varchar(128), monitor_port integer, "
    "fortify_addr varchar(128), upload_types varchar(264), upload_interval integer, "
    "upload_timeout integer, ftp_enable integer, ftp_addr varchar(128), ftp_port varchar(128), "
    "ftp_usr_name varchar(128), ftp_passwd varchar(64), ftp_upload_types varchar(264), "
    "event_dir_name varchar(512), break_rule_dir_name varchar(512), "
    "break_rule_pic_name varchar(512), event_picture_name varchar(512), "
    "plat_picture_name varchar(512));",
    "CREATE TABLE IF NOT EXISTS im_other_param(idx integer primary key, illegal_code integer, "
    "schedule_enable integer, voice_type varchar(64), voice_id varchar(64), "
    "reserved_int varchar(64), reserved_str varchar(256), reserved_choice varchar(64));",
    "CREATE TABLE IF NOT EXISTS im_traffic_mpr(idx integer primary key, nearbn1 integer, "
    "farbn1 integer, nearbn2 integer, farbn2 integer, enable integer, lane_num integer, "
    "lane_no1 integer, p1x1 integer, p1y1 integer, p2x1 integer, p2y1 integer, lane_type1 integer, "
    "lane_no2 integer, p1x2 integer, p1y2 integer, p2x2 integer, p2y2 integer, lane_type2 integer, "
    "lane_no3 integer, p1x3 integer, p1y3 integer, p2x3 integer, p2y3 integer, lane_type3 integer, "
    "lane_no4 integer, p1x4 integer, p1y4 integer, p2x4 integer, p2y4 integer, lane_type4 integer, "
    "p1x integer, p1y integer, p2x integer, p2y integer, lane_type integer);",
    "CREATE TABLE IF NOT EXISTS roadinfo_config(idx integer, channel integer, "
    "intersection_idx integer, roadinfo_osd_enable integer, intersection_enable interger, "
    "intersection_id integer, pan_pos integer, tilt_pos integer, zoom_pos integer, "
    "road_name_idx integer, road_name_enable integer, road_text varchar(64), primary key(idx, "
    "channel));",
    "CREATE TABLE IF NOT EXISTS softap_param(idx integer primary key, ssid verchar(128), "
    "softap_enable integer, broadcast_enable integer, max_num_sta integer, security integer, "
    "softap_ipv4_addr integer, softap_ipv6_addr verchar(64), softap_ipv4_mask integer, "
    "softap_ipv6_mask verchar(64), dhcp_enable integer, dhcp_start_ipv4 integer, "
    "dhcp_start_ipv6 verchar(64), dhcp_end_ipv4 integer, dhcp_end_ipv6 verchar(64), "
    "dns1_ipv4 integer, dns1_ipv6 verchar(64), dns2_ipv4 integer, dns2_ipv6 verchar(64), "
    "gateway_ipv4 integer, gateway_ipv6 verchar(64), encrypt integer, wpa_passphrase verchar(256));",
    "CREATE TABLE IF NOT EXISTS alg_ext_param(idx integer primary key, bNeedTrackFeturePic integer, "
    "trackFeturePicZoomVal integer, trackFeturePicZoomPixs integer, picClearThreshold integer, "
    "advanceParamNum integer, indexs varchar(64), keyvals varchar(64), b_cruise_adapt integer, "
    "cruise_adapt_time integer);",
    "CREATE TABLE IF NOT EXISTS people_detection_cfg(idx integer, chan_no integer, b_enable integer, "
    "interval integer, handle_type integer, alarm_out_triggered integer, "
    "email_capture_triggered integer, capture_triggered integer, pan_pos integer, tilt_pos integer, "
    "zoom_pos integer, focus_pos integer, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS voice_change_cfg(idx integer, chan_no integer, b_enable integer, "
    "voice_change_level integer, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS led_light_cfg(idx integer primary key, enable integer, mode integer, "
    "lowbeam_brightness integer, hightbeam_brightness integer, start_hour integer, "
    "start_minute integer, start_second integer, stop_hour integer, stop_minute integer, "
    "stop_second integer, filter_time integer);",
    "CREATE TABLE IF NOT EXISTS active_mcast_param(idx integer primary key, "
    "mcastaddr_main_ipv4 unsigned int, mcastaddr_main_ipv6 verchar(64), mcastport_main int, "
    "mcastmode_main int);",
    "CREATE TABLE IF NOT EXISTS private_info_cfg(idx integer primary key, b_enable integer, "
    "address varchar(64), address_type integer, private_port integer, interval integer, "
    "server_type integer, encrypt_enable integer, algorithm_type integer, secret_key_len integer, "
    "secret_key varchar(512), index_code varchar(128));",
    "CREATE TABLE IF NOT EXISTS rs485_led_config(idx integer primary key, rs485_led_enable integer, "
    "display_osd_enable integer, auto_syn_time integer, osd_position_x integer, "
    "osd_position_y integer, timing_type integer);",
    "CREATE TABLE IF NOT EXISTS panoram_param_config(idx integer, chan_no integer, "
    "panoram_mode integer, panoram_angle_range integer, panoram_width integer, "
    "panoram_Height integer, original_width integer, original_height integer, t_angle real, "
    "h_fov real, w_fov real, primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS revise_gps_param_config(idx integer primary key, revise_enable int, "
    "longitude_degree int, longitude_minute int, longitude_second float, latitude_degree int, "
    "latitude_minute int, latitude_second float, revise_mode int);",
    "CREATE TABLE IF NOT EXISTS wifi_mode_config(idx interger primary key, cur_wifi_mode int);",
    "CREATE TABLE IF NOT EXISTS exception_list_comm(exception_type integer primary key, "
    "handle_type integer, alarm_out_triggered integer, email_capture_triggered integer, "
    "capture_triggered integer);",
    "CREATE TABLE IF NOT EXISTS timesegment_comm_info(type integer primary key, "
    "begin_end_time varchar(1024));",
    "CREATE TABLE IF NOT EXISTS sd_card_lock_config(idx integer primary key, lock_operation integer, "
    "password varchar(256));",
    "CREATE TABLE IF NOT EXISTS revise_compass(idx integer primary key, revise_mode integer, "
    "position_pan integer);",
    "CREATE TABLE IF NOT EXISTS intelligent_colour_config(chan_no int, scene_no int, rule_no int, "
    "rule_colour_no int, pic_enable int, pic_type int, pic_width int, pic_height int, pic_len int, "
    "x int, y int, width int, height int, primary key(chan_no, scene_no, rule_no, rule_colour_no));",
    "CREATE TABLE IF NOT EXISTS stream_encrypt_cfg(idx integer primary key, "
    "stream_encrypt_enable integer);",
    "CREATE TABLE IF NOT EXISTS intelli_scene_basic_config(chan_no integer primary key, "
    "scene_total_num integer, scene_num integer, current_scene integer);",
    "CREATE TABLE IF NOT EXISTS intelli_scene_config(chan_no integer, sceneName varchar(64), "
    "scene_id integer, enable integer, ruleEnable integer, rule_num integer, pan_pos integer, "
    "tilt_pos integer, zoom_pos integer, focus_pos integer, primary key(chan_no, scene_id));",
    "CREATE TABLE IF NOT EXISTS intelli_rule_config(chan_no integer, scene_id integer, "
    "rule_name verchar(64), rule_id integer, enable integer, rule_type integer, target_type integer, "
    "event_type integer, update_rule integer, sensitivity integer, size_filter_enable integer, "
    "size_filter_mode integer, size_filter_min_x integer, size_filter_min_y integer, "
    "size_filter_min_w integer, size_filter_min_h integer, size_filter_max_x integer, "
    "size_filter_max_y integer, size_filter_max_w integer, size_filter_max_h integer, "
    "handleType integer, alarmOutTriggered integer, email_capture_triggered integer, "
    "capture_triggered integer, triggerRecChan varchar(128), primary key(chan_no, scene_id, "
    "rule_id));",
    "CREATE TABLE IF NOT EXISTS intelli_rule_param_sets(chan_no integer, scene_id integer, "
    "rule_id integer, type integer, cross_direction integer, detection_mode integer, "
    "time_duration integer, primary key(chan_no, scene_id, rule_id, type));",
    "CREATE TABLE IF NOT EXISTS intelli_timesegment_info(chan_no integer, scene_id integer, "
    "rule_id integer, begin_end_time varchar(1024), primary key(chan_no, scene_id, rule_id));",
    "CREATE TABLE IF NOT EXISTS intelli_polygon_info(chan_no integer, scene_id integer, "
    "rule_id integer, point_num integer, x varchar(128), y varchar(128), primary key(chan_no, "
    "scene_id, rule_id));",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_devresource_cfg(idx integer primary key, "
    "devResource integer);",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_mode_cfg(idx integer primary key, enable integer, "
    "mode integer);",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_ipsparamvalue_cfg(idx integer primary key, "
    "chan_no integer, ipsParamValue integer);",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_witness_area_cfg(idx integer primary key, "
    "chan_no integer, enable integer, time_threshold integer, mosaic_enable integer, "
    "pan_pos integer, tilt_pos integer, zoom_pos integer, focus_pos integer);",
    "CREATE TABLE IF NOT EXISTS intelligent_dome_witness_area_polygon(idx integer, chan_no integer, "
    "point_num integer, x_coords varchar(128), y_coords varchar(128), primary key(idx, chan_no));",
    "CREATE TABLE IF NOT EXISTS multi_ccd_config(idx integer primary key, b_enable_preset integer, "
    "b_timer_switch integer);",
    "CREATE TABLE IF NOT EXISTS multi_ccd_time_switch_config(idx integer primary key, "
    "b_timer_seg integer, switch_scene integer, startTime integer, stopTime integer);",
    "CREATE TABLE IF NOT EXISTS multi_ccd_preset_switch_param_config(idx integer primary key, "
    "b_link integer, link_preset_index integer, b_timer_seg integer, switch_scene integer, "
    "startTime integer, stopTime integer);",
    "CREATE TABLE IF NOT EXISTS multi_ccd_demo_ccdpara_config(idx integer primary key, mode integer, "
    "brightnessLevel integer, contrastLevel integer, sharpnessLevel integer, "
    "saturationLevel integer, whiteBalanceMode integer, whiteBalanceModeRGain integer, "
    "whiteBalanceModeBGain integer, WDREnabled integer, WDRLevel1 integer, "
    "dayNightFilterType integer, beginTime integer, endTime integer, beginTimeMin integer, "
    "beginTimeSec integer, endTimeMin integer, endTimeSec integer, nightToDayFilterLevel integer, "
    "dayNightFilterTime integer, BacklightMode integer, DigitalNoiseRemoveEnable integer, "
    "DigitalNoiseRemoveLevel integer, SpectralLevel integer, TemporalLevel integer, "
    "DehazeMode integer, dehaze_level integer, smartIR integer, lightInhibitionEnable integer, "
    "low_light_limit integer, low_light_limit_level integer, focus_mode integer, "
    "min_focus_distance integer, zoom_speed_level integer, exposure_mode_set integer, "
    "shutter_set integer, ir_control_mode integer, ir_brightness_limit integer, iris_set integer, "
    "ipdome_gain_set integer, gain_limit integer, image_stabilization_mode integer, "
    "laser_control_mode integer, laser_brightness_limit integer, iris_max_limit integer, "
    "iris_min_limit integer, shutter_max_limit integer, shutter_min_limit integer, "
    "whitelight_mode integer, whitelight_brightness_limit integer, whitelight_begintime integer, "
    "whitelight_endtime integer);",
    "CREATE TABLE IF NOT EXISTS traffic_illegal_dictionary(idx integer primary key, "
    "illegal_code integer, illegal_name verchar(32));",
    "CREATE TABLE IF NOT EXISTS traffic_overlap_info(idx integer primary key, "
    "overlay_text verchar(32), item_enable integer, item_type integer, changeline_num integer, "
    "space_num integer);",
    "CREATE TABLE IF NOT EXISTS open_platformat_app_param_config(idx integer primary key, "
    "packagename varchar(256), appname varchar(128), shellfile varchar(128), appid varchar(64), "
    "menuname varchar(128), linkPath varchar(256), version varchar(128), vendor varchar(128), "
    "package_path varchar(256), run_status integer, app_type integer, licence_installed integer);",
    "CREATE TABLE IF NOT EXISTS push_org_preview_server_config(idx integer primary key, "
    "addFormat integer, hostName varchar(64), ipv4addr integer, ipv6addr varchar(64), "
    "portNum integer);",
};

static_assert(std::size(kCreateList) == 250);

}  // namespace

std::span<const char* const> create_list() {
    return kCreateList;
}
