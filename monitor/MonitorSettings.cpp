#include "monitor/MonitorSettings.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>

#include "core/log/Log.h"
#include "core/numbers/TargetNumbers.h"

namespace Monitor {

namespace {

void PrintUsage(const MonitorSettings& parsed) {
    fprintf(stderr,
            "usage: %s\n"
            "          -n keldra_process_name\n"
            "          -t heartbeat_timeout_in_seconds\n"
            "          -h heartbeat_file\n"
            "          -X max_strikes\n"
            "          -S service_script\n"
            "          -L led_control_script\n"
            "          -i show the current status of this service\n"
            "          -d start in debugging mode (do not daemonize)\n"
            "          -v show version information and exit\n",
            parsed.monitor_process_name.c_str());
}

// Deliberately as lax as a scan with "%u": "0" is accepted, a minus sign gives a large number, and
// text after the number is ignored.
bool ReadNumber(const char* what, const char* text, uint32_t& number) {
    if (!Quenda::ScanUInt32(text, number)) {
        fprintf(stderr, "Invalid %s %s: not a positive integer\n", what, text);
        return false;
    }
    return true;
}

}  // namespace

Request ParseCommandLine(int argc, char** argv, MonitorSettings& parsed) {
    int option = 0;
    while ((option = getopt(argc, argv, "n:h:X:t:S:L:idv")) != -1) {
        switch (option) {
            case 'n':
                parsed.keldra_process_name = optarg;
                break;
            case 'h':
                parsed.heartbeat_file = optarg;
                break;
            case 'X':
                if (!ReadNumber("maximum strike count", optarg, parsed.max_strikes)) {
                    return Request::kNothing;
                }
                break;
            case 't':
                if (!ReadNumber("heartbeat timeout", optarg, parsed.heartbeat_timeout_sec)) {
                    return Request::kNothing;
                }
                break;
            case 'S':
                parsed.service_script = optarg;
                break;
            case 'L':
                parsed.led_control_script = optarg;
                break;
            case 'i':
                return Request::kQuery;
            case 'd':
                parsed.debug = true;
                break;
            case 'v':
                return Request::kVersion;
            default:
                PrintUsage(parsed);
                return Request::kNothing;
        }
    }
    return Request::kSupervise;
}

void LogDebug(const char* format, ...) {
    if (!settings.debug) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    Quenda::CurrentLogHooks().levelled(0, format, arguments);
    va_end(arguments);
}

}  // namespace Monitor
