// The words in which the catalogue tells a table.
//
//   // Gamma correction.
//   REPLACE(per_sensor, sensor, 27, "db_get_gamma_config", "db_save_gamma_config", .graded = kGraded,
//           .save = SAVE("replace into gamma_config_table (idx, enable, level) values(%d, %d, %d);",
//                        FIELDS(gamma.enable, gamma.level))),
//
// The first word is the strategy (Strategy, table.h).  Then come the shape, the member of the record that holds
// the rows, the number in the registry, and the names of the get and the set function.  Inside the entry, the
// field words take paths from one row.  The save texts are the declaration: they name the columns for both
// directions.  A shape brings its key column; the words that end in _BY tell other ones.
#ifndef DBSHELL_VOCABULARY_H
#define DBSHELL_VOCABULARY_H

#include <algorithm>
#include <utility>

#include "checks.h"
#include "device_config.h"
#include "process_types.h"

namespace dbshell {

// ---------------------------------------------------------------------------------------- made by the compiler

// A constant with a fixed address, made by a function object without captures.
template <auto Make>
inline constexpr auto kStatic = Make();

consteval std::array<Field, 1> as_fields(Field f) {
    return {f};
}
template <std::size_t N>
consteval std::array<Field, N> as_fields(std::array<Field, N> fields) {
    return fields;
}
template <class... Parts>
consteval auto fields_of(Parts... parts) {
    std::array<Field, (std::size_t{0} + ... + std::tuple_size_v<decltype(as_fields(parts))>)> all{};
    std::size_t n = 0;
    [[maybe_unused]] const auto add = [&](const auto& part) {
        for (const Field& f : part)
            all[n++] = f;
    };
    (add(as_fields(parts)), ...);
    return all;
}

template <class... Keys>
consteval std::array<KeyColumn, sizeof...(Keys)> keys_of(Keys... k) {
    return {k...};
}

// The key columns of a table as a type, so that the statements written inside the table find them.
template <auto Make>
struct KeyList {
    static constexpr std::span<const KeyColumn> value = kStatic<Make>;
};

// A pair of tables that differ in their names and in where they lie in the record is told once, as the members of
// a class template whose parameter is called Twin.  In its texts "{t}" stands for the twin's word in a table's
// name, "{f}" for the one in its functions'; of "[one|other]" the first of the two has the one (Twin::first), the
// second the other; "[one]" is the first's alone.  FIRST_HAS(fields) are the fields that it alone has.  Root is the
// type of what holds the twin's members, kRootOffset where that lies in the record; outside a template both are the
// record's own.
struct NoTwin {
    static constexpr std::string_view table{}, function{};
};
using Twin = NoTwin;
using Root = DEVICECONFIG;
inline constexpr std::size_t kRootOffset = 0;

template <class T>
constexpr bool is_first() {
    if constexpr (requires { T::first; })
        return T::first;
    else
        return true;
}

template <class T>
constexpr std::size_t spell(std::string_view text, char* out) {
    std::size_t n = 0;
    const auto put = [&](std::string_view part) {
        for (const char c : part) {
            if (out != nullptr)
                out[n] = c;
            ++n;
        }
    };
    while (!text.empty()) {
        const bool table = text.starts_with("{t}");
        if (table || text.starts_with("{f}")) {
            put(table ? T::table : T::function);
            text.remove_prefix(3);
        } else if (text.starts_with('[')) {
            const auto end = text.find(']');
            if (end == std::string_view::npos)
                throw "a bracket is not closed";
            const auto both = text.substr(1, end - 1);
            const auto one = both.substr(0, both.find('|'));
            put(is_first<T>() ? one : both.substr(std::min(one.size() + 1, both.size())));
            text.remove_prefix(end + 1);
        } else {
            put(text.substr(0, 1));
            text.remove_prefix(1);
        }
    }
    return n;
}
template <auto Text, class T>
inline constexpr auto kSpelled = [] {
    std::array<char, spell<T>(Text(), nullptr) + 1> letters{};
    spell<T>(Text(), letters.data());
    return letters;
}();
// The text as the twin spells it; outside a template the text itself.
template <auto Text, class T>
struct Spelled {
    static constexpr std::string_view value{kSpelled<Text, T>.data(), kSpelled<Text, T>.size() - 1};
};
template <auto Text>
struct Spelled<Text, NoTwin> {
    static constexpr std::string_view value = Text();
};

template <class Text, auto Fields, class Keys>
consteval auto checked_slots() {
    constexpr SqlText sql(Text::value);
    std::array<Slot, sql.slots> slots{};
    check_statement(sql, Keys::value, kStatic<Fields>, slots.data());
    return slots;
}

template <class Text, auto Fields, class Keys>
consteval Statement make_statement(uint32_t stride) {
    constexpr SqlText sql(Text::value);
    Statement s;
    s.text = sql.text;
    s.table = sql.table;
    s.verb = sql.verb;
    s.keys = Keys::value;
    s.fields = kStatic<Fields>;
    s.slots = kStatic<[] { return checked_slots<Text, Fields, Keys>(); }>;
    s.stride = stride;
    return s;
}

template <std::size_t N>
struct Statements {
    Statement statement[N];
};
template <class... S>
consteval Statements<sizeof...(S)> statements_of(const S&... s) {
    return {{s...}};
}

// ---------------------------------------------------------------------------------------- rows of a list

// Serves the rows first to last of a list, whose fields lie in one array with the list's other rows.
consteval Statement for_rows(int16_t first, int16_t last, Statement s) {
    s.first = first;
    s.last = last;
    return s;
}

// Serves some rows of a list, within 64 of each other.
struct Rows64 {
    int16_t first, last;
    uint64_t mask;

