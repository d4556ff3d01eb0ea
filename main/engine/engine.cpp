#include "engine.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "catalogue.h"
#include "log.h"
#include "sec_db_enc.h"
#include "state.h"
#include "store.h"

namespace {

constexpr const char* kSourceFile = "main/dbshell.c";

// ------------------------------------------------------------------------------------- executable texts

// A piece of the text with every conversion as a numbered parameter; they are numbered through the whole
// text.
std::string parametrised(const SqlText& sql, std::string_view piece) {
    std::string out;
    const char* from = piece.data();
    const char* const end = piece.data() + piece.size();
    int parameter = 0;
    for (std::size_t i = 0; i < sql.slots; ++i) {
        const Slot& s = sql.slot[i];
        if (s.conversion.kind == 0)
            continue;
        ++parameter;
        if (s.value.data() < from || s.value.data() >= end)
            continue;
        out.append(from, s.value.data());
        out += '?' + std::to_string(parameter);
        from = s.value.data() + s.value.size();
    }
    return out.append(from, end);
}

std::string parametrised(const SqlText& sql) {
    return parametrised(sql, sql.text);
}

// Each stored column against its value, as conditions.
std::string conditions(const SqlText& sql, const char* comparison, const char* joint) {
    std::string out;
    int parameter = 0;
    for (std::size_t i = 0; i < sql.slots; ++i) {
        const Slot& s = sql.slot[i];
        parameter += s.conversion.kind != 0;
        if (s.where)
            continue;
        if (!out.empty())
            out += joint;
        out.append(s.column).append(comparison);
        if (s.conversion.kind != 0)
            out += '?' + std::to_string(parameter);
        else
            out += s.value;
    }
    return out;
}

bool stores(const Statement& statement) {
    return statement.verb == Verb::update || statement.verb == Verb::replace;
}

// Asks whether a storing statement would change anything: 1 or 0.  SQLite compares with the columns'
// affinity, so what it compares is what it would store.
std::string change_query(const SqlText& sql) {
    const std::string rows = "exists (select 1 from " + std::string(sql.table) + " ";
    if (sql.verb == Verb::replace)
        return "select not " + rows + "where " + conditions(sql, " = ", " and ") + ")";
    return "select " + rows +
           (sql.where_clause.empty() ? "where (" : parametrised(sql, sql.where_clause) + " and (") +
           conditions(sql, " is not ", " or ") + "))";
}

sqlite3_stmt* prepared_statement(const Statement& statement) {
    sqlite3_stmt* s = db_prepared(&statement);
    return s != nullptr ? s : db_prepare(&statement, parametrised(SqlText(statement.text)));
}

// Found by the address of the statement's text, as the statement itself is by its own.
sqlite3_stmt* prepared_change_query(const Statement& statement) {
    sqlite3_stmt* s = db_prepared(statement.text.data());
    return s != nullptr ? s : db_prepare(statement.text.data(), change_query(SqlText(statement.text)));
}

// "delete from TABLE ..." for the rows that "select count(*) from TABLE ..." counts.
std::string delete_text(const Statement& count) {
    return "delete" + std::string(count.text.substr(count.text.find(" from ")));
}

// ------------------------------------------------------------------------------------- values

const std::byte* address_of(const Field& field, const std::byte* row, RowIndex index) {
    if (!field.absolute)
        return row + field.offset;
    return reinterpret_cast<const std::byte*>(get_cfg_param()) + field.offset +
           static_cast<std::size_t>(index.outer) * field.stride +
           static_cast<std::size_t>(index.inner) * field.inner_stride;
}

// The characters of a fixed-size array up to its end or its first NUL, read once.
std::string text_of(const std::byte* at, std::size_t size) {
    std::string copy(reinterpret_cast<const char*>(at), size);
    copy.resize(strnlen(copy.data(), size));
    return copy;
}

// The text that a field is stored as.
std::string stored_text(const Field& field, const std::byte* at) {
    std::string text;
    if (field.kind == Kind::coded)
        field.codec->encode(*field.codec, at, text);
    else
        text = text_of(at, field.size);
    if (field.encrypted == 0)
        return text;
    std::string output(field.encrypted, '\0');
    db_encrypt(text.c_str(), output.data(), static_cast<int>(text.size()), field.encrypted);
    output.resize(strnlen(output.data(), output.size()));
    return output;
}

// The value that a conversion would print, as a number.
int64_t stored_number(const Conversion& conversion, int64_t number) {
    switch (conversion.kind) {
        case 'd':
            return static_cast<int32_t>(number);
        case 'u':
            return static_cast<uint32_t>(number);
        default:
            return number;
    }
}

int64_t field_number(const Field& field, const std::byte* row, RowIndex index) {
    return field.constant ? field.value : read_number(field.kind, address_of(field, row, index));
}

struct Value {
    bool is_text = false;
    int64_t number = 0;
    std::string text;
};

// The values of a statement's parameters, each read once: another process may write the record meanwhile.
std::vector<Value> values_of(const Statement& statement, const std::byte* row, RowIndex index) {
    std::vector<Value> values(statement.params.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Param& p = statement.params[i];
        const Field* field = p.is_key ? nullptr : &statement.fields[p.index];
        Value& v = values[i];
        v.is_text = p.conversion.quoted;
        if (field != nullptr && field->textual()) {
            v.text = stored_text(*field, address_of(*field, row, index));
            continue;
        }
        v.number = stored_number(p.conversion, field == nullptr ? index.key(statement.keys[p.index])
                                                                : field_number(*field, row, index));
        if (v.is_text)
            v.text = std::to_string(v.number);
    }
    return values;
}

// The values must live until the statement is reset.
int bind(sqlite3_stmt* s, const std::vector<Value>& values) {
    int position = 0;
    for (const Value& v : values) {
        ++position;
        const int rc = v.is_text ? sqlite3_bind_text(s, position, v.text.data(),
                                                     static_cast<int>(v.text.size()), SQLITE_STATIC)
                                 : sqlite3_bind_int64(s, position, v.number);
        if (rc != SQLITE_OK)
            return rc;
    }
    return SQLITE_OK;
}

// Runs a statement to its first row.  0 or SQLite's code, which is logged; the row's first column.
int run(sqlite3_stmt* s, const std::vector<Value>& values, int* column = nullptr) {
    if (s == nullptr)
        return SQLITE_ERROR;
    int rc = bind(s, values);
    if (rc == SQLITE_OK)
        rc = sqlite3_step(s);
    if (rc == SQLITE_ROW && column != nullptr)
        *column = sqlite3_column_int(s, 0);
    rc = rc == SQLITE_DONE || rc == SQLITE_ROW ? SQLITE_OK : db_report_error();
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
    return rc;
}

// Stores a column's text in a field.
void load_text(const Field& field, std::string_view text, std::byte* at) {
    std::string clear;
    if (field.encrypted != 0) {
        // As large as the longest clear text; the field or its list takes what it has room for.
        clear.resize(kMaxStoredText + 1);
        db_decrypt(text.data(), clear.data(), static_cast<int>(text.size()), static_cast<int>(clear.size()));
        clear.resize(strnlen(clear.data(), clear.size()));
        text = clear;
    }
    if (field.kind == Kind::coded)
        return field.codec->decode(*field.codec, text, at);
    const auto length = std::min<std::size_t>(text.size(), field.size);
    std::memcpy(at, text.data(), length);
    std::memset(at + length, 0, field.size - length);
}

// ------------------------------------------------------------------------------------- tables

// The messages that a shape brings where a table has none of its own.
const char* save_key_message(const Table& t) {
    if (t.says.save_key != nullptr)
        return t.says.save_key;
    return t.layout.owner == Owner::sensor ? "Invalid sensor_no-%d\n" : "invalid chan_no: %d\n";
}

const char* load_key_message(const Table& t) {
    if (t.says.load_key != nullptr)
        return t.says.load_key;
    return t.layout.owner == Owner::sensor ? "invalid sensor_no: %d\n" : "invalid chan_no: %d\n";
}

std::string wrapper_message(const Table& t) {
    if (t.says.wrapper != nullptr)
        return t.says.wrapper;
    return std::string(t.single) +
           (t.layout.owner == Owner::sensor ? " failed for sensor_no: %d\n" : " error for chan_no: %d\n");
}

// How many outer indexes the table has now.
int outer_count(const Table& t) {
    return t.layout.owner == Owner::channel ? std::min<int>(channel_count(), t.layout.outer_count)
                                            : t.layout.outer_count;
}

const KeyColumn* key_of(const Table& t, Dim dim) {
    const auto found =
        std::find_if(t.keys.begin(), t.keys.end(), [&](const KeyColumn& k) { return k.dim == dim; });
    return found == t.keys.end() ? nullptr : &*found;
}

int write_rows(const Table& t, std::string_view function, int outer) {
    if (!t.count.empty())
        if (const Result r = ensure_rows(t, function, {outer}); r != kDone)
            return result_of(t, r);
    int rows = t.row_count();
    if (t.device_rows != nullptr) {
        if (!t.device_rows(&rows))
            return result_of(t, kQueryFailed);
        rows = std::clamp(rows, 0, t.row_count());
    }
    for (int inner = 0; inner < rows; ++inner) {
        for (const Statement& s : t.save) {
            if (!s.serves(inner))
                continue;
            const RowIndex index{outer, inner};
            const std::byte* row = row_at(t, s, index);
            if (const int rc = execute(s, row, index); rc != SQLITE_OK) {
                log_table(function, t.says.write, rc, rendered(s, row, index));
                return result_of(t, kWriteFailed);
            }
        }
    }
    return kDone;
}

// The index of the current row from its key columns; empty when it is out of range, which is logged.  A
// row that does not tell its outer key, as in older schemas, belongs to `outer`.
std::optional<RowIndex> index_of(const Table& t, const Rows& rows, int outer) {
    RowIndex index{outer};
    if (const KeyColumn* k = key_of(t, Dim::outer)) {
        const int64_t i = rows.key(k->name, outer + k->bias) - k->bias;
        if (i < 0 || i >= outer_count(t)) {
            log_table(t.get, load_key_message(t), i);
            return {};
        }
        index.outer = static_cast<int>(i);
    }
    if (const KeyColumn* k = key_of(t, Dim::inner)) {
        const int64_t key = rows.key(k->name, 0);
        const int64_t i = key - k->bias;
        if (i < 0 || i >= t.row_count()) {
            if (t.says.load_row != nullptr)
                // A row's own type is told as it stands, a row's number as an index.
                log_table(t.get, t.says.load_row, k->name == "idx" || k->bias == 0 ? i : key);
            return {};
        }
        index.inner = static_cast<int>(i);
    }
    return index;
}

// Loads the rows that one query gives.
int read_rows(const Table& t, Rows&& rows, int outer) {
    int count = 0;
    // Without a key of its own the table is one row.
    const bool keyed = key_of(t, Dim::outer) != nullptr || key_of(t, Dim::inner) != nullptr;
    const int limit = keyed ? t.load_limit : 1;
    while ((limit == 0 || count < limit) && rows.next()) {
        ++count;
        const auto index = index_of(t, rows, outer);
        if (!index) {
            if (t.bad_key_ends_load)
                return result_of(t, kBadKey);
            continue;
        }
        for (const Statement& s : t.save)
            if (s.serves(index->inner))
                rows.read(s, row_at(t, s, *index), *index);
    }
    if (rows.error() != SQLITE_OK) {
        log_table(t.get, t.says.open, rows.error());
        return result_of(t, kQueryFailed);
    }
    if (count == 0 && t.says.empty != nullptr)
        log_table(t.get, t.says.empty);
    return kDone;
}

// A record that was wiped has lost the version word under which the database's texts are encrypted; they
// are read and written under the word that is stored beside them, and never under a new one.
void recover_encryption_version(const Table& t) {
    const auto encrypts = [](const Statement& s) {
        return std::any_of(s.fields.begin(), s.fields.end(), [](const Field& f) { return f.encrypted != 0; });
    };
    if (get_db_enc_version() != 0 || std::none_of(t.save.begin(), t.save.end(), encrypts))
        return;
    Rows rows(*table_by_number(kEncryptionVersionTable));
    if (rows.next() && !rows.is_null(rows.column("db_enc_version")))
        set_db_enc_version(static_cast<uint32_t>(rows.number(rows.column("db_enc_version"))));
}

int read_table(const Table& t) {
    if (t.load.empty())
        return read_rows(t, Rows(t), 0);
    const bool per_key = !t.load[0].params.empty();
    for (int outer = 0; outer < (per_key ? outer_count(t) : 1); ++outer)
        if (const int rc = read_rows(t, Rows(t.load[0], {outer}), outer); rc != kDone)
            return rc;
    return kDone;
}

}  // namespace

