// Transactions on the process-wide handle.
//
//   if (db_begin() != 0)
//       return -1;
//   ...;
//   return db_commit() == 0 ? 0 : -1;
//
// Results are 0 or SQLite's code.
#ifndef DBUTIL_TRANSACTION_H
#define DBUTIL_TRANSACTION_H

// Nothing is stored on a connection that has not got its settings (db_settle): such a begin fails.  One that
// will only load needs none; it fails where another process's lock keeps it from reading, and holds off such a lock
// until its end.
[[nodiscard]] int db_begin();
[[nodiscard]] int db_begin_to_load();
[[nodiscard]] int db_begin_exclusive();
[[nodiscard]] int try_db_begin_exclusive();  // six attempts, each failure followed by a second's pause

[[nodiscard]] int db_commit();  // rolls back when it fails
// A transaction that cannot be rolled back is tried again by the next begin, which fails until that went well.
void db_rollback();

// True when SQLite has rolled the transaction back by itself (disk full, I/O error), or no database is open:
// nothing more may run in it.
[[nodiscard]] bool db_transaction_lost();

// True where that is so of a transaction that was begun above: what runs now is stored on its own.
[[nodiscard]] bool db_transaction_broken();

// Part of a transaction that can be undone on its own.  Undone unless kept; where that fails, the whole
// transaction can no longer be committed.
//
//   Savepoint savepoint;
//   return savepoint.is_open() && work() && savepoint.keep();
class Savepoint {
  public:
    Savepoint();
    ~Savepoint();
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;
    [[nodiscard]] bool is_open() const { return open_; }
    [[nodiscard]] bool keep();

  private:
    bool open_;
};

#endif
