// Between the files of the engine: the parts of a table's save and load that have a file of their own.
#ifndef ENGINE_WALK_H
#define ENGINE_WALK_H

#include <optional>

#include "messages.h"
#include "rows.h"
#include "status.h"

namespace dbshell {

// How many outer indexes the table has now.
int owner_count(const Table& table);

// The base of the record's own values.
std::byte* record_base();

// Afterwards the rows of an ensure or top-up table exist that lie within the indexes its rows are made within.
Status ensure_rows(const Table& table, std::string_view function, Index at, Counts counts);

// Visits the rows of a table that lie at the first `given` indexes, in order, until one fails.
template <class Visit>
Status for_each_row(const Table& t, Index at, int given, Counts counts, Visit visit) {
    const int deepest = t.row_level();
    for (int level = given; level <= deepest; ++level) {
        if (counts[level] <= 0)
            return {};
        at[level] = 0;
    }
    while (true) {
        if (const Status s = visit(at); !s.ok())
            return s;
        int level = deepest;
        while (level >= given && ++at[level] == counts[level])
            at[level--] = 0;
        if (level < given)
            return {};
    }
}

// ------------------------------------------------------------------------------------- places.cpp

// Finds for the rows of one load where each lies.
class Places {
  public:
    // What happens with rows that have no place: their messages are logged, or not.
    enum class Bad : uint8_t { told, quietly };

    // A row that does not tell its owner, as in older schemas, belongs to `outer`.
    Places(const Table& table, int outer, Bad bad = Bad::told) : table_(table), outer_(outer), bad_(bad) {}

    // The row's index; empty when it has no place, which is logged where the table has a message for it.
    [[nodiscard]] std::optional<Index> of(const Rows& rows);
    // A row had an owner that there is not.
    [[nodiscard]] bool owner_unknown() const { return owner_unknown_; }
    // The statement is for the row that of() found last.
    [[nodiscard]] bool serves(const Statement& statement, const Rows& rows, Index index) const;

  private:
    const Table& table_;
    const int outer_;
    const Bad bad_;
    int count_ = 0;  // rows so far
    int position_ = 0;
    std::vector<std::pair<Index, int>> arrived_;  // rows of a block so far, by what holds the block
    bool owner_unknown_ = false;

    void tell(const char* message, const Told& told = {}) const;
    Index told(const Rows& rows) const;
    std::optional<Index> across(const Rows& rows, Index index);
    bool upper_levels(const Rows& rows, Index& index);
    bool row_level(const Rows& rows, Index& index);
    bool block_row(const Rows& rows, Index& index);
};

// ------------------------------------------------------------------------------------- users.cpp

// Tables whose entries are packed: those without a name are left out, the k-th that has one is row k.
Status save_packed(const Table& table, std::byte* copy);
Status load_packed(const Table& table);

// ------------------------------------------------------------------------------------- schedules.cpp

// Saves the schedules of the rows at the first `given` indexes, as many rows as `counts` tells.  Logs what fails.
bool save_schedules_of(const Table& table, Index at, int given, Counts counts, const std::byte* copy);
// Loads those that are not loaded with all others.
bool load_schedules_of(const Table& table);
Status load_week_list(const Table& table);

}  // namespace dbshell

#endif
