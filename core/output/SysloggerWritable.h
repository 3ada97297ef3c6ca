#pragma once

#include "core/output/Writable.h"

namespace Quenda {

// Sends every piece written to it to syslog(3) as one record of its own, with the facility
// LOG_DAEMON and the priority LOG_ERR: a dump yields one record for each write, a lone "\n"
// included. Writes return `length`.
class SysloggerWritable : public Writable {
public:
    using Writable::Write;
    size_t Write(const void* data, size_t length) override;
};

}  // namespace Quenda
