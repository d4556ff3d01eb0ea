// The operation log's writer and its reader on a file that holds anything.
#include "operation_log.h"

#include "dbctl_commands.h"
#include "fuzz.h"
#include "operation_log_format.h"

namespace {

struct OperationLog : Fuzzed {
    void run(Input& input) override {
        const std::string file = path("db_op_info.log");
        const std::size_t size = input.word() % (2 * kLogFileSize);
        const int writes = input.byte() % 4;
        std::string records[4];
        for (int i = 0; i < writes; ++i)
            records[i] = std::string(input.text()) + std::string(input.byte() * 10u, 'r');
        std::string content(input.rest());
        if (content.size() < size)
            content.resize(size, '-');
        write_file(file, content);
        try {
            static_cast<void>(::operation_log(true).json());
        } catch (const Failure&) {
            EXPECT_TRUE(content.size() < kLogHeaderSize || !log_position(content.substr(0, kLogHeaderSize)));
        }
        for (int i = 0; i < writes; ++i)
            if (!records[i].empty())
                append(file, records[i]);
    }

    static void append(const std::string& file, std::string record) {
        write_db_info_to_file(record.data(), static_cast<int>(record.size()));
        record.resize(std::min<std::size_t>(record.size(), kLogFileSize - kLogHeaderSize));
        const std::string log = content(file);
        ASSERT_LE(log.size(), kLogFileSize);
        const auto end = static_cast<std::size_t>(log_position(log.substr(0, kLogHeaderSize)).value());
        ASSERT_TRUE(end <= log.size());
        ASSERT_GE(end, record.size());
        // The header is written last, over a record that lies there because there was none.
        const std::size_t at = end - record.size(), hidden = at < kLogHeaderSize ? kLogHeaderSize - at : 0;
        if (hidden < record.size()) {
            EXPECT_EQ(log.substr(at + hidden, record.size() - hidden), record.substr(hidden));
        }
        EXPECT_NO_THROW(static_cast<void>(::operation_log(true).json()));
    }
};

}  // namespace

FUZZ_TARGET(OperationLog)
