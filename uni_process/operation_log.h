// The operation log, "/devinfo/db_op_info.log": what endangered or changed the stored configuration, to
// be read after a reboot.  operation_log_format.h tells what is in it.
#ifndef UNI_PROCESS_OPERATION_LOG_H
#define UNI_PROCESS_OPERATION_LOG_H

inline constexpr int kLogTimeSize = 32;

// "[YYYY-MM-DD hh:mm:ss]" of the local time, as much of it as fits.
void format_log_time(char* buffer, int size);

// Appends one record, or overwrites the oldest when the file is full; synced.  Failures are logged, never
// returned. A file shorter than its header is started anew; a record longer than the body is cut.
void write_db_info_to_file(const char* text, int length);

// Rewrites the header of an open log file.
void update_file_info(int fd, int last_position, int total_length);

// Writes one record from a printf format; the time and a blank stand before it.
void log_operation(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
