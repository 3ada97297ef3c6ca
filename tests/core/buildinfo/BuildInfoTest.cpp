#include <gtest/gtest.h>

#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

BuildRecord Record(const char* name, const char* comment) {
    return {name, {"1.2", "t", "u", "h1", "s", "b", "h", "no", "p", "g", "k", comment}};
}

TEST(BuildInfoRegistryTest, RecordsAreMarkedAndPrintedInOrder) {
    BuildInfoRegistry registry;
    for (const char* comment : {"", "second of its name"}) {
        registry.AddRuntimeRecord(Record("same", comment));
        registry.AddBuildtimeRecord(Record("same", comment));
    }
    registry.AddRuntimeRecord(Record("alone", ""));
    registry.AddRuntimeRecord(Record("differs", "run"));
    registry.AddBuildtimeRecord(Record("differs", "built"));
    StringWritable out;
    registry.PrintSummary(&out);
    EXPECT_EQ(out.Text(),
              "Application: UnsetApplicationName\n[ ] same\tVersion: 1.2\n"
              "[?] alone\tVersion: 1.2\n[!] differs\tVersion: 1.2\n");
    out.Clear();
    registry.PrintSummary(&out, "sam");
    EXPECT_EQ(out.Text(), "Application: UnsetApplicationName\nUnable to find \"sam\"\n");
}

TEST(BuildRecordTest, TagAndHashAreFilledInByTheBuild) {
    const BuildRecord& record = CoreBuildRecord();
    const std::string tag = std::string("quenda_core-") + record.fields[0] + "-";
    EXPECT_EQ(std::string(record.fields[1]).substr(0, tag.size()), tag);
    EXPECT_EQ(strspn(record.fields[6], "0123456789abcdef"), 40U);
}

}  // namespace
