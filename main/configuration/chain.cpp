#include "chain.h"

#include "log.h"
#include "store.h"
#include "transaction.h"
#include "versions.h"

namespace {

constexpr const char* kSourceFile = "main/dbutil.c";

struct Step {
    int from, to;
};
constexpr Step kSteps[] = {{1146, 1147}, {1147, 1148}};

bool run_step(const Step& step, int& version) {
    if (db_begin() != 0)
        return false;
    const int next = step.to << 8 | (version & 0xFF);
    if (db_update_version(next, get_db_handle()) != 0) {
        DB_LOG(kError, "update db version error\n");
        db_rollback();
        return false;
    }
    if (db_commit() != 0)
        return false;
    version = next;
    return true;
}

}  // namespace

ChainEnd run_patch_chain(int version) {
    for (const Step& step : kSteps)
        if (step.from == major_of(version) && !run_step(step, version))
            return {version, true};
    return {version, false};
}
