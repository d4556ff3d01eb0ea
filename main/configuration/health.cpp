#include "health.h"

#include <errno.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include "device_db.h"
#include "files.h"
#include "log.h"
#include "operation_log.h"
#include "seal.h"
#include "store.h"
#include "unique_fd.h"
#include "well_known.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

// The messages take the path; those of a missing file errno, too.
struct Finding {
    int code;
    const char* message;
    const char* record;
};
constexpr Finding kFindings[] = {
    {kFileMissing, "db %s does not exist--errno = %d\n", "[%s]not exist[%d]\n"},
    {kFileEmpty, "db %s is empty\n", "[%s]is empty\n"},
    {kUnrepairable, "db %s format is wrong\n", "[%s]format err\n"},
    {kKeyRowsMissing, "db %s data is empty\n", "[%s]key data empty\n"},
};

// ------------------------------------------------------------------------------------- dump and reload

constexpr const char* kDumpFile = "ex1.dump.gz";
constexpr const char* kDump = "echo '.dump' | sqlite3 %s | gzip -c >ex1.dump.gz";
constexpr const char* kReload = "zcat ex1.dump.gz | sqlite3 %s";

// Runs a command on a path.  False also when the path does not fit, or the shell would not take it as it stands.
bool run(const char* command, const char* path) {
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./+:@%,-";
    char text[128];
    const bool fits = std::snprintf(text, sizeof text, command, path) < static_cast<int>(sizeof text);
    if (fits && std::string_view(path).find_first_not_of(kPlain) == std::string_view::npos && *path == '/')
        return std::system(text) == 0;
    DB_LOG_AS(kError, "db_isok", "%s is no name for a command\n", path);
    return false;
}

// A dump that met damage ends in a ROLLBACK, a dump that was cut in anything.
bool is_dump_whole() {
    FILE* const dump = popen((std::string("zcat ") + kDumpFile).c_str(), "r");
    if (dump == nullptr)
        return false;
    std::string line;
    for (std::array<char, 4096> chunk; std::fgets(chunk.data(), chunk.size(), dump) != nullptr;) {
        if (line.ends_with('\n'))
            line.clear();
        line += chunk.data();
    }
    return pclose(dump) == 0 && line == "COMMIT;\n";
}

std::set<std::string> table_names(const char* path) {
    std::set<std::string> names;
    db_cursor cursor;
    const OwnDatabase db(db_connect(0, path, 0, 0));
    if (db_query_open_v2(db.get(), "select name from sqlite_master where type = 'table';", &cursor) == 0)
        for (int i = 0; i < db_query_rec_count_v2(&cursor); ++i)
            if (const char* name = db_query_fields_v2(&cursor, "name", i))
                names.insert(name);
    return names;
}

// Gives the reloaded file this system's page size.
bool settle_pages(const char* path) {
    const OwnDatabase db(db_open(path));
    return db && db_execsql(db.get(), "vacuum;") == 0;
}

// A reload that ran out of space loses the tables that it had made before.
bool has_all_tables(const char* reloaded, const char* original) {
    const auto names = table_names(reloaded);
    return !names.empty() && names == table_names(original);
}

// A dump has the schema's texts as they stand, and the shell that reloads it runs whatever it reads: another's commands
// and statements, too.  Texts of this system are one statement on one line.
bool has_plain_schema(const char* path) {
    int odd = -1;
    const OwnDatabase db(db_connect(0, path, 0, 0));
    const int rc = db_query_row_num(
        db.get(), "select count(*) from sqlite_master where sql glob '*[;' || char(10) || ']*';", &odd);
    return rc == 0 && odd == 0;
}

bool repair(const char* path) {
    DB_LOG_AS(kError, "db_isok", "try to restore database %s\n", path);
    NewFile next(path);
    return has_plain_schema(path) && (std::remove(kDumpFile) == 0 || errno == ENOENT) && run(kDump, path) &&
           is_dump_whole() && run(kReload, next.path()) && settle_pages(next.path()) &&
           take_seal(next.path(), path) && check_inactive_db_integrity(next.path()) == 0 &&
           has_all_tables(next.path(), path) && next.take_place();
}

// ------------------------------------------------------------------------------------- looks

enum class Look { good, wrong, unreadable };

int patience = 0;  // seconds

// A fault of the moment must not look like damage, for which the backup would bring older values: two looks must say so,
// and what cannot be read is looked at for as long as the patience lasts.
template <class Attempt>
bool is_wrong(Attempt look) {
    for (int wrong = 0; wrong < 2;) {
        const Look found = look();
        if (found == Look::good)
            return false;
        if (found == Look::unreadable && patience > 0) {
            --patience;
            sleep(1);
        } else {
            ++wrong;
        }
    }
    return true;
}

Look look_at_file(int result, const char* path) {
    return result == 0 ? Look::good : is_out_of_reach(path) ? Look::unreadable : Look::wrong;
}

Look look_at_pages(const char* path) {
    const int result = check_inactive_db_integrity(path);
    return result >= 0 ? Look::good : result == kCannotBeRead ? Look::unreadable : Look::wrong;
}

// What cannot be counted now, for another process's lock or for want of memory, is not missing.
Look look_at_rows(db_handle db, const char* table) {
    db_cursor cursor;
    const int rc =
        db_query_open_v2(db, ("select count(*) from " + std::string(table) + ";").c_str(), &cursor);
    switch (rc) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_NOMEM:
            return Look::good;
        case SQLITE_IOERR:
            return Look::unreadable;
        default:
            return rc == SQLITE_OK && db_query_table_rows(&cursor) > 0 ? Look::good : Look::wrong;
    }
}

// Of a file whose pages are good: one that cannot be opened now has them still.
Look look_at_key_rows(const char* path) {
    const OwnDatabase db(db_open(path));
    if (!db) {
        std::puts("db open failed!");
        return Look::good;
    }
    Look all = Look::good;
    for (const char* table : kKeyTables)
        all = std::max(all, look_at_rows(db.get(), table));
    return all;
}

// The code of the first thing that is wrong; 0.
int examine(const char* path) {
    if (is_wrong([&] { return look_at_file(check_file_exist(path), path); }))
        return kFileMissing;
    if (is_wrong([&] { return look_at_file(check_file_not_empty(path), path); }))
        return kFileEmpty;
    if (is_wrong([&] { return look_at_pages(path); }) && !repair(path))
        return kUnrepairable;
    return is_wrong([&] { return look_at_key_rows(path); }) ? kKeyRowsMissing : 0;
}

}  // namespace

void set_patience(int seconds) {
    patience = seconds;
}

bool is_healthy(const char* path) {
    return check_file_exist(path) == 0 && check_file_not_empty(path) == 0 &&
           look_at_pages(path) == Look::good && look_at_key_rows(path) == Look::good;
}

bool is_out_of_reach(const char* path) {
    const unique_fd file(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    return !file && errno != ENOENT;
}

int db_isok(const char* path, int* code) {
    if (path == nullptr || code == nullptr) {
        DB_LOG(kError, "db_isok param is null.\n");
        return -1;
    }
    const int found = examine(path);
    const int error = errno;
    for (const Finding& finding : kFindings)
        if (finding.code == found) {
            DB_LOG(kError, finding.message, path, error);
            log_operation(finding.record, path, error);
            *code = found;
            return -1;
        }
    return 0;
}
