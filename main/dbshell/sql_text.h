// Reading an SQL statement text: its verb, its table, and one slot per column that it names.
//
// The text of a table's statements is the declaration of the table.  It is read once, by the compiler, which
// checks the entry and leaves what it found (statement.h) for the engine.  This is the one reader.
//
//   constexpr SqlText t("update rtsp_config_table set enable_auth = %d where idx = %d;");
//   t.table == "rtsp_config_table"; t.slot[0].column == "enable_auth"; t.slot[1].role == SlotRole::condition
//
// It understands the forms that the catalogue uses and refuses any other with a sentence:
//   replace|insert into T (columns) values (values);      update T set c = v, ... [where c = v and ...];
//   select count(*) from T [where ...];   select *|COLUMNS from T [where ...] [order by ...];
#ifndef DBSHELL_SQL_TEXT_H
#define DBSHELL_SQL_TEXT_H

#include <cstddef>
#include <string_view>

namespace dbshell {

enum class Verb : unsigned char { replace, insert, update, count, select };

// A printf conversion that stands for a value: %d %ld %u %lld %llu %f %s %q, bare or between single quotes.
struct Conversion {
    char kind = 0;        // 'd', 'u', 'l' (%lld, %llu), 'f', 's' (%s and %q); 0: the value is a literal
    bool quoted = false;  // between single quotes: the value is text, whatever it is made from
};

// What a statement does with a column: it stores a value in it, asks for a value behind "where", or reads it.
enum class SlotRole : unsigned char { stored, condition, selected };

struct TextSlot {
    std::string_view column;
    std::string_view value;  // as it stands in the text: a conversion, or a literal; none for a selected one
    Conversion conversion;
    SlotRole role = SlotRole::stored;
};

struct SqlText {
    static constexpr std::size_t kMaxSlots = 72;

    Verb verb = Verb::select;
    std::string_view text;
    std::string_view table;
    std::string_view where_clause;  // from "where" to before the final ';' or "order by"; empty: none
    TextSlot slot[kMaxSlots];
    std::size_t slots = 0;

    constexpr explicit SqlText(std::string_view sql) : text(sql), rest_(sql) {
        if (word("replace"))
            rows(Verb::replace);
        else if (word("insert"))
            rows(Verb::insert);
        else if (word("update"))
            update();
        else if (word("select") || word("SELECT"))
            query();
        else
            throw "the statement starts with none of replace, insert, update, select";
        skip();
        if (rest_ != ";")
            throw "the statement does not end with its semicolon";
    }

    constexpr std::size_t conversions() const {
        std::size_t n = 0;
        for (std::size_t i = 0; i < slots; ++i)
            n += slot[i].conversion.kind != 0;
        return n;
    }

  private:
    std::string_view rest_;

    static constexpr bool blank(char c) { return c == ' ' || c == '\t'; }
    static constexpr bool name_char(char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    }

    constexpr void skip() {
        while (!rest_.empty() && blank(rest_[0]))
            rest_.remove_prefix(1);
    }
    constexpr bool word(std::string_view w) {
        skip();
        if (!rest_.starts_with(w) || (rest_.size() > w.size() && name_char(rest_[w.size()])))
            return false;
        rest_.remove_prefix(w.size());
        return true;
    }
    constexpr bool sign(char c) {
        skip();
        if (!rest_.starts_with(c))
            return false;
        rest_.remove_prefix(1);
        return true;
    }
    constexpr std::string_view name() {
        skip();
        std::size_t n = 0;
        while (n < rest_.size() && name_char(rest_[n]))
            ++n;
        if (n == 0)
            throw "a name is missing in the statement";
        const auto result = rest_.substr(0, n);
        rest_.remove_prefix(n);
        return result;
    }
    // A value up to the next separator outside quotes, without surrounding blanks.
    constexpr std::string_view value() {
        skip();
        bool in_quotes = false;
        std::size_t n = 0;
        for (; n < rest_.size(); ++n) {
            const char c = rest_[n];
            if (c == '\'')
                in_quotes = !in_quotes;
            else if (!in_quotes && (c == ',' || c == ')' || c == ';' || blank(c)))
                break;
        }
        if (n == 0 || in_quotes)
            throw "a value is missing in the statement, or a quote is not closed";
        const auto result = rest_.substr(0, n);
        rest_.remove_prefix(n);
        return result;
    }
    static constexpr Conversion conversion(std::string_view value) {
        Conversion c;
        if (value.size() > 2 && value.front() == '\'' && value.back() == '\'') {
            c.quoted = true;
            value = value.substr(1, value.size() - 2);
        }
        if (!value.starts_with('%'))
            return {};
        // A long is a word on the device.
        c.kind = value == "%d" || value == "%ld"      ? 'd'
                 : value == "%u"                      ? 'u'
                 : value == "%lld" || value == "%llu" ? 'l'
                 : value == "%f"                      ? 'f'
                 : value == "%s" || value == "%q"
                     ? 's'
                     : throw "a conversion is none of %d, %ld, %u, %lld, %llu, %f, %s, %q";
        if (c.kind == 's' && !c.quoted)
            throw "a %s or %q stands without quotes";
        return c;
    }
    constexpr TextSlot& add(std::string_view column) {
        if (slots == kMaxSlots)
            throw "the statement has more columns than SqlText::kMaxSlots";
        slot[slots].column = column;
        return slot[slots++];
    }
    static constexpr void set(TextSlot& s, std::string_view v, SlotRole role) {
        s.value = v;
        s.conversion = conversion(v);
        s.role = role;
    }

    constexpr void rows(Verb v) {
        verb = v;
        if (!word("into"))
            throw "\"into\" is missing";
        table = name();
        if (!sign('('))
            throw "the column list is missing";
        do
            add(name());
        while (sign(','));
        if (!sign(')') || !word("values") || !sign('('))
            throw "\"values(\" is missing";
        for (std::size_t i = 0; i < slots; ++i) {
            if (i > 0 && !sign(','))
                throw "the statement has fewer values than columns";
            set(slot[i], value(), SlotRole::stored);
        }
        if (!sign(')'))
            throw "the statement has more values than columns";
    }
    constexpr void update() {
        verb = Verb::update;
        table = name();
        if (!word("set"))
            throw "\"set\" is missing";
        do
            assignment(SlotRole::stored);
        while (sign(','));
        where();
    }
    constexpr void assignment(SlotRole role) {
        TextSlot& s = add(name());
        if (!sign('=') && !(role == SlotRole::condition && sign('<')))
            throw "\"=\" is missing";
        set(s, value(), role);
    }
    constexpr void where() {
        skip();
        const auto start = rest_;
        if (!word("where"))
            return;
        do
            assignment(SlotRole::condition);
        while (word("and"));
        where_clause = start.substr(0, start.size() - rest_.size());
    }
    constexpr void from(Verb v) {
        verb = v;
        if (!word("from"))
            throw "\"from\" is missing";
        table = name();
        where();
    }
    constexpr void query() {
        skip();
        if (rest_.starts_with("count(*)")) {
            rest_.remove_prefix(std::string_view("count(*)").size());
            return from(Verb::count);
        }
        if (!sign('*'))
            do
                add(name()).role = SlotRole::selected;
            while (sign(','));
        from(Verb::select);
        if (word("order"))
            while (!rest_.empty() && rest_[0] != ';')
                rest_.remove_prefix(1);
    }
};

}  // namespace dbshell

#endif
