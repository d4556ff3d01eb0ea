// health: the two database files as they are now, and what the operation log tells of the starts.  Repairs nothing.
#include <sys/stat.h>
#include <time.h>

#include <array>
#include <fstream>
#include <memory>
#include <span>
#include <sstream>

#include "dbctl_commands.h"
#include "dbctl_output.h"
#include "device_db.h"
#include "device_paths.h"
#include "row_digest.h"
#include "well_known.h"

namespace {

Json time_json(time_t time) {
    std::tm local{};
    std::array<char, 32> text{};
    localtime_r(&time, &local);
    return std::string(text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local));
}

const char* integrity_of(const std::string& path) {
    const int result = check_inactive_db_integrity(path.c_str());
    return result == 0 ? "ok" : result < 0 ? "damaged" : "not known: it is in use";
}

// The first value of the first row; null when there is none, or it cannot be read.
Json number(db_handle db, const std::string& sql) {
    db_cursor cursor;
    if (db_query_open_v2(db, (sql + ";").c_str(), &cursor) != 0)
        return nullptr;
    const char* text = db_query_fields_v2(&cursor, "n", 0);
    return text == nullptr ? Json(nullptr) : Json(std::strtol(text, nullptr, 10));
}

// The file is read while SQLite's lock keeps writers off.
const char* seal_of_file(db_handle db, const std::string& path) {
    db_cursor cursor;
    Seal seal = Seal::unknown;
    if (db_execsql(db, "begin;") == 0 &&
        db_query_open_v2(db, "select 1 from sqlite_master limit 1;", &cursor) == 0) {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        const std::string content = bytes.str();
        const auto image = std::as_bytes(std::span(content));
        seal = seal_of(image, digest_of(image));
    }
    db_execsql(db, "rollback;");
    switch (seal) {
        case Seal::intact:
            return "intact";
        case Seal::none:
            return "none: of an older release";
        case Seal::broken:
            return "broken: another program wrote the file";
        case Seal::rotten:
            return "rotten: rows changed with nobody writing";
        case Seal::unknown:
            break;
    }
    return "not known";
}

struct File {
    Json json = Json::object();
    std::vector<std::string> problems;
};

File examine(const char* name, const std::string& path) {
    File file;
    const auto problem = [&](const std::string& what) { file.problems.push_back(name + (" " + what)); };
    struct stat state {};
    const bool exists = stat(path.c_str(), &state) == 0;
    file.json["path"] = path;
    file.json["exists"] = exists;
    file.json["bytes"] = exists ? Json(state.st_size) : Json(nullptr);
    file.json["written"] = exists ? time_json(state.st_mtime) : Json(nullptr);
    if (!exists || state.st_size == 0) {
        problem(exists ? "is empty" : "does not exist");
        return file;
    }
    const std::string integrity = integrity_of(path);
    file.json["integrity"] = integrity;
    const bool readable = integrity == "ok";
    if (integrity == "damaged")
        problem("is damaged");
    const std::unique_ptr<sqlite3, decltype(&db_disconnect)> db(
        readable ? db_connect(0, path.c_str(), 0, 0) : nullptr, db_disconnect);
    const std::string_view seal = seal_of_file(db.get(), path);
    file.json["seal"] = seal;
    if (seal.starts_with("rotten"))
        problem("has rotted");
    for (const char* table : kKeyTables) {
        const Json rows = number(db.get(), std::string("select count(*) as n from ") + table);
        file.json["key_rows"][table] = rows;
        if (readable && (rows.is_null() || rows == 0))
            problem(std::string("has no rows in ") + table);
    }
    for (const char* column : {"version", "old_version"}) {
        const Json packed = number(db.get(), std::string("select ") + column + " as n from db_version");
        file.json[column] = packed.is_null() || packed < 0 ? packed : Json(packed.get<int>() >> 8);
    }
    if (readable && (file.json["version"].is_null() || file.json["version"] <= 0))
        problem("has no version");
    return file;
}

int print_health(const Output& out) {
    const File main = examine("main", device_path(kDatabaseFile)),
               backup = examine("backup", device_path(kDatabaseBackupFile));
    Json health = {{"main", main.json}, {"backup", backup.json}};
    health["last_backup"] = backup.json["written"];
    health["problems"] = main.problems;
    for (const std::string& problem : backup.problems)
        health["problems"].push_back(problem);
    const bool is_well = health["problems"].empty();
    const TextTable log = operation_log(true);
    if (out.json)
        health["log"] = log.json();
    print_object(health, out);
    if (!out.json) {
        print_line("");
        log.print(out);
    }
    return is_well ? kOk : kNegativeReply;
}

}  // namespace

void add_health_command(CLI::App& app, int& exit_status) {
    auto* const health = app.add_subcommand(
        "health", "examine the database and its backup, and tell what the starts did and why");
    const auto out = std::make_shared<Output>();
    add_format_options(*health, *out);
    health->callback([out, &exit_status] { exit_status = print_health(*out); });
}
