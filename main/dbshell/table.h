// What a table is: the description that the catalogue's entries (vocabulary.h) make and that everything else
// walks.  Plain data with fixed addresses; nothing here holds an address of the record or of a database.
//
// A value lies at up to four levels: the owner (sensor or channel), and below it up to three levels of arrays.
// The last level that a table uses is its rows; a block of rows may lie in a member of its own.
#ifndef DBSHELL_TABLE_H
#define DBSHELL_TABLE_H

#include <array>
#include <climits>
#include <span>
#include <string>
#include <string_view>

#include "field.h"
#include "sql_text.h"

namespace dbshell {

// ---------------------------------------------------------------------------------------- indexes and keys

inline constexpr int kLevels = 4;

// One row's indexes, counted from 0.
struct Index {
    std::array<int, kLevels> at{};

    constexpr Index() = default;
    constexpr Index(int outer, int inner = 0, int third = 0, int fourth = 0)
        : at{outer, inner, third, fourth} {}
    constexpr int operator[](int level) const { return at[static_cast<std::size_t>(level)]; }
    constexpr int& operator[](int level) { return at[static_cast<std::size_t>(level)]; }
    constexpr bool operator==(const Index&) const = default;
};

// How many there are of each level.
struct Counts : Index {
    using Index::Index;
    int sources = INT_MAX;  // items of a list that has one for each event source
};

// A key column.  Its value is what it counts plus the bias: rows are counted from 1 in the database.
struct KeyColumn {
    std::string_view name;
    uint8_t levels =
        0;  // one bit a level; several: numbered through, as the digits of one number; none: constant
    bool within = false;            // counts from the first row of the statement's block
    bool selects = false;           // constant: a row with another value is not loaded
    int32_t bias = 1;               // constant: the value itself
    std::string_view instead = {};  // the column that tells it in rows that have no value in this one

    constexpr bool counts(int level) const { return (levels >> level & 1) != 0; }
    constexpr bool single() const { return levels != 0 && (levels & (levels - 1)) == 0; }
    constexpr bool constant() const { return levels == 0; }
};

consteval KeyColumn outer(std::string_view name, int32_t bias = 1) {
    return {name, 1, false, false, bias};
}
consteval KeyColumn inner(std::string_view name, int32_t bias = 1) {
    return {name, 2, false, false, bias};
}
consteval KeyColumn third(std::string_view name, int32_t bias = 1) {
    return {name, 4, false, false, bias};
}
consteval KeyColumn fourth(std::string_view name, int32_t bias = 1) {
    return {name, 8, false, false, bias};
}
// Numbered through two levels: across("idx", outer, inner) is outer * (how many inner) + inner + 1.
consteval KeyColumn across(std::string_view name, KeyColumn (*first)(std::string_view, int32_t),
                           KeyColumn (*second)(std::string_view, int32_t), int32_t bias = 1) {
    return {name, static_cast<uint8_t>(first({}, 1).levels | second({}, 1).levels), false, false, bias};
}
// Another column tells it in rows without this one, as in older schemas.  For the rows' own level.
consteval KeyColumn or_else(KeyColumn k, std::string_view column) {
    k.instead = column;
    return k;
}
// The same level, counted from the first row of the block that the statement serves.
consteval KeyColumn within(KeyColumn k) {
    k.within = true;
    return k;
}
consteval KeyColumn always(std::string_view name, int32_t value) {
    return {name, 0, false, false, value};
}
// The same, and rows with another value are someone else's.
consteval KeyColumn only(std::string_view name, int32_t value) {
    return {name, 0, false, true, value};
}

// ---------------------------------------------------------------------------------------- statements

enum class Source : uint8_t { literal, key, field };

// One column that a statement names.
struct Slot {
    uint16_t column_at, value_at;  // in the statement's text
    uint8_t column_size, value_size;
    Conversion conversion;
    SlotRole role;
    Source source;
    uint8_t index;  // of the key or the field that gives the value

    // It has a parameter when the statement is executed: its conversion.
    constexpr bool bound() const { return conversion.kind != 0; }
};

// An SQL text with printf conversions, and what each conversion takes.  It is executed as it stands, with bound
// parameters: a quoted conversion binds text, a bare one a number.  Its address stands for it, so statements are
// made by the compiler alone and never copied at run time.
struct Statement {
    std::string_view text;
    std::string_view table;
    Verb verb = Verb::select;
    std::span<const Slot> slots = {};
    std::span<const KeyColumn> keys = {};
    std::span<const Field> fields = {};
    std::string_view function = {};  // the function that logs for it; empty: its table's
    // The rows of a list that it serves, counted from 1; last 0: every row.  `mask`: of those only the rows whose
    // bit is set, row `first` being bit 0; 0: all.
    int16_t first = 1, last = 0;
    uint64_t mask = 0;
    // Where row i's fields lie: (i - origin) * stride from what holds the rows.
    int16_t origin = 1;
    uint32_t stride = 0;

