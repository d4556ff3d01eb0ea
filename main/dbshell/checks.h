// What a wrong entry of the catalogue is told.  The compiler runs these checks on every entry: a wrong one does
// not compile, and the error quotes the sentence that stands in the failing throw.
#ifndef DBSHELL_CHECKS_H
#define DBSHELL_CHECKS_H

#include "table.h"

namespace dbshell {

constexpr bool fits(const Field& f, const Conversion& c) {
    if (c.quoted && c.kind == 's')
        return f.textual();
    if (is_real(f.kind) || c.kind == 'f')
        return is_real(f.kind) && c.kind == 'f' && !c.quoted;
    if (f.textual() || !is_number(f.kind))
        return false;
    return is_wide(f.kind) == (c.kind == 'l');
}

// Pairs every column of `sql` with what gives its value: its literal, a key column or the next field.  A
// conversion takes the value of a key column, or of the next field, whose name must be the column's name and whose
// type must fit the conversion.  `made` has room for sql.slots.
constexpr void check_statement(const SqlText& sql, std::span<const KeyColumn> keys,
                               std::span<const Field> fields, Slot* made) {
    std::size_t next = 0;
    for (std::size_t i = 0; i < sql.slots; ++i) {
        const TextSlot& s = sql.slot[i];
        const auto place = [&](std::string_view part) {
            return part.empty() ? std::size_t{0} : static_cast<std::size_t>(part.data() - sql.text.data());
        };
        if (s.column.size() > 255 || s.value.size() > 255 || sql.text.size() > 65535)
            throw "a statement, a column's name or a literal is too long";
        made[i] = {static_cast<uint16_t>(place(s.column)),
                   static_cast<uint16_t>(place(s.value)),
                   static_cast<uint8_t>(s.column.size()),
                   static_cast<uint8_t>(s.value.size()),
                   s.conversion,
                   s.role,
                   Source::literal,
                   0};
        if (s.conversion.kind == 0 && (s.role != SlotRole::selected || fields.empty()))
            continue;
        std::size_t k = 0;
        while (k < keys.size() && keys[k].name != s.column)
            ++k;
        if (k < keys.size()) {
            if (s.conversion.quoted || s.conversion.kind == 'l' || s.conversion.kind == 'f')
                throw "a key column takes a bare %d or %u";
            made[i].source = Source::key;
            made[i].index = static_cast<uint8_t>(k);
            continue;
        }
        if (next == fields.size())
            throw "the statement has more conversions than fields";
        if (s.role == SlotRole::condition && !fields[next].constant)
            throw "a conversion behind \"where\" stands for a column that is no key column of the table";
        if (fields[next].name != s.column)
            throw "a field's name is not the name of the column it is stored in";
        if (s.role != SlotRole::selected && !fits(fields[next], s.conversion))
            throw "a field's type does not fit its conversion";
        made[i].source = Source::field;
        made[i].index = static_cast<uint8_t>(next++);
    }
    if (next != fields.size())
        throw "the statement has fewer conversions than fields";
}

// A statement that stores rows of a level with several must name the row that it stores.
constexpr void check_names_its_row(const Table& t, const Statement& s) {
    for (int level = 0; level <= t.row_level(); ++level) {
        const int several = level < t.row_level() ? t.count(level) : s.rows_from(t.row_count());
        if (several == 1 && !(level == 0 && t.layout.owner != Owner::none))
            continue;
        bool named = false;
        for (std::size_t k = 0; k < t.keys.size(); ++k)
            named = named || (t.keys[k].counts(level) && s.uses(k));
        if (!named)
            throw "a statement that is for several rows does not name the row by a key column";
    }
}

constexpr bool stores_column(const Statement& s, std::string_view column) {
    for (const Slot& slot : s.slots)
        if (slot.role == SlotRole::stored && s.column(slot) == column)
            return true;
    return false;
}

constexpr bool same_column(const Statement& a, const Statement& b) {
    for (const Slot& x : a.slots)
        for (const Slot& y : b.slots)
            if (x.role == SlotRole::stored && y.role == SlotRole::stored && x.source == Source::field &&
                a.column(x) == b.column(y))
                return true;
    return false;
}

constexpr bool contains(std::span<const int> numbers, int wanted) {
    for (const int n : numbers)
        if (n == wanted)
            return true;
    return false;
}

// Every row of the list is stored, and no column of it twice.
constexpr void check_rows(const Table& t, std::span<const Statement> statements) {
    for (int row = 0; row < t.row_count(); ++row) {
        bool served = false;
        for (std::size_t i = 0; i < statements.size(); ++i) {
            if (!statements[i].serves(row))
                continue;
            for (std::size_t k = 0; k < i; ++k)
                if (statements[k].serves(row) && same_column(statements[k], statements[i]))
                    throw "two statements store the same column of a row";
            served = true;
        }
        if (!served && !contains(t.unused_rows, row + 1))
            throw "no statement serves one of the rows; name it in .unused_rows when it holds nothing";
        if (served && contains(t.unused_rows, row + 1))
            throw "a statement serves a row of .unused_rows";
    }
}

constexpr void check_fill(const Table& t) {
    for (const Statement& s : t.fill) {
        if (s.verb != Verb::insert)
            throw "a default row is made by an insert";
        if (s.table != t.name)
            throw "a default row is another table's";
    }
    for (int row = 0; row < t.row_count(); ++row) {
        int served = 0;
        for (const Statement& s : t.fill)
            served += s.serves(row) ? 1 : 0;
        if (served != 1)
            throw "each row has one default row";
    }
}

constexpr void check_steps(const Table& t) {
    int own = 0, depth = 0;
    for (const Step& s : t.steps) {
        own += s.function.empty() ? 1 : 0;
        if (s.depth < depth || s.depth > kLevels || (s.function.empty() && s.depth > t.row_level() + 1))
            throw "steps stand in the order of their depths; its own are no deeper than the rows";
        depth = s.depth;
    }
    if (!t.steps.empty() && own != 1)
        throw "one step stores the table's own rows";
}

constexpr void check_table(const Table& t) {
    if (t.number < 0 || t.number > 253)
        throw "a table's number is from 1 to 253, or 0 for none";
    if (t.number != 0 && t.get.empty())
        throw "a table of the registry has a get function";
    const bool stored = t.strategy != Strategy::read_only;
    if (stored == t.set.empty())
        throw "a table has a set function unless it is read only";
    if (stored && t.save.empty())
        throw "a table that is stored has a save statement";
    if (t.has_single() && t.layout.owner == Owner::none)
        throw "a table without an owner has no _single function";
    const bool makes_rows = t.strategy == Strategy::ensure || t.strategy == Strategy::top_up ||
                            t.strategy == Strategy::fill_missing || t.strategy == Strategy::packed;
    if (makes_rows == t.fill.empty())
        throw "default rows belong to the strategies that make rows, and to no other";
    if (makes_rows)
        check_fill(t);
    const auto is_told =
        [&](int level) {  // a comparison of key_of() is no constant under a sanitizer (GCC 12)
            for (const KeyColumn& k : t.keys)
                if (k.single() && k.counts(level))
                    return true;
            return false;
        };
    if (makes_rows)
        for (int level = 0; level < t.made_within; ++level)
            if (t.count(level) > 1 && !is_told(level))
                throw "rows are made within an index that no key column tells";
    if (t.indexes > t.row_level() + 1 || t.made_within > t.row_level() + 1)
        throw "a function takes more indexes than the table has levels";
    check_steps(t);
    bool tells_apart = false;
    for (const KeyColumn& k : t.keys) {
        tells_apart = tells_apart || k.selects;
        if (k.instead.empty())
            continue;
        bool known = false;
        for (const KeyColumn& other : t.keys)
            known = known || other.name == k.instead;
        if (!known || &k != t.key_of(t.row_level()))
            throw "or_else tells the rows of the last level by another key column";
    }
    if (t.says.load_only != nullptr && !tells_apart)
        throw "a message on rows with another value in a column told by only is for a table that has one";
    for (const Statement& s : t.save) {
        if (s.table != t.name)
            throw "a save statement stores another table";
        const bool replaces = s.verb == Verb::replace;
        if (t.strategy == Strategy::replace  ? !replaces
            : t.strategy == Strategy::ensure ? !replaces && s.verb != Verb::update
                                             : s.verb != (stored ? Verb::update : Verb::select))
            throw "the save statements do not have the strategy's verb";
        if (stored && t.strategy != Strategy::packed)
            check_names_its_row(t, s);
    }
    if (stored && t.strategy != Strategy::packed)
        check_rows(t, t.save);
    for (const Statement& s : t.load)
        if (s.verb != Verb::select || s.table != t.name)
            throw "a load statement selects from the table";
    if (!t.holds.empty() && !t.save.empty() && !stores_column(t.save[0], t.holds))
        throw "the column that tells how many groups a row holds is not stored";
    const bool alarms =
        t.device_rows == DeviceCount::alarm_inputs || t.device_rows == DeviceCount::alarm_outputs;
    if (alarms != (t.device_silent != nullptr))
        throw "a count of the device has a message for the device that does not tell it";
    for (const Schedule& s : t.schedules)
        if (s.process_type < 1 || s.process_type > 35)
            throw "a schedule's process type is from 1 to 35";
}

}  // namespace dbshell

#endif
