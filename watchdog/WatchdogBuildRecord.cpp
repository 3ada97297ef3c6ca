#include "watchdog/WatchdogBuildRecord.h"

#include "core/buildinfo/MakeBuildRecord.h"

namespace Quenda {

const BuildRecord& WatchdogBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("watchdog_control");
    return record;
}

}  // namespace Quenda
