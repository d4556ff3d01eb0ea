// The take-over of the traffic settings and the factory's lane parameters, byte by byte.
#include "customcfg.h"

#include "core_fixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using Bytes = std::string;

constexpr std::size_t kFileSize = 46768;

struct Copy {
    std::size_t to, from, size;
};

// What the devices that were updated in the field hold: offsets in the record, in the order of the copies.
constexpr Copy kBeforeItems[] = {
    {723100, 576320, 296}, {723396, 576616, 40}, {723432, 576644, 4}, {723940, 577160, 3328}};
constexpr Copy kConfiguration = {723436, 576656, 504};
constexpr Copy kBehind[] = {{806392, 659612, 160}, {806552, 659772, 8},     {791156, 644376, 15236},
                            {806560, 659780, 776}, {806696, 659980, 64},    {807208, 660044, 64},
                            {807336, 660556, 244}, {727348, 580568, 63808}, {727272, 580492, 76},
                            {727268, 580488, 4},   {807644, 660864, 432}};

Bytes defaults() {
    Bytes file(kFileSize, '\0');
    for (std::size_t lane = 0; lane < 16; ++lane) {
        const auto word = [&](std::size_t at, int value) {
            file[lane * 2896 + at] = static_cast<char>(value & 0xFF);
            file[lane * 2896 + at + 1] = static_cast<char>(value >> 8);
        };
        file[lane * 2896 + 1] = file[lane * 2896 + 64] = 1;
        word(96, 100), word(98, 500), word(100, 100), word(102, 900);
        word(2624, 900), word(2626, 500), word(2628, 900), word(2630, 900);
    }
    return file;
}

Bytes expected(Bytes record, const Bytes& file) {
    const auto copy = [&](const Copy& c) { record.replace(c.to, c.size, Bytes(record, c.from, c.size)); };
    std::for_each(std::begin(kBeforeItems), std::end(kBeforeItems), copy);
    for (std::size_t i = 723960; i < 723984; ++i)
        if (Bytes("\x09\x0B\x0C\x10\x11").find(record[i]) != Bytes::npos)
            record[i] = '\0';
    copy(kConfiguration);
    if (record[723436] == '\0')
        record.replace(723436, 3, Bytes("\xD5\xE3\0", 3));
    std::for_each(std::begin(kBehind), std::end(kBehind), copy);
    for (std::size_t lane = 0; lane < 16; ++lane) {
        const std::size_t to = 808076 + 1620 * lane, from = 2896 * lane;
        record.replace(to, 2, file, from, 2);
        for (std::size_t s = 0; s < 4; ++s) {
            record.replace(to + 4 + 100 * s, 1, file, from + 64 + 640 * s, 1);
            record.replace(to + 8 + 100 * s, 12, file, from + 96 + 640 * s, 12);
            record.replace(to + 20 + 100 * s, 84, file, from + 108 + 640 * s, 84);
        }
        record.replace(to + 1604, 12, file, from + 2624, 12);
        record.replace(to + 1616, 4, file, from + 2892, 4);
    }
    return record.replace(833996, 432, file, 46336, 432);
}

class CustomCfg : public Core {
  protected:
    Bytes bytes() const { return {reinterpret_cast<const char*>(record_.get()), sizeof(DEVICECONFIG)}; }
    // The offset of the first byte that differs; npos: none does.
    static std::size_t first_difference(const Bytes& a, const Bytes& b) {
        const auto at = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
        return at == a.end() ? Bytes::npos : static_cast<std::size_t>(at - a.begin());
    }
};

TEST_F(CustomCfg, RecordGetsTheTrafficSettingsAndTheLanesOfTheFile) {
    std::mt19937 random(7);
    Bytes whole(kFileSize, '\0');
    std::generate(whole.begin(), whole.end(), [&] { return static_cast<char>(random()); });
    const struct {
        const char* what;
        int capability;
        std::size_t file_size;  // npos: no file
        int result;
        const char* printed;
    } cases[] = {
        {"whole", 1, kFileSize, 0, "*read customcfg ok*"},
        {"longer than it needs", 1, kFileSize + 1, 0, "*read customcfg ok*"},
        {"short", 1, kFileSize - 1, 0, "read TRAFFIC_MPR parameter file error, errno=0.\n"},
        {"empty", 1, 0, 0, "read TRAFFIC_MPR parameter file error, errno=0.\n"},
        {"missing", 1, Bytes::npos, -1, "open customcfg.bin,errno=2.\n"},
        {"no capability", 0, kFileSize, 0, "sizeof(CUSTOM_CFG_BIN)=46768 (46768 bytes is OK)"},
        {"another answer", 2, kFileSize, 0, "sizeof(CUSTOM_CFG_BIN)=46768 (46768 bytes is OK)"},
    };
    for (const char first_of_province : {'\0', '\xB2'}) {
        for (const auto& c : cases) {
            randomise(3);
            for (uint8_t i = 0; i < 24; ++i)  // 9, 11, 12, 16 and 17 among them
                r_.traffic_event.char_overlap.text_content_index[i] = i;
            r_.traffic_event.alg_cfg.default_chn[0] = first_of_province;
            capability = c.capability;
            std::filesystem::remove(path("customcfg.bin"));
            Bytes file = whole;
            file.resize(c.file_size != Bytes::npos ? c.file_size : 0, 'x');
            if (c.file_size != Bytes::npos)
                write_file(path("customcfg.bin"), file);
            const Bytes before = bytes();
            testing::internal::CaptureStdout();
            EXPECT_EQ(read_customcfg(), c.result) << c.what;
            const std::string printed = testing::internal::GetCapturedStdout();
            EXPECT_THAT(printed, HasSubstr(c.printed));
            const Bytes& read = file.size() < kFileSize ? defaults() : whole;
            EXPECT_EQ(first_difference(bytes(), c.capability == 1 ? expected(before, read) : before),
                      Bytes::npos)
                << c.what;
            EXPECT_EQ(std::filesystem::exists(path("customcfg.bin")), c.file_size != Bytes::npos);
            if (c.capability == 1)
                EXPECT_THAT(printed, HasSubstr("seond_point.y = " +
                                               std::to_string(r_.intel_moni.mpr[0].lane[3].line.p2y)));
            else
                EXPECT_THAT(printed, Not(HasSubstr("lane_num")));
        }
    }
}

}  // namespace
