// Weekly schedules in their one table, and the storage card's two tables.
#include "core_fixture.h"
#include "db_uni_save_interface.h"

namespace {

using testing::HasSubstr;

class Schedules : public Core {
  protected:
    static std::string zeros(std::size_t count) {
        std::string text;
        while (count-- > 0)
            text += "0:";
        return text;
    }
    // The first day's first and the last day's last segment.
    static void fill(auto& schedule) {
        std::memset(&schedule, 0, sizeof schedule);
        std::memset(&schedule.segment[0][0].begin, 255, 4);
        schedule.segment[0][0].end = 1;
        schedule.segment[6][7].begin = 2;
        schedule.segment[6][7].end = 3;
    }
    const std::string unsigned_ = "4294967295:1:" + zeros(108) + "2:3:",
                      signed_ = "-1:1:" + zeros(108) + "2:3:";
    PlainSchedule plain_;
};

TEST_F(Schedules, EachSaverHasItsRowsAndItsText) {
    VehicleSchedule vehicle;
    RecordSchedule& recorded = r_.event.record[0].schedule;
    WholeDaySchedule& capture = r_.event.auto_capture[0].schedule;
    WholeDaySchedule& tracking = r_.dome.tracking.schedule;
    fill(plain_);
    fill(vehicle);
    fill(recorded);
    fill(capture);
    fill(tracking);
    recorded.day[6] = {65535, 255, 0};
    recorded.segment[0][1].record_type = 200;
    capture.whole_day[1] = tracking.whole_day[1] = 254;
    const std::string days = "0:254:0:0:0:0:0:";
    const struct {
        int type;
        std::string row;
        std::function<int()> save, load;
    } cases[] = {
        {9, "1|0|NULL|NULL||||" + unsigned_, [&] { return db_save_timeseg(&plain_, kVideoLoss, 0); }, {}},
        {2,
         "NULL|16|NULL|NULL||||" + unsigned_,
         [&] { return db_save_alarm_timeseg(&plain_, kAlarmInput, 16); },
         {}},
        {21,
         "NULL|0|NULL|NULL||||" + unsigned_,
         [&] { return db_save_vehicle_timeseg(&vehicle, kVehicle); },
         {}},
        {1, "1|0|NULL|NULL|0:200:" + zeros(54) + "|" + zeros(6) + "65535:|" + zeros(6) + "255:|" + signed_,
         [&] { return db_save_record_alarmtime(&recorded, 0); }, db_get_record_alarmtime},
        {18, "1|NULL|NULL|NULL|NULL|" + days + "|NULL|" + signed_,
         [&] { return db_save_timing_capture_timeseg(&capture, 0); }, db_get_timing_capture_timeseg},
        {17, "NULL|NULL|NULL|NULL|NULL|" + days + "|NULL|" + signed_,
         [&] { return db_save_intelligent_track_schedule(&tracking); }, db_get_intelligent_track_schedule},
        {34, "1|NULL|NULL|NULL|NULL|NULL|NULL|" + signed_,
         [&] { return db_save_face_snap_schedule(&plain_, 0); }, db_get_face_snap_schedule},
        {12, "1|NULL|10|16|NULL|NULL|NULL|" + signed_,
         [&] { return db_save_alarmtime_config(&plain_, 9, 15, 0); },
         [] { return run("db_get_alarmtime_config"); }},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.save(), 0) << c.type;
        EXPECT_EQ(c.save(), 0) << c.type;  // the row is there now
        EXPECT_EQ(query("select chan_no, alarm_no, scene, rule, auxiliary_type, whole_day, whole_day_type, "
                        "begin_end_time from week_config_list where process_type = " +
                        std::to_string(c.type)),
                  c.row);
    }
    const auto saved = std::make_unique<DEVICECONFIG>(r_);
    wipe();
    for (const auto& c : cases)
        EXPECT_EQ(c.load ? c.load() : 0, 0) << c.type;
    EXPECT_EQ(std::memcmp(&recorded, &saved->event.record[0].schedule, sizeof recorded), 0);
    EXPECT_EQ(std::memcmp(&capture, &saved->event.auto_capture[0].schedule, sizeof capture), 0);
    EXPECT_EQ(std::memcmp(&tracking, &saved->dome.tracking.schedule, sizeof tracking), 0);
    EXPECT_EQ(std::memcmp(&r_.analytics.face_snap[0].schedule, &plain_, sizeof plain_), 0);
    EXPECT_EQ(std::memcmp(&r_.analytics.qor_scene[0][9].rule[15].schedule, &plain_, sizeof plain_), 0);

    sql("insert into week_config_list(process_type, chan_no) values(9, 1);");  // a duplicate is updated, too
    EXPECT_EQ(db_save_timeseg(&plain_, kVideoLoss, 0), 0);
    EXPECT_EQ(query("select count(begin_end_time) from week_config_list where process_type = 9"), "2");
}

TEST_F(Schedules, SaversRefuseWhatHasNoRow) {
    fill(plain_);
    EXPECT_THAT(logged([&] { EXPECT_EQ(db_save_timeseg(&plain_, 9, 1), -1); }),
                HasSubstr("invalid chan_no: 1\n"));
    EXPECT_EQ(db_save_face_snap_schedule(&plain_, -1), -1);
    EXPECT_EQ(db_save_alarmtime_config(&plain_, 0, 0, 1), -1);
    for (const int type : {0, -1, 36, INT_MAX}) {
        EXPECT_EQ(db_save_timeseg(&plain_, type, 0), -1) << type;
        EXPECT_EQ(db_save_alarm_timeseg(&plain_, type, 1), -1) << type;
    }
    EXPECT_THAT(logged([] { EXPECT_EQ(db_save_timeseg(nullptr, 9, 0), -1); }),
                HasSubstr("invalid input param\n"));
    EXPECT_EQ(query("select count(*) from week_config_list"), "0");
    sql("create trigger t before update on week_config_list begin select raise(fail, ''); end;");
    EXPECT_THAT(logged([&] { EXPECT_EQ(db_save_timeseg(&plain_, 9, 0), -1); }),
                HasSubstr("update week_config_list error\n"));
}

