// Build records: the versions of this program and of the libraries in it.
#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/output/StdioWritable.h"

namespace {

// Filled in by hand; a real program takes the texts from its build. The order is that of the labels
// that PrintDetails prints.
Quenda::BuildRecord Record(const char* name, const char* version, const char* comment) {
    return {name,
            {version, "modem-1.2.3.4-17", "builder", "build-host", "Sun Nov 22 06:30:00 UTC 2026",
             "main", "2f0a7c1d9e8b4f6a5c3d2e1f0a9b8c7d6e5f4a3b", "no", "powerpc",
             "powerpc-linux-gnu-g++ 12.2.0", "6.1.0 #1 SMP ppc", comment}};
}

}  // namespace

int main() {
    Quenda::StdioWritable out(stdout);
    Quenda::BuildInfoRegistry& registry = Quenda::BuildInfoRegistry::Instance();
    registry.PrintSummary(&out);  // no name and no records yet
    registry.SetApplicationName("build_records");
    registry.AddRuntimeRecord(Record("modem", "1.2.3.4", ""));
    registry.AddRuntimeRecord(Record("modem", "9.9.9.9", ""));    // ignored: the name is taken
    registry.AddBuildtimeRecord(Record("modem", "1.2.3.4", ""));  // equal: a blank
    registry.AddRuntimeRecord(Record("antenna", "2.0.0.1", ""));
    registry.AddBuildtimeRecord(Record("antenna", "2.0.0.1", "trial"));  // differs: "!"
    registry.AddRuntimeRecord(Record("router", "3.0.0.0", ""));          // nothing to compare: "?"
    registry.PrintSummary(&out);
    registry.PrintDetails(&out, "antenna");
    registry.PrintDetails(&out, "router");
    registry.PrintSummary(&out, "another");
    registry.PrintSummary(&out, Quenda::CoreBuildRecord().name);
    out.Printf("%s %s\n", Quenda::BuildFieldLabel(12), Quenda::BuildFieldLabel(13));
}
