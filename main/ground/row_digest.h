// A digest of what a database file holds: a 32-bit sum over its rows and its schema; and the file's seal, the digest that the
// service stores in its header with every commit.
//
//   const DatabaseImage image = ...;         // the file's bytes, while nobody writes them
//   if (seal_of(image, digest_of(image)) == Seal::rotten)
//       ...;
//
// The sum tells every single row that differs (but for one in 2^32), and a change of a row costs it one subtraction and
// one addition.  Indexes, free pages and the order of the pages are no part of it, nor are rowids that no column shows:
// a vacuum, or a dump and reload, keeps it.
//
// Format of the file: https://www.sqlite.org/fileformat2.html, sections 1.3 (header), 1.5 to 1.6 (pages, overflow), 2.1
// (records), 2.6 (schema).
#ifndef MAIN_ROW_DIGEST_H
#define MAIN_ROW_DIGEST_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

using DatabaseImage = std::span<const std::byte>;

// What the file's first 100 bytes say; zeros of a shorter file.
struct FileHeader {
    uint32_t counter = 0;         // changed by every commit
    uint32_t schema_version = 0;  // changed by every change of the schema
    uint32_t digest = 0;          // user_version
    uint32_t digest_counter = 0;  // application_id: the counter of the commit that stored the digest
    uint32_t counter_again = 0;   // what every commit of SQLite writes beside its version: the counter, too
    bool is_utf8 = true;
    bool is_wal = false;  // commits go to a log first, and do not all change the counter

    // A digest was ever stored.
    [[nodiscard]] bool has_digest() const { return digest != 0 || digest_counter != 0; }
    // Nobody changed the file since, who does not keep the digest.
    [[nodiscard]] bool is_sealed() const {
        return has_digest() && (digest_counter == counter || digest_counter == counter_again);
    }
};
inline constexpr std::size_t kFileHeaderBytes = 100;
FileHeader header_of(DatabaseImage image);

// Empty: the image is no whole database.
[[nodiscard]] std::optional<uint32_t> digest_of(DatabaseImage image);

enum class Seal {
    intact,
    none,     // written by a release that knew no seals
    broken,   // another program wrote the file
    rotten,   // nobody did, and the rows are other ones
    unknown,  // not a whole database, or it could not be read
};
[[nodiscard]] Seal seal_of(DatabaseImage image, std::optional<uint32_t> digest);

// Tables that SQLite keeps for itself have no part in it.
using RowVisitor = std::function<void(std::string_view table, int64_t rowid, uint32_t hash)>;
[[nodiscard]] bool for_each_stored_row(DatabaseImage image, const RowVisitor& visit);

// The hash of one row, from its values in the order of the columns.  NULL is what a row lacks that is older than a
// column, and has no part.  A number is the same whether it is stored as an integer or as a real.
class RowHash {
  public:
    // A table's name as the state to begin with.
    static uint64_t of_table(std::string_view name) {
        RowHash hash(0);
        hash.text(0, name);
        return hash.state_;
    }

    explicit RowHash(uint64_t table) : state_(table) {}

    void integer(int column, int64_t value) { mix(static_cast<uint64_t>(value) ^ tag(column, 1)); }
    void real(int column, double value) {
        constexpr double kExact = 9007199254740992.0;  // 2^53
        if (value >= -kExact && value <= kExact && value == static_cast<double>(static_cast<int64_t>(value)))
            return integer(column, static_cast<int64_t>(value));
        uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        mix(bits ^ tag(column, 2));
    }
    void text(int column, std::string_view value) { bytes(value, tag(column, 3)); }
    void blob(int column, std::string_view value) { bytes(value, tag(column, 4)); }

    // Every bit of a row moves every bit of its hash: the finalizer of SplitMix64 (Steele, Lea, Flood: Fast splittable
    // pseudorandom number generators, 2014).
    [[nodiscard]] uint32_t value() const {
        uint64_t h = state_;
        h = (h ^ h >> 30) * 0xBF58476D1CE4E5B9;
        h = (h ^ h >> 27) * 0x94D049BB133111EB;
        return static_cast<uint32_t>(h ^ h >> 31);
    }

  private:
    uint64_t state_;

    static uint64_t tag(int column, unsigned kind) {
        return (static_cast<uint64_t>(column) * 8 + kind) * 0x9E3779B97F4A7C15;
    }
    // One round of multiply and shift: a bijection of the state for each value, and of the value for each state.
    void mix(uint64_t value) {
        state_ = (state_ ^ value) * 0xBF58476D1CE4E5B9;
        state_ ^= state_ >> 31;
    }
    // Two words at a time, in two chains that do not wait for each other.
    void bytes(std::string_view value, uint64_t tag) {
        mix(value.size() ^ tag);
        uint64_t words[2] = {}, chains[2] = {};
        for (; value.size() >= sizeof words; value.remove_prefix(sizeof words)) {
            std::memcpy(words, value.data(), sizeof words);
            for (const int i : {0, 1}) {
                chains[i] = (chains[i] ^ words[i]) * 0x9E3779B97F4A7C15;
                chains[i] ^= chains[i] >> 29;
            }
        }
        words[0] = words[1] = 0;
        std::memcpy(words, value.data(), value.size());
        for (const int i : {0, 1})
            mix(chains[i] ^ words[i]);
    }
};

#endif
