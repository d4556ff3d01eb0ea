// What can still be read of a database that fails its integrity check: the parameters by which the device is reached.
//
//   const Salvage salvage(get_db_path());   // reads into a copy of the record
//   ...;                                    // the database is given up
//   salvage.restore();
//
// The record changes only in restore(), and only by parts that were read whole: the network's, and the address of the
// platform's alarm server.
#ifndef CONFIGURATION_SALVAGE_H
#define CONFIGURATION_SALVAGE_H

#include <memory>

#include "device_config.h"

class Salvage {
  public:
    // Through a handle of its own: the process has none afterwards.
    explicit Salvage(const char* path);
    void restore() const;

  private:
    std::unique_ptr<DEVICECONFIG> read_;
    bool network_ = false, alarm_server_ = false;
};

#endif
