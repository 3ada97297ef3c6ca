#include "examples/diagnostics_console/OptionsDesk.h"

#include <cstring>

#include "core/text/TargetNumbers.h"

using Quenda::OptionsNodeEdit;

namespace {

// The edits that build a document of our own cannot fail, so their results are not looked at.

bool SetValue(OptionsNodeEdit& node, const char* name, const char* value) {
    const bool number = *value != '\0' && std::strspn(value, "0123456789") == std::strlen(value);
    return number ? node.SetLeaf(name, Quenda::StrToUInt32(value, 10), nullptr)
                  : node.SetLeaf(name, value, nullptr);
}

// {"ports": [element]}
OptionsNodeEdit InPorts(const OptionsNodeEdit& element) {
    OptionsNodeEdit ports;
    (void)ports.Append(element);
    OptionsNodeEdit document;
    (void)document.AddMember("ports", ports, false);
    return document;
}

OptionsNodeEdit Port(const char* port, const char* rate) {
    OptionsNodeEdit element;
    (void)SetValue(element, "port", port);
    (void)SetValue(element, "rate", rate);
    return element;
}

// Elements with an equal "port" are the same one.
OptionsNodeEdit PortIds() {
    OptionsNodeEdit id;
    (void)SetValue(id, "port", "0");
    return InPorts(id);
}

}  // namespace

OptionsDesk::OptionsDesk() {
    OptionsNodeEdit modem;
    (void)SetValue(modem, "band", "L");
    (void)modem.SetLeaf("power", 5U, "watts");
    (void)SetValue(document_, "name", "terminal");
    (void)document_.AddMember("modem", modem, false);
    (void)document_.Merge(InPorts(Port("1", "9600")), PortIds());
}

void OptionsDesk::Command(Quenda::Writable* out, int argc, const char* const* argv) {
    const char* const word = argc > 0 ? argv[0] : "";
    const auto is = [word](const char* command) { return std::strcmp(word, command) == 0; };
    OptionsNodeEdit before = document_;  // a copy, since a merge that fails half-way is not undone
    bool done = false;
    if (is("print")) {
        const Quenda::OptionsPath path(argv + 1, argv + argc);
        document_.Print(out, path);
        done = !document_.GetNode(path).Value().isNull();
    } else if (is("set") && argc == 3) {
        done = Set(argv[1], argv[2]);
    } else if (is("overlay") && argc == 3) {
        done = Overlay(argv[1], argv[2]);
    } else if (is("merge") && argc == 3) {
        done = Merge(argv[1], argv[2]);
    } else {
        out->Puts(
            "Usage: print [NAME...] | set NAME VALUE | overlay NAME VALUE | merge PORT RATE\n");
        return;
    }
    if (!done) {
        out->Printf("%s\n", document_.Error().Get());
        document_ = before;
    }
}

bool OptionsDesk::Set(const char* name, const char* value) {
    return SetValue(document_, name, value);
}

bool OptionsDesk::Overlay(const char* name, const char* value) {
    OptionsNodeEdit modem;
    (void)SetValue(modem, name, value);
    OptionsNodeEdit changes;
    (void)changes.AddMember("modem", modem, false);
    // Always false: what tells is the message, of which there was none before.
    (void)document_.Overlay(changes, 1);
    return document_.Error().IsEmpty();
}

bool OptionsDesk::Merge(const char* port, const char* rate) {
    return document_.Merge(InPorts(Port(port, rate)), PortIds());
}
