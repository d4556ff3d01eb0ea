// No column, no byte of the record and no function that a request kind names is forgotten, and how they are stored
// changes only where the committed description does.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue.h"
#include "created_table.h"
#include "device_config.h"
#include "record_cells.h"
#include "request_kinds.h"
#include "stored_format.h"
#include "unstored_members.h"

namespace {

using namespace dbshell;

// ------------------------------------------------------------------------------------- columns

// The columns that the entries of one SQL table store or name as keys, and those that they declare as not stored.
struct Columns {
    std::set<const CreatedColumn*> stored;
    std::vector<std::string_view> unstored;
};

void add_stored(const Table& t, const CreatedTable& created, Columns& columns) {
    for (const KeyColumn& k : t.keys)
        columns.stored.insert(created.column(k.name));
    if (t.strategy == Strategy::read_only)
        return;
    for (const Statement& s : t.save)
        for (const Slot& slot : s.slots)
            if (slot.role == SlotRole::stored)
                columns.stored.insert(created.column(s.column(slot)));
}

TEST(StoredFormat, EveryColumnIsStoredOrDeclared) {
    std::map<const CreatedTable*, Columns> tables;
    for (const Table* t : all_tables()) {
        const CreatedTable* const created = created_table(t->name);
        EXPECT_EQ(created == nullptr, t->of_older_schema) << t->name;
        if (created == nullptr)
            continue;
        Columns& columns = tables[created];
        add_stored(*t, *created, columns);
        if (t->week_list != WeekList::none)
            for (int type = 1; type <= kLastProcessType; ++type)
                add_stored(schedule_form(type).table, *created, columns);
        for (const Unstored& u : t->unstored) {
            EXPECT_FALSE(u.reason.empty()) << t->name << '.' << u.column;
            columns.unstored.push_back(u.column);
        }
    }
    for (auto& [created, columns] : tables) {
        EXPECT_FALSE(columns.stored.contains(nullptr)) << created->name << ": a column that no list makes";
        for (const std::string_view name : columns.unstored) {
            const CreatedColumn* const column = created->column(name);
            EXPECT_NE(column, nullptr) << created->name << '.' << name << " is declared and no column";
            EXPECT_TRUE(columns.stored.insert(column).second)
                << created->name << '.' << name
                << " is declared as not stored, and is stored or declared twice";
        }
        for (const CreatedColumn& column : created->columns)
            EXPECT_TRUE(columns.stored.contains(&column))
                << created->name << '.' << column.name << " is not stored and not declared";
    }
}

TEST(StoredFormat, UnusedTablesAreInTheCreateListAndNotInTheCatalogue) {
    for (const UnusedTable& unused : unused_tables()) {
        EXPECT_NE(created_table(unused.name), nullptr) << unused.name;
        EXPECT_EQ(find_table(unused.name), nullptr) << unused.name;
    }
}

// ------------------------------------------------------------------------------------- bytes of the record

// A set of the record's bytes.
class Bytes {
  public:
    void add(std::size_t offset, std::size_t size) {
        for (std::size_t i = offset; i < offset + size; ++i)
            set_.at(i) = true;
    }
    // Those that a field's column holds: of a list the bytes of its items, of bits their whole word.
    void add(const Field& f, std::size_t offset) {
        if (f.codec == nullptr || items_of(*f.codec).empty())
            return add(offset, f.size);
        for (std::size_t g = 0; g < f.codec->groups; ++g)
            for (const ListItem& item : items_of(*f.codec))
                add(offset + g * f.codec->group_stride + item.offset,
                    item.kind == Kind::text ? item.width : width_of(item.kind));
    }
    bool any(std::size_t offset, std::size_t size) const {
        return std::any_of(at(offset), at(offset + size), [](bool set) { return set; });
    }
    // The first byte from `offset` on that is, or is not; the record's size: none.
    std::size_t next(std::size_t offset, bool wanted) const {
        return static_cast<std::size_t>(std::find(at(offset), set_.end(), wanted) - set_.begin());
    }

