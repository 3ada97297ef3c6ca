#include "core/buildinfo/BuildRecord.h"

#include <cstring>

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

}  // namespace Quenda
