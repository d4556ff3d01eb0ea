// A stand-in for the device's main application: makes the shared record with its defaults, answers the questions
// about the device's capabilities, and runs until a signal ends it.
#include <sys/types.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <vector>

#include "device_ipc.h"
#include "device_paths.h"
#include "main_application.h"
#include "record_access.h"
#include "request.h"
#include "shared_objects.h"

namespace {

// What this device can do: {group, id} to an answer.  A capability that was told without a group counts in all.
struct Answers {
    std::map<std::pair<int32_t, int32_t>, int32_t> capabilities, values;
    std::map<int32_t, int32_t> any_group;
    bool silent = false;

    int32_t capability(int32_t group, int32_t id) const {
        if (const auto found = capabilities.find({group, id}); found != capabilities.end())
            return found->second;
        const auto found = any_group.find(id);
        return found != any_group.end() ? found->second : 0;
    }
    int32_t value(int32_t group, int32_t id) const {
        const auto found = values.find({group, id});
        return found != values.end() ? found->second : 0;
    }
};

// Set before the service is registered, read by its threads.
Answers answers;

template <class Request>
Request request_in(const void* buffer) {
    Request request;
    std::memcpy(&request, buffer, sizeof request);
    return request;
}

int answer(void* buffer, int* reply_length, int command) {
    while (answers.silent)
        pause();
    int32_t reply = 0;
    if (command == kCapabilityTest) {
        const auto request = request_in<CapabilityTestRequest>(buffer);
        reply = answers.capability(request.group, request.id);
    } else if (command == kCapabilityValue) {
        const auto request = request_in<CapabilityValueRequest>(buffer);
        reply = answers.value(request.group, request.id);
    } else {
        return 1;
    }
    std::memcpy(buffer, &reply, sizeof reply);
    *reply_length = sizeof reply;
    return 0;
}

std::optional<int32_t> parse_number(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x");
    text.remove_prefix(hexadecimal ? 2 : 0);
    int32_t number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// "[GROUP:]ID=VALUE".
struct Assignment {
    std::optional<int32_t> group;
    int32_t id, value;
};

std::optional<Assignment> parse_assignment(std::string_view text) {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos)
        return std::nullopt;
    const auto colon = text.substr(0, equals).find(':');
    const bool grouped = colon != std::string_view::npos;
    const auto group = grouped ? parse_number(text.substr(0, colon)) : std::nullopt;
    const auto start = grouped ? colon + 1 : 0;
    const auto id = parse_number(text.substr(start, equals - start));
    const auto value = parse_number(text.substr(equals + 1));
    if (!id || !value || (grouped && !group))
        return std::nullopt;
    return Assignment{group, *id, *value};
}

void take_capability(const std::string& text) {
    const auto told = parse_assignment(text);
    if (!told)
        throw CLI::ValidationError("--capability", "\"" + text + "\" is not [GROUP:]ID=VALUE");
    if (told->group)
        answers.capabilities[{*told->group, told->id}] = told->value;
    else
        answers.any_group[told->id] = told->value;
}

void take_value(const std::string& text) {
    const auto told = parse_assignment(text);
    if (!told || !told->group)
        throw CLI::ValidationError("--value", "\"" + text + "\" is not GROUP:ID=VALUE");
    answers.values[{*told->group, told->id}] = told->value;
}

void write_defaults(DEVICECONFIG& record, const std::string& source) {
    constexpr std::string_view kRandom = "random:";
    std::memset(static_cast<void*>(&record), 0, sizeof record);
    if (source == "zero")
        return;
    if (source.starts_with(kRandom)) {
        uint64_t seed = 0;
        const char* const end = source.data() + source.size();
        if (std::from_chars(source.data() + kRandom.size(), end, seed).ptr != end)
            throw std::runtime_error("\"" + source + "\": the seed is a number from 0 on");
        fill_random(record, seed);
        return;
    }
    std::ifstream file(source);
    if (!file)
        throw std::system_error(errno, std::generic_category(), source);
    fill_from_json(record, Json::parse(file));
}

[[noreturn]] void serve(const std::string& defaults) {
    if (!device_prepare_root())
        throw std::system_error(errno, std::generic_category(), "the device's folders cannot be made");
    // First, so that a second main application of this root does not touch the record.
    if (ipc_unix_init("velmora", kMainApplication, answer, answer) != 0)
        throw std::system_error(errno, std::generic_category(), "the service cannot be registered");

    const auto record = SharedRecord::attach_or_create();
    const auto ready = Semaphore::open_or_create(kLoadedKey);
    const auto defaults_set = Semaphore::open_or_create(kDefaultsKey);
    ready.set(0);
    defaults_set.set(0);
    write_defaults(*record.get(), defaults);
    defaults_set.set(1);
    std::printf("velmora: the defaults are set (%s); %d channels\n", defaults.c_str(),
                answers.value(kHardwareGroup, kVideoChannels));
    std::fflush(stdout);
    while (true)
        pause();
}

int run(int argc, char** argv) {
    CLI::App app(
        "A stand-in for the camera's main application: makes the shared record, answers what the device can "
        "do,\n"
        "runs until a signal ends it. DEVICE_ROOT names the folder that stands for the device's root.",
        "velmora");
    std::string defaults = "zero";
    int32_t channels = 1;
    std::vector<std::string> capabilities, values;
    app.add_option("--defaults", defaults,
                   "what the record holds at first: zero, random:SEED, or a file of\n"
                   "{\"TABLE\": {\"FIELD\": value, ...}, \"LIST_TABLE\": [{...}, ...]}")
        ->type_name("FILE.json|zero|random:SEED");
    app.add_option("--channels", channels, "number of video channels (1)")->type_name("N");
    app.add_option("--capability", capabilities, "the device has VALUE for a capability; otherwise it is 0")
        ->type_name("[GROUP:]ID=VALUE")
        ->allow_extra_args(false);
    app.add_option("--value", values, "the answer for an item; otherwise it is 0")
        ->type_name("GROUP:ID=VALUE")
        ->allow_extra_args(false);
    app.add_flag("--silent", answers.silent, "answer no question, so that callers see their time-outs");
    try {
        app.parse(argc, argv);
        answers.values[{kHardwareGroup, kVideoChannels}] = channels;
        for (const std::string& text : capabilities)
            take_capability(text);
        for (const std::string& text : values)
            take_value(text);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    serve(defaults);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora: %s\n", error.what());
        return 1;
    }
}
