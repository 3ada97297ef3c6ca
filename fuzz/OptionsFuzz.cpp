#include "fuzz/OptionsFuzz.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    // Nothing is copied on the way: a document may be too deep for that.
    OptionsFuzz fuzz{input, RandomDocument(input), Json::Value(), Json::Value()};
    fuzz.changes = input.OneIn(4) ? RandomDocument(input) : RandomChanges(input, fuzz.options);
    fuzz.arrayIds = RandomArrayIds(input, fuzz.changes);
    while (!input.IsEmpty()) {
        if (input.OneIn(4)) {
            AskOptions(fuzz);
        } else {
            EditOptions(fuzz);
        }
    }
    return 0;
}
