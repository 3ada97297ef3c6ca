#include "monitor/StatusReport.h"

#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StringWritable.h"
#include "monitor/HealthCheck.h"
#include "monitor/MonitorSettings.h"

using namespace Monitor;

namespace {

TEST(StatusReportTest, EveryLineIsAsOperatorsKnowIt) {
    settings = MonitorSettings();
    settings.max_strikes = 4294967295U;
    statistics = {1, 2, 3, 4, 5, 6, 7, 8, 4294967295U};
    static_assert(sizeof(statistics) == 9 * 4);  // each wraps at 32 bits
    supervision = {OptionsType::Factory_Options, KeldraState::Keldra_Missed_Heartbeat, 2, -1, 4711};
    Quenda::OptionsNodeEdit options;
    options.SetLeaf("heartbeat_timeout_sec", 10U, nullptr);
    ASSERT_TRUE(heartbeatReader.Reload(options));
    ASSERT_TRUE(heartbeatReader.Start());
    ASSERT_TRUE(heartbeatReader.Stop());  // forgets the counts of another case
    Quenda::StringWritable output;
    WriteStatusReport(&output);
    const std::string& report = output.Text();
    EXPECT_EQ(report, R"(Parameters
==========
Keldra Monitor Process Name: keldra_monitor
Keldra Process Name:         keldra
SSH Daemon Process Name:     sshd
Service Script:              /usr/sbin/service
LED Control Script:          /usr/sbin/led_ctl.sh
Max Strikes:                 4294967295

Statistics
==========
keldra_state_unknown:       1
keldra_not_running:         2
keldra_in_error_state:      3
keldra_missed_heartbeat:    4
keldra_recovered:           5
start_with_normal_options:  6
start_with_backup_options:  7
start_with_factory_options: 8
start_sshd:                 4294967295

State
=====
Keldra State:   Keldra_Missed_Heartbeat
Options Type:   Factory_Options
Strikes:        2
Keldra PID:     4711
SSH Daemon PID: -1

Heartbeat Timer
===============
Heartbeat File:           /var/run/quenda/keldra.heartbeat
Heartbeat Timeout:        10 (seconds)
Next Heartbeat Check:     0 (seconds)
Last Heartbeat Count:     0
Previous Heartbeat Count: 0
Heartbeat Timer Active:   false
In Error State:           true
Last Heartbeat Missed:    true

Event Loop
==========

0 Timers Expired
0 Active Timer(s)

Current Activities: 0
New Activities: 0

)");
    EXPECT_TRUE(IsWholeReport(report));
    for (size_t i = 0; i < report.size(); ++i) {
        EXPECT_FALSE(IsWholeReport(report.substr(0, i))) << i;
        EXPECT_FALSE(IsWholeReport(report + report.substr(i))) << i;
    }
}

}  // namespace