    template <class... Row>
    constexpr explicit Rows64(Row... row)
        : first(static_cast<int16_t>(std::min({row...}))),
          last(static_cast<int16_t>(std::max({row...}))),
          mask(0) {
        if (last - first > 63)
            throw "the rows of one statement are not within 64 of each other";
        ((mask |= uint64_t{1} << (row - first)), ...);
    }
};
consteval Statement for_these(Rows64 rows, Statement s) {
    s.first = rows.first;
    s.last = rows.last;
    s.mask = rows.mask;
    return s;
}

// Serves the rows first to last of a list, whose fields lie in an array of their own: its first element is that of
// row `first`, `stride` is the distance between them, 0 for a row alone.  A template, because clang takes no other
// immediate function within a pair of tables.
template <class S>
consteval S for_block(int16_t first, int16_t last, uint32_t stride, S s) {
    s.first = s.origin = first;
    s.last = last;
    s.stride = stride;
    return s;
}

// Logs under a function's name of its own.
consteval Statement logs_as(std::string_view function, Statement s) {
    s.function = function;
    return s;
}

// ---------------------------------------------------------------------------------------- shapes
//
// A shape of the member type M tells the type of one row, the layout and the default key column.

template <class M>
struct single_row {
    using Row = M;
    static constexpr auto keys = [] { return keys_of(always("idx", 1)); };
    static constexpr Layout layout{};
    static constexpr uint32_t row_stride = 0;
};

template <class M>
struct list {
    using Row = std::remove_extent_t<M>;
    static constexpr auto keys = [] { return keys_of(inner("idx")); };
    static constexpr Layout layout{.depth = 2, .level = {{{}, {std::extent_v<M>, sizeof(Row)}}}};
    static constexpr uint32_t row_stride = sizeof(Row);
};

template <class M, Owner O>
struct per_owner {
    using Row = std::remove_extent_t<M>;
    static constexpr auto keys = [] { return keys_of(outer("idx")); };
    static constexpr Layout layout{.owner = O, .level = {{{std::extent_v<M>, sizeof(Row)}}}};
    static constexpr uint32_t row_stride = 0;
};
template <class M>
struct per_sensor : per_owner<M, Owner::sensor> {};
template <class M>
struct per_channel : per_owner<M, Owner::channel> {};
template <class M>
struct per_element : per_owner<M, Owner::element> {};

// An array of arrays: the first index is the owner's, or no one's.
template <class M, Owner O>
struct two_levels {
    using Inner = std::remove_extent_t<M>;
    using Row = std::remove_extent_t<Inner>;
    static constexpr auto keys = [] { return keys_of(outer("chan_no"), inner("idx")); };
    static constexpr Layout layout{
        .owner = O,
        .depth = 2,
        .level = {{{std::extent_v<M>, sizeof(Inner)}, {std::extent_v<Inner>, sizeof(Row)}}}};
    static constexpr uint32_t row_stride = sizeof(Row);
};
template <class M>
struct per_channel_list : two_levels<M, Owner::channel> {};
template <class M>
struct per_element_list : two_levels<M, Owner::element> {};
template <class M>
struct grid : two_levels<M, Owner::none> {};

// An array in a structure that is itself an element of arrays: Upper are the types of those, from the owner's down.
//   template <class M> using rules = rows_below<M, Owner::channel, Channel[4], Scene[10]>;
template <class M, Owner O, class... Upper>
struct rows_below {
    using Row = std::remove_extent_t<M>;
    static constexpr auto keys = [] {
        return keys_of(outer("chan_no"), inner("scene_id"), third("rule_id"));
    };
    static constexpr Layout layout{.owner = O,
                                   .depth = sizeof...(Upper) + 1,
                                   .level = {{{std::extent_v<Upper>, sizeof(std::remove_extent_t<Upper>)}...,
                                              {std::extent_v<M>, sizeof(Row)}}}};
    static constexpr uint32_t row_stride = sizeof(Row);
};

// ---------------------------------------------------------------------------------------- entries

// What a group of entries logs, and which result codes it gives, where an entry does not tell it itself; a group that
// has its own shadows these.
inline constexpr Messages kSays{};
inline constexpr Codes kCodes{};

constexpr Messages completed(Messages m, const Messages& group) {
    const Messages common{.write = "SQL error:\n",
                          .count = " db_query_row_num err !\n",
                          .remove = "delete %T err \n",
                          .insert = "insert into %T err \n",
                          .open = "db_query_open_v2 error: %d\n",
                          .no_record = "get_cfg_param err\n"};
    for (const char* Messages::*text :
         {&Messages::write,      &Messages::count,     &Messages::remove,      &Messages::insert,
          &Messages::open,       &Messages::empty,     &Messages::save_key,    &Messages::save_middle,
          &Messages::save_third, &Messages::load_key,  &Messages::load_middle, &Messages::load_third,
          &Messages::load_row,   &Messages::load_only, &Messages::no_key,      &Messages::no_middle,
          &Messages::wrapper,    &Messages::part,      &Messages::schedule,    &Messages::save_schedule,
          &Messages::load_null,  &Messages::few,       &Messages::no_record}) {
        if (m.*text == nullptr)
            m.*text = group.*text;
        if (m.*text == nullptr)
            m.*text = common.*text;
    }
    return m;
}

constexpr Table finished(Table t, Layout layout, std::size_t base, std::span<const KeyColumn> keys, int line,
                         const Messages& group, Codes group_codes) {
    t.layout = layout;
    t.layout.base = static_cast<uint32_t>(base);
    t.keys = keys;
    t.line = line;
    t.says = completed(t.says, group);
    if (t.graded.get == 0 && t.graded.set == 0)
        t.graded = group_codes;
    t.name = !t.save.empty() ? t.save[0].table : t.load[0].table;
    if (layout.owner == Owner::none || t.set.empty())
        t.single = t.single == kDerived ? std::string_view() : t.single;
    const int owners = layout.owner == Owner::none ? 0 : 1;
    if (t.indexes == kFromOwner)
        t.indexes = owners;
    if (t.made_within == kFromOwner)
        t.made_within = owners;
    check_table(t);
    return t;
}

#define TEXT_(text) ::dbshell::Spelled<[] { return std::string_view(text); }, Twin>
#define ROOT_MEMBER_(path) std::remove_reference_t<decltype((std::declval<Root&>().path))>
#define RECORD_MEMBER_(path) std::remove_reference_t<decltype((std::declval<DEVICECONFIG&>().path))>

#define REPLACE(shape, ...) ENTRY_(replace, shape, __VA_ARGS__)
#define UPDATE_ONLY(shape, ...) ENTRY_(update_only, shape, __VA_ARGS__)
#define ENSURE(shape, ...) ENTRY_(ensure, shape, __VA_ARGS__)
#define TOP_UP(shape, ...) ENTRY_(top_up, shape, __VA_ARGS__)
#define FILL_MISSING(shape, ...) ENTRY_(fill_missing, shape, __VA_ARGS__)
#define PACKED(shape, ...) ENTRY_(packed, shape, __VA_ARGS__)
// Without a set function.
#define READ_ONLY(shape, path, number, get, ...) ENTRY_(read_only, shape, path, number, get, "", __VA_ARGS__)
// With other key columns than the shape's, in parentheses: (outer("channel_no"), inner("stream_index", 0)), or ().
#define REPLACE_BY(...) ENTRY_BY_(replace, __VA_ARGS__)
#define UPDATE_ONLY_BY(...) ENTRY_BY_(update_only, __VA_ARGS__)
#define ENSURE_BY(...) ENTRY_BY_(ensure, __VA_ARGS__)
#define TOP_UP_BY(...) ENTRY_BY_(top_up, __VA_ARGS__)
#define FILL_MISSING_BY(...) ENTRY_BY_(fill_missing, __VA_ARGS__)
#define PACKED_BY(...) ENTRY_BY_(packed, __VA_ARGS__)
#define READ_ONLY_BY(shape, path, keys, number, get, ...) \
    ENTRY_BY_(read_only, shape, path, keys, number, get, "", __VA_ARGS__)

#define ENTRY_(strategy, shape, path, number, get, set, ...) \
    MADE_(strategy, shape, path, Shape::keys(), number, get, set, __VA_ARGS__)
#define ENTRY_BY_(strategy, shape, path, keys, number, get, set, ...) \
    MADE_(strategy, shape, path, ::dbshell::keys_of keys, number, get, set, __VA_ARGS__)
#define MADE_(strategy_, shape, path, keys_, number_, get_, set_, ...)                                       \
    [] {                                                                                                     \
        using Shape = shape<ROOT_MEMBER_(path)>;                                                             \
        using Row [[maybe_unused]] = typename Shape::Row;                                                    \
        using Keys = ::dbshell::KeyList<[] { return keys_; }>;                                               \
        return ::dbshell::finished(::dbshell::Table{.number = number_,                                       \
                                                    .get = TEXT_(get_)::value,                               \
                                                    .set = TEXT_(set_)::value,                               \
                                                    .strategy = ::dbshell::Strategy::strategy_,              \
                                                    __VA_ARGS__},                                            \
                                   Shape::layout, kRootOffset + offsetof(Root, path), Keys::value, __LINE__, \
                                   kSays, kCodes);                                                           \
    }()

// One statement with its fields, and lists of them.
#define PUT(text, ...)                                                                              \
    ::dbshell::make_statement<TEXT_(text), [] { return ::dbshell::fields_of(__VA_ARGS__); }, Keys>( \
        Shape::row_stride)
#define PUT_FOR(first, last, ...) ::dbshell::for_rows(first, last, PUT(__VA_ARGS__))
#define PUT_BLOCK(first, last, stride, ...) ::dbshell::for_block(first, last, stride, PUT(__VA_ARGS__))
#define ROWS(...) (::dbshell::Rows64(__VA_ARGS__))
#define PUT_THESE(rows, ...) ::dbshell::for_these(rows, PUT(__VA_ARGS__))
#define PUTS(...) ::dbshell::kStatic<[] { return ::dbshell::statements_of(__VA_ARGS__); }>.statement
#define SAVE(...) PUTS(PUT(__VA_ARGS__))
#define SQL(text) PUTS(PUT(text))

// A function's name in an option, as the twin spells it.
#define NAME(text) TEXT_(text)::value

// ---------------------------------------------------------------------------------------- fields
//
// F(member) is a number or a character array.  The others name the text form; see also as(), value(), of_holder().

#define ROW_MEMBER_(path) std::remove_cvref_t<decltype((std::declval<Row&>().path))>
#define F(path) ::dbshell::plain_field<ROW_MEMBER_(path)>(#path, offsetof(Row, path))
#define ROW_ITSELF(name) ::dbshell::plain_field<Row>(name, 0)
#define CODED(path, codec) ::dbshell::coded(F(path), codec)
#define COLONS(path) \
    CODED(path, (::dbshell::kArray<ROW_MEMBER_(path), ':'>))  // "%d:" or "%u:" by the element's type
#define COMMAS(path) CODED(path, (::dbshell::kArray<ROW_MEMBER_(path), ','>))      // "%d," or "%u,"
#define COMMAS3(path) CODED(path, (::dbshell::kArray<ROW_MEMBER_(path), ',', 3>))  // "%03d,"
#define DIGITS(path) CODED(path, (::dbshell::kArray<ROW_MEMBER_(path), 0, 3>))  // "%03d" without a separator
#define ENCRYPTED(path, capacity) ::dbshell::encrypted(F(path), capacity)
#define BITS(path, first, count) ::dbshell::bits(F(path), first, count)
#define FIRST_HAS(...) ::dbshell::first_has<Twin>(__VA_ARGS__)
// A member outside the row: of an array with one element per owner, or of one member for all rows.
#define ELSEWHERE(array) ::dbshell::elsewhere<RECORD_MEMBER_(array)>(#array, offsetof(DEVICECONFIG, array))
#define ELSEWHERE_ONCE(path) \
    ::dbshell::elsewhere_once<RECORD_MEMBER_(path)>(#path, offsetof(DEVICECONFIG, path))
// A member of each element of an array with one element per owner.
#define ELSEWHERE_IN(array, member) \
    ::dbshell::per_owner_of(ELSEWHERE_ONCE(array[0].member), sizeof(RECORD_MEMBER_(array[0])))

template <class T, class... Fields>
consteval auto first_has(Fields... f) {
    if constexpr (is_first<T>())
        return fields_of(f...);
    else
        return std::array<Field, 0>{};
}

template <class M>
constexpr Field elsewhere_once(std::string_view path, std::size_t offset) {
    Field f = plain_field<M>(path, offset);
    f.home = Home::record;
    return f;
}

constexpr Field per_owner_of(Field f, uint32_t stride) {
    f.stride[0] = stride;
    return f;
}

template <class M>
constexpr Field elsewhere(std::string_view path, std::size_t offset) {
    return per_owner_of(elsewhere_once<std::remove_extent_t<M>>(path, offset),
                        sizeof(std::remove_extent_t<M>));
}

// FIELDS(a, b, c) is F(a), F(b), F(c).
#define FIELDS(...) FIELDS_EXPAND_(FIELDS_NEXT_(__VA_ARGS__))
#define FIELDS_NEXT_(path, ...) F(path) __VA_OPT__(, FIELDS_AGAIN_ FIELDS_PARENS_(__VA_ARGS__))
#define FIELDS_AGAIN_() FIELDS_NEXT_
#define FIELDS_PARENS_ ()
#define FIELDS_EXPAND_(...) FIELDS_EXPAND3_(FIELDS_EXPAND3_(FIELDS_EXPAND3_(FIELDS_EXPAND3_(__VA_ARGS__))))
#define FIELDS_EXPAND3_(...) FIELDS_EXPAND2_(FIELDS_EXPAND2_(FIELDS_EXPAND2_(FIELDS_EXPAND2_(__VA_ARGS__))))
#define FIELDS_EXPAND2_(...) FIELDS_EXPAND1_(FIELDS_EXPAND1_(FIELDS_EXPAND1_(FIELDS_EXPAND1_(__VA_ARGS__))))
#define FIELDS_EXPAND1_(...) __VA_ARGS__

// ---------------------------------------------------------------------------------------- schedules
//
// The weekly schedule of each row's owner, or of each row of a list; of each row, by its number's process type or by
// its scene and rule; of the same in an array elsewhere; or one for the whole table.  The process type tells how it is
// stored (schedule_forms.h).

#define SCHEDULES(...) ::dbshell::kStatic<[] { return std::array{__VA_ARGS__}; }>
#define WEEKLY(type, member) \
    ::dbshell::weekly<Shape>(type, offsetof(Row, member), sizeof(ROW_MEMBER_(member)))
#define WEEKLY_BY(keyed, type, member)                                            \
    ::dbshell::Schedule {                                                         \
        type, ::dbshell::Schedule::Keyed::keyed, offsetof(Row, member), false, 0, \
            sizeof(ROW_MEMBER_(member))                                           \
    }
#define WEEKLY_EACH(type, array, member)                                                         \
    ::dbshell::Schedule {                                                                        \
        type, ::dbshell::Schedule::Keyed::by_row, offsetof(DEVICECONFIG, array[0].member), true, \
            sizeof(RECORD_MEMBER_(array[0])), sizeof(RECORD_MEMBER_(array[0].member))            \
    }
#define WEEKLY_ONCE(type, path)                                                        \
    ::dbshell::Schedule {                                                              \
        type, ::dbshell::Schedule::Keyed::once, offsetof(DEVICECONFIG, path), true, 0, \
            sizeof(RECORD_MEMBER_(path))                                               \
    }

template <class Shape>
consteval Schedule weekly(int type, std::size_t offset, std::size_t size) {
    using Keyed = Schedule::Keyed;
    constexpr Keyed keyed = Shape::layout.owner != Owner::none ? Keyed::by_owner
                            : Shape::layout.depth > 1          ? Keyed::by_row
                                                               : Keyed::once;
    return {type, keyed, static_cast<uint32_t>(offset), false, 0, static_cast<uint32_t>(size)};
}

// ---------------------------------------------------------------------------------------- steps
//
// STEPS(Step{"db_save_te_polygon", 1, "..."}, itself(1)): what a set function does, in its order.

#define STEPS(...) ::dbshell::kStatic<[] { return std::array{__VA_ARGS__}; }>
// The table's own rows and schedules.
consteval Step itself(int depth, const char* message = nullptr) {
    return {{}, depth, message};
}

// ---------------------------------------------------------------------------------------- what is not stored

#define UNSTORED(...) ::dbshell::kStatic<[] { return std::array{__VA_ARGS__}; }>
#define UNUSED_ROWS(...) ::dbshell::kStatic<[] { return std::array{__VA_ARGS__}; }>

}  // namespace dbshell

#endif
