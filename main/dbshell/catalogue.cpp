#include "catalogue.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace dbshell {

namespace {

struct FunctionName {
    std::string name;
    NamedFunction function;
};

// The home of a table's schedule.
ScheduleHome home_of(const Table& t, const Schedule& s) {
    const SchedulePlaces places = places_of(t, s);
    const bool by_type = s.keyed == Schedule::Keyed::by_type;
    const bool by_rule = s.keyed == Schedule::Keyed::by_rule;
    ScheduleHome home{.process_type = s.process_type, .offset = places.first};
    home.stride = places.stride[s.keyed == Schedule::Keyed::by_row ? 1 : 0];
    if (by_type) {
        home.types = t.count(1);
        home.type_stride = places.stride[1];
    }
    if (by_rule) {
        home.scenes = t.count(1);
        home.scene_stride = places.stride[1];
        home.rules = t.count(2);
        home.rule_stride = places.stride[2];
    }
    return home;
}

struct Index {
    std::vector<const Table*> tables;
    std::vector<const Table*> by_number;
    std::vector<FunctionName> functions;  // sorted by name
    std::vector<ScheduleHome> homes;
    std::map<const Table*, const Table*> loaded_parts, saved_parts;

    Index() {
        for (const Domain& domain :
             {kDeviceTables, kImageTables, kNetworkTables, kScheduleTables, kEventTables, kPtzTables,
              kDomeTables, kAnalyticsTables, kSceneTables, kTrafficTables, kPlatformTables})
            for (const std::span<const Table> group : domain)
                for (const Table& t : group)
                    add(t);
        std::sort(functions.begin(), functions.end(),
                  [](const FunctionName& a, const FunctionName& b) { return a.name < b.name; });
    }

    void add(const Table& t) {
        using Role = NamedFunction::Role;
        const Table* before = tables.empty() ? nullptr : tables.back();
        const bool loaded_part = before != nullptr && !t.get.empty() && before->get == t.get;
        const bool saved_part = before != nullptr && !t.set.empty() && before->set == t.set;
        if (loaded_part)
            loaded_parts[before] = &t;
        if (saved_part)
            saved_parts[before] = &t;
        tables.push_back(&t);
        const auto number = static_cast<std::size_t>(t.number);
        if (by_number.size() <= number)
            by_number.resize(number + 1);
        if (number != 0 && by_number[number] == nullptr)
            by_number[number] = &t;
        if (!t.get.empty() && !loaded_part)
            functions.push_back({std::string(t.get), {&t, Role::get}});
        if (!t.set.empty() && !saved_part) {
            functions.push_back({std::string(t.set), {&t, Role::set}});
            if (t.has_single())
                functions.push_back({single_name(t), {&t, Role::single}});
        }
        for (const Schedule& s : t.schedules)
            homes.push_back(home_of(t, s));
    }
};

constexpr std::string_view kNoFunction = "created with the schema, and used by no get or set function";
constexpr UnusedTable kUnusedTables[] = {
    {"daytime_config_list", kNoFunction},
    {"wpa_encrypt_info", kNoFunction},
    {"cb_point_cfg", kNoFunction},
    {"intelligent_qor_patrol_routecfg", kNoFunction},
    {"intelligent_qor_scene_config", kNoFunction},
    {"intelligent_ivs_key_param_list", kNoFunction},
    {"intelligent_polygon_size_filter", kNoFunction},
    {"intelligent_qor_rule_config", kNoFunction},
    {"itc_dev_cfg", kNoFunction},
    {"itc_io_out_cfg", kNoFunction},
};

const Index& index() {
    static const Index the_index;
    return the_index;
}

}  // namespace

std::string_view word_for(Strategy strategy) {
    switch (strategy) {
        case Strategy::replace:
            return "replace";
        case Strategy::update_only:
            return "update-only";
        case Strategy::ensure:
            return "ensure";
        case Strategy::top_up:
            return "top-up";
        case Strategy::fill_missing:
            return "fill-missing";
        case Strategy::packed:
            return "packed";
        case Strategy::read_only:
            break;
    }
    return "read-only";
}

std::string single_name(const Table& table) {
    return table.single == kDerived ? std::string(table.set).append(kDerived) : std::string(table.single);
}

std::span<const Table* const> all_tables() {
    return index().tables;
}

const Table* find_table(std::string_view name) {
    for (const Table* t : all_tables())
        if (t->name == name)
            return t;
    return nullptr;
}

const Table* table_by_number(int number) {
    const auto& tables = index().by_number;
    return number > 0 && static_cast<std::size_t>(number) < tables.size()
               ? tables[static_cast<std::size_t>(number)]
               : nullptr;
}

const Table* next_loaded_part(const Table& table) {
    const auto found = index().loaded_parts.find(&table);
    return found != index().loaded_parts.end() ? found->second : nullptr;
}

const Table* next_saved_part(const Table& table) {
    const auto found = index().saved_parts.find(&table);
    return found != index().saved_parts.end() ? found->second : nullptr;
}

const Table& encryption_word_table() {
    const auto tables = all_tables();
    return **std::find_if(tables.begin(), tables.end(), [](const Table* t) { return t->encryption_word; });
}

bool has_encrypted_columns(const Table& table) {
    return std::any_of(table.save.begin(), table.save.end(), [](const Statement& s) {
        return std::any_of(s.fields.begin(), s.fields.end(), [](const Field& f) { return f.encrypted != 0; });
    });
}

NamedFunction find_function(std::string_view name) {
    const auto& functions = index().functions;
    const auto found =
        std::lower_bound(functions.begin(), functions.end(), name,
                         [](const FunctionName& f, std::string_view wanted) { return f.name < wanted; });
    return found != functions.end() && found->name == name ? found->function : NamedFunction{};
}

std::span<const ScheduleHome> schedule_homes() {
    return index().homes;
}

std::span<const UnusedTable> unused_tables() {
    return kUnusedTables;
}

}  // namespace dbshell
