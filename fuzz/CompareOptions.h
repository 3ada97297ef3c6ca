// Edits made twice, by an options node and by the model of it.
#pragma once

#include <string>

#include "core/options/OptionsNodeEdit.h"

// Change the node's value; they return what the model says otherwise, empty when it agrees.
std::string CompareMerge(Quenda::OptionsNodeEdit& node, const Json::Value& source,
                         const Json::Value& ids);
std::string CompareOverlay(Quenda::OptionsNodeEdit& node, const Json::Value& source,
                           uint32_t levels);
