#include "simulator/Syslog.h"

#include <gtest/gtest.h>

using Simulator::ParseSyslog;
using Simulator::SyslogLine;

TEST(SyslogTest, TakesADatagramApart) {
    const struct {
        const char* datagram;
        SyslogLine line;
    } cases[] = {
        {"<29>Nov  1 09:08:07 keldra_monitor: Strike 1!\n", {29, "keldra_monitor", "Strike 1!"}},
        {"<27>Nov 21 19:18:17 a: b: c\nd\n", {27, "a", "b: c\nd"}},
        {"<29>Nov 21 19:18:17 a: \n", {29, "a", ""}},
        {"<29>no time stamp", {-1, "", "<29>no time stamp"}},
        {"<>Nov 21 19:18:17 a: b", {-1, "", "<>Nov 21 19:18:17 a: b"}},
        {"bare text\n", {-1, "", "bare text"}},
        {"", {-1, "", ""}},
    };
    for (const auto& c : cases) {
        const SyslogLine line = ParseSyslog(c.datagram);
        EXPECT_EQ(line.priority, c.line.priority) << c.datagram;
        EXPECT_EQ(line.ident, c.line.ident) << c.datagram;
        EXPECT_EQ(line.text, c.line.text) << c.datagram;
    }
}
