// Where the device's files, sockets and System V objects are.
//
// On the device every path and key is fixed. Elsewhere the environment variable DEVICE_ROOT names a
// folder that stands for the device's root: every path lies below it and the System V keys are derived
// from it, so that several systems run side by side. An empty DEVICE_ROOT counts as unset. The
// environment is read at each call; a relative DEVICE_ROOT is taken from the current working directory.
#ifndef PLATFORM_DEVICE_PATHS_H
#define PLATFORM_DEVICE_PATHS_H

#include <sys/types.h>

#include <string>
#include <string_view>

// `absolute_path` (it starts with '/') below DEVICE_ROOT, or as it is when that is unset.
std::string device_path(std::string_view absolute_path);

// The folder of the service sockets: device_path("/var/run/ipc").
std::string device_socket_dir();

// The System V key that stands for the device's key `fixed`. DEVICE_ROOT unset: `fixed` itself. Set:
// 29 bits of the FNV-1a hash of its real path, and below them the low three bits of `fixed`, which tell
// 0x4442534D, 0x44425350 and 0x44425351 apart. Every spelling of one folder gives the same key in every
// process; the key is never 0 (IPC_PRIVATE).
key_t device_ipc_key(key_t fixed);

// Makes the folders that the programs expect to find: the socket folder and, with DEVICE_ROOT set,
// "/devinfo" and "/velmora" below it. True when they all exist afterwards; false with errno when one could
// not be made.
bool device_prepare_root();

#endif
