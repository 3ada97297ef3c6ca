#include "monitor/MonitorSettings.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/Capture.h"

using namespace Monitor;

namespace {

struct CommandLineTest : testing::Test {
    Request Parse(std::vector<std::string> arguments) {
        std::vector<char*> argv = {program_};
        for (std::string& argument : arguments) {
            argv.push_back(&argument[0]);
        }
        argv.push_back(nullptr);
        optind = 0;  // glibc: start over
        settings_ = MonitorSettings();
        Capture standardError(2);
        const auto result =
            ParseCommandLine(static_cast<int>(argv.size()) - 1, argv.data(), settings_);
        standardError_ = standardError.Stop();
        return result;
    }

    char program_[15] = "keldra_monitor";
    MonitorSettings settings_;
    std::string standardError_;
};

std::string MistakeIn(const char* what, const char* text) {
    return std::string("Invalid ") + what + " " + text + ": not a positive integer\n";
}

TEST_F(CommandLineTest, EveryOptionReachesItsSettingAndTheLastOneWins) {
    EXPECT_EQ(
        Parse({"-d", "-n", "app", "-t", "5", "-h", "/h", "-X", "9", "-S", "/s", "-L", "/l", "-t7"}),
        Request::kSupervise);
    EXPECT_TRUE(settings_.debug);
    EXPECT_EQ(settings_.keldra_process_name, "app");
    EXPECT_EQ(settings_.heartbeat_timeout_sec, 7U);
    EXPECT_EQ(settings_.heartbeat_file, "/h");
    EXPECT_EQ(settings_.max_strikes, 9U);
    EXPECT_EQ(settings_.service_script, "/s");
    EXPECT_EQ(settings_.led_control_script, "/l");
}

TEST_F(CommandLineTest, NumbersAreScannedAsTheTerminalScansThem) {
    const std::pair<const char*, std::optional<uint32_t>> cases[] = {
        {"0", 0},
        {" 12abc", 12},
        {"4294967295", 4294967295U},
        {"4294967296", 4294967295U},  // beyond 32 bits: the largest
        {"-1", 4294967295U},
        {"0x10", 0},
        {"", std::nullopt},
        {"abc", std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        SCOPED_TRACE(text);
        const Request request = value ? Request::kSupervise : Request::kNothing;
        EXPECT_EQ(Parse({"-X", text}), request);
        EXPECT_EQ(standardError_, value ? "" : MistakeIn("maximum strike count", text));
        EXPECT_EQ(settings_.max_strikes, value.value_or(3));
        EXPECT_EQ(Parse({"-t", text}), request);
        EXPECT_EQ(standardError_, value ? "" : MistakeIn("heartbeat timeout", text));
        EXPECT_EQ(settings_.heartbeat_timeout_sec, value.value_or(60));
    }
}

TEST_F(CommandLineTest, MistakesAreDiagnosedInFrontOfTheUsage) {
    EXPECT_EQ(Parse({"-z"}), Request::kNothing);
    EXPECT_EQ(standardError_.find("keldra_monitor: invalid option -- 'z'\nusage: keldra_monitor\n"),
              0U);
    EXPECT_EQ(Parse({"-n"}), Request::kNothing);
    EXPECT_EQ(standardError_.find("keldra_monitor: option requires an argument -- 'n'\nusage: "),
              0U);
}

TEST_F(CommandLineTest, FirstOfVersionQueryAndMistakeDecides) {
    EXPECT_EQ(Parse({"-d", "-v", "-X", "abc"}), Request::kVersion);
    EXPECT_EQ(Parse({"-i", "-v"}), Request::kQuery);
    EXPECT_EQ(Parse({"-X", "abc", "-v"}), Request::kNothing);
}

}  // namespace
