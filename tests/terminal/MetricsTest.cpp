#include <cstdlib>

#include "tests/terminal/EndToEnd.h"

// The script that prints the status for Prometheus.
struct EndToEndMetricsTest : EndToEnd {
    void SetUp() override {
        EndToEnd::SetUp();
        if (IsSkipped()) {
            return;
        }
        StartHealthy();
        ASSERT_TRUE(WriteInside(*terminal_, "/usr/sbin/keldra-metrics", ReadFile(KELDRA_METRICS)));
        (void)Shell("chmod 755 /usr/sbin/keldra-metrics");
    }

    std::string Shell(const std::string& script) { return terminal_->RunScript(script).output; }
    // An answer that is not the one of a moment ago, and what is said about the report.
    std::string Metrics(const std::string& shell = "") {
        return Shell("rm -rf /var/run/keldra-metrics; exec " + shell + " /usr/sbin/keldra-metrics");
    }
    // From now on a query counts in /tmp/asked and prints this, made of /tmp/report.
    void Answer(const std::string& command) {
        (void)Shell("[ -e /tmp/report ] || /usr/sbin/keldra_monitor -i 2>/tmp/report");
        ASSERT_TRUE(WriteInside(
            *terminal_, "/tmp/new",
            "#!/bin/sh\n[ $1 = -i ] || exit\necho >>/tmp/asked\n{ " + command + "; } >&2\n"));
        (void)Shell("chmod 755 /tmp/new; mv /tmp/new /usr/sbin/keldra_monitor");
    }
    static bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
};

TEST_F(EndToEndMetricsTest, EveryLineOfTheDaemonsReportIsKnown) {
    for (const std::string shell : {"", "busybox sh"}) {
        if (shell.empty() || !Shell("command -v busybox").empty()) {
            const std::string metrics = Metrics(shell);
            EXPECT_FALSE(Has(metrics, "unknown line")) << metrics;
            EXPECT_TRUE(Has(metrics, "\nkeldra_monitor_up 1\n")) << metrics;
            EXPECT_TRUE(Has(metrics, "\nkeldra_monitor_info{version=\"1.")) << metrics;
        }
    }
}

TEST_F(EndToEndMetricsTest, PrometheusTakesThemAsTheyAre) {
    const std::string tool = "$(command -v promtool || echo " PROMTOOL ")";
    if (std::system(("[ -x \"" + tool + "\" ]").c_str()) != 0) {
        GTEST_SKIP() << "promtool is missing; scripts/setup fleet fetches it";
    }
    files_.Write("metrics", Metrics());
    setenv("METRICS", files_.File("metrics").c_str(), 1);
    EXPECT_EQ(std::system((tool + " check metrics <\"$METRICS\"").c_str()), 0);
}

TEST_F(EndToEndMetricsTest, EachFigureGoesToItsMetric) {
    Answer(
        "awk '/^[a-z_]+: / { $2 = ++count } 1' /tmp/report | sed 's/Up_And_Okay/Not_Running/; "
        "s/Normal_/Backup_/; s/^Strikes:.*/Strikes: 2/; s/^Keldra PID:.*/Keldra PID: 0/; "
        "s/Missed: .*/Missed: true/; s/State: *false/State: true/'");
    EXPECT_EQ(Shell("/usr/sbin/keldra-metrics | grep -v -e '^#' -e start_time -e root -e _info"),
              R"(keldra_state{state="Keldra_Up_And_Okay"} 0
keldra_state{state="Keldra_Missed_Heartbeat"} 0
keldra_state{state="Keldra_In_Error_State"} 0
keldra_state{state="Keldra_Not_Running"} 1
keldra_state{state="Keldra_State_Unknown"} 0
keldra_options_type{type="Factory_Options"} 0
keldra_options_type{type="Backup_Options"} 1
keldra_options_type{type="Normal_Options"} 0
keldra_strikes 2
keldra_strikes_max 50
keldra_unhealthy_checks_total{state="Keldra_Missed_Heartbeat"} 4
keldra_unhealthy_checks_total{state="Keldra_In_Error_State"} 3
keldra_unhealthy_checks_total{state="Keldra_Not_Running"} 2
keldra_unhealthy_checks_total{state="Keldra_State_Unknown"} 1
keldra_recoveries_total 5
keldra_starts_total{type="Factory_Options"} 8
keldra_starts_total{type="Backup_Options"} 7
keldra_starts_total{type="Normal_Options"} 6
keldra_sshd_starts_total 9
keldra_heartbeat_timeout_seconds 1
keldra_heartbeat_age_checks 1
keldra_heartbeat_error 1
keldra_running 0
keldra_sshd_running 1
keldra_monitor_up 1
)");
}