// ------------------------------------------------------------------------------------- whole tables

int load_table(const Table& t) {
    if (const Result r = ready(t.get); r != kDone)
        return result_of(t, r);
    recover_encryption_version(t);
    const int rc = t.load_body != nullptr ? t.load_body(t) : read_table(t);
    return rc == kDone && t.also_load != nullptr ? t.also_load(t) : rc;
}

int save_table(const Table& t) {
    if (t.layout.owner == Owner::none)
        return save_table_single(t, 0);
    for (int outer = 0; outer < outer_count(t); ++outer) {
        if (const int rc = save_table_single(t, outer); rc != kDone) {
            if (!t.single.empty())
                log_table(t.set, wrapper_message(t).c_str(), outer);
            return rc;
        }
    }
    return kDone;
}

int save_table_single(const Table& t, int outer) {
    const std::string_view function = t.single.empty() ? t.set : t.single;
    if (outer < 0 || outer >= outer_count(t)) {
        log_table(function, save_key_message(t), outer);
        return result_of(t, kBadKey);
    }
    if (const Result r = ready(function); r != kDone)
        return result_of(t, r);
    recover_encryption_version(t);
    const int rc = t.save_body != nullptr ? t.save_body(t, outer) : write_rows(t, function, outer);
    return rc == kDone && t.also_save != nullptr ? t.also_save(t, outer) : rc;
}

