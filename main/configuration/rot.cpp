#include "rot.h"

#include <sqlite3.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "carried_rows.h"
#include "files.h"
#include "health.h"
#include "log.h"
#include "operation_log.h"
#include "seal.h"
#include "second_try.h"
#include "store.h"
#include "transaction.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

// So few that a digest of 32 bits is not made true by chance.
constexpr std::size_t kMostReplacements = 100'000, kMostOfPairs = 1'000;

struct Row {
    uint32_t hash;
    int64_t rowid;
    bool operator<(const Row& other) const { return hash < other.hash; }
};
using Rows = std::map<std::string, std::vector<Row>, std::less<>>;

// What would put one row back: a row of the backup comes for one of the main database, or either alone.
struct Replacement {
    const std::string* table;  // the key of the backup's rows
    std::optional<Row> goes, comes;
    [[nodiscard]] uint32_t difference() const { return (comes ? comes->hash : 0) - (goes ? goes->hash : 0); }
    [[nodiscard]] bool shares_a_row(const Replacement& other) const {
        const auto same = [](const std::optional<Row>& a, const std::optional<Row>& b) {
            return a && b && a->rowid == b->rowid;
        };
        return table == other.table && (same(goes, other.goes) || same(comes, other.comes));
    }
};

Rows rows_of(DatabaseImage image) {
    Rows rows;
    const bool whole = for_each_stored_row(image, [&](std::string_view table, int64_t rowid, uint32_t hash) {
        auto found = rows.find(table);
        if (found == rows.end())
            found = rows.try_emplace(std::string(table)).first;
        found->second.push_back({hash, rowid});
    });
    rows.erase("sqlite_master");
    if (!whole)
        rows.clear();
    for (auto& [table, of_table] : rows)
        std::sort(of_table.begin(), of_table.end());
    return rows;
}

// Every single row that could have rotted; empty when there are too many.
std::vector<Replacement> replacements(const Rows& main, const Rows& backup) {
    std::vector<Replacement> all;
    for (const auto& [table, kept] : backup) {
        const auto found = main.find(table);
        if (found == main.end())
            continue;
        std::vector<Row> go, come;
        std::set_difference(found->second.begin(), found->second.end(), kept.begin(), kept.end(),
                            std::back_inserter(go));
        std::set_difference(kept.begin(), kept.end(), found->second.begin(), found->second.end(),
                            std::back_inserter(come));
        if (all.size() + (go.size() + 1) * (come.size() + 1) > kMostReplacements)
            return {};
        for (const Row& row : come)
            all.push_back({&table, {}, row});
        for (const Row& row : go) {
            all.push_back({&table, row, {}});
            for (const Row& other : come)
                all.push_back({&table, row, other});
        }
    }
    return all;
}

// The one or two replacements that make up for the difference; empty: there are none.
std::vector<Replacement> explanation(const std::vector<Replacement>& all, uint32_t difference) {
    for (const Replacement& one : all)
        if (one.difference() == difference)
            return {one};
    // Of two, each has kept its place, or has none.
    std::vector<Replacement> in_place;
    std::copy_if(all.begin(), all.end(), std::back_inserter(in_place),
                 [](const Replacement& r) { return !r.goes || !r.comes || r.goes->rowid == r.comes->rowid; });
    if (in_place.size() > kMostOfPairs)
        return {};
    std::unordered_multimap<uint32_t, const Replacement*> by_difference;
    for (const Replacement& one : in_place)
        by_difference.emplace(one.difference(), &one);
    for (const Replacement& one : in_place) {
        const auto [first, last] = by_difference.equal_range(difference - one.difference());
        for (auto other = first; other != last; ++other)
            if (other->second != &one && !one.shares_a_row(*other->second))
                return {one, *other->second};
    }
    return {};
}

bool run(db_handle db, const std::string& sql) {
    return db_execsql(db, sql.c_str()) == 0;
}

bool put_back(db_handle main, db_handle backup, const Replacement& r) {
    if (r.goes &&
        !run(main, "delete from " + *r.table + " where rowid = " + std::to_string(r.goes->rowid) + ";"))
        return false;
    if (!r.comes)
        return true;
    if (!carry_rows(backup, main, {.table = *r.table, .where = "rowid = " + std::to_string(r.comes->rowid)}))
        return false;
    // Some tables are loaded in the order of their rows; where a column shows the rowid, it came with the row.
    const int64_t added = sqlite3_last_insert_rowid(main), wanted = r.goes ? r.goes->rowid : r.comes->rowid;
    return added == r.comes->rowid || added == wanted ||
           run(main, "update or ignore " + *r.table + " set rowid = " + std::to_string(wanted) +
                         " where rowid = " + std::to_string(added) + ";");
}

// All, or none.
bool put_back(const char* main, const char* backup, const std::vector<Replacement>& rows, uint32_t digest) {
    const OwnDatabase from(db_open(backup)), to(db_open(main));
    return from != nullptr && db_settle(to.get()) == 0 && run(to.get(), "begin immediate;") &&
           std::all_of(rows.begin(), rows.end(),
                       [&](const Replacement& row) { return put_back(to.get(), from.get(), row); }) &&
           seal_anew(to.get(), digest) == 0 && run(to.get(), "commit;");
}

// With the backup's rows only where the backup is whole.
SealedImage read_backup(const char* backup) {
    return at_the_second_try([&] { return is_healthy(backup); }) ? read_sealed(backup) : SealedImage();
}

bool mend(const SealedImage& rotten, const char* main, const char* backup) {
    const SealedImage kept = read_backup(backup);
    const Rows main_rows = rows_of(rotten.image()), kept_rows = rows_of(kept.image());
    const auto rows = explanation(replacements(main_rows, kept_rows), rotten.stored - rotten.counted);
    DB_LOG_AS(kError, "mend_rot", "%s has rotted: digest %08x, stored %08x\n", main, rotten.counted,
              rotten.stored);
    if (!rows.empty() && at_the_second_try([&] { return put_back(main, backup, rows, rotten.stored); })) {
        log_operation("[%s]rotten.%d rows put back\n", main, static_cast<int>(rows.size()));
        return true;
    }
    const bool digest_rotted = std::has_single_bit(rotten.stored ^ rotten.counted) && seal_file(main);
    if (digest_rotted)
        log_operation("[%s]digest rotten\n", main);
    return digest_rotted;
}

}  // namespace

bool mend_rot(const char* main, const char* backup) {
    SealedImage image = read_sealed(main);
    if (image.seal == Seal::rotten)  // or a fault of the moment
        image = read_sealed(main);
    if (image.seal == Seal::rotten)
        return mend(image, main, backup);
    if (image.seal == Seal::intact || image.seal == Seal::unknown)
        return true;
    DB_LOG(kNotice, "%s was written without a seal\n", main);
    if (!seal_file(main))
        DB_LOG(kError, "%s cannot be sealed\n", main);
    return true;
}

void restore_rotten(const char* main, const char* backup) {
    const bool is_good = read_backup(backup).seal == Seal::intact;
    if (is_good && at_the_second_try([&] { return copy_file(main, backup, may_be_kept) == 0; }))
        return log_operation("[%s]rotten.Restored\n", main);
    log_operation("[%s]rotten\n", main);
    // What no backup can mend, the device has to live with.
    if (!is_good && !is_out_of_reach(backup) && !seal_file(main))
        DB_LOG(kError, "%s cannot be sealed\n", main);
}

bool refresh_backup() {
    if (db_begin_to_load() != 0)
        return false;
    const bool copied = copy_file(get_db_backup_path(), get_db_path(), may_be_kept) == 0;
    db_rollback();
    return copied;
}
