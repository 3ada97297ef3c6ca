// Named values with defaults, their console, and their history.
#include "core/values/ValueList.h"

#include <cstdlib>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StdioWritable.h"

using Quenda::ValueDefinition;
using Quenda::ValueList;

namespace {

// A console command, word by word.
void Command(ValueList& values, const std::vector<const char*>& words) {
    Quenda::StdioWritable out(stdout);
    values.Command(&out, static_cast<int>(words.size()), words.data());
}

}  // namespace

int main() {
    ValueList values({ValueDefinition::Text("band", "L"), ValueDefinition::UInt("power_mw", 200)});
    Quenda::OptionsNodeEdit options;
    (void)options.SetLeaf("power_mw", 500U, nullptr);
    if (!values.Load(options)) {
        return EXIT_FAILURE;
    }
    Command(values, {"show"});  // the band kept its default

    values.EnableHistory(true);
    Command(values, {"history", "snapshot"});
    Command(values, {"set", "power_mw", "0x200"});
    Command(values, {"history", "snapshot"});
    Command(values, {"history", "delta", "power_mw"});
}
