// Requests in a row on a small database, while the record changes between them.
#include "fuzz.h"

namespace {

class Sequence : public Fuzzed {
  public:
    void run(Input& input) override {
        take_device(input);
        restore_database();
        fill(input.byte());
        for (int steps = 0; steps < 12 && !input.empty(); ++steps)
            step(input);
    }

  private:
    static constexpr char kOnce = 0x5a, kAgain = ~kOnce;

    void step(Input& input) {
        switch (input.byte() % 5) {
            case 0: {
                const std::size_t offset = input.number<uint32_t>() % sizeof r_;
                const std::string_view bytes =
                    input.bytes(std::min(sizeof r_ - offset, std::size_t{input.byte()}));
                bytes.copy(reinterpret_cast<char*>(&r_) + offset, bytes.size());
                return;
            }
            case 1:
                return change_value(input);
            case 2:
                return fill(input.byte());
            case 3:
                return any_request(input);
            default:
                return store_and_load(input.byte());
        }
    }

    void any_request(Input& input) {
        const RequestKind& kind = input.one_of(request_kinds());
        if (kind.number == REDIRECTION_OUTPUT_OPEN)
            return;
        ServiceRequest request{};
        const std::string_view bytes = input.text();
        std::memcpy(&request, bytes.data(), std::min(bytes.size(), sizeof request));
        call(kind.number, request);
        EXPECT_TRUE(get_db_handle() == nullptr || sqlite3_get_autocommit(get_db_handle()));
    }

    // A load brings the same whatever the record held; what it brings is stored and loaded again as it is.
    void store_and_load(int number) {
        const ServiceRequest request = for_tables({number});
        const auto done = [&](int kind) { return call(kind, request) == kStored; };
        std::string loads[3];
        for (int i = 0; i < 3; ++i) {
            // The second load is without a store.  A list that is full of what stands where nothing is loaded may be refused.
            if (i != 1 && !done(EN_UPDATE_ONE_TABLE_RECORD))
                return;
            overwrite(number, i == 0 ? kOnce : kAgain);
            if (!done(EN_GET_ONE_TABLE_RECORD))
                return;
            loads[i] = values(number);
            if (i > 0)
                expect_same(number, loads[0], loads[i]);
        }
    }
    // But for bits that are not loaded: a text is loaded whole or not at all.
    void expect_same(int number, const std::string& once, const std::string& again) {
        std::size_t at = 0;
        for (const Cell& cell : cells_of(number)) {
            const std::string_view a = std::string_view(once).substr(at, cell.field->size),
                                   b = std::string_view(again).substr(at, cell.field->size);
            at += cell.field->size;
            if (a.find_first_not_of(kOnce) == std::string_view::npos)
                continue;
            bool same = cell.field->kind != Kind::text || a == b;
            for (std::size_t i = 0; i < a.size(); ++i)
                same = same && ((a[i] ^ b[i]) & (a[i] ^ kOnce)) == 0;
            EXPECT_TRUE(same) << address_of(cell) << testing::PrintToString(a) << testing::PrintToString(b);
        }
    }

    // All that the table's functions move, in every entry of it.
    const std::vector<Cell>& cells_of(int number) {
        const auto [found, is_new] = moved_.try_emplace(number);
        const Table* const first = table_by_number(number);
        for (const Table* table : all_tables())
            if (is_new && first != nullptr && table->get == first->get)
                found->second.insert(found->second.end(), cells(*table).begin(), cells(*table).end());
        return found->second;
    }
    void overwrite(int number, char with) {
        for (const Cell& cell : cells_of(number))
            std::memset(reinterpret_cast<char*>(&r_) + cell.offset, with, cell.field->size);
    }
    std::string values(int number) {
        std::string all;
        for (const Cell& cell : cells_of(number))
            all.append(reinterpret_cast<const char*>(&r_) + cell.offset, cell.field->size);
        return all;
    }

    std::map<int, std::vector<Cell>> moved_;
};

}  // namespace

FUZZ_TARGET(Sequence)
