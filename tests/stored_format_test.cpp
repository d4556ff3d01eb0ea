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
        const int count = places.stride == 0 ? 1 : t.count(places.level);
        for (int i = 0; i < count; ++i)
            for (const Field& f : schedule_form(s.process_type).table.save[0].fields)
                stored.add(f, places.first + static_cast<uint32_t>(i) * places.stride + f.offset);
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
    const Table* part = nullptr;  // has the number of the entry before it
    for (const Table* t : all_tables()) {
        const bool is_part = t == part;
        part = next_part(*t);
        if (is_part || t->number == 0)
            continue;
        EXPECT_TRUE(t->number >= 1 && t->number <= 253) << t->name << ' ' << t->number;
        const auto [known, is_new] = names.emplace(t->number, t->name);
        EXPECT_TRUE(is_new) << t->number << " is the number of " << known->second << " and " << t->name;
    }
}

// The functions, and the tables by number, that request kinds name and the catalogue has not yet.  Once it has
// them, they go from this list.
constexpr const char* kLacking = R"(
    205 206 207 208 209 212 213 214 215 216 250 251 db_save_alg_ext_param db_save_colour_config_single
    db_save_defocus_param_single db_save_heatmap_config db_save_intel_moni_single_scene
    db_save_intelli_scene_config db_save_intelligent_behavior_rule_single
    db_save_intelligent_face_detect_config_single db_save_intelligent_ivs_param_single
    db_save_intelligent_line_segment_single db_save_intelligent_other_config
    db_save_intelligent_polygon_single db_save_intelligent_scene_single
    db_save_intelligent_size_filter_single db_save_intelligent_vca_ctrl_info db_save_itc_traffic_cfg
    db_save_mega_dsp_config db_save_passenger_config db_save_passenger_region_config
    db_save_people_detection_cfg_single db_save_region_param_polygon db_save_roadinfo_cfg_single
    db_save_smd_detection_basic_cfg_single db_save_smd_detection_rule_cfg_single
    db_save_smd_polygon_cfg_single db_save_te_alg_cfg db_save_te_char_overlap db_save_te_its_cap_param
    db_save_te_mointor_point db_save_te_other_param db_save_te_pic_merge db_save_te_remote_center
    db_save_te_scene_cruise_schedule db_save_te_single_scene db_save_traffic_mointor_point
    db_save_traffic_overlap_cfg db_save_traffic_pic_merge db_save_traffic_scene_cfg
    db_save_traffic_vehicle_detect_cfg db_save_vca_line_cfg db_save_vehicle_detection_cfg
    db_save_vehicle_mointor_point db_save_vehicle_overlap_cfg db_save_vehicle_pic_merge
    db_save_vehicle_scene_cfg db_save_vehicle_traffic_detect_cfg db_set_intrusion_detec_config_single
    db_set_lf_calibrate_info db_set_lf_track_cfg db_set_line_detect_config_single
    db_set_scene_change_detec_config_single
)";

TEST(CatalogueNames, RequestKindsLackTheseFunctionsAlone) {
    std::set<std::string> lacking;
    const auto add = [&](std::initializer_list<const char*> functions) {
        for (const char* const name : functions)
            if (!are_available({name}))
                lacking.insert(name);
    };
    for (const RequestKind& kind : request_kinds()) {
        add(kind.functions);
        const Table* const table = table_by_number(kind.table);
        if (kind.run == Run::single_table && (table == nullptr || table->set.empty()))
            lacking.insert(std::to_string(kind.table));
    }
    for (const DomeBlock& block : dome_blocks())
        add(block.functions);
    std::istringstream words(kLacking);
    const std::set<std::string> listed{std::istream_iterator<std::string>(words), {}};
    for (const std::string& name : lacking)
        EXPECT_TRUE(listed.contains(name)) << name << " is named by a request kind and not in the catalogue";
    for (const std::string& name : listed)
        EXPECT_TRUE(lacking.contains(name)) << name << " is not lacking any more: take it from the list";
}

}  // namespace
