// The shared configuration record DEVICECONFIG.
//
// Members carry the names of the database columns they back; a comment names the
// table and, for a schedule, its process_type in week_config_list.  Key columns
// (idx, chan_no, ...) are array positions and have no member.  Loop bounds come
// from std::size of the arrays here.
//
// Widths: an unsigned value is uint32_t, a 64-bit mask uint64_t, any other number
// int32_t unless the main application holds it narrower or a fixed block leaves no
// room for one.  Everything has the same size and alignment on x86-64 and on 32-bit
// ARM; the static_asserts at the end hold the offsets that other programs rely on.
#ifndef DEVICE_CONFIG_H
#define DEVICE_CONFIG_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

inline constexpr int kMaxChannels = 1;  // the build's channel maximum
inline constexpr int kMaxSensors = 1;
inline constexpr int kMaxStreams = 8;  // per channel
inline constexpr int kMaxAlarms = 16;  // alarm inputs, and alarm outputs
inline constexpr int kVmChains = 16;   // event sources of the vm_ tables

// ---------------------------------------------------------------- schedules

struct PlainSegment {
    uint32_t begin, end;
};

struct PlainSchedule {
    PlainSegment segment[7][8];
};

struct VehicleSegment {
    uint32_t begin, end;
    uint8_t scene_id;  // low byte of the word week_config_list leaves out
    uint8_t reserved[3];
};

struct VehicleSchedule {
    VehicleSegment segment[7][8];
};

struct RecordDay {
    uint16_t whole_day;
    uint8_t whole_day_type;
    uint8_t reserved;
};

struct RecordSegment {
    int32_t begin;
    uint32_t end;
    uint8_t record_type;
    uint8_t reserved[3];
};

struct RecordSchedule {
    RecordDay day[7];
    RecordSegment segment[7][8];
};

struct WholeDaySchedule {  // timed capture, intelligent tracking
    PlainSegment segment[7][8];
    uint8_t whole_day[7];
    uint8_t reserved;
};

struct ExceptionEntry {  // exception_list, exception_list_comm
    uint32_t handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered;
};

// --------------------------------------------- device, channel, encoding, users

struct DevInfo {  // dev_info
    int32_t dev_id;
    char dev_name[32];
    int32_t dev_type, language, magic_num, para_len, para_version, check_sum;
};

struct HwConfig {  // dev_hwconfig_info
    int32_t arm_status, lens_focus_step, lens_zoom_step, aging_mode, aging_time, streamsend_enable;
};

struct DeviceSection {
    DevInfo dev_info;
    HwConfig hwconfig[kMaxSensors];
    uint8_t reserved[136];
};

struct LogoRecord {  // one group of chn_info.logo_param
    uint8_t byte_value[2];
    uint8_t reserved[6];
    uint16_t word_value[4];
};

struct ChannelBlock {  // chn_info
    char name[32];
    uint8_t osd_attr, enable_date, hour_osd_type, osd_type;
    uint8_t week_disp_enable, name_enable, osd_color_type, byalignment;
    uint8_t osd_size[8];
    uint8_t battery_osd_enable;
    uint8_t reserved[3];
    uint16_t battery_osd_position_x, battery_osd_position_y;
    uint16_t reserved_position[4];  // four values that no table stores
    LogoRecord logo_param[4];
    uint8_t rgb_red, rgb_green, rgb_blue;
    uint8_t reserved_end;
};

struct StreamConfig {  // chn_comp_info
    int32_t video_enc_type, stream_type, resolution, bps_type;
    uint32_t bitrate, framerate;
    int32_t iframe_inter, bframe_num, eframe_num, quality, enc_complexity, pack_type;
    uint32_t rtp_package_len;
    int32_t line_encode, audio_enc_type, enable_svc, audio_bitrate, qp_offset, audio_samplerate;
    int32_t is_smart_h264_enable, average_code_rate;
    uint32_t smooth_preview_value;
};

struct AudioParam {  // audio_param_info
    int32_t vt_type, audio_in_type, audio_gain, b_audio_denoise, speak_volume;
};

struct CoordinatePoint {
    int32_t xcoordinate, ycoordinate;
};

struct CoordinateRect {
    int32_t xcoordinate, ycoordinate, width, height;
};

struct CoordinateDiagonal {
    int32_t xcoordinate, ycoordinate, diagonal_x, diagonal_y;
};

struct CoordinateRegions {        // coordinate_region_list
    CoordinatePoint point[2];     // rows 1 and 2
    CoordinateRect rect[5];       // rows 5 to 9
    CoordinateDiagonal diagonal;  // row 10
};

struct RoiArea {
    int32_t enable, level, x, y, w, h;
};

struct RoiRegion {
    RoiArea area;
    char name[32];
};

struct StreamRoi {  // roi_conf_table, roi_param_table
    int32_t region_num, face_num, plate_num;
    RoiRegion region[8];  // type 1
    RoiArea face;         // type 2
    RoiArea move_track;   // type 3
    RoiArea plate[8];     // type 4
};

struct VoiceChange {  // voice_change_cfg
    uint32_t b_enable;
    int32_t voice_change_level;
};

struct UserEntry {  // user_mana_info, sec_user_mana_info
    char username[32];
    char passwd[16];
    uint32_t permission, ipv4_addr, ipv6_addr[4];
    uint32_t reserved_word;
    uint8_t mac_addr[6];
    uint8_t priority, user_level;
    uint8_t reserved[4];
    uint64_t preview_permision, record_permision, playback_permision, ptzctrl_permision;
};

struct EncodingSection {
    uint32_t ps_send_pack_len[kMaxChannels];  // chn_info
    StreamConfig stream[kMaxChannels][kMaxStreams];
    AudioParam audio_param;
    CoordinateRegions coordinate_region[kMaxChannels];
    StreamRoi roi[kMaxChannels][kMaxStreams];
    VoiceChange voice_change;
};

struct UserSection {
    UserEntry user[32];      // user_mana_info
    UserEntry sec_user[32];  // sec_user_mana_info
};

// --------------------------------------------------------------- image front end

struct SensorWdr {  // wdr_config_table
    int16_t enable, level_one, level_two, contrast_level;
};

struct SensorGamma {  // gamma_config_table
    int16_t enable, level;
};

struct SensorBlock {  // all per-sensor tables; 220 bytes leave most values 16 bits
    // front_param_config
    uint8_t brightness_lv, contrast_lv, sharpness_lv, saturation_lv;
    int32_t maxgainvalue;
    uint8_t hue_lv, gain_lv;
    // front_other_config, and the video standard
    uint8_t local_output, powerline;
    uint8_t video_standard;
    uint8_t mirror;
    // front_param_config
    uint8_t auto_contrast_mode, auto_contrast_level;
    // front_other_config
    int16_t mirror_ctrl, scene_mode, black_pwl, color_range, digital_zoom, eptz, dehaze_mode;
    int16_t light_inhibition_enable, light_inhibition_level, lowluminance_enhance;
    int16_t bcorridor_mode, dehaze_level, image_stabilization_mode, capture_mode, capture_mode_enable;
    int16_t sdi_local_output_enable, local_output_hd, lens_distort_correction_enable;
    int32_t zoom_min_limit, zoom_max_limit;
    uint32_t ae_region, af_region;
    SensorWdr wdr;
    SensorGamma gamma;
    // blc_config_table
    int16_t blc_mode, blc_level;
    int32_t area_index, pos_x0, pos_y0, pos_x1, pos_y1;
    // wb_config_table
    int16_t wb_mode, wb_gain_r, wb_gain_b, awb_rgain, awb_ggain, awb_bgain;
    // dnr_config_table
    int16_t dnr_mode, dnr_level, spectral_level, temporal_level;
    // dnf_config_table
    int16_t dnf_mode, daytonight_level, nighttoday_level, filter_time, schedule_enabled;
    int16_t begin_time, end_time, begintime_min, begintime_sec, endtime_min, endtime_sec;
    int16_t smart_ir, alarmtrigstate, smart_ir_mode, smart_ir_distance;
    int16_t smart_ir_short_distance, smart_ir_long_distance;
    // lens_exposure_table
    int16_t exposure_mode, iris_mode, auto_aperture_level, piris_mode;
    // trermal_image_table
    int16_t filter_switch, palette_mode, dimmer_mode, enhanced_mode, focus_speed;
    int32_t auto_compensation_interval;
    // lens_exposure_table
    int32_t exposure_target, exposure_userset, exposure_set, piris_aperture;
    // front_param_config
    uint8_t grayscale;
    uint8_t reserved[23];
};

struct IspTime {  // isp_time_config
    int32_t work_type, start_hour, start_minute, start_second, stop_hour, stop_minute, stop_second;
};

struct IspParam {  // isp_day_param_config, isp_night_param_config
    int32_t brightness, contrast, sharp, gain, gray;
    int32_t WB_mode, WB_Rgain, WB_Bgain, awb_Rgain, awb_Ggain, awb_Bgain;
    int32_t image_stabilization_mode, image_stabilization_level, exposureuserset, exposureset;
    int32_t digital_noise_enable, digital_noise_level, spectral_level, temporal_level;
    int32_t WDR_enable, WDR_level1, WDR_level2, WDR_cantrast_level;
    int32_t light_inhibition_enable, light_inhibition_level, BL_mode, BL_level;
    int32_t positionx0, positiony0, positionx1, positiony1;
    int32_t dehaze_mode, dehaze_level, saturationLevel;
};

