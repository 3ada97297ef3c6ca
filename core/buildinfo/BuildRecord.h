// What a library or program was built from: the texts that -v prints, filled in by the build.
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

// The label that the field at this index is printed with; "Error" for kFieldCount, "Unknown"
// for anything beyond.
const char* BuildFieldLabel(size_t index);

// Whether all fields are equal as texts; the names are not compared.
bool operator==(const BuildRecord& a, const BuildRecord& b);

// The core library's own record.
const BuildRecord& CoreBuildRecord();

}  // namespace Quenda