std::optional<int> call_table_function(std::string_view name, int outer) {
    const NamedFunction f = find_function(name);
    switch (f.role) {
        case NamedFunction::Role::get:
            return load_table(*f.table);
        case NamedFunction::Role::set:
            return save_table(*f.table);
        case NamedFunction::Role::single:
            return save_table_single(*f.table, outer);
        case NamedFunction::Role::none:
            break;
    }
    return {};
}

// ------------------------------------------------------------------------------------- for odd tables

int result_of(const Table& table, Result result) {
    const bool access = result == kNoHandle || result == kNoRecord;
    return result == kDone || table.graded || (table.graded_access && access) ? result : -1;
}

void log_table(std::string_view function, const char* message, int64_t number, const std::string& text,
               int level) {
    std::string line;
    for (const char* c = message; *c != '\0'; ++c) {
        if (c[0] == '%' && (c[1] == 'd' || c[1] == 's')) {
            line += c[1] == 'd' ? std::to_string(number) : text;
            ++c;
        } else {
            line += *c;
        }
    }
    DB_LOG_AS(level, std::string(function).c_str(), "%s", line.c_str());
}

Result ready(std::string_view function) {
    if (get_cfg_param() == nullptr) {
        log_table(function, "get_cfg_param err\n");
        return kNoRecord;
    }
    if (get_db_handle() == nullptr) {
        log_table(function, " get_db_handle err\n");
        return kNoHandle;
    }
    return kDone;
}

