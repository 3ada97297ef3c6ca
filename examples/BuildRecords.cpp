// What this program and the libraries in it were built from.
#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/buildinfo/MakeBuildRecord.h"
#include "core/output/StdioWritable.h"

int main() {
    static const Quenda::BuildRecord own = QUENDA_BUILD_RECORD("build_records");
    Quenda::BuildInfoRegistry& registry = Quenda::BuildInfoRegistry::Instance();
    registry.SetApplicationName("build_records");
    registry.AddRuntimeRecord(own);
    registry.AddBuildtimeRecord(own);                      // the same: marked with a blank
    registry.AddRuntimeRecord(Quenda::CoreBuildRecord());  // nothing to compare: marked "?"

    Quenda::StdioWritable out(stdout);
    registry.PrintSummary(&out);
    registry.PrintDetails(&out, "another");
}
