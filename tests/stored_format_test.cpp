// No column, no byte of the record and no function that a request kind names is forgotten, and how they are stored
// changes only where the committed description does.
#include <gtest/gtest.h>

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
    std::set<std::string_view> stored;
    std::multiset<std::string_view> unstored;

    void add(const Table& t) {
        for (const KeyColumn& k : t.keys)
            stored.insert(k.name);
        if (t.strategy == Strategy::read_only)
            return;
        for (const Statement& s : t.save)
            for (const Slot& slot : s.slots)
                if (slot.role == SlotRole::stored)
                    stored.insert(s.column(slot));
    }
};

TEST(StoredFormat, EveryColumnIsStoredOrDeclared) {
    std::map<const CreatedTable*, Columns> tables;
    for (const Table* t : all_tables()) {
        const CreatedTable* const created = created_table(t->name);
        EXPECT_EQ(created == nullptr, t->of_older_schema) << t->name;
        if (created == nullptr)
            continue;
        Columns& columns = tables[created];
        columns.add(*t);
        if (t->week_list != WeekList::none)
            for (int type = 1; type <= kLastProcessType; ++type)
                columns.add(schedule_form(type).table);
        for (const Unstored& u : t->unstored) {
            EXPECT_FALSE(u.reason.empty()) << t->name << '.' << u.column;
            columns.unstored.insert(u.column);
        }
    }
    for (const auto& [created, columns] : tables) {
        std::multiset<std::string_view> told(columns.stored.begin(), columns.stored.end()), made;
        told.insert(columns.unstored.begin(), columns.unstored.end());
        for (const CreatedColumn& column : created->columns)
            made.insert(column.name);
        EXPECT_EQ(told, made) << created->name << ": each column is stored, or declared as not stored, once";
    }
    for (const UnusedTable& unused : unused_tables())
        EXPECT_TRUE(created_table(unused.name) != nullptr && find_table(unused.name) == nullptr)
            << unused.name;
}

// ------------------------------------------------------------------------------------- bytes of the record

using Bytes = std::vector<bool>;  // of the record

void mark(Bytes& bytes, std::size_t offset, std::size_t size) {
    for (std::size_t i = offset; i < offset + size; ++i)
        bytes.at(i) = true;
}

// What a field's column holds: of a list the bytes of its items, of bits their whole word.
void mark(Bytes& bytes, const Field& f, std::size_t offset) {
    if (f.codec == nullptr || items_of(*f.codec).empty())
        return mark(bytes, offset, f.size);
    for (std::size_t g = 0; g < f.codec->groups; ++g)
        for (const ListItem& item : items_of(*f.codec)) {
            // The kinds of numbers stand in pairs, each twice as wide.
            const std::size_t width = std::size_t{1} << static_cast<int>(item.kind) / 2;
            mark(bytes, offset + g * f.codec->group_stride + item.offset,
                 item.kind == Kind::text ? item.width : width);
        }
}

TEST(StoredFormat, EveryByteIsStoredOrDeclared) {
    Bytes stored(sizeof(DEVICECONFIG));
    for (const Table* t : all_tables()) {
        for (const Cell& cell : cells_of_table(*t))
            mark(stored, *cell.field, cell.offset);
        for (const Schedule& s : t->schedules)
            for (const Index& row : rows_of(*t))
                for (const Field& f : schedule_form(s.process_type).table.save[0].fields)
                    mark(stored, f, places_of(*t, s).offset(row) + f.offset);
    }
    Bytes covered = stored;
    std::map<std::size_t, std::string> names{{0, "the record's start"}};
    for (const UnstoredMember& m : unstored_members())
        for (std::size_t outer = 0; outer < m.outer.count; ++outer)
            for (std::size_t inner = 0; inner < m.inner.count; ++inner) {
                if (outer < 64 && (m.only >> outer & 1) == 0)
                    continue;
                const std::size_t offset = m.offset + outer * m.outer.stride + inner * m.inner.stride;
                for (std::size_t i = offset; i < offset + m.size; ++i)
                    ASSERT_FALSE(stored.at(i)) << m.path << " is declared as not stored; offset " << i;
                mark(covered, offset, m.size);
                names[offset] = m.path;
            }
    for (std::size_t i = 0; i < sizeof(DEVICECONFIG); ++i)
        EXPECT_TRUE(covered[i] || (i > 0 && !covered[i - 1]))
            << "the bytes from " << i << " on are not stored and not declared; behind "
            << std::prev(names.upper_bound(i))->second;
}

// ------------------------------------------------------------------------------------- the description

// Databases in the field are read as the file tells: a difference that was not meant is a fault.
TEST(StoredFormat, IsAsTheCommittedFileTells) {
    std::ifstream committed(SOURCE_DIR "/docs/stored-format.txt");
    std::istringstream stored(stored_format());
    for (std::string now, before; std::getline(stored, now);) {
        std::getline(committed, before);
        ASSERT_EQ(before, now) << "docs/stored-format.txt differs; where that is meant, run ./dev docs";
    }
    EXPECT_EQ(committed.peek(), EOF) << "docs/stored-format.txt has more lines";
}

// ------------------------------------------------------------------------------------- names and numbers

TEST(CatalogueNames, EveryNumberOfTheRegistryIsOneTables) {
    const Table* part = nullptr;  // is reached by the number of the entry before it
    for (const Table* t : all_tables()) {
        const bool is_part = t == part;
        part = next_loaded_part(*t);
        if (t->number == 0)
            continue;
        EXPECT_FALSE(is_part) << t->name << ' ' << t->number;
        EXPECT_EQ(table_by_number(t->number), t) << t->number << " is another's, or not the first part's";
    }
}

TEST(CatalogueNames, EveryFunctionThatKindsAndStepsNameIsThere) {
    for (const RequestKind& kind : request_kinds()) {
        for (const char* const function : kind.functions)
            EXPECT_TRUE(are_available({function})) << kind.name << ' ' << function;
        EXPECT_TRUE(kind.run != Run::single_table || table_by_number(kind.table) != nullptr) << kind.table;
    }
    for (const DomeBlock& block : dome_blocks())
        EXPECT_TRUE(are_available(block.functions)) << block.name;
    for (const Table* t : all_tables())
        for (const Step& step : t->steps)
            EXPECT_TRUE(step.function.empty() ||
                        find_function(step.function).role == NamedFunction::Role::set)
                << step.function;
    const std::set<int> unused{10, 34, 93, 94, 95, 96, 97, 98, 99, 100, 121, 122};
    for (int number = 1; number <= 253; ++number)
        EXPECT_EQ(table_by_number(number) == nullptr, unused.contains(number)) << number;
}

}  // namespace
