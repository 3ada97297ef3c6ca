#pragma once

#include <cstddef>

namespace Quenda {

// Sends one line to the system logger at /dev/log, byte for byte as syslog(3) does, and counts the
// lines that did not arrive (core/log/Syslog.h). If `ident` is null, the program's name is used.
// The priority includes the facility. Does not throw, and leaves errno as it was.
void SendToSystemLogger(const char* ident, int priority, const char* text, size_t length);

}  // namespace Quenda
