#pragma once

#include <string>

namespace Terminals {

// Reports to the simulator from inside the terminal: who this is and what happens.
void Announce(const std::string& who, const std::string& what);

}  // namespace Terminals
