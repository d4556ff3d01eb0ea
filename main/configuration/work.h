// The unit of work of whatever moves tables: a transaction, and the version word that all its texts are encrypted
// under.
//
//   Work work;
//   if (!work.begin(tables))      // whose set functions will be called
//       return -1;
//   ...;
//   return work.commit() ? 0 : -1;
//
// Rolled back unless committed.  The word and the texts that it reads never part:
// - The word is the database's, and the record takes it; the record's where the database has none, which is then
//   stored with the first text under it.  Where both have none and there are encrypted texts, it is the default.
// - Where the record has another one, and is about to be stored with it, every encrypted column is stored anew
//   under that one.
// - The word that the first encrypted text creates is stored with that text, or goes with it.
// - A database that is older than the encryption has no word; its texts are clear, and stay so until its step of the
//   patch chain calls start_encryption().
#ifndef CONFIGURATION_WORK_H
#define CONFIGURATION_WORK_H

#include <optional>
#include <span>

#include "catalogue.h"
#include "registry.h"
#include "sec_db_enc.h"

using dbshell::Table;
using TableSpan = std::span<const Table* const>;

class Work {
  public:
    Work() = default;
    ~Work();
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    // True when table functions may be called.  They are called without a database too, and tell so by their own
    // messages and codes; but never outside a transaction of an open one.
    [[nodiscard]] bool begin(TableSpan stores);
    // With an exclusive lock, which six attempts may have to wait for.
    [[nodiscard]] bool begin_exclusive(TableSpan stores);
    [[nodiscard]] bool begin_to_load();
    // The tables will be made anew in an empty database, under the record's word where it has one.
    [[nodiscard]] bool begin_anew(TableSpan stores);

    // After a begin that was false: it was the lock.
    [[nodiscard]] bool is_locked_out() const { return !open_; }
    // The registry number of the table whose texts could not be stored anew, or whose word could not be read; 0.
    [[nodiscard]] int failed_table() const { return failed_table_; }

    // Runs the get function; not of a table whose texts cannot be read for want of the word.
    [[nodiscard]] int load(const TableEntry& entry);
    // Runs the set function so that a failure leaves the table's rows as they were; the work goes on.
    [[nodiscard]] int store_apart(const TableEntry& entry);

    // True when texts are stored in the clear.
    [[nodiscard]] bool stores_clear() const { return VersionInUse::stores_clear(); }
    // Gives the database a word, under which the texts are encrypted that are stored from now on.
    void start_encryption();

    // False: nothing is stored.
    [[nodiscard]] bool commit();

  private:
    bool open_ = false;
    bool stores_version_ = false;  // the table that holds the word is among what is stored
    bool has_version_ = true;      // the database holds a word
    int failed_table_ = 0;
    std::optional<VersionInUse> version_;  // empty: the database's cannot be read

    bool settle(TableSpan stores);
    bool settle_version(TableSpan stores);
    bool renew_texts(uint32_t stored, uint32_t recorded);
    bool store_version();
    bool brings_version() const;
};

#endif
