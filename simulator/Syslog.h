#pragma once

#include <string>

namespace Simulator {

// A line as a program hands it to the terminal's syslog.
struct SyslogLine {
    int priority = -1;  // facility and level; -1 when the datagram carried none
    std::string ident;
    std::string text;  // without its line end
};

// Takes a datagram apart: "<PRI>Mon DD HH:MM:SS ident: text". What does not look like one is
// kept whole as the text.
SyslogLine ParseSyslog(const std::string& datagram);

}  // namespace Simulator
