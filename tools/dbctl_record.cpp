// tables, describe, get, set: what the tables are, and the values of the shared record.
#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <set>

#include "catalogue.h"
#include "dbctl_commands.h"
#include "dbctl_output.h"
#include "request_kinds.h"
#include "shared_objects.h"
#include "stored_format.h"

namespace {

using namespace dbshell;

constexpr const char* kMask = "******";

// ------------------------------------------------------------------------------------------- tables

Json name_or_null(std::string_view name) {
    return name.empty() ? Json(nullptr) : Json(std::string(name));
}

Json number_or_null(int number) {
    return number == 0 ? Json(nullptr) : Json(number);
}

// Each field once, with the rows of the list that store it.
struct Column {
    const Field* field;
    std::set<int> rows;
};

std::vector<Column> columns_of(const Table& table) {
    std::vector<Column> columns;
    Index index;
    for (int& row = index[table.row_level()]; row < table.row_count(); ++row)
        for (const Cell& cell : cells_of_row(table, index)) {
            auto found = std::find_if(columns.begin(), columns.end(),
                                      [&](const Column& c) { return c.field->name == cell.field->name; });
            if (found == columns.end())
                found = columns.insert(found, {cell.field, {}});
            found->rows.insert(row + 1);
        }
    return columns;
}

void print_tables(const Output& out) {
    TextTable table({"number", "table", "rows", "fields", "get", "set"});
    for (const Table* t : all_tables())
        table.add({number_or_null(t->number), std::string(t->name), rows_of(*t).size(), columns_of(*t).size(),
                   name_or_null(t->get), name_or_null(t->set)});
    table.print(out);
}

// ------------------------------------------------------------------------------------------- describe

std::string_view type_name(Kind kind) {
    constexpr std::string_view kNames[] = {"int8",   "uint8", "int16",  "uint16", "int32", "uint32", "int64",
                                           "uint64", "float", "double", "text",   "bytes", "bytes"};
    static_assert(std::size(kNames) == static_cast<std::size_t>(Kind::block) + 1);
    return kNames[static_cast<std::size_t>(kind)];
}

std::string type_of(const Field& field) {
    if (field.codec == nullptr || field.codec->group.empty())
        return std::string(type_name(field.kind));
    if (field.codec->group.size() == 1)
        return fmt::format("{}[{}]", type_name(field.codec->group[0].kind), field.codec->groups);
    return fmt::format("number[{}]", field.codec->groups * field.codec->group.size());
}

std::string encoding_of(const Field& field) {
    if (field.codec == nullptr)
        return field.kind == Kind::text ? "text" : "number";
    if (field.codec->group.empty())
        return "a form of its own";
    const auto [least, most] =
        std::minmax_element(field.codec->group.begin(), field.codec->group.end(),
                            [](const ListItem& a, const ListItem& b) { return a.width < b.width; });
    std::string digits = "numbers";
    if (most->width != 0)
        digits = least->width == most->width ? fmt::format("{} digits each", most->width)
                                             : fmt::format("{} to {} digits each", least->width, most->width);
    return field.codec->separator == 0
               ? digits
               : fmt::format("{}, each followed by '{}'", digits, field.codec->separator);
}

std::string level_name(const Table& table, int level) {
    if (level == 0 && table.layout.owner != Owner::none)
        return table.layout.owner == Owner::sensor    ? "sensor"
               : table.layout.owner == Owner::channel ? "channel"
                                                      : "element";
    if (level == table.row_level())
        return "row";
    return level > table.row_level() ? "place within the row" : fmt::format("index {}", level + 1);
}

std::string counts(const Table& table, const KeyColumn& key) {
    if (key.constant())
        return fmt::format("always {}", key.bias);
    std::string levels;
    for (int level = 0; level < kLevels; ++level)
        if (key.counts(level))
            levels += (levels.empty() ? "" : " and ") + level_name(table, level);
    return fmt::format("{}, from {}{}", levels, key.bias, key.within ? " in its block" : "");
}

std::vector<std::string> kinds_that_save(const Table& table) {
    std::vector<std::string> names;
    for (const RequestKind& kind : request_kinds()) {
        const bool by_name = std::any_of(
            kind.functions.begin(), kind.functions.end(),
            [&](std::string_view f) { return !f.empty() && (f == table.set || f == single_name(table)); });
        const bool by_number =
            kind.run == Run::single_table && table.number != 0 && kind.table == table.number;
        if (by_name || by_number)
            names.emplace_back(kind.name);
    }
    if (table.has_registry_set())
        names.emplace_back(find_request_kind(EN_UPDATE_ONE_TABLE_RECORD)->name);
    return names;
}

const std::vector<std::string> kColumnHeadings = {"field",     "type",   "bytes", "encoding",
                                                  "encrypted", "secret", "rows"};

Json description_of(const Table& table) {
    Json keys = Json::object();
    for (const KeyColumn& key : table.keys)
        keys[std::string(key.name)] = counts(table, key);
    TextTable columns(kColumnHeadings);
    for (const Column& column : columns_of(table)) {
        const Field& f = *column.field;
        columns.add({std::string(f.name), type_of(f), f.size, encoding_of(f), f.encrypted != 0, f.secret(),
                     row_ranges(std::vector(column.rows.begin(), column.rows.end()), table.row_count())});
    }
    Json description = Json::object();
    description["table"] = std::string(table.name);
    description["number"] = number_or_null(table.number);
    description["get"] = name_or_null(table.get);
    description["set"] = name_or_null(table.set);
    description["single"] = name_or_null(single_name(table));
    description["strategy"] = std::string(word_for(table.strategy));
    description["channels"] = table.layout.owner == Owner::channel ? Json(table.count(0)) : Json(nullptr);
    description["sensors"] = table.layout.owner == Owner::sensor ? Json(table.count(0)) : Json(nullptr);
    description["elements"] = table.layout.owner == Owner::element ? Json(table.count(0)) : Json(nullptr);
    description["rows"] = table.row_count();
    description["keys"] = keys;
    description["saved_by"] = kinds_that_save(table);
    description["columns"] = columns.json();
    return description;
}

// "idx (channel, from 1), row (row, from 0)"; the elements of an array between commas.
std::string in_words(const Json& value) {
    if (!value.is_structured())
        return plain_text(value);
    std::string text;
    for (const auto& [name, inner] : value.items())
        text += (text.empty() ? "" : ", ") +
                (value.is_object() ? fmt::format("{} ({})", name, plain_text(inner)) : plain_text(inner));
    return text;
}

void print_description(const Json& description, const Output& out) {
    TextTable head({"item", "value"}), columns(kColumnHeadings);
    for (const auto& [key, value] : description.items())
        if (key != "columns" && !value.empty())
            head.add({key, in_words(value)});
    for (const Json& column : description["columns"]) {
        std::vector<Json> row;
        for (const auto& [name, value] : column.items())
            row.push_back(value.is_boolean() ? Json(value.get<bool>() ? "yes" : "no") : value);
        columns.add(row);
    }
    head.print(out);
    if (out.format() == Format::aligned)
        print_line("");
    columns.print(out);
}

void describe(const std::string& name, const Output& out) {
    Json all = Json::array();
    for (const Table* table : tables_named(name))
        all.push_back(description_of(*table));
    if (out.json)
        return print_line(all.size() == 1 ? all[0].dump(2) : all.dump(2));
    for (const Json& description : all) {
        if (&description != &all[0] && out.format() == Format::aligned)
            print_line("");
        print_description(description, out);
    }
}

// ------------------------------------------------------------------------------------------- get

struct GetOptions {
    Output out;
    std::string address;
    bool show_secrets = false;
};

// The cells of one entry as JSON: a value, the values of several rows, the fields of a row, or the whole table.
Json entry_json(const DEVICECONFIG& record, const std::vector<Cell>& cells, const Address& address,
                bool show_secrets) {
    const auto value = [&](const Cell& cell) {
        return cell.field->secret() && !show_secrets ? Json(nullptr) : cell_json(record, cell);
    };
    if (address.field.empty() && address.indexes.empty())
        return table_json(record, *cells[0].table, show_secrets);
    if (!address.field.empty() && cells.size() == 1)
        return value(cells[0]);
    Json result = address.field.empty() ? Json::object() : Json::array();
    for (const Cell& cell : cells) {
        if (address.field.empty())
            result[std::string(cell.field->name)] = value(cell);
        else
            result.push_back(value(cell));
    }
    return result;
}

Json get_json(const DEVICECONFIG& record, const std::vector<Cell>& cells, const Address& address,
              bool show_secrets) {
    Json by_entry = Json::object();
    for (auto first = cells.begin(); first != cells.end();) {
        const auto last =
            std::find_if(first, cells.end(), [&](const Cell& c) { return c.table != first->table; });
        by_entry[table_label(*first->table)] = entry_json(record, {first, last}, address, show_secrets);
        first = last;
    }
    return by_entry.size() == 1 ? by_entry.front() : by_entry;
}

void get(const GetOptions& options) {
    const Address address = parse_address(options.address);
    const std::vector<Cell> cells = find_cells(address);
    const SharedRecord shared = SharedRecord::attach();
    const DEVICECONFIG& record = *shared.get();
    if (options.out.json)
        return print_line(get_json(record, cells, address, options.show_secrets).dump(2));
    const auto shown = [&](const Cell& cell) {
        return cell.field->secret() && !options.show_secrets ? kMask : cell_text(record, cell);
    };
    if (!address.field.empty() && cells.size() == 1)
        return print_line(shown(cells[0]));
    TextTable table({"address", "value"});
    for (const Cell& cell : cells)
        table.add({address_of(cell), shown(cell)});
    table.print(options.out);
}

// ------------------------------------------------------------------------------------------- set

struct SetOptions {
    std::string address;
    std::optional<std::string> value;
};

std::string standard_input() {
    std::string text{std::istreambuf_iterator<char>(std::cin), {}};
    if (text.ends_with('\n'))
        text.pop_back();
    return text;
}

void set(SetOptions options) {
    if (const auto sign = options.address.find('='); !options.value && sign != std::string::npos) {
        options.value = options.address.substr(sign + 1);
        options.address.resize(sign);
    }
    const Cell cell = find_cell(parse_address(options.address));
    const bool told = options.value && *options.value != "-";
    if (told && cell.field->secret())
        throw Failure(kUsage, address_of(cell) +
                                  " is secret; give its value on standard input, not on the command line");
    const SharedRecord shared = SharedRecord::attach();
    set_cell(*shared.get(), cell, told ? *options.value : standard_input());
}

}  // namespace

