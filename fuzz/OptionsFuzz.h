#pragma once

#include "fuzz/RandomDocument.h"

// What one input works on; edits change the documents.
struct OptionsFuzz {
    FuzzInput& input;
    Json::Value options;
    Json::Value changes;
    Json::Value arrayIds;
};

// How many merges, held against the model, changed something: to their end, or to an obstacle.
extern int mergesDone;
extern int mergesStoppedHalfway;

// Asks a random part of the options something.
void AskOptions(OptionsFuzz& fuzz);

// Changes a random part of the options.
void EditOptions(OptionsFuzz& fuzz);

// Random questions and edits on random documents, drawn from the bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
