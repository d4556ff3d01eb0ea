// Where each row of a load lies in the record.
#include <algorithm>

#include "catalogue.h"
#include "messages.h"
#include "walk.h"

namespace dbshell {

namespace {

const char* load_key_message(const Table& t) {
    if (t.says.load_key != nullptr)
        return t.says.load_key;
    switch (t.layout.owner) {
        case Owner::sensor:
            return "invalid sensor_no: %d\n";
        case Owner::channel:
            return "invalid chan_no: %d\n";
        case Owner::element:
        case Owner::none:
            break;
    }
    return nullptr;
}

// The statement is for rows that have certain values in certain columns.
bool selective(const Statement& s) {
    return std::any_of(s.slots.begin(), s.slots.end(), [&](const Slot& slot) { return s.selects(slot); });
}

bool selected(const Statement& s, const Rows& rows) {
    return std::all_of(s.slots.begin(), s.slots.end(), [&](const Slot& slot) {
        if (!s.selects(slot))
            return true;
        const auto key = rows.key(s.column(slot));
        return key &&
               *key == (slot.source == Source::field ? s.fields[slot.index].value : number_of(s.value(slot)));
    });
}

}  // namespace

// The levels that one column numbers through, where no column of their own tells them.
std::optional<Index> Places::across(const Rows& rows, Index index) {
    const KeyColumn* k = table_.across_key();
    if (k == nullptr)
        return index;
    int64_t number = rows.key(k->name).value_or(k->bias - 1) - k->bias;
    int top = 0;
    while (!k->counts(top))
        ++top;
    for (int level = kLevels - 1; level >= 0; --level) {
        if (!k->counts(level))
            continue;
        const int count = table_.count(level);
        const auto here = static_cast<int>(level == top || number < 0 ? number : number % count);
        number = number < 0 ? 0 : number / count;
        if (table_.key_of(level) == nullptr)
            index[level] = here;
    }
    const int row = table_.row_level();
    const bool top_known =
        index[top] >= 0 && index[top] < (top == 0 ? owner_count(table_) : table_.count(top));
    const bool known = top_known && index[row] >= 0 && index[row] < table_.row_count();
    if (known || table_.key_of(row) != nullptr)
        return index;
    const Messages& says = table_.says;
    tell(!top_known && says.load_key != nullptr ? says.load_key : says.load_row,
         {.number = index[row], .outer = index[top]});
    return {};
}

void Places::tell(const char* message, const Told& told) const {
    if (bad_ == Bad::told)
        log_table(table_, loading_function(table_), message, told);
}

// What the columns tell of each level; 0 where they tell nothing.
Index Places::told(const Rows& rows) const {
    Index told;
    for (int level = 0; level < kLevels; ++level)
        if (const KeyColumn* k = table_.key_of(level))
            told[level] =
                static_cast<int>(std::max<int64_t>(rows.key(k->name).value_or(k->bias) - k->bias, INT_MIN));
    return told;
}

bool Places::upper_levels(const Rows& rows, Index& index) {
    const Owner owner = table_.layout.owner;
    const bool first_by_default = owner == Owner::channel || owner == Owner::sensor;
    for (int level = 0; level < table_.row_level(); ++level) {
        const KeyColumn* k = table_.key_of(level);
        if (k == nullptr)
            continue;
        const auto key = rows.key(k->name);
        const char* const absent = level == 0   ? table_.says.no_key
                                   : level == 1 ? table_.says.no_middle
                                                : nullptr;
        if (!key && absent != nullptr) {
            tell(absent);
            return false;
        }
        // Rows of a schema that knew one channel belong to it; any other row without its key belongs nowhere.
        const int64_t missing = level == 0 && first_by_default ? outer_ + k->bias : k->bias - 1;
        const int64_t i = key.value_or(missing) - k->bias;
        const bool owned = level == 0 && owner != Owner::none;
        if (i < 0 || i >= (owned ? owner_count(table_) : table_.count(level))) {
            owner_unknown_ = level == 0;
            const KeyColumn* row = table_.key_of(table_.row_level());
            tell(level == 0   ? load_key_message(table_)
                 : level == 1 ? table_.says.load_middle
                              : table_.says.load_third,
                 {.number = i,
                  .outer = i,
                  .row = row == nullptr ? 0 : rows.key(row->name).value_or(row->bias) - row->bias,
                  .at = told(rows)});
            return false;
        }
        index[level] = static_cast<int>(i);
    }
    return true;
}

// The row within the block of the statement that the row's other columns select.
bool Places::block_row(const Rows& rows, Index& index) {
    const int level = table_.row_level();
    for (const Statement& s : table_.save) {
        if (!selected(s, rows))
            continue;
        if (s.one_row()) {
            index[level] = s.first - 1;
            return true;
        }
        int64_t i = 0;
        if (table_.by_position) {
            const auto found = std::find_if(arrived_.begin(), arrived_.end(),
                                            [&](const auto& a) { return a.first == index; });
            i = found == arrived_.end() ? arrived_.emplace_back(index, 1), 0 : found->second++;
        } else {
            const KeyColumn* k = table_.key_of(level);
            i = rows.key(k->name).value_or(k->bias - 1) - k->bias;
        }
        if (i >= 0 && i < s.rows_from(table_.row_count())) {
            index[level] = static_cast<int>(i) + s.first - 1;
            return true;
        }
        if (!table_.by_position)
            tell(table_.says.load_row, {.number = i});
        return false;
    }
    return false;
}

bool Places::row_level(const Rows& rows, Index& index) {
    const int level = table_.row_level();
    if (table_.by_position) {
        index[level] = position_++;
        return index[level] < table_.row_count();
    }
    const KeyColumn* k = table_.key_of(level);
    if (k == nullptr)
        return true;
    auto stored = rows.key(k->name);
    if (!stored && !k->instead.empty())
        stored = rows.key(k->instead);
    if (!stored && table_.says.load_null != nullptr) {
        tell(table_.says.load_null, {.number = count_ - 1});
        return false;
    }
    const int64_t key = stored.value_or(k->bias - 1);
    const int64_t i = key - k->bias;
    if (i < 0 || i >= table_.row_count()) {
        tell(table_.says.load_row, {.number = i, .key = key, .outer = index[0], .row = i, .at = told(rows)});
        return false;
    }
    index[level] = static_cast<int>(i);
    return true;
}

std::optional<Index> Places::of(const Rows& rows) {
    owner_unknown_ = false;
    ++count_;
    Index index{outer_};
    // First, as the other columns of another part's row are that part's to judge.
    for (const KeyColumn& k : table_.keys) {
        const int64_t value = k.selects ? rows.key(k.name).value_or(k.bias) : k.bias;
        if (value == k.bias)
            continue;
        tell(table_.says.load_only, {.number = value});
        return {};
    }
    if (!upper_levels(rows, index))
        return {};
    const auto found = across(rows, index);
    if (!found)
        return {};
    index = *found;
    const bool blocks = std::any_of(table_.save.begin(), table_.save.end(), selective);
    if (blocks ? block_row(rows, index) : row_level(rows, index))
        return index;
    return {};
}

bool Places::serves(const Statement& s, const Rows& rows, Index index) const {
    return s.serves(index[table_.row_level()]) && selected(s, rows);
}

}  // namespace dbshell
