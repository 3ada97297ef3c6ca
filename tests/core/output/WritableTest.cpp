#include "core/output/Writable.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "core/output/SharedText.h"
#include "core/output/StdioWritable.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

// Keeps each piece that reaches the primitive write.
struct Pieces : Writable {
    using Writable::Write;
    size_t Write(const void* data, size_t length) override {
        all.emplace_back(static_cast<const char*>(data), length);
        return 40 + length;
    }
    // Formats the same argument list twice.
    __attribute__((format(printf, 2, 3))) void Twice(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        VPrintf(format, arguments);
        VPrintf(9, format, arguments);
        va_end(arguments);
    }

    std::vector<std::string> all;
};

TEST(WritableTest, EveryFormEndsInOnePrimitiveWrite) {
    const std::string big(100000, 'x');
    const wchar_t unprintable[] = {static_cast<wchar_t>(0x7fffffff), 0};
    const struct {
        std::function<size_t(Writable&)> call;
        std::string piece;
    } cases[] = {
        {[](Writable& out) { return out.Write(7, "a\0b", 3); }, std::string("a\0b", 3)},
        {[](Writable& out) { return out.Printf("%d-%s", 1, "x"); }, "1-x"},
        {[](Writable& out) { return out.Printf(7, "%d-%s", 1, "x"); }, "1-x"},
        {[&](Writable& out) { return out.Printf("%s", big.c_str()); }, big},
        {[](Writable& out) { return out.Printf("%s", ""); }, ""},
        {[&](Writable& out) { return out.Printf("%ls", unprintable); }, ""},
        {[](Writable& out) { return out.Puts("100%s"); }, "100%s"},
        {[](Writable& out) { return out.Puts(7, ""); }, ""},
    };
    for (const auto& c : cases) {
        Pieces out;
        EXPECT_EQ(c.call(out), 40 + c.piece.size());
        EXPECT_EQ(out.all, std::vector<std::string>{c.piece});
    }
    Pieces out;
    out.Twice("%s %d", "again", 2);
    EXPECT_EQ(out.all, (std::vector<std::string>{"again 2", "again 2"}));
}

TEST(StringWritableTest, CutsAtAZeroByteAndReturnsTheLength) {
    StringWritable out(2);
    EXPECT_EQ(out.Write("ab\0cd", 5), 2U);
    EXPECT_EQ(out.Puts(3, "c"), 3U);
    EXPECT_EQ(out.Printf(3, "%d", 45), 5U);
    EXPECT_EQ(out.Text(), "abc45");
    out.Clear();
    EXPECT_EQ(out.Printf("%s", ""), 0U);
}

TEST(StdioWritableTest, ReturnsWhatTheStreamTookAndLeavesItOpen) {
    FILE* const stream = tmpfile();
    {
        StdioWritable out(stream);
        EXPECT_EQ(out.Puts(""), 0U);
        EXPECT_EQ(out.Write("a\0b", 3), 3U);
    }
    EXPECT_EQ(ftell(stream), 3);
    fclose(stream);

    FILE* const full = fopen("/dev/full", "w");
    setvbuf(full, nullptr, _IONBF, 0);
    EXPECT_EQ(StdioWritable(full).Puts("abc"), 0U);
    fclose(full);
}

struct List : TraceListIntf {
    void RemoveSink(Writable* sink) override {
        sink->DetachList(this);
        ++removals;
    }
    int removals = 0;
};

TEST(WritableTest, LeavesEachOfItsListsOnceWhenDestroyed) {
    List kept, left, twice;
    {
        Pieces sink;
        for (List* list : {&twice, &left, &twice, &kept}) {
            sink.AttachList(list);
        }
        sink.DetachList(&left);
        sink.DetachList(&left);
    }
    EXPECT_EQ(kept.removals, 1);
    EXPECT_EQ(twice.removals, 1);
    EXPECT_EQ(left.removals, 0);
}

TEST(SharedTextTest, AbsentIsNotEmptyAndCopiesOutliveTheOriginal) {
    EXPECT_TRUE(SharedText(static_cast<const char*>(nullptr)).IsAbsent());
    EXPECT_STREQ(SharedText().Get(), "");
    EXPECT_FALSE(SharedText("").IsAbsent());
    EXPECT_TRUE(SharedText("").IsEmpty());
    SharedText copy;
    {
        char name[] = "timer";
        const SharedText original(name);
        name[0] = '?';
        copy = original;
    }
    EXPECT_STREQ(copy.Get(), "timer");
}

}  // namespace
