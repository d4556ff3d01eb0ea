#include "stored_format.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "catalogue.h"
#include "device_config.h"

namespace dbshell {

namespace {

constexpr const char* kHead =
    "# What the database holds of the shared record, and how.  Made by `./dev docs` from the catalogue.\n"
    "#\n"
    "# number    the table's number in the registry\n"
    "# rows      the rows that the column is stored for, counted from 1; of a schedule, its process types\n"
    "# offset    of the value of the first of these rows, for the first sensor or channel, in bytes from the\n"
    "#           record's start\n"
    "# steps     bytes from one to the next\n"
    "# bytes     of the member\n"
    "# encoding  a number's kind; text; or a list of groups, every so many bytes, of numbers told as\n"
    "#           kind@offset:digits, and of texts as text@offset:bytes/characters that are loaded\n"
    "\n";

// ------------------------------------------------------------------------------------- the text's table

enum : std::size_t { kTable, kNumber, kColumn, kKey, kStrategy, kRows, kOffset, kSteps, kBytes, kEncoding };
using Line = std::array<std::string, kEncoding + 1>;
using Lines = std::vector<Line>;

std::string aligned(const Lines& lines) {
    std::array<std::size_t, kEncoding> width{};
    for (const Line& line : lines)
        for (std::size_t i = 0; i < kEncoding; ++i)
            width[i] = std::max(width[i], line[i].size());
    std::string text;
    for (const Line& line : lines) {
        for (std::size_t i = 0; i < kEncoding; ++i)
            text += line[i] + std::string(width[i] + 2 - line[i].size(), ' ');
        text += line[kEncoding] + '\n';
    }
    return text;
}

// ------------------------------------------------------------------------------------- words

std::string_view word_for(Kind kind) {
    constexpr std::string_view kWords[] = {"i8",  "u8",  "i16", "u16",  "i32",  "u32",  "i64",
                                           "u64", "f32", "f64", "text", "list", "bytes"};
    static_assert(std::size(kWords) == static_cast<std::size_t>(Kind::block) + 1);
    return kWords[static_cast<std::size_t>(kind)];
}

std::string list_text(const TextCodec& codec) {
    const auto items = items_of(codec);
    if (items.empty())
        return "a form of its own";
    std::string text = std::to_string(codec.groups) + " every " + std::to_string(codec.group_stride) + ":";
    for (const ListItem& item : items) {
        text.append(" ").append(word_for(item.kind)) += '@' + std::to_string(item.offset);
        if (item.width != 0)
            text += ':' + std::to_string(item.width);
        if (item.most != 0)
            text += '/' + std::to_string(item.most);
    }
    text += codec.is_signed ? ", signed" : "";
    if (codec.separator != 0)
        text += std::string(codec.joined ? ", joined by '" : ", each followed by '") + codec.separator + '\'';
    return text + (codec.absent != nullptr ? ", changed by an absent column" : "");
}

std::string encoding_of(const Field& f) {
    if (f.constant)
        return "always " + std::to_string(f.value);
    std::string text(word_for(f.kind));
    if (f.codec != nullptr)
        text += " of " + list_text(*f.codec);
    if (f.each_source)
        text += ", one for each event source";
    if (f.load_limit != 0)
        text += ", loaded up to " + std::to_string(f.load_limit) + " characters";
    if (f.bits != 0)
        text += ", bits " + std::to_string(f.first_bit) + " to " + std::to_string(f.first_bit + f.bits - 1);
    if (f.encrypted != 0)
        text += ", encrypted, at most " + std::to_string(f.encrypted) + " bytes";
    return text;
}

std::string level_word(const Table& t, int level) {
    if (level == 0 && t.layout.owner != Owner::none)
        return t.layout.owner == Owner::sensor    ? "sensor"
               : t.layout.owner == Owner::channel ? "channel"
                                                  : "element";
    return level == t.row_level() ? "row" : level < t.row_level() ? "index" : "place";
}

std::string encoding_of(const Table& t, const KeyColumn& k) {
    if (k.constant())
        return "always " + std::to_string(k.bias) + (k.selects ? ", rows with another are not loaded" : "");
    std::string levels;
    for (int level = 0; level < kLevels; ++level)
        if (k.counts(level))
            levels += (levels.empty() ? "" : " and ") + level_word(t, level);
    return levels + (k.single() ? "" : ", numbered through,") + " from " + std::to_string(k.bias) +
           (k.within ? " in its block" : "") +
           (k.instead.empty() ? "" : "; loaded by " + std::string(k.instead) + " where it is NULL");
}

void add_step(std::string& steps, const std::string& level, uint32_t stride) {
    if (stride != 0)
        steps += (steps.empty() ? "" : " ") + level + '+' + std::to_string(stride);
}

std::string or_dash(const std::string& text) {
    return text.empty() ? "-" : text;
}

// ------------------------------------------------------------------------------------- a table's columns

// What a statement stores in a column.  Statements that store the same for different rows are told in one line.
struct Stored {
    std::string_view column;
    std::string encoding;
    const Statement* statement;
    const Field* field;  // null: a literal
    std::vector<int> rows;

