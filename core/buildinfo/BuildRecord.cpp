#include "core/buildinfo/BuildRecord.h"

#include <cstring>
#include <iterator>

#include "core/buildinfo/MakeBuildRecord.h"

namespace Quenda {

const char* BuildFieldLabel(size_t index) {
    static constexpr const char* kLabels[] = {
        "Version",       "Tag",      "User",        "Host",           "Timestamp", "Branch", "Hash",
        "Local changes", "Platform", "gcc version", "Kernel version", "Comment",   "Error",
    };
    return index < std::size(kLabels) ? kLabels[index] : "Unknown";
}

bool operator==(const BuildRecord& a, const BuildRecord& b) {
    for (size_t i = 0; i < BuildRecord::kFieldCount; ++i) {
        if (strcmp(a.fields[i], b.fields[i]) != 0) {
            return false;
        }
    }
    return true;
}

const BuildRecord& CoreBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("quenda_core");
    return record;
}

}  // namespace Quenda
