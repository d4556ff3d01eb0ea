// Recording, video analysis, alarms, exceptions, pictures, and where recordings go.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

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
#define REGION_FLAGS(member) coded(ROW_ITSELF(#member), (kRegions<offsetof(WebMotionRegion, member), Kind::u8, 3>))
#define REGION_PLACES(member) coded(ROW_ITSELF(#member), (kRegions<offsetof(WebMotionRegion, member), Kind::u16, 5>))

// The wireless, PIR and call-help alarms have the same members, and columns of their own names for two.
#define SENSOR_ALARM(name_column, enable_column)                                                    \
    as(name_column, F(name)), as(enable_column, F(benable)), FIELDS(handleType, alarmOutTriggered), \
        COMMAS(recordchan_triggered)

constexpr const char* kStorageCardSource = "main/db_uni_save_interface.c";

// ------------------------------------------------------------------------------------- tables

constexpr Table kTables[] = {
    // How a channel is recorded.
    REPLACE(per_channel, event.record, 8, "db_get_record_info", "db_set_record_info",
            .says = {.save_key = "invalid chan no: %d\n"},
            .save = SAVE("replace into record_info (idx, need_rec, cyclic_rec, pre_rec_time, rec_delay_time, record_stream_type, record_passback, record_lock_duration, record_backup, svc_level) values(%d, %d, %u, %u, %d, %d, %d, %d, %d, %d);",
                         FIELDS(need_rec, cyclic_rec, pre_rec_time, rec_delay_time, record_stream_type, record_passback,
                                record_lock_duration, record_backup, svc_level)),
            .schedules = SCHEDULES(WEEKLY(kRecording, schedule))),

    // Video analysis of a channel: motion with its time window, a hidden lens, and a third kind that is
    // only switched on and off.
    ENSURE_BY(per_channel, event.video_analysis, (outer("chan_no"), inner("type_idx")), 11, "db_get_video_analysis",
              "db_set_video_analysis", .says = {.count = "db_query_row_num error: \n", .open = "SQL error: %d\n"},
              .rows = 3,
              .fill = SQL("insert into  video_analysis_config(chan_no, type_idx, enable,level,handle_type,rigger_rec_chn,alarm_out_triggered,display,motdect_mode,switch_daynight_settings,start_hour,start_minute,start_second,stop_hour,stop_minute,stop_second)values (%d, %d, '0','0','0','0','0',0,0,0,0,0,0,0,0,0);"),
              .save = PUTS(PUT_BLOCK(1, 1, 0,
                                     "update video_analysis_config set enable=%d,level=%d,handle_type=%d,rigger_rec_chn=%llu,alarm_out_triggered =%d,display=%d,motdect_mode=%d,switch_daynight_settings=%d,start_hour=%d,start_minute=%d,start_second=%d,stop_hour=%d,stop_minute=%d,stop_second=%d, email_capture_triggered = %d, capture_triggered = %d where chan_no = %d and type_idx = 1;",
                                     FIELDS(type1.enable, type1.level, type1.handle_type, type1.rigger_rec_chn,
                                            type1.alarm_out_triggered, type1.display, type1.motdect_mode,
                                            type1.switch_daynight_settings, type1.start_hour, type1.start_minute,
                                            type1.start_second, type1.stop_hour, type1.stop_minute, type1.stop_second,
                                            type1.email_capture_triggered, type1.capture_triggered)),
                           PUT_BLOCK(2, 2, 0,
                                     "update video_analysis_config set enable=%d,level=%d,handle_type=%d,alarm_out_triggered =%d, email_capture_triggered = %d, capture_triggered = %d where chan_no = %d and type_idx = 2;",
                                     FIELDS(type2.enable, type2.level, type2.handle_type, type2.alarm_out_triggered,
                                            type2.email_capture_triggered, type2.capture_triggered)),
                           PUT_BLOCK(3, 3, 0,
                                     "update video_analysis_config set enable=%d where chan_no = %d and type_idx = 3;",
                                     as("enable", F(type3_enable)))),
              .schedules = SCHEDULES(WEEKLY(kMotionAnalysis, type1.schedule),
                                     WEEKLY_ONCE(kHideAnalysis, event.video_analysis[0].type2.schedule))),

    // The four motion detection lines of a channel.
    ENSURE_BY(per_channel, event.motion_grid, (outer("chan_no"), inner("line_no")), 12, "db_get_motion_list",
              "db_set_motion_list", .says = {.write = "SQL error\n", .count = "db_query_row_num error: \n"}, .rows = 4,
              .fill = SQL("insert into  motion_detect_list (chan_no, line_no, line_data)values (%d, %d, '');"),
              .save = PUTS(PUT_BLOCK(1, 4, kCells * sizeof(int32_t[3]),
                                     "update motion_detect_list set line_data='%s' where chan_no = %d and line_no = %d;",
                                     coded(ROW_ITSELF("line_data"), kMotionLine)))),

    // The alarm outputs that the device has.
    REPLACE_BY(list, event.alarm_out, (inner("no")), 13, "db_get_alarm_out", "db_set_alarm_out",
               .save = SAVE("replace into alarm_out_config (no, name, delay_time) values(%d, '%s', %d);",
                            FIELDS(name, delay_time)),
               .schedules = SCHEDULES(WEEKLY(kAlarmOutput, schedule)), .device_rows = DeviceCount::alarm_outputs,
               .device_silent = "get_devcapa_data  HW_ALARMOUT_NUM error: \n"),

    // The alarm inputs that the device has, and what each sets off.
    REPLACE_BY(list, event.alarm_in, (inner("no")), 14, "db_get_alarm_in", "db_set_alarm_in",
               .says = {.write = "db_execsql err \n", .open = "SQL error: %d\n"},
               .save = SAVE("replace into alarm_in_config (no, name, alarm_type, deal_needed, handle_type, rigger_rec_chn, alarm_out_triggered, ptztrack_enabled, ptzcruise_enabled, ptzpreset_enabled, email_capture_triggered, capture_triggered) values(%d, '%q', %d, %d, %d, '%q', %d, '%q', '%q', '%q', %d, %d);",
                            FIELDS(name, alarm_type, deal_needed, handle_type, rigger_rec_chn, alarm_out_triggered),
                            COMMAS3(ptztrack_enabled), COMMAS3(ptzcruise_enabled), COMMAS3(ptzpreset_enabled),
                            FIELDS(email_capture_triggered, capture_triggered)),
               .schedules = SCHEDULES(WEEKLY(kAlarmInput, schedule)), .device_rows = DeviceCount::alarm_inputs,
               .device_silent = "get_devcapa_data  HW_ALARMIN_NUM error: \n"),

    // What each kind of exception sets off.
    REPLACE_BY(list, event.exception, (inner("exception_no", 0), inner("idx")), 20, "db_get_exception",
               "db_save_exception",
               // "Saving the exception handling failed" in GB2312: readers of field logs search for it.
               .says = {.write = "\xb1\xa3\xb4\xe6\xd2\xec\xb3\xa3\xc5\xe4\xd6\xc3\xd0\xc5\xcf\xa2\xca\xa7\xb0\xdc\n"},
               .graded = kGraded,
               .save = SAVE("replace into exception_list (idx, exception_no, handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered) values(%d, %d, %d, %d, %d, %d);",
                            FIELDS(handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered))),

    // Snapshots of a channel, on events and by the clock.
    REPLACE(per_channel, event.auto_capture, 50, "get_auto_capture_param_from_db", "save_auto_capture_param_to_db",
            .says = {.empty = " db_query_rec_count_v2 err !\n", .load_key = "param err: chan_no=%d\n"},
            .save = SAVE("replace into auto_capture_config(idx, name_delimiter, trigger_times, event_interval, event_cap_mode, evnt_cap_num, evnt_pic_size, evnt_pic_quality, time_interval, time_pic_size, time_pic_quality, save_sd_enable, cap_time_enable, up_ftp_enable, stream_id) values (%d, %d, '%s', %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %u);",
                         F(name_delimiter), COLONS(trigger_times),
                         FIELDS(event_interval, event_cap_mode, evnt_cap_num, evnt_pic_size, evnt_pic_quality,
                                time_interval, time_pic_size, time_pic_quality, save_sd_enable, cap_time_enable,
                                up_ftp_enable, stream_id)),
            .load = SQL("select * from auto_capture_config order by idx ASC;"),
            .schedules = SCHEDULES(WEEKLY(kTimedCapture, schedule)),
            .unstored = UNSTORED(Unstored{"name_order", "never written"})),

    // The order of the items in a picture's name; the rows of all channels are numbered through.
    REPLACE_BY(per_channel, event.image_naming, (across("idx", outer, inner)), 51, "get_image_naming_param_from_db",
               "save_image_naming_param_to_db",
               .says = {.write = "SQL error\n",
                        .empty = " db_query_rec_count_v2 err !\n",
                        .load_row = "param err: chan_no=%o, i=%d\n"},
               .rows = std::size(ImageNaming{}.item_order),
               .save = PUTS(PUT_BLOCK(1, std::size(ImageNaming{}.item_order), 1,
                                      "replace into image_naming_list (idx, item_order) values(%d, %u);",
                                      F(item_order[0]))),
               .load = SQL("select * from image_naming_list order by idx ASC;")),

    // The motion regions of a channel as the web interface draws them.
    ENSURE_BY(per_channel, event.web_motion, (outer("chan_no")), 56, "get_weblib_motdetect_param_from_db",
              "save_weblib_motdetect_param_to_db",
              .says = {.write = "SQL error\n",
                       .count = " db_query_row_num err\n",
                       .open = "db_query_open_v2 error\n",
                       .empty = "db_query_rec_count_v2 error: %d\n"},
              .fill = SQL("insert into weblib_motdetect_info (chan_no ,enable,sensitivity_level ,mask_enabled ,x0 ,y0 ,x1 ,y1 ,x2 ,y2 ,x3 ,y3, existed) values (%d,'','','','','','','','','','','','');"),
              .save = SAVE("update weblib_motdetect_info set enable = '%s', sensitivity_level = '%s', mask_enabled = '%s',x0 = '%s', y0 = '%s', x1 = '%s', y1 = '%s', x2 = '%s', y2 = '%s', x3 = '%s', y3 = '%s', existed = '%s' where chan_no = %d;",
                           REGION_FLAGS(enable), REGION_FLAGS(sensitivity_level), REGION_FLAGS(mask_enabled),
                           REGION_PLACES(x0), REGION_PLACES(y0), REGION_PLACES(x1), REGION_PLACES(y1),
                           REGION_PLACES(x2), REGION_PLACES(y2), REGION_PLACES(x3), REGION_PLACES(y3),
                           REGION_FLAGS(existed)),
              .unstored = UNSTORED(Unstored{"idx", "the database's own number of the row"})),

    // The remote controls that are paired with the device.
    ENSURE(single_row, event.remote_ctrl, 60, "get_remote_ctrl_from_db", "save_remote_ctrl_to_db",
           .says = {.open = "SQL error:\n"},
           .fill = SQL("insert into remote_ctrl_list(idx, arming_delay, remote_ctrl_cnt, remote_ctrl)values (1,0,0,'0');"),
           .save = SAVE("update remote_ctrl_list set arming_delay = %d,remote_ctrl_cnt = '%d', remote_ctrl = '%s' where idx =1;",
                        FIELDS(arming_delay, remote_ctrl_cnt), COMMAS(remote_ctrl))),

    // The wireless alarms.
    ENSURE(list, event.wireless_alarm, 61, "get_wireless_alarm_from_db", "save_wireless_alarm_to_db",
           .says =
               {.write = "SQL error\n", .count = "SQL error:%d \n", .insert = "SQL error:\n", .open = "SQL error:%d\n"},
           .fill = SQL("insert into wireless_alarm_param(idx, wirelessalarm_name, benable_wirelessalarm, handleType, alarmOutTriggered, recordchan_triggered, wireless_sensor)values (%d, '0', 0, 0, 0, '0', '');"),
           .save = PUTS(PUT("update wireless_alarm_param set wirelessalarm_name = '%s',benable_wirelessalarm = %d, handleType = %d, alarmOutTriggered = %d, recordchan_triggered = '%s' where idx =%d;",
                            SENSOR_ALARM("wirelessalarm_name", "benable_wirelessalarm")),
                        PUT_FOR(1, 1, "update wireless_alarm_param set wireless_sensor = '%s' where idx =1;",
                                ::dbshell::coded(ELSEWHERE_ONCE(event.wireless_sensor),
                                                 kArray<decltype(EventSection::wireless_sensor), ','>))),
           .schedules = SCHEDULES(WEEKLY_EACH(kWirelessAlarm, event.wireless_schedule, segment))),

    // The alarm of the passive infrared sensor.
    ENSURE(single_row, event.pir_alarm, 62, "get_pir_alarm_from_db", "save_pir_alarm_to_db",
           .says = {.insert = "SQL error: \n", .open = "SQL error:%d\n"},
           .fill = SQL("insert into pir_alarm_param(idx, piralarm_name, benable_piralarm, handleType, alarmOutTriggered, recordchan_triggered) values (%d, '0', 0, 0, 0, '0');"),
           .save = SAVE("update pir_alarm_param set piralarm_name = '%s',benable_piralarm = %d, handleType = %d, alarmOutTriggered = %d, recordchan_triggered = '%s' where idx =1;",
                        SENSOR_ALARM("piralarm_name", "benable_piralarm")),
           .schedules = SCHEDULES(WEEKLY_ONCE(kPirAlarm, event.pir_schedule.segment))),

    // The alarm of the help button.
    ENSURE(
        single_row, event.callhelp,
        63, "get_callhelp_param_from_db", "save_callhelp_param_to_db", .says = {.insert = "SQL error: \n", .open = "SQL error:%d\n"}, .fill = SQL("insert into callhelp_alarm_param(idx, callhelp_name, benable_callhelp, handleType, alarmOutTriggered, recordchan_triggered)values (%d, '0', 0, 0, 0, '0');"),
        .save = SAVE("update callhelp_alarm_param set callhelp_name = '%s',benable_callhelp = %d, handleType = %d, alarmOutTriggered = %d, recordchan_triggered = '%s' where idx =1;",
                     SENSOR_ALARM("callhelp_name", "benable_callhelp")),
        .schedules = SCHEDULES(WEEKLY_ONCE(kCallHelp, event.callhelp_schedule.segment))),

    // How much of the disk a channel's recordings and pictures may take.
    REPLACE_BY(per_channel_list, event.disk_quota, (outer("chan_no"), inner("data_type")), 70,
               "db_get_disk_quota_param", "db_save_disk_quota_param",
               .says = {.write = "update %T err \n",
                        .open = "SQL error: %d\n",
                        .save_key = "Invalid chan_no-%d\n",
                        .wrapper = "%F failed for channel_no: %d\n"},
               .save = SAVE("replace into disk_quota_list (chan_no, data_type, b_enable, quota_type, content, channel_ratio) values(%d, %d, %d, %d, %llu, %d);",
                            FIELDS(b_enable, quota_type, content, channel_ratio))),

    // The alarm on the sound level.
    ENSURE(single_row, event.audio_detect, 71, "db_get_audio_detect_param", "db_save_audio_detect_param",
           .says = {.write = "%T update error:\n", .insert = "SQL insert %T error: \n", .open = "SQL error:\n"},
           .fill = SQL("insert into audio_detect_param(idx, enable, level, handletype, alarmouttriggered, recordchan_triggered) values (1, 0, 0, 0, 0, 0);"),
           .save = SAVE("update audio_detect_param set enable = %d, level = %d, handletype = %u, alarmouttriggered = %u, recordchan_triggered = %u where idx = 1;",
                        FIELDS(enable, level, handletype, alarmouttriggered, recordchan_triggered)),
           .schedules = SCHEDULES(WEEKLY(kAudioDetection, schedule))),

    // The alarm on the loss of a channel's video signal.
    REPLACE(per_channel, event.video_loss, 73, "db_get_vilost_param", "db_save_vilost_param",
            .says = {.write = "%T failed \n",
                     .open = " db_query_open_v2 err\n",
                     .empty = " db_query_rec_count_v2 err\n",
                     .wrapper = "%F error for chan_no: %d\n",
                     .schedule = "db_save_timeseg failed\n"},
            .save = SAVE("replace into vilost_param_table (idx, enablealarm, alarmouttriggered, handletype, capture_triggered) values(%d, %d, %d, %d, %d);",
                         FIELDS(enablealarm, alarmouttriggered, handletype, capture_triggered)),
            .schedules = SCHEDULES(WEEKLY(kVideoLoss, schedule))),

    // The outputs: what each drives, and its lamp.
    REPLACE(list, event.io_out, 123, "db_get_io_out_cfg", "db_save_io_out_cfg", .says = {.write = "SQL error\n"},
            .save = SAVE("replace into io_out_cfg (idx, io_work_mode, io_default_state, io_work_state, led_freq_multi,led_duty_ratio, flashlight_enable, start_hour, start_min,stop_hour, stop_min, power_sync_enble, power_sync_rang) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(io_work_mode, io_default_state, io_work_state, led_freq_multi, led_duty_ratio,
                                flashlight_enable, start_hour, start_min, stop_hour, stop_min, power_sync_enble,
                                power_sync_rang)),
            .load = SQL("select * from io_out_cfg order by idx;")),

    // The network disks with their logins; the old numeric server address is kept empty.
    ENSURE(list, event.nas_identification, 126, "db_get_nas_identification_config", "db_save_nas_identification_config",
           .says = {.write = "%F failed\n", .open = " db_query_open_v2 err\n", .load_row = "invalid nas_idx: %d\n"},
           .fill = SQL("insert into nas_identification (idx, hdtype, serveripv4, serveripv6, directory, mount_nfs, username, password, nas_server_addr, disk_type, iscsi_port) values(%d, 1, 0, '', '', 0, '', '', '', 0, 0);"),
           .save = SAVE("update nas_identification set directory = '%q', mount_nfs = %d, username = '%q', password = '%q', nas_server_addr = '%q', disk_type = %d, iscsi_port = %d, serveripv4 = 0, serveripv6 = '' where idx = %d;",
                        FIELDS(directory, mount_nfs), ENCRYPTED(username, 128), ENCRYPTED(password, 64),
                        FIELDS(nas_server_addr, disk_type, iscsi_port)),
           .unstored = UNSTORED(Unstored{"hdtype", "set once, with the default row"})),

    // Recording to the card by the light.
    REPLACE_BY(single_row, event.light_storage, (always("idx", 1), always("chan_no", 1)), 179,
               "db_get_light_storage_cfg", "db_save_light_storage_cfg", .says = {.write = "SQL error\n"},
               .save = SAVE("replace into light_storage_cfg (idx, chan_no, enable, sdcard_time, sensitivity)values(1, 1, %d, %u, %d);",
                            FIELDS(enable, sdcard_time, sensitivity)),
               .load = SQL("select * from light_storage_cfg where idx = 1 and chan_no = 1;")),

    // The alarm on tampering with the camera; its schedule has one row, whatever the channel.
    REPLACE(per_channel, event.vandal_proof, 203, "db_get_vandal_proof_alarm_cfg", "db_set_vandal_proof_alarm_cfg",
            .single = "", .says = {.write = "SQL error:%s\n", .schedule = "db_save_timeseg error:%d\n"},
            .save = SAVE("replace into vandal_proof_alarm_cfg_table (idx, sensitivity, handleType, benable, trigger_record_chan,alarmOutTriggered, email_capture_triggered, capture_triggered)  values(%d, %u, %u, %u, %llu, %u, %u, %u);",
                         FIELDS(sensitivity, handleType, benable, trigger_record_chan, alarmOutTriggered,
                                email_capture_triggered, capture_triggered)),
            .schedules = SCHEDULES(WEEKLY_ONCE(kVandalProof, event.vandal_proof[0].schedule))),

    // What an exception of the storage card sets off.
    REPLACE_BY(single_row, event.sd_card.exception, (always("exception_type", 1)), 229, "db_get_sd_handle_type",
               "db_set_sd_handle_type", .says = {.write = "exception_list_comm save err:%s\n"},
               .graded = {.get = codes(-2, -6, -7), .set = codes(-4, -6, -7)},
               .save = SAVE("replace into exception_list_comm (exception_type, handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered) values(%d, %u, %u, %u, %u);",
                            FIELDS(handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered)),
               .load = SQL("select * from exception_list_comm where exception_type = %d;"),
               .worker_get = "db_get_exception_comm", .worker_set = "db_set_exception_comm",
               .source = kStorageCardSource),

    // When the storage card's alarm is armed.
    REPLACE_BY(single_row, event.sd_card.schedule, (always("type", 1)), 230, "db_get_sd_alarm_time",
               "db_set_sd_alarm_time", .says = {.write = "update timesegment_comm_info failed:%s\n"},
               .graded = {.get = codes(-2)},
               .save = SAVE("replace into timesegment_comm_info(type, begin_end_time) values(%d, '%s');",
                            as("begin_end_time", CODED(segment, (kTimes<PlainSegment, true>)))),
               .load = SQL("select * from timesegment_comm_info where type = %d;"), .worker_get = "db_get_time_info",
               .worker_set = "db_set_time_info", .source = kStorageCardSource),

    // The lock of the storage card.
    REPLACE(single_row, event.sd_card, 231, "db_get_sd_card_lock_config", "db_set_sd_card_lock_config",
            .says = {.write = "SQL error:%s\n"},
            .save = SAVE("replace into sd_card_lock_config (idx, lock_operation, password) values(1, %d, '%q');",
                         F(lock_operation), ENCRYPTED(password, 100))),
};

constexpr std::span<const Table> kGroups[] = {kTables};

}  // namespace

const Domain kEventTables = kGroups;

}  // namespace dbshell
