#include "stored_rows.h"

#include <sqlite3.h>

#include <algorithm>

#include "walk.h"

namespace dbshell {

namespace {

constexpr int64_t kFewRows = 4;
constexpr uint8_t kSame = 1, kDifferent = 2, kOnce = 4, kTwice = 8;

using Match = Values::Match;

// How one stored row answers a statement for the row of its index.
class Comparison {
  public:
    Comparison(const Rows& rows, const Statement& s) : s_(s) {
        for (const Slot& slot : s.slots)
            columns_.push_back(rows.column(s.column(slot)));
    }

    // The statement finds the stored row when it is executed for the row of the index.
    bool finds(const Rows& rows, Index index, Counts counts) const {
        for (std::size_t i = 0; i < s_.slots.size(); ++i) {
            const Slot& slot = s_.slots[i];
            if (slot.source != Source::key && slot.role != SlotRole::condition)
                continue;
            const int64_t wanted = slot.source == Source::key
                                       ? key_value(s_, s_.keys[slot.index], index, counts)
                                   : slot.source == Source::field ? s_.fields[slot.index].value
                                                                  : number_of(s_.value(slot));
            if (rows.compare(columns_[i], wanted) != Match::same)
                return false;
        }
        return true;
    }
    Match values(const Rows& rows, const Values& wanted) const {
        std::size_t parameter = 0;
        Match worst = Match::same;
        for (std::size_t i = 0; i < s_.slots.size(); ++i) {
            const Slot& slot = s_.slots[i];
            const bool bound = slot.bound();
            if (slot.role == SlotRole::stored && slot.source != Source::key) {
                const Match m = bound ? wanted.compare(parameter, rows, columns_[i])
                                      : rows.compare_literal(columns_[i], s_.value(slot));
                if (m == Match::unsure)
                    return m;
                worst = std::max(worst, m);
            }
            parameter += bound ? 1 : 0;
        }
        return worst;
    }

  private:
    const Statement& s_;
    std::vector<int> columns_;
};

}  // namespace

StoredRows::StoredRows(const Table& t, Index at, int given, const std::byte* base, Counts counts)
    : table_(t), counts_(counts) {
    found_.resize(place(t.save.size(), {}));
    Rows rows(t, at, given);
    Places places(t, at[0], Places::Bad::quietly);
    std::vector<Comparison> comparisons;
    Values wanted;
    while (rows.next()) {
        if (comparisons.empty())
            for (const Statement& s : t.save)
                comparisons.emplace_back(rows, s);
        const auto index = places.of(rows);
        if (!index || !std::equal(at.at.begin(), at.at.begin() + given, index->at.begin()) ||
            !is_stored(*index))
            continue;
        for (std::size_t i = 0; i < t.save.size(); ++i) {
            const Statement& s = t.save[i];
            if (!places.serves(s, rows, *index) || !comparisons[i].finds(rows, *index, counts))
                continue;
            uint8_t& found = found_[place(i, *index)];
            if (found != 0) {
                found = kTwice;
                continue;
            }
            wanted.read(t, s, base, *index, counts);
            const Match match = comparisons[i].values(rows, wanted);
            found = static_cast<uint8_t>(kOnce | (match == Match::same        ? kSame
                                                  : match == Match::different ? kDifferent
                                                                              : 0));
        }
    }
    if (rows.error() != SQLITE_OK)
        std::fill(found_.begin(), found_.end(), uint8_t{0});
}

// A device may have fewer of a level than the table.
bool StoredRows::is_stored(Index row) const {
    for (int level = 0; level <= table_.row_level(); ++level)
        if (row[level] >= counts_[level])
            return false;
    return true;
}

std::size_t StoredRows::place(std::size_t statement, Index row) const {
    std::size_t number = statement;
    for (int level = 0; level <= table_.row_level(); ++level)
        number = number * static_cast<std::size_t>(std::max(counts_[level], 1)) +
                 static_cast<std::size_t>(row[level]);
    return number;
}

StoredRows::State StoredRows::state(const Statement& statement, Index row) const {
    const auto number = static_cast<std::size_t>(&statement - table_.save.data());
    const uint8_t found = found_[place(number, row)];
    return (found & kOnce) == 0        ? State::unknown
           : (found & kSame) != 0      ? State::same
           : (found & kDifferent) != 0 ? State::different
                                       : State::unknown;
}

bool StoredRows::has_all(Index at, int given) const {
    return for_each_row(table_, at, given, counts_,
                        [&](Index row) -> Status {
                            for (std::size_t i = 0; i < table_.save.size(); ++i)
                                if (table_.save[i].serves(row[table_.row_level()]) &&
                                    (found_[place(i, row)] & kOnce) == 0)
                                    return Cause::other;
                            return {};
                        })
        .ok();
}

bool reads_at_once(const Table& t, int given, Counts counts) {
    if (t.by_position || t.strategy == Strategy::packed || !t.holds.empty())
        return false;
    int64_t rows = 1;
    for (int level = given; level <= t.row_level(); ++level)
        rows *= counts[level];
    return rows >= kFewRows;
}

}  // namespace dbshell
