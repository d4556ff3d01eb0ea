// The factory's lane parameters: once, when a device gets the intelligent-monitor tables, its traffic-enforcement
// settings are taken over into them and completed from a file.
#ifndef UNI_PROCESS_CUSTOMCFG_H
#define UNI_PROCESS_CUSTOMCFG_H

// Copies the settings inside the record and adds the lanes of the file, for which defaults stand in where it is
// missing or short.  Changes only the record, and nothing without the capability.  0; -1 without a record, or
// where the file could not be opened: then the record has the defaults.
[[nodiscard]] int read_customcfg();

#endif
