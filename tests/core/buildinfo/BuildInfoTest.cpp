#include <gtest/gtest.h>

#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

BuildRecord Record(const char* name, const char* host, const char* comment) {
    return {name, {"1.2", "t", "u", host, "s", "b", "h", "no", "p", "g", "k", comment}};
}

TEST(BuildInfoRegistryTest, PrintsRecordsInOrderAndMarksWhatDiffers) {
    BuildInfoRegistry registry;
    EXPECT_STREQ(registry.GetApplicationName(), "UnsetApplicationName");
    registry.SetApplicationName("app");
    for (const char* host : {"h1", "second of its name"}) {
        registry.AddRuntimeRecord(Record("same", host, ""));
        registry.AddBuildtimeRecord(Record("same", host, ""));
    }
    registry.AddRuntimeRecord(Record("alone", "h1", ""));
    registry.AddRuntimeRecord(Record("differs", "h1", "run"));
    registry.AddBuildtimeRecord(Record("differs", "h1", "built"));
    const std::string fields =
        " \tVersion: 1.2\n \tTag: t\n \tUser: u\n \tHost: h1\n \tTimestamp: s\n \tBranch: b\n"
        " \tHash: h\n \tLocal changes: no\n \tPlatform: p\n \tgcc version: g\n"
        " \tKernel version: k\n";
    const std::string same = fields + " \tComment: \n";
    const std::string alone =
        "[?] alone\n[runtime]\n" + same + "[buildtime]\n\tInformation not available!\n";
    StringWritable out;
    registry.PrintDetails(&out);
    EXPECT_EQ(out.Text(), "Application: app\n[ ] same\n[runtime]\n" + same + "[buildtime]\n" +
                              same + alone + "[!] differs\n[runtime]\n" + fields +
                              "!\tComment: run\n[buildtime]\n" + fields + "!\tComment: built\n");
    out.Clear();
    registry.PrintDetails(&out, "alone");
    EXPECT_EQ(out.Text(), "Application: app\n" + alone);
    out.Clear();
    registry.PrintSummary(&out);
    registry.PrintSummary(&out, "differs");
    registry.PrintSummary(&out, "nothing");
    registry.PrintDetails(&out, "sam");
    EXPECT_EQ(out.Text(),
              "Application: app\n[ ] same\tVersion: 1.2\n[?] alone\tVersion: 1.2\n"
              "[!] differs\tVersion: 1.2\nApplication: app\n[!] differs\tVersion: 1.2\n"
              "Application: app\nUnable to find \"nothing\"\n"
              "Application: app\nUnable to find \"sam\"\n");
    registry.PrintSummary(nullptr);
    registry.PrintDetails(nullptr, "nothing");
}

TEST(BuildRecordTest, TagAndHashAreFilledInByTheBuild) {
    const BuildRecord& record = CoreBuildRecord();
    const std::string tag = std::string("quenda_core-") + record.fields[0] + "-";
    EXPECT_EQ(std::string(record.fields[1]).substr(0, tag.size()), tag);
    EXPECT_EQ(strspn(record.fields[6], "0123456789abcdef"), 40U);
    EXPECT_STREQ(BuildFieldLabel(12), "Error");
    EXPECT_STREQ(BuildFieldLabel(13), "Unknown");
}

}  // namespace
