// What became of a step inside the process.  Functions that other code knows by their names and their integer
// results turn it into those at their ends.
//
//   if (const Status s = store(row); !s.ok())
//       return s;
#ifndef GROUND_STATUS_H
#define GROUND_STATUS_H

// Why a step failed.  The values are the result codes of the table functions that tell causes apart.
enum class Cause : signed char {
    none = 0,
    other = -1,        // a key out of range, too
    query = -2,        // a count or a query
    default_row = -3,  // an insert
    write = -4,        // an update or replace
    remove = -5,       // a delete
    no_database = -6,
    no_record = -7,
};

class [[nodiscard]] Status {
  public:
    constexpr Status() = default;
    // `code` is SQLite's result code where one is known.
    constexpr Status(Cause cause, int code = 0) : cause_(cause), code_(code) {}

    constexpr bool ok() const { return cause_ == Cause::none; }
    constexpr Cause cause() const { return cause_; }
    constexpr int code() const { return code_; }

  private:
    Cause cause_ = Cause::none;
    int code_ = 0;
};

// SQLite's result code as a status with the cause of the step.
constexpr Status status_of(int sqlite_code, Cause cause) {
    return sqlite_code == 0 ? Status() : Status(cause, sqlite_code);
}

#endif
