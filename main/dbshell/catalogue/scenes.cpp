// Video analytics by scenes and rules: the older and the newer family, the smart detections, and the polygons and size
// filters that several of them share, told apart by their process type.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

// The rules of the scenes of each channel, by the structures that hold them.
template <class M>
using qor_rules = rows_below<M, Owner::channel, decltype(AnalyticsSection::qor_scene), QorScene[10]>;
template <class M>
using intelli_scenes = rows_below<M, Owner::channel, decltype(AnalyticsSection::intelli)>;
template <class M>
using intelli_rules = rows_below<M, Owner::channel, decltype(AnalyticsSection::intelli),
                                 decltype(IntelliChannel::scene)>;
template <class M>
using rule_colours = rows_below<M, Owner::channel, RuleColour[kMaxChannels][10][64][3], RuleColour[10][64][3],
                                RuleColour[64][3]>;
template <class M>
using people_polygons = rows_below<M, Owner::channel, decltype(AnalyticsSection::people_detection)>;
template <class M>
using smd_lists = rows_below<M, Owner::channel, decltype(AnalyticsSection::smd), SmdDetection[10]>;

// Polygons have ten vertices, one column for the x and one for the y coordinates.
namespace shared {

constexpr Messages kSays{.write = "SQL error\n", .insert = "SQL error\n"};

#define FILL_POLYGON \
    SQL("insert into intelligent_polygon (idx, process_type, by_enable, point_num, x_coords, y_coords, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, '', '', %d, 0, 0);")
#define FILL_SIZE_FILTER \
    SQL("insert into intelligent_size_filter (idx, process_type, by_enable, by_mode, x_min, y_min, width_min, height_min, x_max, y_max, width_max, height_max, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, %d, 0, 0);")

constexpr Table kTables[] = {
    // The areas of a channel: process type 1.
    ENSURE_BY(per_channel_list, analytics.polygon_type1, (outer("chan_no"), only("process_type", 1), inner("idx")), 109,
              "db_get_intelligent_polygon", "db_save_intelligent_polygon", .fill = FILL_POLYGON,
              .save = SAVE("update intelligent_polygon set point_num = %d, x_coords = '%s', y_coords = '%s' where idx = %d and process_type = %d and chan_no = %d;",
                           F(point_num), COLONS(x_coords), COLONS(y_coords)),
              .load = SQL("select * from intelligent_polygon where process_type = %d;")),
    // Those that can be switched off: process type 2.
    ENSURE_BY(per_channel_list, analytics.polygon_type2, (outer("chan_no"), only("process_type", 2), inner("idx")), 0,
              "db_get_intelligent_polygon", "db_save_intelligent_polygon", .fill = FILL_POLYGON,
              .save = SAVE("update intelligent_polygon set by_enable = %d, point_num = %d, x_coords = '%s', y_coords = '%s' where idx = %d and process_type = %d and chan_no = %d;",
                           FIELDS(by_enable, polygon.point_num), COLONS(polygon.x_coords), COLONS(polygon.y_coords)),
              .load = SQL("select * from intelligent_polygon where process_type = %d;")),
    // The area of a rule, which is saved with it: process type 3.
    FILL_MISSING_BY(qor_rules, analytics.qor_scene[0][0].rule,
                    (outer("chan_no"), only("process_type", 3), inner("scene_no"), third("rule_no"),
                     across("idx", inner, third)),
                    0, "db_get_intelligent_polygon", "db_save_rule_polygon", .single = "",
                    .fill = SQL("insert into intelligent_polygon (idx, process_type, by_enable, point_num, x_coords, y_coords, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, '', '', %d, %d, %d);"),
                    .save = SAVE("update intelligent_polygon set point_num = %d, x_coords = '%s', y_coords = '%s' where process_type = %d and chan_no = %d and scene_no = %d and rule_no = %d;",
                                 F(polygon.point_num), COLONS(polygon.x_coords), COLONS(polygon.y_coords)),
                    .load = SQL("select * from intelligent_polygon where process_type = %d;"), .inner_set = true),

    // The smallest and the largest target of a channel's areas: process type 1.
    ENSURE_BY(per_channel_list, analytics.size_filter_type1, (outer("chan_no"), only("process_type", 1), inner("idx")),
              110, "db_get_intelligent_size_filter", "db_save_intelligent_size_filter", .fill = FILL_SIZE_FILTER,
              .save = SAVE("update intelligent_size_filter set by_enable = %d, by_mode = %d, x_min = %d, y_min = %d, width_min = %d, height_min = %d, x_max = %d, y_max = %d, width_max = %d, height_max = %d where idx = %d and process_type = %d and chan_no = %d;",
                           FIELDS(by_enable, by_mode, x_min, y_min, width_min, height_min, x_max, y_max, width_max,
                                  height_max)),
              .load = SQL("select * from intelligent_size_filter where process_type = %d;")),
    // That of the face detection: process type 4.
    REPLACE_BY(per_channel, analytics.size_filter_type4, (outer("chan_no"), only("process_type", 4), always("idx", 1)),
               0, "db_get_intelligent_size_filter", "db_save_intelligent_size_filter",
               .save = SAVE("replace into intelligent_size_filter (idx, process_type, by_enable, by_mode, x_min, y_min, width_min, height_min, x_max, y_max, width_max, height_max, chan_no) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(by_enable, by_mode, x_min, y_min, width_min, height_min, x_max, y_max, width_max,
                                   height_max)),
               .load = SQL("select * from intelligent_size_filter where process_type = %d;")),
    // That of a rule, which is saved with it: process type 3.
    FILL_MISSING_BY(qor_rules, analytics.qor_scene[0][0].rule,
                    (outer("chan_no"), only("process_type", 3), inner("scene_no"), third("rule_no"),
                     across("idx", inner, third)),
                    0, "db_get_intelligent_size_filter", "db_save_rule_sizefilter", .single = "",
                    .fill = SQL("insert into intelligent_size_filter (idx, process_type, by_enable, by_mode, x_min, y_min, width_min, height_min, x_max, y_max, width_max, height_max, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, %d, %d, %d);"),
                    .save = SAVE("update intelligent_size_filter set by_enable = %d, by_mode = %d, x_min = %d, y_min = %d, width_min = %d, height_min = %d, x_max = %d, y_max = %d, width_max = %d, height_max = %d where process_type = %d and chan_no = %d and scene_no = %d and rule_no = %d;",
                                 FIELDS(size_filter.by_enable, size_filter.by_mode, size_filter.x_min,
                                        size_filter.y_min, size_filter.width_min, size_filter.height_min,
                                        size_filter.x_max, size_filter.y_max, size_filter.width_max,
                                        size_filter.height_max)),
                    .load = SQL("select * from intelligent_size_filter where process_type = %d;"), .inner_set = true),

