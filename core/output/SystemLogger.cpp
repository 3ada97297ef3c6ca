#include "core/output/SystemLogger.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace Quenda {

namespace {

enum class Logger { kReads, kIsFull, kIsAbsent };

// How long a line waits for a logger that is merely busy. Once it has waited in vain, the lines
// that follow do not wait at all until the logger reads again.
constexpr int kPatienceMs = 1000;

// What a hung logger has not read counts against the socket that it came from, too, of which the
// kernel takes some 200 KB (net.core.wmem_default). A new socket starts from nothing.
constexpr int kBytesPerSocket = 64 * 1024;
constexpr int kBytesAroundLine = 1024;  // the kernel's own

const char* ident = nullptr;
unsigned int lostLines = 0;
int sentBytes = 0;  // since the last connection was made

void Reconnect() {
    closelog();
    openlog(ident, 0, LOG_DAEMON);
    sentBytes = 0;
}

void MakeRoom(const char* format, va_list arguments) {
    va_list copy;
    va_copy(copy, arguments);
    const int bytes = std::clamp(vsnprintf(nullptr, 0, format, copy), 0, kBytesPerSocket);
    va_end(copy);
    if (sentBytes + bytes + kBytesAroundLine > kBytesPerSocket) {
        Reconnect();
    }
    sentBytes += bytes + kBytesAroundLine;
}

Logger Ask(int fd) {
    const sockaddr_un address = {AF_UNIX, _PATH_LOG};
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == -1) {
        // One that listens for streams is of an old kind, which cannot be asked.
        return errno == EPROTOTYPE ? Logger::kReads : Logger::kIsAbsent;
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
        return Logger::kReads;  // nobody can tell
    }
    const Logger logger = Ask(fd);
    (void)close(fd);  // nothing was written
    return logger;
}

}  // namespace

void OpenSystemLogger(const char* newIdent) {
    ident = newIdent;
    sentBytes = 0;
    openlog(ident, 0, LOG_DAEMON);
}

void CloseSystemLogger() {
    ident = nullptr;
    closelog();
}

void SendToSyslog(int priority, const char* format, va_list arguments) {
    Logger logger = AskLogger();
    if (logger == Logger::kReads && lostLines != 0) {
        Reconnect();  // it may be another one than before
        syslog(LOG_DAEMON | LOG_NOTICE, "%u lines were lost: the system logger did not take them\n",
               lostLines);
        lostLines = 0;
        logger = AskLogger();
    }
    if (logger != Logger::kReads) {
        ++lostLines;
    }
    if (logger != Logger::kIsFull) {  // an absent one keeps nobody waiting
        MakeRoom(format, arguments);
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
