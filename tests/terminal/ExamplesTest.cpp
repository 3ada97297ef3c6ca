#include <filesystem>

#include "tests/terminal/EndToEnd.h"

// The examples for authors of a Keldra and for operators, under the real daemon.
struct EndToEndExamplesTest : EndToEnd {
    bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
};

TEST_F(EndToEndExamplesTest, SmallKeldraDoesAllThatIsAskedOfIt) {
    TerminalOptions options;
    options.keldraProgram = SMALL_KELDRA;
    PowerOn(options);
    StartHealthy();
    // Without its options it is in error, until it is started with the backup's.
    ASSERT_EQ(terminal_->Run(std::string(">") + kPrimaryOptions).status, 0);
    terminal_->Mark();
    ASSERT_TRUE(terminal_->Signal(Only("keldra"), SIGKILL));
    ExpectLog("Keldra is not running!");
    ExpectLog("Keldra is in error state");
    ExpectLog(std::string("/usr/sbin/keldra -cp 23 -cfg ") + kBackupOptions);
    ExpectLog("Keldra started responding again after");
    (void)Only("keldra");  // all those in error have ended on SIGQUIT
    EXPECT_EQ(LogLines("failed to start"), 0);
}

TEST_F(EndToEndExamplesTest, ReasonOfARebootIsKeptWithTheStatusOfThatMoment) {
    PowerOn();
    const CommandResult prepared = terminal_->Run(
        "mkdir -p /var/log && seq -f 'line %g' 100 >/var/log/messages && "
        "head -c 70000 /dev/zero | tr '\\0' x >/sysopt/reboot_reason.log");
    ASSERT_EQ(prepared.status, 0) << prepared.output;
    const std::string script = terminal_->Path("/usr/sbin/keep-reboot-reason.sh");
    std::filesystem::copy_file(KEEP_REBOOT_REASON, script);
    StartMonitor("-X 0 -L /usr/sbin/keep-reboot-reason.sh");
    Expect(Source::kWatchdog, "armed with 30 s");  // for the reboot
    Expect(Source::kLed, "all error");
    const std::string kept = terminal_->Run("cat /sysopt/reboot_reason.log").output;
    EXPECT_EQ(kept.size(), 65536U);
    EXPECT_TRUE(Has(kept, "x=== "));
    EXPECT_FALSE(Has(kept, "\nline 60\n"));
    EXPECT_TRUE(Has(kept, "\nline 61\n"));
    EXPECT_TRUE(Has(kept, "line 100\nParameters\n"));
    EXPECT_TRUE(Has(kept, "Keldra State:   Keldra_Not_Running\n"));
    EXPECT_TRUE(Has(kept, "Strikes:        1\n"));
}
