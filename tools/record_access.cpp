#include "record_access.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <random>
#include <utility>

// Behind the others: the words of the catalogue are macros.
#include "catalogue.h"

namespace {

using Reason = AccessError::Reason;

template <class... Args>
[[noreturn]] void refuse(Reason reason, fmt::format_string<Args...> format, Args&&... args) {
    throw AccessError(reason, fmt::format(format, std::forward<Args>(args)...));
}

const std::byte* bytes_of(const DEVICECONFIG& record) {
    return reinterpret_cast<const std::byte*>(&record);
}

std::byte* bytes_of(DEVICECONFIG& record) {
    return reinterpret_cast<std::byte*>(&record);
}

// ------------------------------------------------------------------------------------------- numbers

struct Range {
    int64_t low;
    uint64_t high;
};

template <class T>
constexpr Range range() {
    return {static_cast<int64_t>(std::numeric_limits<T>::min()),
            static_cast<uint64_t>(std::numeric_limits<T>::max())};
}

Range range_of(Kind kind) {
    switch (kind) {
        case Kind::i8:
            return range<int8_t>();
        case Kind::u8:
            return range<uint8_t>();
        case Kind::i16:
            return range<int16_t>();
        case Kind::u16:
            return range<uint16_t>();
        case Kind::i32:
            return range<int32_t>();
        case Kind::u32:
            return range<uint32_t>();
        case Kind::i64:
            return range<int64_t>();
        case Kind::u64:
            return {0, std::numeric_limits<uint64_t>::max()};
        case Kind::text:
        case Kind::coded:
        case Kind::block:
            break;
    }
    return {0, 0};
}

// A number of a list as its text has it.
Kind shown_kind(const TextCodec& codec, const ListItem& item) {
    return codec.is_signed && item.kind == Kind::u32 ? Kind::i32 : item.kind;
}

Range range_of(const TextCodec& codec, const ListItem& item) {
    Range range = range_of(shown_kind(codec, item));
    if (codec.separator == 0) {  // no more digits than the text has room for
        uint64_t limit = 1;
        for (int i = 0; i < item.width; ++i)
            limit *= 10;
        range = {0, std::min(range.high, limit - 1)};
    }
    return range;
}

Json number_json(Kind kind, int64_t number) {
    if (kind == Kind::u64)
        return static_cast<uint64_t>(number);
    return kind == Kind::i32 ? static_cast<int32_t>(number) : number;
}

int64_t parse_number(std::string_view text, Range range, std::string_view what) {
    const bool negative = text.starts_with('-');
    std::string_view digits = text.substr(negative ? 1 : 0);
    const int base = digits.starts_with("0x") || digits.starts_with("0X") ? 16 : 10;
    if (base == 16)
        digits.remove_prefix(2);
    uint64_t magnitude = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, base);
    if (digits.empty() || end != digits.data() + digits.size() || error == std::errc::invalid_argument)
        refuse(Reason::bad_value, "{}: \"{}\" is no number", what, escaped(text));
    const uint64_t below_zero = 0 - static_cast<uint64_t>(range.low);
    if (error != std::errc{} || magnitude > (negative ? below_zero : range.high))
        refuse(Reason::bad_value, "{}: {} is outside {} to {}", what, text, range.low, range.high);
    return static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
}

// ------------------------------------------------------------------------------------------- texts

// The length of the UTF-8 character that the bytes start with, 0 when they start with none.
std::size_t character_length(std::string_view bytes, char32_t& character) {
    const auto lead = static_cast<uint8_t>(bytes[0]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || bytes.size() < length)
        return 0;
    character = length == 1 ? lead : lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<uint8_t>(bytes[i]);
        if ((next & 0xC0) != 0x80)
            return 0;
        character = character << 6 | (next & 0x3Fu);
    }
    const bool overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    return overlong || surrogate || character > 0x10FFFF ? 0 : length;
}

// Control characters would act on a terminal; those of Unicode reorder or hide what follows.
bool printable(char32_t c) {
    return c >= 0x20 && !(c >= 0x7F && c < 0xA0) && !(c >= 0x200B && c < 0x2010) &&
           !(c >= 0x2028 && c < 0x202F) && !(c >= 0x2060 && c < 0x2070) && c != 0xFEFF;
}

