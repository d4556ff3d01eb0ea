// The factory's file of lane parameters, of any content and size.
#include "customcfg.h"

#include "fuzz.h"

namespace {

struct Lanes : Fuzzed {
    static constexpr std::size_t kWhole = 46768, kLane = 2896, kLanes = 16, kTrailing = kLane * kLanes;

    const std::unique_ptr<DEVICECONFIG> before_ = std::make_unique<DEVICECONFIG>();

    void run(Input& input) override {
        forget_device();
        capability = 1;
        const std::size_t size = input.byte() % 2 == 0 ? kWhole + input.byte() % 2 : input.word();
        for (int changes = input.byte() % 4; changes > 0; --changes)
            change_value(input);
        const std::string part(input.rest());
        std::string file;
        while (file.size() < size)
            file += part.empty() ? "x" : part;
        file.resize(size);
        write_file(path("customcfg.bin"), file);
        *before_ = r_;
        EXPECT_EQ(read_customcfg(), 0);
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const bool whole = size >= kWhole;
            const MprRecord& row = r_.intel_moni.mpr[lane];
            EXPECT_EQ(row.lane_num, whole ? static_cast<uint8_t>(file[lane * kLane + 1]) : 1);
            EXPECT_EQ(row.farbn2, whole ? static_cast<uint8_t>(file[lane * kLane + kLane - 1]) : 0);
        }
        if (size >= kWhole) {
            EXPECT_EQ(std::memcmp(&r_.intel_moni.mpr_trailing_block, &file[kTrailing], kWhole - kTrailing),
                      0);
        }
        // Nothing else of the record changes.
        before_->intel_moni = r_.intel_moni;
        EXPECT_EQ(std::memcmp(before_.get(), &r_, sizeof r_), 0);
    }
};

}  // namespace

FUZZ_TARGET(Lanes)
