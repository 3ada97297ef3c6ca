#pragma once

#include "fuzz/RandomDocument.h"

// What one input works on; edits change the documents.
struct OptionsFuzz {
    FuzzInput& input;
    Json::Value options;
    Json::Value changes;
    Json::Value arrayIds;
};

// Asks a random part of the options something.
void AskOptions(OptionsFuzz& fuzz);

// Changes a random part of the options.
void EditOptions(OptionsFuzz& fuzz);
