// Edits made twice, by an options node and by the model of it.
#pragma once

#include <string>

#include "core/options/OptionsNodeEdit.h"

// Change the node's value; they return what the model says otherwise, empty when it agrees. An
// overlay, and a merge without IDs that worked, is made once more: nothing is left to change.
std::string CompareMerge(Quenda::OptionsNodeEdit& node, const Json::Value& source,
                         const Json::Value& ids);
std::string CompareOverlay(Quenda::OptionsNodeEdit& node, const Json::Value& source,
                           uint32_t levels);