std::string unescaped(std::string_view text, std::string_view what) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
        } else if (text.substr(i + 1, 1) == "\\") {
            bytes += '\\';
            ++i;
        } else {
            unsigned value = 0;
            const std::string_view digits = text.substr(std::min(i + 2, text.size()), 2);
            const auto end = digits.data() + digits.size();
            if (text.substr(i + 1, 1) != "x" || digits.size() != 2 ||
                std::from_chars(digits.data(), end, value, 16).ptr != end)
                refuse(Reason::bad_value,
                       "{}: a backslash stands for itself only before another one, or begins \\xNN", what);
            bytes += static_cast<char>(value);
            i += 3;
        }
    }
    return bytes;
}

// A copy of the field, which another process may write meanwhile.
std::vector<std::byte> copy_of(const DEVICECONFIG& record, const Cell& cell) {
    const std::byte* at = bytes_of(record) + cell.offset;
    return {at, at + cell.field->size};
}

std::string encoded(const TextCodec& codec, const std::byte* member) {
    std::string text;
    codec.encode(codec, member, text);
    return text;
}

// Calls `visit` with the item and its address for every number of a list, in the text's order.
template <class Visit>
void for_each_item(const TextCodec& codec, std::byte* member, Visit visit) {
    for (unsigned g = 0; g < codec.groups; ++g, member += codec.group_stride)
        for (const ListItem& item : codec.group)
            visit(item, member + item.offset);
}

void set_list(const TextCodec& codec, std::string_view text, std::byte* member, std::string_view what) {
    constexpr std::string_view kSeparators = ", \t[]";
    std::vector<std::string_view> items;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
        if (text.empty())
            break;
        const std::string_view item = text.substr(0, text.find_first_of(kSeparators));
        items.push_back(item);
        text.remove_prefix(item.size());
    }
    const std::size_t wanted = codec.groups * codec.group.size();
    if (items.size() != wanted)
        refuse(Reason::bad_value, "{}: it holds {} numbers, and here are {}", what, wanted, items.size());
    auto next = items.begin();
    for_each_item(codec, member, [&](const ListItem& item, std::byte* at) {
        write_number(item.kind, at, parse_number(*next++, range_of(codec, item), what));
    });
}

void set_text(std::string_view text, std::vector<std::byte>& member, std::string_view what) {
    const std::string bytes = unescaped(text, what);
    if (bytes.size() > member.size())
        refuse(Reason::bad_value, "{}: a text of {} bytes is longer than the field's {}", what, bytes.size(),
               member.size());
    if (bytes.find('\0') != std::string::npos)
        refuse(Reason::bad_value, "{}: a text cannot hold \\x00", what);
    std::fill(member.begin(), member.end(), std::byte{0});
    std::memcpy(member.data(), bytes.data(), bytes.size());
}

// ------------------------------------------------------------------------------------------- random values

using Random = std::mt19937_64;

uint64_t up_to(Random& random, uint64_t limit) {
    return std::uniform_int_distribution<uint64_t>(0, limit)(random);
}

void fill_text(Random& random, std::vector<std::byte>& member) {
    // Every fourth text fills its array.
    const std::size_t length = up_to(random, 3) == 0 ? member.size() : up_to(random, member.size());
    for (std::size_t i = 0; i < length; ++i)
        member[i] = static_cast<std::byte>(1 + up_to(random, 254));
    std::fill(member.begin() + static_cast<std::ptrdiff_t>(length), member.end(), std::byte{0});
}

void fill_coded(Random& random, const TextCodec& codec, std::vector<std::byte>& member) {
    if (!codec.group.empty()) {
        for_each_item(codec, member.data(), [&](const ListItem& item, std::byte* at) {
            const Range range = range_of(codec, item);
            write_number(item.kind, at,
                         range.low + static_cast<int64_t>(
                                         up_to(random, range.high - static_cast<uint64_t>(range.low))));
        });
        return;
    }
    // What of random bytes the text form can hold.
    std::vector<std::byte> any(member.size());
    std::generate(any.begin(), any.end(), [&] { return static_cast<std::byte>(up_to(random, 255)); });
    codec.decode(codec, encoded(codec, any.data()), member.data());
}

// ------------------------------------------------------------------------------------------- names

int parse_index(std::string_view text, std::string_view whole) {
    int index = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size() || index < 1)
        refuse(Reason::syntax, "\"{}\": a row is a number from 1 on, not \"{}\"", escaped(whole),
               escaped(text));
    return index;
}

bool in_range(std::optional<int> index, int count) {
    return !index || *index <= count;
}

// The indexes that an address names in a table, from 0; -1: all.
struct Indexes {
    int outer, inner;
};
constexpr Indexes kEveryRow{-1, -1};