struct Binocular {  // binocular_cfg
    int32_t video_type, enable, calibration_type;
    uint32_t camera_height, pitch_angle, incline_angle, human_height;
    int32_t x_coords[5], y_coords[5];
};

struct FisheyeParam {  // fisheye_param_cfg, one row
    int32_t mount_mode;
    int32_t pix_x[16], pix_y[16], zoom[16];
};

struct ThermalFront {  // thermal_front_param
    int32_t ffcmode;
    uint32_t ffctime, ffctemp;
    int32_t ddemode, ddealgorithm;
    uint32_t ddelevel;
    int32_t agcmode, dzoom;
};

struct AreaTailor {  // area_tailor_cfg
    int32_t is_avaliable;
    uint32_t chan_id, stream_id, x, y, w, h;
    int32_t region_wh[2], region_xy[2];
};

struct LedLight {  // led_light_cfg
    int32_t enable, mode, lowbeam_brightness, hightbeam_brightness;
    int32_t start_hour, start_minute, start_second, stop_hour, stop_minute, stop_second;
    uint32_t filter_time;
};

struct ImageSection {
    IspTime isp_time;
    IspParam isp_day, isp_night;
    int32_t infrared_remote_ctrl_address;  // infrared_remote_ctrl
    Binocular binocular;
    FisheyeParam fisheye[16];
    ThermalFront thermal_front[kMaxChannels];
    AreaTailor area_tailor;
    LedLight led_light;
};

// ----------------------------------------------------------- network and services

struct NetConfig {  // netconfig_table
    int32_t mtu;
    uint8_t mac_addr[6];
    uint8_t media_type, eth0_dhcp_enable, ipv6_mode, multi_discover_mode;
    uint8_t wifi_mac[6];
    int32_t dhcp_enable, auto_dns_enable, wifi_enable;
    char ssid[32];
    int32_t mana_mode, security, nic_mode;
};

struct WepEncrypt {  // wep_encrypt_info
    uint32_t key_index, key_len, key_type, auth_mode;
};

struct IpAddrEntry {  // ipaddr_list, one row
    uint32_t ipv4addr, ipv6addr[4], ipv4mask, ipv6mask[4];
    uint16_t ipport;
    uint16_t reserved;
};

struct LocalPort {  // local_port_list, local_port_list_ext
    uint16_t start_port, end_port;
};

struct Pppoe {  // pppoe_config_info
    char username[32];
    char passwd[16];
    int32_t enable;
};

struct NetworkSection {  // exactly what the start-up salvage keeps
    NetConfig netconfig;
    WepEncrypt wep_encrypt;
    char wep_key[4][33];  // wep_key_list
    IpAddrEntry ipaddr[16];
    LocalPort local_port[5];  // index port_type - 1
    Pppoe pppoe;
};

struct NetHd {  // net_hd_config
    char nas_server_addr[128];
    char directory[256];
    int32_t mount_nfs, disk_type, iscsi_port;
};

struct Email {  // email_config_info
    char user_name[32];
    char passwd[32];
    int32_t attachment, server_verify, mail_interval, ssl_verify, enabled;
    char subject[64];
    int32_t verify_type;
};

struct EmailAddr {  // email_addr_list
    char name[32];
    char addr[64];
};

struct Qos {  // qos_config_info
    int32_t manage_dscp, alarm_dscp, video_dscp, audio_dscp, flag, enable;
};

struct Snmp {  // snmp_config_info
    int32_t enable_snmpv1, enable_snmpv2c, enable_snmpv3;
    char read_community[64], write_community[64], trap_community[64];
};

struct SnmpV3User {  // snmp_v3user_info
    int32_t user_type;
    char user_name[64], auth_passwd[32], priv_passwd[32];
    int32_t auth_algorithm, priv_algorithm, security_level;
};

struct Ieee8021x {  // ieee_8021x_info
    char eap_identity[32];
    char password[16];
    int32_t enable_wpa, eapol_version, eap_type;
};

struct Ntp {  // ntp_config_info
    int32_t enable_ntp, interval, timediff_hour, timediff_min;
    uint32_t satellite_interval;
};

struct Ppp {  // ppp_config_info
    char phone_number[32];
    int32_t ppp_attribute;
    uint32_t remoteIpv4Addr, remoteIpv6Addr[4], localIpv4Addr, localIpv6Addr[4], localSubnetMask;
    char username[64], password[32];
    int32_t mtu;
};

struct Ddns {  // ddns_config_info
    int32_t enable_ddns, host_type;
    uint16_t port;
    uint16_t reserved;
    char username[32];
    char passwd[16];
    char domain_name[64], server_name[64];
    char res[32];
    uint32_t country_id;
};

struct FtpServer {  // ftp_serv_list
    uint32_t serv_addr_v4, serv_addr_v6[4];
    uint16_t serv_port;
    uint16_t reserved;
    char username[32];
    char passwd[16];
    int32_t dir_level, top_dir_mode, sec_dir_mode;
    char serv_add_domain[64], top_custo_dir[64], sub_custo_dir[64];
    int32_t version, protocol_type, server_type, addr_type, anony, up_ftp_enable;
    uint32_t interval_days, begin_time;
    char prefix_name[128];
    uint32_t ftp_name_type;
};

struct Dst {  // dst_config_info
    int32_t zone_index, dst_enable, zone_offset_hour, zone_offset_min, dst_offset_min;
    char dst_abbr[8], timezone_abbr[8];
};

struct DateTime {  // date_time_list
    int32_t time_type, mouth, day, hour, minute, weekno;
};

struct Weblib {  // weblib_config
    int32_t upnp_enable, zero_config_enable;
    char tz_env[64];
};

struct OnvifBase {  // onvif_base_config
    uint32_t proxy_addr_v4, proxy_addr_v6[4];
    int32_t nondiscoverable, subscribe;
    char topic_filter[128], content_filter[128];
};

struct OnvifProfile {  // onvif_profile_list
    int32_t profile_type;
    char name[32], token[32], video_source[32], audio_source[32], video_enc[32], audio_enc[32];
    char video_analysis[32], ptz[32], metadata[32], audio_output[32], audio_dec[32];
};

struct MulticastPort {  // multicast_port
    uint16_t main_video_port, main_audio_port, main_metadata_port;
    uint16_t sub_video_port, sub_audio_port, sub_metadata_port;
};

struct PsiaCgi {  // psia_cgi_config
    uint16_t dest_port, source_port;
    int32_t login_anony, ir_enable, telnet_enable, abf_disable, led_enable, defog_enable;
    int32_t suppLight_enable;
};

struct IpFilter {  // ip_filter_table
    int32_t enable_v4, filter_type_v4, enable_v6, filter_type_v6;
    uint32_t ipaddress[48];
    uint32_t ipv6address[48][4];
};

struct Upnp {  // upnp_config
    int32_t enable, portmap, type, res1;
    uint32_t router_lan_ip_v4, router_lan_ip_v6[4];
    int32_t http_portmap[3], command_portmap[3], rtsp_portmap[3];
    char friend_name[64];
};

struct OnvifScope {  // onvif_scope_list
    char uri[128];
    int32_t type;
};

struct ActiveMcast {  // active_mcast_param
    uint32_t mcastaddr_main_ipv4, mcastaddr_main_ipv6[4];
    uint16_t mcastport_main;
    uint16_t reserved;
    int32_t mcastmode_main;
};

struct ServiceSection {
    LocalPort local_port_ext[5];
    NetHd net_hd[8];
    uint8_t enable_auth;  // rtsp_config_table
    uint8_t reserved[3];
    Email email;
    EmailAddr email_addr[4];  // 0 to 2: addr_type 2, 3: addr_type 1
    Qos qos;
    Snmp snmp;
    SnmpV3User snmp_v3user[2];
    Ieee8021x ieee_8021x;
    Ntp ntp;
    Ppp ppp;
    Ddns ddns[10];
    FtpServer ftp_serv[2];
    Dst dst;
    DateTime date_time[2];
    Weblib weblib;
    OnvifBase onvif_base[kMaxChannels];
    OnvifProfile onvif_profile[10];
    OnvifScope onvif_scope[10];
    MulticastPort multicast_port[4];
    PsiaCgi psia_cgi;
    IpFilter ip_filter;
    Upnp upnp;
    int32_t rtcp_enable;        // rtcp_config
    uint32_t preview_max_link;  // max_connect_num
    ActiveMcast active_mcast;
    int32_t cur_wifi_mode;    // wifi_mode_config
    uint8_t reserved_end[4];  // EventSection follows on an 8-byte boundary
};

// ------------------------------------------------- events, alarms, record, storage

struct RecordInfo {  // record_info
    int32_t need_rec;
    uint32_t cyclic_rec, pre_rec_time;
    int32_t rec_delay_time, record_stream_type, record_passback, record_lock_duration;
    int32_t record_backup, svc_level;
    RecordSchedule schedule;  // process_type 1
};

struct MotionAnalysis {  // video_analysis_config, type_idx 1
    uint64_t rigger_rec_chn;
    int32_t enable, level, handle_type, alarm_out_triggered, display, motdect_mode;
    int32_t switch_daynight_settings;
    int32_t start_hour, start_minute, start_second, stop_hour, stop_minute, stop_second;
    int32_t email_capture_triggered, capture_triggered;
    PlainSchedule schedule;  // process_type 4
    uint8_t reserved[4];
};