int execute(const Statement& statement, const std::byte* row, RowIndex index) {
    const std::vector<Value> values = values_of(statement, row, index);
    int changes = 1;
    if (stores(statement))
        if (const int rc = run(prepared_change_query(statement), values, &changes); rc != SQLITE_OK)
            return rc;
    return changes != 0 ? run(prepared_statement(statement), values) : SQLITE_OK;
}

int count_rows(const Statement& statement, RowIndex index, int64_t& count) {
    Rows rows(statement, index);
    if (!rows.next())
        return rows.error() != SQLITE_OK ? rows.error() : SQLITE_ERROR;
    count = rows.number(0);
    return SQLITE_OK;
}

Result ensure_rows(const Table& t, std::string_view function, RowIndex index) {
    int64_t count = 0;
    if (const int rc = count_rows(t.count[0], index, count); rc != SQLITE_OK) {
        log_table(function, t.says.count, rc);
        return kQueryFailed;
    }
    // An update that names no row sets the key of every row: only one may be there.
    const bool one_only = !t.top_up && !t.save.empty() && SqlText(t.save[0].text).where_clause.empty();
    if (count >= t.row_count() && !(one_only && count > 1))
        return kDone;
    if (count > 0 && !t.top_up) {
        const std::string text = delete_text(t.count[0]);
        Statement remove = t.count[0];
        remove.text = text;
        sqlite3_stmt* s = nullptr;
        const std::string sql = parametrised(SqlText(text));
        int rc = sqlite3_prepare_v2(get_db_handle(), sql.c_str(), static_cast<int>(sql.size()), &s, nullptr);
        if (rc == SQLITE_OK)
            rc = bind(s, values_of(remove, nullptr, index));
        if (rc == SQLITE_OK)
            rc = sqlite3_step(s) == SQLITE_DONE ? SQLITE_OK : db_report_error();
        sqlite3_finalize(s);
        if (rc != SQLITE_OK) {
            log_table(function,
                      t.says.remove != nullptr ? t.says.remove
                                               : ("delete " + std::string(t.name) + " err \n").c_str(),
                      rc);
            return kDeleteFailed;
        }
        count = 0;
    }
    for (int inner = static_cast<int>(count); inner < t.row_count(); ++inner) {
        for (const Statement& s : t.fill) {
            if (!s.serves(inner))
                continue;
            RowIndex row = index;
            row.inner = inner;
            if (const int rc = execute(s, nullptr, row); rc != SQLITE_OK) {
                log_table(function,
                          t.says.insert != nullptr
                              ? t.says.insert
                              : ("insert into " + std::string(t.name) + " err \n").c_str(),
                          rc, rendered(s, nullptr, row));
                return kInsertFailed;
            }
        }
    }
    return kDone;
}

