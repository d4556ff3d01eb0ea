#include "catalogue.h"

#include <algorithm>
#include <vector>

namespace {

struct FunctionName {
    std::string_view name;
    NamedFunction function;
};

struct Index {
    std::vector<const Table*> tables;
    std::vector<const Table*> by_number;
    std::vector<FunctionName> functions;  // sorted by name

    Index() {
        for (const auto domain : {kDeviceTables, kImageTables, kNetworkTables, kScheduleTables, kEventTables,
                                  kStorageCardTables, kPtzTables, kAnalyticsTables, kPlatformTables})
            for (const Table& t : domain)
                add(t);
        std::sort(functions.begin(), functions.end(),
                  [](const FunctionName& a, const FunctionName& b) { return a.name < b.name; });
    }

    void add(const Table& t) {
        using Role = NamedFunction::Role;
        tables.push_back(&t);
        const auto number = static_cast<std::size_t>(t.number);
        if (by_number.size() <= number)
            by_number.resize(number + 1);
        if (number != 0)
            by_number[number] = &t;
        for (const auto& [name, role] :
             {std::pair{t.get, Role::get}, {t.set, Role::set}, {t.single, Role::single}})
            if (!name.empty())
                functions.push_back({name, {&t, role}});
    }
};

const Index& index() {
    static const Index the_index;
    return the_index;
}

}  // namespace

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

NamedFunction find_function(std::string_view name) {
    const auto& functions = index().functions;
    const auto found =
        std::lower_bound(functions.begin(), functions.end(), name,
                         [](const FunctionName& f, std::string_view wanted) { return f.name < wanted; });
    return found != functions.end() && found->name == name ? found->function : NamedFunction{};
}