struct HideAnalysis {  // video_analysis_config, type_idx 2
    int32_t enable, level, handle_type, alarm_out_triggered, email_capture_triggered;
    int32_t capture_triggered;
    PlainSchedule schedule;  // process_type 5
};

struct VideoAnalysis {
    MotionAnalysis type1;
    HideAnalysis type2;
    int32_t type3_enable;  // video_analysis_config, type_idx 3
    uint8_t reserved[4];
};

struct AlarmOut {  // alarm_out_config
    char name[64];
    int32_t delay_time;
    PlainSchedule schedule;  // process_type 3
};

struct AlarmIn {  // alarm_in_config
    char name[64];
    int32_t alarm_type, deal_needed, handle_type;
    char rigger_rec_chn[128];
    int32_t alarm_out_triggered;
    uint8_t ptztrack_enabled[16], ptzcruise_enabled[16], ptzpreset_enabled[16];
    int32_t email_capture_triggered, capture_triggered;
    PlainSchedule schedule;  // process_type 2
};

struct AutoCapture {  // auto_capture_config
    int32_t name_delimiter;
    uint32_t trigger_times[8];
    int32_t event_interval, event_cap_mode, evnt_cap_num, evnt_pic_size, evnt_pic_quality;
    int32_t time_interval, time_pic_size, time_pic_quality;
    int32_t save_sd_enable, cap_time_enable, up_ftp_enable;
    uint32_t stream_id;
    WholeDaySchedule schedule;  // process_type 18
};

struct ImageNaming {  // image_naming_list
    uint8_t item_order[15];
};

struct WebMotionRegion {  // weblib_motdetect_info, one region
    uint8_t enable, sensitivity_level, mask_enabled, existed;
    uint16_t x0, y0, x1, y1, x2, y2, x3, y3;
};

struct RemoteCtrl {  // remote_ctrl_list
    int32_t arming_delay, remote_ctrl_cnt;
    int32_t remote_ctrl[8][4];
};

struct SensorAlarm {  // wireless_alarm_param, pir_alarm_param, callhelp_alarm_param
    char name[32];    // wirelessalarm_name, piralarm_name, callhelp_name
    int32_t benable;  // benable_wirelessalarm, benable_piralarm, benable_callhelp
    int32_t handleType, alarmOutTriggered;
    int32_t recordchan_triggered[16];
};

struct DiskQuota {  // disk_quota_list
    uint64_t content;
    int32_t b_enable, quota_type, channel_ratio;
    uint8_t reserved[4];
};

struct AudioDetect {  // audio_detect_param
    int32_t enable, level;
    uint32_t handletype, alarmouttriggered, recordchan_triggered;
    PlainSchedule schedule;  // process_type 10
};

struct VideoLoss {  // vilost_param_table
    int32_t enablealarm, alarmouttriggered, handletype, capture_triggered;
    PlainSchedule schedule;  // process_type 9
};

struct IoOut {  // io_out_cfg
    int32_t io_work_mode, io_default_state, io_work_state, led_freq_multi, led_duty_ratio;
    int32_t flashlight_enable, start_hour, start_min, stop_hour, stop_min;
    int32_t power_sync_enble, power_sync_rang;
};

struct NasIdentification {  // nas_identification
    char directory[256];
    int32_t mount_nfs;
    char username[32];
    char password[16];
    char nas_server_addr[128];
    int32_t disk_type, iscsi_port;
};

struct LightStorage {  // light_storage_cfg
    int32_t enable;
    uint32_t sdcard_time;
    int32_t sensitivity;
};

struct VandalProof {  // vandal_proof_alarm_cfg_table
    uint64_t trigger_record_chan;
    uint32_t sensitivity, handleType, benable, alarmOutTriggered;
    uint32_t email_capture_triggered, capture_triggered;
    PlainSchedule schedule;  // process_type 35
};

struct SdCard {
    ExceptionEntry exception;  // exception_list_comm
    PlainSchedule schedule;    // timesegment_comm_info
    int32_t lock_operation;    // sd_card_lock_config
    char password[32];         // sd_card_lock_config
};

struct EventSection {
    VideoAnalysis video_analysis[kMaxChannels];
    DiskQuota disk_quota[kMaxChannels][2];
    VandalProof vandal_proof[kMaxChannels];
    RecordInfo record[kMaxChannels];
    int32_t motion_grid[kMaxChannels][64][3];  // motion_detect_list
    AlarmOut alarm_out[kMaxAlarms];
    AlarmIn alarm_in[kMaxAlarms];
    ExceptionEntry exception[16];  // exception_list
    AutoCapture auto_capture[kMaxChannels];
    ImageNaming image_naming[kMaxChannels];
    uint8_t reserved;
    WebMotionRegion web_motion[kMaxChannels][16];
    RemoteCtrl remote_ctrl;
    SensorAlarm wireless_alarm[8];
    uint32_t wireless_sensor[8];                  // wireless_alarm_param row 1
    PlainSchedule wireless_schedule[kMaxAlarms];  // process_type 6
    SensorAlarm pir_alarm;
    PlainSchedule pir_schedule;  // process_type 7
    SensorAlarm callhelp;
    PlainSchedule callhelp_schedule;  // process_type 8
    AudioDetect audio_detect;
    VideoLoss video_loss[kMaxChannels];
    IoOut io_out[kMaxAlarms];
    NasIdentification nas_identification[8];
    LightStorage light_storage;
    SdCard sd_card;
};

// ------------------------------------------------------------------- PTZ and dome

struct Serial {                         // serial_config_table
    uint32_t attribute[2];              // [serial_type - 1]: bits 0-3 baudrateIdx, 4-5 databits,
                                        // 6 stopbits, 7-8 parity, 9-10 flowcontrol
    int32_t rs232_mode, rs232_address;  // serial_type 1
    int32_t rs485_decode_type, rs485_decode_addr, rs485_enable;  // serial_type 2
};

struct EduSerial {       // edu_serial_config_table
    uint32_t attribute;  // packed like Serial::attribute
    int32_t rs232_mode, rs232_address;
};

struct PtzSequencePoint {
    uint8_t preset_no, speed;
    uint16_t dwell_time;
};

struct PtzPort {                       // ptz_config_info_list, one row
    PtzSequencePoint sequence[8][32];  // ptzSeqPara_no, ptzSeqPara_speed, ptzSeqPara_time
    char presetName[64][8];
};

struct PtzConfig {
    uint8_t ptzPreset[32], ptzCruise[32], ptzTrack[32];  // row 1
    PtzPort port[4];
};

struct PtzPresetExt {  // ptz_config_info_ext
    int32_t ptz_preset_zoom, ptz_preset_focus;
};

struct EptzPreset {  // eptz_preset_list
    int32_t upper_left_x, upper_left_y, lower_right_x, lower_right_y;
};

struct Wiper {  // wiper
    int32_t idx, mode, speed, count, cycle_interval_time, cycle_time;
};

struct PtConfig {  // ipc_pt_config
    int32_t pt_p_position, pt_t_position, pt_p_totalsteps, pt_t_totalsteps;
};

struct HeatmapPtz {  // heatmap_ptz_config
    int32_t enable;
    char scene_name[128];
    int32_t scene_id, pan_pos, tilt_pos, zoom_pos, focus_pos;
};

struct Rs485Led {  // rs485_led_config
    int32_t rs485_led_enable, display_osd_enable, auto_syn_time, osd_position_x, osd_position_y;
    int32_t timing_type;
};

struct Panorama {  // panoram_param_config
    int32_t panoram_mode, panoram_angle_range, panoram_width, panoram_Height;
    int32_t original_width, original_height;
    float t_angle, h_fov, w_fov;
};

struct ReviseGps {  // revise_gps_param_config
    int32_t revise_enable, longitude_degree, longitude_minute;
    float longitude_second;
    int32_t latitude_degree, latitude_minute;
    float latitude_second;
    int32_t revise_mode;
};

struct ReviseCompass {  // revise_compass
    int32_t revise_mode, position_pan;
};

struct MultiCcdSegment {  // multi_ccd_time_switch_config
    int32_t b_timer_seg, switch_scene, startTime, stopTime;
};

struct MultiCcdPresetSwitch {  // multi_ccd_preset_switch_param_config
    int32_t b_link, link_preset_index;
    MultiCcdSegment segment[8];
};

struct MultiCcdSceneMode {  // multi_ccd_demo_ccdpara_config
    int32_t brightnessLevel, contrastLevel, sharpnessLevel, saturationLevel;
    int32_t whiteBalanceMode, whiteBalanceModeRGain, whiteBalanceModeBGain, WDREnabled, WDRLevel1;
    int32_t dayNightFilterType, beginTime, endTime, beginTimeMin, beginTimeSec, endTimeMin, endTimeSec;
    int32_t nightToDayFilterLevel, dayNightFilterTime, BacklightMode;
    int32_t DigitalNoiseRemoveEnable, DigitalNoiseRemoveLevel, SpectralLevel, TemporalLevel;
    int32_t DehazeMode, dehaze_level, smartIR, lightInhibitionEnable;
    int32_t low_light_limit, low_light_limit_level, focus_mode, min_focus_distance, zoom_speed_level;
    int32_t exposure_mode_set, shutter_set, ir_control_mode, ir_brightness_limit, iris_set;
    int32_t ipdome_gain_set, gain_limit, image_stabilization_mode;
    int32_t laser_control_mode, laser_brightness_limit;
    int32_t iris_max_limit, iris_min_limit, shutter_max_limit, shutter_min_limit;
    int32_t whitelight_mode, whitelight_brightness_limit, whitelight_begintime, whitelight_endtime;
};

