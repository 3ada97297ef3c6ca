#include "core/buildinfo/BuildRecord.h"

#include <algorithm>
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
    return std::equal(a.fields.begin(), a.fields.end(), b.fields.begin(),
                      [](const char* x, const char* y) { return strcmp(x, y) == 0; });
}

const BuildRecord& CoreBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("quenda_core");
    return record;
}

}  // namespace Quenda
