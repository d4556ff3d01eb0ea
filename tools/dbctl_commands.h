// dbctl's commands.  Each function adds some to the command line; a command runs while the line is parsed, and
// fails with Failure, AccessError or NoRecord.
#ifndef TOOLS_DBCTL_COMMANDS_H
#define TOOLS_DBCTL_COMMANDS_H

#include <CLI/CLI.hpp>

#include "dbctl_output.h"

void add_service_commands(CLI::App& app, int& exit_status);  // call, status, kinds
void add_record_commands(CLI::App& app);                     // tables, describe, get, set
void add_log_command(CLI::App& app);
void add_health_command(CLI::App& app, int& exit_status);

// The records of the operation log, the oldest first; with what each means.
TextTable operation_log(bool explained);

#endif
