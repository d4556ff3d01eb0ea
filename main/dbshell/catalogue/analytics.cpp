// Video analytics: detectors and their areas.
//
// A detector with a weekly schedule saves it after its own row; which process type is whose is told in
// schedules.h.
#include "catalogue.h"
#include "engine.h"
#include "schedules.h"
#include "state.h"

namespace {

int save_schedule(const Table& t, const PlainSchedule& schedule, int process_type, int channel) {
    if (db_save_timeseg(&schedule, process_type, channel) == 0)
        return kDone;
    log_table(t.single.empty() ? t.set : t.single, "db_save_timeseg error\n");
    return -1;
}

AnalyticsSection& analytics() {
    return get_cfg_param()->analytics;
}

constexpr Table kTables[] = {
    // Face detection on a channel.
    TABLE(
        per_channel, analytics.face_detection, .number = 88, .get = "db_get_fd_param",
        .set = "db_save_fd_param", .single = "db_save_fd_param_single",
        .save =
            SAVE("replace into fd_param_table (idx, enable_fd, enable_disp, level, interval, "
                 "b_need_detail, recordchan_triggered, handle_type, alarmout_triggered, "
                 "capture_triggered) values(%d, %d, %d, %d, %d, %d, '%s', %d, %d, %d);",
                 FIELDS(enable_fd, enable_disp, level, interval, b_need_detail), COLONS(recordchan_triggered),
                 FIELDS(handle_type, alarmout_triggered, capture_triggered)),
        .also_save =
            [](const Table& t, int channel) {
                return save_schedule(t, analytics().face_detection[channel].schedule, kFaceDetection,
                                     channel);
            }),

    // The alarms on the loss of the sound and on its sudden rise or fall.
    TABLE(
        single_row, analytics.audio_exception, .number = 102, .get = "db_get_audio_exception_detection",
        .set = "db_save_audio_exception_detection",
        .count = SQL("select count(*) from audio_exception_detection;"),
        .fill = SQL("insert into audio_exception_detection(idx, audioin_exception_enable, "
                    "sound_intensity_mutation_enable, sensitivity, threshold, handle_type, rigger_rec_chn, "
                    "alarm_out_triggered, audio_steep_drop_enable, audio_steep_drop_sensitivity, "
                    "enable_audio_loss, audio_loss_sensitivity) values(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "
                    "0);"),
        .save = SAVE("update audio_exception_detection set audioin_exception_enable = %d, "
                     "sound_intensity_mutation_enable = %d, sensitivity = %d, threshold = %d, handle_type "
                     "= %d, rigger_rec_chn = %llu, alarm_out_triggered = %d, audio_steep_drop_enable = %d, "
                     "audio_steep_drop_sensitivity = %d, enable_audio_loss = %d, audio_loss_sensitivity = "
                     "%d where idx = 1;",
                     FIELDS(audioin_exception_enable, sound_intensity_mutation_enable, sensitivity, threshold,
                            handle_type, rigger_rec_chn, alarm_out_triggered, audio_steep_drop_enable,
                            audio_steep_drop_sensitivity, enable_audio_loss, audio_loss_sensitivity)),
        .also_save =
            [](const Table& t, int) {
                return save_schedule(t, analytics().audio_exception.schedule, kAudioException, 0);
            }),

    // The areas of the expert motion detection, with settings of their own by day and by night.
    TABLE_BY(per_channel_list, analytics.motion_area, (outer("chan_no"), inner("idx"), inner("area_no")),
             .number = 130, .get = "db_get_motdect_exp_param", .set = "db_save_motdect_exp_param",
             .single = "db_save_motdect_exp_param_single",
             .save = SAVE("replace into motdect_exp_param (idx, chan_no, area_no, object_area_proportion, "
                          "sensitive_level, day_objectarea_proportion, day_sensitive_level, "
                          "night_objectarea_proportion, night_sensitive_level, x, y, width, height) "
                          "values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                          FIELDS(object_area_proportion, sensitive_level, day_objectarea_proportion,
                                 day_sensitive_level, night_objectarea_proportion, night_sensitive_level, x,
                                 y, width, height))),
};

}  // namespace

const std::span<const Table> kAnalyticsTables = kTables;
