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

    // What a load brings of a table that was stored is stored and loaded again as it is.
    void store_and_load(int number) {
        const ServiceRequest request = for_tables({number});
        const auto loaded = [&]() -> std::string {
            if (call(EN_UPDATE_ONE_TABLE_RECORD, request) != kStored)
                return {};
            overwrite(number);
            return call(EN_GET_ONE_TABLE_RECORD, request) == kStored ? values(number) : "";
        };
        const std::string first = loaded(), second = first.empty() ? "" : loaded();
        // A list that is full of what stands here where nothing is loaded may be refused.
        EXPECT_TRUE(second.empty() || second == first) << number;
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
    void overwrite(int number) {
        for (const Cell& cell : cells_of(number))
            std::memset(reinterpret_cast<char*>(&r_) + cell.offset, 0x5a, cell.field->size);
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
