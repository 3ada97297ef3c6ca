#pragma once

#include "fuzz/options_model/OptionsEdits.h"

namespace OptionsModel {

// Makes random documents from the bytes, queries and edits them until the bytes are used up. Throws
// std::logic_error when an answer or a result is wrong.
MergeCounts ExerciseOptions(const uint8_t* data, size_t size);

}  // namespace OptionsModel
