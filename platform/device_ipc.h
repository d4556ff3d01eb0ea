// The device's IPC library: numbered services of this machine, and calls to them.
//
//   int answer(void* buffer, int* reply_length, int kind) {    // on a library thread
//       ... read the request from buffer, write the reply over it ...
//       *reply_length = 4;
//       return 0;
//   }
//   ipc_unix_init("database_process", 6, answer, answer);
//
//   int reply = 0;
//   int error = ipc_unix_call_service(6, kind, &request, sizeof request, 0, &reply, sizeof reply, 5000);
//   if (error != 0)
//       fprintf(stderr, "%s\n", ipc_error_text(error));
//
// Services: 1 is the main application "velmora", 6 is "database_process". Service N listens on the socket
// "N.sock" in device_socket_dir(); device_ipc_wire.h and docs/protocol.md define what goes over it.
#ifndef PLATFORM_DEVICE_IPC_H
#define PLATFORM_DEVICE_IPC_H

// Answers one request. `buffer` holds the request, zero-filled behind it to at least 1024 bytes, and takes
// the reply; it is the handler's until it returns. `*reply_length` is 0 at first. Result 0: the reply is the
// first *reply_length bytes of the buffer (as many as there are at most). Any other result: there is no
// reply data and the caller gets the result. Must not throw.
using ipc_handler = int (*)(void* buffer, int* reply_length, int request_kind);

// Registers this process as a service, for the rest of its life, and starts to serve. Returns 0, or -1 with
// errno: EADDRINUSE when a live process serves this number, EINVAL for a null or empty name, a number
// outside 0 to 9999 or no handler. What a killed server left behind is replaced.
//
// Requests of one connection are handled in order, requests of several at the same time, each on a library
// thread, so `handler` must be thread-safe; it may call services itself. `second_handler` serves when
// `handler` is null. Taking a 65th connection shuts the one that has been without a request longest; while
// all 65 have one, further connections wait. A connection is also shut when it brings no request for 30
// seconds or leaves its replies unread for 5; a packet that is no request is answered with a refusal, and
// the connection goes on.
//
// The socket has the mode 0660, its folder 0750 where this makes it.  Callers that are neither root nor this process's
// user nor of the socket's group are refused whatever the modes say, which is logged.
int ipc_unix_init(const char* service_name, int service_number, ipc_handler handler,
                  ipc_handler second_handler);

enum ipc_error : int {
    ipc_unreachable = -1,      // nobody serves this number, or this process may not connect
    ipc_timed_out = -2,        // no reply in time; the request may have been executed or may yet be
    ipc_peer_vanished = -3,    // the connection broke; the request may have been executed
    ipc_malformed_reply = -4,  // the service answered with something that is no reply
    ipc_reply_too_large = -5,  // the request was executed, its reply does not fit
    ipc_bad_argument = -6,     // nothing was sent
    ipc_refused = -7,          // the service did not take the packet for a request
    ipc_no_resources = -8,     // this process is out of descriptors or memory; nothing was sent
    ipc_not_allowed = -9,      // the service does not serve this user; nothing was done
};

// Sends a request of `request_length` bytes (0 to 64 KiB; `request` may be null for 0) to a service and waits
// for the reply, together at most `timeout_ms` milliseconds (1 or more; -1 waits for ever). Returns 0 and
// writes the reply's data to `reply`, its length to `*reply_length` and the handler's result to
// `*handler_result` (either may be null); a reply without data leaves `reply` alone and has length 0. A null
// `reply` (capacity 0) takes no data: what the service sends is dropped. On failure an ipc_error is returned
// and nothing is written. `flags` must be 0. A request is never sent twice.
int ipc_unix_call_service(int service_number, int request_kind, const void* request, int request_length,
                          int flags, void* reply, int reply_capacity, int timeout_ms,
                          int* reply_length = nullptr, int* handler_result = nullptr);

// A sentence for a result of ipc_unix_call_service; also for 0 and unknown codes.
const char* ipc_error_text(int error);

#endif
