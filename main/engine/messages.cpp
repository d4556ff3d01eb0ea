#include "messages.h"

#include <sqlite3.h>

#include "store.h"

namespace dbshell {

namespace {

constexpr const char* kSourceFile = "main/dbshell.c";

std::string spelled(const Table& t, const char* message, const Told& told) {
    std::string line;
    for (const char* c = message; *c != '\0'; ++c) {
        if (*c != '%') {
            line += *c;
            continue;
        }
        switch (*++c) {
            case 'd':
                line += std::to_string(told.number);
                break;
            case 'k':
                line += std::to_string(told.key);
                break;
            case 'o':
                line += std::to_string(told.outer);
                break;
            case 'r':
                line += std::to_string(told.row);
                break;
            case '1':
            case '2':
            case '3':
            case '4':
                line += std::to_string(told.at[*c - '1']);
                break;
            case 's':
                line += told.statement;
                break;
            case 'm':
                line += sqlite3_errmsg(get_db_handle());
                break;
            case 'T':
                line += t.name;
                break;
            case 'G':
                line += loading_function(t);
                break;
            case 'F':
                line += t.set;
                break;
            case 'S':
                line += single_name(t);
                break;
            default:
                line += '%';
                --c;
        }
    }
    return line;
}

}  // namespace

void log_table(const Table& t, std::string_view function, const char* message, const Told& told, int level) {
    if (message == nullptr || *message == '\0')
        return;
    dev_debug_v1(level, kDatabaseModule, t.source != nullptr ? t.source : kSourceFile, t.line,
                 std::string(function).c_str(), "%s", spelled(t, message, told).c_str());
}

std::string saving_function(const Table& t) {
    if (!t.worker_set.empty())
        return std::string(t.worker_set);
    return t.has_single() ? single_name(t) : std::string(t.set);
}

std::string_view loading_function(const Table& t) {
    return t.worker_get.empty() ? t.get : t.worker_get;
}

int result_of(uint8_t codes, Status status) {
    const int cause = static_cast<int>(status.cause());
    return cause == 0 || (codes >> -cause & 1) != 0 ? cause : -1;
}

}  // namespace dbshell