std::vector<Indexes> rows_of(const Table& table, Indexes chosen) {
    const Extent extent = extent_of(table);
    std::vector<Indexes> rows;
    for (int outer = 0; outer < extent.outer; ++outer)
        for (int inner = 0; inner < extent.inner; ++inner)
            if ((chosen.outer < 0 || chosen.outer == outer) && (chosen.inner < 0 || chosen.inner == inner))
                rows.push_back({outer, inner});
    return rows;
}

std::optional<Indexes> indexes_of(const Address& address, const Table& table) {
    const Extent extent = extent_of(table);
    if (extent.two_indexes()) {
        const int outer = address.outer.value_or(address.row ? 1 : 0);
        if (outer > extent.outer || !in_range(address.row, extent.inner))
            return std::nullopt;
        return Indexes{outer - 1, address.row.value_or(0) - 1};
    }
    if (address.outer || !in_range(address.row, extent.outer_is_key ? extent.outer : extent.inner))
        return std::nullopt;
    const int row = address.row.value_or(0) - 1;
    return extent.outer_is_key ? Indexes{row, 0} : Indexes{0, row};
}

// The rows of a table in words.
std::string rows_text(const Table& table) {
    const Extent extent = extent_of(table);
    if (extent.two_indexes())
        return fmt::format("channels 1 to {} with rows 1 to {}", extent.outer, extent.inner);
    return fmt::format("rows 1 to {}", extent.outer_is_key ? extent.outer : extent.inner);
}

[[noreturn]] void nothing_found(const Address& address, const std::vector<const Table*>& tables) {
    bool has_fields = false, has_field = address.field.empty(), has_row = false;
    for (const Table* table : tables) {
        const auto cells = cells_of_table(*table);
        has_fields = has_fields || !cells.empty();
        has_field = has_field || std::any_of(cells.begin(), cells.end(),
                                             [&](const Cell& c) { return c.field->name == address.field; });
        has_row = has_row || indexes_of(address, *table).has_value();
    }
    if (!has_fields)
        refuse(Reason::unknown_name, "{} is kept in a form of its own; its fields cannot be reached",
               address.table);
    if (!has_field)
        refuse(Reason::unknown_name, "{} has no field \"{}\"; `dbctl describe {}` tells them", address.table,
               escaped(address.field), address.table);
    if (!has_row)
        refuse(Reason::bad_row, "{} has {}", address.table, rows_text(*tables[0]));
    refuse(Reason::bad_row, "row {} of {} stores no {}", *address.row, address.table,
           address.field.empty() ? "field" : address.field);
}

}  // namespace

// --------------------------------------------------------------------------------------------- finding

Address parse_address(std::string_view text) {
    Address address;
    std::string_view rest = text;
    const auto malformed = [&] {
        refuse(Reason::syntax,
               "\"{}\" is none of TABLE, TABLE.FIELD, TABLE[ROW], TABLE.FIELD[ROW], TABLE[CHANNEL,ROW]",
               escaped(text));
    };
    const auto name = [&] {
        const std::string_view found = rest.substr(0, rest.find_first_of(".[]"));
        if (found.empty())
            malformed();
        rest.remove_prefix(found.size());
        return std::string(found);
    };
    address.table = name();
    bool has_index = false;
    while (!rest.empty()) {
        const char sign = rest.front();
        rest.remove_prefix(1);
        if (sign == '.' && address.field.empty()) {
            address.field = name();
        } else if (sign == '[' && !has_index && rest.find(']') != std::string_view::npos) {
            std::string_view index = rest.substr(0, rest.find(']'));
            rest.remove_prefix(index.size() + 1);
            if (const auto comma = index.find(','); comma != std::string_view::npos) {
                address.outer = parse_index(index.substr(0, comma), text);
                index.remove_prefix(comma + 1);
            }
            address.row = parse_index(index, text);
            has_index = true;
        } else {
            malformed();
        }
    }
    return address;
}

std::vector<const Table*> tables_named(std::string_view name) {
    int number = 0;
    const auto end = std::from_chars(name.data(), name.data() + name.size(), number).ptr;
    const bool is_number = !name.empty() && end == name.data() + name.size();
    std::vector<const Table*> found;
    for (const Table* table : all_tables())
        if (is_number ? number != 0 && table->number == number : table->name == name)
            found.push_back(table);
    if (found.empty())
        if (const NamedFunction function = find_function(name); function.table != nullptr)
            found.push_back(function.table);
    if (found.empty())
        refuse(Reason::unknown_name, "there is no table \"{}\"; `dbctl tables` tells them", escaped(name));
    return found;
}

