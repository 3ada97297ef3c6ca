#include <sys/wait.h>

#include <csignal>
#include <cstdlib>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

struct EndToEndPackageTest : EndToEnd {
    EndToEndPackageTest() { setenv("P", PACKAGE_FILE, 1); }

    void Service(const std::string& action, int status, const std::string& text) {
        const CommandResult result = terminal_->Run({"/etc/init.d/keldra-monitor", action});
        EXPECT_EQ(result.status, W_EXITCODE(status, 0)) << action << ": " << result.output;
        EXPECT_NE(result.output.find(text), std::string::npos) << action << ": " << result.output;
    }
};

TEST_F(EndToEndPackageTest, ServiceScriptStartsReplacesAndStopsTheDaemon) {
    TerminalOptions options;
    options.packageDirectory = files_.File("package");
    // Installed by dpkg, as root at least of a namespace, in a root that has nothing else.
    setenv("D", options.packageDirectory.c_str(), 1);
    ASSERT_EQ(std::system("mkdir \"$D\" && cd \"$D\" && PATH=$PATH:/usr/sbin:/sbin && "
                          "mkdir -p etc/default var/lib/dpkg/info var/lib/dpkg/updates && "
                          "touch var/lib/dpkg/status && $([ $(id -u) = 0 ] || echo unshare -r) "
                          "dpkg --root=\"$D\" --force-depends -i \"$P\" >log 2>&1 || "
                          "{ cat log; false; }"),
              0);
    const char* const settings = "package/etc/default/keldra_monitor";
    files_.Write(settings, std::string("KELDRA_MONITOR_OPTIONS='-t 1 -X 50'\nexport LD_PRELOAD=") +
                               kRedirectLibrary);
    PowerOn(options);
    Service("status", 3, "keldra_monitor is not running.\n");
    Service("stop", 0, "keldra_monitor is not running.\n");
    Service("force-reload", 0, "");
    (void)terminal_->Run({"/bin/rm", "-r", "/var/run/quenda"});  // as after a reboot
    Service("start", 0, "keldra_monitor has been started.\n");
    ExpectLog("Keldra started responding again after");
    const pid_t first = Only("keldra_monitor");
    Service("start", 0, "keldra_monitor is already running.\n");
    EXPECT_EQ(Only("keldra_monitor"), first);
    Service("status", 0, "Keldra State:   Keldra_Up_And_Okay\n");
    // A predecessor that takes its time is waited for.
    ASSERT_TRUE(terminal_->Signal(first, SIGSTOP));
    (void)terminal_->Run({"/bin/sh", "-c", "(sleep 1; kill -CONT $0) &", std::to_string(first)});
    Service("restart", 0, "keldra_monitor has been started.\n");
    const pid_t second = Only("keldra_monitor");
    EXPECT_NE(second, first);
    ASSERT_TRUE(terminal_->Signal(second, SIGSTOP));
    Service("status", 4, "TIMEOUT! ");
    // A query that goes on, with nobody left to answer, is no monitor, but in the way of one.
    const std::string killBoth = "sleep 1; kill -9 " + std::to_string(second) + "; ";
    (void)RunMonitorInShell("\"$@\" & " + killBoth + "(sleep 2; kill $!) &", {"-i"});
    Service("start", 0, "keldra_monitor has been started.\n");
    Service("stop", 0, "unless a\nmonitor is started within 300 seconds, the terminal reboots");
    EXPECT_EQ(LogLines("shutting down gracefully in response to signal 15"), 2);
    EXPECT_TRUE(Becomes([&] { return terminal_->Processes("keldra_monitor").empty(); }));
    files_.Write(settings, "KELDRA_MONITOR_OPTIONS=-Z\n");
    Service("start", 1, "keldra_monitor does not run: the lines above");
    files_.Write(settings, "KELDRA_MONITOR_OPTIONS='-Z\n");
    Service("restart", 6, "/etc/default/keldra_monitor has a mistake");
    (void)terminal_->Run({"/bin/rm", kMonitorProgram});
    files_.Write(settings, "");
    Service("start", 5, "keldra_monitor does not run: /usr/sbin/keldra_monitor is not installed");
    Service("reload", 2, "Usage: ");
}
