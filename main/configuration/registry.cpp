#include "registry.h"

#include "catalogue.h"
#include "engine.h"

TableEntry tables_fun[kTableNumbers];

namespace {

int get_table(const TableEntry*, int, int table) {
    return dbshell::load_table(*dbshell::table_by_number(table));
}

int set_table(const TableEntry*, int, int table) {
    return dbshell::save_table(*dbshell::table_by_number(table));
}

}  // namespace

void init_tables_fun() {
    tables_fun[0] = {};
    for (int t = 1; t < kTableNumbers; ++t) {
        const dbshell::Table* table = dbshell::table_by_number(t);
        tables_fun[t] = {t, table != nullptr && !table->get.empty() ? get_table : nullptr,
                         table != nullptr && table->has_registry_set() ? set_table : nullptr};
    }
}

const TableEntry* registry_entry(int table) {
    return table >= 0 && table < kTableNumbers ? &tables_fun[table] : nullptr;
}
