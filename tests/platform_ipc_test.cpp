#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <barrier>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "device_ipc.h"
#include "device_ipc_wire.h"
#include "device_paths.h"
#include "unique_fd.h"

namespace fs = std::filesystem;

namespace {

constexpr int kService = 6;
constexpr int kPatience = 60'000;  // ms; far more than any call needs

// ---- the service under test

enum kind { kEcho = 1, kEchoHead, kResult, kHugeLength, kNegativeLength, kNested, kWait, kMeet, kDie };

std::counting_semaphore<> waiting(0);   // released by each kWait that has begun
std::counting_semaphore<> released(0);  // lets a kWait end
constexpr int kMeeting = 8;
std::barrier meeting(kMeeting);

int answer(void* buffer, int* reply_length, int request_kind) {
    int first = 0;
    std::memcpy(&first, buffer, sizeof first);
    switch (request_kind) {
        case kEcho:  // as many bytes as the request asks for
            *reply_length = first;
            return 0;
        case kResult:
            *reply_length = 4;
            return first;
        case kHugeLength:
            *reply_length = INT_MAX;
            return 0;
        case kNegativeLength:
            *reply_length = -5;
            return 0;
        case kNested:
            return ipc_unix_call_service(kService, kEcho, buffer, 4, 0, buffer, 1024, kPatience,
                                         reply_length);
        case kWait:
            waiting.release();
            released.acquire();
            return 0;
        case kMeet:
            meeting.arrive_and_wait();
            return 0;
        case kDie:
            return kill(getpid(), SIGKILL);
        default:
            return -1;
    }
}

// ---- raw peers

std::vector<char> request_packet(uint32_t magic, int kind, uint32_t length, size_t data_size) {
    const ipc_wire::request_header header{magic, kind, length};
    std::vector<char> packet(sizeof header + data_size);
    std::memcpy(packet.data(), &header, sizeof header);
    return packet;
}

std::vector<char> reply_packet(uint32_t magic, int status, uint32_t length, size_t data_size) {
    const ipc_wire::reply_header header{magic, status, 0, length};
    std::vector<char> packet(sizeof header + data_size, 'r');
    std::memcpy(packet.data(), &header, sizeof header);
    return packet;
}

unique_fd raw_socket(int service, int (*attach)(int, const sockaddr*, socklen_t)) {
    sockaddr_un name{AF_UNIX, {}};
    const std::string path = device_socket_dir() + "/" + std::to_string(service) + ".sock";
    path.copy(name.sun_path, sizeof name.sun_path - 1);
    unique_fd fd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    EXPECT_EQ(0, attach(fd.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name)) << path;
    return fd;
}

void send_raw(const unique_fd& fd, const std::vector<char>& packet) {
    EXPECT_EQ(static_cast<ssize_t>(packet.size()),
              send(fd.get(), packet.data(), packet.size(), MSG_NOSIGNAL));
}

ipc_wire::reply_header receive_header(const unique_fd& fd) {
    ipc_wire::reply_header header{};
    EXPECT_GE(recv(fd.get(), &header, sizeof header, 0), static_cast<ssize_t>(sizeof header));
    EXPECT_EQ(ipc_wire::kReplyMagic, header.magic);
    return header;
}

// ---- a service in a process of its own: this program again, running only the test that serves

class ServiceProcess {
  public:
    ServiceProcess() {
        int ends[2];
        EXPECT_EQ(0, pipe2(ends, O_CLOEXEC));
        const unique_fd reading(ends[0]);
        unique_fd writing(ends[1]);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
        // It runs its test whichever part of the tests this process runs.
        unsetenv("GTEST_TOTAL_SHARDS");
        unsetenv("GTEST_SHARD_INDEX");
        char program[] = "/proc/self/exe";
        char filter[] = "--gtest_filter=*ServiceProcessBody";
        char disabled[] = "--gtest_also_run_disabled_tests";
        char brief[] = "--gtest_brief=1";
        char* arguments[] = {program, filter, disabled, brief, nullptr};
        EXPECT_EQ(0, posix_spawn(&id_, program, &actions, nullptr, arguments, environ));
        posix_spawn_file_actions_destroy(&actions);
        writing.reset();
        char byte = 0;
        do {
            ready_ = read(reading.get(), &byte, 1) == 1;
        } while (ready_ && byte != '!');
    }
    ~ServiceProcess() { end(); }

    bool ready() const { return ready_; }
    void end() {
        if (id_ > 0) {
            kill(id_, SIGKILL);
            waitpid(id_, nullptr, 0);
        }
        id_ = -1;
    }

