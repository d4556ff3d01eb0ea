#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
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

enum kind { kEcho = 1, kResult, kNested, kWait, kMeet, kDie };

std::counting_semaphore<> waiting(0);   // released by each kWait that has begun
std::counting_semaphore<> released(0);  // lets a kWait end
constexpr int kMeeting = 8;
std::barrier meeting(kMeeting);

int answer(void* buffer, int* reply_length, int request_kind) {
    int first = 0;
    std::memcpy(&first, buffer, sizeof first);
    switch (request_kind) {
        case kEcho:  // as long as the request asks for
            *reply_length = first;
            return 0;
        case kResult:
            *reply_length = 4;
            return first;
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

using Request = ipc_wire::request_header;
using Reply = ipc_wire::reply_header;

template <class Header>
std::vector<char> packet(const Header& header, size_t data_size) {
    std::vector<char> bytes(sizeof header + data_size, 'r');
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes;
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

int received_status(const unique_fd& fd) {
    Reply header{};
    EXPECT_GE(recv(fd.get(), &header, sizeof header, 0), static_cast<ssize_t>(sizeof header));
    EXPECT_EQ(ipc_wire::kReplyMagic, header.magic);
    return header.status;
}

void expect_end(const unique_fd& fd) {
    char byte;
    EXPECT_EQ(0, recv(fd.get(), &byte, 1, 0));
}

// A call without data.
int call(int service, int kind, int timeout = kPatience) {
    return ipc_unix_call_service(service, kind, nullptr, 0, 0, nullptr, 0, timeout);
}

// ---- a service in a process of its own: this program again, running only the test that serves

class ServiceProcess {
  public:
    // It runs its test whichever part of the tests this process runs.
    ServiceProcess()
        : output_(
              popen(("unset GTEST_TOTAL_SHARDS GTEST_SHARD_INDEX; exec '" +
                     fs::read_symlink("/proc/self/exe").string() +
                     "' --gtest_filter=*ServiceProcessBody --gtest_also_run_disabled_tests --gtest_brief=1")
                        .c_str(),
                    "re")) {
        const std::string greeting = "serving as ";
        char line[256];
        while (id_ < 0 && fgets(line, sizeof line, output_) != nullptr)
            if (std::string(line).starts_with(greeting))
                id_ = std::stoi(line + greeting.size());
        EXPECT_GT(id_, 0);
    }
    ~ServiceProcess() {
        if (id_ > 0)
            kill(id_, SIGKILL);
        pclose(output_);
    }
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

  private:
    FILE* output_;
    pid_t id_ = -1;
};

TEST(PlatformIpcProcess, DISABLED_ServiceProcessBody) {
    if (getenv("DEVICE_ROOT") == nullptr)
        GTEST_SKIP() << "runs only as the process of another test";
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit few{32, 32};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &few));
    ASSERT_EQ(0, ipc_unix_init("test", kService, answer, nullptr));
    dprintf(STDOUT_FILENO, "serving as %d\n", getpid());
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
        {kEcho, INT_MAX, 4, 65536, 0, 1024, 0},
        {kEcho, INT_MAX, 1025, 65536, 0, 1025, 0},
        {kEcho, -5, 4, 4, 0, 0, 0},
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
    const auto refused_call = [&](int service, const void* request, int length, int flags, void* reply,
                                  int capacity, int timeout) {
        return ipc_bad_argument ==
               ipc_unix_call_service(service, kEcho, request, length, flags, reply, capacity, timeout);
    };
    EXPECT_TRUE(refused_call(-1, &data, 4, 0, &data, 4, kPatience));
    EXPECT_TRUE(refused_call(kService, nullptr, 4, 0, &data, 4, kPatience));
    EXPECT_TRUE(refused_call(kService, &data, -4, 0, &data, 4, kPatience));
    EXPECT_TRUE(refused_call(kService, &data, 65537, 0, &data, 4, kPatience));
    EXPECT_TRUE(refused_call(kService, &data, 4, 1, &data, 4, kPatience));
    EXPECT_TRUE(refused_call(kService, &data, 4, 0, nullptr, 4, kPatience));
    EXPECT_TRUE(refused_call(kService, &data, 4, 0, &data, -4, kPatience));
    EXPECT_TRUE(refused_call(kService, &data, 4, 0, &data, 4, 0));
    EXPECT_EQ(ipc_unreachable, call(kService + 1, kEcho));
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
            EXPECT_EQ(0, call(kService, kMeet));
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
        {packet(Request{ipc_wire::kReplyMagic, kEcho, 4}, 4), ipc_wire::kMalformed},
        {packet(Request{magic, kEcho, 5}, 4), ipc_wire::kMalformed},
        {packet(Request{magic, kEcho, 3}, 4), ipc_wire::kMalformed},
        {packet(Request{magic, kEcho, 0xFFFFFFFF}, 0), ipc_wire::kMalformed},
        {packet(Request{magic, kEcho, 65537}, 65537), ipc_wire::kTooLarge},
    };
    const unique_fd peer = raw_socket(kService, connect);
    for (const auto& c : cases) {
        // A request right behind the bad packet is answered next: replies come in order.
        send_raw(peer, c.packet);
        send_raw(peer, packet(Request{magic, kEcho, 4}, 4));
        EXPECT_EQ(c.status, received_status(peer));
        EXPECT_EQ(ipc_wire::kAnswered, received_status(peer));
    }
    send_raw(peer, {});  // an empty packet ends the connection
    expect_end(peer);
    for (int round = 0; round < 200; ++round) {  // peers that go without waiting for an answer
        const unique_fd vanishing = raw_socket(kService, connect);
        if (round % 2 == 0)
            send_raw(vanishing, packet(Request{magic, kEcho, 4}, 4));
    }
    expect_service_answers();
}

