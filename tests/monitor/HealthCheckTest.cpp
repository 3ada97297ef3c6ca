#include "monitor/HealthCheck.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <memory>
#include <new>

#include "monitor/MonitorSettings.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"
#include "tests/support/Heap.h"
#include "tests/support/NamedProcess.h"

using namespace Monitor;

namespace {

// The real check on real processes and files, on a machine without the board's watchdog. Neither
// program exists in /usr/sbin, so nothing is ever started.
struct HealthCheckTest : testing::Test {
    void SetUp() override {
        if (access("/proc/cpld/watchdog", F_OK) == 0) {
            GTEST_SKIP() << "this machine has the board's watchdog, which the check would arm";
        }
        settings = MonitorSettings();
        settings.keldra_process_name = keldraName_;
        settings.sshd_process_name = OwnName("ktsshd");
        settings.heartbeat_timeout_sec = 7;
        settings.max_strikes = 99;  // a reboot would end this program with status 0
        settings.service_script = "true";
        settings.led_control_script = "true";
        statistics = {};
        supervision = {};
    }
    std::string NoKeldra() const {
        return "Failed to start Keldra because /usr/sbin/" + keldraName_ + " does not exist\n";
    }

    const std::string keldraName_ = OwnName("ktkeldra");
};

const std::string kNoWatchdog = "wdStart (238) : WD_FILE_NOT_FOUND\n";

TEST_F(HealthCheckTest, AbsentKeldraStrikesAndFailedActionsAreLogged) {
    settings.led_control_script = "false";
    settings.service_script = "echo no; false; exit 2; #";
    for (uint32_t strike = 1; strike <= 3; ++strike) {
        Capture log(2);
        EXPECT_FALSE(CheckHealth(true));
        EXPECT_EQ(log.Stop(),
                  "Keldra is not running!\nStrike " + std::to_string(strike) +
                      "! Keldra has not responded for " + std::to_string(7 * strike) +
                      " seconds\n" + kNoWatchdog + "Failed to set the LEDs on the terminal: \n" +
                      NoKeldra() +
                      "Starting the SSH daemon because it was not detected\n"
                      "Failed to start the SSH service: no\nShell command exited with code 2\n\n");
    }
    EXPECT_EQ(statistics.keldra_not_running, 3U);
    EXPECT_EQ(statistics.start_with_normal_options, 2U);  // counted although it failed
    EXPECT_EQ(statistics.start_with_backup_options, 1U);
    EXPECT_EQ(statistics.start_sshd, 0U);
    const NamedProcess sshd(settings.sshd_process_name);
    EXPECT_TRUE(CheckHealth(true));  // it was found
    EXPECT_TRUE(CheckHealth(true));  // it still runs
}

TEST_F(HealthCheckTest, UnreadableProcessTableIsAStrikeAndKeldraIsStartedAllTheSame) {
    settings.heartbeat_timeout_sec = 4294967295U;  // its seconds wrap at 32 bits
    EXPECT_TRUE(CheckHealth(true));                // starts sshd; sanitizers need descriptors once
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none = {3, limit.rlim_max};
    Capture log(2);  // takes its descriptors while they can be had
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(CheckHealth(true));
    setrlimit(RLIMIT_NOFILE, &limit);
    const std::string text = log.Stop();  // the shell's message about the LED script is between
    EXPECT_EQ(text.find("Keldra's state could not be determined: -1\n"
                        "Strike 2! Keldra has not responded for 4294967294 seconds\n" +
                        kNoWatchdog + "Failed to kill Keldra -1, continuing anyway\n"),
              0U);
    EXPECT_NE(text.find(NoKeldra() +
                        "WARNING! The state of the SSH daemon could not be determined: -1\n"),
              std::string::npos);
    EXPECT_EQ(statistics.keldra_state_unknown, 1U);
}

TEST_F(HealthCheckTest, EachAllocationThatFailsCostsOneCheckAndLeavesNothingOpen) {
    settings.led_control_script = "/bin/true";
    settings.service_script = "echo a line to be captured;:";
    auto keldra = std::make_unique<NamedProcess>(keldraName_);  // remembered by the first search
    const auto before = OpenDescriptors();
    static int left = 0;
    int allocations = 0;
    for (bool isWhole = false; !isWhole; keldra.reset()) {
        left = allocations++;
        Capture log(2);
        onAllocation = [] {
            if (left-- == 0) {
                throw std::bad_alloc();
            }
        };
        const bool result = CheckHealth(true);
        onAllocation = nullptr;
        isWhole = left >= 0;
        EXPECT_EQ(result, isWhole);
        EXPECT_EQ(log.Stop().find("Out of memory: this check is given up, the next one tries "
                                  "again\n") == std::string::npos,
                  isWhole);
        EXPECT_EQ(OpenDescriptors(), before);
    }
    EXPECT_GT(allocations, 4);
}

TEST_F(HealthCheckTest, RebootThatFindsNoMemoryLeavesTheLedsAsTheyAre) {
    settings.max_strikes = 0;
    settings.led_control_script = "/nonexistent/led_ctl.sh";
    const auto reboot = [] {
        onAllocation = [] { throw std::bad_alloc(); };  // the command for the LEDs is the first
        (void)CheckHealth(false);
    };
    EXPECT_EXIT(reboot(), testing::ExitedWithCode(0),
                "Rebooting.*\n.*\nOut of memory: the LEDs are left as they are\n$");
}

}  // namespace