Extent extent_of(const Table& table) {
    return {table.layout.outer_count, table.row_count(), table.layout.owner != Owner::none};
}

std::vector<Cell> cells_of_row(const Table& table, int outer, int inner) {
    std::vector<Cell> cells;
    for (const Statement& statement : table.save) {
        if (!statement.serves(inner))
            continue;
        const uint32_t row = table.layout.base + static_cast<uint32_t>(outer) * table.layout.outer_stride +
                             static_cast<uint32_t>(inner + 1 - statement.origin) * statement.stride;
        for (const Field& field : statement.fields) {
            if (field.constant)
                continue;
            const uint32_t offset = field.absolute
                                        ? field.offset + static_cast<uint32_t>(outer) * field.stride
                                        : row + field.offset;
            const bool known = std::any_of(cells.begin(), cells.end(), [&](const Cell& c) {
                return c.field->name == field.name && c.offset == offset;
            });
            if (!known)
                cells.push_back({&table, &field, outer, inner, offset});
        }
    }
    return cells;
}

std::vector<Cell> cells_of_table(const Table& table) {
    std::vector<Cell> cells;
    for (const auto& [outer, inner] : rows_of(table, kEveryRow)) {
        const auto row = cells_of_row(table, outer, inner);
        cells.insert(cells.end(), row.begin(), row.end());
    }
    return cells;
}

std::vector<Cell> find_cells(const Address& address) {
    const auto tables = tables_named(address.table);
    std::vector<Cell> found;
    for (const Table* table : tables) {
        const auto indexes = indexes_of(address, *table);
        if (!indexes)
            continue;
        for (const auto& [outer, inner] : rows_of(*table, *indexes))
            for (const Cell& cell : cells_of_row(*table, outer, inner))
                if (address.field.empty() || cell.field->name == address.field)
                    found.push_back(cell);
    }
    if (found.empty())
        nothing_found(address, tables);
    return found;
}

Cell find_cell(const Address& address) {
    const auto cells = find_cells(address);
    const bool one = std::all_of(cells.begin(), cells.end(),
                                 [&](const Cell& cell) { return cell.offset == cells[0].offset; });
    if (address.field.empty())
        refuse(Reason::syntax, "name one field, as in {}", address_of(cells[0]));
    if (!one)
        refuse(Reason::bad_row, "{}.{} is {} values; name one, as in {}", address.table, address.field,
               cells.size(), address_of(cells[0]));
    return cells[0];
}

std::string table_label(const Table& table) {
    const auto all = all_tables();
    const bool shared = std::count_if(all.begin(), all.end(),
                                      [&](const Table* other) { return other->name == table.name; }) > 1;
    if (!shared)
        return std::string(table.name);
    for (const std::string_view function : {table.set, table.single, table.get})
        if (!function.empty() && find_function(function).table == &table)
            return std::string(function);
    return std::string(table.name);
}

std::string address_of(const Cell& cell) {
    const Extent extent = extent_of(*cell.table);
    const std::string name = fmt::format("{}.{}", table_label(*cell.table), cell.field->name);
    if (extent.two_indexes())
        return fmt::format("{}[{},{}]", name, cell.outer + 1, cell.inner + 1);
    return fmt::format("{}[{}]", name, (extent.outer_is_key ? cell.outer : cell.inner) + 1);
}

// --------------------------------------------------------------------------------------------- values

std::string escaped(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        char32_t character = 0;
        const std::size_t length = character_length(bytes, character);
        const std::string_view here = bytes.substr(0, std::max<std::size_t>(length, 1));
        if (here == "\\")
            text += "\\\\";
        else if (length != 0 && printable(character))
            text += here;
        else
            for (const char byte : here)
                text += fmt::format("\\x{:02X}", static_cast<uint8_t>(byte));
        bytes.remove_prefix(here.size());
    }
    return text;
}

Json cell_json(const DEVICECONFIG& record, const Cell& cell) {
    const Field& field = *cell.field;
    std::vector<std::byte> member = copy_of(record, cell);
    if (field.codec != nullptr) {
        const TextCodec& codec = *field.codec;
        if (codec.group.empty())
            return escaped(encoded(codec, member.data()));
        Json items = Json::array();
        for_each_item(codec, member.data(), [&](const ListItem& item, const std::byte* at) {
            items.push_back(number_json(shown_kind(codec, item), read_number(item.kind, at)));
        });
        return items;
    }
    if (field.kind == Kind::text) {
        const auto* characters = reinterpret_cast<const char*>(member.data());
        return escaped({characters, strnlen(characters, member.size())});
    }
    return number_json(field.kind, read_number(field.kind, member.data()));
}

