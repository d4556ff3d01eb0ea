#include "row_digest.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kReadVersionAt = 19, kCounterAgainAt = 92, kCounterAt = 24, kSchemaVersionAt = 40,
                      kEncodingAt = 56, kDigestAt = 60, kDigestCounterAt = 68;
constexpr uint32_t kUtf8 = 1, kEncodingBits = 3;  // SQLite looks at no other bits
constexpr int kMostDepth = 20;                    // as SQLite's own limit of a tree

uint32_t number_at(DatabaseImage bytes, std::size_t at, std::size_t width) {
    uint32_t number = 0;
    for (std::size_t i = 0; i < width; ++i)
        number = number << 8 | std::to_integer<uint32_t>(bytes[at + i]);
    return number;
}

// Reads a variable-length integer and removes it; false where the bytes end within it.
inline bool take_varint(DatabaseImage& bytes, uint64_t& value) {
    value = 0;
    for (std::size_t i = 0; i < std::min<std::size_t>(bytes.size(), 9); ++i) {
        const auto byte = std::to_integer<uint64_t>(bytes[i]);
        value = i == 8 ? value << 8 | byte : value << 7 | (byte & 0x7F);
        if (i == 8 || byte < 0x80) {
            bytes = bytes.subspan(i + 1);
            return true;
        }
    }
    return false;
}

std::string_view text_of(DatabaseImage bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Signed, most significant byte first, of the widths that a record has; `type` is the value where it takes no byte.  All in one
// load, which may begin before the value: at least eight bytes stand before a record's end.
int64_t integer_of(uint64_t type, DatabaseImage bytes) {
    uint64_t word = 0;
    std::memcpy(&word, bytes.data() + bytes.size() - sizeof word, sizeof word);
    if constexpr (std::endian::native == std::endian::little)
        word = __builtin_bswap64(word);
    const unsigned unused = static_cast<unsigned>(sizeof word - bytes.size()) * 8 % 64;
    const auto value = static_cast<int64_t>(word << unused) >> unused;
    return type >= 8 ? static_cast<int64_t>(type - 8) : value;
}

// A value's bytes by its serial type; SIZE_MAX: there is no such type.
std::size_t width_of(uint64_t type) {
    static constexpr std::array<std::size_t, 12> kWidths = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0, SIZE_MAX, SIZE_MAX};
    return type < kWidths.size() ? kWidths[type] : (type - 12) / 2;
}

// Calls `visit` with each column, serial type and bytes; false when the record is malformed.
template <class Visit>
inline bool for_each_value(DatabaseImage record, Visit visit) {
    DatabaseImage header = record;
    uint64_t header_size = 0, type = 0;
    if (!take_varint(header, header_size) || header_size > record.size() ||
        header_size < record.size() - header.size())
        return false;
    header = header.first(header_size - (record.size() - header.size()));
    DatabaseImage body = record.subspan(header_size);
    for (int column = 0; !header.empty(); ++column) {
        type = std::to_integer<uint64_t>(header[0]);  // most take one byte
        if (type < 0x80)
            header = header.subspan(1);
        else if (!take_varint(header, type))
            return false;
        const std::size_t width = width_of(type);
        if (width > body.size())
            return false;
        visit(column, type, body.first(width));
        body = body.subspan(width);
    }
    return true;
}

void add_value(RowHash& hash, int column, uint64_t type, DatabaseImage bytes) {
    if (type == 0)
        return;
    if (type == 7)
        hash.real(column, std::bit_cast<double>(integer_of(type, bytes)));
    else if (type >= 12)
        type % 2 == 0 ? hash.blob(column, text_of(bytes)) : hash.text(column, text_of(bytes));
    else
        hash.integer(column, integer_of(type, bytes));
}

