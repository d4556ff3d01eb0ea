// The file format of the operation log, for its writer and its readers.
//
// A header of kLogHeaderSize bytes, then records up to byte kLogFileSize.  When one more would not fit, the
// records go on from behind the last one written, or from the header's end: what lies behind the last record is
// older, and the first of it may have lost its beginning.  The header is a text,
//   ***DB_LOG_INFO***\n  LOG_TOTAL_LEN:0\n  LOG_LAST_WRITE_POS:<offset just behind the last record>\n\n
// that does not fill it.  A record is "[YYYY-MM-DD hh:mm:ss] text\n" in local time.
#ifndef UNI_PROCESS_OPERATION_LOG_FORMAT_H
#define UNI_PROCESS_OPERATION_LOG_FORMAT_H

#include <array>
#include <optional>
#include <string>
#include <string_view>

inline constexpr int kLogFileSize = 2048;
inline constexpr int kLogHeaderSize = 70;

// The lines of a header, each with its line end.
[[nodiscard]] std::array<std::string, 3> log_header_lines(int total_length, int position);

// The offset behind the last record, by a header; at least kLogHeaderSize.  Empty: the header names none.
[[nodiscard]] std::optional<int> log_position(std::string_view header);

// "[YYYY-MM-DD hh:mm:ss]" of the local time.
[[nodiscard]] std::string log_time();

// A line without its line end, taken apart.
struct LogRecord {
    std::string_view time;  // without its brackets
    std::string_view text;
};

// Empty: the line has no time, so it is no record or has lost its beginning.
[[nodiscard]] std::optional<LogRecord> log_record(std::string_view line);

// What a record's text tells, in a sentence for the field; docs/field-log.md says more.  Empty: it is not known.
[[nodiscard]] std::string_view log_meaning(std::string_view text);

#endif
