// Recording, video analysis, alarms, exceptions, pictures, and where recordings go.
//
// A feature with a weekly schedule saves it after its own rows; which process type is whose is told in
// schedules.h.
#include <algorithm>

#include "DB_uni_process.h"
#include "catalogue.h"
#include "engine.h"
#include "schedules.h"
#include "state.h"

namespace {

// ------------------------------------------------------------------------------------- text forms

// A line of the motion grid: three values for each of its 16 cells, one value of all cells after another.
constexpr std::size_t kCells = 16;
constexpr auto kCellItems = [] {
    std::array<ListItem, kCells> items{};
    for (std::size_t cell = 0; cell < kCells; ++cell)
        items[cell] = {static_cast<uint16_t>(cell * sizeof(int32_t[3])), Kind::i32};
    return items;
}();
constexpr TextCodec kMotionLine{encode_list, decode_list, kCellItems, 3, sizeof(int32_t)};

// One member of all 16 web motion regions of a channel.
template <std::size_t Offset, Kind K, uint8_t Width>
inline constexpr ListItem kRegionItem[] = {{Offset, K, Width}};
template <std::size_t Offset, Kind K, uint8_t Width>
inline constexpr TextCodec kRegions{encode_list, decode_list, kRegionItem<Offset, K, Width>, 16,
                                    sizeof(WebMotionRegion)};
#define REGION_FLAGS(member) \
    coded(ROW_ITSELF(#member), (kRegions<offsetof(WebMotionRegion, member), Kind::u8, 3>))
#define REGION_PLACES(member) \
    coded(ROW_ITSELF(#member), (kRegions<offsetof(WebMotionRegion, member), Kind::u16, 5>))

// The wireless sensors, all of them in row 1 of the wireless alarms.
constexpr Field kWirelessSensors = [] {
    using Sensors = decltype(EventSection::wireless_sensor);
    Field f = coded(plain_field<Sensors>("wireless_sensor", offsetof(DEVICECONFIG, event.wireless_sensor)),
                    kArray<Sensors, ','>);
    f.absolute = true;
    return f;
}();

// The wireless, PIR and call-help alarms have the same members, and columns of their own names for two.
#define SENSOR_ALARM(name_column, enable_column)                                                    \
    as(name_column, F(name)), as(enable_column, F(benable)), FIELDS(handleType, alarmOutTriggered), \
        COMMAS(recordchan_triggered)

// ------------------------------------------------------------------------------------- schedules

EventSection& event() {
    return get_cfg_param()->event;
}

// The result of a schedule's saver or loader as its table's; a failure is logged with the table's message.
int moved(std::string_view function, const char* message, int result) {
    if (result == 0)
        return kDone;
    log_table(function, message, result);
    return -1;
}

int save_schedule(const Table& t, const PlainSchedule& schedule, int process_type, int channel,
                  const char* message = "db_save_timeseg error\n") {
    return moved(t.single.empty() ? t.set : t.single, message,
                 db_save_timeseg(&schedule, process_type, channel));
}

// The second schedule of the video analysis has one row, whatever the channel.
int save_analysis_schedules(const Table& t, int channel) {
    const VideoAnalysis& analysis = event().video_analysis[channel];
    if (const int rc = save_schedule(t, analysis.type1.schedule, kMotionAnalysis, channel); rc != kDone)
        return rc;
    return save_schedule(t, event().video_analysis[0].type2.schedule, kHideAnalysis, 0);
}

// The schedules of the alarms whose rows were written, by alarm number.
int save_alarm_schedules(const Table& t, int process_type, const PlainSchedule& (*schedule)(int alarm)) {
    int alarms = t.row_count();
    if (t.device_rows != nullptr && !t.device_rows(&alarms))
        return -1;
    for (int i = 0; i < std::min(alarms, t.row_count()); ++i)
        if (const int rc = moved(t.set, "db_save_alarm_timeseg error\n",
                                 db_save_alarm_timeseg(&schedule(i), process_type, i + 1));
            rc != kDone)
            return rc;
    return kDone;
}

// How many alarm inputs or outputs the device has.
bool hardware_count(HardwareItem item, int* count, const char* function, const char* message) {
    if (get_hardware_count(item, count) == 0)
        return true;
    log_table(function, message);
    return false;
}

// ------------------------------------------------------------------------------------- tables

static_assert(kMaxChannels == 1, "the rows of image_naming_list are those of one channel");

constexpr Table kTables[] = {
    // How a channel is recorded.
    TABLE(
        per_channel, event.record, .number = 8, .get = "db_get_record_info", .set = "db_set_record_info",
        .single = "db_set_record_info_single", .says = {.save_key = "invalid chan no: %d\n"},
        .save = SAVE("replace into record_info (idx, need_rec, cyclic_rec, pre_rec_time, rec_delay_time, "
                     "record_stream_type, record_passback, record_lock_duration, record_backup, svc_level) "
                     "values(%d, %d, %u, %u, %d, %d, %d, %d, %d, %d);",
                     FIELDS(need_rec, cyclic_rec, pre_rec_time, rec_delay_time, record_stream_type,
                            record_passback, record_lock_duration, record_backup, svc_level)),
        .also_save =
            [](const Table& t, int channel) {
                return moved(t.single, "db_save_record_alarmtime error\n",
                             db_save_record_alarmtime(&event().record[channel].schedule, channel));
            },
        .also_load =
            [](const Table& t) {
                return moved(t.get, "db_get_record_alarmtime error\n", db_get_record_alarmtime());
            }),

    // Video analysis of a channel: motion with its time window, a hidden lens, and a third kind that is
    // only switched on and off.
    TABLE_BY(
        per_channel, event.video_analysis, (outer("chan_no"), inner("type_idx")), .number = 11,
        .get = "db_get_video_analysis", .set = "db_set_video_analysis",
        .single = "db_set_video_analysis_single",
        .says = {.count = "db_query_row_num error: \n", .open = "SQL error: %d\n"}, .rows = 3,
        .count = SQL("select count(*) from video_analysis_config where chan_no = %d;"),
        .fill = SQL("insert into  video_analysis_config(chan_no, type_idx, "
                    "enable,level,handle_type,rigger_rec_chn,alarm_out_triggered,display,motdect_mode,"
                    "switch_daynight_settings,start_hour,start_minute,start_second,stop_hour,stop_minute,"
                    "stop_second)values (%d, %d, '0','0','0','0','0',0,0,0,0,0,0,0,0,0);"),
        .save = PUTS(
            PUT_BLOCK(1, 1, 0,
                      "update video_analysis_config set enable=%d,level=%d,handle_type=%d,"
                      "rigger_rec_chn=%llu,alarm_out_triggered =%d,display=%d,motdect_mode=%d,"
                      "switch_daynight_settings=%d,start_hour=%d,start_minute=%d,start_second=%d,"
                      "stop_hour=%d,stop_minute=%d,stop_second=%d, email_capture_triggered = %d, "
                      "capture_triggered = %d where chan_no = %d and type_idx = 1;",
                      FIELDS(type1.enable, type1.level, type1.handle_type, type1.rigger_rec_chn,
                             type1.alarm_out_triggered, type1.display, type1.motdect_mode,
                             type1.switch_daynight_settings, type1.start_hour, type1.start_minute,
                             type1.start_second, type1.stop_hour, type1.stop_minute, type1.stop_second,
                             type1.email_capture_triggered, type1.capture_triggered)),
            PUT_BLOCK(2, 2, 0,
                      "update video_analysis_config set enable=%d,level=%d,handle_type=%d,"
                      "alarm_out_triggered =%d, email_capture_triggered = %d, capture_triggered = %d where "
                      "chan_no = %d and type_idx = 2;",
                      FIELDS(type2.enable, type2.level, type2.handle_type, type2.alarm_out_triggered,
                             type2.email_capture_triggered, type2.capture_triggered)),
            PUT_BLOCK(3, 3, 0,
                      "update video_analysis_config set enable=%d where chan_no = %d and type_idx = 3;",
                      as("enable", F(type3_enable)))),
        .also_save = save_analysis_schedules),

    // The four motion detection lines of a channel.
    TABLE_BY(per_channel, event.motion_grid, (outer("chan_no"), inner("line_no")), .number = 12,
             .get = "db_get_motion_list", .set = "db_set_motion_list", .single = "db_set_motion_list_single",
             .says = {.write = "SQL error\n", .count = "db_query_row_num error: \n"}, .rows = 4,
             .count = SQL("select count(*) from motion_detect_list where chan_no = %d;"),
             .fill = SQL("insert into  motion_detect_list (chan_no, line_no, line_data)values (%d, %d, '');"),
             .save = PUTS(PUT_BLOCK(
                 1, 4, kCells * sizeof(int32_t[3]),
                 "update motion_detect_list set line_data='%s' where chan_no = %d and line_no = %d;",
                 coded(ROW_ITSELF("line_data"), kMotionLine)))),

    // The alarm outputs that the device has.
    TABLE_BY(
        list, event.alarm_out, (inner("no")), .number = 13, .get = "db_get_alarm_out",
        .set = "db_set_alarm_out",
        .save = SAVE("replace into alarm_out_config (no, name, delay_time) values(%d, '%s', %d);",
                     FIELDS(name, delay_time)),
        .also_save =
            [](const Table& t, int) {
                return save_alarm_schedules(t, kAlarmOutput, [](int i) -> const PlainSchedule& {
                    return event().alarm_out[i].schedule;
                });
            },
        .device_rows =
            [](int* rows) {
                return hardware_count(kAlarmOutputs, rows, "db_set_alarm_out",
                                      "get_devcapa_data  HW_ALARMOUT_NUM error: \n");
            }),

    // The alarm inputs that the device has, and what each sets off.
    TABLE_BY(
        list, event.alarm_in, (inner("no")), .number = 14, .get = "db_get_alarm_in", .set = "db_set_alarm_in",
        .says = {.write = "db_execsql err \n", .open = "SQL error: %d\n"},
        .save = SAVE("replace into alarm_in_config (no, name, alarm_type, deal_needed, handle_type, "
                     "rigger_rec_chn, alarm_out_triggered, ptztrack_enabled, ptzcruise_enabled, "
                     "ptzpreset_enabled, email_capture_triggered, capture_triggered) values(%d, '%q', %d, "
                     "%d, %d, '%q', %d, '%q', '%q', '%q', %d, %d);",
                     FIELDS(name, alarm_type, deal_needed, handle_type, rigger_rec_chn, alarm_out_triggered),
                     COMMAS3(ptztrack_enabled), COMMAS3(ptzcruise_enabled), COMMAS3(ptzpreset_enabled),
                     FIELDS(email_capture_triggered, capture_triggered)),
        .also_save =
            [](const Table& t, int) {
                return save_alarm_schedules(t, kAlarmInput, [](int i) -> const PlainSchedule& {
                    return event().alarm_in[i].schedule;
                });
            },
        .device_rows =
            [](int* rows) {
                return hardware_count(kAlarmInputs, rows, "db_set_alarm_in",
                                      "get_devcapa_data  HW_ALARMIN_NUM error: \n");
            }),

    // What each kind of exception sets off.
    TABLE_BY(
        list, event.exception, (inner("exception_no", 0), inner("idx")), .number = 20,
        .get = "db_get_exception", .set = "db_save_exception",
        // "Saving the exception handling failed" in GB2312, as the field's log readers expect it.
        .says = {.write =
                     "\xb1\xa3\xb4\xe6\xd2\xec\xb3\xa3\xc5\xe4\xd6\xc3\xd0\xc5\xcf\xa2\xca\xa7\xb0\xdc\n"},
        .graded = true,
        .save = SAVE("replace into exception_list (idx, exception_no, handle_type, alarm_out_triggered, "
                     "email_capture_triggered, capture_triggered) values(%d, %d, %d, %d, %d, %d);",
                     FIELDS(handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered))),

    // Snapshots of a channel, on events and by the clock.
    TABLE(
        per_channel, event.auto_capture, .number = 50, .get = "get_auto_capture_param_from_db",
        .set = "save_auto_capture_param_to_db", .single = "save_auto_capture_param_to_db_single",
        .says = {.empty = " db_query_rec_count_v2 err !\n", .load_key = "param err: chan_no=%d\n"},
        .save = SAVE("replace into auto_capture_config(idx, name_delimiter, trigger_times, event_interval, "
                     "event_cap_mode, evnt_cap_num, evnt_pic_size, evnt_pic_quality, time_interval, "
                     "time_pic_size, time_pic_quality, save_sd_enable, cap_time_enable, up_ftp_enable, "
                     "stream_id) values (%d, %d, '%s', %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %u);",
                     F(name_delimiter), COLONS(trigger_times),
                     FIELDS(event_interval, event_cap_mode, evnt_cap_num, evnt_pic_size, evnt_pic_quality,
                            time_interval, time_pic_size, time_pic_quality, save_sd_enable, cap_time_enable,
                            up_ftp_enable, stream_id)),
        .load = SQL("select * from auto_capture_config order by idx ASC;"),
        .also_save =
            [](const Table& t, int channel) {
                return moved(
                    t.single, "db_save_timing_capture_timeseg error\n",
                    db_save_timing_capture_timeseg(&event().auto_capture[channel].schedule, channel));
            },
        .also_load =
            [](const Table& t) {
                return moved(t.get, "db_get_timing_capture_timeseg error\n", db_get_timing_capture_timeseg());
            }),

    // The order of the items in a picture's name.  The rows of all channels are counted on, 15 for each:
    // idx is channel * 15 + item + 1, which is the item's own number for the one channel of the record.
    TABLE_BY(per_channel, event.image_naming, (inner("idx")), .number = 51,
             .get = "get_image_naming_param_from_db", .set = "save_image_naming_param_to_db",
             .single = "save_image_naming_param_to_db_single",
             .says = {.write = "SQL error\n",
                      .empty = " db_query_rec_count_v2 err !\n",
                      .load_row = "param err: chan_no=0, i=%d\n"},
             .rows = std::size(ImageNaming{}.item_order),
             .save = PUTS(PUT_BLOCK(1, std::size(ImageNaming{}.item_order), 1,
                                    "replace into image_naming_list (idx, item_order) values(%d, %u);",
                                    F(item_order[0]))),
             .load = SQL("select * from image_naming_list order by idx ASC;")),

    // The motion regions of a channel as the web interface draws them.
    TABLE_BY(per_channel, event.web_motion, (outer("chan_no")), .number = 56,
             .get = "get_weblib_motdetect_param_from_db", .set = "save_weblib_motdetect_param_to_db",
             .single = "save_weblib_motdetect_param_to_db_single",
             .says = {.write = "SQL error\n",
                      .count = " db_query_row_num err\n",
                      .open = "db_query_open_v2 error\n",
                      .empty = "db_query_rec_count_v2 error: %d\n"},
             .count = SQL("select count(*) from weblib_motdetect_info where chan_no = %d;"),
             .fill = SQL("insert into weblib_motdetect_info (chan_no ,enable,sensitivity_level "
                         ",mask_enabled ,x0 ,y0 ,x1 ,y1 ,x2 ,y2 ,x3 ,y3, existed) values "
                         "(%d,'','','','','','','','','','','','');"),
             .save = SAVE("update weblib_motdetect_info set enable = '%s', sensitivity_level = '%s', "
                          "mask_enabled = '%s',x0 = '%s', y0 = '%s', x1 = '%s', y1 = '%s', x2 = '%s', y2 = "
                          "'%s', x3 = '%s', y3 = '%s', existed = '%s' where chan_no = %d;",
                          REGION_FLAGS(enable), REGION_FLAGS(sensitivity_level), REGION_FLAGS(mask_enabled),
                          REGION_PLACES(x0), REGION_PLACES(y0), REGION_PLACES(x1), REGION_PLACES(y1),
                          REGION_PLACES(x2), REGION_PLACES(y2), REGION_PLACES(x3), REGION_PLACES(y3),
                          REGION_FLAGS(existed))),

    // The remote controls that are paired with the device.
    TABLE(single_row, event.remote_ctrl, .number = 60, .get = "get_remote_ctrl_from_db",
          .set = "save_remote_ctrl_to_db", .says = {.open = "SQL error:\n"},
          .count = SQL("select count(*) from remote_ctrl_list;"),
          .fill = SQL("insert into remote_ctrl_list(idx, arming_delay, remote_ctrl_cnt, remote_ctrl)values "
                      "(1,0,0,'0');"),
          .save = SAVE("update remote_ctrl_list set arming_delay = %d,remote_ctrl_cnt = '%d', remote_ctrl = "
                       "'%s' where idx =1;",
                       FIELDS(arming_delay, remote_ctrl_cnt), COMMAS(remote_ctrl))),

    // The wireless alarms.
    TABLE(
        list, event.wireless_alarm, .number = 61, .get = "get_wireless_alarm_from_db",
        .set = "save_wireless_alarm_to_db",
        .says = {.write = "SQL error\n",
                 .count = "SQL error:%d \n",
                 .insert = "SQL error:\n",
                 .open = "SQL error:%d\n"},
        .count = SQL("select count(*) from wireless_alarm_param;"),
        .fill = SQL("insert into wireless_alarm_param(idx, wirelessalarm_name, benable_wirelessalarm, "
                    "handleType, alarmOutTriggered, recordchan_triggered, wireless_sensor)values (%d, '0', "
                    "0, 0, 0, '0', '');"),
        .save =
            PUTS(PUT("update wireless_alarm_param set wirelessalarm_name = '%s',benable_wirelessalarm = %d, "
                     "handleType = %d, alarmOutTriggered = %d, recordchan_triggered = '%s' where idx =%d;",
                     SENSOR_ALARM("wirelessalarm_name", "benable_wirelessalarm")),
                 PUT_FOR(1, 1, "update wireless_alarm_param set wireless_sensor = '%s' where idx =1;",
                         kWirelessSensors)),
        .also_save =
            [](const Table& t, int) {
                return save_alarm_schedules(t, kWirelessAlarm, [](int i) -> const PlainSchedule& {
                    return event().wireless_schedule[i];
                });
            }),

    // The alarm of the passive infrared sensor.
    TABLE(
        single_row, event.pir_alarm, .number = 62, .get = "get_pir_alarm_from_db",
        .set = "save_pir_alarm_to_db", .says = {.insert = "SQL error: \n", .open = "SQL error:%d\n"},
        .count = SQL("select count(*) from pir_alarm_param;"),
        .fill = SQL("insert into pir_alarm_param(idx, piralarm_name, benable_piralarm, handleType, "
                    "alarmOutTriggered, recordchan_triggered) values (%d, '0', 0, 0, 0, '0');"),
        .save = SAVE("update pir_alarm_param set piralarm_name = '%s',benable_piralarm = %d, handleType = "
                     "%d, alarmOutTriggered = %d, recordchan_triggered = '%s' where idx =1;",
                     SENSOR_ALARM("piralarm_name", "benable_piralarm")),
        .also_save = [](const Table& t,
                        int) { return save_schedule(t, event().pir_schedule, kPirAlarm, 0); }),

    // The alarm of the help button.
    TABLE(
        single_row, event.callhelp, .number = 63, .get = "get_callhelp_param_from_db",
        .set = "save_callhelp_param_to_db", .says = {.insert = "SQL error: \n", .open = "SQL error:%d\n"},
        .count = SQL("select count(*) from callhelp_alarm_param;"),
        .fill = SQL("insert into callhelp_alarm_param(idx, callhelp_name, benable_callhelp, handleType, "
                    "alarmOutTriggered, recordchan_triggered)values (%d, '0', 0, 0, 0, '0');"),
        .save = SAVE("update callhelp_alarm_param set callhelp_name = '%s',benable_callhelp = %d, "
                     "handleType = %d, alarmOutTriggered = %d, recordchan_triggered = '%s' where idx =1;",
                     SENSOR_ALARM("callhelp_name", "benable_callhelp")),
        .also_save = [](const Table& t,
                        int) { return save_schedule(t, event().callhelp_schedule, kCallHelp, 0); }),

    // How much of the disk a channel's recordings and pictures may take.
    TABLE_BY(per_channel_list, event.disk_quota, (outer("chan_no"), inner("data_type")), .number = 70,
             .get = "db_get_disk_quota_param", .set = "db_save_disk_quota_param",
             .single = "db_save_disk_quota_param_single",
             .says = {.write = "update disk_quota_list err \n",
                      .open = "SQL error: %d\n",
                      .save_key = "Invalid chan_no-%d\n",
                      .wrapper = "db_save_disk_quota_param failed for channel_no: %d\n"},
             .save = SAVE("replace into disk_quota_list (chan_no, data_type, b_enable, quota_type, content, "
                          "channel_ratio) values(%d, %d, %d, %d, %llu, %d);",
                          FIELDS(b_enable, quota_type, content, channel_ratio))),

    // The alarm on the sound level.
    TABLE(
        single_row, event.audio_detect, .number = 71, .get = "db_get_audio_detect_param",
        .set = "db_save_audio_detect_param",
        .says = {.write = "audio_detect_param update error:\n",
                 .insert = "SQL insert audio_detect_param error: \n",
                 .open = "SQL error:\n"},
        .count = SQL("select count(*) from audio_detect_param;"),
        .fill = SQL("insert into audio_detect_param(idx, enable, level, handletype, alarmouttriggered, "
                    "recordchan_triggered) values (1, 0, 0, 0, 0, 0);"),
        .save = SAVE("update audio_detect_param set enable = %d, level = %d, handletype = %u, "
                     "alarmouttriggered = %u, recordchan_triggered = %u where idx = 1;",
                     FIELDS(enable, level, handletype, alarmouttriggered, recordchan_triggered)),
        .also_save = [](const Table& t,
                        int) { return save_schedule(t, event().audio_detect.schedule, kAudioDetection, 0); }),

    // The alarm on the loss of a channel's video signal.
    TABLE(
        per_channel, event.video_loss, .number = 73, .get = "db_get_vilost_param",
        .set = "db_save_vilost_param", .single = "db_save_vilost_param_single",
        .says = {.write = "vilost_param_table failed \n",
                 .open = " db_query_open_v2 err\n",
                 .empty = " db_query_rec_count_v2 err\n",
                 .wrapper = "db_save_vilost_param error for chan_no: %d\n"},
        .save = SAVE("replace into vilost_param_table (idx, enablealarm, alarmouttriggered, handletype, "
                     "capture_triggered) values(%d, %d, %d, %d, %d);",
                     FIELDS(enablealarm, alarmouttriggered, handletype, capture_triggered)),
        .also_save =
            [](const Table& t, int channel) {
                return save_schedule(t, event().video_loss[channel].schedule, kVideoLoss, channel,
                                     "db_save_timeseg failed\n");
            }),

    // The outputs: what each drives, and its lamp.
    TABLE(list, event.io_out, .number = 123, .get = "db_get_io_out_cfg", .set = "db_save_io_out_cfg",
          .says = {.write = "SQL error\n"},
          .save = SAVE("replace into io_out_cfg (idx, io_work_mode, io_default_state, io_work_state, "
                       "led_freq_multi,led_duty_ratio, flashlight_enable, start_hour, start_min,stop_hour, "
                       "stop_min, power_sync_enble, power_sync_rang) values(%d, %d, %d, %d, %d, %d, %d, %d, "
                       "%d, %d, %d, %d, %d);",
                       FIELDS(io_work_mode, io_default_state, io_work_state, led_freq_multi, led_duty_ratio,
                              flashlight_enable, start_hour, start_min, stop_hour, stop_min, power_sync_enble,
                              power_sync_rang)),
          .load = SQL("select * from io_out_cfg order by idx;")),

    // The network disks with their logins; the old numeric server address is kept empty.
    TABLE(list, event.nas_identification, .number = 126, .get = "db_get_nas_identification_config",
          .set = "db_save_nas_identification_config",
          .says = {.write = "db_save_nas_identification_config failed\n",
                   .open = " db_query_open_v2 err\n",
                   .load_row = "invalid nas_idx: %d\n"},
          .count = SQL("select count(*) from nas_identification;"),
          .fill = SQL("insert into nas_identification (idx, hdtype, serveripv4, serveripv6, directory, "
                      "mount_nfs, username, password, nas_server_addr, disk_type, iscsi_port) values(%d, 1, "
                      "0, '', '', 0, '', '', '', 0, 0);"),
          .save = SAVE("update nas_identification set directory = '%q', mount_nfs = %d, username = '%q', "
                       "password = '%q', nas_server_addr = '%q', disk_type = %d, iscsi_port = %d, "
                       "serveripv4 = 0, serveripv6 = '' where idx = %d;",
                       FIELDS(directory, mount_nfs), ENCRYPTED(username, 128), ENCRYPTED(password, 64),
                       FIELDS(nas_server_addr, disk_type, iscsi_port))),

    // Recording to the card by the light.
    TABLE_BY(single_row, event.light_storage, (always("idx", 1), always("chan_no", 1)), .number = 179,
             .get = "db_get_light_storage_cfg", .set = "db_save_light_storage_cfg",
             .says = {.write = "SQL error\n"},
             .save = SAVE("replace into light_storage_cfg (idx, chan_no, enable, sdcard_time, "
                          "sensitivity)values(1, 1, %d, %u, %d);",
                          FIELDS(enable, sdcard_time, sensitivity)),
             .load = SQL("select * from light_storage_cfg where idx = 1 and chan_no = 1;")),

    // The alarm on tampering with the camera; its schedule has one row, whatever the channel.
    TABLE(
        per_channel, event.vandal_proof, .number = 203, .get = "db_get_vandal_proof_alarm_cfg",
        .set = "db_set_vandal_proof_alarm_cfg", .says = {.write = "SQL error:%s\n"},
        .save = SAVE("replace into vandal_proof_alarm_cfg_table (idx, sensitivity, handleType, benable, "
                     "trigger_record_chan,alarmOutTriggered, email_capture_triggered, capture_triggered)  "
                     "values(%d, %u, %u, %u, %llu, %u, %u, %u);",
                     FIELDS(sensitivity, handleType, benable, trigger_record_chan, alarmOutTriggered,
                            email_capture_triggered, capture_triggered)),
        .also_save =
            [](const Table& t, int) {
                return save_schedule(t, event().vandal_proof[0].schedule, kVandalProof, 0,
                                     "db_save_timeseg error:%d\n");
            }),

    // The lock of the storage card.
    TABLE(
        single_row, event.sd_card, .number = 231, .get = "db_get_sd_card_lock_config",
        .set = "db_set_sd_card_lock_config", .says = {.write = "SQL error:%s\n"},
        .save = SAVE("replace into sd_card_lock_config (idx, lock_operation, password) values(1, %d, '%q');",
                     F(lock_operation), ENCRYPTED(password, 100))),
};

}  // namespace

const std::span<const Table> kEventTables = kTables;