namespace {

// A character of a value as a log line shows it: quotes as SQL doubles them, no control byte as it is.
void append_shown(std::string& out, char c) {
    constexpr char kDigits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F)
        out.append("\\x").append(1, kDigits[byte / 16]).append(1, kDigits[byte % 16]);
    else
        out.append(c == '\'' ? 2 : 1, c);
}

}  // namespace

std::string rendered(const Statement& statement, const std::byte* row, RowIndex index) {
    const SqlText sql(statement.text);
    std::string out;
    const char* from = sql.text.data();
    std::size_t n = 0;
    for (std::size_t i = 0; i < sql.slots; ++i) {
        const Slot& s = sql.slot[i];
        if (s.conversion.kind == 0)
            continue;
        out.append(from, s.value.data());
        from = s.value.data() + s.value.size();
        const Param& p = statement.params[n++];
        const Field* field = p.is_key ? nullptr : &statement.fields[p.index];
        if (s.conversion.quoted)
            out += '\'';
        if (field != nullptr && field->secret()) {
            out += "***";
        } else if (field != nullptr && field->textual()) {
            for (const char c : stored_text(*field, address_of(*field, row, index)))
                append_shown(out, c);
        } else {
            out += std::to_string(stored_number(p.conversion, field == nullptr
                                                                  ? index.key(statement.keys[p.index])
                                                                  : field_number(*field, row, index)));
        }
        if (s.conversion.quoted)
            out += '\'';
    }
    out.append(from, sql.text.data() + sql.text.size());
    return out;
}

std::byte* row_at(const Table& t, const Statement& s, RowIndex index) {
    return reinterpret_cast<std::byte*>(get_cfg_param()) + t.layout.base +
           static_cast<std::size_t>(index.outer) * t.layout.outer_stride +
           static_cast<std::size_t>(index.inner + 1 - s.origin) * s.stride;
}

Rows::Rows(const Table& table) {
    statement_ = db_prepared(&table);
    if (statement_ == nullptr)
        statement_ = db_prepare(&table, "select * from " + std::string(table.name));
    if (statement_ == nullptr)
        error_ = SQLITE_ERROR;
}

Rows::Rows(const Statement& statement, RowIndex index) {
    statement_ = prepared_statement(statement);
    error_ = statement_ == nullptr ? SQLITE_ERROR : bind(statement_, values_of(statement, nullptr, index));
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

int Rows::column(std::string_view name) const {
    const int columns = sqlite3_column_count(statement_);
    for (int i = 0; i < columns; ++i)
        if (sqlite3_strnicmp(sqlite3_column_name(statement_, i), name.data(),
                             static_cast<int>(name.size())) == 0 &&
            sqlite3_column_name(statement_, i)[name.size()] == '\0')
            return i;
    return -1;
}

bool Rows::is_null(int column) const {
    return column < 0 || sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

std::string_view Rows::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return bytes != nullptr ? std::string_view(bytes) : std::string_view();
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

int64_t Rows::key(std::string_view name, int64_t missing) const {
    const int i = column(name);
    if (is_null(i))
        return missing;
    return std::clamp<int64_t>(number(i), std::numeric_limits<int32_t>::min(),
                               std::numeric_limits<int32_t>::max());
}

void Rows::read(const Statement& statement, std::byte* row, RowIndex index) {
    const std::vector<int>& columns = map_of(statement);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Param& p = statement.params[i];
        if (p.is_key)
            continue;
        const Field& field = statement.fields[p.index];
        if (field.constant)
            continue;
        auto* at = const_cast<std::byte*>(address_of(field, row, index));
        if (is_null(columns[i])) {
            if (field.kind == Kind::coded && field.codec->absent != nullptr)
                field.codec->absent(at);
        } else if (field.textual()) {
            load_text(field, text(columns[i]), at);
        } else {
            write_number(field.kind, at, number(columns[i]));
        }
    }
}

const std::vector<int>& Rows::map_of(const Statement& statement) {
    for (const auto& [known, columns] : maps_)
        if (known == &statement)
            return columns;
    std::vector<int> columns;
    const SqlText sql(statement.text);
    for (std::size_t i = 0; i < sql.slots; ++i)
        if (sql.slot[i].conversion.kind != 0)
            columns.push_back(column(sql.slot[i].column));
    return maps_.emplace_back(&statement, std::move(columns)).second;
}