    // People detection on a channel.
    REPLACE_BY(per_channel, analytics.people_detection, (outer("chan_no"), always("idx", 1)), 220,
               "db_get_people_detection_cfg", "db_save_people_detection_config",
               .single = "db_save_people_detection_cfg_single",
               .save = SAVE("replace into people_detection_cfg (idx, chan_no, b_enable, interval, handle_type, alarm_out_triggered, email_capture_triggered, capture_triggered, pan_pos, tilt_pos, zoom_pos, focus_pos) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(b_enable, interval, handle_type, alarm_out_triggered, email_capture_triggered,
                                   capture_triggered, pan_pos, tilt_pos, zoom_pos, focus_pos)),
               .schedules = SCHEDULES(WEEKLY(kPeopleDetection, schedule)),
               .steps = STEPS(itself(1),
                              Step{"db_save_people_detect_polygon", 1, "db_save_people_detect_polygon error\n"})),
    // Its areas, which are saved with it: process type 5.
    ENSURE_BY(people_polygons, analytics.people_detection[0].polygon,
              (outer("chan_no"), only("process_type", 5), inner("idx"), inner("scene_no")), 0,
              "db_get_people_detection_cfg", "db_save_people_detect_polygon", .single = "",
              .fill = SQL("insert into intelligent_polygon (idx, process_type, by_enable, point_num, x_coords, y_coords, chan_no, scene_no, rule_no) values(%d, %d, 0, 0, '', '', %d, %d, 0);"),
              .save = SAVE("update intelligent_polygon set point_num = %d, x_coords = '%s', y_coords = '%s' where idx = %d and process_type = %d and chan_no = %d and scene_no = %d;",
                           F(point_num), COLONS(x_coords), COLONS(y_coords)),
              .load = SQL("select * from intelligent_polygon where process_type = %d;"), .inner_set = true),

    // The colours that a rule of the dome's scenes looks for.
    REPLACE_BY(rule_colours, analytics.colour[0][0][0],
               (outer("chan_no"), inner("scene_no"), third("rule_no"), fourth("rule_colour_no")), 233,
               "db_get_colour_config", "db_save_colour_config",
               .says = {.save_middle = "param err: chan_no=%1, scene_no=%2\n"},
               .save = SAVE("replace into intelligent_colour_config (chan_no, scene_no, rule_no, rule_colour_no, pic_enable, pic_type, pic_width, pic_height, pic_len, x, y, width, height) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                            FIELDS(pic_enable, pic_type, pic_width, pic_height, pic_len, x, y, width, height)),
               .indexes = 3),
};

}  // namespace shared

