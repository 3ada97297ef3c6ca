#include "monitor/StatusReport.h"

#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "monitor/MonitorState.h"
#include "tests/support/TempDir.h"

namespace Monitor {

namespace {

TEST(StatusReportTest, EveryLineIsAsOperatorsKnowIt) {
    settings = MonitorSettings();
    settings.max_strikes = 4294967295U;
    statistics = {1, 2, 3, 4, 5, 6, 7, 8, 4294967295U};
    supervision = {OptionsType::kBackup, KeldraState::kMissedHeartbeat, 2, -1, 4711};
    Quenda::OptionsNodeEdit options;
    options.SetLeaf("heartbeat_timeout_sec", 10U, nullptr);
    ASSERT_TRUE(heartbeatReader.Reload(options) && heartbeatReader.Start());
    ASSERT_TRUE(heartbeatReader.Stop());  // forgets what another case has read
    const TempDir dir;
    const std::string path = dir.File("report");
    FILE* const file = fopen(path.c_str(), "w");
    WriteStatusReport(file);
    fclose(file);
    EXPECT_EQ(ReadFile(path),
              "Parameters\n"
              "==========\n"
              "Keldra Monitor Process Name: keldra_monitor\n"
              "Keldra Process Name:         keldra\n"
              "SSH Daemon Process Name:     sshd\n"
              "Service Script:              /usr/sbin/service\n"
              "LED Control Script:          /usr/sbin/led_ctl.sh\n"
              "Max Strikes:                 4294967295\n"
              "\n"
              "Statistics\n"
              "==========\n"
              "keldra_state_unknown:       1\n"
              "keldra_not_running:         2\n"
              "keldra_in_error_state:      3\n"
              "keldra_missed_heartbeat:    4\n"
              "keldra_recovered:           5\n"
              "start_with_normal_options:  6\n"
              "start_with_backup_options:  7\n"
              "start_with_factory_options: 8\n"
              "start_sshd:                 4294967295\n"
              "\n"
              "State\n"
              "=====\n"
              "Keldra State:   Keldra_Missed_Heartbeat\n"
              "Options Type:   Backup_Options\n"
              "Strikes:        2\n"
              "Keldra PID:     4711\n"
              "SSH Daemon PID: -1\n"
              "\n"
              "Heartbeat Timer\n"
              "===============\n"
              "Heartbeat File:           /var/run/quenda/keldra.heartbeat\n"
              "Heartbeat Timeout:        10 (seconds)\n"
              "Next Heartbeat Check:     0 (seconds)\n"
              "Last Heartbeat Count:     0\n"
              "Previous Heartbeat Count: 0\n"
              "Heartbeat Timer Active:   false\n"
              "In Error State:           true\n"
              "Last Heartbeat Missed:    true\n"
              "\n"
              "Event Loop\n"
              "==========\n"
              "\n"
              "0 Timers Expired\n"
              "0 Active Timer(s)\n"
              "\n"
              "Current Activities: 0\n"
              "New Activities: 0\n"
              "\n");
}

}  // namespace

}  // namespace Monitor
