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

void add_records(std::string_view text, TextTable& table) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (const auto record = log_record(line)) {
            table.add({escaped(record->time), escaped(record->text)});
        } else if (!line.empty()) {
            table.add({nullptr, escaped(line)});
        }
    }
}

void print_log(const Output& out) {
    const std::string path = device_path(kOperationLogFile);
    TextTable table({"time", "message"});
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
        add_records(older, table);
        add_records(all.substr(kLogHeaderSize, position - kLogHeaderSize), table);
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