  private:
    static std::size_t width_of(Kind number) {
        return std::size_t{1} << static_cast<int>(number) / 2;  // kinds stand in pairs, each twice as wide
    }
    std::vector<bool>::const_iterator at(std::size_t offset) const {
        return set_.begin() + static_cast<std::ptrdiff_t>(offset);
    }
    std::vector<bool> set_ = std::vector<bool>(sizeof(DEVICECONFIG));
};

// The schedules that the catalogue's tables save.  Those of tables that it has not are loaded alone.
void add_schedules(const Table& t, Bytes& stored) {
    for (const Schedule& s : t.schedules) {
        const SchedulePlaces places = places_of(t, s);
        for (const Index& row : rows_of(t))
            for (const Field& f : schedule_form(s.process_type).table.save[0].fields)
                stored.add(f, places.offset(row) + f.offset);
    }
}

TEST(StoredFormat, EveryByteIsStoredOrDeclared) {
    Bytes stored;
    for (const Table* t : all_tables()) {
        for (const Cell& cell : cells_of_table(*t))
            stored.add(*cell.field, cell.offset);
        add_schedules(*t, stored);
    }
    Bytes covered = stored;
    std::map<std::size_t, std::string> names{{0, "the record's start"}};
    for (const UnstoredMember& m : unstored_members())
        for (std::size_t outer = 0; outer < m.outer.count; ++outer)
            for (std::size_t inner = 0; inner < m.inner.count; ++inner) {
                if (outer < 64 && (m.only >> outer & 1) == 0)
                    continue;
                const std::size_t offset = m.offset + outer * m.outer.stride + inner * m.inner.stride;
                EXPECT_FALSE(stored.any(offset, m.size))
                    << m.path << " is declared as not stored, and some of its bytes are; offset " << offset;
                covered.add(offset, m.size);
                names[offset] = m.path;
            }
    for (std::size_t first = covered.next(0, false); first < sizeof(DEVICECONFIG);) {
        const std::size_t end = covered.next(first, true);
        ADD_FAILURE() << "bytes " << first << " to " << end - 1 << " are not stored and not declared; behind "
                      << std::prev(names.upper_bound(first))->second;
        first = covered.next(end, false);
    }
}

// ------------------------------------------------------------------------------------- the description

// Databases in the field are read as the file tells: a difference that was not meant is a fault.
TEST(StoredFormat, IsAsTheCommittedFileTells) {
    std::ifstream committed(SOURCE_DIR "/docs/stored-format.txt");
    std::istringstream stored(stored_format());
    for (std::string now, before; committed || stored;) {
        now.clear();
        before.clear();
        std::getline(stored, now);
        std::getline(committed, before);
        ASSERT_EQ(before, now) << "docs/stored-format.txt differs; where that is meant, run ./dev docs";
    }
}

// ------------------------------------------------------------------------------------- names and numbers

TEST(CatalogueNames, EveryNumberOfTheRegistryIsOneTables) {
    std::map<int, std::string_view> names;
    const Table* part = nullptr;  // is reached by the number of the entry before it
    for (const Table* t : all_tables()) {
        const bool is_part = t == part;
        part = next_loaded_part(*t);
        if (t->number == 0)
            continue;
        EXPECT_FALSE(is_part) << t->name << ' ' << t->number;
        EXPECT_TRUE(t->number >= 1 && t->number <= 253) << t->name << ' ' << t->number;
        const auto [known, is_new] = names.emplace(t->number, t->name);
        EXPECT_TRUE(is_new) << t->number << " is the number of " << known->second << " and " << t->name;
        EXPECT_EQ(table_by_number(t->number), t) << "not the first part of " << t->name;
    }
}

TEST(CatalogueNames, EveryFunctionThatRequestKindsNameIsThere) {
    for (const RequestKind& kind : request_kinds()) {
        for (const char* const function : kind.functions)
            EXPECT_TRUE(are_available({function})) << kind.name << ' ' << function;
        EXPECT_TRUE(kind.run != Run::single_table || table_by_number(kind.table) != nullptr) << kind.table;
    }
    for (const DomeBlock& block : dome_blocks())
        EXPECT_TRUE(are_available(block.functions)) << block.name;
    const std::set<int> unused{10, 34, 93, 94, 95, 96, 97, 98, 99, 100, 121, 122};
    for (int number = 1; number <= 253; ++number)
        EXPECT_EQ(table_by_number(number) == nullptr, unused.contains(number)) << number;
}

}  // namespace
