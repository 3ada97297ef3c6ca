#pragma once

#include "core/buildinfo/BuildRecord.h"

namespace Quenda {

// The shell command runner's own record.
const BuildRecord& ShellBuildRecord();

}  // namespace Quenda
