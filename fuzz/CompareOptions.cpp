#include "fuzz/CompareOptions.h"

#include "fuzz/OptionsModel.h"

using OptionsModel::Describe;
using Quenda::OptionsNode;
using Quenda::OptionsNodeEdit;

namespace {

// `change` tells what was done, before it was done.
std::string Compare(const OptionsNodeEdit& node, const Json::Value& expected,
                    const std::string& change) {
    const std::string found = Describe(node.Value());
    const std::string wanted = Describe(expected);
    return found == wanted ? "" : change + "\ncame to " + found + "\ninstead of " + wanted;
}

std::string Tell(const char* change, const OptionsNode& node, const Json::Value& source) {
    return change + Describe(source) + "\ninto " + Describe(node.Value());
}

}  // namespace

std::string CompareMerge(OptionsNodeEdit& node, const Json::Value& source, const Json::Value& ids) {
    const std::string change = Tell("merge of ", node, source) + "\nby " + Describe(ids);
    const OptionsNode sourceCopy(source);
    const bool repeat = ids.isNull();
    Json::Value expected(node.Value());
    const std::string message = OptionsModel::Merge(expected, source, ids);
    const bool merged = node.Merge(OptionsNode(&source), OptionsNode(&ids));
    if (merged != message.empty() || node.Error().Get() != message) {
        return change + "\nended with '" + node.Error().Get() + "' instead of '" + message + "'";
    }
    const std::string difference = Compare(node, expected, change);
    if (!difference.empty() || !merged || !repeat) {
        return difference;
    }
    (void)node.Merge(sourceCopy, OptionsNode());
    return Compare(node, expected, change + "\ntwice");
}

std::string CompareOverlay(OptionsNodeEdit& node, const Json::Value& source, uint32_t levels) {
    const std::string change = Tell("overlay of ", node, source) + "\nto " + std::to_string(levels);
    const OptionsNode sourceCopy(source);
    const Json::Value expected = OptionsModel::Overlay(node.Value(), source, levels);
    if (node.Overlay(OptionsNode(&source), levels)) {
        return change + "\ngave true";
    }
    const std::string difference = Compare(node, expected, change);
    (void)node.Overlay(sourceCopy, levels);
    return difference.empty() ? Compare(node, expected, change + "\ntwice") : difference;
}
