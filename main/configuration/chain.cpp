#include "chain.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "all_tables.h"
#include "alter.h"
#include "catalogue.h"
#include "chain_steps.h"
#include "created_table.h"
#include "engine.h"
#include "log.h"
#include "repair.h"
#include "state.h"
#include "store.h"
#include "work.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

// Calls `visit` for every word of a list until it returns false.
template <class Visit>
bool every_word(std::string_view list, Visit visit) {
    while (!list.empty()) {
        const std::string_view word = list.substr(0, list.find(' '));
        list.remove_prefix(std::min(word.size() + 1, list.size()));
        if (!visit(word))
            return false;
    }
    return true;
}

// One step on its way through its transaction.
class Run {
  public:
    explicit Run(const ChainStep& step)
        : step_(step), name_("parampatchfor_version_" + std::to_string(step.from)) {}

    // False: the database is as it was.
    bool operator()(int& version) {
        const int from = major_of(version);
        if (take(version))
            return true;
        if (step_.says_its_version)
            DB_LOG_AS(kInfo, name_.c_str(), "do_parampatch for version %d failed\n", from);
        return false;
    }

  private:
    const ChainStep& step_;
    const std::string name_;
    const db_handle db_ = get_db_handle();

    bool take(int& version) const {
        DB_LOG_AS(kInfo, name_.c_str(), "%s\n", name_.c_str());
        if (step_.says_its_version)
            DB_LOG_AS(kInfo, "do_parampatch", "parampatch for version %d\n", major_of(version));
        if (db_ == nullptr)
            return failed("%s: pointer is NULL");
        if (get_cfg_param() == nullptr)
            return failed("%s: get_cfg_param  NULL");
        Work work;
        const int next = step_.to << 8 | (version & 0xFF);
        if (!work.begin(tables_saved()) || !change_schema() || !move_rows(work))
            return false;
        if (db_update_version(next, db_) != 0)
            return failed("update db version error\n");
        if (db_failed_at_the_moment())  // a load, which leaves the record as it was otherwise
            return failed("a table cannot be read now\n");
        if (!work.commit())
            return false;
        version = next;
        return true;
    }

    bool failed(const char* message) const {
        std::string line = message;
        if (const auto at = line.find("%s"); at != std::string::npos)
            line.replace(at, 2, name_);
        DB_LOG_AS(kError, name_.c_str(), "%s", line.c_str());
        return false;
    }

    std::vector<const dbshell::Table*> tables_saved() const {
        std::vector<const dbshell::Table*> tables;
        every_word(step_.saves, [&](std::string_view function) {
            if (const dbshell::Table* table = dbshell::find_function(function).table)
                tables.push_back(table);
            return true;
        });
        return tables;
    }

    bool create(std::string_view tables) const {
        return every_word(tables, [&](std::string_view table) {
            const CreatedTable* created = created_table(table);
            return created != nullptr && add_table(db_, std::string(created->statement).c_str()) == 0;
        });
    }

    bool drop(std::string_view tables, const char* sql) const {
        return every_word(tables, [&](std::string_view table) {
            return delete_table(db_, (sql + std::string(table) + ";").c_str()) == 0;
        });
    }

    bool remake(std::string_view tables, const char* sql) const {
        return every_word(tables, [&](std::string_view table) { return drop(table, sql) && create(table); });
    }

    bool add(std::string_view columns) const {
        std::string_view table;
        return every_word(columns, [&](std::string_view word) {
            const char last = word.back();
            if (last == ':' || last == ';')
                word.remove_suffix(1);
            if (last == ':')
                table = word;
            return last == ':' || add_created_column(db_, table, word) == 0;
        });
    }

    bool change_schema() const {
        constexpr const char* kDrop = "drop table ";
        constexpr const char* kDropIfThere = "drop table if exists ";
        const char* const creates_failed =
            step_.creates_failed != nullptr ? step_.creates_failed : step_.changes_failed;
        if (!drop(step_.drops, kDropIfThere))
            return failed(step_.changes_failed);
        if (!every_change(&Run::create, &Changes::creates))
            return failed(creates_failed);
        for (const StepStatement& statement : step_.statements)
            if (statement.sql != nullptr && db_execsql(db_, statement.sql) != 0)
                return failed(statement.failed);
        if (!every_change(&Run::add, &Changes::adds) || !remake(step_.remakes_if_there, kDropIfThere) ||
            !remake(step_.remakes, kDrop))
            return failed(step_.changes_failed);
        return true;
    }

    // Of the step itself and of those that it repeats.
    bool every_change(bool (Run::*make)(std::string_view) const, std::string_view Changes::*list) const {
        for (const Changes* repeated : step_.repeats)
            if (repeated != nullptr && !(this->*make)(repeated->*list))
                return false;
        return (this->*make)(step_.changes.*list);
    }

    bool move_rows(Work& work) const {
        const auto call = [&](std::string_view function) {
            const auto result = dbshell::call_table_function(function, 0);
            if (!result)
                DB_LOG_AS(kWarning, name_.c_str(), "%s is not there\n", std::string(function).c_str());
            return result.value_or(0) == 0;
        };
        every_word(step_.loads, [&](std::string_view function) {
            static_cast<void>(call(function));  // what cannot be loaded keeps its value
            return true;
        });
        if ((step_.also == nullptr || step_.also(work)) && every_word(step_.saves, call))
            return true;
        return failed(step_.save_failed);
    }
};

}  // namespace

ChainEnd run_patch_chain(int version) {
    bool first = true;
    for (const ChainStep& step : chain_steps()) {
        if (major_of(version) != step.from && major_of(version) != step.also_from)
            continue;
        // A step stores the record's part of a table also where the device lacks what the table is for.
        const bool has_rows = !std::exchange(first, false) || load_passed_over_tables();
        if (!has_rows || !Run(step)(version))
            return {version, true};
    }
    return {version, false};
}