void add_record_commands(CLI::App& app) {
    auto* const tables = app.add_subcommand("tables", "list the tables");
    const auto tables_out = std::make_shared<Output>();
    add_format_options(*tables, *tables_out);
    const auto stored = std::make_shared<bool>(false);
    tables
        ->add_flag("--stored-format", *stored,
                   "what each column holds of the record and how, the text of docs/stored-format.txt")
        ->excludes("--json")
        ->excludes("--plain");
    tables->callback([tables_out, stored] {
        if (*stored)
            std::cout << stored_format();
        else
            print_tables(*tables_out);
    });

    auto* const describe_command =
        app.add_subcommand("describe", "tell what a table stores and who saves it");
    const auto describe_out = std::make_shared<Output>();
    const auto name = std::make_shared<std::string>();
    describe_command->add_option("table", *name, "a table, its number or one of its functions")
        ->required()
        ->type_name("TABLE");
    add_format_options(*describe_command, *describe_out);
    describe_command->callback([describe_out, name] { describe(*name, *describe_out); });

    auto* const get_command = app.add_subcommand("get", "show values of the shared record");
    const auto get_options = std::make_shared<GetOptions>();
    get_command->add_option("address", get_options->address, "what to show")
        ->required()
        ->type_name("ADDRESS");
    get_command->add_flag("--show-secrets", get_options->show_secrets, "show passwords and keys too");
    add_format_options(*get_command, get_options->out);
    get_command->callback([get_options] { get(*get_options); });

    auto* const set_command = app.add_subcommand(
        "set", "change a value of the shared record; `call` then stores its table in the database");
    const auto set_options = std::make_shared<SetOptions>();
    set_command->add_option("address", set_options->address, "one value")->required()->type_name("ADDRESS");
    set_command
        ->add_option("value", set_options->value,
                     "a number; a text, with \\xNN for any byte; or the numbers of a list between commas.\n"
                     "ADDRESS=VALUE will do too.\n"
                     "Absent or -: read from standard input, as secrets must be")
        ->type_name("VALUE");
    set_command->callback([set_options] { set(*set_options); });
}
