// call, status, kinds: requests to the service "database_process", and whether the system is up.
#include <fmt/format.h>
#include <sys/stat.h>
#include <time.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

#include "dbctl_commands.h"
#include "dbctl_output.h"
#include "device_ipc.h"
#include "device_paths.h"
#include "operation_log_format.h"
#include "request.h"
#include "request_kinds.h"
#include "shared_objects.h"
#include "well_known.h"

// Behind the others: the words of the catalogue are macros.
#include "catalogue.h"

namespace {

using namespace dbshell;

// ------------------------------------------------------------------------------------------- requests

// Empty when the text is no number.
std::optional<int> number_in(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : 0);
    int number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

struct Answer {
    int error = 0;                 // an ipc_error, or 0
    std::optional<int32_t> reply;  // empty: the kind has none
};

Answer ask(int kind, const void* request, std::size_t length, int timeout_ms) {
    int32_t reply = 0;
    int reply_length = 0;
    Answer answer;
    answer.error = ipc_unix_call_service(kServiceNumber, kind, request, static_cast<int>(length), 0, &reply,
                                         sizeof reply, timeout_ms, &reply_length, nullptr);
    if (answer.error == 0 && reply_length == sizeof reply)
        answer.reply = reply;
    return answer;
}

struct CallOptions {
    Output out;
    std::string kind, name;
    std::vector<std::string> tables;
    int channel = 0, sensor = 0, smd = 0, scene = 0, module = -1, level = 6, timeout_ms = 10000;
    bool channel_given = false;
};

int table_number(const std::string& text) {
    if (const auto number = number_in(text))
        return *number;
    int first = 0;
    for (const Table* table : tables_named(text)) {
        if (first == 0)
            first = table->number;
        else if (table->number != 0)
            std::fprintf(stderr, "dbctl: %s is number %d here; its fields under number %d are left out\n",
                         text.c_str(), first, table->number);
    }
    if (first == 0)
        throw Failure(kUnknownName,
                      fmt::format("{0} has no number in the registry; `dbctl describe {0}` tells the "
                                  "request kinds that save it",
                                  text));
    return first;
}

ServiceRequest request_of(const CallOptions& options, int kind) {
    ServiceRequest request{};
    if (options.tables.size() > kTableListSize)
        throw Failure(kUsage, fmt::format("a request takes at most {} tables", kTableListSize));
    std::fill(std::begin(request.table_name), std::end(request.table_name), kTableListEnd);
    std::transform(options.tables.begin(), options.tables.end(), request.table_name, table_number);
    request.channel_no = kind == EN_CHECK_DEVCFG_THE_SAME && !options.channel_given
                             ? static_cast<int32_t>(sizeof(DEVICECONFIG))
                             : options.channel;
    request.sensor_no = options.sensor;
    request.smd_type = options.smd;
    request.scene_no = options.scene;
    if (options.name.size() > kNameLimit)
        throw Failure(kUsage, fmt::format("a name has at most {} bytes", kNameLimit));
    std::memcpy(request.name, options.name.data(), options.name.size());
    return request;
}

// The bytes that a kind's handler expects.
std::string encoded_request(const CallOptions& options, int kind) {
    if (kind == REDIRECTION_OUTPUT_OPEN)
        return options.name + '\0';
    const auto bytes_of = [](const auto& record) {
        return std::string(reinterpret_cast<const char*>(&record), sizeof record);
    };
    if (kind == BROADCAST_SET_DEBUG)
        return bytes_of(std::array<int32_t, 2>{options.module, options.level});
    return bytes_of(request_of(options, kind));
}

int call(const CallOptions& options) {
    const auto number = number_in(options.kind);
    const RequestKind* kind = number ? find_request_kind(*number) : find_request_kind(options.kind);
    if (!number && kind == nullptr)
        throw Failure(kUnknownName, fmt::format("there is no request kind \"{}\"; `dbctl kinds` tells them",
                                                escaped(options.kind)));
    if (kind != nullptr && kind->args == Args::table && options.tables.empty())
        throw Failure(kUsage, fmt::format("{} takes --table", kind->name));
    const int kind_number = kind != nullptr ? kind->number : *number;
    const std::string request = encoded_request(options, kind_number);
    const Answer answer = ask(kind_number, request.data(), request.size(), options.timeout_ms);
    if (answer.error != 0)
        throw Failure(answer.error == ipc_timed_out ? kTimedOut : kUnreachable, ipc_error_text(answer.error));
    if (options.out.json) {
        Json result = Json::object();
        result["kind"] = kind != nullptr ? std::string(kind->name) : fmt::format("{:#x}", kind_number);
        result["reply"] = answer.reply ? Json(*answer.reply) : Json(nullptr);
        print_line(result.dump());
    } else if (answer.reply) {
        print_line(std::to_string(*answer.reply));
    } else {
        std::fprintf(stderr, "dbctl: done; this kind has no reply\n");
    }
    return answer.reply && *answer.reply < 0 ? kNegativeReply : kOk;
}

// ------------------------------------------------------------------------------------------- status

// Long enough for an idle service; a busy one is told as it is.
constexpr int kStatusTimeout = 1000;

std::optional<int32_t> service_number(int kind, ServiceRequest request = {}) {
    return ask(kind, &request, sizeof request, kStatusTimeout).reply;
}

Json or_null(std::optional<int32_t> number) {
    return number ? Json(*number) : Json(nullptr);
}

// A packed version's major number; a negative code stays one.
Json version_json(std::optional<int32_t> packed) {
    return packed && *packed >= 0 ? Json(*packed >> 8) : or_null(packed);
}

Json file_size(const std::string& path) {
    struct stat state {};
    return stat(path.c_str(), &state) == 0 ? Json(state.st_size) : Json(nullptr);
}

Json semaphore_id(const std::optional<Semaphore>& semaphore) {
    return semaphore ? Json(semaphore->id()) : Json(nullptr);
}

Json semaphore_value(const std::optional<Semaphore>& semaphore) {
    return semaphore && semaphore->value() >= 0 ? Json(semaphore->value()) : Json(nullptr);
}

Json key_json(key_t fixed) {
    return static_cast<uint32_t>(device_ipc_key(fixed));
}

// The record is loaded, and the service lives: the semaphore outlives it.
bool is_ready() {
    const auto semaphore = Semaphore::find(kLoadedKey);
    return semaphore && semaphore->value() == 1 && service_number(EN_GET_CURRENT_DB_VERSION);
}

Json system_status() {
    const auto segment = find_segment();
    const auto ready = Semaphore::find(kLoadedKey), defaults = Semaphore::find(kDefaultsKey);
    const std::string database = device_path(kDatabaseFile), backup = device_path(kDatabaseBackupFile);
    const auto current = service_number(EN_GET_CURRENT_DB_VERSION);
    std::optional<int32_t> stored, old, same_size;
    if (current) {
        stored = service_number(EN_GET_ONE_TABLE_RECORD);
        old = service_number(EN_GET_OLD_DB_VERSION);
        ServiceRequest size{};
        size.channel_no = sizeof(DEVICECONFIG);
        same_size = service_number(EN_CHECK_DEVCFG_THE_SAME, size);
    }
    Json status = Json::object();
    status["ready"] = is_ready();
    status["segment_id"] = segment ? Json(segment->id) : Json(nullptr);
    status["segment_bytes"] = segment ? Json(segment->size) : Json(nullptr);
    status["semaphore_ids"] = {semaphore_id(ready), semaphore_id(defaults)};
    status["semaphore_values"] = {semaphore_value(ready), semaphore_value(defaults)};
    status["keys"] = {{"segment", key_json(kRecordKey)},
                      {"semaphores", {key_json(kLoadedKey), key_json(kDefaultsKey)}}};
    const std::string root = device_path("");
    status["paths"] = {{"root", root.empty() ? "/" : root},
                       {"database", database},
                       {"backup", backup},
                       {"operation_log", device_path(kOperationLogFile)},
                       {"socket", fmt::format("{}/{}.sock", device_socket_dir(), kServiceNumber)}};
    status["versions"] = {
        {"current", version_json(current)}, {"stored", version_json(stored)}, {"old", version_json(old)}};
    status["health"] = {{"service_reachable", current.has_value()},
                        {"record_size_matches", same_size ? Json(*same_size == 0) : Json(nullptr)},
                        {"database_present", !file_size(database).is_null()},
                        {"database_bytes", file_size(database)},
                        {"backup_bytes", file_size(backup)}};
    return status;
}

// False when the record is not loaded within the time.
bool wait_until_ready(double seconds) {
    constexpr timespec kPause{.tv_sec = 0, .tv_nsec = 10'000'000};
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!is_ready()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        nanosleep(&kPause, nullptr);
    }
    return true;
}