TEST_F(PlatformIpc, SilentPeersGiveWay) {
    serve();
    std::vector<unique_fd> silent(100);
    for (unique_fd& peer : silent)
        peer = raw_socket(kService, connect);
    expect_service_answers();
    expect_end(silent.front());
}

TEST_F(PlatformIpc, CallersWaitWhileEveryConnectionIsBusy) {
    serve();
    constexpr int kMost = 65;
    std::vector<unique_fd> busy(kMost);
    for (unique_fd& peer : busy) {
        peer = raw_socket(kService, connect);
        send_raw(peer, packet(Request{ipc_wire::kRequestMagic, kWait, 0}, 0));
    }
    for (int peer = 0; peer < kMost; ++peer)
        waiting.acquire();
    EXPECT_EQ(ipc_timed_out, call(kService, kEcho, 20));
    released.release(kMost);
    // Served at once and not when the connections, which stay open, have been idle for 30 seconds.
    EXPECT_EQ(0, call(kService, kEcho, 25'000));
    for (const unique_fd& peer : busy)
        EXPECT_EQ(ipc_wire::kAnswered, received_status(peer));
}

TEST_F(PlatformIpc, ReportsAServiceThatMisbehaves) {
    constexpr uint32_t magic = ipc_wire::kReplyMagic;
    struct {
        std::vector<char> packet;
        int error;
    } const cases[] = {
        {{}, ipc_peer_vanished},
        {std::vector<char>(15), ipc_malformed_reply},
        {packet(Reply{ipc_wire::kRequestMagic, 0, 0, 4}, 4), ipc_malformed_reply},
        {packet(Reply{magic, 0, 0, 5}, 4), ipc_malformed_reply},
        {packet(Reply{magic, 0, 0, 3}, 4), ipc_malformed_reply},
        {packet(Reply{magic, 0, 0, 65537}, 65537), ipc_malformed_reply},
        {packet(Reply{magic, -1, 0, 0}, 0), ipc_malformed_reply},
        {packet(Reply{magic, 5, 0, 0}, 0), ipc_malformed_reply},
        {packet(Reply{magic, ipc_wire::kNotAllowed, 0, 0}, 0), ipc_not_allowed},
        {packet(Reply{magic, ipc_wire::kAnsweredEmpty, 0, 4}, 4), ipc_malformed_reply},
        {packet(Reply{magic, ipc_wire::kMalformed, 0, 0}, 0), ipc_refused},
        {packet(Reply{magic, 0, 0, 9}, 9), ipc_reply_too_large},
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
        EXPECT_EQ(ipc_timed_out, call(9, kEcho, 20));
}

TEST_F(PlatformIpc, CallTimesOutWhileTheHandlerWorks) {
    serve();
    EXPECT_EQ(ipc_timed_out, call(kService, kWait, 20));
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
    {
        const ServiceProcess first;
        EXPECT_EQ(-1, ipc_unix_init("test", kService, answer, answer));
        EXPECT_EQ(EADDRINUSE, errno);
        expect_service_answers();
        EXPECT_EQ(ipc_peer_vanished, call(kService, kDie));
    }
    EXPECT_EQ(ipc_unreachable, call(kService, kEcho));
    const ServiceProcess second;  // it may have 32 descriptors, and outlives that there are no more
    expect_service_answers();
    std::vector<unique_fd> silent(40);
    for (unique_fd& peer : silent)
        peer = raw_socket(kService, connect);
    expect_service_answers();
    silent.clear();
    for (int round = 0; round < 100; ++round)
        expect_service_answers();
}

}  // namespace
