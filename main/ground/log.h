// Log messages of the service: DB_LOG(level, format, ...) inside a file that names its module path once as
//
//   constexpr const char* kSourceFile = "main/dbutil.c";
#ifndef MAIN_LOG_H
#define MAIN_LOG_H

#include "device_debug.h"

// Debug levels, and the modules of the debug service that this process logs under.
enum LogLevel : int { kSevere = 1, kError = 2, kWarning = 3, kNotice = 4, kTrace = 5, kInfo = 6 };
inline constexpr int kDatabaseModule = 52;
inline constexpr int kEncryptionModule = 45;

#define DB_LOG(level, ...) DB_LOG_AS(level, __func__, __VA_ARGS__)
#define DB_LOG_AS(level, function, ...) \
    dev_debug_v1(level, kDatabaseModule, kSourceFile, __LINE__, function, __VA_ARGS__)

#endif
