#include "record_access.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <utility>

#include "catalogue.h"

namespace {

using namespace dbshell;
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
        case Kind::f32:
        case Kind::f64:
        case Kind::text:
        case Kind::coded:
        case Kind::block:
            break;
    }
    return {0, 0};
}

Range range_of(const Field& field) {
    return field.bits == 0 ? range_of(field.kind) : Range{0, field.bit_mask()};
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

// With as many digits as tell the value from its neighbours.
Json real_json(Kind kind, const std::byte* at) {
    char digits[32];
    const double value = read_real(kind, at);
    const auto end = kind == Kind::f32
                         ? std::to_chars(digits, digits + sizeof digits, static_cast<float>(value)).ptr
                         : std::to_chars(digits, digits + sizeof digits, value).ptr;
    double shown = 0;
    std::from_chars(digits, end, shown);
    return shown;
}

double parse_real(Kind kind, std::string_view text, std::string_view what) {
    const double limit =
        kind == Kind::f32 ? std::numeric_limits<float>::max() : std::numeric_limits<double>::max();
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(std::abs(value) <= limit))
        refuse(Reason::bad_value, "{}: \"{}\" is no number", what, escaped(text));
    return value;
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

// The owner's level is left out where it counts one and there are others.
std::vector<int> shown_levels(const Table& table) {
    std::vector<int> levels = naming_levels(table);
    if (levels.size() > 1 && levels[0] == 0 && table.count(0) == 1)
        levels.erase(levels.begin());
    return levels;
}

// The rows that an address means in a table.
std::vector<Index> rows_meant(const Address& address, const Table& table) {
    std::vector<Index> rows = rows_of(table);
    if (address.indexes.empty())
        return rows;
    const std::vector<int> levels = naming_levels(table);
    if (address.indexes.size() > std::max<std::size_t>(levels.size(), 1))
        return {};
    // Left out in front: the first.
    std::vector<int> wanted(std::max<std::size_t>(levels.size(), 1) - address.indexes.size(), 1);
    wanted.insert(wanted.end(), address.indexes.begin(), address.indexes.end());
    std::erase_if(rows, [&](const Index& row) {
        for (std::size_t i = 0; i < wanted.size(); ++i)
            if ((levels.empty() ? 0 : row[levels[i]]) != wanted[i] - 1)
                return true;
        return false;
    });
    return rows;
}

// The rows of a table in words.
std::string rows_text(const Table& table) {
    std::string text;
    for (const int level : naming_levels(table)) {
        const bool owned = level == 0 && table.layout.owner == Owner::channel;
        text +=
            fmt::format("{}{} 1 to {}", text.empty() ? "" : " with ",
                        owned && naming_levels(table).size() > 1 ? "channels" : "rows", table.count(level));
    }
    return text.empty() ? "rows 1 to 1" : text;
}

// The constant key column that tells the rows of an entry from those of the others with the same functions; null: no
// other has them.
const KeyColumn* telling_key(const Table& table) {
    const auto all = all_tables();
    const auto same = std::count_if(all.begin(), all.end(), [&](const Table* other) {
        return other->get == table.get && other->set == table.set;
    });
    const auto key =
        std::find_if(table.keys.begin(), table.keys.end(), [](const KeyColumn& k) { return k.selects; });
    return same > 1 && key != table.keys.end() ? &*key : nullptr;
}

[[noreturn]] void nothing_found(const Address& address, const std::vector<const Table*>& tables) {
    bool has_fields = false, has_field = address.field.empty(), has_row = false;
    for (const Table* table : tables) {
        const auto cells = cells_of_table(*table);
        has_fields = has_fields || !cells.empty();
        has_field = has_field || std::any_of(cells.begin(), cells.end(),
                                             [&](const Cell& c) { return c.field->name == address.field; });
        has_row = has_row || !rows_meant(address, *table).empty();
    }
    if (!has_fields)
        refuse(Reason::unknown_name, "{} is kept in a form of its own; its fields cannot be reached",
               address.table);
    if (!has_field)
        refuse(Reason::unknown_name, "{} has no field \"{}\"; `dbctl describe {}` tells them", address.table,
               escaped(address.field), address.table);
    if (!has_row)
        refuse(Reason::bad_row, "{} has {}", address.table, rows_text(*tables[0]));
    refuse(Reason::bad_row, "row {} of {} stores no {}", address.indexes.back(), address.table,
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
            for (std::size_t comma = 0; comma != std::string_view::npos;) {
                comma = index.find(',');
                address.indexes.push_back(parse_index(index.substr(0, comma), text));
                index.remove_prefix(
                    std::min(index.size(), comma == std::string_view::npos ? comma : comma + 1));
            }
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
        if (is_number ? number != 0 && table->number == number
                      : table->name == name || (name.find(':') < name.size() && table_label(*table) == name))
            found.push_back(table);
    if (found.empty())
        if (const NamedFunction function = find_function(name); function.table != nullptr)
            found.push_back(function.table);
    if (found.empty())
        refuse(Reason::unknown_name, "there is no table \"{}\"; `dbctl tables` tells them", escaped(name));
    return found;
}

std::vector<Cell> find_cells(const Address& address) {
    const auto tables = tables_named(address.table);
    std::vector<Cell> found;
    for (const Table* table : tables) {
        for (const Index& row : rows_meant(address, *table))
            for (const Cell& cell : cells_of_row(*table, row))
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
    if (const KeyColumn* key = telling_key(table); key != nullptr)
        return fmt::format("{}:{}", table.name, key->bias);
    const auto all = all_tables();
    const bool shared = std::count_if(all.begin(), all.end(),
                                      [&](const Table* other) { return other->name == table.name; }) > 1;
    if (!shared)
        return std::string(table.name);
    for (const std::string& function : {std::string(table.set), single_name(table), std::string(table.get)})
        if (!function.empty() && find_function(function).table == &table)
            return function;
    return std::string(table.name);
}

std::string address_of(const Cell& cell) {
    std::string indexes;
    for (const int level : naming_levels(*cell.table))
        indexes += fmt::format("{}{}", indexes.empty() ? "" : ",", cell.index[level] + 1);
    return fmt::format("{}.{}[{}]", table_label(*cell.table), cell.field->name,
                       indexes.empty() ? "1" : indexes);
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
    if (is_real(field.kind))
        return real_json(field.kind, member.data());
    return number_json(field.kind, field_number(field, member.data()));
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
    } else if (is_real(field.kind)) {
        write_real(field.kind, member.data(), parse_real(field.kind, value, what));
    } else if (field.codec == nullptr) {
        set_field_number(field, member.data(), parse_number(value, range_of(field), what));
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

namespace {

Json row_json(const DEVICECONFIG& record, const Table& table, Index index, bool show_secrets) {
    Json row = Json::object();
    for (const Cell& cell : cells_of_row(table, index))
        row[std::string(cell.field->name)] =
            cell.field->secret() && !show_secrets ? Json(nullptr) : cell_json(record, cell);
    return row;
}

// An array for each level that is left.
Json levels_json(const DEVICECONFIG& record, const Table& table, Index index, std::span<const int> levels,
                 bool show_secrets) {
    if (levels.empty())
        return row_json(record, table, index, show_secrets);
    Json rows = Json::array();
    for (int i = 0; i < table.count(levels[0]); ++i) {
        index[levels[0]] = i;
        rows.push_back(levels_json(record, table, index, levels.subspan(1), show_secrets));
    }
    return rows;
}

}  // namespace

Json table_json(const DEVICECONFIG& record, const Table& table, bool show_secrets) {
    return levels_json(record, table, {}, shown_levels(table), show_secrets);
}

// --------------------------------------------------------------------------------------------- filling

namespace {

// By how many indexes a row of the table is named at most.
std::size_t most_levels(const std::string& name) {
    std::size_t most = 0;
    for (const Table* table : tables_named(name))
        most = std::max(most, naming_levels(*table).size());
    return most;
}

void fill_rows(DEVICECONFIG& record, const std::string& table, const Json& value,
               const std::vector<int>& indexes) {
    if (value.is_object()) {
        for (const auto& [field, content] : value.items())
            set_cell_json(record, find_cell({table, field, indexes}), content);
    } else if (value.is_array() && indexes.size() < std::max<std::size_t>(1, most_levels(table))) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            auto deeper = indexes;
            deeper.push_back(static_cast<int>(i) + 1);
            fill_rows(record, table, value[i], deeper);
        }
    } else if (!value.is_null()) {
        refuse(Reason::bad_value, "{}: neither an object of fields nor an array of such objects", table);
    }
}

}  // namespace

void fill_from_json(DEVICECONFIG& record, const Json& tables) {
    if (!tables.is_object())
        refuse(Reason::bad_value, "the file is no JSON object of tables");
    for (const auto& [table, value] : tables.items())
        fill_rows(record, table, value, {});
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
            else if (is_real(field.kind))  // with no more digits than "%f" prints
                write_real(field.kind, member.data(),
                           static_cast<double>(up_to(random, 1 << 20)) / 64 - 4096);
            else
                set_field_number(field, member.data(), static_cast<int64_t>(random()));
            std::memcpy(bytes_of(record) + cell.offset, member.data(), member.size());
        }
    }
    record.sec_lock_auth.db_enc_version = 0;
    // Another user in the first entry of a full list could not be stored.
    auto& first = record.users.sec_user[0].username;
    std::memset(first, 0, sizeof first);
    std::memcpy(first, "admin", 5);
}
