// What the programs of a device know each other by: System V keys, file names and the schema version.
// device_path() and device_ipc_key() tell where they are below DEVICE_ROOT.
#ifndef MAIN_WELL_KNOWN_H
#define MAIN_WELL_KNOWN_H

#include <sys/types.h>

// "DBSM", "DBSP" and "DBSQ".
inline constexpr key_t kRecordKey = 0x4442534D;    // the shared record
inline constexpr key_t kLoadedKey = 0x44425350;    // 1 when the record is loaded from the database
inline constexpr key_t kDefaultsKey = 0x44425351;  // raised by the main application, its defaults in place

inline constexpr const char* kDatabaseFile = "/devinfo/ipc_db";
inline constexpr const char* kDatabaseBackupFile = "/devinfo/ipc_db_backup";
// A database in which one of these has no rows is broken: the device could not be reached.
inline constexpr const char* kKeyTables[] = {"netconfig_table", "ipaddr_list", "local_port_list"};
inline constexpr const char* kOperationLogFile = "/devinfo/db_op_info.log";
inline constexpr const char* kLaneParameterFile = "/devinfo/customcfg.bin";  // from the factory

// The schema version of a fresh database; packed, the major number stands above a minor byte of 0.
inline constexpr int kCurrentMajor = 1180;
inline constexpr int kCurrentVersion = kCurrentMajor << 8;

#endif
