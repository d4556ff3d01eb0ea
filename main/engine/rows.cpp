#include "rows.h"

#include <sqlite3.h>

#include <algorithm>
#include <limits>

#include "store.h"

namespace dbshell {

Rows::Rows(const Table& t)
    : statement_(prepared(t.save.empty() ? t.load[0] : t.save[0], Purpose::select_all, error_)) {}

Rows::Rows(const Table& t, Index at, int given)
    : statement_(prepared(t.save[0], given > 0 ? Purpose::select_owners : Purpose::select_own, error_, &t)) {
    int parameter = 0;
    for (const KeyColumn& k : t.keys)
        if (error_ == SQLITE_OK && is_scope(t, k, given > 0 ? Purpose::select_owners : Purpose::select_own))
            error_ = sqlite3_bind_int64(statement_, ++parameter, key_value(t.save[0], k, at, t.counts()));
}

Rows::Rows(const Table& t, const Statement& select, Index index) {
    statement_ = prepared(select, Purpose::run, error_);
    if (statement_ == nullptr)
        return;
    values_.read(t, select, nullptr, index, t.counts());
    error_ = values_.bind(statement_);
}

Rows::~Rows() {
    if (statement_ != nullptr)
        sqlite3_reset(statement_);
}

bool Rows::next() {
    if (error_ != SQLITE_OK)
        return false;
    const int rc = sqlite3_step(statement_);
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        error_ = db_report_error();
    return rc == SQLITE_ROW;
}

using Match = Values::Match;

Match Rows::compare(int column, int64_t number) const {
    if (column < 0 || sqlite3_column_type(statement_, column) != SQLITE_INTEGER)
        return Match::unsure;
    return sqlite3_column_int64(statement_, column) == number ? Match::same : Match::different;
}

Match Rows::compare(int column, double number) const {
    if (column < 0 || sqlite3_column_type(statement_, column) != SQLITE_FLOAT)
        return Match::unsure;
    const double stored = sqlite3_column_double(statement_, column);
    return stored == number                     ? Match::same
           : stored < number || stored > number ? Match::different
                                                : Match::unsure;
}

Match Rows::compare(int column, std::string_view wanted) const {
    if (column < 0 || sqlite3_column_type(statement_, column) != SQLITE_TEXT)
        return Match::unsure;
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return bytes != nullptr && std::string_view(bytes, size) == wanted ? Match::same : Match::different;
}

Match Rows::compare_literal(int column, std::string_view literal) const {
    if (literal.size() >= 2 && literal.front() == '\'')
        return compare(column, literal.substr(1, literal.size() - 2));
    return compare(column, number_of(literal));
}

int Rows::column(std::string_view name) const {
    for (const auto& [known, number] : known_)
        if (known.data() == name.data() && known.size() == name.size())
            return number;
    return known_.emplace_back(name, find_column(name)).second;
}

int Rows::find_column(std::string_view name) const {
    const int columns = sqlite3_column_count(statement_);
    for (int i = 0; i < columns; ++i) {
        const char* const other = sqlite3_column_name(statement_, i);
        if (other == nullptr)
            error_ = db_report_error(SQLITE_NOMEM);
        else if (sqlite3_strnicmp(other, name.data(), static_cast<int>(name.size())) == 0 &&
                 other[name.size()] == '\0')
            return i;
    }
    return -1;
}

bool Rows::is_null(int column) const {
    return column < 0 || sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

std::string_view Rows::text(int column) const {
    const bool there = !is_null(column);
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    if (bytes != nullptr)
        return bytes;
    if (there)
        error_ = db_report_error(SQLITE_NOMEM);
    return {};
}

int64_t Rows::number(int column) const {
    switch (sqlite3_column_type(statement_, column)) {
        case SQLITE_INTEGER:
            return sqlite3_column_int64(statement_, column);
        case SQLITE_FLOAT:
            return number_of(sqlite3_column_double(statement_, column));
        default:
            return number_of(text(column));
    }
}

std::optional<int64_t> Rows::key(std::string_view name) const {
    const int i = column(name);
    if (is_null(i))
        return {};
    return std::clamp<int64_t>(number(i), std::numeric_limits<int32_t>::min(),
                               std::numeric_limits<int32_t>::max());
}

void Rows::read(const Table& t, const Statement& s, std::byte* base, Index index) {
    const std::vector<int>& columns = map_of(s);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Slot& slot = s.slots[i];
        if (slot.source != Source::field || s.fields[slot.index].constant)
            continue;
        const Field& field = s.fields[slot.index];
        std::byte* at = base + field_offset(t, s, field, index);
        if (is_null(columns[i])) {
            if (field.kind == Kind::coded && field.codec->absent != nullptr)
                field.codec->absent(at);
        } else if (field.textual()) {
            load_text(field, text(columns[i]), at);
        } else if (is_real(field.kind)) {
            write_real(field.kind, at, sqlite3_column_double(statement_, columns[i]));
        } else {
            set_field_number(field, at, number(columns[i]));
        }
    }
}

int Rows::read_groups(const Table& t, std::byte* base, int filled) {
    const Statement& s = t.save[0];
    const std::vector<int>& columns = map_of(s);
    int more = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Slot& slot = s.slots[i];
        if (slot.source != Source::field || s.fields[slot.index].codec == nullptr)
            continue;
        const Field& field = s.fields[slot.index];
        TextCodec part = *field.codec;
        const int64_t room = t.row_count() * part.groups - filled;
        part.groups = static_cast<uint16_t>(std::clamp<int64_t>(key(t.holds).value_or(0), 0, room));
        more = part.groups;
        if (!is_null(columns[i]))
            part.decode(
                part, text(columns[i]),
                base + field_offset(t, s, field, {}) + static_cast<std::size_t>(filled) * part.group_stride);
    }
    return filled + more;
}

const std::vector<int>& Rows::map_of(const Statement& statement) {
    for (const auto& [known, columns] : maps_)
        if (known == &statement)
            return columns;
    std::vector<int> columns;
    for (const Slot& slot : statement.slots)
        columns.push_back(slot.source == Source::field ? column(statement.column(slot)) : -1);
    return maps_.emplace_back(&statement, std::move(columns)).second;
}

}  // namespace dbshell
