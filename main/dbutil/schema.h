// The create list: the schema of a fresh database at the current version, told as SQL texts.
#ifndef DBUTIL_SCHEMA_H
#define DBUTIL_SCHEMA_H

#include <span>

// 250 statements in a fixed order, which make 251 tables: one entry holds two.
std::span<const char* const> create_list();

#endif
