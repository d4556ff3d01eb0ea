#include "alter.h"

#include <string>

#include "log.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

}  // namespace

int check_column_exist(db_handle db, const char* table, const char* column) {
    if (db == nullptr || table == nullptr || column == nullptr)
        return 0;
    const std::string sql = std::string("select ") + column + " from " + table + ";";
    db_query* query = db_query_open(db, sql.c_str());
    if (query == nullptr)
        return 0;
    if (db_query_close(query) != 0)
        DB_LOG(kError, "db_query_close failed\n");
    return 1;
}

int add_column(db_handle db, const char* table, const char* column, const char* type) {
    if (db == nullptr || table == nullptr || column == nullptr || type == nullptr)
        return -1;
    DB_LOG(kInfo, "add column %s to table %s\n", column, table);
    if (check_column_exist(db, table, column) == 1) {
        DB_LOG(kInfo, "column %s already exists in table %s\n", column, table);
        return 0;
    }
    const std::string sql = std::string("alter table ") + table + " add column " + column + " " + type + ";";
    if (db_execsql(db, sql.c_str()) == 0)
        return 0;
    DB_LOG(kError, "ERROR: failed to add column %s to table %s\n", column, table);
    return -1;
}

int add_table(db_handle db, const char* sql) {
    if (db == nullptr || sql == nullptr) {
        DB_LOG(kError, "input param error\n");
        return -1;
    }
    if (db_execsql(db, sql) == 0)
        return 0;
    DB_LOG(kError, "SQL error: %s\n", sql);
    return -1;
}

int delete_table(db_handle db, const char* sql) {
    if (db == nullptr || sql == nullptr) {
        DB_LOG(kError, "input param error\n");
        return -1;
    }
    if (db_execsql(db, sql) == 0)
        return 0;
    DB_LOG(kError, "SQL error\n");
    return -1;
}
