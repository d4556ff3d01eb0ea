// Serial ports, PTZ, domes.
#include "main/dbshell/catalogue.h"

const std::span<const Table> kPtzTables = {};