// The older family: ten scenes of sixteen rules.  A scene's rules are saved with it, a rule's polygon, size filter and
// schedule with the rule.
namespace qor {

constexpr Messages kSays{.save_key = "param err: chan_no=%1, scene_no=%2\n",
                         .load_key = "param err: chan_no=%1, scene_no=%2, rule_no=%3\n",
                         .load_middle = "param err: chan_no=%1, scene_no=%2, rule_no=%3\n",
                         .load_row = "param err: chan_no=%1, scene_no=%2, rule_no=%3\n",
                         .wrapper = ""};

constexpr Table kTables[] = {
    ENSURE_BY(per_channel_list, analytics.qor_scene, (outer("chan_no"), inner("scene_no")), 116,
              "db_get_intelligent_qor_scene", "db_save_intelligent_qor_scene",
              .single = "db_save_intelligent_scene_single",
              .says = {.write = "update intelligent_qor_scene failed\n",
                       .load_key = "param err: chan_no=%1, scene_no=%2\n",
                       .load_row = "param err: chan_no=%1, scene_no=%2\n"},
              .graded = {.set = codes(-4)},
              .fill = SQL("insert into intelligent_qor_scene (chan_no, scene_no, scene_name, id, enable, rule_enable, rule_num) values(%d, %d, '', 0, 0, 0, 0);"),
              .save = SAVE("replace into intelligent_qor_scene (chan_no, scene_no, scene_name, id, enable, rule_enable, rule_num) values(%d, %d, '%q', %d, %d, %d, %d);",
                           FIELDS(scene_name, id, enable, rule_enable, rule_num)),
              .load = SQL("select * from intelligent_qor_scene order by chan_no, scene_no;"),
              .steps = STEPS(Step{"db_save_intelligent_qor_rule", 2, "db_save_intelligent_qor_rule error\n"},
                             itself(2)),
              .indexes = 2, .made_within = 0),

    ENSURE_BY(qor_rules, analytics.qor_scene[0][0].rule, (outer("chan_no"), inner("scene_no"), third("rule_no")), 117,
              "db_get_intelligent_qor_rule", "db_save_intelligent_qor_rule", .single = "",
              .says = {.save_key = "invalid param: chan_no=%1, scene_no=%2\n"},
              .fill = SQL("insert into intelligent_qor_rule (chan_no, scene_no, rule_no, rule_name, id, enable, rule_type, target_type, sensitivity, update_rule, event_type, event_param, handle_type, alarmout_triggered, trigger_rec_chan, email_capture_triggered, capture_triggered) values(%d, %d, %d, '', 0, 0, 0, 0, 0, 0, 0, '', 0, 0, '', 0, 0);"),
              .save = SAVE("update intelligent_qor_rule set rule_name = '%q', id = %d, enable = %d, rule_type = %d, target_type = %d, sensitivity = %d, update_rule = %d, event_type = %d, event_param = '%s', handle_type = %d, alarmout_triggered = %d, trigger_rec_chan = '%s', email_capture_triggered = %d, capture_triggered = %d where chan_no = %d and scene_no = %d and rule_no = %d;",
                           FIELDS(rule_name, id, enable, rule_type, target_type, sensitivity, update_rule, event_type),
                           COLONS(event_param), FIELDS(handle_type, alarmout_triggered), COLONS(trigger_rec_chan),
                           FIELDS(email_capture_triggered, capture_triggered)),
              .load = SQL("select * from intelligent_qor_rule order by chan_no, scene_no, rule_no;"),
              .schedules = SCHEDULES(WEEKLY_BY(by_rule, kIntelligentRule, schedule)),
              .steps = STEPS(Step{"db_save_rule_polygon", 3, "db_save_rule_polygon error\n"},
                             Step{"db_save_rule_sizefilter", 3, "db_save_rule_sizefilter error\n"}, itself(3)),
              .inner_set = true, .indexes = 2, .made_within = 2),
};

}  // namespace qor