struct MultiCcd {
    int32_t b_enable_preset, b_timer_switch;  // multi_ccd_config
    MultiCcdSegment time_switch[8];
    MultiCcdPresetSwitch preset_switch[8];
    MultiCcdSceneMode scene_mode[8];  // index mode
};

struct PtzSection {
    Serial serial;
    EduSerial edu_serial[kMaxChannels];
    PtzConfig ptz;
    PtzPresetExt ptz_ext[256];
    int32_t ptz_index[3][kMaxAlarms];  // alarm_trigger_ptz_list, [trig_type - 1][chn]
    EptzPreset eptz_preset[16][16];
    Wiper wiper;
    PtConfig pt_config;
    HeatmapPtz heatmap_ptz;
    Rs485Led rs485_led;
    Panorama panoram;
    ReviseGps revise_gps;
    ReviseCompass revise_compass;
    int32_t displayElectronicCompass;  // display_electronic_compass_table
    MultiCcd multi_ccd;
};

struct DomeCcd {  // ipdome_ccdparam_table
    int32_t sharpness_type, low_light_limit, low_light_limit_level, image_stabilize_level;
    int32_t camera_ir_correct, high_sensitivity, initialize_lens, focus_mode, auto_focus_mode;
    int32_t min_focus_distance, zoom_speed_level, focus_speed_level;
    uint32_t iris_set;
    int32_t exposure_mode_set, shutter_set, ipdome_gain_set, gain_limit, exposure_compensate;
    int32_t optical_zoom, digital_zoom, chroma_suppress, video_freeze;
    int32_t ir_control_mode, ir_brightness, ir_sensitivity, trig_mode, ir_brightness_limit;
    int32_t ir_movementtrigger, laser_control_mode, laser_trigger_mode, laser_brightness;
    int32_t laser_angle, laser_sensitivity;
    int32_t iris_max_limit, iris_min_limit, shutter_max_limit, shutter_min_limit;
    int32_t laser_brightness_limit, ipdome_scene_mode, optical_zoom_level, focus_pos;
    int32_t ipdome_gamma_type, dome_whitelight_begintime, dome_whitelight_endtime;
    int32_t whitelight_brightness_limit, dome_whitelight_mode, zoom_track_mode;
};

struct DomeMotionSys {  // ipdome_motionsys_table
    int32_t version, domesize, domespeedmode, Language, DomeAddr, baud, parity, dataBit, stopBit;
    int32_t flowcontrol, ensoftAddr, softAddr, softBaudEnable, softBaudIndex, protocoltype;
};

struct DomeStepMotor {  // ipdome_stepmotor_table
    int32_t auto_flip, proportinalpan, presetframefreeze, preframefreezestat, manual_mirrored;
    int32_t scan_mirrored, atuo_mirror, maxelevationangle, scan_speed, move_speedlevel;
    int32_t preset_speedlevel, b_panreversed, b_tiltreversed, support_mirror, zeroposdefined;
    int32_t zeropanpos, zeroptiltpos, poweroff_savetime, reboot_time, pt_adjusttime;
    int32_t park_enable, park_time, park_action, park_action_num;
    char limit_ipdome[256];
    int32_t maxtiltAngle, linear_scan_borderX2, linear_scan_borderX1, proportinal_speedlevel;
    int32_t manual_ctrl_mode, InitPosEnable;
};

struct DomeOsd {  // ipdome_osdparam_table
    int32_t presetlable, zonelable, zoom, pt, direction, alarm, dt, remote_ctrl, pt_mode;
    int32_t marginis_enable;
};

struct DomeTask {
    uint8_t time_value[4];
    int32_t task_value[2];
};

struct DomeTimeTask {  // ipdome_timetask_table
    DomeTask time_task[7][10];
    int32_t cur_day, copy_day, parktime, task_enable, reset_one_time, ptadjust_one_time;
};

struct DomeAlarmAux {  // ipdome_alarm_auxoutput
    int32_t resume, sequence, sequencetime, alarm_num;
    int32_t alarm_input[8][6];
    int32_t auxoutput_num, auxoutput_mode_one, auxdwelltime_one, auxoutput_mode_two, auxdwelltime_two;
};

struct DomeVertex {
    int32_t x, y;
};

struct DomeMask {  // one token group of privacygroup_Input, in its order
    uint8_t head_value;
    uint8_t reserved[3];
    DomeVertex vertex[10];
    int32_t value[12];
    char text[32];
    uint8_t tail_byte[2];
    uint8_t reserved_tail[2];
    int32_t tail_value;
};

struct DomePrivacy {  // ipdome_privacy_table
    int32_t pan, tilt, tilthalfAngle;
    float gratio;
    int32_t delayTime, isPanReversed, isTiltReversed, privacygroup_enable;
    DomeMask privacygroup_Input[30];
};

struct DomeOther {  // ipdome_ir_table
    int32_t controlmode, brigheness, sensitivenesslevel, temp_ctrl_mode, fan_mode, ldc_mode;
    int32_t vga_mode, anti_flicker, ptz_enable_ctrl;
};

struct DomePreset {  // ipdome_ptz_preset, _new, _inner_preset, ipdome_ptzparam_table
    char name[24];   // then the fourteen tokens: attr<n> is token n
    int32_t attr1;
    uint32_t attr2;
    int32_t attr3, attr4;
    uint32_t attr5, attr6;
    uint16_t attr7, attr8, attr9, attr10, attr11, attr13;
    uint8_t attr12, attr14;
    uint8_t reserved[2];
};

struct DomePatrolPoint {
    uint8_t preset;
    uint8_t reserved;
    uint16_t value[2];
};

struct DomePatrol {  // ipdome_ptz_patrol
    int32_t enable, patrolnum;
    DomePatrolPoint scanpoint[32];
};

struct DomePatternInfo {
    uint32_t value[2];
};

struct DomePattern {  // ipdome_ptz_pattern
    int32_t num;
    DomePatternInfo info[4];
};

struct DomeRoiBase {  // ipdonme_roi_base
    int32_t pan, tilt, tilthalfangle, gratio, delaytime, ispanreversed, istiltreversed;
};

struct DomeRoiInput {  // ipdome_roi_group, one row
    int32_t wholeenable, benable;
    int32_t longitude1, latitude1, longitude2, latitude2, longitude3, latitude3, longitude4, latitude4;
    int32_t centerlongitude, centerlatitude, zoomvalue, bpolygon;
};

struct DomeTracking {             // intelligent_dome_param; read from intelligent_paramrule
    int32_t b_auto_track_enable;  // and intelligent_ctrl_info
    int32_t alarm_delay_time, track_hold_time, active_track_smooth_mode;
    int32_t by_stop_track_when_find_face, by_stop_track_threshold, by_stop_track_static;
    int32_t zcoef_benable, track_zoom_type, zcoef_value, height_zoom_cof, zoomcof_adjust;
    int32_t max_track_zoom, patrol_enable, scene_num;
    int32_t scene_index[10], dwell_time[10];
    int32_t tracking_pt_mode, tracking_zoom_mode, tracking_speed_adjust, zoom_value_direct;
    int32_t panPos, tiltPos, focusvalue, horizontal_tracking_limit, vertical_tracking_limit;
    WholeDaySchedule schedule;  // process_type 17
};

struct DomeSceneTrack {  // intelligent_dome_scene_track
    int32_t track_enable, track_duration;
    int32_t curpos_pan, curpos_tilt, curpos_zoom, curpos_focus;
    int32_t leftpos_pan, leftpos_tilt, leftpos_zoom, leftpos_focus;
    int32_t rightpos_pan, rightpos_tilt, rightpos_zoom, rightpos_focus;
    int32_t uppos_pan, uppos_tilt, uppos_zoom, uppos_focus;
    int32_t downpos_pan, downpos_tilt, downpos_zoom, downpos_focus;
    int32_t limit_enable, limit_pan_flag, limit_tilt_flag;
    int32_t pos_3d[10][2];
};

struct DomeMode {  // intelligent_dome_mode_cfg
    int32_t enable, mode;
};

struct WitnessArea {  // intelligent_dome_witness_area_cfg
    int32_t enable, time_threshold, mosaic_enable, pan_pos, tilt_pos, zoom_pos, focus_pos;
    uint32_t point_num;  // intelligent_dome_witness_area_polygon
    int32_t x_coords[10], y_coords[10];
};

