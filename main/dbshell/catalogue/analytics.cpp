// Video analytics: detectors and their areas.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

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

    // The areas of the expert motion detection, with settings of their own by day and by night.
    REPLACE_BY(per_channel_list, analytics.motion_area, (outer("chan_no"), inner("idx"), inner("area_no")), 130,
               "db_get_motdect_exp_param", "db_save_motdect_exp_param",
               .save = SAVE("replace into motdect_exp_param (idx, chan_no, area_no, object_area_proportion, sensitive_level, day_objectarea_proportion, day_sensitive_level, night_objectarea_proportion, night_sensitive_level, x, y, width, height) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(object_area_proportion, sensitive_level, day_objectarea_proportion,
                                   day_sensitive_level, night_objectarea_proportion, night_sensitive_level, x, y, width,
                                   height))),
};

constexpr std::span<const Table> kGroups[] = {kTables};

}  // namespace

const Domain kAnalyticsTables = kGroups;

}  // namespace dbshell