// ------------------------------------------------------------------------------------------- kinds

void print_kinds(const Output& out) {
    TextTable table({"number", "name", "arguments", "available"});
    for (const RequestKind& kind : request_kinds())
        table.add({fmt::format("{:#x}", static_cast<int>(kind.number)), std::string(kind.name),
                   std::string(args_text(kind.args)), is_available(kind)});
    table.print(out);
}

}  // namespace

void add_service_commands(CLI::App& app, int& exit_status) {
    auto* const call_command =
        app.add_subcommand("call", "send a request to the service and print its reply");
    const auto options = std::make_shared<CallOptions>();
    call_command->add_option("kind", options->kind, "a name or number; `dbctl kinds` lists them")
        ->required()
        ->type_name("KIND");
    call_command
        ->add_option("--table", options->tables, "a table, by name or number; again for each of a list")
        ->type_name("TABLE")
        ->allow_extra_args(false);
    auto* const channel =
        call_command->add_option("--channel", options->channel,
                                 "channel from 0; EN_CHECK_DEVCFG_THE_SAME: the record's size in bytes");
    call_command->add_option("--sensor", options->sensor, "sensor from 0");
    call_command->add_option("--smd", options->smd, "smart-detection type from 0 to 9");
    call_command->add_option("--scene", options->scene, "scene from 0");
    call_command
        ->add_option("--name", options->name,
                     "EN_SAVE_DOME_BLOCK: the name; REDIRECTION_OUTPUT_OPEN: the terminal or file")
        ->type_name("TEXT");
    call_command->add_option("--module", options->module,
                             "BROADCAST_SET_DEBUG: a module, or -1 for all (-1)");
    call_command->add_option("--level", options->level, "BROADCAST_SET_DEBUG: messages up to this level (6)");
    call_command->add_option("--timeout", options->timeout_ms, "how long to wait for the reply (10000)")
        ->type_name("MS")
        ->check(CLI::PositiveNumber);
    call_command->add_flag("--json", options->out.json, "print {\"kind\": ..., \"reply\": N or null}");
    call_command->callback([options, channel, &exit_status] {
        options->channel_given = channel->count() != 0;
        exit_status = call(*options);
    });

    auto* const status =
        app.add_subcommand("status", "tell whether the system is up and where its parts are");
    const auto status_out = std::make_shared<Output>();
    const auto seconds = std::make_shared<double>(0);
    add_format_options(*status, *status_out);
    status->add_option("--wait", *seconds, "wait that long for the record to be loaded")
        ->type_name("SECONDS")
        ->check(CLI::NonNegativeNumber);
    status->callback([status_out, seconds] {
        const bool in_time = *seconds == 0 || wait_until_ready(*seconds);
        print_object(system_status(), *status_out);
        if (!in_time)
            throw Failure(kTimedOut, "the record is not loaded yet");
    });

    auto* const kinds = app.add_subcommand("kinds", "list the request kinds");
    const auto kinds_out = std::make_shared<Output>();
    add_format_options(*kinds, *kinds_out);
    kinds->callback([kinds_out] { print_kinds(*kinds_out); });
}