TEST_F(EndToEndMetricsTest, OfAReportThatIsNotWholeNothingIsTold) {
    const struct {
        const char* answer;
        bool up;
        const char* said;
    } cases[] = {
        {"cat /tmp/report", true, ""},
        {"sed 's/^Strikes/Mood: good\\n&/' /tmp/report", true, "unknown line: Mood\n"},
        {"grep -v ^Strikes /tmp/report", false, ""},
        {"sed 's/Up_And_Okay//' /tmp/report", false, ""},
        {"sed '$d' /tmp/report", false, ""},
        {"head -c 600 /tmp/report", false, ""},
        {"cat /tmp/report; echo 'The status file is incomplete'", false, ""},
        {"echo No other Keldra Monitor instance", false, "unknown line: No other"},
        {"true", false, ""},
    };
    for (const auto& c : cases) {
        Answer(c.answer);
        const std::string metrics = Metrics() + Shell("echo exited with $?");
        EXPECT_TRUE(Has(metrics, c.up ? "_up 1\n" : "_up 0\n")) << c.answer << "\n" << metrics;
        EXPECT_EQ(Has(metrics, "keldra_strikes_max 50"), c.up) << c.answer << "\n" << metrics;
        EXPECT_TRUE(Has(metrics, c.said)) << c.answer << "\n" << metrics;
        EXPECT_TRUE(Has(metrics, "\nkeldra_terminal_start_time_seconds ")) << metrics;
    }
}

TEST_F(EndToEndMetricsTest, ManyAtOnceAskOnceASecond) {
    Answer("sleep 0.3; cat /tmp/report");
    // Seconds are counted from the first one to the last one, which are not whole.
    EXPECT_EQ(Shell("cd /tmp; read -r first _ </proc/uptime\n"
                    "for i in $(seq 60); do /usr/sbin/keldra-metrics >kept.$i & sleep 0.05; done\n"
                    "wait; read -r last _ </proc/uptime\n"
                    "seconds=$((${last%.*} - ${first%.*} + 1))\n"
                    "[ $(wc -l <asked) -le $seconds ] && grep -l '_up 1' kept.* | wc -l"),
              "60\n");
}

TEST_F(EndToEndMetricsTest, AnswerIsReplacedInAFileAndPrecededByAHeaderInACgi) {
    EXPECT_EQ(Shell("cd /tmp; mkdir out; echo old >out/f; /usr/sbin/keldra-metrics out/f; ls out"),
              "f\n");
    EXPECT_EQ(ReadFile(terminal_->Path("/tmp/out/f")).find("# HELP keldra_state "), 0U);
    // A server may pass words of a request on.
    const std::string page = Shell(
        "cd /tmp; export GATEWAY_INTERFACE=CGI/1.1 QUERY_STRING='$(touch out/x)' "
        "PATH_INFO='`touch out/x`'; echo 'touch out/x' | /usr/sbin/keldra-metrics out/x; ls out");
    EXPECT_EQ(page.find("Content-Type: text/plain; version=0.0.4\r\n\r\n# HELP keldra_state "), 0U);
    EXPECT_TRUE(Has(page, "\nf\n")) << page;
    EXPECT_FALSE(Has(page, "\nx\n")) << page;
}
