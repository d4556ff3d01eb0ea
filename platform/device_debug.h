// The device's debug service: levelled messages on standard error, and the redirection of the process's
// output to a terminal or file while somebody watches. Every function may be called from any thread.
//
// Levels run from 1 (severe) over 2 (error), 3 and 4, 5 (trace) to 6 (information); modules from 0 to 63.
// Each module has a threshold, 6 at first: messages above it are dropped, and 0 drops all.
#ifndef PLATFORM_DEVICE_DEBUG_H
#define PLATFORM_DEVICE_DEBUG_H

inline constexpr int kDebugModules = 64;
inline constexpr int kDebugLevels = 6;

// Sets every module's threshold to 6. Its arguments mean nothing here. Returns 0.
int init_debug_task(int, int);

// Writes "[level][module][file:line function] message" and exactly one newline to standard error, in one
// write, so that the lines of threads do not mix. A message of any length is kept whole, newlines inside
// it too. A module out of range has the threshold 6. Leaves errno alone.
[[gnu::format(printf, 6, 7)]] void dev_debug_v1(int level, int module, const char* file, int line,
                                                const char* function, const char* format, ...);

// Sets a threshold. `request` is a record {int32 module, int32 level}: a module or -1 for all, a level from
// 0 to 6. Returns 0, or -1 when it is null or out of range. The other arguments mean nothing here.
int set_debug_para_withcheck(const void* request, int, int);

// Points standard output and standard error at the terminal or file that `request` names: an absolute path,
// NUL-terminated, of 1 to 255 bytes. A missing file is created, an existing one appended to. A target that
// takes no more output loses it; it never holds the process up. A second redirection replaces the first.
// The slots receive the descriptors that keep the original output and error; they stay the library's.
// Returns 0, or -1 with both slots -1 and the output where it was: no such request, a path that is empty,
// relative or too long, a target that cannot be opened or is neither terminal nor file, or an output or
// error that is closed to begin with.
int redirection_output(const void* request, int* output_fd, int* error_fd);

// Puts the original output and error back and sets both slots to -1. -1 when nothing is redirected.
int rdirection_output_cancle(int* output_fd, int* error_fd);

#endif
