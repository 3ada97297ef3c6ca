// An options document: built, merged with changes, read.
#include <cstdio>
#include <cstdlib>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StdioWritable.h"

using Quenda::OptionsNodeEdit;

namespace {

// {"ports": [element]}
OptionsNodeEdit InPorts(const OptionsNodeEdit& element) {
    OptionsNodeEdit ports;
    (void)ports.Append(element);
    OptionsNodeEdit document;
    (void)document.AddMember("ports", ports, false);
    return document;
}

OptionsNodeEdit Port(uint32_t port, uint32_t rate) {
    OptionsNodeEdit element;
    (void)element.SetLeaf("port", port, nullptr);
    (void)element.SetLeaf("rate", rate, "bits per second");
    return element;
}

// Elements with an equal "port" are the same one. The 0 only says that it is a number.
OptionsNodeEdit PortIds() {
    OptionsNodeEdit id;
    (void)id.SetLeaf("port", 0, nullptr);
    return InPorts(id);
}

}  // namespace

int main() {
    OptionsNodeEdit options = InPorts(Port(1, 9600));
    if (!options.Merge(InPorts(Port(2, 115200)), PortIds()) ||  // another port: appended
        !options.Merge(InPorts(Port(1, 4800)), PortIds())) {    // the same port: changed
        return EXIT_FAILURE;
    }
    Quenda::StdioWritable out(stdout);
    options.Print(&out, {"ports"});

    OptionsNodeEdit wrong;
    (void)wrong.SetLeaf("ports", "none", nullptr);
    if (!options.Merge(wrong, PortIds())) {
        std::printf("refused: %s\n", options.Error().Get());
    }
    uint32_t bits = 0;
    const Quenda::OptionsNode second = options.GetNode({"ports"}).GetElement(1);
    if (!second.GetMemberValue(bits, "bits", 8)) {
        std::printf("%s, so %u bits\n", second.Error().Get(), bits);
    }
}
