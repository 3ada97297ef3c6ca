#pragma once

#include <map>
#include <string>

// The descriptors that this process has open, each with what it refers to. Compare two of these
// to see a leak.
std::map<int, std::string> OpenDescriptors();
