#pragma once

namespace Bench {

// Prints one line of the page's first table, in Markdown. `columns` is a format for printf(3) and
// holds the figure, what was measured, what it stands beside ("-" for nothing) and the promise,
// with "|" between them. Returns whether the promise is kept.
bool PrintRow(bool kept, const char* columns, ...) __attribute__((format(printf, 2, 3)));

}  // namespace Bench
