#pragma once

#include "fuzz/options_model/OptionsEdits.h"

namespace OptionsModel {

// Puts random questions to random documents and edits them, as the bytes say, until these are used
// up. Throws std::logic_error where an answer or a result is wrong.
MergeCounts ExerciseOptions(const uint8_t* data, size_t size);

}  // namespace OptionsModel
