#include "repair.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>

#include "alter.h"
#include "created_table.h"
#include "log.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

constexpr int kMostFailures = 20;
constexpr std::size_t kLongestTableName = 99, kLongestType = 19;

// Where rows of an older schema do not tell their channel they are the first one's.
constexpr std::string_view kChannelColumns[] = {"chan_no", "chan_idx"};

int failures = 0;  // executions in a row

// A word of an SQL name at the start of a text; SQLite's messages may go on behind it.
std::string_view name_at(std::string_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::string_view without_blanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text;
}

bool begins_with(std::string_view text, std::string_view word) {
    return text.size() >= word.size() &&
           sqlite3_strnicmp(text.data(), word.data(), static_cast<int>(word.size())) == 0;
}

bool same_name(std::string_view a, std::string_view b) {
    return a.size() == b.size() && begins_with(a, b);
}

bool table_exists(db_handle db, std::string_view table) {
    int count = 0;
    const std::string sql = "select count(*) from sqlite_master where type='table' and name='" +
                            std::string(table) + "' collate nocase;";
    return db_query_row_num(db, sql.c_str(), &count) == 0 && count > 0;
}

// Null, with a log line, where the create list has no such column or its type is no type's.
const CreatedColumn* find_column(const CreatedTable& table, std::string_view column) {
    const CreatedColumn* found = table.column(column);
    if (found == nullptr)
        DB_LOG_AS(kError, "find_create_sql_by_tablename_and_column", "SQL: %s, no such column:%s\n",
                  std::string(table.statement).c_str(), std::string(column).c_str());
    else if (found->type.size() > kLongestType)
        DB_LOG_AS(kError, "find_create_sql_by_tablename_and_column", "[%s][%d]column type error.....\n",
                  std::string(column).c_str(), static_cast<int>(found->type.size()));
    else
        return found;
    return nullptr;
}

bool add_missing_table(db_handle db, const CreatedTable& table) {
    return !table_exists(db, table.name) && add_table(db, std::string(table.statement).c_str()) == 0 &&
           table_exists(db, table.name);
}

bool add_missing_column(db_handle db, const CreatedTable& table, std::string_view column) {
    return check_column_exist(db, std::string(table.name).c_str(), std::string(column).c_str()) == 0 &&
           add_created_column(db, table.name, column) == 0;
}

}  // namespace

int db_execsql_adapt(db_handle db, const char* sql) {
    if (db == nullptr || sql == nullptr)
        return -1;
    if (failures > kMostFailures) {
        DB_LOG(kError, "db_execsql too many time\n");
        failures = 0;
        return SQLITE_ERROR;
    }
    while (true) {
        const int rc = sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
        if (rc == SQLITE_OK) {
            failures = 0;
            return rc;
        }
        DB_LOG(kError, "SQL error:%d, %s\n", sqlite3_errcode(db), sqlite3_errmsg(db));
        ++failures;
        if (rc != SQLITE_ERROR)
            return rc;
        const std::string_view table = parse_tablename_from_sql(sql);
        if (table.empty()) {
            DB_LOG(kTrace, "parse_tablename_from_sql failed...do nothing\n");
            return rc;
        }
        if (!db_repair(db, table))
            return rc;
        failures = 0;
    }
}

bool db_repair(db_handle db, std::string_view table) {
    const std::string message = sqlite3_errmsg(db);
    const MissingPart missing = parse_errmsg(message);
    if (missing.kind == MissingPart::other) {
        DB_LOG_AS(kTrace, "db_execsql_adapt", "errmsg_parse_ret = %d\n", 2);
        return false;
    }
    const bool lacks_table = missing.kind == MissingPart::table;
    const CreatedTable* created = created_table(table);
    if (created != nullptr && lacks_table && same_name(missing.name, created->name) &&
        add_missing_table(db, *created))
        return true;
    if (created != nullptr && !lacks_table && add_missing_column(db, *created, missing.name))
        return true;
    DB_LOG_AS(kError, "db_execsql_adapt", "find_create_sql_by_tablename_and_column failed %d...\n",
              lacks_table ? 2 : 1);
    return false;
}

int add_created_column(db_handle db, std::string_view table, std::string_view column) {
    const CreatedTable* created = created_table(table);
    const CreatedColumn* found = created != nullptr ? find_column(*created, column) : nullptr;
    if (found == nullptr)
        return -1;
    const std::string to(created->name), name(found->name);
    const bool was_there = check_column_exist(db, to.c_str(), name.c_str()) == 1;
    if (add_column(db, to.c_str(), name.c_str(), std::string(found->type).c_str()) != 0)
        return -1;
    if (was_there || std::find(std::begin(kChannelColumns), std::end(kChannelColumns), found->name) ==
                         std::end(kChannelColumns))
        return 0;
    const std::string sql = "update " + to + " set " + name + " = 1;";
    return db_execsql(db, sql.c_str()) == 0 ? 0 : -1;
}

// ------------------------------------------------------------------------------------- what it reads

std::string_view parse_tablename_from_sql(std::string_view sql) {
    constexpr std::string_view kKeywords[] = {"replace into ", "insert into ", "update "};
    const std::string_view text = without_blanks(sql);
    const auto keyword = std::find_if(std::begin(kKeywords), std::end(kKeywords),
                                      [text](std::string_view k) { return begins_with(text, k); });
    if (keyword == std::end(kKeywords)) {
        DB_LOG(kError, "It's not a update record sql:%s\n", std::string(sql).c_str());
        return {};
    }
    const std::string_view name = name_at(without_blanks(text.substr(keyword->size())));
    if (name.size() > kLongestTableName) {
        DB_LOG_AS(kError, "parse_tablename", "%s tablename too long(%d), please check\n",
                  std::string(name).c_str(), static_cast<int>(name.size()));
        return {};
    }
    DB_LOG(kTrace, "%s table_name = %s\n", __func__, std::string(name).c_str());
    return name;
}

MissingPart parse_errmsg(std::string_view message) {
    constexpr struct {
        std::string_view text;
        MissingPart::Kind kind;
    } kMessages[] = {
        {"no such column: ", MissingPart::column},
        {"has no column named ", MissingPart::column},
        {"no such table: ", MissingPart::table},
    };
    for (const auto& m : kMessages)
        if (const auto at = message.find(m.text); at != std::string_view::npos)
            return {m.kind, name_at(message.substr(at + m.text.size()))};
    return {MissingPart::other, {}};
}
