// Packets of any content on a connection of the request service.
#include <sys/socket.h>
#include <sys/un.h>

#include "device_ipc_wire.h"
#include "fuzz.h"

namespace {

class Request : public Fuzzed {
  public:
    Request() { EXPECT_EQ(ipc_unix_init("database_process", kServiceNumber, task, nullptr), 0); }

    void run(Input& input) override {
        take_device(input);
        restore_database();
        fill(input.byte());
        const unique_fd peer = connected();
        for (int packets = 0; packets < 8 && !input.empty(); ++packets) {
            const std::string packet = next_packet(input);
            ASSERT_EQ(send(peer.get(), packet.data(), packet.size(), 0), std::ssize(packet));
            if (packet.empty())
                return;  // ends the connection
            expect_reply(peer.get(), packet);
        }
    }

  private:
    static constexpr std::size_t kTooLong = sizeof(ipc_wire::request_header) + ipc_wire::kMaxData + 1;

    // A request of a kind that is known, one that tells a length near its own, or just bytes.
    static std::string next_packet(Input& input) {
        const uint8_t choice = input.byte() % 16;
        const auto& kind = input.one_of(request_kinds());
        std::string data(input.text());
        if (choice == 0)
            return data;
        const int more = choice == 1 ? static_cast<int8_t>(input.byte()) : 0;
        const ipc_wire::request_header header{ipc_wire::kRequestMagic, kind.number,
                                              static_cast<uint32_t>(std::ssize(data) + more)};
        std::string packet(reinterpret_cast<const char*>(&header), sizeof header);
        packet += data;
        packet.resize(choice == 2 ? kTooLong : packet.size());
        return packet;
    }

    static void expect_reply(int peer, const std::string& packet) {
        struct {
            ipc_wire::reply_header header;
            int32_t value;
            char more[1024];
        } reply;
        ssize_t size = 0;
        do  // the fuzzer's clock interrupts
            size = recv(peer, &reply, sizeof reply, 0);
        while (size < 0 && errno == EINTR);
        ipc_wire::request_header request{};
        std::memcpy(&request, packet.data(), std::min(packet.size(), sizeof request));
        const bool is_request = packet.size() >= sizeof request && packet.size() < kTooLong &&
                                request.magic == ipc_wire::kRequestMagic &&
                                request.length == packet.size() - sizeof request;
        ASSERT_EQ(size, static_cast<ssize_t>(sizeof reply.header + reply.header.length));
        EXPECT_EQ(reply.header.magic, ipc_wire::kReplyMagic);
        EXPECT_EQ(reply.header.status <= ipc_wire::kAnsweredEmpty, is_request);
        EXPECT_TRUE(reply.header.length == 0 || reply.header.length == sizeof reply.value);
        if (is_request && request.kind >= EN_UPDATE_ONE_TABLE_RECORD && request.kind <= kLastReplyKind) {
            EXPECT_EQ(reply.header.length, sizeof reply.value);
            EXPECT_LE(reply.value, 0);
            EXPECT_GE(reply.value, static_cast<int>(Cause::no_record));
        }
        EXPECT_TRUE(get_db_handle() == nullptr || sqlite3_get_autocommit(get_db_handle()));
    }

    static int task(void* buffer, int* length, int kind) {
        runs_core = true;
        // A redirection that is well-formed writes where the input wants.
        if (kind == REDIRECTION_OUTPUT_OPEN && *static_cast<const char*>(buffer) == '/')
            return 1;
        return db_service_task(buffer, length, kind);
    }

    static unique_fd connected() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        (device_socket_dir() + "/6.sock").copy(address.sun_path, sizeof address.sun_path - 1);
        unique_fd fd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
        EXPECT_EQ(connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return fd;
    }
};

}  // namespace

FUZZ_TARGET(Request)
