// Random edits of an options tree. Merges and overlays must have the model's result.
#pragma once

#include "fuzz/options_model/RandomDocument.h"

namespace OptionsModel {

// How many merges changed something: to their end, or up to an obstacle.
struct MergeCounts {
    int done = 0;
    int stoppedHalfway = 0;
};

// The documents that one input works on. Edits change them.
struct Trial {
    RandomInput& input;
    Json::Value options;
    Json::Value changes;
    Json::Value arrayIds;
    MergeCounts merges;  // only those that were compared with the model's
};

// Makes one random edit to a random part of the options.
void EditOptions(Trial& trial);

}  // namespace OptionsModel
