// What the create list says of one table, for those who add what an older database lacks.
//
//   if (const CreatedTable* table = created_table("chn_info"))
//       if (const CreatedColumn* column = table->column("osd_size"))
//           use(column->type);       // "varchar(64)"
#ifndef DBUTIL_CREATED_TABLE_H
#define DBUTIL_CREATED_TABLE_H

#include <span>
#include <string_view>
#include <vector>

// All texts are parts of the list.
struct CreatedColumn {
    std::string_view name;
    std::string_view type;  // as declared, without constraints
};

struct CreatedTable {
    std::string_view name;
    std::string_view statement;  // makes this table alone, also where its entry makes two
    std::vector<CreatedColumn> columns;

    // By its whole name, without regard to case as SQLite takes it.  Null: it has no such column.
    const CreatedColumn* column(std::string_view column) const;
};

// Every table, in the list's order.
std::span<const CreatedTable> created_tables();

// By its whole name.  Null: the list makes no such table.
const CreatedTable* created_table(std::string_view name);

#endif
