#include <cstdlib>
#include <filesystem>

#include "tests/terminal/EndToEnd.h"

class EndToEndMetricsTest : public EndToEnd {};

TEST_F(EndToEndMetricsTest, PrometheusTakesThemAsTheyAre) {
    const std::string tool = "$(command -v promtool || echo " PROMTOOL ")";
    if (std::system(("[ -x \"" + tool + "\" ]").c_str()) != 0) {
        GTEST_SKIP() << "promtool is missing; scripts/setup fleet fetches it";
    }
    ASSERT_NO_FATAL_FAILURE(StartHealthy());
    std::filesystem::copy_file(KELDRA_METRICS, terminal_->Path("/usr/sbin/keldra-metrics"));
    const std::string metrics = terminal_->Run("sh /usr/sbin/keldra-metrics").output;
    ASSERT_NE(metrics.find("\nkeldra_monitor_up 1\n"), std::string::npos) << metrics;
    const TempDir files;
    setenv("METRICS", files.Write("metrics", metrics).c_str(), 1);
    EXPECT_EQ(std::system((tool + " check metrics <\"$METRICS\"").c_str()), 0);
}
