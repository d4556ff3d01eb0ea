// Transactions on the process-wide handle.
//
//   if (db_begin() == 0) { ...; db_commit(); }
//
// A transaction that stores the first encrypted text also stores the encryption version that reads it, and a
// rollback takes that version back.  Every call returns 0 or a failure code.
#ifndef DBUTIL_TRANSACTION_H
#define DBUTIL_TRANSACTION_H

int db_begin();
// For callers of table functions: true when they may be called.  They are called without a database too,
// and tell so by their own messages and codes; but never outside a transaction of an open one.
bool db_begin_unless_closed();
int db_begin_exclusive();
int try_db_begin_exclusive();  // six attempts, each failure followed by a second's pause
int db_rollback();
int db_commit();  // rolls back when it fails

// True when SQLite has rolled the transaction back by itself (disk full, I/O error): nothing more may run
// in it.
bool db_transaction_lost();

// Part of a transaction that can be undone on its own.  Undone unless kept.
class Savepoint {
  public:
    Savepoint();
    ~Savepoint();
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;
    void keep();

  private:
    bool open_;
    bool version_pending_;  // before it
};

#endif