    consteval Statement() = default;
    consteval Statement(const Statement&) = default;
    consteval Statement& operator=(const Statement&) = default;

    constexpr bool serves(int row) const {
        return row + 1 >= first && (last == 0 || row + 1 <= last) &&
               (mask == 0 || (mask >> (row + 1 - first) & 1) != 0);
    }
    // It is for one row alone.
    constexpr bool one_row() const { return first == last; }
    constexpr std::string_view column(const Slot& s) const { return text.substr(s.column_at, s.column_size); }
    constexpr std::string_view value(const Slot& s) const { return text.substr(s.value_at, s.value_size); }
    constexpr bool stores() const { return verb == Verb::update || verb == Verb::replace; }
    constexpr bool has_condition() const {
        for (const Slot& s : slots)
            if (s.role == SlotRole::condition)
                return true;
        return false;
    }
    constexpr bool bound() const {
        for (const Slot& s : slots)
            if (s.bound())
                return true;
        return false;
    }
    // The slot tells by a fixed value which rows the statement is for: a condition on a column that is no key.
    constexpr bool selects(const Slot& s) const {
        return s.role == SlotRole::condition && s.source != Source::key && !names_key(s);
    }
    constexpr bool names_key(const Slot& s) const {
        for (const KeyColumn& k : keys)
            if (k.name == column(s))
                return true;
        return false;
    }
    constexpr bool uses(std::size_t key) const {
        for (const Slot& s : slots)
            if (s.source == Source::key && s.index == key)
                return true;
        return false;
    }
    constexpr int rows_from(int all) const { return last == 0 ? all : last - first + 1; }
};

// ---------------------------------------------------------------------------------------- tables

// What the outer index of a table counts; an element is one of the array that holds the rows: a scene, a group.
enum class Owner : uint8_t { none, sensor, channel, element };

// How a table is stored.
enum class Strategy : uint8_t {
    replace,       // each row by a statement that makes it where it is missing
    update_only,   // rows are another table's to make; a missing one stays missing
    ensure,        // too few rows: all are deleted and made anew from the default rows; then each is updated
    top_up,        // the missing default rows are added to those present; then each is updated
    fill_missing,  // each row is looked for and made from its default row where it is missing; then updated
    packed,        // as ensure, but only the entries that have a name are stored, one after another
    read_only,     // loaded, never stored
};
std::string_view word_for(Strategy);

struct Level {
    uint16_t count = 1;
    uint32_t stride = 0;  // bytes from one to the next
};

// Where the rows of a table lie in the record, in bytes from its start.
struct Layout {
    uint32_t base = 0;
    Owner owner = Owner::none;
    int depth = 1;  // levels that the shape uses; `Table::rows` adds one for a block
    std::array<Level, kLevels> level{};
};

// The texts of a table's log messages.  In them "%d" stands for the result code or the index, "%k" for the key as
// it stands in the row, "%o" for the owner's index, "%r" for the row's, "%1" to "%4" for the indexes from the owner's
// down, "%s" for the statement, "%m" for SQLite's message, "%T" for the table's name, "%G", "%F" and "%S" for the
// names of the get, the set and the _single function.  A null text: that of the group of entries (kSays), then the
// common one, which is told beside each.
struct Messages {
    const char* write = nullptr;        // "SQL error:\n"
    const char* count = nullptr;        // " db_query_row_num err !\n"
    const char* remove = nullptr;       // "delete %T err \n"
    const char* insert = nullptr;       // "insert into %T err \n"
    const char* open = nullptr;         // "db_query_open_v2 error: %d\n"
    const char* empty = nullptr;        // none: a table without rows is no message
    const char* save_key = nullptr;     // "Invalid sensor_no-%d\n", "invalid chan_no: %d\n"
    const char* save_middle = nullptr;  // `save_key`; the second index that a function is given
    const char* save_third = nullptr;   // `save_key`; the third
    const char* load_key = nullptr;     // "invalid sensor_no: %d\n", "invalid chan_no: %d\n"
    const char* load_middle =
        nullptr;  // none: the level below the owner's, above the rows, that is out of range
    const char* load_third = nullptr;  // none: the next one
    const char* load_row = nullptr;    // none: a row out of its range is skipped without a message
    const char* no_key = nullptr;     // a row that does not tell its owner is skipped; else it is the first's
    const char* no_middle = nullptr;  // `load_middle`; a row that does not tell that level
    const char* load_only = nullptr;  // none: a row with another value in a column told by `only`
    const char* wrapper = nullptr;    // "%S failed for sensor_no: %d\n", "%S error for chan_no: %d\n"
    const char* part = nullptr;       // none: what the set or _single function adds to a failure
    const char* schedule = nullptr;   // the saver's or loader's name and " error\n"
    const char* save_schedule = nullptr;  // on a failed save: `schedule`
    const char* load_null = nullptr;      // `load_row`; "%d" is the row's place in the result, from 0
    const char* few = nullptr;            // none: a load found "%r" rows, fewer than the table's "%d"
    const char* no_record = nullptr;      // "get_cfg_param err\n"
};

// Which failures a function tells apart by its result code, one bit a code; -1 stands for all others.
//   -1 bad key, -2 count or query, -3 default row, -4 write, -5 delete, -6 no database, -7 no record
template <class... Code>
consteval uint8_t codes(Code... code) {
    return static_cast<uint8_t>((0 | ... | (1 << -code)));
}
struct Codes {
    uint8_t get = 0, set = 0;
};
inline constexpr Codes kGraded{0xFE, 0xFE};

// A number that only the device knows.
enum class DeviceCount : uint8_t {
    none,
    alarm_inputs,   // of rows
    alarm_outputs,  // of rows
    event_sources,  // of the outermost level that counts several; all that the record holds when it is not known
    listed_sources,  // of items in lists alone (Field::each_source), as above
};

// A table that is a part of week_config_list, and loads the schedules of many features.
enum class WeekList : uint8_t { none, features, rules };

// A weekly schedule that belongs to a table's rows.
struct Schedule {
    // by_type: of an owner, for each of several process types; by_rule: of an owner, for each scene and rule.
    enum class Keyed : uint8_t { once, by_owner, by_row, by_type, by_rule };