std::string cell_text(const DEVICECONFIG& record, const Cell& cell) {
    const Json value = cell_json(record, cell);
    return value.is_string() ? value.get<std::string>() : value.dump();
}

void set_cell(DEVICECONFIG& record, const Cell& cell, std::string_view value) {
    const Field& field = *cell.field;
    const std::string what = address_of(cell);
    std::vector<std::byte> member = copy_of(record, cell);
    if (field.codec == nullptr && field.kind == Kind::text) {
        set_text(value, member, what);
    } else if (field.codec == nullptr) {
        write_number(field.kind, member.data(), parse_number(value, range_of(field.kind), what));
    } else if (!field.codec->group.empty()) {
        set_list(*field.codec, value, member.data(), what);
    } else {
        const std::string text = unescaped(value, what);
        field.codec->decode(*field.codec, text, member.data());
        if (encoded(*field.codec, member.data()) != text)
            refuse(Reason::bad_value, "{}: \"{}\" does not have the form of this field", what,
                   escaped(value));
    }
    std::memcpy(bytes_of(record) + cell.offset, member.data(), member.size());
}

void set_cell_json(DEVICECONFIG& record, const Cell& cell, const Json& value) {
    if (value.is_null())
        return;
    if (value.is_object())
        refuse(Reason::bad_value, "{}: an object is no value", address_of(cell));
    set_cell(record, cell, value.is_string() ? value.get<std::string>() : value.dump());
}

Json table_json(const DEVICECONFIG& record, const Table& table, bool show_secrets) {
    const Extent extent = extent_of(table);
    Json channels = Json::array(), rows = Json::array();
    for (const auto& [outer, inner] : rows_of(table, kEveryRow)) {
        Json row = Json::object();
        for (const Cell& cell : cells_of_row(table, outer, inner))
            row[std::string(cell.field->name)] =
                cell.field->secret() && !show_secrets ? Json(nullptr) : cell_json(record, cell);
        rows.push_back(row);
        if (extent.two_indexes() && extent.outer > 1 && inner + 1 == extent.inner)
            channels.push_back(std::exchange(rows, Json::array()));
    }
    if (!channels.empty())
        return channels;
    return extent.outer_is_key || extent.inner > 1 ? rows : rows[0];
}

// --------------------------------------------------------------------------------------------- filling

namespace {

void fill_rows(DEVICECONFIG& record, const std::string& table, const Json& value, std::optional<int> outer,
               std::optional<int> row) {
    if (value.is_object()) {
        for (const auto& [field, content] : value.items())
            set_cell_json(record, find_cell({table, field, outer, row}), content);
    } else if (value.is_array() && !outer) {
        // An array within an array: the rows of one channel.
        for (std::size_t i = 0; i < value.size(); ++i)
            fill_rows(record, table, value[i], row, static_cast<int>(i) + 1);
    } else if (!value.is_null()) {
        refuse(Reason::bad_value, "{}: neither an object of fields nor an array of such objects", table);
    }
}

}  // namespace

void fill_from_json(DEVICECONFIG& record, const Json& tables) {
    if (!tables.is_object())
        refuse(Reason::bad_value, "the file is no JSON object of tables");
    for (const auto& [table, value] : tables.items())
        fill_rows(record, table, value, std::nullopt, std::nullopt);
}

void fill_random(DEVICECONFIG& record, uint64_t seed) {
    Random random(seed);
    for (const Table* table : all_tables()) {
        for (const Cell& cell : cells_of_table(*table)) {
            const Field& field = *cell.field;
            // Several columns may be parts of one member.
            const std::byte* stored = bytes_of(record) + cell.offset;
            std::vector<std::byte> member(stored, stored + field.size);
            if (field.codec != nullptr)
                fill_coded(random, *field.codec, member);
            else if (field.kind == Kind::text)
                fill_text(random, member);
            else
                write_number(field.kind, member.data(), static_cast<int64_t>(random()));
            std::memcpy(bytes_of(record) + cell.offset, member.data(), member.size());
        }
    }
    record.sec_lock_auth.db_enc_version = 0;
}
