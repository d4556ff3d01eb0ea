// log: the records of the operation log (operation_log_format.h).
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "dbctl_commands.h"
#include "dbctl_output.h"
#include "device_paths.h"
#include "operation_log_format.h"
#include "well_known.h"

namespace {

void add_records(std::string_view text, TextTable& table, bool explained) {
    const auto add = [&](Json time, std::string_view message) {
        std::vector<Json> row{std::move(time), escaped(message)};
        if (explained)
            row.emplace_back(log_meaning(message));
        table.add(std::move(row));
    };
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (const auto record = log_record(line))
            add(escaped(record->time), record->text);
        else if (!line.empty())
            add(nullptr, line);
    }
}

}  // namespace

TextTable operation_log(bool explained) {
    const std::string path = device_path(kOperationLogFile);
    TextTable table(explained ? std::vector<std::string>{"time", "message", "meaning"}
                              : std::vector<std::string>{"time", "message"});
    if (std::filesystem::exists(path) && !std::filesystem::is_regular_file(path))
        throw Failure(kNegativeReply, path + " is no file");  // reading a pipe would have no end
    std::ifstream file(path, std::ios::binary);
    if (file) {
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        const std::string_view all = content;
        if (all.size() < kLogHeaderSize)
            throw Failure(kNegativeReply, "the operation log is shorter than its header");
        const auto named = log_position(all.substr(0, kLogHeaderSize));
        if (!named)
            throw Failure(kNegativeReply, "the operation log has no header");
        const std::size_t position = std::min(static_cast<std::size_t>(*named), all.size());
        std::string_view older = all.substr(position);
        while (!older.empty() && !log_record(older.substr(0, older.find('\n'))))
            older.remove_prefix(std::min(older.find('\n'), older.size() - 1) + 1);
        add_records(older, table, explained);
        add_records(all.substr(kLogHeaderSize, position - kLogHeaderSize), table, explained);
    } else if (std::filesystem::exists(path)) {
        throw Failure(kNegativeReply, path + " cannot be read");
    }
    return table;
}

void add_log_command(CLI::App& app) {
    auto* const log = app.add_subcommand("log", "show the operation log, the oldest record first");
    const auto out = std::make_shared<Output>();
    add_format_options(*log, *out);
    log->callback([out] { operation_log(false).print(*out); });
}
