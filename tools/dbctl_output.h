// What dbctl's commands share: how they print, and how they fail.
//
//   Output out = ...;                                // as --json and --plain ask for
//   TextTable table({"number", "table"});
//   table.add({27, "gamma_config_table"});
//   table.print(out);
#ifndef TOOLS_DBCTL_OUTPUT_H
#define TOOLS_DBCTL_OUTPUT_H

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "record_access.h"

// The exit status, which scripts rely on.
enum ExitStatus : int {
    kOk = 0,
    kNegativeReply = 1,
    kUsage = 2,
    kUnknownName = 3,
    kUnreachable = 5,
    kTimedOut = 6,
};

// Ends the program with a sentence on standard error.
class Failure : public std::runtime_error {
  public:
    Failure(ExitStatus status, const std::string& sentence) : std::runtime_error(sentence), status_(status) {}
    ExitStatus status() const { return status_; }

  private:
    ExitStatus status_;
};

enum class Format { aligned, plain, json };

struct Output {
    bool json = false, plain = false;

    Format format() const { return json ? Format::json : plain ? Format::plain : Format::aligned; }
};

// Adds --json and --plain to a command; `out` must outlive the parsing.
void add_format_options(CLI::App& command, Output& out);

// Text of a value outside JSON: a string as it is, null as "-".
std::string plain_text(const Json& value);

// Rows under headings: aligned for readers, with tabs and no headings for scripts, or an array of JSON objects.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> headings) : headings_(std::move(headings)) {}
    void add(std::vector<Json> row) { rows_.push_back(std::move(row)); }
    void print(const Output& out) const;
    Json json() const;

  private:
    void print_aligned() const;

    std::vector<std::string> headings_;
    std::vector<std::vector<Json>> rows_;
};

// An object's values by their paths ("versions.current"), one a line; as it is with --json.
void print_object(const Json& object, const Output& out);

// A line on standard output.
void print_line(const std::string& line);

#endif
