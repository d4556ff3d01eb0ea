#include "versions.h"

#include <cstdlib>
#include <string>

#include "log.h"
#include "repair.h"
#include "second_try.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

int version_column(db_handle db, const char* column) {
    constexpr const char* kQuery = "select * from db_version;";
    db_cursor cursor{};
    int version = kVersionUnreadable;
    // A fault of the moment must not make the database anew.
    if (at_the_second_try([&] { return db_query_open_v2(db, kQuery, &cursor) == 0; })) {
        const char* text = db_query_fields_v2(&cursor, column, 0);
        version = text != nullptr ? static_cast<int>(std::strtol(text, nullptr, 10)) : kVersionMissing;
    }
    db_query_close_v2(&cursor);
    return version;
}

}  // namespace

int db_get_version(db_handle db) {
    return version_column(db, "version");
}

int db_get_old_version(db_handle db) {
    return version_column(db, "old_version");
}

int db_update_version(int version, db_handle db) {
    if (db == nullptr) {
        DB_LOG(kError, "db_handle is NULL!\n");
        return -1;
    }
    int rows = 0;
    if (db_query_row_num(db, "select count(*) from db_version;", &rows) != 0) {
        DB_LOG(kError, "db_query_row_num error\n");
        return -1;
    }
    const std::string sql = rows > 0
                                ? "update db_version set version = " + std::to_string(version) + ";"
                                : "insert into db_version(version) values(" + std::to_string(version) + ");";
    if (db_execsql(db, sql.c_str()) != 0) {
        DB_LOG(kError, rows > 0 ? "update db_version error\n" : "insert db_version error\n");
        return -1;
    }
    return 0;
}

int db_update_old_version(int version, db_handle db) {
    if (db == nullptr) {
        DB_LOG(kError, "db_handle is NULL!\n");
        return -1;
    }
    // An unchanged version is no write.
    const std::string value = std::to_string(version);
    const std::string sql =
        "update db_version set old_version = " + value + " where old_version is not " + value + ";";
    if (db_execsql_adapt(db, sql.c_str()) != 0) {
        DB_LOG(kError, "update db old_version error\n");
        return -1;
    }
    return 0;
}