    bool from_record() const { return field != nullptr && !field->constant; }
};

uint32_t offset_of(const Table& t, const Stored& s, int row) {
    Index index;
    index[t.row_level()] = row - 1;
    return field_offset(t, *s.statement, *s.field, index);
}

bool same_but_rows(const Table& t, const Stored& a, const Stored& b) {
    return a.column == b.column && a.encoding == b.encoding && a.from_record() == b.from_record() &&
           (!a.from_record() || (a.statement->stride == b.statement->stride &&
                                 a.field->home == b.field->home && offset_of(t, a, 1) == offset_of(t, b, 1)));
}

std::vector<Stored> columns_of(const Table& t) {
    std::vector<Stored> columns;
    for (const Statement& s : t.save) {
        std::vector<int> rows;
        for (int row = 0; row < t.row_count(); ++row)
            if (s.serves(row))
                rows.push_back(row + 1);
        for (const Slot& slot : s.slots) {
            const bool taken_from_field = slot.source == Source::field;
            if (slot.source == Source::key || (!taken_from_field && s.names_key(slot)))
                continue;
            const Field* field = taken_from_field ? &s.fields[slot.index] : nullptr;
            Stored stored{s.column(slot),
                          field != nullptr
                              ? encoding_of(*field)
                              : std::string(slot.role == SlotRole::condition ? "only " : "always ")
                                    .append(s.value(slot)),
                          &s, field, rows};
            const auto known = std::find_if(columns.begin(), columns.end(), [&](const Stored& other) {
                return same_but_rows(t, stored, other);
            });
            if (known == columns.end()) {
                columns.push_back(stored);
                continue;
            }
            known->rows.insert(known->rows.end(), rows.begin(), rows.end());
            std::sort(known->rows.begin(), known->rows.end());
        }
    }
    return columns;
}

std::string steps_of(const Table& t, const Stored& s) {
    std::string steps;
    for (int level = 0; level < t.row_level(); ++level)
        add_step(steps, level_word(t, level),
                 s.field->home != Home::record ? t.layout.level[static_cast<std::size_t>(level)].stride
                 : level < 2                   ? s.field->stride[level]
                                               : 0);
    if (s.field->home == Home::row && s.rows.size() > 1)
        add_step(steps, "row", s.statement->stride);
    return or_dash(steps);
}

void add_table(Lines& lines, const Table& t) {
    const std::string name(t.name), number = t.number != 0 ? std::to_string(t.number) : "-",
                                    strategy(word_for(t.strategy));
    for (const KeyColumn& k : t.keys)
        lines.push_back(
            {name, number, std::string(k.name), "key", strategy, "all", "-", "-", "-", encoding_of(t, k)});
    for (const Stored& s : columns_of(t)) {
        Line line{name,      number,   std::string(s.column),
                  "-",       strategy, row_ranges(s.rows, t.row_count()),
                  "-",       "-",      "-",
                  s.encoding};
        if (s.from_record()) {
            line[kOffset] = std::to_string(offset_of(t, s, s.rows[0]));
            line[kSteps] = steps_of(t, s);
            line[kBytes] = std::to_string(s.field->size);
        }
        lines.push_back(line);
    }
}

// ------------------------------------------------------------------------------------- schedules

void add_schedule(Lines& lines, const ScheduleHome& home) {
    const ScheduleForm& form = schedule_form(home.process_type);
    const bool alarm = form.key == ScheduleKey::alarm;
    const std::string strategy(word_for(form.table.strategy));
    std::string types = std::to_string(home.process_type), steps;
    if (home.types > 1)
        types += '-' + std::to_string(home.process_type + home.types - 1);
    add_step(steps, alarm ? "alarm" : "channel", home.stride);
    add_step(steps, "type", home.type_stride);
    add_step(steps, "scene", home.scene_stride);
    add_step(steps, "rule", home.rule_stride);
    const auto add = [&](std::string_view column, const char* key, const std::string& offset,
                         const std::string& bytes, const std::string& encoding) {
        lines.push_back({std::string(form.table.name), "-", std::string(column), key, strategy, types, offset,
                         offset == "-" ? "-" : or_dash(steps), bytes, encoding});
    };
    for (const KeyColumn& k : form.table.keys)
        add(k.name, "key", "-", "-",
            k.constant() || k.counts(0) ? "the process type"
                                        : "counted from " + std::to_string(k.bias + (alarm ? 1 : 0)));
    for (const Field& f : form.table.save[0].fields)
        add(f.name, "-", std::to_string(home.offset + f.offset), std::to_string(f.size), encoding_of(f));
}

}  // namespace

std::string row_ranges(std::span<const int> rows, int count) {
    if (static_cast<int>(rows.size()) == count)
        return "all";
    std::string text;
    for (auto row = rows.begin(); row != rows.end();) {
        const int first = *row;
        int last = first;
        while (++row != rows.end() && *row == last + 1)
            last = *row;
        text += (text.empty() ? "" : ", ") + std::to_string(first) +
                (first == last ? "" : '-' + std::to_string(last));
    }
    return text;
}

std::string stored_format() {
    const auto all = all_tables();
    std::vector<const Table*> tables(all.begin(), all.end());
    std::stable_sort(tables.begin(), tables.end(), [](const Table* a, const Table* b) {
        return a->name != b->name ? a->name < b->name : a->number < b->number;
    });
    const auto all_homes = schedule_homes();
    std::vector<ScheduleHome> homes(all_homes.begin(), all_homes.end());
    std::stable_sort(homes.begin(), homes.end(), [](const ScheduleHome& a, const ScheduleHome& b) {
        return a.process_type != b.process_type ? a.process_type < b.process_type : a.offset < b.offset;
    });

    Lines lines{
        {"table", "number", "column", "key", "strategy", "rows", "offset", "steps", "bytes", "encoding"}};
    for (const Table* t : tables)
        if (t->week_list == WeekList::none)
            add_table(lines, *t);
    for (const ScheduleHome& home : homes)
        add_schedule(lines, home);
    return kHead + aligned(lines);
}

}  // namespace dbshell
