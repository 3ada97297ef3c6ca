// Says from what a library or program was built. The build fills in the texts; -v prints them.
#pragma once

#include <array>
#include <cstddef>

namespace Quenda {

// All texts are constant and live as long as the process.
struct BuildRecord {
    static constexpr size_t kFieldCount = 12;

    const char* name;  // of the library; the registry's key
    // In this order: version, tag, user, host, time stamp, branch, commit hash, local changes
    // (yes or no), platform, compiler, the building machine's kernel, comment.
    std::array<const char*, kFieldCount> fields;
};

// The printed label of the field at this index; "Error" for kFieldCount, "Unknown" for a larger
// index.
const char* BuildFieldLabel(size_t index);

// Compares the texts of all fields, but not the names.
bool operator==(const BuildRecord& a, const BuildRecord& b);

// The core library's own record.
const BuildRecord& CoreBuildRecord();

}  // namespace Quenda