// The newer family: ten scenes of eight rules.  All of it is saved with the scenes.
namespace intelli {

constexpr Messages kSays{.write = "SQL error:%s\n",
                         .save_key = "%S Invalid chan_no-%d\n",
                         .save_middle = "%S Invalid scene_id-%d\n",
                         .save_third = "%S Invalid rule_id-%d\n",
                         .load_key = "chan_no(%d) is not valid\n",
                         .load_middle = "scene_id(%d) is not valid\n",
                         .load_third = "rule_id(%d) is not valid\n",
                         .load_row = "rule_id(%d) is not valid\n",
                         .no_key = "chan_no record is empty\n",
                         .no_middle = "%G scene_id is not empty\n",
                         .wrapper = ""};
constexpr Codes kCodes{codes(-6, -7), codes(-6, -7)};

#define RULE_KEYS outer("chan_no"), inner("scene_id", 0), third("rule_id", 0)

constexpr Table kTables[] = {
    // How many scenes a channel has, and which is the current one.
    REPLACE_BY(per_channel, analytics.intelli, (outer("chan_no")), 235, "db_get_intelli_scene_basic_config",
               "db_set_intelli_scene_basic_config",
               .save = SAVE("replace into intelli_scene_basic_config (chan_no, scene_total_num, scene_num, current_scene) values(%u, %u, %u, %u);",
                            FIELDS(scene_total_num, scene_num, current_scene)),
               .inner_set = true),

    // A scene: a position of the dome with rules of its own.
    REPLACE_BY(intelli_scenes, analytics.intelli[0].scene, (outer("chan_no"), inner("scene_id", 0)), 236,
               "db_get_intelli_scene_config", "db_set_intelli_scene_config", .single = "db_save_intelli_scene_config",
               .says = {.load_row = "scene_id(%d) is not valid\n", .load_null = "%G scene_id is not empty\n"},
               .save = SAVE("replace into intelli_scene_config (chan_no, sceneName, scene_id, enable, ruleEnable, rule_num, pan_pos, tilt_pos, zoom_pos, focus_pos) values(%u, '%q', %u, %u, %u, %u, %d, %d, %u, %u);",
                            FIELDS(sceneName, enable, ruleEnable, rule_num, pan_pos, tilt_pos, zoom_pos, focus_pos)),
               .steps = STEPS(Step{"db_set_intelli_scene_basic_config", 1,
                                   "db_set_intelli_scene_basic_config_single(%1) SQL error\n"},
                              itself(2, "db_set_intelli_scene_config_single(%1-%2) SQL error\n"),
                              Step{"db_set_intelli_rule_config", 3,
                                   "db_set_intelli_rule_config_single(%1-%2-%3) SQL error\n"},
                              Step{"db_set_intelli_rule_param_sets_config", 3,
                                   "db_set_intelli_rule_param_sets_config_single(%1-%2-%3) SQL error\n"},
                              Step{"db_set_intelli_timesegment_info", 3,
                                   "db_set_intelli_timesegment_info_single(%1-%2-%3) SQL error\n"},
                              Step{"db_set_intelli_polygon_info", 3,
                                   "db_set_intelli_polygon_info_single(%1-%2-%3) SQL error\n"}),
               .indexes = 2, .worker_set = "db_set_intelli_scene_config_single"),

    // What a rule looks for, how large it is, and what is done then.
    REPLACE_BY(intelli_rules, analytics.intelli[0].scene[0].rule, (RULE_KEYS), 237, "db_get_intelli_rule_config",
               "db_set_intelli_rule_config",
               .save = SAVE("replace into intelli_rule_config (chan_no, scene_id, rule_name, rule_id, enable, rule_type, target_type, event_type, update_rule, sensitivity, size_filter_enable, size_filter_mode, size_filter_min_x, size_filter_min_y, size_filter_min_w, size_filter_min_h, size_filter_max_x, size_filter_max_y, size_filter_max_w, size_filter_max_h, handleType, alarmOutTriggered, email_capture_triggered, capture_triggered, triggerRecChan) values(%d, %d, '%q', %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, '%s');",
                            FIELDS(rule_name, enable, rule_type, target_type, event_type, update_rule, sensitivity,
                                   size_filter_enable, size_filter_mode, size_filter_min_x, size_filter_min_y,
                                   size_filter_min_w, size_filter_min_h, size_filter_max_x, size_filter_max_y,
                                   size_filter_max_w, size_filter_max_h, handleType, alarmOutTriggered,
                                   email_capture_triggered, capture_triggered),
                            COLONS(triggerRecChan)),
               .inner_set = true, .indexes = 3),

    // The rule's parameter block, in each of the three ways it can be meant: the rule's type tells which one counts.
    REPLACE_BY(intelli_rules, analytics.intelli[0].scene[0].rule, (RULE_KEYS, fourth("type")), 238,
               "db_get_intelli_rule_param_sets_config", "db_set_intelli_rule_param_sets_config",
               .says = {.load_row = "%G type(%k) is not valid\n"}, .rows = 3,
               .save = PUTS(PUT_BLOCK(1, 1, 0,
                                      "replace into intelli_rule_param_sets (chan_no, scene_id, rule_id, type, cross_direction, detection_mode, time_duration) values(%d, %d,  %d, %d, %u, 0, 0);",
                                      as("cross_direction", BITS(param.first_word, 0, 8))),
                            PUT_BLOCK(2, 2, 0,
                                      "replace into intelli_rule_param_sets (chan_no, scene_id, rule_id, type, cross_direction, detection_mode, time_duration) values(%d, %d,  %d, %d, 0, %u, %u);",
                                      as("detection_mode", BITS(param.first_word, 0, 8)),
                                      as("time_duration", F(param.second_word))),
                            PUT_BLOCK(3, 3, 0,
                                      "replace into intelli_rule_param_sets (chan_no, scene_id, rule_id, type, cross_direction, detection_mode, time_duration) values(%d, %d,  %d, %d, 0, 0, %u);",
                                      as("time_duration", F(param.first_word)))),
               .inner_set = true, .indexes = 3),

    // When a rule is in force.
    REPLACE_BY(intelli_rules, analytics.intelli[0].scene[0].rule, (RULE_KEYS), 239, "db_get_intelli_timesegment_info",
               "db_set_intelli_timesegment_info",
               .save = SAVE("replace into intelli_timesegment_info (chan_no, scene_id, rule_id, begin_end_time) values(%d, %d,  %d, '%s');",
                            as("begin_end_time", CODED(schedule.segment, (kTimes<PlainSegment, false>)))),
               .inner_set = true, .indexes = 3),

    // The area that a rule watches.
    REPLACE_BY(intelli_rules, analytics.intelli[0].scene[0].rule, (RULE_KEYS), 240, "db_get_intelli_polygon_info",
               "db_set_intelli_polygon_info",
               .save = SAVE("replace into intelli_polygon_info (chan_no, scene_id, rule_id, point_num, x, y) values(%d, %d,  %d, %d, '%s', '%s');",
                            F(polygon.point_num), COLONS(polygon.x), COLONS(polygon.y)),
               .inner_set = true, .indexes = 3),
};

}  // namespace intelli