    int process_type;
    Keyed keyed;
    uint32_t offset;  // bytes from the row; absolute: from the record's start
    bool absolute;
    uint32_t stride;  // absolute: bytes from one owner or row to the next
    uint32_t size;
};

// A part of a set function's work, done for each value of the first `depth` indexes: the set function of another
// entry, or the table's own rows and schedules where that is empty.  The steps of an index are done in their order,
// then those of the indexes below it.
struct Step {
    std::string_view function;
    int depth;
    const char* message = nullptr;  // logged when it fails
};

// A column of the create list that the table's statements do not store, and why.
struct Unstored {
    std::string_view column, reason;
};

inline constexpr std::string_view kDerived = "_single";
inline constexpr int kFromOwner = -1;  // 1 where there is an owner, otherwise 0

struct Table {
    int number = 0;  // in the registry; 0: none
    std::string_view get = {}, set = {};
    Strategy strategy = Strategy::read_only;
    std::string_view single =
        kDerived;  // kDerived: the set function's name and "_single", where there is an owner
    Messages says = {};
    Codes graded = {};
    bool bad_key_ends_load = false;  // a row of an unknown channel fails the load
    bool by_position = false;        // loaded by the order of the rows, whatever their keys are
    bool administrator = false;      // packed: the first entry is always the administrator
    bool encryption_word = false;    // the table that holds the version of the field encryption
    int rows = 0;        // rows that a list has below its levels; 0: as many as the last level's array
    int load_limit = 0;  // rows of the result that are read; 0: all
    // A load fails when there are more rows than the table has, with the message of an empty one, in which "%r" is
    // their number.
    bool refuses_more = false;
    // The column that tells how many groups of its lists a row holds: a load puts them behind those of the rows
    // before it, whatever the rows' keys are.  Empty: each row holds as many as the lists have.
    std::string_view holds = {};
    std::span<const Statement> fill = {};  // the default rows
    std::span<const Statement> save = {};
    std::span<const Statement> load = {};  // empty: select * from the table
    std::span<const Schedule> schedules = {};
    std::span<const Step> steps = {};  // empty: the table's own rows, owner by owner
    bool inner_set = false;            // the set function is another table's step: the registry has none
    int indexes = kFromOwner;          // how many the _single function takes, from the owner's down
    // Rows are counted, deleted and made anew within so many indexes from the owner's down.
    int made_within = kFromOwner;
    DeviceCount device_rows = DeviceCount::none;  // what of its rows the device counts
    const char* device_silent = nullptr;          // logged when the number of alarms cannot be told
    bool of_older_schema = false;  // it need not be there; then that is said, and nothing is loaded
    WeekList week_list = WeekList::none;
    std::string_view worker_get = {}, worker_set = {};  // log for the statements in place of get and set
    const char* source = nullptr;           // the source file that messages name; null: the engine's
    std::span<const int> unused_rows = {};  // rows, counted from 1, that hold nothing
    std::span<const Unstored> unstored = {};

