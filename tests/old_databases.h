// Databases of older schemas, synthesised from the newest by taking away what the later steps of the patch chain bring.
#ifndef TESTS_OLD_DATABASES_H
#define TESTS_OLD_DATABASES_H

#include "chain_steps.h"
#include "core_fixture.h"
#include "created_table.h"

inline std::vector<std::string> words(std::string_view list) {
    std::istringstream text{std::string(list)};
    return {std::istream_iterator<std::string>(text), {}};
}

// A step's own changes and those that it repeats.
inline std::vector<const Changes*> changes_of(const ChainStep& step) {
    std::vector<const Changes*> all{&step.changes};
    for (const Changes* repeated : step.repeats)
        if (repeated != nullptr)
            all.push_back(repeated);
    return all;
}
inline std::vector<std::string> creations_of(const ChainStep& step) {
    std::vector<std::string> names;
    for (const Changes* changes : changes_of(step))
        for (const std::string& name : words(changes->creates))
            names.push_back(name);
    return names;
}
using Column = std::pair<std::string, std::string>;
inline std::vector<Column> additions_of(const ChainStep& step) {
    std::vector<Column> columns;
    for (const Changes* changes : changes_of(step)) {
        std::string table;
        for (std::string word : words(changes->adds)) {
            const char last = word.back();
            if (last == ':' || last == ';')
                word.pop_back();
            if (last == ':')
                table = word;
            else
                columns.emplace_back(table, word);
        }
    }
    return columns;
}
inline std::vector<std::string> remakes_of(const ChainStep& step) {
    std::vector<std::string> names = words(step.remakes_if_there);
    for (const std::string& name : words(step.remakes))
        names.push_back(name);
    return names;
}

// Which step first brings each table and column.  A table that a step changes before any makes it was always there.
struct History {
    std::map<std::string, int> tables;
    std::map<Column, int> columns;

    History() {
        for (const ChainStep& step : chain_steps()) {
            const int from = std::max(step.from, step.also_from);
            for (const std::string& table : creations_of(step))
                tables.try_emplace(table, from);
            for (const Column& column : additions_of(step)) {
                tables.try_emplace(column.first, 0);
                columns.try_emplace(column, from);
            }
            for (const std::string& table : remakes_of(step))
                tables.try_emplace(table, 0);
        }
    }
};

class OldDatabases : public Core {
  protected:
    const History history_;

    // The database becomes one of an older schema that holds the record.
    void older_database(int major, int minor = 0) {
        fresh_database();
        sql("pragma synchronous = off; drop table sec_lock_auth_db_info;");
        EXPECT_EQ(db_update_version(major << 8 | minor, get_db_handle()), 0);
        save_all();
        close_database();
        const std::string newest = path("newest");
        std::filesystem::rename(get_db_path(), newest);
        set_db_handle(db_open(get_db_path()));
        sql("attach '" + newest + "' as newest; begin;");
        for (const CreatedTable& table : created_tables()) {
            const std::string name(table.name);
            std::string columns, declared, keys;
            for (const CreatedColumn& column : table.columns)
                if (const std::string word(column.name); has(name, word, major)) {
                    columns += (columns.empty() ? "" : ",") + word;
                    declared += (declared.empty() ? "" : ",") + word + " " + std::string(column.type);
                }
            if (columns.empty())
                continue;
            keys = query("select group_concat(name) from pragma_table_info('" + name +
                         "', 'newest') where pk > 0");
            sql("create table main." + name + "(" + declared +
                (keys == "NULL" ? "" : ", primary key(" + keys + ")") + "); insert into main." + name + "(" +
                columns + ") select " + columns + " from newest." + name + ";");
        }
        if (major >= 1104 && major <= 1106)
            sql("create table roi_param_table(idx integer primary key);");
        sql("commit; detach newest;");
        std::filesystem::remove(newest);
    }

    bool has(const std::string& table, const std::string& column, int major) const {
        const auto made = history_.tables.find(table);
        const auto added = history_.columns.find({table, column});
        return (made == history_.tables.end() || made->second < major) &&
               (added == history_.columns.end() || added->second < major);
    }
};

#endif
