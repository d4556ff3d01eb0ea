// A seeded stream of requests, valid and not, from several clients of which some are killed, while another process writes random
// bytes over the whole record.  The service must neither end nor grow, and must store and load as before afterwards.
//
//   request_stream [COUNT [SEED]]       20,000 requests; a private system in memory-backed folders, ended again
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "device_db.h"
#include "device_ipc.h"
#include "device_ipc_wire.h"
#include "device_paths.h"
#include "main_application.h"
#include "operation_log_format.h"
#include "programs.h"
#include "record_access.h"
#include "request.h"
#include "request_kinds.h"
#include "unique_fd.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kClients = 6, kTables = 254, kPatience = 120'000;  // milliseconds
constexpr long kRequestsPerKill = 500;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long kMayGrow = 200'000;  // KiB: what is freed waits for its reuse
#else
constexpr long kMayGrow = 2'000;
#endif

[[noreturn]] void fail(const std::string& sentence) {
    throw std::runtime_error(sentence);
}

// What the processes count together.
struct Tally {
    std::atomic<long> begun, answered, not_requests, abandoned, failed;
};
Tally& tally = *static_cast<Tally*>(
    mmap(nullptr, sizeof(Tally), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));

// ------------------------------------------------------------------------------------- a client

class Client {
  public:
    explicit Client(unsigned seed) : random_(seed) {}

    void send_until(long count) {
        while (tally.begun.fetch_add(1) < count)
            if (const unsigned choice = below(100); choice < 4)
                send_no_request();
            else if (choice < 7)
                leave();
            else
                request();
    }

  private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

    ServiceRequest any_request() {
        ServiceRequest request{};
        for (int32_t& table : request.table_name)
            table = static_cast<int32_t>(below(kTables + 2)) - 1;
        for (int32_t* index : {&request.channel_no, &request.sensor_no, &request.smd_type, &request.scene_no})
            *index = below(8) == 0 ? static_cast<int32_t>(random_()) : static_cast<int32_t>(below(4));
        const auto blocks = dbshell::dome_blocks();
        blocks[below(blocks.size())].name.copy(request.name, kNameLimit);
        return request;
    }
    // Not those that close the database, or write where they are told.
    int any_kind() {
        const unsigned choice = below(1000);
        if (choice < 350)
            return EN_UPDATE_ONE_TABLE_RECORD;
        if (choice < 750)
            return EN_GET_ONE_TABLE_RECORD;
        if (choice < 780)
            return static_cast<int>(random_());
        const auto kinds = dbshell::request_kinds();
        const int kind = kinds[below(kinds.size())].number;
        constexpr std::array kExcluded = {REDIRECTION_OUTPUT_OPEN, EN_CLOSE_DATABASE,
                                          EN_RESET_ALL_FACTORY_PARA, EN_RESET_FACTORY_PARA_MODE2};
        const bool excluded = std::find(kExcluded.begin(), kExcluded.end(), kind) != kExcluded.end();
        const bool costly = kind == EN_GET_ALL_RECORD || kind == EN_UPDATE_ALL_RECORD;
        return excluded || (costly && below(10) != 0) ? EN_GET_CURRENT_DB_VERSION : kind;
    }

    void request() {
        const ServiceRequest request = any_request();
        // Of any length: what is missing is zeros, what is too much is passed over.
        std::array<char, 2000> data{};
        std::memcpy(data.data(), &request, sizeof request);
        const int length =
            below(20) == 0 ? static_cast<int>(below(data.size())) : static_cast<int>(sizeof request);
        std::array<char, 1024> reply{};
        const int error = ipc_unix_call_service(kServiceNumber, any_kind(), data.data(), length, 0,
                                                reply.data(), reply.size(), kPatience);
        ++(error == 0 ? tally.answered : tally.failed);
    }

    static unique_fd connected() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        fmt::format("{}/{}.sock", device_socket_dir(), kServiceNumber)
            .copy(address.sun_path, sizeof address.sun_path - 1);
        unique_fd fd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
        if (connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            ++tally.failed;
        return fd;
    }
    std::string packet(uint32_t magic, int kind, uint32_t told, std::size_t length) {
        const ipc_wire::request_header header{magic, kind, told};
        std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
        for (std::size_t i = 0; i < length; ++i)
            bytes += static_cast<char>(random_());
        return bytes;
    }

