// The vocabulary in which the catalogue tells a table.
//
//   TABLE(per_sensor, sensor, .number = 27,
//         .get = "db_get_gamma_config", .set = "db_save_gamma_config", .single =
// "db_save_gamma_config_single",
//         .save = SAVE("replace into gamma_config_table (idx, enable, level) values(%d, %d, %d);",
//                      FIELDS(gamma.enable, gamma.level)))
//
// TABLE names the shape and the member of the record that holds the rows; inside it, the field macros take
// paths from one row.  The save texts are the declaration: they name the columns for both directions.  A
// shape brings its key column; TABLE_BY tells other ones.  docs/architecture.md walks through an entry.
#ifndef DBSHELL_TABLE_H
#define DBSHELL_TABLE_H

#include <utility>

#include "device_config.h"
#include "statement.h"

// What the outer index of a table counts.
enum class Owner : uint8_t { none, sensor, channel };

// Where the rows of a table lie in the record, in bytes from its start.
struct Layout {
    uint32_t base = 0;
    Owner owner = Owner::none;
    uint16_t outer_count = 1;
    uint32_t outer_stride = 0;
    uint16_t inner_count = 1;
    uint32_t inner_stride = 0;
};

// The texts of a table's log messages.  "%d" stands for the result code or the key, "%s" for the statement.
// A null text: the shape's own, told beside each.
struct Messages {
    const char* write = "SQL error:\n";
    const char* count = " db_query_row_num err !\n";
    const char* remove = nullptr;  // "delete TABLE err \n"
    const char* insert = nullptr;  // "insert into TABLE err \n"
    const char* open = "db_query_open_v2 error: %d\n";
    const char* empty = nullptr;     // a table without rows is no message
    const char* save_key = nullptr;  // "Invalid sensor_no-%d\n", "invalid chan_no: %d\n"
    const char* load_key = nullptr;  // "invalid sensor_no: %d\n", "invalid chan_no: %d\n"
    const char* load_row = nullptr;  // a row of a list out of its range is skipped without a message
    const char* wrapper = nullptr;   // "SINGLE failed for sensor_no: %d\n", "SINGLE error for chan_no: %d\n"
};

struct Table {
    int number = 0;                                    // in the registry; 0: none
    std::string_view get = {}, set = {}, single = {};  // the functions' names; empty: no such function
    Messages says = {};
    bool graded = false;                    // result codes -1 to -7 tell the cause; otherwise -1 for all
    bool graded_access = false;             // only -6 and -7 do: no database, no record
    bool top_up = false;                    // missing rows are added to those present, nothing is deleted
    bool bad_key_ends_load = false;         // a row of an unknown channel fails the load
    int rows = 0;                           // rows a list has for one outer index; 0: as many as its array
    int load_limit = 0;                     // rows of the result that are read; 0: all
    std::span<const Statement> count = {};  // with it: ensure-update, N rows exist before they are updated
    std::span<const Statement> fill = {};   // the default rows
    std::span<const Statement> save = {};
    std::span<const Statement> load = {};      // empty: select * from the table
    int (*load_body)(const Table&) = nullptr;  // a table that is no row of the catalogue
    int (*save_body)(const Table&, int outer) = nullptr;
    // After the table's own rows: what else its set or get function moves, a schedule say.  0, or a failure.
    int (*also_save)(const Table&, int outer) = nullptr;
    int (*also_load)(const Table&) = nullptr;
    // How many rows of the list the device has; false when it cannot be told.
    bool (*device_rows)(int* rows) = nullptr;
    std::string_view name = {};  // the SQL table; TABLE fills these three
    Layout layout = {};
    std::span<const KeyColumn> keys = {};

    constexpr int row_count() const { return rows != 0 ? rows : layout.inner_count; }
};

// ---------------------------------------------------------------------------------------- shapes
//
// A shape of the member type M tells the type of one row, the layout and the default key column.

template <class M>
struct single_row {
    using Row = M;
    static constexpr auto keys = [] { return std::array{always("idx", 1)}; };
    static constexpr Layout layout{};
};

template <class M>
struct list {
    using Row = std::remove_extent_t<M>;
    static constexpr auto keys = [] { return std::array{inner("idx")}; };
    static constexpr Layout layout{.inner_count = std::extent_v<M>, .inner_stride = sizeof(Row)};
};

template <class M>
struct per_sensor {
    using Row = std::remove_extent_t<M>;
    static constexpr auto keys = [] { return std::array{outer("idx")}; };
    static constexpr Layout layout{
        .owner = Owner::sensor, .outer_count = std::extent_v<M>, .outer_stride = sizeof(Row)};
};

template <class M>
struct per_channel {
    using Row = std::remove_extent_t<M>;
    static constexpr auto keys = [] { return std::array{outer("idx")}; };
    static constexpr Layout layout{
        .owner = Owner::channel, .outer_count = std::extent_v<M>, .outer_stride = sizeof(Row)};
};

