#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/terminal/EndToEnd.h"

namespace fs = std::filesystem;

// The package as dpkg installs it, and its service script as a careless caller runs it.
struct EndToEndPackageTest : EndToEnd {
    void SetUp() override {
        EndToEnd::SetUp();
        if (IsSkipped()) {
            return;
        }
        TerminalOptions options;
        options.packageDirectory = files_.File("package");
        // As root at least of a namespace, in a root that has nothing else.
        setenv("P", PACKAGE_FILE, 1);
        setenv("D", options.packageDirectory.c_str(), 1);
        ASSERT_EQ(std::system(
                      "mkdir \"$D\" && cd \"$D\" && PATH=$PATH:/usr/sbin:/sbin && "
                      "mkdir -p var/lib/dpkg/info var/lib/dpkg/updates && "
                      "touch var/lib/dpkg/status && $([ $(id -u) = 0 ] || echo unshare -r) "
                      "dpkg --root=\"$D\" --force-depends,script-chrootless -i \"$P\" >log 2>&1 || "
                      "{ cat log; false; }"),
                  0);
        Settings("KELDRA_MONITOR_OPTIONS='-t 1 -X 50'");
        PowerOn(options);
    }

    void Settings(const std::string& lines) {
        files_.Write("package/etc/default/keldra_monitor", lines + "\n");
    }

    CommandResult Shell(const std::string& line) { return terminal_->Run({"/bin/sh", "-c", line}); }

    void Service(const std::string& action, int status, const std::string& text) {
        const CommandResult result =
            Shell("umask 077; cd /tmp; exec env -i ASAN_OPTIONS=$ASAN_OPTIONS LD_PRELOAD=" +
                  std::string(kRedirectLibrary) + " " + action_ + action);
        EXPECT_EQ(result.status, W_EXITCODE(status, 0)) << action << ": " << result.output;
        EXPECT_NE(result.output.find(text), std::string::npos) << action << ": " << result.output;
    }

    // Runs the daemon's namesake: another program, in a process of the daemon's name.
    void StartStranger() {
        (void)Shell("cp /bin/sleep /tmp/keldra_monitor; /tmp/keldra_monitor 99 &");
    }

    std::string action_ = "/etc/init.d/keldra-monitor ";
};

TEST_F(EndToEndPackageTest, ServiceScriptStartsReplacesAndStopsTheDaemon) {
    Service("status", 3, "keldra_monitor is not running.\n");
    Service("health", 3, "keldra_monitor is not running.\n");
    Service("stop", 0, "keldra_monitor is not running.\n");
    Service("force-reload", 0, "");
    (void)Shell("rm -r /var/run/quenda");  // as after a reboot
    Service("start", 0, "keldra_monitor has been started.\n");
    struct stat folder = {};
    ASSERT_EQ(stat(terminal_->Path("/var/run/quenda").c_str(), &folder), 0);
    EXPECT_EQ(folder.st_mode & 07777, 0755u);
    ExpectLog("Keldra started responding again after");
    const pid_t first = Only("keldra_monitor");
    Service("start", 0, "keldra_monitor is already running.\n");
    EXPECT_EQ(Only("keldra_monitor"), first);
    Service("status", 0, "Keldra State:   Keldra_Up_And_Okay\n");
    Service("health", 0, "Keldra_Up_And_Okay, strikes 0, Normal_Options\n");
    // A predecessor that takes its time is waited for.
    ASSERT_TRUE(terminal_->Signal(first, SIGSTOP));
    (void)Shell("(sleep 1; kill -CONT " + std::to_string(first) + ") &");
    Service("restart", 0, "keldra_monitor has been started.\n");
    const pid_t second = Only("keldra_monitor");
    EXPECT_NE(second, first);
    ASSERT_TRUE(terminal_->Signal(second, SIGSTOP));
    Service("status", 4, "TIMEOUT! ");
    Service("health", 14, "TIMEOUT! ");
    // A query that goes on, with nobody left to answer, is no monitor, but in the way of one.
    const std::string killBoth = "sleep 1; kill -9 " + std::to_string(second) + "; ";
    (void)RunMonitorInShell("\"$@\" & " + killBoth + "(sleep 2; kill $!) &", {"-i"});
    Service("start", 0, "keldra_monitor has been started.\n");
    Service("stop", 0, "unless a\nmonitor is started within 300 seconds, the terminal reboots");
    EXPECT_EQ(LogLines("shutting down gracefully in response to signal 15"), 2);
    EXPECT_TRUE(Becomes([&] { return terminal_->Processes("keldra_monitor").empty(); }));
    (void)Shell("rm /usr/sbin/keldra_monitor");
    Service("start", 5, "/usr/sbin/keldra_monitor is not installed");
    Service("reload", 2, "Usage: ");
}

TEST_F(EndToEndPackageTest, HealthTellsWhatAilsKeldra) {
    Settings("KELDRA_MONITOR_OPTIONS='-t 1 -X 50 -n absent'");
    Service("start", 0, "");
    ExpectLog("Strike 3!");
    Service("health", 11, "Keldra_Not_Running, strikes ");
    Service("health", 11, ", Backup_Options\n");
}

