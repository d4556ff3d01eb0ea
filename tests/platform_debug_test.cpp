#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "device_debug.h"
#include "device_paths.h"
#include "device_thread.h"

namespace fs = std::filesystem;

namespace {

std::string contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

class PlatformDebug : public testing::Test {
  protected:
    PlatformDebug() {
        std::string pattern = testing::TempDir() + "debugXXXXXX";
        folder_ = fs::canonical(mkdtemp(pattern.data()));
    }
    ~PlatformDebug() override {
        unsetenv("DEVICE_ROOT");
        fs::remove_all(folder_);
    }
    std::string file(const std::string& name) const { return folder_ + "/" + name; }
    std::string folder_;
};

int set_level(int32_t module, int32_t level) {
    const int32_t request[] = {module, level};
    return set_debug_para_withcheck(request, 0, 0);
}

int redirect(const std::string& path, int* slots) {
    return redirection_output(path.c_str(), &slots[0], &slots[1]);
}

template <class Write>
std::string captured(Write write_lines) {
    testing::internal::CaptureStderr();
    write_lines();
    return testing::internal::GetCapturedStderr();
}

TEST_F(PlatformDebug, MessageIsOneWholeLine) {
    const std::string longest(10000, 'x');
    const auto line = [](const std::string& text) {
        return captured([&] { dev_debug_v1(2, 52, "main/a.c", 7, "f", "%s", text.c_str()); });
    };
    EXPECT_EQ("[2][52][main/a.c:7 f] text\n", line("text"));
    EXPECT_EQ("[2][52][main/a.c:7 f] text\n", line("text\n\n"));
    EXPECT_EQ("[2][52][main/a.c:7 f] two\nlines\n", line("two\nlines\n"));
    EXPECT_EQ("[2][52][main/a.c:7 f] \n", line("\n"));
    EXPECT_EQ("[2][52][main/a.c:7 f] " + longest + "\n", line(longest));
    errno = ENOSPC;
    EXPECT_EQ("[1][99][?:0 ?] \n", captured([] { dev_debug_v1(1, 99, nullptr, 0, nullptr, nullptr); }));
    EXPECT_EQ(ENOSPC, errno);
}

TEST_F(PlatformDebug, ThresholdIsPerModule) {
    const auto written = [](int module) {
        return captured([=] {
                   for (int level = 1; level <= 7; ++level)
                       dev_debug_v1(level, module, "f", 1, "f", "x");
               }).size() /
               std::strlen("[1][00][f:1 f] x\n");
    };
    EXPECT_EQ(6u, written(52));
    EXPECT_EQ(0, set_level(52, 2));
    EXPECT_EQ(2u, written(52));
    EXPECT_EQ(6u, written(45));
    EXPECT_EQ(0, set_level(-1, 0));
    EXPECT_EQ(0u, written(45));
    EXPECT_EQ(0, set_level(63, 6));
    EXPECT_EQ(6u, written(63));
    for (const auto& [module, level] :
         {std::pair{-2, 1}, {64, 1}, {52, -1}, {52, 7}, {INT32_MIN, 1}, {52, INT32_MAX}})
        EXPECT_EQ(-1, set_level(module, level)) << module << " " << level;
    EXPECT_EQ(-1, set_debug_para_withcheck(nullptr, 0, 0));
    EXPECT_EQ(0u, written(52));
    EXPECT_EQ(0, init_debug_task(0, 0));
    EXPECT_EQ(6u, written(52));
}

TEST_F(PlatformDebug, LinesOfThreadsDoNotMix) {
    const std::string text(500, 'x');
    std::string expected;
    std::vector<std::thread> threads(4);
    testing::internal::CaptureStderr();
    for (std::thread& thread : threads)
        thread = std::thread([&] {
            for (int line = 0; line < 200; ++line)
                dev_debug_v1(6, 1, "f", 1, "f", "%s", text.c_str());
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int line = 0; line < 800; ++line)
        expected += "[6][1][f:1 f] " + text + "\n";
    EXPECT_TRUE(testing::internal::GetCapturedStderr() == expected);
}

TEST_F(PlatformDebug, RedirectionMovesOutputAndErrorAndBack) {
    int slots[] = {-7, -7};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(-1, rdirection_output_cancle(&slots[0], &slots[1]));
    printf("before ");
    EXPECT_EQ(0, redirect(file("one"), slots));
    EXPECT_GT(slots[0], STDERR_FILENO);
    EXPECT_GT(slots[1], STDERR_FILENO);
    printf("first ");
    EXPECT_EQ(-1, redirect(folder_, slots));  // a failed replacement leaves the first in place
    EXPECT_EQ(-1, slots[0]);
    dev_debug_v1(1, 1, "f", 1, "f", "error");
    EXPECT_EQ(0, redirect(file("two"), slots));
    printf("second");
    EXPECT_EQ(0, rdirection_output_cancle(&slots[0], &slots[1]));
    EXPECT_EQ(-1, slots[1]);
    printf("after");
    EXPECT_EQ(-1, rdirection_output_cancle(&slots[0], &slots[1]));
    dev_debug_v1(1, 1, "f", 1, "f", "error");
    EXPECT_EQ("before after", testing::internal::GetCapturedStdout());
    EXPECT_EQ("[1][1][f:1 f] error\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ("[1][1][f:1 f] error\nfirst ", contents(file("one")));
    EXPECT_EQ("second", contents(file("two")));
}

TEST_F(PlatformDebug, RedirectionRefusesBadTargets) {
    ASSERT_EQ(0, mkfifo(file("pipe").c_str(), 0600));
    int slots[] = {-7, -7};
    // The request's buffer is read up to 256 bytes and not beyond.
    const std::vector<char> unterminated(256, '/');
    EXPECT_EQ(-1, redirection_output(unterminated.data(), &slots[0], &slots[1]));
    EXPECT_EQ(-1, redirection_output(nullptr, &slots[0], &slots[1]));
    EXPECT_EQ(-1, redirection_output("/dev/null", nullptr, &slots[1]));
    for (const std::string& path :
         {std::string(), std::string("relative"), folder_, file("none/x"), file("pipe")}) {
        slots[0] = slots[1] = -7;
        EXPECT_TRUE(redirect(path, slots) == -1 && slots[0] == -1 && slots[1] == -1) << path;
    }
    EXPECT_EQ(-1, rdirection_output_cancle(&slots[0], &slots[1]));
}

TEST_F(PlatformDebug, PathsAndKeysFollowTheRoot) {
    constexpr key_t kKeys[] = {0x4442534D, 0x44425350, 0x44425351};
    for (const char* unset : {static_cast<const char*>(nullptr), ""}) {
        unset == nullptr ? unsetenv("DEVICE_ROOT") : setenv("DEVICE_ROOT", unset, 1);
        EXPECT_EQ("/devinfo/ipc_db", device_path("/devinfo/ipc_db"));
        EXPECT_EQ("/var/run/ipc", device_socket_dir());
        EXPECT_EQ(kKeys[0], device_ipc_key(kKeys[0]));
    }
    const auto keys = [&](const std::string& root) {
        setenv("DEVICE_ROOT", root.c_str(), 1);
        return std::vector<key_t>{device_ipc_key(kKeys[0]), device_ipc_key(kKeys[1]),
                                  device_ipc_key(kKeys[2])};
    };
    // As docs/protocol.md derives the keys.
    EXPECT_EQ(keys("/foobar-device"), (std::vector<key_t>{0x4159AFC5, 0x4159AFC0, 0x4159AFC1}));

    const std::string root = file("root");
    const std::vector<key_t> expected = keys(root);  // the folder is not there yet
    EXPECT_TRUE(device_prepare_root());
    for (const char* folder : {"/devinfo", "/velmora", "/var/run/ipc"})
        EXPECT_TRUE(fs::is_directory(root + folder)) << folder;
    EXPECT_EQ(root + "/devinfo/ipc_db", device_path("/devinfo/ipc_db"));

    fs::create_symlink(root, file("link"));
    const std::string relative = fs::relative(root);
    for (const std::string& spelling :
         {root + "/", root + "//", file("./root"), file("link"), file("link/"), relative}) {
        EXPECT_EQ(expected, keys(spelling)) << spelling;
        EXPECT_EQ('/', device_path("/x")[0]);
        EXPECT_TRUE(fs::equivalent(root + "/devinfo", device_path("/devinfo"))) << spelling;
    }
    EXPECT_NE(expected, keys(file("other")));
    std::ofstream(file("plain")) << "x";
    setenv("DEVICE_ROOT", file("plain").c_str(), 1);
    EXPECT_FALSE(device_prepare_root());
    EXPECT_EQ(ENOTDIR, errno);
}

TEST_F(PlatformDebug, MutexAndThreads) {
    EXPECT_EQ(EINVAL, pthreadMutexInit(nullptr));
    EXPECT_EQ(EINVAL, pthreadMutexLock(nullptr, -1));
    EXPECT_EQ(EINVAL, pthreadMutexUnlock(nullptr));
    static device_mutex mutex;
    ASSERT_EQ(0, pthreadMutexInit(&mutex));
    ASSERT_EQ(0, pthreadMutexLock(&mutex, -1));
    EXPECT_EQ(EDEADLK, pthreadMutexLock(&mutex, -1));

    using Outcome = std::promise<std::pair<int, std::string>>;
    const auto body = [](void* argument) -> void* {
        const std::unique_ptr<Outcome> outcome(static_cast<Outcome*>(argument));
        setPthreadName("a_name_that_is_too_long");
        setPthreadName(nullptr);
        char name[16] = {};
        pthread_getname_np(pthread_self(), name, sizeof name);
        outcome->set_value({pthreadMutexLock(&mutex, 1), name});
        return nullptr;
    };
    auto outcome = std::make_unique<Outcome>();
    auto result = outcome->get_future();
    pthread_t id{};
    EXPECT_EQ(-1, pthreadSpawn(&id, 50, 8192, nullptr, nullptr));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(-1, pthreadSpawn(nullptr, 50, 8192, body, nullptr));
    ASSERT_EQ(0, pthreadSpawn(&id, 50, 8192, body, outcome.release()));
    EXPECT_EQ(std::pair(ETIMEDOUT, std::string("a_name_that_is_")), result.get());
    EXPECT_EQ(0, pthreadMutexUnlock(&mutex));
}

}  // namespace
