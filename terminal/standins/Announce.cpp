#include "terminal/standins/Announce.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "terminal/TerminalLayout.h"

namespace Terminals {

void Announce(const std::string& who, const std::string& what) {
    const std::string report = who + " " + what;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, kSyslogSocket, sizeof(kSyslogSocket));
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd >= 0) {
        (void)sendto(fd, report.data(), report.size(), 0, reinterpret_cast<sockaddr*>(&address),
                     sizeof(address));
        (void)close(fd);
    }
}

}  // namespace Terminals
