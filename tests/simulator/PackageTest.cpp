#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/simulator/EndToEnd.h"

namespace fs = std::filesystem;
using namespace Simulator;

class EndToEndPackageTest : public EndToEnd {
protected:
    // Unpacks the package and switches on a terminal that has it.
    void Install() {
        TerminalOptions options;
        options.packageDirectory = files_.File("package");
        const std::string unpack = "dpkg-deb -x " PACKAGE_FILE " " + options.packageDirectory;
        ASSERT_EQ(std::system(unpack.c_str()), 0);
        fs::create_directory(options.packageDirectory + "/etc/default");
        files_.Write("package/etc/default/keldra_monitor",
                     std::string("KELDRA_MONITOR_OPTIONS='-t 1 -X 50'\nexport LD_PRELOAD=") +
                         kRedirectLibrary + "\n");
        // The script's shell would keep the library for itself: it comes from the file above.
        options.monitorWrapper = "/usr/bin/env";
        PowerOn(options);
    }

    void Service(const std::string& action, int status, const std::string& text) {
        std::vector<std::string> command = terminal_->MonitorCommand({action});
        *(command.end() - 2) = "/etc/init.d/keldra-monitor";
        const CommandResult result = terminal_->Run(command);
        EXPECT_EQ(result.status, W_EXITCODE(status, 0)) << action << ": " << result.output;
        EXPECT_NE(result.output.find(text), std::string::npos) << action << ": " << result.output;
    }
};

TEST_F(EndToEndPackageTest, HoldsWhatRunsWithTheRightsItNeedsAndTouchesNoRunningDaemon) {
    for (const char* check :
         {"dpkg-deb -c $P | grep -q '^-rwxr-xr-x root/root .* ./usr/sbin/keldra_monitor$'",
          "dpkg-deb -c $P | grep -q '^-rwxr-xr-x root/root .* ./etc/init.d/keldra-monitor$'",
          "! dpkg-deb -c $P | grep -v '^[-d]rw[-x]r-[-x]r-[-x] root/root '",
          "dpkg-deb -f $P Depends | grep -q 'libc6 (>= 2[.][0-9]*), .*libstdc++6 (>= [0-9]'",
          "dpkg-deb -I $P conffiles | grep -qx /etc/init.d/keldra-monitor",
          "! dpkg-deb -I $P | grep -E ' (pre|post)(inst|rm) '"}) {
        EXPECT_EQ(std::system((std::string("P=" PACKAGE_FILE "; ") + check).c_str()), 0) << check;
    }
}

TEST_F(EndToEndPackageTest, ServiceScriptStartsReplacesAndStopsThePackagesDaemon) {
    ASSERT_NO_FATAL_FAILURE(Install());
    Service("status", 3, "keldra_monitor is not running.\n");
    Service("stop", 0, "keldra_monitor is not running.\n");
    Service("force-reload", 0, "");
    Service("start", 0, "keldra_monitor has been started.\n");
    ExpectLog("Keldra started responding again after");
    const pid_t first = Only("keldra_monitor");
    Service("start", 0, "keldra_monitor is already running.\n");
    EXPECT_EQ(Only("keldra_monitor"), first);
    Service("status", 0, "Keldra State:   Keldra_Up_And_Okay\n");
    // A predecessor that takes its time is waited for.
    ASSERT_TRUE(terminal_->Signal(first, SIGSTOP));
    const std::string goOn = "(sleep 1; kill -CONT " + std::to_string(first) + ") &";
    (void)terminal_->Run({"/bin/sh", "-c", goOn});
    Service("restart", 0, "keldra_monitor has been started.\n");
    EXPECT_NE(Only("keldra_monitor"), first);
    Service("stop", 0, "unless a\nmonitor is started within 300 seconds, the terminal reboots");
    EXPECT_EQ(LogLines("shutting down gracefully in response to signal 15"), 2);
    EXPECT_TRUE(Becomes([&] { return terminal_->Processes("keldra_monitor").empty(); }));
    EXPECT_EQ(terminal_->Watchdog().BiteSeconds(), 300U);
    files_.Write("package/etc/default/keldra_monitor", "KELDRA_MONITOR_OPTIONS=-Z\n");
    Service("start", 1, "keldra_monitor does not run: the lines above");
    fs::remove(terminal_->Path(kMonitorProgram));
    Service("start", 5, "/usr/sbin/keldra_monitor is not installed");
    Service("reload", 2, "Usage: ");
}
