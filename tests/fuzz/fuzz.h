// What the fuzz targets share.  A target is a class whose run() gets one input after another; an assertion of the unit tests
// that fails ends the program, as a crash does.
//
//   struct Decrypt : Fuzzed {
//       void run(Input& input) override { ... }
//   };
//   FUZZ_TARGET(Decrypt)
#ifndef TESTS_FUZZ_FUZZ_H
#define TESTS_FUZZ_FUZZ_H

#include "old_databases.h"

// An input's bytes in their order; zeros behind its end.
class Input {
  public:
    Input(const uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

    [[nodiscard]] bool empty() const { return left_.empty(); }
    std::string_view bytes(std::size_t count) {
        const std::string_view taken = left_.substr(0, count);
        left_.remove_prefix(taken.size());
        return taken;
    }
    std::string_view rest() { return bytes(left_.size()); }
    template <class Number>
    Number number() {
        Number value{};
        const std::string_view taken = bytes(sizeof value);
        std::memcpy(&value, taken.data(), taken.size());
        return value;
    }
    uint8_t byte() { return number<uint8_t>(); }
    uint16_t word() { return number<uint16_t>(); }
    // Its length is in a byte before it.
    std::string_view text() { return bytes(byte()); }
    // One of a list's; the list is not empty.
    template <class List>
    auto& one_of(List&& list) {
        return list[word() % std::size(list)];
    }

  private:
    std::string_view left_;
};

// This thread runs the core, which is not to wait.
inline thread_local bool runs_core = false;

// Before the core is made: its folders lie in memory, and assertions end the program.
struct FuzzSettings {
    FuzzSettings();
};

class Fuzzed : private FuzzSettings, public OldDatabases {
  public:
    Fuzzed();
    virtual void run(Input& input) = 0;
    void TestBody() override {}

  protected:
    // The database with rows in every table, as it was made once.
    const std::string& seed() const { return seed_; }
    // It is open, and holds those rows again.
    void restore_database();
    // What the device has; what it answered before is forgotten.
    static void take_device(Input& input);
    // The whole record, with one of a few contents.
    void fill(uint8_t filling);
    // A row of a table changed at any place: a value's bytes are the input's.
    void change_value(Input& input);
    static const std::vector<Cell>& cells(const Table& table);

  private:
    std::string seed_;
    uint32_t changes_ = 1 << 20;
};

#define FUZZ_TARGET(Target)                                                   \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { \
        runs_core = true;                                                     \
        static const auto target = std::make_unique<Target>();                \
        Input input(data, size);                                              \
        target->run(input);                                                   \
        return 0;                                                             \
    }

#endif