TEST_F(EndToEndPackageTest, MistakeInTheSettingsNeverCostsTheMonitor) {
    Service("start", 0, "");
    const pid_t monitor = Only("keldra_monitor");
    const struct {
        const char* settings;
        const char* reason;
    } mistakes[] = {
        {"KELDRA_MONITOR_OPTIONS='-t sixty'", "Invalid heartbeat timeout sixty: not a positive"},
        {"KELDRA_MONITOR_OPTIONS='-X'", "-X lacks its argument"},
        {"KELDRA_MONITOR_OPTIONS='-t 5 -z'", "-z is no option"},
        {"KELDRA_MONITOR_OPTIONS='-t 1 -d'", "-d has no place there"},
        {"KELDRA_MONITOR_OPTIONS='-it 1'", "-i has no place there"},
        {"KELDRA_MONITOR_OPTIONS=-v", "-v has no place there"},
        {"KELDRA_MONITOR_OPTIONS='t 30 -X 9'", "t is no option"},
        {"KELDRA_MONITOR_OPTIONS='-h /a * -X 9'", "* is no option"},
        {"KELDRA_MONITOR_OPTIONS='-t 30 --'", "-- is no option"},
        {"KELDRA_MONITOR_OPTIONS=-t 30", "30: not found"},
        {"KELDRA_MONITOR_OPTIONS='-t 30", "nterminated quoted string"},
        {"KELDRA_MONITOR_OPTIONS='-n keldra'\r", "a carriage return ends a line"},
        {"exit 0", "the shell"},
        {"KELDRA_MONITOR_OPTION='-t 1 -X 50'", "and not KELDRA_MONITOR_OPTION"},
        {"PATH=/absent", "and not PATH"},
    };
    for (const auto& mistake : mistakes) {
        Settings(mistake.settings);
        Service("restart", 6, mistake.reason);
        Service("force-reload", 6, "\nNothing has been stopped: the old monitor goes on.\n");
        EXPECT_EQ(Only("keldra_monitor"), monitor) << mistake.settings;
    }
    Settings("");
    (void)Shell("cd /sysopt; mv config factory /tmp");
    Service("restart", 1, "None of Keldra's options files exists.\nNothing has been stopped");
    (void)Shell("mv /tmp/config /sysopt");
    EXPECT_EQ(Only("keldra_monitor"), monitor);
}

TEST_F(EndToEndPackageTest, CheckTellsOfSettingsThatCannotWorkAndTouchesNothing) {
    const std::string works = "-t 299 -X 1 -n keldra -h own -S service -L /usr/sbin/led_ctl.sh";
    const struct {
        std::string options;
        const char* answer;
    } rows[] = {
        {"-t 0", "Warning: -t 0: the daemon reads"},
        {"-t 300", "Warning: -t 300: the watchdog bites"},
        {"-t -5", "Warning: -t -5: this is no plain number"},
        {"-X 4294967297", "Warning: -X 4294967297: this is no plain number"},
        {"-X 0", "Warning: -X 0: the first failed check"},
        {"-n nobody", "Warning: -n nobody: there is no such program"},
        {"-n keldra_of_16_let", "Warning: -n keldra_of_16_let: the kernel keeps 15 characters"},
        {"-h /absent/file", "Warning: -h /absent/file: its folder does not exist"},
        {"-S /etc/passwd", "Warning: -S /etc/passwd: it cannot be executed"},
        {"-L /absent", "Warning: -L /absent: it cannot be executed"},
        {works, "keldra_monitor holds no mistake: -t 299"},
    };
    for (const auto& row : rows) {
        Settings("KELDRA_MONITOR_OPTIONS='" + row.options + "'");
        Service("check", 0, row.answer);
    }
    EXPECT_EQ(Shell(action_ + "check 2>&1 >/dev/null").output, "") << works;
    Settings("KELDRA_MONITOR_OPTIONS='-t x'");
    Service("check", 6, "Invalid heartbeat timeout x");
    const std::string settings = files_.File("package/etc/default/keldra_monitor");
    ASSERT_TRUE(fs::remove(settings) && fs::create_directory(settings));
    Service("check", 6, "this is no file");
    ASSERT_TRUE(fs::remove(settings));
    fs::create_symlink("absent", settings);
    Service("check", 6, "this is no file");
    EXPECT_EQ(terminal_->Processes("keldra_monitor").size(), 0u);
    EXPECT_FALSE(fs::exists(terminal_->Path("/var/lib/keldra-monitor")));
    ASSERT_TRUE(fs::remove(settings));
    Settings("KELDRA_MONITOR_OPTIONS='-t 1 -X 50 -L /absent'");
    Service("restart", 0, "Warning: -L /absent: it cannot be executed.\n");
    ExpectLog("Warning: -L /absent: it cannot be executed.");
}

