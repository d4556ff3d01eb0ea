// The patch chain: brings an older database up to the newest schema in place, step by step.  The steps are data
// (chain_steps.cpp); each is one transaction, so a database is always at a step's boundary.
//
//   const ChainEnd end = run_patch_chain(version);
//   if (!end.complete())
//       ...;    // the database stands at end.version: to be made anew
//
// Works on the process-wide handle.  Before it every table has been loaded into the record: steps save from there.
#ifndef CONFIGURATION_CHAIN_H
#define CONFIGURATION_CHAIN_H

#include "versions.h"

inline constexpr int kLowestPatchableMajor = 1101;
inline constexpr int kLastPatchedMajor = 1169;  // where the chain ends; also stamped by a rebuild
inline constexpr int kRebuiltVersion = kLastPatchedMajor << 8;

struct ChainEnd {
    int version;       // packed, as the database is stamped now
    bool step_failed;  // it was rolled back

    [[nodiscard]] constexpr bool complete() const {
        return !step_failed && major_of(version) >= kLastPatchedMajor;
    }
};

// Runs every step from the version on.  A version that no step starts from ends the chain where it is.
[[nodiscard]] ChainEnd run_patch_chain(int version);

#endif