  private:
    pid_t id_ = -1;
    bool ready_ = false;
};

TEST(PlatformIpcProcess, DISABLED_ServiceProcessBody) {
    if (getenv("DEVICE_ROOT") == nullptr)
        GTEST_SKIP() << "runs only as the process of another test";
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit few{32, 32};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &few));
    ASSERT_EQ(0, ipc_unix_init("test", kService, answer, nullptr));
    ASSERT_EQ(1, write(STDOUT_FILENO, "!", 1));
    while (true)
        pause();
}

class PlatformIpc : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "ipcXXXXXX";
        root_ = mkdtemp(pattern.data());
        use_root(root_);
    }
    void TearDown() override {
        unsetenv("DEVICE_ROOT");
        fs::remove_all(root_);
    }
    static void use_root(const std::string& root) {
        setenv("DEVICE_ROOT", root.c_str(), 1);
        ASSERT_TRUE(device_prepare_root());
    }
    static void serve() { ASSERT_EQ(0, ipc_unix_init("test", kService, nullptr, answer)) << strerror(errno); }
    static void expect_service_answers() {
        const int request = 4;
        int reply = 0;
        EXPECT_EQ(0, ipc_unix_call_service(kService, kEcho, &request, 4, 0, &reply, 4, kPatience));
        EXPECT_EQ(4, reply);
    }
    std::string root_;
};

TEST_F(PlatformIpc, RepliesAsTheHandlerSays) {
    serve();
    struct {
        int kind, first, request_length, capacity, error, reply_length, result;
    } const cases[] = {
        {kEcho, 4, 4, 4, 0, 4, 0},
        {kEcho, 0, 0, 0, 0, 0, 0},
        {kEcho, 1024, 4, 1024, 0, 1024, 0},
        {kEcho, 65536, 65536, 65536, 0, 65536, 0},
        {kEcho, 65537, 65536, 65536, 0, 65536, 0},
        {kEcho, 5, 4, 4, ipc_reply_too_large, 0, 0},
        {kHugeLength, 0, 4, 65536, 0, 1024, 0},
        {kHugeLength, 0, 1025, 65536, 0, 1025, 0},
        {kNegativeLength, 0, 4, 4, 0, 0, 0},
        {kResult, 1, 4, 4, 0, 0, 1},
        {kResult, -1, 4, 4, 0, 0, -1},
        {kNested, 12, 4, 1024, 0, 12, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << "kind " << c.kind << " first " << c.first << " of " << c.request_length);
        std::string request(static_cast<size_t>(c.request_length), 'q');
        if (c.request_length >= 4)
            std::memcpy(request.data(), &c.first, 4);
        std::string reply(static_cast<size_t>(c.capacity), '#');
        int length = -7;
        int result = -7;
        EXPECT_EQ(c.error, ipc_unix_call_service(kService, c.kind, request.data(), c.request_length, 0,
                                                 reply.data(), c.capacity, kPatience, &length, &result));
        EXPECT_EQ(c.error == 0 ? c.reply_length : -7, length);
        EXPECT_EQ(c.error == 0 ? c.result : -7, result);
        std::string expected = request;
        expected.resize(static_cast<size_t>(c.reply_length));  // the buffer behind the request is zero
        expected.resize(reply.size(), '#');                    // and the reply behind its data untouched
        EXPECT_EQ(expected, reply);
    }
    const int request = 100;
    EXPECT_EQ(0, ipc_unix_call_service(kService, kEcho, &request, 4, 0, nullptr, 0, kPatience));
}

// Credentials count, not only the modes, which this test opens.
TEST_F(PlatformIpc, ServesRootItsUserAndTheSocketsGroup) {
    serve();
    const std::string socket_file = device_socket_dir() + "/6.sock";
    EXPECT_EQ(fs::perms(0660), fs::status(socket_file).permissions());
    EXPECT_EQ(fs::perms(0750), fs::status(device_socket_dir()).permissions());
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can be somebody else";
    for (const char* folder : {"", "/var", "/var/run", "/var/run/ipc"})
        fs::permissions(root_ + folder, fs::perms(0755));
    fs::permissions(socket_file, fs::perms(0666));
    struct {
        uid_t user;
        gid_t group;
        std::vector<gid_t> further;
        int error;
    } const cases[] = {
        {65534, 65534, {}, ipc_not_allowed},
        {65534, 0, {}, 0},
        {65534, 65534, {7, 0}, 0},
        {65534, 65534, std::vector<gid_t>(100, 7), ipc_not_allowed},
        {0, 65534, {}, 0},
    };
    for (const auto& c : cases) {
        const pid_t child = fork();
        if (child == 0) {
            int error = -99;
            if (setgroups(c.further.size(), c.further.data()) == 0 && setgid(c.group) == 0 &&
                setuid(c.user) == 0) {
                const int request = 4;
                error = ipc_unix_call_service(kService, kEcho, &request, 4, 0, nullptr, 0, kPatience);
            }
            _exit(-error);
        }
        int status = 0;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        EXPECT_EQ(-c.error, WEXITSTATUS(status)) << c.user << ' ' << c.group << ' ' << c.further.size();
    }
}

