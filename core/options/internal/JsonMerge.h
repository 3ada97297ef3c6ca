// Merges one JSON value into another. Neither may be a part of the other.
#pragma once

#include <cstdint>
#include <string>

#include "json/value.h"

namespace Quenda::JsonTree {

// Merges objects down to `maxDepth` levels below the destination and replaces everything else. Null
// members of the source change nothing.
void OverlayValue(Json::Value& destination, const Json::Value& source, uint32_t maxDepth);

// Merges the source's changes into the destination, as OptionsNodeEdit::Merge describes. Returns
// the message of the failure that ended the merge, or an empty text. Changes made before a failure
// stay.
std::string MergeValue(Json::Value& destination, const Json::Value& source,
                       const Json::Value& arrayIds);

}  // namespace Quenda::JsonTree
