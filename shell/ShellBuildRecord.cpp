#include "shell/ShellBuildRecord.h"

#include "core/buildinfo/MakeBuildRecord.h"

namespace Quenda {

const BuildRecord& ShellBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("shell_runner");
    return record;
}

}  // namespace Quenda
