#include "simulator/Syslog.h"

#include <cctype>
#include <cstdlib>

namespace Simulator {
namespace {

constexpr size_t kTimeStampLength = sizeof("Mon DD HH:MM:SS ") - 1;

}  // namespace

SyslogLine ParseSyslog(const std::string& datagram) {
    SyslogLine line;
    line.text = datagram;
    while (!line.text.empty() && (line.text.back() == '\n' || line.text.back() == '\0')) {
        line.text.pop_back();
    }
    const size_t close = line.text.find('>');
    if (line.text.empty() || line.text[0] != '<' || close == std::string::npos || close < 2) {
        return line;
    }
    char* end = nullptr;
    const long priority = strtol(line.text.c_str() + 1, &end, 10);
    const size_t ident = close + 1 + kTimeStampLength;
    const size_t colon = line.text.find(": ", close + 1 + kTimeStampLength);
    if (end != line.text.c_str() + close || colon == std::string::npos) {
        return line;
    }
    line.priority = static_cast<int>(priority);
    line.ident = line.text.substr(ident, colon - ident);
    line.text.erase(0, colon + 2);
    return line;
}

}  // namespace Simulator
