// Random questions and edits on random documents.
#include "fuzz/OptionsFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    // Nothing is copied on the way: a document may be too deep for that.
    OptionsFuzz fuzz{input, RandomDocument(input), Json::Value(), Json::Value()};
    fuzz.changes = input.ConsumeBool() ? RandomDocument(input) : RandomChanges(input, fuzz.options);
    fuzz.arrayIds = RandomArrayIds(input, fuzz.changes);
    while (input.remaining_bytes() > 0) {
        if (input.ConsumeBool()) {
            EditOptions(fuzz);
        } else {
            AskOptions(fuzz);
        }
    }
    return 0;
}
