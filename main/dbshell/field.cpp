#include "field.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace dbshell {

namespace {

template <class T>
int64_t get(const std::byte* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return static_cast<int64_t>(value);
}

template <class T>
void put(std::byte* at, int64_t value) {
    const T narrow = static_cast<T>(value);
    std::memcpy(at, &narrow, sizeof narrow);
}

}  // namespace

int64_t read_number(Kind kind, const std::byte* at) {
    switch (kind) {
        case Kind::i8:
            return get<int8_t>(at);
        case Kind::u8:
            return get<uint8_t>(at);
        case Kind::i16:
            return get<int16_t>(at);
        case Kind::u16:
            return get<uint16_t>(at);
        case Kind::i32:
            return get<int32_t>(at);
        case Kind::u32:
            return get<uint32_t>(at);
        case Kind::i64:
        case Kind::u64:
            return get<int64_t>(at);
        case Kind::f32:
        case Kind::f64:
        case Kind::text:
        case Kind::coded:
        case Kind::block:
            break;
    }
    return 0;
}

void write_number(Kind kind, std::byte* at, int64_t value) {
    switch (kind) {
        case Kind::i8:
        case Kind::u8:
            return put<uint8_t>(at, value);
        case Kind::i16:
        case Kind::u16:
            return put<uint16_t>(at, value);
        case Kind::i32:
        case Kind::u32:
            return put<uint32_t>(at, value);
        case Kind::i64:
        case Kind::u64:
            return put<uint64_t>(at, value);
        case Kind::f32:
        case Kind::f64:
        case Kind::text:
        case Kind::coded:
        case Kind::block:
            break;
    }
}

double read_real(Kind kind, const std::byte* at) {
    float narrow = 0;
    double value = 0;
    std::memcpy(&narrow, at, sizeof narrow);
    if (kind == Kind::f64)
        std::memcpy(&value, at, sizeof value);
    return kind == Kind::f64 ? value : narrow;
}

void write_real(Kind kind, std::byte* at, double value) {
    if (kind == Kind::f64) {
        std::memcpy(at, &value, sizeof value);
        return;
    }
    constexpr double kLargest = std::numeric_limits<float>::max();
    const auto narrow = static_cast<float>(std::clamp(value, -kLargest, kLargest));
    std::memcpy(at, &narrow, sizeof narrow);
}

std::string printed_real(double value) {
    char text[std::numeric_limits<double>::max_exponent10 + 16];
    const auto end = std::to_chars(text, text + sizeof text, std::isfinite(value) ? value : 0.0,
                                   std::chars_format::fixed, 6)
                         .ptr;
    return {text, end};
}

int64_t field_number(const Field& field, const std::byte* at) {
    const int64_t number = read_number(field.kind, at);
    if (field.bits == 0)
        return number;
    return static_cast<int64_t>(static_cast<uint64_t>(number) >> field.first_bit & field.bit_mask());
}

void set_field_number(const Field& field, std::byte* at, int64_t value) {
    if (field.bits != 0) {
        const uint64_t mask = field.bit_mask() << field.first_bit;
        const auto word = static_cast<uint64_t>(read_number(field.kind, at));
        value =
            static_cast<int64_t>((word & ~mask) | (static_cast<uint64_t>(value) << field.first_bit & mask));
    }
    write_number(field.kind, at, value);
}

int64_t number_of(std::string_view text) {
    const auto start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos)
        return 0;
    text.remove_prefix(start);
    bool negative = false;
    if (text.front() == '+' || text.front() == '-') {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    // The magnitude wraps at 64 bits, so that an unsigned mask in decimal keeps all its bits.
    uint64_t magnitude = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            break;
        magnitude = magnitude * 10 + static_cast<uint64_t>(c - '0');
    }
    return static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
}

int64_t number_of(double real) {
    constexpr double kSigned = 9223372036854775808.0;  // 2^63
    if (real >= kSigned * 2)
        return -1;
    if (real >= kSigned)
        return static_cast<int64_t>(static_cast<uint64_t>(real));
    return real > -kSigned ? static_cast<int64_t>(real) : 0;
}

namespace {

void append_item(const TextCodec& codec, const ListItem& item, const std::byte* at, std::string& text) {
    if (item.kind == Kind::text) {
        const auto* characters = reinterpret_cast<const char*>(at);
        const auto start = text.size();
        text.append(characters, strnlen(characters, item.width));
        std::replace(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), codec.separator, ' ');
        return;
    }
    int64_t number = read_number(item.kind, at);
    if (codec.is_signed)
        number = static_cast<int32_t>(number);
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    const auto length = static_cast<std::size_t>(end - digits);
    if (length < item.width)
        text.append(item.width - length, '0');
    text.append(digits, length);
}

void take_item(const ListItem& item, std::string_view piece, std::byte* at) {
    if (item.kind != Kind::text)
        return write_number(item.kind, at, number_of(piece));
    const std::size_t length = std::min<std::size_t>(piece.size(), item.most != 0 ? item.most : item.width);
    std::memset(at, 0, item.width);
    std::memcpy(at, piece.data(), length);
}

}  // namespace

void encode_list(const TextCodec& codec, const std::byte* member, std::string& text) {
    const auto start = text.size();
    for (unsigned g = 0; g < codec.groups; ++g, member += codec.group_stride) {
        for (const ListItem& item : items_of(codec)) {
            append_item(codec, item, member + item.offset, text);
            if (codec.separator != 0)
                text += codec.separator;
        }
    }
    if (codec.joined && text.size() > start)
        text.pop_back();
}

void decode_list(const TextCodec& codec, std::string_view text, std::byte* member) {
    for (unsigned g = 0; g < codec.groups; ++g, member += codec.group_stride) {
        for (const ListItem& item : items_of(codec)) {
            if (text.empty())
                return;  // the items that are missing keep their values
            const auto length =
                std::min(codec.separator != 0 ? text.find(codec.separator) : item.width, text.size());
            take_item(item, text.substr(0, length), member + item.offset);
            text.remove_prefix(std::min(text.size(), codec.separator != 0 ? length + 1 : length));
        }
    }
}

}  // namespace dbshell
