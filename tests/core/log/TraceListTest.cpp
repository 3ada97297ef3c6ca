#include "core/log/TraceList.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace Quenda;

namespace {

// Notes each text in a journal that several sinks share.
class Scribe : public Writable {
public:
    Scribe(std::string& journal, const char* name) : journal_(journal), name_(name) {}
    using Writable::Write;
    size_t Write(const void* data, size_t length) override {
        journal_ += name_ + ":" + std::string(static_cast<const char*>(data), length) + " ";
        return length;
    }

private:
    std::string& journal_;
    std::string name_;
};

class TraceListTest : public testing::Test {
protected:
    // What a message of that level (or of none) leaves in the journal.
    std::string Traced(int level) {
        journal_.clear();
        list_->Trace(level, "%d", level);
        return journal_;
    }

    std::string journal_;
    std::unique_ptr<TraceList> list_ = std::make_unique<TraceList>();
    Scribe low_{journal_, "low"};
    Scribe high_{journal_, "high"};
};

TEST_F(TraceListTest, ReachesSinksWhoseThresholdAdmitsItInOrder) {
    list_->AddSink(9, &high_);
    list_->AddSink(2, nullptr);
    list_->AddSink(2, &low_);
    EXPECT_EQ(Traced(-1), "high:-1 low:-1 ");
    EXPECT_EQ(Traced(2), "high:2 low:2 ");
    EXPECT_EQ(Traced(3), "high:3 ");
    EXPECT_EQ(Traced(9), "high:9 ");
    EXPECT_EQ(Traced(10), "");
    list_->AddSink(-5, &high_);
    list_->TraceAll("%s", "");
    EXPECT_EQ(journal_, "high: low: ");
}

TEST_F(TraceListTest, SinkAddedAgainKeepsItsPlaceAndTakesTheNewLevel) {
    list_->AddSink(2, &low_);
    list_->AddSink(9, &high_);
    list_->AddSink(9, &low_);
    EXPECT_EQ(Traced(9), "low:9 high:9 ");
    list_->RemoveSink(&low_);
    list_->RemoveSink(&low_);
    EXPECT_EQ(Traced(0), "high:0 ");
}

TEST_F(TraceListTest, DestroyedSinkIsNeverWrittenTo) {
    auto gone = std::make_unique<Scribe>(journal_, "gone");
    TraceList other;
    list_->AddSink(9, gone.get());
    list_->AddSink(9, &high_);
    other.AddSink(9, gone.get());
    gone.reset();
    EXPECT_EQ(Traced(0), "high:0 ");
    other.TraceAll("%s", "nobody");
    EXPECT_EQ(journal_, "high:0 ");
}

TEST_F(TraceListTest, ListMayEndBeforeItsSinks) {
    TraceList other;
    auto sink = std::make_unique<Scribe>(journal_, "sink");
    list_->AddSink(9, sink.get());
    other.AddSink(9, sink.get());
    list_.reset();
    other.TraceAll("%s", "on");
    EXPECT_EQ(journal_, "sink:on ");
    sink.reset();  // must not touch the list that has gone
}

}  // namespace
