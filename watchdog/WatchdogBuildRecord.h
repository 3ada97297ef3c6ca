#pragma once

#include "core/buildinfo/BuildRecord.h"

namespace Quenda {

// The watchdog control library's own record.
const BuildRecord& WatchdogBuildRecord();

}  // namespace Quenda