struct DomeSection {
    DomeCcd ccd[kMaxSensors];
    DomeMotionSys motionsys;
    DomeStepMotor stepmotor;
    DomeOsd osd;
    DomeTimeTask timetask;
    DomeAlarmAux alarm_auxoutput;
    DomePrivacy privacy;
    DomeOther other;
    DomePreset preset[300];
    DomePreset inner_preset[20];
    DomePatrol patrol[8];
    DomePattern pattern;
    DomeRoiBase roi_base;
    DomeRoiInput roi_group[8][24];
    DomeTracking tracking;
    DomeSceneTrack scene_track[10];
    int32_t devResource;  // intelligent_dome_devresource_cfg
    DomeMode mode;
    int32_t ipsParamValue[kMaxChannels];  // intelligent_dome_ipsparamvalue_cfg
    WitnessArea witness_area[kMaxChannels];
};

// ----------------------------------------------------------------- video analytics

struct Polygon {
    int32_t point_num;
    int32_t x_coords[10], y_coords[10];
};

struct EnabledPolygon {
    int32_t by_enable;
    Polygon polygon;
};

struct SizeFilter {  // intelligent_size_filter
    int32_t by_enable, by_mode, x_min, y_min, width_min, height_min;
    int32_t x_max, y_max, width_max, height_max;
};

struct RuleParam {         // intelli_rule_param_sets: the 8-byte parameter block
    uint32_t first_word;   // type 1, 2: low byte; type 3: whole
    uint32_t second_word;  // type 2: time_duration
};

struct IntelliPolygon {  // intelli_polygon_info
    int32_t point_num;
    uint32_t x[10], y[10];
};

struct IntelliRule {  // intelli_rule_config
    char rule_name[64];
    int32_t enable, rule_type, target_type, event_type, update_rule, sensitivity;
    int32_t size_filter_enable, size_filter_mode;
    int32_t size_filter_min_x, size_filter_min_y, size_filter_min_w, size_filter_min_h;
    int32_t size_filter_max_x, size_filter_max_y, size_filter_max_w, size_filter_max_h;
    int32_t handleType, alarmOutTriggered, email_capture_triggered, capture_triggered;
    int32_t triggerRecChan[16];
    RuleParam param;
    PlainSchedule schedule;  // intelli_timesegment_info
    IntelliPolygon polygon;
};

struct IntelliScene {  // intelli_scene_config
    char sceneName[64];
    uint32_t enable, ruleEnable, rule_num;
    int32_t pan_pos, tilt_pos;
    uint32_t zoom_pos, focus_pos;
    IntelliRule rule[8];
};

struct IntelliChannel {  // intelli_scene_basic_config
    uint32_t scene_total_num, scene_num, current_scene;
    IntelliScene scene[10];
};

struct RuleColour {  // intelligent_colour_config
    int32_t pic_enable, pic_type, pic_width, pic_height, pic_len, x, y, width, height;
};

struct QorRule {  // intelligent_qor_rule
    char rule_name[32];
    int32_t id, enable, rule_type, target_type, sensitivity, update_rule, event_type;
    int32_t event_param[6];
    int32_t handle_type, alarmout_triggered;
    int32_t trigger_rec_chan[16];
    int32_t email_capture_triggered, capture_triggered;
    Polygon polygon;         // intelligent_polygon, process_type 3
    SizeFilter size_filter;  // intelligent_size_filter, process_type 3
    PlainSchedule schedule;  // process_type 12
};

struct QorScene {  // intelligent_qor_scene
    char scene_name[32];
    int32_t id, enable, rule_enable, rule_num;
    QorRule rule[16];
};

struct FaceDetection {  // fd_param_table
    int32_t enable_fd, enable_disp, level, interval, b_need_detail;
    int32_t recordchan_triggered[16];
    int32_t handle_type, alarmout_triggered, capture_triggered;
    PlainSchedule schedule;  // process_type 11
};

struct FaceSnap {  // intelligent_face_detect_config
    uint64_t record_triggered;
    int32_t by_snap_time, by_snap_interval, by_snap_threshold, by_generate_rate, by_sensitive;
    int32_t by_reference_bright, pic_size, pic_quality;
    int32_t face_exposure_enable, face_exposure_minduration;
    int32_t by_actives[8], auto_roi_enable[8], nkeys[9], nvalues[9];
    int32_t handleType, alarmOutTriggered, email_capture_triggered, capture_triggered;
    int32_t byBackgroundPic;
    PlainSchedule schedule;  // process_type 34
    uint8_t reserved[4];
};

struct DetectLine {
    int32_t enable_line, cross_direction, sensitivity;
    int32_t linePoint[4];  // start x, start y, end x, end y
};

struct LineDetect {  // line_detect_table
    uint64_t trigger_record_chan;
    int32_t enable, handleType;
    uint32_t alarmOutTriggered, capture_triggered, email_capture_triggered;
    DetectLine line[8];
    PlainSchedule schedule;  // process_type 15
    uint8_t reserved[4];
};

struct IntrusionRegion {
    int32_t str_enable, bySensitivity, byRate, wDuration, point_num;
    int32_t polygonPoint[10][2];
};

struct IntrusionDetect {  // intrusion_detect_table
    uint64_t trigger_record_chan;
    int32_t enable, enable_dual_vca, handleType, alarmOutTriggered;
    IntrusionRegion region[8];
    PlainSchedule schedule;  // process_type 14
};

struct SceneChangeDetect {  // scene_change_detect_table
    uint64_t trigger_record_chan;
    int32_t enable, sensitive_level, handleType, alarmOutTriggered, capture_triggered;
    PlainSchedule schedule;  // process_type 16
    uint8_t reserved[4];
};

struct Defocus {  // defocus_config_info
    int32_t enable_defocus, defocus_level, handle_type, alarmout_trigger, capture_triggered;
};

struct AudioException {  // audio_exception_detection
    uint64_t rigger_rec_chn;
    int32_t audioin_exception_enable, sound_intensity_mutation_enable, sensitivity, threshold;
    int32_t handle_type, alarm_out_triggered, audio_steep_drop_enable, audio_steep_drop_sensitivity;
    int32_t enable_audio_loss, audio_loss_sensitivity;
    PlainSchedule schedule;  // process_type 13
};

struct MotionArea {  // motdect_exp_param
    int32_t object_area_proportion, sensitive_level;
    int32_t day_objectarea_proportion, day_sensitive_level;
    int32_t night_objectarea_proportion, night_sensitive_level;
    int32_t x, y, width, height;
};

struct VcaCtrl {  // intelligent_vca_ctrl_info
    int32_t by_vca_enable, by_vca_type, by_stream_with_vca, by_mode, by_ctrl_type;
};

struct LineSegment {  // intelligent_line_segment
    int32_t by_line_mode, start_point_x, start_point_y, end_point_x, end_point_y, value;
};

struct BehaviorRule {  // intelligent_behavior_rule
    int32_t b_dsp_add_target, b_dsp_add_rule, b_dsppic_add_target, b_dsppic_add_rule, b_capture_pic;
    int32_t resolution, quality, width, height, scene_total_num, scene_num, curren_scene;
    int32_t calibration_enable, line_seg_num, camera_mode, camera_height, camera_angle, horizon;
};

struct Heatmap {  // heatmap_config
    int32_t enable, sensitivity, background_update_rate, scene_change_level, track_enable, min_size;
    int32_t handle_type, alarm_out_triggered;
    PlainSchedule schedule;  // process_type 19
};

struct Passenger {  // passenger_config
    int32_t enable, handle_type, alarm_out_triggered, setup_height, view_angle;
    int32_t horizontal_distance, focal_length, calibration_enable, rec_num;
    int32_t rect_xy[6][2], rect_wh[6][2];
    int32_t osd_enable, osd_point_num;
    int32_t osd_point[6][2];
    int32_t line_calibration_benable, b_sec_upload_enable, data_upload_cycle;
    PlainSchedule schedule;  // process_type 20
};

struct PassengerRegion {  // passenger_region_config
    int32_t sensitivity, speed_space, speed_time, count_speed, detecte_type, size_correct;
    int32_t start_point[2], end_point[2];
};

struct VehicleDetection {  // vehicle_detection_cfg and its two traffic twins
    int32_t b_enable, handle_type, alarm_out_triggered;
    VehicleSchedule schedule;  // with scene_id; process_type 21 or 32
};

struct SmdRule {  // smd_detection_rule_cfg
    int32_t enable, sensitivity, rate, cross_direction, duration;
    int32_t pan_tilt_pos[2];
    uint32_t zoom_focus_value[2];
    int32_t pos_3d[10][2];
    int32_t target_type;
};

struct SmdDetection {  // smd_detection_basic_cfg
    uint64_t record_chan;
    int32_t enable, handle_type, alarm_out_triggered;
    SmdRule rule[4];
    Polygon polygon[4];      // smd_polygon
    PlainSchedule schedule;  // process_type 22 + smd_type
    uint8_t reserved[4];
};

struct VcaLine {  // vca_line_cfg
    int32_t start[2], end[2];
};

struct AlgExtParam {  // alg_ext_param
    int32_t bNeedTrackFeturePic, trackFeturePicZoomVal, trackFeturePicZoomPixs, picClearThreshold;
    int32_t advanceParamNum;
    int32_t indexs[50], keyvals[50];
    int32_t b_cruise_adapt, cruise_adapt_time;
};

struct PeopleDetection {  // people_detection_cfg
    int32_t b_enable, interval, handle_type, alarm_out_triggered, email_capture_triggered;
    int32_t capture_triggered, pan_pos, tilt_pos, zoom_pos, focus_pos;
    Polygon polygon[8];      // intelligent_polygon, process_type 5
    PlainSchedule schedule;  // process_type 33
};

