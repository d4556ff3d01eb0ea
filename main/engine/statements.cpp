#include "statements.h"

#include <sqlite3.h>

#include <functional>

#include "store.h"

namespace dbshell {

namespace {

// The text from one place to another, with every conversion as a numbered parameter; they are numbered through the
// whole text.
std::string parametrised(const Statement& s, std::size_t from, std::size_t end) {
    std::string out;
    int parameter = 0;
    for (const Slot& slot : s.slots) {
        if (!slot.bound())
            continue;
        ++parameter;
        if (slot.value_at < from || slot.value_at >= end)
            continue;
        out.append(s.text, from, slot.value_at - from);
        out += '?' + std::to_string(parameter);
        from = slot.value_at + std::size_t{slot.value_size};
    }
    return out.append(s.text, from, end - from);
}

// Each stored column against its value, as conditions.
std::string conditions(const Statement& s, const char* comparison, const char* joint) {
    std::string out;
    int parameter = 0;
    for (const Slot& slot : s.slots) {
        parameter += slot.bound() ? 1 : 0;
        if (slot.role != SlotRole::stored)
            continue;
        if (!out.empty())
            out += joint;
        out.append(s.column(slot)).append(comparison);
        if (slot.bound())
            out += '?' + std::to_string(parameter);
        else
            out += s.value(slot);
    }
    return out;
}

// The rows that a statement names, from "from" on.
std::string rows_named(const Statement& s) {
    const std::size_t where = s.has_condition() ? s.text.find(" where ") : std::string_view::npos;
    return " from " + std::string(s.table) +
           (where == std::string_view::npos ? "" : parametrised(s, where, s.text.size() - 1));
}

// SQLite compares with the columns' affinity, so what it compares is what it would store.
std::string question(const Statement& s) {
    if (s.verb == Verb::replace)
        return "select 1 from " + std::string(s.table) + " where " + conditions(s, " = ", " and ");
    return "select " + conditions(s, " is not ", " or ") + rows_named(s);
}

std::string rows_of(const Statement& s, const Table* scoped, Purpose purpose) {
    std::string out = " from " + std::string(s.table);
    if (scoped == nullptr)
        return out;
    int parameter = 0;
    for (const KeyColumn& k : scoped->keys)
        if (is_scope(*scoped, k, purpose)) {
            out += parameter == 0 ? " where " : " and ";
            out.append(k.name) += " = ?" + std::to_string(++parameter);
        }
    return out;
}

// What a load may run, too, does not change the schema: where it fails a save asks for each row.
bool serves_a_save(const Statement& s, Purpose purpose) {
    switch (purpose) {
        case Purpose::run:
        case Purpose::take_place:
        case Purpose::ask:
        case Purpose::ask_rows:
        case Purpose::count:
        case Purpose::remove:
            return s.verb != Verb::select;
        default:
            return false;
    }
}

}  // namespace

bool is_scope(const Table& t, const KeyColumn& k, Purpose purpose) {
    if (k.constant())
        return k.selects;
    const int levels = purpose == Purpose::select_own      ? 0
                       : purpose == Purpose::select_owners ? 1
                                                           : t.made_within;
    for (int level = 0; level < levels; ++level)
        if (k.single() && k.counts(level))
            return true;
    return false;
}

std::string executable(const Statement& s, Purpose purpose, const Table* scoped) {
    switch (purpose) {
        case Purpose::run:
        case Purpose::take_place:
            if (s.verb != Verb::insert)
                return parametrised(s, 0, s.text.size());
            return (purpose == Purpose::run ? "insert or ignore" : "insert or replace") +
                   parametrised(s, std::string_view("insert").size(), s.text.size());
        case Purpose::ask:
            return question(s);
        case Purpose::ask_rows:
            return "select count(*)" + rows_named(s);
        case Purpose::select_all:
        case Purpose::select_own:
        case Purpose::select_owners:
            return "select *" + rows_of(s, scoped, purpose);
        case Purpose::count:
            return "select count(*)" + rows_of(s, scoped, purpose);
        case Purpose::remove:
            return "delete" + rows_of(s, scoped, purpose);
        case Purpose::exists:
            break;
    }
    return "SELECT COUNT(*) as count FROM sqlite_master WHERE type='table' and name= ?1;";
}

sqlite3_stmt* prepared(const Statement& statement, Purpose purpose, int& code, const Table* scoped) {
    const auto text = [&] { return executable(statement, purpose, scoped); };
    sqlite3_stmt* s = nullptr;
    code = db_prepare({&statement, static_cast<int>(purpose)}, std::ref(text), &s,
                      serves_a_save(statement, purpose) ? statement.table : std::string_view());
    return s;
}

}  // namespace dbshell