// Where the homes lie is in the committed description of the stored format.  A type with a loader of its own is that
// loader's.
TEST_F(Schedules, EveryProcessTypeIsLoadedIntoItsHomes) {
    for (int type = -1; type <= kLastProcessType + 1; ++type) {
        SCOPED_TRACE(type);
        const bool by_alarm = type == kAlarmInput || type == 3 || type == 6;
        sql("delete from week_config_list; insert into week_config_list(process_type, alarm_no, scene, rule, "
            "begin_end_time) values(" +
            std::to_string(type) + ", 2, 1, 1, '4294967295:8:9:');");
        wipe();
        EXPECT_EQ(run("db_get_week_list"), 0);
        std::set<std::size_t> homes;
        for (const ScheduleHome& home : schedule_homes())
            if (type >= home.process_type && type < home.process_type + home.types &&
                schedule_form(type).table.get.empty())
                homes.insert(home.offset + (by_alarm ? home.stride : 0) +
                             static_cast<std::size_t>(type - home.process_type) * home.type_stride);
        const auto* bytes = reinterpret_cast<const unsigned char*>(record_.get());
        for (const std::size_t home : homes)
            EXPECT_EQ(std::memcmp(bytes + home, "\xff\xff\xff\xff\x8\0\0\0", 8), 0);
        EXPECT_EQ(std::count(bytes, bytes + sizeof r_, 0),
                  static_cast<std::ptrdiff_t>(sizeof r_) - 6 * std::ssize(homes));
    }
}

TEST_F(Schedules, RowsOutOfRangeAreSkipped) {
    sql("insert into week_config_list(process_type, chan_no, alarm_no, scene, rule, begin_end_time) values"
        "(9, 2, 0, 0, 0, '9:'),(2, 1, 17, 0, 0, '9:'),(2, 1, 0, 0, 0, '9:'),(2, 1, 1, 0, 0, '5:6'),(9, 1, 0, "
        "0, 0, null),"
        "(12, 1, 0, 11, 1, '9:'),(12, 1, 0, 1, 17, '9:'),(12, 1, 0, 0, 1, '9:'),(12, 1, 0, 2, 3, '5:'),(1, "
        "2, 0, 0, 0, '9:')");
    const auto& alarm = r_.event.alarm_in[0].schedule.segment[0];
    r_.event.alarm_in[0].schedule.segment[0][1].begin = r_.event.video_loss[0].schedule.segment[0][0].begin =
        77;
    const auto log = logged([] {
        EXPECT_EQ(run("db_get_week_list"), 0);
        EXPECT_EQ(run("db_get_alarmtime_config"), 0);
        EXPECT_EQ(db_get_record_alarmtime(), 0);
    });
    for (const char* message : {"invalid chan_no(1) for row_no(0)\n", "invalid alarm_no: 16\n",
                                "invalid alarm_no: -1\n", "db_get_record_alarmtime] invalid chan_no: 1\n"})
        EXPECT_THAT(log, HasSubstr(message));
    EXPECT_TRUE(alarm[0].begin == 5 && alarm[0].end == 6 && alarm[1].begin == 77);
    EXPECT_EQ(r_.event.video_loss[0].schedule.segment[0][0].begin, 77u);
    EXPECT_EQ(r_.analytics.qor_scene[0][1].rule[2].schedule.segment[0][0].begin, 5u);
    EXPECT_EQ(r_.analytics.qor_scene[0][0].rule[0].schedule.segment[0][0].begin, 0u);
}

TEST_F(Schedules, StorageCard) {
    db_handle db = get_db_handle();
    ExceptionEntry exception{1, 2, 3, 4294967295};
    fill(plain_);
    EXPECT_EQ(db_set_exception_comm(db, 1, &exception), 0);
    EXPECT_EQ(db_set_time_info(db, 1, &plain_), 0);
    for (const int type : {0, 2}) {
        EXPECT_EQ(db_set_time_info(db, type, &plain_), -1);
        EXPECT_EQ(db_get_exception_comm(db, type, &exception), -1);
    }
    EXPECT_EQ(db_set_exception_comm(nullptr, 1, &exception), -1);
    EXPECT_EQ(db_get_time_info(db, 1, nullptr), -1);
    EXPECT_THAT(logged([&] { db_set_time_info(db, 2, &plain_); }), HasSubstr("err, type = 2(0-2) \n"));
    EXPECT_EQ(query("select * from exception_list_comm"), "1|1|2|3|4294967295");
    EXPECT_EQ(query("select * from timesegment_comm_info"), "1|" + signed_);
    sql(spoiled("exception_list_comm") + spoiled("timesegment_comm_info"));
    EXPECT_EQ(db_get_exception_comm(db, 1, &exception), -2);
    EXPECT_EQ(db_set_exception_comm(db, 1, &exception), -4);
    EXPECT_EQ(db_set_time_info(db, 1, &plain_), -1);
}

}  // namespace