template <class M>
struct per_channel_list {
    using Row = std::remove_extent_t<std::remove_extent_t<M>>;
    static constexpr auto keys = [] { return std::array{outer("chan_no"), inner("idx")}; };
    static constexpr Layout layout{.owner = Owner::channel,
                                   .outer_count = std::extent_v<M>,
                                   .outer_stride = sizeof(std::remove_extent_t<M>),
                                   .inner_count = std::extent_v<M, 1>,
                                   .inner_stride = sizeof(Row)};
};

template <class... Keys>
consteval std::array<KeyColumn, sizeof...(Keys)> keys_of(Keys... k) {
    return {k...};
}
consteval std::array<KeyColumn, 0> keys_of() {
    return {};
}

consteval Table finished(Table t, Layout layout, std::size_t base, std::span<const KeyColumn> keys) {
    t.layout = layout;
    t.layout.base = static_cast<uint32_t>(base);
    t.keys = keys;
    t.name = SqlText(t.save.empty() ? t.load[0].text : t.save[0].text).table;
    return t;
}

// ---------------------------------------------------------------------------------------- entries

#define RECORD_MEMBER_(path) std::remove_reference_t<decltype((std::declval<DEVICECONFIG&>().path))>

#define TABLE(shape, path, ...) TABLE_(shape, path, Shape::keys(), __VA_ARGS__)
// With other key columns than the shape's, in parentheses: (outer("channel_no"), inner("stream_index",
// 0)), or ().
#define TABLE_BY(shape, path, keys, ...) TABLE_(shape, path, keys_of keys, __VA_ARGS__)
#define TABLE_(shape, path, keys_, ...)                                                                \
    [] {                                                                                               \
        using Shape = shape<RECORD_MEMBER_(path)>;                                                     \
        using Row [[maybe_unused]] = Shape::Row;                                                       \
        using Keys = KeyList<[] { return keys_; }>;                                                    \
        return finished(Table{__VA_ARGS__}, Shape::layout, offsetof(DEVICECONFIG, path), Keys::value); \
    }()

// One statement with its fields, and lists of them.
#define PUT(text, ...)                                                                                  \
    make_statement<[] { return std::string_view(text); }, [] { return fields_of(__VA_ARGS__); }, Keys>( \
        Shape::layout.inner_stride)
#define PUT_FOR(first, last, ...) for_rows(first, last, PUT(__VA_ARGS__))
#define PUT_BLOCK(first, last, stride, ...) for_block(first, last, stride, PUT(__VA_ARGS__))
#define PUTS(...) kStatic<[] { return std::array{__VA_ARGS__}; }>
#define SAVE(...) PUTS(PUT(__VA_ARGS__))
#define SQL(text) PUTS(PUT(text))
// One statement with an address of its own, for code that is no table: where Row, Shape and Keys are in
// scope.
#define ONE(...) kStatic<[] { return PUT(__VA_ARGS__); }>

// ---------------------------------------------------------------------------------------- fields
//
// F(member) is a number or a character array.  The others name the text form; see also as() and value().

#define ROW_MEMBER_(path) std::remove_cvref_t<decltype((std::declval<Row&>().path))>
#define F(path) plain_field<ROW_MEMBER_(path)>(#path, offsetof(Row, path))
#define ROW_ITSELF(name) plain_field<Row>(name, 0)
#define CODED(path, codec) coded(F(path), codec)
#define COLONS(path) CODED(path, (kArray<ROW_MEMBER_(path), ':'>))  // "%d:" or "%u:" by the element's type
#define COMMAS(path) CODED(path, (kArray<ROW_MEMBER_(path), ','>))  // "%d," or "%u,"
#define COMMAS3(path) CODED(path, (kArray<ROW_MEMBER_(path), ',', 3>))  // "%03d,"
#define DIGITS(path) CODED(path, (kArray<ROW_MEMBER_(path), 0, 3>))     // "%03d" without a separator
#define ENCRYPTED(path, capacity) encrypted(F(path), capacity)
// A member outside the row: of an array with one element per outer index, or per outer and inner index.
#define ELSEWHERE(array) elsewhere<RECORD_MEMBER_(array)>(#array, offsetof(DEVICECONFIG, array))
#define ELSEWHERE_IN(array, path)                                          \
    elsewhere_in<RECORD_MEMBER_(array), RECORD_MEMBER_(array[0][0].path)>( \
        #path, offsetof(DEVICECONFIG, array[0][0].path))

template <class M>
consteval Field elsewhere(std::string_view path, std::size_t offset) {
    Field f = plain_field<std::remove_extent_t<M>>(path, offset);
    f.stride = sizeof(std::remove_extent_t<M>);
    f.absolute = true;
    return f;
}

template <class Array, class M>
consteval Field elsewhere_in(std::string_view path, std::size_t offset) {
    Field f = plain_field<M>(path, offset);
    f.stride = sizeof(std::remove_extent_t<Array>);
    f.inner_stride = sizeof(std::remove_all_extents_t<Array>);
    f.absolute = true;
    return f;
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

#endif
