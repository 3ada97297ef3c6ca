#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

BuildRecord Record(const char* name, const char* host, const char* comment) {
    return {name, {"1.2.3.4", "t", "u", host, "s", "b", "h", "no", "p", "g", "k", comment}};
}

class BuildInfoTest : public testing::Test {
protected:
    void SetUp() override {
        registry_.SetApplicationName("app");
        registry_.AddRuntimeRecord(Record("same", "h1", ""));
        registry_.AddRuntimeRecord(Record("alone", "h1", ""));
        registry_.AddRuntimeRecord(Record("same", "other", "second of its name"));
        registry_.AddRuntimeRecord(Record("differs", "h1", "run"));
        registry_.AddBuildtimeRecord(Record("differs", "h1", "built"));
        registry_.AddBuildtimeRecord(Record("same", "h1", ""));
        registry_.AddBuildtimeRecord(Record("same", "other", ""));
    }

    BuildInfoRegistry registry_;
    StringWritable out_;
};

TEST_F(BuildInfoTest, SummaryMarksMissingAndDifferingRecordsInOrder) {
    registry_.PrintSummary(&out_);
    EXPECT_EQ(out_.Text(),
              "Application: app\n"
              "[ ] same\tVersion: 1.2.3.4\n"
              "[?] alone\tVersion: 1.2.3.4\n"
              "[!] differs\tVersion: 1.2.3.4\n");
    out_.Clear();
    registry_.PrintSummary(&out_, "differs");
    EXPECT_EQ(out_.Text(), "Application: app\n[!] differs\tVersion: 1.2.3.4\n");
}

TEST_F(BuildInfoTest, UnknownNameIsSaidAndNullSinkPrintsNothing) {
    registry_.PrintSummary(&out_, "nothing");
    registry_.PrintDetails(&out_, "sam");
    EXPECT_EQ(out_.Text(),
              "Application: app\nUnable to find \"nothing\"\n"
              "Application: app\nUnable to find \"sam\"\n");
    registry_.PrintSummary(nullptr);
    registry_.PrintSummary(nullptr, "same");
    registry_.PrintDetails(nullptr);
    registry_.PrintDetails(nullptr, "nothing");
    EXPECT_STREQ(BuildInfoRegistry().GetApplicationName(), "UnsetApplicationName");
    EXPECT_EQ(registry_.FindBuildtime("alone"), nullptr);
    EXPECT_STREQ(registry_.FindRuntime("same")->fields[3], "h1");
}

TEST_F(BuildInfoTest, DetailsMarkTheFieldsThatDifferOnBothSides) {
    const std::string fields =
        " \tVersion: 1.2.3.4\n \tTag: t\n \tUser: u\n \tHost: h1\n \tTimestamp: s\n"
        " \tBranch: b\n \tHash: h\n \tLocal changes: no\n \tPlatform: p\n \tgcc version: g\n"
        " \tKernel version: k\n";
    const std::string same = fields + " \tComment: \n";
    const std::string alone =
        "[?] alone\n[runtime]\n" + same + "[buildtime]\n\tInformation not available!\n";
    registry_.PrintDetails(&out_);
    EXPECT_EQ(out_.Text(), "Application: app\n[ ] same\n[runtime]\n" + same + "[buildtime]\n" +
                               same + alone + "[!] differs\n[runtime]\n" + fields +
                               "!\tComment: run\n[buildtime]\n" + fields + "!\tComment: built\n");
    out_.Clear();
    registry_.PrintDetails(&out_, "alone");
    EXPECT_EQ(out_.Text(), "Application: app\n" + alone);
}

TEST(BuildRecordTest, OwnRecordIsFilledInByTheBuild) {
    const BuildRecord& record = CoreBuildRecord();
    EXPECT_EQ(&record, &CoreBuildRecord());
    const std::string version = record.fields[0];
    EXPECT_EQ(std::count(version.begin(), version.end(), '.'), 3) << version;
    EXPECT_EQ(std::string(record.fields[1]).find(record.name + ("-" + version) + "-"), 0U);
    EXPECT_EQ(std::string(record.fields[6]).find_first_not_of("0123456789abcdef"),
              std::string::npos);
    EXPECT_EQ(std::string(record.fields[6]).size(), 40U);
    EXPECT_STREQ(BuildFieldLabel(12), "Error");
    EXPECT_STREQ(BuildFieldLabel(13), "Unknown");
}

}  // namespace
