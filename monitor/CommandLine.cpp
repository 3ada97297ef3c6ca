#include "monitor/CommandLine.h"

#include <unistd.h>

#include <cstdio>

#include "core/numbers/TargetNumbers.h"

namespace Monitor {

namespace {

void PrintUsage(const MonitorSettings& settings) {
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
            settings.monitor_process_name.c_str());
}

// As lax as a scan with "%u" is, on purpose: "0" passes, a minus sign gives a large number, and
// text after the number is ignored.
bool ReadNumber(const char* what, const char* text, uint32_t& number) {
    if (!Quenda::ScanUInt32(text, number)) {
        fprintf(stderr, "Invalid %s %s: not a positive integer\n", what, text);
        return false;
    }
    return true;
}

}  // namespace

Request ParseCommandLine(int argc, char** argv, MonitorSettings& settings) {
    int option = 0;
    while ((option = getopt(argc, argv, "n:h:X:t:S:L:idv")) != -1) {
        switch (option) {
            case 'n':
                settings.keldra_process_name = optarg;
                break;
            case 'h':
                settings.heartbeat_file = optarg;
                break;
            case 'X':
                if (!ReadNumber("maximum strike count", optarg, settings.max_strikes)) {
                    return Request::kNothing;
                }
                break;
            case 't':
                if (!ReadNumber("heartbeat timeout", optarg, settings.heartbeat_timeout_sec)) {
                    return Request::kNothing;
                }
                break;
            case 'S':
                settings.service_script = optarg;
                break;
            case 'L':
                settings.led_control_script = optarg;
                break;
            case 'i':
                return Request::kQuery;
            case 'd':
                settings.debug = true;
                break;
            case 'v':
                return Request::kVersion;
            default:
                PrintUsage(settings);
                return Request::kNothing;
        }
    }
    return Request::kSupervise;
}

}  // namespace Monitor
