#pragma once

#include <string>

namespace Terminals {

// Reports an event to the simulator: the name of the sender and a text.
void Announce(const std::string& who, const std::string& what);

}  // namespace Terminals
