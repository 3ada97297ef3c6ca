#include "core/output/Writable.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Quenda;

namespace {

// Keeps each piece that reaches the primitive write.
struct Pieces : Writable {
    using Writable::Write;
    size_t Write(const void* data, size_t length) override {
        all.emplace_back(static_cast<const char*>(data), length);
        return 40 + length;
    }
    std::vector<std::string> all;
};

TEST(WritableTest, EveryFormEndsInOnePrimitiveWrite) {
    const std::string big(100000, 'x');
    const std::pair<std::function<size_t(Pieces&)>, std::string> cases[] = {
        {[](Pieces& out) { return out.Write(7, "a\0b", 3); }, std::string("a\0b", 3)},
        {[&](Pieces& out) { return out.Printf(7, "%d%s", 1, big.c_str()); }, "1" + big},
        {[](Pieces& out) { return out.Printf("%s", ""); }, ""},
        {[](Pieces& out) { return out.Puts(7, "100%s"); }, "100%s"},
    };
    for (const auto& [call, piece] : cases) {
        Pieces out;
        EXPECT_EQ(call(out), 40 + piece.size());
        EXPECT_EQ(out.all, std::vector<std::string>{piece});
    }
}

}  // namespace
