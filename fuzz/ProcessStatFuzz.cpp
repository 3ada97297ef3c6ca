// Any bytes as the stat line of a process.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/Require.h"
#include "monitor/ProcessLookup.h"

constexpr size_t kLookedAt = 127;
constexpr int32_t kUntouched = -77;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A copy that ends where the reading must end: the sanitizer finds a read beyond it.
    std::vector<char> line(std::min(size + 1, kLookedAt));
    std::copy_n(data, std::min(size, kLookedAt), line.begin());
    char name[Monitor::kProcessNameSize];
    std::memset(name, 'x', sizeof(name));
    int32_t parent = kUntouched;
    if (!Monitor::ParseProcessStat(line.data(), name, parent)) {
        REQUIRE(parent == kUntouched && std::count(name, name + sizeof(name), 'x') == sizeof(name));
        return 0;
    }
    // The name is between "NUMBER (" and the first ")".
    const std::string text(line.data(), strnlen(line.data(), line.size()));
    const size_t start = text.find_first_not_of("0123456789") + 2;
    REQUIRE(text.substr(start, text.find(')') - start) == name);
    return 0;
}
