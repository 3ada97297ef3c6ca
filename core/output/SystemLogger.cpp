#include "core/output/SystemLogger.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>

namespace Quenda {

namespace {

enum class Logger { kReads, kIsFull, kIsAbsent, kCannotBeAsked };

// How long a line waits for a logger that is merely busy. Once it has waited in vain, the lines
// that follow do not wait at all until the logger reads again.
constexpr int kPatienceMs = 1000;

const char* ident = nullptr;
unsigned int lostLines = 0;

// Each line goes the way that was asked about: syslog(3) would stay with a logger that another one
// has replaced, and what a hung one has not read counts against the socket that it came from.
void Reconnect() {
    if (ident != nullptr) {  // else openlog was called by somebody else, if at all
        closelog();
        openlog(ident, 0, LOG_DAEMON);
    }
}

Logger Ask(int fd) {
    const sockaddr_un address = {AF_UNIX, _PATH_LOG};
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == -1) {
        // An old kind of logger listens for streams.
        return errno == EPROTOTYPE ? Logger::kCannotBeAsked : Logger::kIsAbsent;
    }
    pollfd state = {fd, POLLOUT, 0};
    return poll(&state, 1, lostLines == 0 ? kPatienceMs : 0) == 1 ? Logger::kReads
                                                                  : Logger::kIsFull;
}

// Asked with a socket of its own for each line, since the logger may have been restarted: unix(7)
// reports a datagram socket as writable while the queue of the one that it is connected to has
// room.
Logger AskLogger() {
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd == -1) {
        return Logger::kCannotBeAsked;
    }
    const Logger logger = Ask(fd);
    (void)close(fd);  // nothing was written
    return logger;
}

}  // namespace

void OpenSystemLogger(const char* newIdent) {
    ident = newIdent;
    openlog(ident, 0, LOG_DAEMON);
}

void CloseSystemLogger() {
    ident = nullptr;
    closelog();
}

void SendToSyslog(int priority, const char* format, va_list arguments) {
    Logger logger = AskLogger();
    if (logger == Logger::kReads) {
        Reconnect();
        if (lostLines != 0) {
            syslog(LOG_DAEMON | LOG_NOTICE,
                   "%u lines were lost: the system logger did not take them\n", lostLines);
            lostLines = 0;
            logger = AskLogger();
        }
    }
    if (logger == Logger::kIsFull || logger == Logger::kIsAbsent) {
        ++lostLines;
    }
    if (logger != Logger::kIsFull) {  // an absent one keeps nobody waiting
        va_list copy;
        va_copy(copy, arguments);
        vsyslog(priority, format, copy);
        va_end(copy);
    }
}

void SendToSyslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    SendToSyslog(priority, format, arguments);
    va_end(arguments);
}

}  // namespace Quenda
