// The packets of the IPC library. docs/protocol.md describes them for clients in other languages.
//
// A request and its reply are one packet each on an AF_UNIX SOCK_SEQPACKET connection: a header, then
// `length` bytes of data and nothing after them. Every number is little-endian.
#ifndef PLATFORM_DEVICE_IPC_WIRE_H
#define PLATFORM_DEVICE_IPC_WIRE_H

#include <bit>
#include <cstddef>
#include <cstdint>

namespace ipc_wire {

inline constexpr uint32_t kRequestMagic = 0x31515049;  // the bytes "IPQ1"
inline constexpr uint32_t kReplyMagic = 0x31525049;    // the bytes "IPR1"
inline constexpr size_t kMaxData = 64 * 1024;          // of a request or a reply
inline constexpr size_t kMinBuffer = 1024;             // what a handler can count on for its reply

enum status : int32_t {
    kAnswered = 0,       // the data is the handler's reply
    kAnsweredEmpty = 1,  // the handler replied with its result alone; no data
    kMalformed = 2,      // not a request: too short, wrong magic, or `length` is not what follows
    kTooLarge = 3,       // more than kMaxData bytes of data
    kNotAllowed = 4,     // the caller is neither root nor the service's user nor of the socket's group
};

struct request_header {
    uint32_t magic;
    int32_t kind;
    uint32_t length;  // bytes of data that follow
};

struct reply_header {
    uint32_t magic;
    int32_t status;
    int32_t result;   // what the handler returned; 0 when the request was refused
    uint32_t length;  // bytes of data that follow
};

static_assert(sizeof(request_header) == 12 && sizeof(reply_header) == 16);
static_assert(std::endian::native == std::endian::little);

}  // namespace ipc_wire

#endif