struct AnalyticsSection {
    FaceSnap face_snap[kMaxChannels];
    LineDetect line_detect[kMaxChannels];
    IntrusionDetect intrusion_detect[kMaxChannels];
    SceneChangeDetect scene_change[kMaxChannels];
    AudioException audio_exception;
    SmdDetection smd[kMaxChannels][10];
    IntelliChannel intelli[kMaxChannels];
    RuleColour colour[kMaxChannels][10][64][3];  // [chan][scene][rule][colour]
    QorScene qor_scene[kMaxChannels][10];
    Polygon polygon_type1[kMaxChannels][8];  // intelligent_polygon
    EnabledPolygon polygon_type2[kMaxChannels][4];
    SizeFilter size_filter_type1[kMaxChannels][8];
    SizeFilter size_filter_type4[kMaxChannels];
    Polygon region_polygon_type1[8];  // region_param_polygon
    Polygon region_polygon_type2;
    FaceDetection face_detection[kMaxChannels];
    Defocus defocus[kMaxChannels];
    MotionArea motion_area[kMaxChannels][8];
    VcaCtrl vca_ctrl[16];
    int32_t ivs_value[kMaxChannels][200];  // intelligent_ivs_param
    LineSegment line_segment[kMaxChannels][8];
    BehaviorRule behavior_rule[kMaxChannels];
    int32_t enabled_intelligent_retrieval;  // intelligent_other_config
    Heatmap heatmap;
    Passenger passenger;
    PassengerRegion passenger_region;
    VehicleDetection vehicle_detection;
    VcaLine vca_line[2];  // index process_type - 1
    AlgExtParam alg_ext;
    PeopleDetection people_detection[kMaxChannels];
};

// ----------------------------------------------------- traffic and enforcement
//
// TrafficEventArea is the te_ family and, unchanged, the head of the im_ family: the
// lane-parameter import copies member by member.  It may lie on a 4-byte boundary only, so
// nothing in it is wider than 32 bits.

struct MonitorPoint {  // te_mointor_point and twins, less monitor_pointno_info
    char camera_no[32];
    int32_t direction_no, monitor_point_no;
    char monitor_info1[64], monitor_info2[64], monitor_info3[64], monitor_direction[64];
};

struct PicMerge {  // te_pic_merge and twins
    int32_t save_type, two_pic_merge_type, three_pic_merge_type, four_pic_merge_type;
    int32_t five_pic_merge_type, six_pic_merge_type, quality_type, picture_quality, picture_size;
    int32_t vehicle_picture_quality;
};

struct TeAlgCfg {  // te_alg_cfg, im_alg_cfg
    char default_chn[32];
    int32_t scene_model, is_night_light_on, camera_height, pic_add_target_info, pic_add_rule_info;
    int32_t video_add_target_info, video_add_rule_info, parking_threshold, is_in_tunel, obj_detect;
    int32_t bg_update_rate, bg_change_ratio, obj_generate_rate, time_switch_threshold, light_bright;
    int32_t vsd_detect_sensitiviness, evidence_picture_ratio, night_dis_down, night_dis_up;
    int32_t track_time, track_tilt_limited;
    int32_t b_osd_overlay;  // te_alg_cfg only
    uint8_t reserved[384];
};

struct CharOverlap {  // te_char_overlap and twins
    uint8_t is_overlap, items_stlye;
    uint16_t start_pos_top_permillage, start_pos_left_permillage, char_size;
    uint32_t fore_clor_RGB, back_clor_RGB;
    uint16_t char_interval, line_interval;
    uint8_t text_content_index[24];
};

struct TeCapParam {  // te_its_cap_param, im_its_cap_param
    uint16_t car_rect_x, car_rect_y, car_rect_width, car_rect_height;
    int32_t is_plate_rec, img_num, snap_one_timeout, tsk_time_out, plate_match_ratio;
    int32_t image_interval[6], image_type[6];
};

struct TePolygon {  // te_polygon, im_polygon
    int32_t point_num;
    uint16_t x_coords[10], y_coords[10];
};

struct TeRule {  // te_its_preset_rule, im_its_preset_rule
    int32_t id, enable, voice_trigger_enable, rule_type;
    uint8_t aid_type[12], line_aid_type[12];
    int32_t size_filter_enable, size_filter_mode;
    uint16_t min_rect_x, min_rect_y, min_rect_width, min_rect_height;
    uint16_t max_rect_x, max_rect_y, max_rect_width, max_rect_height;
    int32_t parking_duration, pedestrian_duration, debris_duration, congestion_length;
    int32_t congestion_duration, inverse_duration, inverse_angle_tolerance, inverse_distance;
    int32_t imag_num, trun_round_angle_tolerance;
    uint16_t start_point_x, start_point_y, end_point_x, end_point_y;
    int32_t img_interval[6], img_type[6];
    int32_t cross_lane_duration, cross_lane_sensitive_level, lane_change_sensitive_level;
    int32_t imag_evidence_num, region_imag_evidence_num;
    // te_its_preset_rule only
    int32_t line_param_nRuleSensitity, lane_change_congestion_duration, vehicle_exist_duration;
    int32_t nRuleSensitity;
    uint8_t reserved[44];
};

struct TeScene {  // te_its_preset_scene, im_its_preset_scene
    uint32_t enale, direction_no;
    char scene_name[32];
    uint32_t is_ivt_enable, is_plate_rec, is_event_det_enable, plate_filter_time;
    uint32_t snap_one_timeout, task_time_out, plate_match_ratio;
    uint32_t P, T, Z, F, reference_num, shield_num;
    float world_width, world_length;
    int32_t image_pt_x[4], image_pt_y[4];
    uint32_t lane_point_x0, lane_point_y0, lane_point_x1, lane_point_y1, lane_num, rule_num;
    int32_t start_point_x[8], start_point_y[8], end_point_x[8], end_point_y[8];
    TePolygon polygon[5][8];  // [process_type - 1][idx - 1, or rule_no - 1 for type 4]
    TeRule rule[8];
    uint8_t reserved[24];
};

struct TeCruiseSegment {  // te_scene_cruise_schedule, im_scene_cruise_schedule
    uint32_t start_time, stop_time;
    uint32_t scene_index[16], continue_time[16];
};

struct TeCruise {
    int32_t schedule_enable;  // te_other_param, im_other_param
    TeCruiseSegment segment[7][16];
};

struct TeMonitorCenter {  // te_remote_center, im_remote_center
    int32_t monitor_upload_protocal;
    char monitor_addr[64];
    int32_t monitor_port;
    char fortify_addr[64];
    uint8_t upload_types[24];
};

struct TeUploadTime {  // te_remote_center, im_remote_center
    int32_t upload_interval, upload_timeout;
};

struct TeFtp {  // te_remote_center, im_remote_center
    int32_t ftp_enable;
    char ftp_addr[64];
    int32_t ftp_port;
    char ftp_usr_name[32];
    char ftp_passwd[16];
    uint8_t ftp_upload_types[16];
    uint8_t event_dir_name[64], break_rule_dir_name[64], break_rule_pic_name[64];
    uint8_t event_picture_name[64];
    uint8_t reserved[256];
    uint8_t plat_picture_name[64];
    uint8_t reserved_end[64];
};

struct TeOtherParam {  // te_other_param, im_other_param
    char voice_type[32], voice_id[32];
    int32_t ptz_oper_type, ptz_oper_delay_time;  // te_other_param only
    int32_t reserved_int[8];
    char reserved_str[2][32];
    int32_t reserved_choice[8];
    uint8_t reserved[44];
};

struct TeAlgExtension {  // te_alg_cfg: the columns added by schema version 1159
    int32_t bNeedTrackFeturePic, trackFeaturePicZoomVal, trackFeaturePicZoomWidth;
    int32_t picClearThreshold, b_need_plate_pic, is_trace_enable, advanceParamNum;
    int32_t indexs[50], keyvals[50];
    int32_t stopDiterDetectSensitive;
};

struct TrafficEventArea {
    MonitorPoint mointor_point;
    PicMerge pic_merge;
    TeAlgCfg alg_cfg;
    CharOverlap char_overlap;
    uint8_t reserved_overlap[3284];
    int32_t illegal_code;  // te_other_param, im_other_param
    TeCapParam its_cap_param;
    TeScene preset_scene[16];
    TeCruise cruise;
    TeMonitorCenter monitor_center;
    TeUploadTime upload_time;
    TeFtp ftp;
    TeOtherParam other_param;
    char monitor_pointno_info[64];  // te_mointor_point, im_mointor_point
    TeAlgExtension alg_extension;
};

struct MprLine {  // im_traffic_mpr: two points and a type
    uint16_t p1x, p1y, p2x, p2y;
    uint32_t lane_type;
};

struct MprLane {
    uint8_t lane_no;
    uint8_t reserved[3];
    MprLine line;
    uint8_t further_param[84];  // from the factory file only
};

struct MprRecord {  // im_traffic_mpr, one row
    uint8_t enable, lane_num;
    uint8_t reserved[2];
    MprLane lane[16];  // the first four are stored
    MprLine line;
    uint8_t nearbn1, farbn1, nearbn2, farbn2;
};

struct IntelligentMonitorArea {
    TrafficEventArea twin;
    MprRecord mpr[16];
    uint8_t mpr_trailing_block[432];  // from the factory file only
};

