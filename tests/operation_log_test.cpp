// The operation log file, and the small queries beside it.
#include "operation_log.h"

#include <regex>

#include "core_fixture.h"
#include "operation_log_format.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class OperationLog : public Core {
  protected:
    static std::string header(const std::string& position) {
        std::string text = "***DB_LOG_INFO***\nLOG_TOTAL_LEN:0\nLOG_LAST_WRITE_POS:" + position + "\n\n";
        text.resize(kLogHeaderSize);
        return text;
    }
};

TEST_F(OperationLog, RecordsGoBehindTheLastUntilTheFileIsFull) {
    const std::string file = path("db_op_info.log");
    const struct {
        std::string header;
        std::size_t size;
        int length;
        std::size_t at;
    } cases[] = {
        {"", 0, 60, 70},
        {header("0").substr(0, 40), 40, 60, 70},  // shorter than its header
        {header("999"), 1988, 60, 1988},          // it just fits
        {header("2000"), 2000, 60, 70},
        {header("1000"), 2000, 60, 1000},
        {header("1989"), 1989, 60, 70},
        {header("1988"), 2048, 60, 1988},
        {header("70"), 2048, 5000, 70},  // cut to the body
        {header("-5"), 2048, 60, 70},
        {header("x"), 2048, 60, 70},
        {header("99999"), 2048, 60, 70},
        {std::string(70, '#'), 2000, 120, 0},  // without a position: over the header, which is written again
        {header("100"), 5000, 60, 100},        // too long: cut
    };
    for (const auto& c : cases) {
        std::string before = c.header, record(static_cast<std::size_t>(c.length), 'r');
        before.resize(c.size, '-');
        std::filesystem::remove(file);
        if (c.size != 0)
            write_file(file, before);
        write_db_info_to_file(record.c_str(), c.length);
        record.resize(std::min<std::size_t>(record.size(), 1978));
        std::string text = header(std::to_string(c.at + record.size()));
        text.resize(std::strlen(text.c_str()));
        std::string expected = c.size < 70 ? std::string(70, '\0') : before;
        expected.resize(std::max(expected.size(), c.at + record.size()));
        expected.resize(std::min<std::size_t>(expected.size(), 2048));
        expected.replace(c.at, record.size(), record).replace(0, text.size(), text);
        EXPECT_EQ(content(file), expected) << c.header << c.size;
    }
}

TEST_F(OperationLog, NeverGrowsBeyondItsSizeAndTheLatestRecordIsWhole) {
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        std::string record(1 + random() % (i % 10 == 0 ? 2500 : 90), static_cast<char>('a' + i % 26));
        write_db_info_to_file(record.c_str(), static_cast<int>(record.size()));
        record.resize(std::min<std::size_t>(record.size(), 1978));
        const std::string log = operation_log();
        const std::size_t end = std::stoul(log.substr(log.find("POS:") + 4));
        ASSERT_TRUE(log.size() <= 2048 && end >= 70 + record.size());
        ASSERT_EQ(log.substr(end - record.size(), record.size()), record);
    }
}

TEST_F(OperationLog, RecordsStartWithTheLocalTime) {
    log_operation("tables_fun[%d].set failed.Need rollback\n", 7);
    EXPECT_THAT(operation_log().substr(kLogHeaderSize),
                MatchesRegex("\\[20[0-9]{2}-[01][0-9]-[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9]\\] "
                             "tables_fun\\[7\\].set failed.Need rollback\n"));
    const std::string before = operation_log();
    EXPECT_THAT(logged([] { write_db_info_to_file(nullptr, 5); }), HasSubstr("info is null"));
    EXPECT_THAT(logged([] { write_db_info_to_file("x", 0); }), HasSubstr("input len(0) error"));
    EXPECT_EQ(operation_log(), before);
    std::filesystem::remove_all(path(""));
    EXPECT_THAT(logged([] { write_db_info_to_file("x", 1); }),
                HasSubstr("fail to open " + path("db_op_info.log")));
}

TEST_F(OperationLog, FullDiskIsTold) {
    std::filesystem::create_symlink("/dev/full", path("db_op_info.log"));
    const auto log = logged([] { write_db_info_to_file("record\n", 7); });
    for (const char* message :
         {"write log_title error(-1-18)\n", "write info failed(-1---7)\n", "cannot be synced, errno = 22\n"})
        EXPECT_THAT(log, HasSubstr(message));
}

TEST_F(OperationLog, LongRecordIsCutAndStaysALine) {
    log_operation("%s\n", std::string(600, 'x').c_str());
    log_operation("next\n");
    EXPECT_THAT(operation_log(), HasSubstr("xx\n["));
}

// Whatever the sources write into the log is explained by dbctl, and on the page for the field.
TEST_F(OperationLog, EveryLineIsExplained) {
    const std::string page = content(SOURCE_DIR "/docs/field-log.md");
    std::set<std::string> lines;
    const std::regex written("log_operation\\(\"([^\"]+)\"|\"(\\[%s\\][a-z][^\"]+)\"");
    for (const char* folder : {"/main", "/uni_process"})
        for (const auto& file :
             std::filesystem::recursive_directory_iterator(SOURCE_DIR + std::string(folder))) {
            if (file.path().extension() != ".cpp")
                continue;
            const std::string source = content(file.path());
            for (std::sregex_iterator m(source.begin(), source.end(), written), end; m != end; ++m)
                lines.insert((*m)[1].str() + (*m)[2].str());
        }
    EXPECT_EQ(lines.size(), 20u);
    for (const std::string& line : lines) {
        EXPECT_NE(log_meaning(line), "") << line;
        // Its words between what is printed into it.
        const std::string words = std::regex_replace(line, std::regex("%[ds]|\\\\n"), "\n");
        std::istringstream parts(words);
        for (std::string part; std::getline(parts, part);)
            if (part.size() > 2) {
                EXPECT_NE(page.find(part), page.npos) << part << " of " << line;
            }
    }
    EXPECT_EQ(log_meaning("another"), "");
}

TEST_F(OperationLog, PictureHeightsFollowTheVideoStandard) {
    const struct {
        uint8_t standard;
        int height, converted;
    } cases[] = {{1, 240, 288}, {1, 479, 574}, {1, 480, 576}, {1, 1000, 576}, {1, 0x10000 + 240, 288},
                 {1, -1, 576},  {0, 700, 576}, {0, 300, 300}, {2, 300, 300},  {1, 0, 0}};
    auto& position = r_.channel[0].battery_osd_position_y;
    for (const auto& c : cases) {
        r_.sensor[0].video_standard = c.standard;
        position = static_cast<uint16_t>(c.height);
        EXPECT_EQ(convert_height_by_standard(c.height), c.converted) << c.height;
        EXPECT_EQ(fix_height_by_standard(), c.standard == 1 ? c.converted : c.standard);
        EXPECT_EQ(position, static_cast<uint16_t>(c.standard == 1 ? c.converted : c.height));
    }
    EXPECT_THAT(logged([] { EXPECT_EQ(get_videostandard(2), 1); }),
                HasSubstr("get_videostandard error.chan_no is 2."));
}

}  // namespace
