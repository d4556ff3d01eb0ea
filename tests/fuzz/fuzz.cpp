#include "fuzz.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

// In the place of the C library's: the core waits for nothing, the fuzzer's own threads do.
unsigned sleep(unsigned seconds) {
    const timespec time{static_cast<time_t>(seconds), 0};
    return runs_core ? 0 : static_cast<unsigned>(nanosleep(&time, nullptr));
}
int usleep(useconds_t) {
    return 0;
}

// In the place of the main application, on whom the linker puts it.
#define WRAPPED_CALL asm("__wrap__Z21ipc_unix_call_serviceiiPKviiPviiPiS2_")
using Call = int(int, int, const void*, int, int, void*, int, int, int*, int*);
Call answer_call WRAPPED_CALL;

int answer_call(int, int kind, const void*, int, int, void* reply, int, int, int* reply_length, int* result) {
    if (silent)
        return ipc_unreachable;
    const int32_t word = kind == kCapabilityTest ? capability : hardware_count;
    std::memcpy(reply, &word, sizeof word);
    if (reply_length != nullptr)
        *reply_length = sizeof word;
    if (result != nullptr)
        *result = 0;
    return 0;
}

extern "C" const char* __asan_default_options() {  // NOLINT(bugprone-reserved-identifier)
    return "quarantine_size_mb=16:malloc_context_size=6";
}

FuzzSettings::FuzzSettings() {
    setenv("TEST_TMPDIR", "/dev/shm/", 0);
    GTEST_FLAG_SET(break_on_failure, true);
    signal(SIGTRAP, [](int) { std::abort(); });
}

Fuzzed::Fuzzed() {
    hardware_count = 2;
    fill_random(r_, 1);
    save_all();
    EXPECT_EQ(db_update_version(kCurrentVersion, get_db_handle()), 0);
    close_database();
    seed_ = content(get_db_path());
    const int32_t everything[2] = {-1, 6};
    EXPECT_EQ(set_debug_para_withcheck(everything, 0, 0), 0);
}

void Fuzzed::restore_database() {
    constexpr std::size_t kCounters[] = {24, 92};  // of changes, and the one that the header's version is of
    closing_flag = false;
    if (get_db_handle() == nullptr) {
        std::filesystem::remove(path("ipc_db-journal"));
        write_file(get_db_path(), seed_);
        set_db_handle(db_open(get_db_path()));
    }
    const unique_fd file(open(get_db_path(), O_RDWR | O_CLOEXEC));
    char counter[4];
    ASSERT_EQ(pread(file.get(), counter, sizeof counter, kCounters[0]), std::ssize(counter));
    if (seed_.compare(kCounters[0], sizeof counter, counter, sizeof counter) == 0)
        return;
    if (sqlite3_get_autocommit(get_db_handle()) != 0) {
        EXPECT_NE(read_sealed(get_db_path()).seal, Seal::rotten);
    }
    // With a count that the connection has not seen it reads the pages anew, and keeps its statements; its own commits
    // have counted on from the last.
    changes_ += 1 << 12;
    for (const std::size_t at : kCounters)
        for (unsigned i = 0; i < sizeof counter; ++i)
            seed_[at + i] = static_cast<char>(changes_ >> (24 - 8 * i));
    ASSERT_EQ(ftruncate(file.get(), static_cast<off_t>(seed_.size())), 0);
    ASSERT_EQ(pwrite(file.get(), seed_.data(), seed_.size(), 0), std::ssize(seed_));
}

void Fuzzed::take_device(Input& input) {
    forget_device();
    const uint8_t device = input.byte();
    capability = device & 1;
    silent = (device & 6) == 6;
    hardware_count = device >> 3;
    maxEnChanNo = 1 + (device & 6) / 2;
}

void Fuzzed::fill(uint8_t filling) {
    static const auto fillings = [] {
        std::vector<DEVICECONFIG> made(3);  // the first is all zeros
        fill_random(made[1], 1);
        fill_random(made[2], 2);
        return made;
    }();
    r_ = fillings[filling % fillings.size()];
}

const std::vector<Cell>& Fuzzed::cells(const Table& table) {
    static std::map<const Table*, std::vector<Cell>> known;
    const auto [found, is_new] = known.try_emplace(&table);
    if (is_new)
        found->second = cells_of_table(table);
    return found->second;
}

void Fuzzed::change_value(Input& input) {
    const auto& all = cells(*input.one_of(all_tables()));
    if (all.empty())
        return;
    const Cell& cell = input.one_of(all);
    const std::string_view value = input.bytes(std::min<std::size_t>(cell.field->size, input.byte()));
    value.copy(reinterpret_cast<char*>(&r_) + cell.offset, value.size());
}