struct LaneConfig {  // itc_traffic_cfg, traffic_scene_cfg, vehicle_scene_cfg
    int32_t b_init, draw_rule;
    char default_chn[4];
    int32_t total_lane_num, recog_frame_num, bright_value, lane_num, locate_num, plate_osd;
    int32_t b_send_jpeg1, b_send_jpeg2, vehicle_logo_recog, designed_plate_width, recog_mode;
    int32_t time_limit, layered, frame_num, use_init_rect, pr_area_mode;
    uint8_t u_region[264];
    int32_t province, vep_lane_num;
    int32_t lane_line_x0[16], lane_line_y0[16], lane_line_x1[16], lane_line_y1[16];
    int32_t ptz_enable;
    char ptz_scene_name[64];
    int32_t ptz_scene_id, ptz_pan_pos, ptz_tilt_pos, ptz_zoom, ptz_focus_pos;
    int32_t lane_dir[16];
};

struct ItcTraffic {  // itc_traffic_cfg
    int32_t enable_tps, interval_tps, detection_type;
    LaneConfig lane[4];
};

struct SceneTwin {            // the traffic_ tables (type 1), the vehicle_ tables (type 2)
    VehicleDetection detect;  // process_type 32 (traffic), 21 (vehicle)
    LaneConfig scene[4];
    PicMerge pic_merge;
    CharOverlap overlap;
    MonitorPoint mointor_point;
    char monitor_pointno_info[64];
};

struct RoadName {
    int32_t road_name_enable;
    char road_text[64];
};

struct Intersection {
    int32_t intersection_enable, intersection_id, pan_pos, tilt_pos, zoom_pos;
    RoadName road_name[6];
};

struct RoadInfo {  // roadinfo_config
    int32_t roadinfo_osd_enable;
    Intersection intersection[4];
};

struct IllegalEntry {  // traffic_illegal_dictionary
    int32_t illegal_code;
    char illegal_name[32];
};

struct OverlayItem {  // traffic_overlap_info
    char overlay_text[32];
    int32_t item_enable, item_type, changeline_num, space_num;
};

struct MegaDsp {  // mega_dsp_cfg
    int32_t enable_mega_dsp, mega_dsp_magic;
    int32_t stream_pack_type[3];
    int32_t audio_enc_type, voice_talk_type, need_ps_sys_header;
    int32_t test_stream_pack_type[3];
};

struct LfTrack {  // lf_track_cfg
    char ip_address[128], user_name[64], pass_word[32];
    int32_t port, login, addressing_format_type, calibrate_type, is_calibrated;
    int32_t valid_calibrate_num, track_enable, track_mode, track_time;
};

struct LfCalibrate {  // lf_calibrate_info
    int32_t x, y, pan_pos, tilt_pos, zoom_pos;
};

struct TrafficSection {
    ItcTraffic itc_traffic;
    SceneTwin traffic, vehicle;
    RoadInfo roadinfo[kMaxChannels];
    IllegalEntry illegal_dictionary[7];
    OverlayItem overlap_info[24];
    MegaDsp mega_dsp;
    LfTrack lf_track[4];
    LfCalibrate lf_calibrate[4][6];
};

// ------------------------------------------- platform access and remote services

struct SecLockAuth {  // sec_lock_auth_db_info
    uint32_t lockcount, locktype, lockipcount, locktime, minpwdlen, maxpwdlen, complexity;
    uint32_t db_enc_version;
};

struct Zorvy {  // zorvy_config
    int32_t b_enable;
    char lbs_server[256];
    uint16_t lbs_port;
    char alarm_server[256];
    uint16_t alarm_port, region;
    char permanent_code[32];
    uint8_t reserved[2];
    int32_t enable_permanent, enable_cloud, permanent_code_change_count, b_permanent_code_modify;
};

struct ZorvyPlan {  // zorvy_defense_plan_config, _auto_online_, _cloud_record_
    int32_t enable;
    int32_t begin_end_time[7][4][2];
};

struct ZorvyMotionDay {  // zorvy_motion_detection_times, one weekday
    int32_t report_time, reported_flag;
    int32_t motdet_num[24];
};

struct ZorvyAlarm {  // zorvy_alarm_config
    int32_t alarm_mode, alarm_span, alarm_sound_mode;
};

struct ZorvyStream {  // zorvy_stream_config
    int32_t stream_type, bit_type, video_enc_complexity, video_enc_type, reslution, stream_attr;
    int32_t iframe_interval, max_bit_rate, video_frame_rate, quality, bset_enc_type, bset_aud_type;
    int32_t encoder_type, audio_type, bframe_num, enable_svc;
};

struct ZorvySection {
    Zorvy config;
    ZorvyPlan defense_plan, auto_online_plan, cloud_record_plan;
    int32_t update_date;  // zorvy_cloud_record_plan_config
    ZorvyMotionDay motion_day[7];
    ZorvyAlarm alarm;
    int32_t enable_event_cloudstorage;  // zorvy_event_cloudstorage_config
    ZorvyStream stream[2];
    char user_id[32];  // zorvy_user_info_config
};

struct VemtaReg {  // vemta_reg_param
    int32_t enable;
    uint32_t cms_ipv4addr, cms_ipv6addr[4];
    int32_t cms_port;
    char dev_id[32];
    int32_t address_type;
    char domain_name[64];
};

struct VmSnapshot {
    int32_t enable, stor_type, snapshot_type;          // vm_snapshot_normal_param
    int32_t revolution, quality, frequency, interval;  // vm_snapshot_compression_param
};

struct VmTrigger {  // vm_trigger_chain_param
    int32_t trigger_chain[kVmChains];
};

struct VmSegment {  // vm_snapshot_time_segment
    int32_t b_used;
    uint32_t start, stop;
};

struct VmSection {  // suffix: process_type
    VmSnapshot snapshot1[kVmChains][7], snapshot2[kVmChains][3], snapshot3[16], snapshot4[8];
    VmSnapshot snapshot5, snapshot6;
    VmTrigger trigger2[kVmChains][3], trigger3[16], trigger4[8], trigger5, trigger6;
    VmSegment segment1[kVmChains][7][4], segment2[kVmChains][7][8];
};

struct CloudStorage {  // cloud_storage_cfg
    int32_t b_enable;
    uint32_t ipv4_addr, ipv6_addr[4];
    int32_t port_no;
    char usrname[64], passwd[64];
    uint32_t cloud_pool_id[16];
};

struct Sip {  // sip_config
    int32_t transport_type, local_port, stream_idx;
    int32_t std_enable;
    char std_registrar[128];
    int32_t std_reg_port;
    char std_proxy[128];
    int32_t std_proxy_port;
    char std_dispname[64], std_username[64], std_authid[64], std_password[32];
    int32_t std_expires, std_reg_interval;
    int32_t gb_enable;
    char gb_registrar[128];
    int32_t gb_reg_port;
    char serverid[64], serverdomain[128], gb_username[64], gb_authid[64], gb_password[32];
    int32_t gb_expires, livetime, hbtime, hbcount, gb_reg_interval, sip_version;
};

struct Cms {  // cms_config
    int32_t udp_port;
    char puid[32], password[16];
};

struct Catalog {  // catalog_config
    int32_t item_num;
    char item_id[17][64];
};

struct PsiaAlarmCenter {  // psia_alarm_to_center
    int32_t protcol_type, auth_metod, param_format, add_format;
    char url[256], host_name[32];
    int32_t port_num;
    char user_name[32], pass_word[32];
    int32_t wps_enable;
    char wps_pincode[32];
    int32_t interval_times;
};

struct Genetec {  // genetec_config
    int32_t serial_port, genetec_mjpeg_quality, genetec_motion_sensitivity;
    float motion_roi_x0, motion_roi_y0, motion_roi_x1, motion_roi_y1;
    int32_t motion_on_threshold, motion_off_threshold;
};

struct Socks {  // socks_param
    int32_t socks_enable, socks_type, server_port, server_family;
    char server_addr[64], user_name[32], passwd[32];
};

struct SocksLocalIp {  // socks_local_ip
    uint32_t local_ip_v4, local_ip_v6[4], local_netmask_v4, local_netmask_v6[4];
};

struct Lte4g {  // lte_4g_param
    int32_t by_enable_3g, by_diak_methold, by_switch_methold, prior_mode, off_line_time;
    char dial_num[32], username[32], password[32], apn_name[32], UIMCardNum[32];
    int32_t n_mtu_size, verify_proto, max_bit_ul, max_bit_dl, by_traffic_class;
    int32_t b_enable_sms_alarm, l_sms_read_stat;
    int32_t whole_day[7];
    int32_t dial_type[7][8];
    int32_t begin_end_time[7][8][2];
    int32_t operator_;  // column operator, a reserved word in C++
    int32_t sms_receipt_operation;
};

struct SmsWhiteEntry {  // sms_4g_whitelist
    uint64_t iAlarmHandler;
    char byWhiteList[64];
    int32_t iPhoneCfg;
    uint8_t reserved[4];
};