    void send_no_request() {
        constexpr uint32_t magic = ipc_wire::kRequestMagic;
        const auto length = below(300);
        const int kind = any_kind();
        const std::string cases[] = {
            std::string(below(sizeof(ipc_wire::request_header)), 'x'),
            packet(static_cast<uint32_t>(random_()), kind, length, length),
            packet(magic, kind, static_cast<uint32_t>(random_()) | 0x10000, length),
            packet(magic, kind, ipc_wire::kMaxData + 1, below(50) == 0 ? ipc_wire::kMaxData + 1 : 0),
        };
        const unique_fd peer = connected();
        const std::string& bytes = cases[below(std::size(cases))];
        ++tally.not_requests;
        ipc_wire::reply_header reply{};
        if (send(peer.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) != std::ssize(bytes) ||
            (!bytes.empty() &&
             (recv(peer.get(), &reply, sizeof reply, 0) != sizeof reply ||
              (reply.status != ipc_wire::kMalformed && reply.status != ipc_wire::kTooLarge))))
            ++tally.failed;
    }

    // Goes without an answer, or stays silent for a while.
    void leave() {
        const ServiceRequest request = any_request();
        std::string bytes = packet(ipc_wire::kRequestMagic, any_kind(), sizeof request, 0);
        bytes.append(reinterpret_cast<const char*>(&request), sizeof request);
        unique_fd peer = connected();
        if (below(2) == 0 && send(peer.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
            ++tally.failed;
        if (below(4) == 0)
            silent_[below(silent_.size())] = std::move(peer);
        ++tally.abandoned;
    }

    std::mt19937 random_;
    std::array<unique_fd, 3> silent_;
};

// ------------------------------------------------------------------------------------- the processes

template <class Work>
pid_t forked(Work work) {
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    work();
    _exit(0);
}

// A device that has every capability.
std::vector<std::string> device() {
    std::vector<std::string> options{"--defaults", "random:1"};
    options.reserve(20);
    for (const Capability capability :
         {Capability::analytics_319, Capability::analytics_320, Capability::analytics_321,
          Capability::traffic_331, Capability::traffic_333, Capability::traffic_454,
          Capability::intelligent_monitor, Capability::colour_filter, Capability::platform_registration,
          Capability::judicial})
        options.push_back(fmt::format("--capability={}=1", static_cast<int>(capability)));
    for (const int item : {kAlarmInputs, kAlarmOutputs})
        options.push_back(fmt::format("--value={}:{}=4", kHardwareGroup, item));
    options.push_back(fmt::format("--value={}:{}=4", kRegistrationGroup, kEventSources));
    return options;
}

// Writes over the whole record: a few bytes, numbers that look like indexes, long runs.
[[noreturn]] void scribble(unsigned seed) {
    std::mt19937 random(seed);
    const SharedRecord shared = SharedRecord::attach();
    auto* const record = reinterpret_cast<volatile unsigned char*>(shared.get());
    while (true) {
        for (int spot = 0; spot < 200; ++spot) {
            const std::size_t from = random() % sizeof(DEVICECONFIG),
                              size = std::min<std::size_t>(1u << random() % 12, sizeof(DEVICECONFIG) - from);
            const bool small = random() % 2 == 0;
            for (std::size_t i = 0; i < size; ++i)
                record[from + i] = static_cast<unsigned char>(small ? random() % 3 : random());
        }
        std::this_thread::sleep_for(500us);
    }
}

// ------------------------------------------------------------------------------------- the system

struct Use {
    long descriptors = 0, kibibytes = 0, threads = 0;
};

class System {
  public:
    explicit System(unsigned seed) : random_(seed) {
        std::string pattern = "/dev/shm/stream-XXXXXX";
        root_ = mkdtemp(pattern.data());
        setenv("DEVICE_ROOT", root_.c_str(), 1);
        const std::string reports = "log_path=" + root_ + "/report:quarantine_size_mb=4";
        setenv("ASAN_OPTIONS", reports.c_str(), 1);
        setenv("TSAN_OPTIONS", ("log_path=" + root_ + "/report").c_str(), 1);
    }

    void start() {
        velmora_ = start_program("velmora", device());
        service_ = start_program("database_process");
        const auto deadline = Clock::now() + 120s;
        const auto has_loaded = [] {
            const auto loaded = Semaphore::find(kLoadedKey);
            return loaded && loaded->value() == 1;
        };
        for (; !has_loaded(); std::this_thread::sleep_for(20ms)) {
            expect_running();
            if (Clock::now() > deadline)
                fail("the system does not start");
        }
        scribbler_ = forked([this] { scribble(static_cast<unsigned>(random_())); });
    }
    ~System() {
        for (pid_t* pid : {&scribbler_, &service_, &velmora_})
            end_program(*pid, SIGKILL);
        for (pid_t& pid : clients_)
            end_program(pid, SIGKILL);
        remove_shared_objects();
        std::filesystem::remove_all(root_);
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    // Until `count` requests have been begun and every client has ended; what the service uses then.
    Use stream(long count) {
        for (pid_t& client : clients_)
            client = start_client(count);
        long killed_at = tally.begun;
        while (tally.begun < count) {
            std::this_thread::sleep_for(5ms);
            expect_running();
            for (; killed_at + kRequestsPerKill < tally.begun; killed_at += kRequestsPerKill) {
                pid_t& victim = clients_[random_() % clients_.size()];
                end_program(victim, SIGKILL);
                ++killed_;
                victim = start_client(count);
            }
        }
        for (pid_t& client : clients_)
            waitpid(std::exchange(client, 0), nullptr, 0);
        return settled_use();
    }

    void expect_running() {
        int status = 0;
        if (waitpid(service_, &status, WNOHANG) == 0)
            return;
        service_ = 0;
        for (const auto& file : std::filesystem::directory_iterator(root_))
            if (file.path().filename().string().starts_with("report"))
                fmt::print(stderr, "{}\n", content(file.path()));
        fail(fmt::format("the service has ended with status {:#x}", status));
    }

    // With nobody else writing, what is stored is loaded.
    void expect_service() {
        if (waitpid(scribbler_, nullptr, WNOHANG) != 0)
            fail("nobody has written over the record");
        end_program(scribbler_, SIGKILL);
        const SharedRecord record = SharedRecord::attach();
        const Cell name = find_cell(parse_address("chn_info.name"));
        set_cell(*record.get(), name, "North gate");
        call(EN_UPDATE_ONE_TABLE_RECORD, 3);
        set_cell(*record.get(), name, "-");
        call(EN_GET_ONE_TABLE_RECORD, 3);
        if (cell_text(*record.get(), name) != "North gate")
            fail("what was stored is not loaded");
        call(EN_GET_ALL_RECORD, 0);
        if (check_inactive_db_integrity(device_path(kDatabaseFile).c_str()) != 0)
            fail("the database is damaged");
        if (operation_log_size() > kLogFileSize)
            fail("the operation log has grown");
    }

    static long operation_log_size() { return std::ssize(content(device_path(kOperationLogFile))); }
    int killed() const { return killed_; }

  private:
    pid_t start_client(long count) {
        return forked([count, seed = static_cast<unsigned>(random_())] { Client(seed).send_until(count); });
    }

    static void call(int kind, int table) {
        ServiceRequest request{};
        request.table_name[0] = table;
        int32_t reply = 0;
        const int error = ipc_unix_call_service(kServiceNumber, kind, &request, sizeof request, 0, &reply,
                                                sizeof reply, kPatience);
        if (error != 0 || reply != 0)
            fail(fmt::format("request {:#x}: {} Reply {}", kind, ipc_error_text(error), reply));
    }

    // Connections of clients that are gone end soon.
    Use settled_use() const {
        Use use = current_use();
        for (int quiet = 0; quiet < 10; ++quiet) {
            std::this_thread::sleep_for(100ms);
            const Use now = current_use();
            if (now.descriptors != use.descriptors)
                quiet = 0;
            use = now;
        }
        return use;
    }
    Use current_use() const {
        const std::string process = fmt::format("/proc/{}/", service_);
        Use use;
        use.descriptors = std::distance(std::filesystem::directory_iterator(process + "fd"), {});
        std::ifstream status(process + "status");
        for (std::string word; status >> word;)
            if (word == "VmRSS:")
                status >> use.kibibytes;
            else if (word == "Threads:")
                status >> use.threads;
        return use;
    }
    static std::string content(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::mt19937 random_;
    std::string root_;
    pid_t velmora_ = 0, service_ = 0, scribbler_ = 0;
    std::array<pid_t, kClients> clients_{};
    int killed_ = 0;
};

void print(const char* when, const Use& use) {
    fmt::print("{}: {} descriptors, {} threads, {} KiB resident\n", when, use.descriptors, use.threads,
               use.kibibytes);
}

void run(long count, unsigned seed) {
    System system(seed);
    system.start();
    const auto begun = Clock::now();
    const Use warm = system.stream(count / 5);
    print("after a fifth", warm);
    const Use end = system.stream(count);
    print("at the end", end);
    const double seconds = std::chrono::duration<double>(Clock::now() - begun).count();
    fmt::print(
        "{} requests in {:.0f} s: {} answered, {} packets that are none, {} abandoned, {} failed, {} clients killed; "
        "operation log {} bytes\n",
        count, seconds, tally.answered.load(), tally.not_requests.load(), tally.abandoned.load(),
        tally.failed.load(), system.killed(), System::operation_log_size());
    system.expect_service();
    if (tally.failed != 0)
        fail("a request was not answered as it should be");
    if (end.descriptors > warm.descriptors)
        fail("descriptors are not closed");
    if (end.kibibytes > warm.kibibytes + kMayGrow)
        fail("memory grows");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        run(argc > 1 ? std::stol(argv[1]) : 20'000,
            argc > 2 ? static_cast<unsigned>(std::stoul(argv[2])) : 1);
    } catch (const std::exception& error) {
        fmt::print(stderr, "request_stream: {}\n", error.what());
        return 1;
    }
    return 0;
}
