// log: the records of the operation log, which docs/architecture.md describes.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "dbctl_commands.h"
#include "dbctl_output.h"
#include "device_paths.h"

namespace {

// A text header in the first 70 bytes, then records that each end with a newline.  The header names the end of
// the last record written; when that is not the end of the file, what lies behind it is older.
constexpr std::size_t kHeaderSize = 70;
constexpr std::string_view kPosition = "LOG_LAST_WRITE_POS:";

std::size_t last_write_position(std::string_view header) {
    const auto found = header.find(kPosition);
    if (found == std::string_view::npos)
        throw Failure(kNegativeReply, "the operation log has no header");
    header.remove_prefix(found + kPosition.size());
    std::size_t position = 0;
    std::from_chars(header.data(), header.data() + header.size(), position);
    return position;
}

// "[2024-", as every record starts.
bool starts_record(std::string_view line) {
    const auto digit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
    return line.size() > 6 && line[0] == '[' && std::all_of(line.begin() + 1, line.begin() + 5, digit) &&
           line[5] == '-';
}

void add_records(std::string_view text, TextTable& table) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto end = line.find(']');
        if (starts_record(line) && end != std::string_view::npos) {
            std::string_view message = line.substr(end + 1);
            message.remove_prefix(message.starts_with(' ') ? 1 : 0);
            table.add({escaped(line.substr(1, end - 1)), escaped(message)});
        } else if (!line.empty()) {
            table.add({nullptr, escaped(line)});
        }
    }
}

void print_log(const Output& out) {
    const std::string path = device_path("/devinfo/db_op_info.log");
    TextTable table({"time", "message"});
    std::ifstream file(path, std::ios::binary);
    if (file) {
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        const std::string_view all = content;
        if (all.size() < kHeaderSize)
            throw Failure(kNegativeReply, "the operation log is shorter than its header");
        const std::size_t position =
            std::clamp(last_write_position(all.substr(0, kHeaderSize)), kHeaderSize, all.size());
        // The first of the older records may have lost its beginning.
        std::string_view older = all.substr(position);
        while (!older.empty() && !starts_record(older))
            older.remove_prefix(std::min(older.find('\n'), older.size() - 1) + 1);
        add_records(older, table);
        add_records(all.substr(kHeaderSize, position - kHeaderSize), table);
    } else if (std::filesystem::exists(path)) {
        throw Failure(kNegativeReply, path + " cannot be read");
    }
    table.print(out);
}

}  // namespace

void add_log_command(CLI::App& app) {
    auto* const log = app.add_subcommand("log", "show the operation log, the oldest record first");
    const auto out = std::make_shared<Output>();
    add_format_options(*log, *out);
    log->callback([out] { print_log(*out); });
}
