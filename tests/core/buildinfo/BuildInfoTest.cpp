#include <gtest/gtest.h>

#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

BuildRecord Record(const char* name, const char* comment) {
    return {name, {"1.2", "t", "u", "h1", "s", "b", "h", "no", "p", "g", "k", comment}};
}

TEST(BuildInfoRegistryTest, PrintsRecordsInOrderAndMarksWhatDiffers) {
    BuildInfoRegistry registry;
    for (const char* comment : {"", "second of its name"}) {
        registry.AddRuntimeRecord(Record("same", comment));
        registry.AddBuildtimeRecord(Record("same", comment));
    }
    registry.AddRuntimeRecord(Record("alone", ""));
    registry.AddRuntimeRecord(Record("differs", "run"));
    registry.AddBuildtimeRecord(Record("differs", "built"));
    const std::string fields =
        " \tVersion: 1.2\n \tTag: t\n \tUser: u\n \tHost: h1\n \tTimestamp: s\n \tBranch: b\n"
        " \tHash: h\n \tLocal changes: no\n \tPlatform: p\n \tgcc version: g\n"
        " \tKernel version: k\n";
    const std::string same = fields + " \tComment: \n";
    StringWritable out;
    registry.PrintDetails(&out);
    registry.SetApplicationName("app");
    registry.PrintSummary(&out, "differs");
    registry.PrintDetails(&out, "sam");
    EXPECT_EQ(out.Text(),
              "Application: UnsetApplicationName\n[ ] same\n[runtime]\n" + same + "[buildtime]\n" +
                  same + "[?] alone\n[runtime]\n" + same +
                  "[buildtime]\n\tInformation not available!\n[!] differs\n[runtime]\n" + fields +
                  "!\tComment: run\n[buildtime]\n" + fields + "!\tComment: built\n" +
                  "Application: app\n[!] differs\tVersion: 1.2\n"
                  "Application: app\nUnable to find \"sam\"\n");
}

TEST(BuildRecordTest, TagAndHashAreFilledInByTheBuild) {
    const BuildRecord& record = CoreBuildRecord();
    const std::string tag = std::string("quenda_core-") + record.fields[0] + "-";
    EXPECT_EQ(std::string(record.fields[1]).substr(0, tag.size()), tag);
    EXPECT_EQ(strspn(record.fields[6], "0123456789abcdef"), 40U);
}

}  // namespace
