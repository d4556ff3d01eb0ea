// The command line of the configuration database: requests to the service, and the values of the shared record.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

#include "dbctl_commands.h"
#include "dbctl_output.h"
#include "device_paths.h"
#include "shared_objects.h"

namespace {

constexpr const char* kDescription =
    "Talks to the camera's configuration database.\n"
    "\n"
    "`get` and `set` work on the record that the programs share; `call` asks the service to load the record "
    "from\n"
    "the database or to store parts of it.";

constexpr const char* kFooter =
    "An ADDRESS is TABLE, TABLE.FIELD, TABLE[ROW] or TABLE.FIELD[ROW]. TABLE is the name of a table, its "
    "number, or\n"
    "a function that loads or saves it, which tells apart entries of one table. Rows count from 1; a table "
    "that\n"
    "keeps a list for each channel takes [CHANNEL,ROW], and [ROW] is channel 1.\n"
    "\n"
    "Environment:\n"
    "  DEVICE_ROOT  the folder that stands for the device's root; unset: the device itself\n"
    "  NO_COLOR     when not empty, nothing is highlighted\n"
    "\n"
    "Exit status:\n"
    "  0  done; a reply was not negative, or there is none\n"
    "  1  the reply was negative, a file cannot be read, or `health` found something wrong\n"
    "  2  wrong usage, or a value that does not fit\n"
    "  3  no such table, field or request kind\n"
    "  5  the service or the shared record cannot be reached\n"
    "  6  no answer in time";

int fail(const std::exception& error, ExitStatus status) {
    std::fflush(stdout);
    std::fprintf(stderr, "dbctl: %s\n", error.what());
    return status;
}

// A mistyped root would look like a device without a database.
void expect_root() {
    const std::string root = device_path("/");
    if (!std::filesystem::is_directory(root))
        throw Failure(kUnreachable, "there is no folder " + root + " (DEVICE_ROOT)");
}

int run(int argc, char** argv) {
    int exit_status = kOk;
    CLI::App app(kDescription, "dbctl");
    app.require_subcommand(0, 1);  // a wrong one is named; none is told below
    add_service_commands(app, exit_status);
    add_record_commands(app);
    add_log_command(app);
    add_health_command(app, exit_status);
    app.footer(kFooter);  // not the commands'
    app.parse_complete_callback(expect_root);
    try {
        app.parse(argc, argv);
        if (app.get_subcommands().empty())
            throw CLI::RequiredError::Subcommand(1);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kOk : kUsage;
    }
    return exit_status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const AccessError& error) {
        return fail(error, error.reason() == AccessError::Reason::unknown_name ? kUnknownName : kUsage);
    } catch (const NoRecord& error) {
        return fail(error, kUnreachable);
    } catch (const Failure& error) {
        return fail(error, error.status());
    } catch (const std::exception& error) {
        return fail(error, kNegativeReply);
    }
}
