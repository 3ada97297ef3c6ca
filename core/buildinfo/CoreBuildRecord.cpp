#include "core/buildinfo/MakeBuildRecord.h"

namespace Quenda {

const BuildRecord& CoreBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("quenda_core");
    return record;
}

}  // namespace Quenda