// The column of a CREATE TABLE text that shows the rowid: declared "INTEGER PRIMARY KEY", by itself or by the table's
// last item; records hold NULL there.  -1: there is none.
int rowid_column(std::string_view sql) {
    const auto is = [](std::string_view a, std::string_view b) {
        return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
    };
    std::vector<std::string_view> integers;  // the names of the columns of this type; empty for others
    std::array<std::string_view, 5> words;   // the first of an item
    std::size_t count = 0, start = 0;
    int depth = 0;
    for (std::size_t i = std::min(sql.find('('), sql.size()); i < sql.size(); ++i) {
        const char c = sql[i];
        if (std::string_view("(), \n\t\r").find(c) == std::string_view::npos)
            continue;
        if (depth > 0 && i > start && count < words.size())
            words[count++] = sql.substr(start, i - start);
        start = i + 1;
        const bool ends = depth == 1 && (c == ',' || c == ')');
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (!ends)
            continue;
        const std::span<const std::string_view> item(words.data(), count);
        if (count >= 4 && is(item[1], "integer") && is(item[2], "primary") && is(item[3], "key") &&
            !(count > 4 && is(item[4], "desc")))
            return static_cast<int>(integers.size());
        if (count == 3 && is(item[0], "primary") && is(item[1], "key")) {
            const auto found = std::find_if(integers.begin(), integers.end(),
                                            [&](std::string_view name) { return is(name, item[2]); });
            return found == integers.end() ? -1 : static_cast<int>(found - integers.begin());
        }
        integers.push_back(count >= 2 && is(item[1], "integer") ? item[0] : "");
        count = 0;
    }
    return -1;
}

class Walk {
  public:
    explicit Walk(DatabaseImage image) : image_(image) {
        if (image.size() < kFileHeaderBytes)
            return;
        page_size_ = number_at(image, 16, 2);
        if (page_size_ == 1)
            page_size_ = 65536;
        const std::size_t reserved = number_at(image, 20, 1);
        if (page_size_ < 512)
            page_size_ = 0;
        usable_ = page_size_ - std::min(reserved, page_size_);
        if (usable_ < 480)
            page_size_ = 0;
    }

    [[nodiscard]] bool is_database() const { return page_size_ != 0; }

    // Calls `visit` with each rowid and record of a table's tree; false when it is malformed.
    template <class Visit>
    bool rows(uint32_t root, Visit visit) {
        pages_left_ = image_.size() / page_size_;
        return tree(root, visit, kMostDepth);
    }

  private:
    DatabaseImage image_;
    std::size_t page_size_ = 0, usable_ = 0, pages_left_ = 0;
    static constexpr std::size_t kBefore = 8;  // as integer_of needs them
    std::vector<std::byte> assembled_;

    // Empty: there is no such page.
    [[nodiscard]] DatabaseImage page(uint32_t number) const {
        const std::size_t start = (static_cast<std::size_t>(number) - 1) * page_size_;
        return number == 0 || start + page_size_ > image_.size() ? DatabaseImage()
                                                                 : image_.subspan(start, usable_);
    }

    template <class Visit>
    bool tree(uint32_t number, Visit& visit, int depth) {
        enum : uint32_t { kIndexInterior = 2, kInterior = 5, kIndexLeaf = 10, kLeaf = 13 };
        const DatabaseImage bytes = page(number);
        if (bytes.empty() || depth == 0 || pages_left_-- == 0)
            return false;
        const std::size_t header = number == 1 ? kFileHeaderBytes : 0;
        const uint32_t type = number_at(bytes, header, 1), cells = number_at(bytes, header + 3, 2);
        if (type == kIndexInterior || type == kIndexLeaf)
            return true;  // a table without rowids
        if (type != kInterior && type != kLeaf)
            return false;
        const std::size_t pointers = header + (type == kLeaf ? 8 : 12);
        if (pointers + 2 * cells > bytes.size())
            return false;
        for (std::size_t i = 0; i < cells; ++i) {
            const std::size_t at = number_at(bytes, pointers + 2 * i, 2);
            if (at < pointers || at + 4 > bytes.size())
                return false;
            if (!(type == kLeaf ? cell(bytes.subspan(at), visit)
                                : tree(number_at(bytes, at, 4), visit, depth - 1)))
                return false;
        }
        return type == kLeaf || tree(number_at(bytes, header + 8, 4), visit, depth - 1);
    }

    template <class Visit>
    bool cell(DatabaseImage bytes, Visit& visit) {
        uint64_t size = 0, rowid = 0;
        if (!take_varint(bytes, size) || !take_varint(bytes, rowid) || size > image_.size())
            return false;
        if (size > usable_ - 35) {
            const std::size_t least = (usable_ - 12) * 32 / 255 - 23,
                              wanted = least + (size - least) % (usable_ - 4),
                              local = wanted <= usable_ - 35 ? wanted : least;
            if (!assemble(bytes, local, size))
                return false;
            bytes = DatabaseImage(assembled_).subspan(kBefore);
        }
        return size <= bytes.size() && visit(static_cast<int64_t>(rowid), bytes.first(size));
    }

