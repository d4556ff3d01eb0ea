#include "created_table.h"

#include <sqlite3.h>

#include <algorithm>

#include "schema.h"

namespace {

bool same_name(std::string_view a, std::string_view b) {
    return a.size() == b.size() && sqlite3_strnicmp(a.data(), b.data(), static_cast<int>(a.size())) == 0;
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// The first word of a text: what stands before a blank or a parenthesis.
std::string_view first_word(std::string_view text) {
    return text.substr(0, text.find_first_of(" ("));
}

template <std::size_t N>
bool is_one_of(std::string_view word, const std::string_view (&words)[N]) {
    return std::any_of(std::begin(words), std::end(words),
                       [word](std::string_view w) { return same_name(w, word); });
}

// "varchar(64) not null" is "varchar(64)".
std::string_view type_of(std::string_view declaration) {
    static constexpr std::string_view kConstraints[] = {
        "primary", "not", "null", "unique", "check", "default", "references", "collate", "constraint"};
    for (std::size_t start = 0; start < declaration.size();) {
        if (is_one_of(first_word(declaration.substr(start)), kConstraints))
            return trimmed(declaration.substr(0, start));
        start =
            declaration.find_first_not_of(' ', std::min(declaration.find(' ', start), declaration.size()));
    }
    return declaration;
}

// Adds what one item between the parentheses declares, if it is a column.
void add_column(CreatedTable& table, std::string_view item) {
    static constexpr std::string_view kTableConstraints[] = {"primary", "unique", "check", "foreign",
                                                             "constraint"};
    item = trimmed(item);
    const std::string_view name = first_word(item);
    if (!is_one_of(name, kTableConstraints))
        table.columns.push_back({name, type_of(trimmed(item.substr(name.size())))});
}

CreatedTable read_statement(std::string_view statement) {
    constexpr std::string_view kBeforeName = "EXISTS ";
    CreatedTable table;
    table.statement = statement;
    table.name = first_word(statement.substr(statement.find(kBeforeName) + kBeforeName.size()));
    std::size_t item = statement.find('(') + 1;
    int depth = 1;
    for (std::size_t i = item; depth > 0 && i < statement.size(); ++i) {
        depth += statement[i] == '(' ? 1 : statement[i] == ')' ? -1 : 0;
        if (depth == 0 || (depth == 1 && statement[i] == ',')) {
            add_column(table, statement.substr(item, i - item));
            item = i + 1;
        }
    }
    return table;
}

std::vector<CreatedTable> read_list() {
    std::vector<CreatedTable> tables;
    for (std::string_view entry : create_list())
        while (!(entry = trimmed(entry)).empty()) {
            const std::size_t length = std::min(entry.find(';'), entry.size() - 1) + 1;
            tables.push_back(read_statement(entry.substr(0, length)));
            entry.remove_prefix(length);
        }
    return tables;
}

}  // namespace

const CreatedColumn* CreatedTable::column(std::string_view column) const {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const CreatedColumn& c) { return same_name(c.name, column); });
    return found == columns.end() ? nullptr : &*found;
}

std::span<const CreatedTable> created_tables() {
    static const std::vector<CreatedTable> tables = read_list();
    return tables;
}

const CreatedTable* created_table(std::string_view name) {
    const auto tables = created_tables();
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const CreatedTable& t) { return same_name(t.name, name); });
    return found == tables.end() ? nullptr : &*found;
}
