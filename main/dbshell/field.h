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

namespace dbshell {

// A whole number, a number with decimals, a fixed-size character array, an array held as one text (TextCodec), or
// any other block of bytes.
enum class Kind : uint8_t { i8, u8, i16, u16, i32, u32, i64, u64, f32, f64, text, coded, block };

// A whole number.
constexpr bool is_number(Kind k) {
    return k < Kind::f32;
}

constexpr bool is_real(Kind k) {
    return k == Kind::f32 || k == Kind::f64;
}

constexpr bool is_wide(Kind k) {
    return k == Kind::i64 || k == Kind::u64;
}

// Reads or writes a number of the given kind; a value wider than the kind is truncated to its width.
int64_t read_number(Kind kind, const std::byte* at);
void write_number(Kind kind, std::byte* at, int64_t value);

// A value beyond a float's range becomes the nearest.
double read_real(Kind kind, const std::byte* at);
void write_real(Kind kind, std::byte* at, double value);

// What "%f" prints of a value, six digits behind the point; of one that is not finite it is a zero, because SQL has
// no word for it.
std::string printed_real(double value);

// The leading decimal number of a text as atoll reads it: blanks, a sign, digits; 0 without any.
int64_t number_of(std::string_view text);

// A number that the database holds as a real.  A 64-bit mask above the signed range, printed into a
// statement, was stored so: it comes back as near as a double is, and all ones as all ones.
int64_t number_of(double real);

// One item of a list's group: a whole number, or a text.  A separator within a text is stored as a blank, so that the
// items behind it keep their places.
struct ListItem {
    uint16_t offset;  // bytes from the group's start
    Kind kind;
    uint8_t width = 0;  // "%03d": 3; 0: as many digits as the number has; a text: the bytes of its member
    uint8_t most = 0;   // of a text: characters that are loaded; 0: all that the member has room for
};

// How an array is held in one text column.
struct TextCodec {
    // Appends to the text.
    void (*encode)(const TextCodec&, const std::byte* member, std::string& text);
    // Items that the text does not hold keep their values.
    void (*decode)(const TextCodec&, std::string_view text, std::byte* member);
    std::span<const ListItem> group;
    uint16_t groups = 1;
    uint16_t group_stride = 0;
    char separator = ':';    // follows every item, the last too; 0: none, items have a fixed width
    bool is_signed = false;  // "%d" of an unsigned word
    void (*absent)(std::byte* member) = nullptr;  // the column is NULL or missing; null: nothing to do
    std::span<const ListItem> mixed = {};         // in place of `group` where there are texts among the items
    bool joined = false;                          // no separator behind the last item
};

constexpr std::span<const ListItem> items_of(const TextCodec& codec) {
    return codec.mixed.empty() ? codec.group : codec.mixed;
}

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
    else if constexpr (std::is_same_v<T, float>)
        return Kind::f32;
    else if constexpr (std::is_same_v<T, double>)
        return Kind::f64;
    else
        return Kind::block;
}

// What a field's offset counts from: the row; what holds the rows of a block (the row without the block's
// stride); the start of the record, with strides of its own.
enum class Home : uint8_t { row, holder, record };

struct Field {
    std::string_view name;    // the column that holds it
    uint32_t offset = 0;      // bytes from its home
    uint32_t size = 0;        // bytes of the whole member
    uint32_t stride[2] = {};  // Home::record: bytes from one index of the first and second level to the next
    Kind kind = Kind::block;
    Home home = Home::row;
    uint8_t first_bit = 0;     // of a number's bits: the lowest, and
    uint8_t bits = 0;          //   how many; 0: all
    bool constant = false;     // `value` always; nothing in the record
    uint16_t encrypted = 0;    // output capacity of the encryption; 0: stored as it is
    bool credential = false;   // a secret, whatever its name is
    bool each_source = false;  // a list with an item for each event source that the device has
    uint16_t load_limit = 0;   // characters of a text that a load takes; 0: as many as the member holds
    int64_t value = 0;
    const TextCodec* codec = nullptr;  // Kind::coded only

    constexpr bool textual() const { return kind == Kind::text || kind == Kind::coded; }
    // A credential: never shown in a log or on a screen.
    constexpr bool secret() const {
        if (encrypted != 0 || credential)
            return true;
        for (const std::string_view part : {"passw", "pass_word", "passphrase", "pincode", "secret"})
            if (name.find(part) != std::string_view::npos)
                return true;
        return false;
    }
    constexpr uint64_t bit_mask() const { return (uint64_t{1} << bits) - 1; }  // bits != 0
};

// The number that a field holds, whose member stands at `at`; of its bits alone where it has some.
int64_t field_number(const Field& field, const std::byte* at);
void set_field_number(const Field& field, std::byte* at, int64_t value);

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

constexpr Field coded(Field f, const TextCodec& codec) {
    f.kind = Kind::coded;
    f.codec = &codec;
    return f;
}

// Holds the column `name`, which is not the member's own name.
constexpr Field as(std::string_view name, Field f) {
    f.name = name;
    return f;
}

// Stored encrypted; `capacity` bytes is the most that the stored text may take, its end included.
constexpr Field encrypted(Field f, uint16_t capacity) {
    f.encrypted = capacity;
    return f;
}

// A list that stores no more items than the device has event sources.
consteval Field each_source(Field f) {
    f.each_source = true;
    return f;
}

// A load takes at most so many characters of the text.
consteval Field loaded_up_to(uint16_t limit, Field f) {
    f.load_limit = limit;
    return f;
}

// Stored as it is, and shown nowhere; a name that tells so needs no mark.
consteval Field credential(Field f) {
    f.credential = true;
    return f;
}

// `count` bits of a number, from the bit `first` up.
constexpr Field bits(Field f, uint8_t first, uint8_t count) {
    if (!is_number(f.kind) || first + count > static_cast<int>(f.size * 8))
        throw "bits of a field that is no number, or beyond its width";
    f.first_bit = first;
    f.bits = count;
    return f;
}

// Of what holds the rows of a block: the same for all of them.
constexpr Field of_holder(Field f) {
    f.home = Home::holder;
    return f;
}

// A value that no member holds.
constexpr Field value(std::string_view name, int64_t n) {
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

}  // namespace dbshell

#endif