    // Filled by the entry's macro.
    std::string_view name = {};  // the SQL table
    Layout layout = {};
    std::span<const KeyColumn> keys = {};
    int line = 0;  // of the entry, for messages

    constexpr bool has_single() const { return !single.empty(); }
    constexpr bool has_registry_set() const { return number != 0 && !set.empty() && !inner_set; }
    // The level of the rows.
    constexpr int row_level() const { return layout.depth - 1 + (rows != 0 || layout.depth == 1 ? 1 : 0); }
    constexpr int row_count() const { return rows != 0 ? rows : count(row_level()); }
    constexpr int count(int level) const {
        return rows != 0 && level == row_level() ? rows : layout.level[static_cast<std::size_t>(level)].count;
    }
    constexpr Counts counts() const { return {count(0), count(1), count(2), count(3)}; }
    constexpr const KeyColumn* key_of(int level) const {
        for (const KeyColumn& k : keys)
            if (k.single() && k.counts(level))
                return &k;
        return nullptr;
    }
    // The key column that numbers through several levels, or null.
    constexpr const KeyColumn* across_key() const {
        for (const KeyColumn& k : keys)
            if (!k.constant() && !k.single())
                return &k;
        return nullptr;
    }
    // The first level that counts several.
    constexpr int outermost_level() const {
        int level = 0;
        while (level < row_level() && count(level) == 1)
            ++level;
        return level;
    }
};

// The name of the _single function; empty: there is none.
std::string single_name(const Table& table);

// ---------------------------------------------------------------------------------------- addresses

// Where what holds a row's fields lies, in bytes from the record's start.
constexpr uint32_t holder_offset(const Table& t, Index index) {
    uint32_t offset = t.layout.base;
    const int levels = t.row_level();
    for (int level = 0; level < levels; ++level)
        offset +=
            static_cast<uint32_t>(index[level]) * t.layout.level[static_cast<std::size_t>(level)].stride;
    return offset;
}

// Where a field's value lies, in bytes from the record's start.  The one place that knows.
constexpr uint32_t field_offset(const Table& t, const Statement& s, const Field& f, Index index) {
    switch (f.home) {
        case Home::record:
            return f.offset + static_cast<uint32_t>(index[0]) * f.stride[0] +
                   static_cast<uint32_t>(index[1]) * f.stride[1];
        case Home::holder:
            return holder_offset(t, index) + f.offset;
        case Home::row:
            break;
    }
    const int row = index[t.row_level()];
    return holder_offset(t, index) + static_cast<uint32_t>(row + 1 - s.origin) * s.stride + f.offset;
}

// Where a table's schedules lie: the first, in bytes from the record's start, and how far apart those of each level
// are that has one each.
struct SchedulePlaces {
    uint32_t first = 0;
    std::array<uint32_t, 3> stride{};  // 0: the level has none of its own

    constexpr uint32_t offset(Index index) const {
        uint32_t at = first;
        for (std::size_t level = 0; level < stride.size(); ++level)
            at += stride[level] * static_cast<uint32_t>(index.at[level]);
        return at;
    }
};
constexpr SchedulePlaces places_of(const Table& t, const Schedule& s) {
    using Keyed = Schedule::Keyed;
    SchedulePlaces places{s.offset + (s.absolute ? 0 : t.layout.base), {}};
    const auto each_of = [&](std::size_t level) {
        places.stride[level] = s.absolute ? s.stride : t.layout.level[level].stride;
    };
    switch (s.keyed) {
        case Keyed::once:
            break;
        case Keyed::by_rule:
            each_of(2);
            [[fallthrough]];
        case Keyed::by_type:
            each_of(1);
            [[fallthrough]];
        case Keyed::by_owner:
            each_of(0);
            break;
        case Keyed::by_row:
            each_of(1);
            break;
    }
    return places;
}

// The value of a key column for a row of a table that has `counts` of each level.
constexpr int64_t key_value(const Statement& s, const KeyColumn& k, Index index, Counts counts) {
    int64_t number = 0;
    for (int level = 0; level < kLevels; ++level)
        if (k.counts(level))
            number = number * (k.single() ? 0 : counts[level]) + index[level];
    return number + k.bias - (k.within ? s.first - 1 : 0);
}

}  // namespace dbshell

#endif
