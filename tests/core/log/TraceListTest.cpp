#include "core/log/TraceList.h"

#include <gtest/gtest.h>

using namespace Quenda;

namespace {

std::string journal;

// Notes each text in the journal.
struct Scribe : Writable {
    explicit Scribe(const char* who) : name(who) {}
    using Writable::Write;
    size_t Write(const void* data, size_t) override {
        return journal += name + static_cast<const char*>(data) + " ", 0;
    }
    std::string name;
};

std::string Traced(TraceList& list, int level) {
    journal.clear();
    list.Trace(level, "%d", level);
    return journal;
}

TEST(TraceListTest, ReachesSinksWhoseThresholdAdmitsItInOrder) {
    Scribe low("low"), high("high");
    TraceList list;
    list.AddSink(2, &high);
    list.AddSink(2, nullptr);
    list.AddSink(2, &low);
    list.AddSink(9, &high);  // keeps its place
    EXPECT_EQ(Traced(list, 2), "high2 low2 ");
    EXPECT_EQ(Traced(list, 3), "high3 ");
    EXPECT_EQ(Traced(list, 10), "");
    list.AddSink(-5, &high);
    list.TraceAll("%s", "");
    EXPECT_EQ(journal, "high low ");
}

TEST(TraceListTest, SinksAndListsMayEndInAnyOrder) {
    auto sink = std::make_unique<Scribe>("sink");
    auto list = std::make_unique<TraceList>();
    TraceList longer;
    list->AddSink(9, sink.get());
    longer.AddSink(9, sink.get());
    list.reset();
    EXPECT_EQ(Traced(longer, 0), "sink0 ");
    sink.reset();
    EXPECT_EQ(Traced(longer, 0), "");
}

}  // namespace
