// A statement of the catalogue: an SQL text with printf conversions, and what each conversion takes.
//
// The compiler checks the text against its fields: a conversion takes the value of a key column, or of
// the next field, whose name must be the column's name and whose type must fit the conversion.  A wrong
// entry does not compile, and the error quotes the sentence that stands in the failing throw below.
//
// The text is executed as it stands, with bound parameters: a quoted conversion binds text, a bare one a
// number.
#ifndef DBSHELL_STATEMENT_H
#define DBSHELL_STATEMENT_H

#include <array>
#include <span>

#include "field.h"
#include "sql_text.h"

// What a key column counts.  The value in the database is the index plus the bias; rows are counted from
// 1 there.
enum class Dim : uint8_t { constant, outer, inner, third };

struct KeyColumn {
    std::string_view name;
    Dim dim;
    int32_t bias = 1;  // constant: the value itself
};

consteval KeyColumn outer(std::string_view name, int32_t bias = 1) {
    return {name, Dim::outer, bias};
}
consteval KeyColumn inner(std::string_view name, int32_t bias = 1) {
    return {name, Dim::inner, bias};
}
consteval KeyColumn third(std::string_view name, int32_t bias = 1) {
    return {name, Dim::third, bias};
}
consteval KeyColumn always(std::string_view name, int32_t value) {
    return {name, Dim::constant, value};
}

// The indexes of one row, counted from 0.
struct RowIndex {
    int outer = 0, inner = 0, third = 0;

    constexpr int key(const KeyColumn& k) const {
        switch (k.dim) {
            case Dim::outer:
                return outer + k.bias;
            case Dim::inner:
                return inner + k.bias;
            case Dim::third:
                return third + k.bias;
            case Dim::constant:
                break;
        }
        return k.bias;
    }
};

struct Param {
    bool is_key;
    uint8_t index;  // into the statement's keys or fields
    Conversion conversion;
};

struct Statement {
    std::string_view text;
    Verb verb = Verb::select;
    std::span<const KeyColumn> keys;
    std::span<const Field> fields;
    std::span<const Param> params;
    // The rows of a list that it serves, counted from 1; last 0: every row.
    int16_t first = 1, last = 0;
    // Where row i's fields lie: (i - origin) * stride from the list's start.
    int16_t origin = 1;
    uint32_t stride = 0;

    constexpr bool serves(int inner) const { return inner + 1 >= first && (last == 0 || inner + 1 <= last); }
};

constexpr bool fits(const Field& f, const Conversion& c) {
    if (c.quoted && c.kind == 's')
        return f.textual();
    if (f.textual() || !is_number(f.kind))
        return false;
    return is_wide(f.kind) == (c.kind == 'l');
}

// Pairs every conversion of `text` with a key column or the next field.
template <std::size_t Conversions>
consteval std::array<Param, Conversions> checked(std::string_view text, std::span<const KeyColumn> keys,
                                                 std::span<const Field> fields) {
    const SqlText sql(text);
    std::array<Param, Conversions> params{};
    std::size_t n = 0, next = 0;
    for (std::size_t i = 0; i < sql.slots; ++i) {
        const Slot& s = sql.slot[i];
        if (s.conversion.kind == 0)
            continue;
        std::size_t k = 0;
        while (k < keys.size() && keys[k].name != s.column)
            ++k;
        if (k < keys.size()) {
            if (s.conversion.quoted || s.conversion.kind == 'l')
                throw "a key column takes a bare %d or %u";
            params[n++] = {true, static_cast<uint8_t>(k), s.conversion};
            continue;
        }
        if (s.where)
            throw "a conversion behind \"where\" stands for a column that is no key column of the table";
        if (next == fields.size())
            throw "the statement has more conversions than fields";
        if (fields[next].name != s.column)
            throw "a field's name is not the name of the column it is stored in";
        if (!fits(fields[next], s.conversion))
            throw "a field's type does not fit its conversion";
        params[n++] = {false, static_cast<uint8_t>(next++), s.conversion};
    }
    if (next != fields.size())
        throw "the statement has fewer conversions than fields";
    return params;
}

// A constant with a fixed address, made by a function object without captures.
template <auto Make>
inline constexpr auto kStatic = Make();

template <class... Fields>
consteval std::array<Field, sizeof...(Fields)> fields_of(Fields... f) {
    return {f...};
}
consteval std::array<Field, 0> fields_of() {
    return {};
}

// The key columns of a table as a type, so that the statements written inside the table find them.
template <auto Make>
struct KeyList {
    static constexpr std::span<const KeyColumn> value = kStatic<Make>;
};

template <auto Text, auto Fields, class Keys>
consteval Statement make_statement(uint32_t stride) {
    Statement s;
    s.text = Text();
    s.verb = SqlText(Text()).verb;
    s.keys = Keys::value;
    s.fields = kStatic<Fields>;
    s.params =
        kStatic<[] { return checked<SqlText(Text()).conversions()>(Text(), Keys::value, kStatic<Fields>); }>;
    s.stride = stride;
    return s;
}

// Serves the rows first to last of a list, whose fields lie in one array with the list's other rows.
consteval Statement for_rows(int16_t first, int16_t last, Statement s) {
    s.first = first;
    s.last = last;
    return s;
}

// Serves the rows first to last of a list, whose fields lie in an array of their own.
consteval Statement for_block(int16_t first, int16_t last, uint32_t stride, Statement s) {
    s.first = s.origin = first;
    s.last = last;
    s.stride = stride;
    return s;
}

#endif
