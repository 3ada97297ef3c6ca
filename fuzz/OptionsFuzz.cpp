// Any bytes as documents, questions and edits.
#include "fuzz/options_model/OptionsExercise.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    (void)OptionsModel::ExerciseOptions(data, size);
    return 0;
}
