// Exceptions, motion detection, picture naming.
#include "main/dbshell/catalogue.h"

namespace {

// A line of the motion grid: three values for each of its 16 cells, one value of all cells after another.
constexpr std::size_t kCells = 16;
constexpr auto kCellItems = [] {
    std::array<ListItem, kCells> items{};
    for (std::size_t cell = 0; cell < kCells; ++cell)
        items[cell] = {static_cast<uint16_t>(cell * sizeof(int32_t[3])), Kind::i32};
    return items;
}();
constexpr TextCodec kMotionLine{encode_list, decode_list, kCellItems, 3, sizeof(int32_t)};

constexpr Table kTables[] = {
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
};

}  // namespace

const std::span<const Table> kEventTables = kTables;
