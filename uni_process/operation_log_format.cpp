#include "operation_log_format.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace {

constexpr std::string_view kPositionName = "LOG_LAST_WRITE_POS";  // a colon and digits follow
constexpr std::size_t kPositionDigits = 4;
constexpr std::string_view kTimeForm = "[0000-00-00 00:00:00]";  // a digit for each 0

// By a part that no other record has.
struct Meaning {
    std::string_view part, sentence;
};
constexpr Meaning kMeanings[] = {
    {"]not exist[", "the file is missing, or cannot be read and written; the number is errno"},
    {"]is empty", "the file has no content, or cannot be opened"},
    {"]format err", "the file is damaged and could not be repaired by a dump and reload"},
    {"]key data empty", "the file has no network settings: a table of them has no rows or is missing"},
    {"rows put back",
     "rows that nobody had written were other ones than stored; the backup's took their place"},
    {"]rotten.Restored",
     "more than a row or two had changed with nobody writing; the backup was copied over it"},
    {"]rotten.Made anew",
     "more than a row or two had changed with nobody writing; made anew from the record"},
    {"]digest rotten", "the seal of the file had changed with nobody writing; its rows had not"},
    {"]rotten", "rows have changed with nobody writing, and no backup could mend them"},
    {"Main Db is broken", "the start found the main database broken, and looked at the backup"},
    {"db_restore failed", "the backup could not stand in for the main database"},
    {"]restored", "what the backup could not do at the start it did at a later request"},
    {"Db version is ", "the database had no usable version and was made anew from the record"},
    {"Db patch[", "the upgrade stopped at the version in the second bracket; the database was made anew"},
    {"db_reconstruct.Open ", "the new database could not take the old one's place, which stays"},
    {"db_reconstruct.set_alldata_to_db failed", "the new database could not be filled; the old one stays"},
    {"db_reconstruct.db_update_version failed", "the new database could not be stamped; the old one stays"},
    {"db_reconstruct failed.", "the database that could not be upgraded could not be made anew either"},
    {"create table[", "a table of a new database could not be made"},
    {"tables_fun[", "a table could not be stored, so that a store of everything was rolled back"},
};

}  // namespace

std::string_view log_meaning(std::string_view text) {
    const auto found = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                    [&](const Meaning& m) { return text.find(m.part) != std::string::npos; });
    return found == std::end(kMeanings) ? std::string_view{} : found->sentence;
}

std::array<std::string, 3> log_header_lines(int total_length, int position) {
    return {"***DB_LOG_INFO***\n", "LOG_TOTAL_LEN:" + std::to_string(total_length) + "\n",
            std::string(kPositionName) + ":" + std::to_string(position) + "\n\n"};
}

std::optional<int> log_position(std::string_view header) {
    header = header.substr(0, header.find('\0'));
    const auto found = header.find(kPositionName);
    if (found == std::string_view::npos)
        return {};
    header.remove_prefix(std::min(found + kPositionName.size() + 1, header.size()));
    const std::string digits(header.substr(0, kPositionDigits));
    return std::max(kLogHeaderSize, static_cast<int>(std::strtol(digits.c_str(), nullptr, 10)));
}

std::string log_time() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "[%Y-%m-%d %H:%M:%S]", &local);
    return {text, length};
}

std::optional<LogRecord> log_record(std::string_view line) {
    const auto fits = [](char form, char c) { return form == '0' ? c >= '0' && c <= '9' : c == form; };
    if (line.size() < kTimeForm.size() || !std::equal(kTimeForm.begin(), kTimeForm.end(), line.begin(), fits))
        return {};
    std::string_view text = line.substr(kTimeForm.size());
    text.remove_prefix(text.starts_with(' ') ? 1 : 0);
    return LogRecord{line.substr(1, kTimeForm.size() - 2), text};
}
