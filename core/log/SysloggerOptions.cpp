#include "core/log/SysloggerOptions.h"

#include <cstdint>

#include "core/log/Syslog.h"
#include "core/log/TraceList.h"
#include "core/options/OptionsNode.h"

namespace Quenda {

namespace {

constexpr int32_t kDefaultLevel = 5;

}  // namespace

void ApplySysloggerOptions(TraceList& list, const OptionsNode* options) {
    // Read as a number, which a boolean is, too: 1 for true and 0 for false.
    int32_t isOn = 0;
    if (options == nullptr || options->IsEmpty() ||
        !options->GetMemberValue(isOn, "syslogger_on", 0)) {
        return;
    }
    if (isOn == 0) {
        list.RemoveSink(&SyslogSink());
        return;
    }
    int32_t level = kDefaultLevel;
    (void)options->GetMemberValue(level, "syslogger_level", kDefaultLevel);  // 5 when it fails
    list.AddSink(level, &SyslogSink());
}

}  // namespace Quenda
