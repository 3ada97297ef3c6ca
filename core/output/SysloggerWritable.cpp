#include "core/output/SysloggerWritable.h"

#include <syslog.h>

#include "core/output/SystemLogger.h"

namespace Quenda {

size_t SysloggerWritable::Write(const void* data, size_t length) {
    SendToSyslog(LOG_DAEMON | LOG_ERR, "%.*s", static_cast<int>(length),
                 static_cast<const char*>(data));
    return length;
}

}  // namespace Quenda
