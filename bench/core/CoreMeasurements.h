// The measurements of the core library beside libraries or plain code that do the same. Each
// prints its rows of the results; false when a bar is missed.
#pragma once

#include <string>

namespace Bench {

bool MeasureTimers();
bool MeasureDispatch();
bool MeasureOptions();
bool MeasureShell();

// For what makes a measurement void: says why and ends the process with status 2.
[[noreturn]] void Fail(const std::string& reason);

}  // namespace Bench