TEST_F(PlatformIpc, RefusesBadArguments) {
    serve();
    int data = 4;
    const auto call = [&](int service, const void* request, int length, int flags, void* reply, int capacity,
                          int timeout) {
        return ipc_unix_call_service(service, kEcho, request, length, flags, reply, capacity, timeout);
    };
    EXPECT_EQ(ipc_bad_argument, call(-1, &data, 4, 0, &data, 4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, nullptr, 4, 0, &data, 4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, &data, -4, 0, &data, 4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, &data, 65537, 0, &data, 4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, &data, 4, 1, &data, 4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, &data, 4, 0, nullptr, 4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, &data, 4, 0, &data, -4, kPatience));
    EXPECT_EQ(ipc_bad_argument, call(kService, &data, 4, 0, &data, 4, 0));
    EXPECT_EQ(ipc_unreachable, call(kService + 1, &data, 4, 0, &data, 4, kPatience));
    for (int error = ipc_no_resources; error < 0; ++error)
        EXPECT_STRNE(ipc_error_text(1), ipc_error_text(error));

    const auto refused = [](int result) { return result == -1 && errno == EINVAL; };
    EXPECT_TRUE(refused(ipc_unix_init(nullptr, 7, answer, answer)));
    EXPECT_TRUE(refused(ipc_unix_init("", 7, answer, answer)));
    EXPECT_TRUE(refused(ipc_unix_init("test", -1, answer, answer)));
    EXPECT_TRUE(refused(ipc_unix_init("test", 7, nullptr, nullptr)));
}

