// A request to the service against an echo over the same kind of socket, each between two threads of one process pinned to one
// processor, or to two.
#include <benchmark/benchmark.h>
#include <pthread.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "DB_process_service.h"
#include "device_debug.h"
#include "device_ipc.h"
#include "device_paths.h"
#include "request.h"
#include "state.h"

namespace {

void pin(int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(cpu, &set);
    sched_setaffinity(0, sizeof set, &set);
}

int server_cpu = 0;

// The service, its thread on the processor that the measurement names.
int pinned_service(void* buffer, int* reply_length, int kind) {
    thread_local int pinned = -1;
    if (pinned != server_cpu)
        pin(pinned = server_cpu);
    return db_service_task(buffer, reply_length, kind);
}

void request_round_trip(benchmark::State& state) {
    pin(0);
    server_cpu = static_cast<int>(state.range(0)) - 1;
    ServiceRequest request{};
    request.channel_no = static_cast<int32_t>(sizeof(DEVICECONFIG));
    for (auto _ : state) {
        int32_t reply = -1;
        if (ipc_unix_call_service(kServiceNumber, EN_CHECK_DEVCFG_THE_SAME, &request, sizeof request, 0,
                                  &reply, sizeof reply, 5000) != 0 ||
            reply != 0)
            std::exit(1);
    }
}

void socket_echo(benchmark::State& state) {
    pin(0);
    const int cpu = static_cast<int>(state.range(0)) - 1;
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0)
        std::exit(1);
    std::thread server([&] {
        pin(cpu);
        char packet[sizeof(ServiceRequest)];
        ssize_t n = 0;
        while ((n = recv(ends[1], packet, sizeof packet, 0)) > 0)
            if (send(ends[1], packet, static_cast<std::size_t>(n), 0) != n)
                return;
    });
    char packet[sizeof(ServiceRequest)] = {};
    for (auto _ : state)
        if (send(ends[0], packet, sizeof packet, 0) < 0 || recv(ends[0], packet, sizeof packet, 0) < 0)
            std::exit(1);
    shutdown(ends[0], SHUT_RDWR);
    server.join();
    close(ends[0]);
    close(ends[1]);
}

BENCHMARK(request_round_trip)
    ->ArgName("processors")
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK(socket_echo)->ArgName("processors")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    const std::string root = std::filesystem::temp_directory_path() / "bench_request";
    std::filesystem::create_directories(root);
    setenv("DEVICE_ROOT", root.c_str(), 1);
    device_prepare_root();
    const int quiet[2] = {-1, 0};
    set_debug_para_withcheck(quiet, 0, 0);
    benchmark::Initialize(&argc, argv);
    // The service's trace on standard output is written, as on a device, but not shown.
    std::ofstream report("/dev/fd/" + std::to_string(dup(STDOUT_FILENO)));
    if (std::freopen("/dev/null", "w", stdout) == nullptr ||
        ipc_unix_init("database_process", kServiceNumber, pinned_service, pinned_service) != 0)
        return 1;
    benchmark::ConsoleReporter reporter;
    reporter.SetOutputStream(&report);
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
