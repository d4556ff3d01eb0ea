// The request service: the one handler of "database_process".
#ifndef MAIN_DB_PROCESS_SERVICE_H
#define MAIN_DB_PROCESS_SERVICE_H

// Answers a request; called on the IPC library's threads, one request at a time passes g_db_mutexsem.
// `buffer` holds a ServiceRequest and takes the reply, an int32 with *reply_length 4.  0: there is a
// reply; 1 or -1: there is none.
[[nodiscard]] int db_service_task(void* buffer, int* reply_length, int load_type);

// Stores one registry table inside an exclusive transaction.  0 or -1.
[[nodiscard]] int save_single_table_info(int table);

#endif