TEST_F(PlatformIpc, ServesCallersAtTheSameTime) {
    serve();
    std::vector<std::thread> callers(kMeeting);
    for (size_t caller = 0; caller < callers.size(); ++caller) {
        callers[caller] = std::thread([caller] {
            EXPECT_EQ(0, ipc_unix_call_service(kService, kMeet, nullptr, 0, 0, nullptr, 0, kPatience));
            for (int round = 0; round < 100; ++round) {
                const int request[] = {8, static_cast<int>(caller) * 1000 + round};
                int reply[2] = {};
                EXPECT_EQ(0, ipc_unix_call_service(kService, kEcho, request, 8, 0, reply, 8, kPatience));
                EXPECT_EQ(request[1], reply[1]);
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();
}

TEST_F(PlatformIpc, AnswersPacketsThatAreNoRequest) {
    serve();
    constexpr uint32_t magic = ipc_wire::kRequestMagic;
    struct {
        std::vector<char> packet;
        int status;
    } const cases[] = {
        {std::vector<char>(1), ipc_wire::kMalformed},
        {std::vector<char>(11), ipc_wire::kMalformed},
        {request_packet(ipc_wire::kReplyMagic, kEcho, 4, 4), ipc_wire::kMalformed},
        {request_packet(magic, kEcho, 5, 4), ipc_wire::kMalformed},
        {request_packet(magic, kEcho, 3, 4), ipc_wire::kMalformed},
        {request_packet(magic, kEcho, 0xFFFFFFFF, 0), ipc_wire::kMalformed},
        {request_packet(magic, kEcho, 65537, 65537), ipc_wire::kTooLarge},
    };
    const unique_fd peer = raw_socket(kService, connect);
    for (const auto& c : cases) {
        // A request right behind the bad packet is answered next: replies come in order.
        send_raw(peer, c.packet);
        send_raw(peer, request_packet(magic, kEcho, 4, 4));
        EXPECT_EQ(c.status, receive_header(peer).status);
        EXPECT_EQ(ipc_wire::kAnswered, receive_header(peer).status);
    }
    send_raw(peer, {});  // an empty packet ends the connection
    char byte;
    EXPECT_EQ(0, recv(peer.get(), &byte, 1, 0));
    for (int round = 0; round < 200; ++round) {  // peers that go without waiting for an answer
        const unique_fd vanishing = raw_socket(kService, connect);
        if (round % 2 == 0)
            send_raw(vanishing, request_packet(magic, kEcho, 4, 4));
    }
    expect_service_answers();
}

TEST_F(PlatformIpc, SilentPeersGiveWay) {
    serve();
    std::vector<unique_fd> silent(100);
    for (unique_fd& peer : silent)
        peer = raw_socket(kService, connect);
    expect_service_answers();
    char byte;
    EXPECT_EQ(0, recv(silent.front().get(), &byte, 1, 0));
}

TEST_F(PlatformIpc, CallersWaitWhileEveryConnectionIsBusy) {
    serve();
    constexpr int kMost = 65;
    std::vector<unique_fd> busy(kMost);
    for (unique_fd& peer : busy) {
        peer = raw_socket(kService, connect);
        send_raw(peer, request_packet(ipc_wire::kRequestMagic, kWait, 0, 0));
    }
    for (int peer = 0; peer < kMost; ++peer)
        waiting.acquire();
    EXPECT_EQ(ipc_timed_out, ipc_unix_call_service(kService, kEcho, nullptr, 0, 0, nullptr, 0, 20));
    released.release(kMost);
    // Served at once and not when the connections, which stay open, have been idle for 30 seconds.
    EXPECT_EQ(0, ipc_unix_call_service(kService, kEcho, nullptr, 0, 0, nullptr, 0, 25'000));
    for (const unique_fd& peer : busy)
        EXPECT_EQ(ipc_wire::kAnswered, receive_header(peer).status);
}

TEST_F(PlatformIpc, ReportsAServiceThatMisbehaves) {
    constexpr uint32_t magic = ipc_wire::kReplyMagic;
    struct {
        std::vector<char> packet;
        int error;
    } const cases[] = {
        {{}, ipc_peer_vanished},
        {std::vector<char>(15), ipc_malformed_reply},
        {reply_packet(ipc_wire::kRequestMagic, 0, 4, 4), ipc_malformed_reply},
        {reply_packet(magic, 0, 5, 4), ipc_malformed_reply},
        {reply_packet(magic, 0, 3, 4), ipc_malformed_reply},
        {reply_packet(magic, 0, 65537, 65537), ipc_malformed_reply},
        {reply_packet(magic, -1, 0, 0), ipc_malformed_reply},
        {reply_packet(magic, 5, 0, 0), ipc_malformed_reply},
        {reply_packet(magic, ipc_wire::kNotAllowed, 0, 0), ipc_not_allowed},
        {reply_packet(magic, ipc_wire::kAnsweredEmpty, 4, 4), ipc_malformed_reply},
        {reply_packet(magic, ipc_wire::kMalformed, 0, 0), ipc_refused},
        {reply_packet(magic, 0, 9, 9), ipc_reply_too_large},
    };
    const unique_fd listener = raw_socket(9, bind);
    ASSERT_EQ(0, listen(listener.get(), 0));
    for (const auto& c : cases) {
        std::thread service([&] {
            const unique_fd peer(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            char request[64];
            EXPECT_EQ(16, recv(peer.get(), request, sizeof request, 0));
            send_raw(peer, c.packet);
        });
        char reply[] = "########";
        int length = -7;
        EXPECT_EQ(c.error, ipc_unix_call_service(9, kEcho, reply, 4, 0, reply, 8, kPatience, &length));
        EXPECT_STREQ("########", reply);
        EXPECT_EQ(-7, length);
        service.join();
    }
    // Nobody accepts: the first call waits for its reply, a later one for its connection.
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(ipc_timed_out, ipc_unix_call_service(9, kEcho, nullptr, 0, 0, nullptr, 0, 20));
}

TEST_F(PlatformIpc, CallTimesOutWhileTheHandlerWorks) {
    serve();
    EXPECT_EQ(ipc_timed_out, ipc_unix_call_service(kService, kWait, nullptr, 0, 0, nullptr, 0, 20));
    waiting.acquire();  // the request is executed all the same
    expect_service_answers();
    released.release();
}

TEST_F(PlatformIpc, WorksBelowARootOfAnyLength) {
    use_root(root_ + "/" + std::string(200, 'r') + "/" + std::string(200, 's'));
    serve();
    expect_service_answers();
    EXPECT_TRUE(fs::is_socket(device_socket_dir() + "/6.sock"));
}

TEST_F(PlatformIpc, NumberBelongsToOneLiveProcess) {
    ServiceProcess first;
    ASSERT_TRUE(first.ready());
    EXPECT_EQ(-1, ipc_unix_init("test", kService, answer, answer));
    EXPECT_EQ(EADDRINUSE, errno);
    expect_service_answers();

    EXPECT_EQ(ipc_peer_vanished, ipc_unix_call_service(kService, kDie, nullptr, 0, 0, nullptr, 0, kPatience));
    first.end();
    EXPECT_EQ(ipc_unreachable, ipc_unix_call_service(kService, kEcho, nullptr, 0, 0, nullptr, 0, kPatience));
    ServiceProcess second;
    ASSERT_TRUE(second.ready());
    expect_service_answers();
}

TEST_F(PlatformIpc, ServiceOutlivesItsDescriptors) {
    ServiceProcess service;  // it may have 32
    ASSERT_TRUE(service.ready());
    std::vector<unique_fd> silent(40);
    for (unique_fd& peer : silent)
        peer = raw_socket(kService, connect);
    expect_service_answers();
    silent.clear();
    for (int round = 0; round < 100; ++round)
        expect_service_answers();
}

}  // namespace
