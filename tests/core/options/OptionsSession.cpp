// Changes a document of options and asks for parts of it, by commands of one to four words;
// tests/transcripts has sessions with it. Values are JSON without blanks, with ' for ".
#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StdioWritable.h"
#include "tests/core/options/Json.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

using Node = OptionsNodeEdit;
using Word = const char*;  // empty if it is not given

// D is an array that nests in as many levels as a document may have.
OptionsNode Source(Word text) {
    const std::string deep = std::string(1000, '[') + std::string(1000, ']');
    return *text == '\0' ? OptionsNode() : OptionsNode(J(*text == 'D' ? deep.c_str() : text));
}

uint32_t Number(Word text) {
    return static_cast<uint32_t>(std::stoul(text));
}

Word OrNull(Word text) {
    return *text == '\0' ? nullptr : text;
}

bool Print(const std::string& text) {
    return std::puts(text.c_str()) >= 0;
}

bool PrintPath(const Node& node, OptionsPath path) {
    path.erase(std::find(path.begin(), path.end(), std::string()), path.end());
    StdioWritable out(stdout);
    node.Print(&out, path);
    return !node.GetNode(path).Value().isNull();
}

template <typename T>
bool PrintNumber(const Node& node, Word name) {
    T number = 0;
    const bool got = node.GetMemberValue(number, name, T{99});
    std::printf("%.15g\n", static_cast<double>(number));
    return got;
}

// Prints members or elements up to the one of that name.
template <typename Key>
CallbackRef<void(bool&, Key, const OptionsNode&)> Until(const std::string& last) {
    const auto visit = [last](bool& stop, Key key, const OptionsNode& node) {
        std::ostringstream name;
        name << key;
        (void)Print(name.str() + ": " + Text(node.Value()));
        stop = name.str() == last;
    };
    using Callback = CallbackTo<void(bool&, Key, const OptionsNode&)>;
    return CallbackRef<void(bool&, Key, const OptionsNode&)>(new Callback(visit));
}

// Selects the members whose names begin with one of the letters; without letters there is no
// predicate.
bool Select(const Node& node, const std::string& letters) {
    OptionsNode selected(J("'untouched'"));
    const auto begins = [&](Word name) { return letters.find(*name) != std::string::npos; };
    const MemberPredicate predicate(letters.empty() ? nullptr : new CallbackTo<bool(Word)>(begins));
    return node.SelectMembers(predicate, selected) & Print(Text(selected.Value()));
}

const std::map<std::string, std::function<bool(Node&, Word, Word, Word)>> kCommands = {
    {"text", [](Node& n, Word a, Word b, Word c) { return n.SetLeaf(a, OrNull(b), OrNull(c)); }},
    {"unsigned", [](Node& n, Word a, Word b, auto) { return n.SetLeaf(a, Number(b), nullptr); }},
    {"int", [](Node& n, Word a, Word b, auto) { return n.SetLeaf(a, std::stoi(b), nullptr); }},
    {"real", [](Node& n, Word a, Word b, auto) { return n.SetLeaf(a, std::stod(b), nullptr); }},
    {"true", [](Node& n, Word a, auto...) { return n.SetLeaf(a, true, nullptr); }},
    {"comment", [](Node& n, Word a, auto...) { return n.SetComment(OrNull(a)); }},
    {"add", [](Node& n, Word a, Word b, Word c) { return n.AddMember(a, Source(b), *c != '\0'); }},
    {"add-itself", [](Node& n, Word a, auto...) { return n.AddMember(a, n, true); }},
    {"modify", [](Node& n, Word a, Word b, auto) { return n.ModifyMember(a, Source(b)); }},
    {"remove", [](Node& n, Word a, auto...) { return n.RemoveMember(a); }},
    {"rename", [](Node& n, Word a, Word b, Word c) { return n.RenameMember(b, a, *c != '\0'); }},
    {"append", [](Node& n, Word a, auto...) { return n.Append(Source(a)); }},
    {"append-itself", [](Node& n, auto...) { return n.Append(n); }},
    {"set", [](Node& n, Word a, Word b, auto) { return n.SetElement(Number(a), Source(b)); }},
    {"truncate", [](Node& n, Word a, auto...) { return n.Truncate(Number(a)); }},
    {"overlay", [](Node& n, Word a, Word b, auto) { return n.Overlay(Source(a), Number(b)); }},
    {"merge", [](Node& n, Word a, Word b, auto) { return n.Merge(Source(a), Source(b)); }},
    {"get-int", [](Node& n, Word a, auto...) { return PrintNumber<int32_t>(n, a); }},
    {"get-unsigned", [](Node& n, Word a, auto...) { return PrintNumber<uint32_t>(n, a); }},
    {"get-double", [](Node& n, Word a, auto...) { return PrintNumber<double>(n, a); }},
    {"get-float", [](Node& n, Word a, auto...) { return PrintNumber<float>(n, a); }},
    {"get-text", [](Node& n, Word a, auto...) { return Print(n.GetMemberString(a)); }},
    {"get-text-at", [](Node& n, Word a, auto...) { return Print(n.GetElementString(Number(a))); }},
    {"get", [](Node& n, Word a, auto...) { return Print(Text(n.GetMember(a).Value())); }},
    {"get-at",
     [](Node& n, Word a, auto...) { return Print(Text(n.GetElement(Number(a)).Value())); }},
    {"print",
     [](Node& n, Word a, Word b, Word c) {
         return PrintPath(n, {a, b, c});
     }},
    {"members", [](Node& n, Word a, auto...) { return n.ForEachMember(Until<Word>(a)); }},
    {"elements", [](Node& n, Word a, auto...) { return n.ForEachElement(Until<uint32_t>(a)); }},
    {"select", [](Node& n, Word a, auto...) { return Select(n, a); }},
};

}  // namespace

int main() {
    Json::Value document;
    Json::Value* edited = &document;
    for (std::string line; std::getline(std::cin, line);) {
        (void)Print("> " + line);
        std::istringstream text(line);
        std::string command, a, b, c;
        text >> command >> a >> b >> c;
        const auto found = kCommands.find(command);
        if (command == "document") {
            edited = a.empty() ? nullptr : &(document = J(a.c_str()));
        } else if (found != kCommands.end()) {
            const std::string before = Text(document);
            bool modified = false;
            Node node(edited, &modified);
            const bool done = found->second(node, a.c_str(), b.c_str(), c.c_str());
            const std::string after = Text(document) == before ? "" : ": " + Text(document);
            (void)Print((done ? "true" : "false") + std::string(modified ? ", modified" : "") +
                        after);
            if (!node.Error().IsEmpty()) {
                (void)Print(node.Error().Get());
            }
        }
    }
}