TEST_F(EndToEndPackageTest, StartWithAMistakeInTheSettingsTakesThoseOfTheLastStart) {
    const std::string mistake = "KELDRA_MONITOR_OPTIONS='-t sixty'";
    const std::string kept = terminal_->Path("/var/lib/keldra-monitor/settings");
    const std::string whole = "options -t 1 -X 50\noptions -t 1 -X 50\n";
    Service("start", 0, "keldra_monitor has been started.\n");
    EXPECT_EQ(ReadFile(kept), whole);
    Settings(mistake);
    Service("status", 0, "(-t sixty), but with: -t 1 -X 50\n");
    const struct {
        std::string kept;
        const char* instead;
    } starts[] = {
        {whole, "the settings of its last start instead: -t 1 -X 50."},
        {whole.substr(0, whole.size() - 1), "its own defaults instead: no options."},
        {"options -z\noptions -z\n", "its own defaults instead: no options."},
        {"", "its own defaults instead: no options."},
    };
    for (const auto& start : starts) {
        Service("stop", 0, "");
        ASSERT_TRUE(WriteInside(*terminal_, "/var/lib/keldra-monitor/settings", start.kept));
        Service("start", 0, std::string("keldra_monitor is started with ") + start.instead);
        ExpectLog("Invalid heartbeat timeout sixty: not a positive integer");
        ExpectLog(start.instead);
    }
    EXPECT_EQ(ReadFile(kept), "options \noptions \n");
    Settings("KELDRA_MONITOR_OPTIONS='-t 1'");
    Service("status", 0, "(-t 1), but with: no options");
    // Nothing can be written where the terminal's flash is read-only.
    (void)Shell("cd /var/lib; rm -r keldra-monitor; touch keldra-monitor");
    Service("restart", 0, "keldra-monitor/settings cannot be written");
    const CommandResult status = Shell(action_ + "status >/dev/null");
    EXPECT_EQ(status.output, "") << "these are the settings";
}

TEST_F(EndToEndPackageTest, DamagedProgramNeverTakesTheMonitorsPlace) {
    Service("start", 0, "");
    const pid_t monitor = Only("keldra_monitor");
    // Whatever a full flash, a power cut or worn-out blocks make of it.
    for (const char* damage : {
             ":",
             "echo",
             "head -c 100000 /dev/zero",
             "tr '\\0' '\\377' </dev/zero | head -c 100000",
             "head -c 64 keldra_monitor",
             "head -c 40000 keldra_monitor",
             "echo exit 0",
             "echo '#!/absent'",
         }) {
        (void)Shell("cd /usr/sbin; cp keldra_monitor old; (" + std::string(damage) +
                    ") >new; chmod 755 new; mv new keldra_monitor");
        Service("restart", 1, "the old monitor goes on.\n");
        EXPECT_EQ(Only("keldra_monitor"), monitor) << damage;
        (void)Shell("cd /usr/sbin; mv old keldra_monitor");
    }
}

TEST_F(EndToEndPackageTest, NamesakeOfTheDaemonIsNoMonitorButInTheWayOfOne) {
    StartStranger();
    const pid_t stranger = Only("keldra_monitor");
    Service("status", 3, "keldra_monitor is not running.\n");
    Service("stop", 0, "keldra_monitor is not running.\n");
    Service("start", 1, std::to_string(stranger) + " (/tmp/keldra_monitor)");
    ASSERT_TRUE(terminal_->Signal(stranger, SIGKILL));
    Service("start", 0, "keldra_monitor has been started.\n");
    // An upgrade has replaced the program since; the monitor is still known.
    (void)Shell("cd /usr/sbin; cp keldra_monitor new; mv new keldra_monitor");
    StartStranger();
    Service("start", 0, "keldra_monitor is already running.\n");
    Service("restart", 1, "the old monitor goes on.\n");
    Service("stop", 0, "keldra_monitor has been stopped.");
    EXPECT_EQ(LogLines("shutting down gracefully in response to signal 15"), 1);
}

TEST_F(EndToEndPackageTest, MetricsAreServedAtTheAddressOfTheSettingsAlone) {
    if (Shell("command -v busybox").status != 0) {
        GTEST_SKIP() << "busybox, which serves the page, is not installed";
    }
    const auto address = [this](const std::string& text) {
        files_.Write("package/etc/default/keldra-metrics", "KELDRA_METRICS_ADDRESS=" + text + "\n");
    };
    action_ = "/etc/init.d/keldra-metrics ";
    Service("start", 0, "Nothing is served");
    address("39117");  // would be open at every address
    Service("start", 6, "39117 is not an address with a port");
    address("127.9.1.17:39117");
    Service("start", 0, "http://127.9.1.17:39117/cgi-bin/metrics is served.\n");
    Service("restart", 0, "is served.\n");
    Service("status", 0, "The metrics are served.\n");
    EXPECT_NE(Shell("busybox wget -qO- 'http://127.9.1.17:39117/cgi-bin/metrics?/tmp/x+y'")
                  .output.find("\nkeldra_monitor_up 0\n"),
              std::string::npos);
    EXPECT_NE(Shell("busybox wget -qO- http://127.0.0.1:39117/cgi-bin/metrics").status, 0);
    Service("stop", 0, "");
    Service("status", 3, "The metrics are not served.\n");
}
