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
        arguments.insert(arguments.begin(), "keldra_monitor");
        std::vector<char*> argv;
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

    MonitorSettings settings_;
    std::string standardError_;
};

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
        {" 12abc", 12},
        // Beyond 32 bits: the largest.
        {"4294967296", 4294967295U},
        {"-1", 4294967295U},
        {"", std::nullopt},
        {"abc", std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        const Request request = value ? Request::kSupervise : Request::kNothing;
        EXPECT_EQ(Parse({"-X", text}), request) << text;
        EXPECT_EQ(settings_.max_strikes, value.value_or(3)) << text;
    }
}

TEST_F(CommandLineTest, MistakesAreDiagnosedInFrontOfTheUsage) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"-z"}, "keldra_monitor: invalid option -- 'z'\nusage: keldra_monitor\n"},
        {{"-n"}, "keldra_monitor: option requires an argument -- 'n'\nusage: "},
        {{"-X", "abc", "-v"}, "Invalid maximum strike count abc: not a positive integer\n"},
        {{"-t", ""}, "Invalid heartbeat timeout : not a positive integer\n"},
    };
    for (const auto& [arguments, text] : cases) {
        EXPECT_EQ(Parse(arguments), Request::kNothing);
        EXPECT_EQ(standardError_.find(text), 0U) << standardError_;
    }
    EXPECT_EQ(Parse({"-d", "-v", "-X", "abc"}), Request::kVersion);
    EXPECT_EQ(Parse({"-i", "-v"}), Request::kQuery);
}

}  // namespace
