#include "dbctl_output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

// Columns on a terminal: the characters of a UTF-8 text.
std::size_t width_of(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<uint8_t>(c) & 0xC0) != 0x80; }));
}

bool wants_colour() {
    const char* no_color = std::getenv("NO_COLOR");
    return (no_color == nullptr || *no_color == '\0') && isatty(STDOUT_FILENO) == 1;
}

void flatten(const Json& value, const std::string& path, TextTable& table) {
    if (!value.is_structured()) {
        table.add({path, value});
        return;
    }
    for (const auto& [key, inner] : value.items())
        flatten(inner, path.empty() ? key : path + "." + key, table);
}

}  // namespace

void add_format_options(CLI::App& command, Output& out) {
    auto* const json = command.add_flag("--json", out.json, "print JSON");
    command.add_flag("--plain", out.plain, "print lines for scripts: values between tabs, no headings")
        ->excludes(json);
}

std::string plain_text(const Json& value) {
    return value.is_null() ? "-" : value.is_string() ? value.get<std::string>() : value.dump();
}

void TextTable::print(const Output& out) const {
    switch (out.format()) {
        case Format::json:
            return print_line(json().dump(2));
        case Format::aligned:
            return print_aligned();
        case Format::plain:
            break;
    }
    for (const auto& row : rows_) {
        std::string line;
        for (const Json& value : row)
            line += (line.empty() ? "" : "\t") + plain_text(value);
        print_line(line);
    }
}

Json TextTable::json() const {
    Json array = Json::array();
    for (const auto& row : rows_) {
        Json object = Json::object();
        for (std::size_t i = 0; i < row.size(); ++i)
            object[headings_[i]] = row[i];
        array.push_back(object);
    }
    return array;
}

void TextTable::print_aligned() const {
    std::vector<std::vector<std::string>> lines{headings_};
    for (std::string& heading : lines[0])
        std::transform(heading.begin(), heading.end(), heading.begin(),
                       [](unsigned char c) { return std::toupper(c); });
    for (const auto& row : rows_)
        std::transform(row.begin(), row.end(), std::back_inserter(lines.emplace_back()), plain_text);
    std::vector<std::size_t> widths(headings_.size());
    for (const auto& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], width_of(line[i]));
    const bool colour = wants_colour();
    for (std::size_t n = 0; n < lines.size(); ++n) {
        std::string text;
        for (std::size_t i = 0; i < lines[n].size(); ++i) {
            text += lines[n][i];
            if (i + 1 < lines[n].size())
                text.append(widths[i] - width_of(lines[n][i]) + 2, ' ');
        }
        print_line(n == 0 && colour ? "\033[1m" + text + "\033[0m" : text);
    }
}

void print_object(const Json& object, const Output& out) {
    if (out.format() == Format::json)
        return print_line(object.dump(2));
    TextTable table({"item", "value"});
    flatten(object, "", table);
    table.print(out);
}

void print_line(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}
