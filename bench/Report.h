#pragma once

#include <string>

namespace Bench {

// Prints one line of the page's first table, in Markdown. `columns` is a format for printf(3) with
// the columns between "|": the figure, the measured value, the value that it is compared with ("-"
// for none) and the promise. Returns whether the promise is kept.
bool PrintRow(bool kept, const char* columns, ...) __attribute__((format(printf, 2, 3)));

// Ends the program with status 2: nothing can be measured.
[[noreturn]] void Fail(const std::string& reason);

}  // namespace Bench