// The smart detections: ten types on each channel, with four rules and four polygons each.
namespace smd {

constexpr Messages kSays{.save_middle = "input smd_type err:%d\n", .wrapper = ""};

constexpr Table kTables[] = {
    REPLACE_BY(per_channel_list, analytics.smd, (outer("chan_no"), inner("smd_type", 0)), 178,
               "db_get_smd_detection_cfg", "db_save_smd_detection_cfg", .single = "save_smd_detection_cfg_single",
               .save = SAVE("replace into smd_detection_basic_cfg (chan_no, smd_type, enable, handle_type, alarm_out_triggered, record_chan) values(%d, %d, %d, %d, %d, %llu);",
                            FIELDS(enable, handle_type, alarm_out_triggered, record_chan)),
               .load = SQL("select * from smd_detection_basic_cfg where smd_type < 10;"),
               .schedules = SCHEDULES(WEEKLY_BY(by_type, kFirstSmd, schedule)),
               .steps = STEPS(itself(2, "smd_detection_basic_cfg error for scene_no: %2\n"),
                              Step{"db_save_smd_detection_rule_cfg", 2,
                                   "smd_detection_rule_cfg error for scene_no: %2\n"},
                              Step{"db_save_smd_polygon_cfg", 2, "smd_polygon error for scene_no: %2\n"}),
               .indexes = 2, .worker_get = "db_get_smd_detection_basic_cfg",
               .worker_set = "db_save_smd_detection_basic_cfg_single"),

    REPLACE_BY(smd_lists, analytics.smd[0][0].rule, (outer("chan_no"), inner("smd_type", 0), third("idx")), 0,
               "db_get_smd_detection_cfg", "db_save_smd_detection_rule_cfg",
               .says = {.open = "smd_detection_rule_cfg error for scene_no: %2\n"},
               .save = SAVE("replace into smd_detection_rule_cfg (idx, chan_no, smd_type, enable, sensitivity, rate, cross_direction, duration, pan_tilt_pos, zoom_focus_value, pos_3d, target_type) values(%d, %d, %d, %d, %d, %d, %d, %d, '%s', '%s', '%s', %d);",
                            FIELDS(enable, sensitivity, rate, cross_direction, duration), COLONS(pan_tilt_pos),
                            COLONS(zoom_focus_value), COLONS(pos_3d), F(target_type)),
               .load = SQL("select * from smd_detection_rule_cfg where smd_type = %d and chan_no = %d order by idx;"),
               .inner_set = true, .indexes = 2, .worker_get = "db_get_smd_detection_rule_cfg"),

    REPLACE_BY(smd_lists, analytics.smd[0][0].polygon, (outer("chan_no"), inner("smd_type", 0), third("idx")), 0,
               "db_get_smd_detection_cfg", "db_save_smd_polygon_cfg",
               .says = {.open = "smd_polygon error for scene_no: %2\n"},
               .save = SAVE("replace into smd_polygon (idx, chan_no, smd_type, point_num, x_coords, y_coords) values(%d, %d, %d, %d, '%s', '%s');",
                            F(point_num), COLONS(x_coords), COLONS(y_coords)),
               .load = SQL("select * from smd_polygon where smd_type = %d and chan_no = %d;"), .inner_set = true,
               .indexes = 2, .worker_get = "db_get_smd_polygon_cfg"),
};

}  // namespace smd

constexpr std::span<const Table> kGroups[] = {shared::kTables, qor::kTables, intelli::kTables, smd::kTables};

}  // namespace

const Domain kSceneTables = kGroups;

}  // namespace dbshell
