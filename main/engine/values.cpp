#include "values.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "rows.h"
#include "sec_db_enc.h"

namespace dbshell {

namespace {

// Appends the text that a field is stored as.
void append_stored(const Field& field, const std::byte* at, Counts counts, std::string& text) {
    const auto start = text.size();
    if (field.kind == Kind::coded) {
        TextCodec codec = *field.codec;
        if (field.each_source)
            codec.groups = static_cast<uint16_t>(std::min<int>(codec.groups, counts.sources));
        codec.encode(codec, at, text);
    } else {
        text.append(reinterpret_cast<const char*>(at), field.size);
        text.resize(start + strnlen(text.data() + start, field.size));
    }
    if (field.encrypted == 0)
        return;
    std::string output(field.encrypted, '\0');
    db_encrypt(text.c_str() + start, output.data(), static_cast<int>(text.size() - start), field.encrypted);
    text.resize(start);
    text.append(output, 0, strnlen(output.data(), output.size()));
}

// The value that a conversion would print, as a number.
int64_t converted(const Conversion& conversion, int64_t number) {
    switch (conversion.kind) {
        case 'd':
            return static_cast<int32_t>(number);
        case 'u':
            return static_cast<uint32_t>(number);
        default:
            return number;
    }
}

int64_t number_of_slot(const Table& t, const Statement& s, const Slot& slot, const std::byte* base,
                       Index index, Counts counts) {
    if (slot.source == Source::key)
        return converted(slot.conversion, key_value(s, s.keys[slot.index], index, counts));
    const Field& f = s.fields[slot.index];
    return converted(slot.conversion,
                     f.constant ? f.value : field_number(f, base + field_offset(t, s, f, index)));
}

std::string real_of_slot(const Table& t, const Statement& s, const Slot& slot, const std::byte* base,
                         Index index) {
    const Field& f = s.fields[slot.index];
    return printed_real(read_real(f.kind, base + field_offset(t, s, f, index)));
}

void append_number(std::string& text, int64_t number, bool is_unsigned) {
    char digits[24];
    const auto end = is_unsigned
                         ? std::to_chars(digits, digits + sizeof digits, static_cast<uint64_t>(number)).ptr
                         : std::to_chars(digits, digits + sizeof digits, number).ptr;
    text.append(digits, end);
}

// A character of a value as a log line shows it: quotes as SQL doubles them, no control byte as it is.
void append_shown(std::string& out, char c) {
    constexpr char kDigits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F)
        out.append("\\x").append(1, kDigits[byte / 16]).append(1, kDigits[byte % 16]);
    else
        out.append(c == '\'' ? 2 : 1, c);
}
bool is_text(const Statement& s, const Slot& slot) {
    return slot.source == Source::field && s.fields[slot.index].textual();
}

}  // namespace

void Values::read(const Table& t, const Statement& s, const std::byte* base, Index index, Counts counts) {
    values_.clear();
    texts_.clear();
    for (const Slot& slot : s.slots) {
        if (!slot.bound())
            continue;
        Value v{.is_text = slot.conversion.quoted, .at = texts_.size()};
        if (is_text(s, slot)) {
            const Field& field = s.fields[slot.index];
            append_stored(field, base + field_offset(t, s, field, index), counts, texts_);
        } else if (slot.conversion.kind == 'f') {
            v.is_real = true;
            v.real = std::strtod(real_of_slot(t, s, slot, base, index).c_str(), nullptr);
        } else {
            v.number = number_of_slot(t, s, slot, base, index, counts);
            if (v.is_text)
                append_number(texts_, v.number, false);
        }
        v.size = texts_.size() - v.at;
        values_.push_back(v);
    }
}

int Values::bind(sqlite3_stmt* s) const {
    int position = 0;
    for (const Value& v : values_) {
        ++position;
        const int rc = v.is_text   ? sqlite3_bind_text(s, position, texts_.data() + v.at,
                                                       static_cast<int>(v.size), SQLITE_STATIC)
                       : v.is_real ? sqlite3_bind_double(s, position, v.real)
                                   : sqlite3_bind_int64(s, position, v.number);
        if (rc != SQLITE_OK)
            return rc;
    }
    return SQLITE_OK;
}

Values::Match Values::compare(std::size_t parameter, const Rows& rows, int column) const {
    const Value& v = values_[parameter];
    return v.is_text   ? rows.compare(column, std::string_view(texts_).substr(v.at, v.size))
           : v.is_real ? rows.compare(column, v.real)
                       : rows.compare(column, v.number);
}

std::string rendered(const Table& t, const Statement& s, const std::byte* base, Index index, Counts counts) {
    std::string out;
    std::size_t from = 0;
    for (const Slot& slot : s.slots) {
        if (!slot.bound())
            continue;
        out.append(s.text, from, slot.value_at - from);
        from = slot.value_at + std::size_t{slot.value_size};
        if (slot.conversion.quoted)
            out += '\'';
        if (slot.source == Source::field && s.fields[slot.index].secret()) {
            out += "***";
        } else if (is_text(s, slot)) {
            const Field& field = s.fields[slot.index];
            std::string text;
            append_stored(field, base + field_offset(t, s, field, index), counts, text);
            for (const char c : text)
                append_shown(out, c);
        } else if (slot.conversion.kind == 'f') {
            out += real_of_slot(t, s, slot, base, index);
        } else {
            append_number(out, number_of_slot(t, s, slot, base, index, counts), s.value(slot) == "%llu");
        }
        if (slot.conversion.quoted)
            out += '\'';
    }
    return out.append(s.text, from);
}

void load_text(const Field& field, std::string_view text, std::byte* at) {
    std::string clear;
    if (field.encrypted != 0) {
        // As large as the longest clear text; the field or its list takes what it has room for.
        clear.resize(kMaxStoredText + 1);
        db_decrypt(text.data(), clear.data(), static_cast<int>(text.size()), static_cast<int>(clear.size()));
        clear.resize(strnlen(clear.data(), clear.size()));
        text = clear;
    }
    if (field.kind == Kind::coded)
        return field.codec->decode(*field.codec, text, at);
    const auto length =
        std::min<std::size_t>(text.size(), field.load_limit != 0 ? field.load_limit : field.size);
    std::memcpy(at, text.data(), length);
    std::memset(at + length, 0, field.size - length);
}

}  // namespace dbshell