    // The first bytes of a record lie in its cell, the others in a chain of pages.
    bool assemble(DatabaseImage bytes, std::size_t local, std::size_t size) {
        if (local + 4 > bytes.size())
            return false;
        assembled_.assign(kBefore, {});
        assembled_.insert(assembled_.end(), bytes.begin(),
                          bytes.begin() + static_cast<std::ptrdiff_t>(local));
        uint32_t next = number_at(bytes, local, 4);
        while (assembled_.size() < size + kBefore) {
            const DatabaseImage overflow = page(next);
            if (overflow.empty())
                return false;
            const DatabaseImage part =
                overflow.subspan(4, std::min(usable_ - 4, size + kBefore - assembled_.size()));
            assembled_.insert(assembled_.end(), part.begin(), part.end());
            next = number_at(overflow, 0, 4);
        }
        return true;
    }
};

struct StoredTable {
    std::string name;
    uint32_t root;
    int rowid_column;
};

// The tables, and a hash of each entry of the schema, which `visit` gets; where a tree lies is no part of it.
template <class Visit>
bool read_schema(Walk& walk, std::vector<StoredTable>& tables, Visit& visit) {
    const uint64_t seed = RowHash::of_table("sqlite_master");
    return walk.rows(1, [&](int64_t rowid, DatabaseImage record) {
        enum { kType, kName, kTable, kRoot, kSql, kColumns };
        std::array<DatabaseImage, kColumns> values;
        int64_t root = 0;
        RowHash hash(seed);
        const bool whole = for_each_value(record, [&](int column, uint64_t type, DatabaseImage bytes) {
            if (column < kColumns)
                values[static_cast<std::size_t>(column)] = bytes;
            if (column != kRoot)
                add_value(hash, column, type, bytes);
            else if (type > 0 && type < 10 && type != 7)
                root = integer_of(type, bytes);
        });
        if (!whole)
            return false;
        visit("sqlite_master", rowid, hash.value());
        const std::string_view name = text_of(values[kName]);
        if (text_of(values[kType]) == "table" && !name.starts_with("sqlite_"))
            tables.push_back(
                {std::string(name), static_cast<uint32_t>(root), rowid_column(text_of(values[kSql]))});
        return true;
    });
}

template <class Visit>
bool for_each_row(DatabaseImage image, Visit visit) {
    Walk walk(image);
    std::vector<StoredTable> tables;
    if (!walk.is_database() || !read_schema(walk, tables, visit))
        return false;
    for (const StoredTable& table : tables) {
        const uint64_t seed = RowHash::of_table(table.name);
        const bool whole = table.root == 0 || walk.rows(table.root, [&](int64_t rowid, DatabaseImage record) {
            RowHash hash(seed);
            const bool read = for_each_value(record, [&](int column, uint64_t type, DatabaseImage bytes) {
                if (column == table.rowid_column && type == 0)
                    hash.integer(column, rowid);
                else
                    add_value(hash, column, type, bytes);
            });
            visit(table.name, rowid, hash.value());
            return read;
        });
        if (!whole)
            return false;
    }
    return true;
}

}  // namespace

FileHeader header_of(DatabaseImage image) {
    if (image.size() < kFileHeaderBytes)
        return {};
    return {.counter = number_at(image, kCounterAt, 4),
            .schema_version = number_at(image, kSchemaVersionAt, 4),
            .digest = number_at(image, kDigestAt, 4),
            .digest_counter = number_at(image, kDigestCounterAt, 4),
            .counter_again = number_at(image, kCounterAgainAt, 4),
            .is_utf8 = (number_at(image, kEncodingAt, 4) & kEncodingBits) <= kUtf8,
            .is_wal = number_at(image, kReadVersionAt, 1) == 2};
}

bool for_each_stored_row(DatabaseImage image, const RowVisitor& visit) {
    return for_each_row(image, std::ref(visit));
}

std::optional<uint32_t> digest_of(DatabaseImage image) {
    // Texts that are read otherwise are others.
    uint32_t sum = header_of(image).is_utf8 ? 0 : 1;
    if (!for_each_row(image, [&](std::string_view, int64_t, uint32_t hash) { sum += hash; }))
        return {};
    return sum;
}

Seal seal_of(DatabaseImage image, std::optional<uint32_t> digest) {
    const FileHeader header = header_of(image);
    return !digest                    ? Seal::unknown
           : !header.has_digest()     ? Seal::none
           : !header.is_sealed()      ? Seal::broken
           : header.digest == *digest ? Seal::intact
                                      : Seal::rotten;
}
