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