struct SoftAp {  // softap_param
    char ssid[32];
    int32_t softap_enable, broadcast_enable, max_num_sta, security;
    uint32_t softap_ipv4_addr, softap_ipv6_addr[4], softap_ipv4_mask, softap_ipv6_mask[4];
    int32_t dhcp_enable;
    uint32_t dhcp_start_ipv4, dhcp_start_ipv6[4], dhcp_end_ipv4, dhcp_end_ipv6[4];
    uint32_t dns1_ipv4, dns1_ipv6[4], dns2_ipv4, dns2_ipv6[4], gateway_ipv4, gateway_ipv6[4];
    int32_t encrypt;
    char wpa_passphrase[65];
    uint8_t reserved[3];
};

struct PrivateInfo {  // private_info_cfg
    int32_t b_enable;
    char address[64];
    int32_t address_type, private_port, interval, server_type, encrypt_enable, algorithm_type;
    int32_t secret_key_len;
    char secret_key[512], index_code[128];
};

struct PushServer {  // push_org_preview_server_config
    int32_t addFormat;
    char hostName[64];
    uint32_t ipv4addr, ipv6addr[4];
    int32_t portNum;
};

struct OpenApp {  // open_platformat_app_param_config
    char packagename[256], appname[128], shellfile[128], appid[64], menuname[128], linkPath[256];
    char version[128], vendor[128], package_path[256];
    int32_t run_status, app_type, licence_installed;
};

struct GisControl {  // gis_centralized_control_cfg_table
    int32_t ctrl_mode, timeout;
};

struct OnvifKey {  // onvif_adsecurity_key
    int32_t rsakey_id, hasprivatekey, externally_gen, rsakey_status, ref_counter;
    char rsakeyalias[64];
};

struct OnvifCert {  // onvif_adsecurity_cert
    int32_t cert_id, rsakey_id, ref_counter;
    char certalias[64];
};

struct OnvifCertPath {  // onvif_adsecurity_certpath
    int32_t certpath_id, ref_counter;
    int32_t certid_str[3];
    char certpathalias[64];
};

struct OnvifPassphrase {  // onvif_adsecurity_passphrase
    int32_t passphrase_id;
    char passphrasealias[64], passphrasecontent[64];
};

struct OnvifSecurity {
    OnvifKey key[3];
    OnvifCert cert[3];
    OnvifCertPath certpath[3];
    int32_t tlsserver_certpath_id;  // onvif_adsecurity_tlsserver
    OnvifPassphrase passphrase[3];
};

struct Security {  // security_config
    int32_t security_level, cmdcheck_level, loginlevel, web_auth, ssh_enable, illegal_login_lock;
    int32_t active_status, https_enable;
};

struct PlatformSection {
    SmsWhiteEntry sms_whitelist[8];
    ZorvySection zorvy;
    VemtaReg vemta_reg;
    VmSection vm;
    CloudStorage cloud_storage;
    Sip sip;
    Cms cms;
    Catalog catalog;
    PsiaAlarmCenter psia_alarm_center;
    Genetec genetec[kMaxChannels];
    Socks socks;
    SocksLocalIp socks_local_ip[3];
    Lte4g lte_4g;
    SoftAp softap;
    PrivateInfo private_info;
    PushServer push_server;
    OpenApp open_app[4];
    GisControl gis_control;
    OnvifSecurity onvif_security;
    Security security;
    int32_t stream_encrypt_enable;  // stream_encrypt_cfg
};

// ------------------------------------------------------------------------- the record

struct DEVICECONFIG {
    DeviceSection device;
    ChannelBlock channel[kMaxChannels];
    UserSection users;
    EncodingSection encoding;
    uint8_t reserved_sensor[38604 - 220 - sizeof(ChannelBlock) * kMaxChannels - sizeof(UserSection) -
                            sizeof(EncodingSection)];
    SensorBlock sensor[kMaxSensors];
    ImageSection image;
    NetworkSection network;
    ServiceSection service;
    EventSection event;
    PtzSection ptz;
    DomeSection dome;
    AnalyticsSection analytics;
    uint8_t reserved_traffic[576320 - 38604 - sizeof(SensorBlock) * kMaxSensors - sizeof(ImageSection) -
                             sizeof(NetworkSection) - sizeof(ServiceSection) - sizeof(EventSection) -
                             sizeof(PtzSection) - sizeof(DomeSection) - sizeof(AnalyticsSection)];
    TrafficEventArea traffic_event;
    TrafficSection traffic;
    uint8_t reserved_lock[687012 - 661296 - sizeof(TrafficSection)];
    SecLockAuth sec_lock_auth;
    uint8_t reserved_monitor[723100 - 687044];
    IntelligentMonitorArea intel_moni;
    uint8_t reserved_platform[4];  // to an 8-byte boundary
    PlatformSection platform;
    uint8_t reserved_end[887608 - 834432 - sizeof(PlatformSection)];
};

static_assert(std::is_standard_layout_v<DEVICECONFIG> && std::is_trivially_copyable_v<DEVICECONFIG>);
static_assert(sizeof(DEVICECONFIG) == 887608);

// Sizes of the blocks that the main application addresses by stride
static_assert(sizeof(PlainSegment) == 8 && sizeof(VehicleSegment) == 12);
static_assert(sizeof(RecordSegment) == 12 && sizeof(RecordDay) == 4);
static_assert(sizeof(LogoRecord) == 16 && sizeof(UserEntry) == 120);
static_assert(sizeof(SensorBlock) == 220 && sizeof(RuleParam) == 8);
static_assert(sizeof(PtzSequencePoint) == 4);

// The height and the video standard
static_assert(offsetof(DEVICECONFIG, channel) == 220);
static_assert(offsetof(DEVICECONFIG, channel[0].battery_osd_position_y) == 274);
static_assert(offsetof(DEVICECONFIG, sensor[0].video_standard) == 38616);

// The encryption version word
static_assert(offsetof(DEVICECONFIG, sec_lock_auth.db_enc_version) == 687040);

// The traffic-event and intelligent-monitor areas, and each copied block as the member it is
static_assert(offsetof(DEVICECONFIG, traffic_event) == 576320);
static_assert(offsetof(DEVICECONFIG, intel_moni.twin) == 723100);
static_assert(sizeof(TrafficEventArea) == 84976 && alignof(TrafficEventArea) == 4);
static_assert(offsetof(TrafficEventArea, mointor_point) == 0 && sizeof(MonitorPoint) == 296);
static_assert(offsetof(TrafficEventArea, pic_merge) == 296 && sizeof(PicMerge) == 40);
static_assert(offsetof(PicMerge, picture_quality) == 28);
static_assert(offsetof(PicMerge, vehicle_picture_quality) == 36);
static_assert(offsetof(TrafficEventArea, alg_cfg) == 336 && sizeof(TeAlgCfg) == 504);
static_assert(offsetof(TeAlgCfg, default_chn) == 0);
static_assert(offsetof(TrafficEventArea, char_overlap) == 840);
static_assert(sizeof(CharOverlap) + sizeof(TrafficEventArea::reserved_overlap) == 3328);
static_assert(offsetof(DEVICECONFIG, intel_moni.twin.char_overlap.text_content_index) == 723960);
static_assert(offsetof(TrafficEventArea, illegal_code) == 4168);
static_assert(offsetof(TrafficEventArea, its_cap_param) == 4172 && sizeof(TeCapParam) == 76);
static_assert(offsetof(TrafficEventArea, preset_scene) == 4248 && sizeof(TeScene) * 16 == 63808);
static_assert(offsetof(TrafficEventArea, cruise) == 68056 && sizeof(TeCruise) == 15236);
static_assert(sizeof(TeCruiseSegment) == 136);
static_assert(offsetof(TrafficEventArea, monitor_center) == 83292 && sizeof(TeMonitorCenter) == 160);
static_assert(offsetof(TrafficEventArea, upload_time) == 83452 && sizeof(TeUploadTime) == 8);
static_assert(offsetof(TrafficEventArea, ftp) == 83460 && sizeof(TeFtp) == 776);
static_assert(offsetof(DEVICECONFIG, traffic_event.ftp.break_rule_dir_name) == 659980);
static_assert(offsetof(DEVICECONFIG, traffic_event.ftp.break_rule_pic_name) == 660044);
static_assert(offsetof(DEVICECONFIG, intel_moni.twin.ftp.event_dir_name) == 806696);
static_assert(offsetof(DEVICECONFIG, intel_moni.twin.ftp.plat_picture_name) == 807208);
static_assert(offsetof(TrafficEventArea, other_param) == 84236 && sizeof(TeOtherParam) == 244);
static_assert(offsetof(TrafficEventArea, monitor_pointno_info) == 84480);
static_assert(offsetof(TrafficEventArea, alg_extension) == 84544 && sizeof(TeAlgExtension) == 432);
static_assert(offsetof(DEVICECONFIG, intel_moni.mpr) == 808076 && sizeof(MprRecord) == 1620);
static_assert(offsetof(MprRecord, lane_num) == 1 && offsetof(MprRecord, lane) == 4);
static_assert(offsetof(MprLane, line) == 4 && offsetof(MprLane, further_param) == 16);
static_assert(sizeof(MprLane) == 100 && sizeof(MprLine) == 12);
static_assert(offsetof(MprRecord, line) == 1604 && offsetof(MprRecord, nearbn1) == 1616);
static_assert(offsetof(DEVICECONFIG, intel_moni.mpr_trailing_block) == 833996);
static_assert(offsetof(DEVICECONFIG, platform) == 834432);

#endif
