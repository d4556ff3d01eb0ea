// A field: where one value lives in the shared record, and how it is written as a column.
//
// Offsets are fixed at compile time; nothing here holds an address of the record.  The text forms of arrays
// (TextCodec) are pairs of functions with their data; a new form is two functions.
#ifndef DBSHELL_FIELD_H
#define DBSHELL_FIELD_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

// A number, a fixed-size character array, an array held as one text (TextCodec), or any other block of bytes.
enum class Kind : uint8_t { i8, u8, i16, u16, i32, u32, i64, u64, text, coded, block };

constexpr bool is_number(Kind k) {
    return k < Kind::text;
}

constexpr bool is_wide(Kind k) {
    return k == Kind::i64 || k == Kind::u64;
}

// Reads or writes a number of the given kind; a value wider than the kind is truncated to its width.
int64_t read_number(Kind kind, const std::byte* at);
void write_number(Kind kind, std::byte* at, int64_t value);

// The leading decimal number of a text as atoll reads it: blanks, a sign, digits; 0 without any.
int64_t number_of(std::string_view text);

// A number that the database holds as a real.  A 64-bit mask above the signed range, printed into a
// statement, was stored so: it comes back as near as a double is, and all ones as all ones.
int64_t number_of(double real);

// One number of a list's group.
struct ListItem {
    uint16_t offset;  // bytes from the group's start
    Kind kind;
    uint8_t width = 0;  // "%03d": 3; 0: as many digits as the number has
};

// How an array is held in one text column.
struct TextCodec {
    void (*encode)(const TextCodec&, const std::byte* member, std::string& text);
    // Items that the text does not hold keep their values.
    void (*decode)(const TextCodec&, std::string_view text, std::byte* member);
    std::span<const ListItem> group;
    uint16_t groups = 1;
    uint16_t group_stride = 0;
    char separator = ':';    // follows every item, the last too; 0: none, items have a fixed width
    bool is_signed = false;  // "%d" of an unsigned word
    void (*absent)(std::byte* member) = nullptr;  // the column is NULL or missing; null: nothing to do
};

void encode_list(const TextCodec&, const std::byte*, std::string&);
void decode_list(const TextCodec&, std::string_view, std::byte*);

// Where a plain T and an array of T stand: the kind of one number.
template <class T>
constexpr Kind kind_of() {
    if constexpr (std::is_same_v<T, char> || std::is_same_v<T, uint8_t>)
        return Kind::u8;
    else if constexpr (std::is_same_v<T, int8_t>)
        return Kind::i8;
    else if constexpr (std::is_same_v<T, int16_t>)
        return Kind::i16;
    else if constexpr (std::is_same_v<T, uint16_t>)
        return Kind::u16;
    else if constexpr (std::is_same_v<T, int32_t>)
        return Kind::i32;
    else if constexpr (std::is_same_v<T, uint32_t>)
        return Kind::u32;
    else if constexpr (std::is_same_v<T, int64_t>)
        return Kind::i64;
    else if constexpr (std::is_same_v<T, uint64_t>)
        return Kind::u64;
    else
        return Kind::block;
}

struct Field {
    std::string_view name;      // the column that holds it
    uint32_t offset = 0;        // bytes from the row's start; absolute: from the record's
    uint32_t size = 0;          // bytes of the whole member
    uint32_t stride = 0;        // absolute: bytes from one outer index to the next,
    uint32_t inner_stride = 0;  //   and from one inner index to the next
    Kind kind = Kind::block;
    bool absolute = false;
    bool constant = false;   // `value` always; nothing in the record
    uint16_t encrypted = 0;  // output capacity of the encryption; 0: stored as it is
    int64_t value = 0;
    const TextCodec* codec = nullptr;  // Kind::coded only

    constexpr bool textual() const { return kind == Kind::text || kind == Kind::coded; }
    // A credential: never shown in a log or on a screen.
    constexpr bool secret() const {
        if (encrypted != 0)
            return true;
        for (const std::string_view part : {"passw", "pass_word", "passphrase", "pincode", "secret"})
            if (name.find(part) != std::string_view::npos)
                return true;
        return false;
    }
};

// "a.b[0].c" is known by its last name, c.
constexpr std::string_view last_name(std::string_view path) {
    const auto dot = path.rfind('.');
    if (dot != std::string_view::npos)
        path.remove_prefix(dot + 1);
    return path.substr(0, path.find('['));
}

// A number or a character array as it stands.
template <class T>
constexpr Field plain_field(std::string_view path, std::size_t offset) {
    using Member = std::remove_cvref_t<T>;
    Field f;
    f.name = last_name(path);
    f.offset = static_cast<uint32_t>(offset);
    f.size = sizeof(Member);
    f.kind = std::is_array_v<Member> && std::is_same_v<std::remove_extent_t<Member>, char>
                 ? Kind::text
                 : kind_of<Member>();
    return f;
}

consteval Field coded(Field f, const TextCodec& codec) {
    f.kind = Kind::coded;
    f.codec = &codec;
    return f;
}

// Holds the column `name`, which is not the member's own name.
consteval Field as(std::string_view name, Field f) {
    f.name = name;
    return f;
}

// Stored encrypted; `capacity` bytes is the most that the stored text may take, its end included.
consteval Field encrypted(Field f, uint16_t capacity) {
    f.encrypted = capacity;
    return f;
}

// A value that no member holds.
consteval Field value(std::string_view name, int64_t n) {
    Field f;
    f.name = name;
    f.kind = Kind::i32;
    f.constant = true;
    f.value = n;
    return f;
}

// The codec of a plain array of numbers, any number of dimensions, in memory order.
template <class T, uint8_t Width>
inline constexpr ListItem kArrayItem[] = {{0, kind_of<std::remove_all_extents_t<T>>(), Width}};

template <class T, char Separator, uint8_t Width = 0>
inline constexpr TextCodec kArray = {encode_list,
                                     decode_list,
                                     kArrayItem<T, Width>,
                                     static_cast<uint16_t>(sizeof(T) / sizeof(std::remove_all_extents_t<T>)),
                                     sizeof(std::remove_all_extents_t<T>),
                                     Separator};

#endif
