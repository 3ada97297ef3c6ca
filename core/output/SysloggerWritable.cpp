#include "core/output/SysloggerWritable.h"

#include <syslog.h>

namespace Quenda {

size_t SysloggerWritable::Write(const void* data, size_t length) {
    syslog(LOG_DAEMON | LOG_ERR, "%.*s", static_cast<int>(length), static_cast<const char*>(data));
    return length;
}

}  // namespace Quenda
