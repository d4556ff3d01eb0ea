// What a wrong entry of the catalogue is told: the checks that the compiler runs on every entry, run on wrong ones.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "vocabulary.h"

namespace dbshell {
namespace {

// The sentence that a check throws; empty: it passes.
template <class Check>
std::string sentence(Check check) {
    try {
        check();
    } catch (const char* text) {
        return text;
    }
    return {};
}

Field number(std::string_view name, Kind kind = Kind::i32) {
    Field f;
    f.name = name;
    f.size = 4;
    f.kind = kind;
    return f;
}

TEST(WrongEntries, StatementsAgainstTheirFields) {
    static constexpr KeyColumn kKeys[] = {inner("idx")};
    const Field a = number("a"), b = number("b"), wide = number("a", Kind::u64),
                text = number("a", Kind::text), real = number("a", Kind::f32);
    Field fixed = number("kind");
    fixed.constant = true;
    constexpr const char* kType = "a field's type does not fit its conversion";
    constexpr const char* kKey = "a key column takes a bare %d or %u";
    const struct {
        const char* text;
        std::vector<Field> fields;
        const char* told;
    } cases[] = {
        {"update t set a = %d, b = %d where idx = %d;", {a, b}, ""},
        {"update t set a = %d where kind = %d;", {a, fixed}, ""},
        {"update t set a = %d, b = %d where idx = %d;",
         {b, a},
         "a field's name is not the name of the column it is stored in"},
        {"update t set a = %d where idx = %d;", {a, b}, "the statement has fewer conversions than fields"},
        {"update t set a = %d, b = %d;", {a}, "the statement has more conversions than fields"},
        {"update t set a = %d where b = %d;",
         {a, b},
         "a conversion behind \"where\" stands for a column that is no key column of the table"},
        {"update t set a = %d where idx = %f;", {a}, kKey},
        {"update t set a = %d where idx = '%d';", {a}, kKey},
        {"update t set a = %llu where idx = %d;", {a}, kType},
        {"update t set a = %d where idx = %d;", {wide}, kType},
        {"update t set a = %d where idx = %d;", {text}, kType},
        {"update t set a = '%s' where idx = %d;", {a}, kType},
        {"update t set a = %d where idx = %d;", {real}, kType},
        {"update t set a = %f where idx = %d;", {a}, kType},
        {"update t set a = '%f' where idx = %d;", {real}, kType},
    };
    for (const auto& c : cases) {
        Slot slots[SqlText::kMaxSlots];
        EXPECT_EQ(sentence([&] { check_statement(SqlText(c.text), kKeys, c.fields, slots); }), c.told)
            << c.text;
    }
}

TEST(WrongEntries, WordsOutOfTheirRange) {
    constexpr const char* kBits = "bits of a field that is no number, or beyond its width";
    const std::string long_column = "select " + std::string(256, 'c') + " from t;";
    EXPECT_EQ(sentence([&] {
                  Slot slots[SqlText::kMaxSlots];
                  check_statement(SqlText(long_column), {}, {}, slots);
              }),
              "a statement, a column's name or a literal is too long");
    EXPECT_EQ(sentence([] { spell<NoTwin>("[one|other", nullptr); }), "a bracket is not closed");
    EXPECT_EQ(sentence([] { (void)bits(number("a"), 28, 4); }), "");
    EXPECT_EQ(sentence([] { (void)bits(number("a"), 29, 4); }), kBits);
    EXPECT_EQ(sentence([] { (void)bits(number("a", Kind::text), 0, 1); }), kBits);
    EXPECT_EQ(sentence([] { (void)Rows64(1, 64); }), "");
    EXPECT_EQ(sentence([] { (void)Rows64(1, 65); }),
              "the rows of one statement are not within 64 of each other");
}

// ---- whole entries: a right one, and one step from it

struct Row {
    int32_t a, b;
};
using Shape = list<Row[3]>;
using Keys = KeyList<[] { return keys_of(inner("idx"), inner("no")); }>;

constexpr auto& kUpdateRows = PUTS(PUT("update t set a = %d where idx = %d;", F(a)));
constexpr auto& kUpdateByNothing = PUTS(PUT("update t set a = %d;", F(a)));
constexpr auto& kUpdateOther = PUTS(PUT("update other set a = %d where idx = %d;", F(a)));
constexpr auto& kUpdateTwo = PUTS(PUT_FOR(1, 2, "update t set a = %d where idx = %d;", F(a)));
constexpr auto& kUpdateTwice = PUTS(PUT("update t set a = %d where idx = %d;", F(a)),
                                    PUT_FOR(2, 2, "update t set b = %d, a = %d where idx = 2;", F(b), F(a)));
constexpr auto& kUpdateBoth = PUTS(PUT("update t set a = %d where idx = %d;", F(a)),
                                   PUT_FOR(2, 2, "update t set b = %d where idx = 2;", F(b)));
constexpr auto& kUpdateLate = PUTS(PUT("update t set a = %d where idx = %d;", F(a)),
                                   PUT_FOR(2, 2, "update t set b = %d where idx = 2;", F(b)),
                                   PUT_FOR(1, 2, "update t set b = %d where idx = %d;", F(b)));
constexpr auto& kReplaceRows = PUTS(PUT("replace into t (idx, a) values(%d, %d);", F(a)));
constexpr auto& kReplaceByNothing = PUTS(PUT("replace into t (idx, a) values(1, %d);", F(a)));
constexpr auto& kFill = PUTS(PUT("insert into t (idx, a) values(%d, 0);"));
constexpr auto& kFillOther = PUTS(PUT("insert into other (idx, a) values(%d, 0);"));
constexpr auto& kFillTwo = PUTS(PUT_FOR(1, 2, "insert into t (idx, a) values(%d, 0);"));
constexpr auto& kFillTwice = PUTS(PUT("insert into t (idx, a) values(%d, 0);"),
                                  PUT_FOR(3, 3, "insert into t (idx, a) values(%d, 9);"));
constexpr auto& kSelectOther = PUTS(PUT("select * from other;"));
constexpr int kThird[] = {3};

Table ensure(void (*change)(Table&)) {
    Table t{.number = 7, .get = "db_get_t", .set = "db_set_t", .strategy = Strategy::ensure, .single = {}};
    t.fill = kFill;
    t.save = kUpdateRows;
    t.name = "t";
    t.layout = Shape::layout;
    t.keys = Keys::value;
    change(t);
    return t;
}

TEST(WrongEntries, WholeTables) {
    constexpr const char* kDefaultRows =
        "default rows belong to the strategies that make rows, and to no other";
    constexpr const char* kUnnamed =
        "a statement that is for several rows does not name the row by a key column";
    constexpr const char* kSteps =
        "steps stand in the order of their depths; its own are no deeper than the rows";
    static constexpr KeyColumn kRow[] = {inner("idx")};
    static constexpr Step kDeep[] = {itself(3)}, kTurned[] = {{"db_set_u", 2}, itself(1)},
                          kOthers[] = {{"db_set_u", 1}};
    static constexpr Schedule kUnknown[] = {{36, Schedule::Keyed::once, 0, true, 0, 448}};
    const struct {
        const char* told;
        void (*change)(Table&);
    } cases[] = {
        {"", [](Table&) {}},
        {"", [](Table& t) { t.save = kUpdateBoth; }},
        {"", [](Table& t) { t.save = kUpdateTwo, t.unused_rows = kThird; }},
        {"a table's number is from 1 to 253, or 0 for none", [](Table& t) { t.number = 254; }},
        {"a table of the registry has a get function", [](Table& t) { t.get = {}; }},
        {"a table has a set function unless it is read only", [](Table& t) { t.set = {}; }},
        {"a table that is stored has a save statement", [](Table& t) { t.save = {}; }},
        {"a table without an owner has no _single function", [](Table& t) { t.single = "db_set_t_single"; }},
        {kDefaultRows, [](Table& t) { t.fill = {}; }},
        {kDefaultRows, [](Table& t) { t.strategy = Strategy::update_only; }},
        {"a default row is made by an insert", [](Table& t) { t.fill = kReplaceRows; }},
        {"a default row is another table's", [](Table& t) { t.fill = kFillOther; }},
        {"each row has one default row", [](Table& t) { t.fill = kFillTwo; }},
        {"each row has one default row", [](Table& t) { t.fill = kFillTwice; }},
        {"a save statement stores another table", [](Table& t) { t.save = kUpdateOther; }},
        {"the save statements do not have the strategy's verb",
         [](Table& t) { t.strategy = Strategy::top_up, t.save = kReplaceRows; }},
        {kUnnamed, [](Table& t) { t.save = kUpdateByNothing; }},
        {kUnnamed, [](Table& t) { t.strategy = Strategy::replace, t.fill = {}, t.save = kReplaceByNothing; }},
        {kUnnamed, [](Table& t) { t.layout.owner = Owner::channel, t.layout.level[0].count = 1; }},
        {"two statements store the same column of a row", [](Table& t) { t.save = kUpdateTwice; }},
        {"two statements store the same column of a row", [](Table& t) { t.save = kUpdateLate; }},
        {"no statement serves one of the rows; name it in .unused_rows when it holds nothing",
         [](Table& t) { t.save = kUpdateTwo; }},
        {"a statement serves a row of .unused_rows", [](Table& t) { t.unused_rows = kThird; }},
        {"a load statement selects from the table", [](Table& t) { t.load = kSelectOther; }},
        {"a load statement selects from the table", [](Table& t) { t.load = kUpdateRows; }},
        {"a count of the device has a message for the device that does not tell it",
         [](Table& t) { t.device_rows = DeviceCount::alarm_inputs; }},
        {"the column that tells how many groups a row holds is not stored", [](Table& t) { t.holds = "b"; }},
        {"rows are made within an index that no key column tells",
         [](Table& t) { t.keys = kRow, t.made_within = 1, t.layout.level[0].count = 2; }},
        {"a function takes more indexes than the table has levels", [](Table& t) { t.indexes = 3; }},
        {kSteps, [](Table& t) { t.steps = kDeep; }},
        {kSteps, [](Table& t) { t.steps = kTurned; }},
        {"one step stores the table's own rows", [](Table& t) { t.steps = kOthers; }},
        {"a schedule's process type is from 1 to 35", [](Table& t) { t.schedules = kUnknown; }},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sentence([&] { check_table(ensure(c.change)); }), c.told);
}

struct Te {
    static constexpr std::string_view table = "te", function{};
};

struct Im : Te {
    static constexpr bool first = false;
};

// A pair of tables told once spells its names and lies where each says.
TEST(Twins, SpellTheirTexts) {
    char out[32];
    const auto spelled = [&](std::string_view text) { return std::string(out, spell<Te>(text, out)); };
    EXPECT_EQ(spelled("{t}_{f}{t}{}"), "te_te{}");
    EXPECT_EQ(spelled(""), "");
    constexpr std::string_view kBoth = "a[, b|, c]d[, e][]";
    EXPECT_EQ(spelled(kBoth), "a, bd, e");
    EXPECT_EQ(std::string(out, spell<Im>(kBoth, out)), "a, cd");
}

}  // namespace
}  // namespace dbshell
