// dbctl's commands.  Each function adds some to the command line; a command runs while the line is parsed, and
// fails with Failure, AccessError or NoRecord.
#ifndef TOOLS_DBCTL_COMMANDS_H
#define TOOLS_DBCTL_COMMANDS_H

#include <CLI/CLI.hpp>

void add_service_commands(CLI::App& app, int& exit_status);  // call, status, kinds
void add_record_commands(CLI::App& app);                     // tables, describe, get, set
void add_log_command(CLI::App& app);

#endif
