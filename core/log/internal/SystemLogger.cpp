#include "core/log/internal/SystemLogger.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace Quenda {

namespace {

using Clock = std::chrono::steady_clock;

constexpr Clock::duration kPatience = std::chrono::seconds(1);
// The same in every locale.
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

Clock::duration patience = kPatience;
unsigned int lostLines = 0;

using Stamp = std::array<char, 96>;

// "<29>Nov 22 10:00:00 ", in local time.
Stamp MakeStamp(int priority) {
    const time_t now = time(nullptr);
    tm local{};
    (void)localtime_r(&now, &local);
    Stamp stamp;
    (void)snprintf(stamp.data(), stamp.size(), "<%d>%s %2d %02d:%02d:%02d ", priority,
                   kMonths[local.tm_mon], local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return stamp;
}

// syslog(3) would stay with the logger that it reached first, although another one has taken its
// place: it connects anew for each line.
void SendToStream(const char* ident, int priority, const char* text, size_t length) {
    syslog(priority, "%.*s", static_cast<int>(length), text);
    closelog();
    openlog(ident, 0, LOG_DAEMON);
}

// Waits for room in the logger's queue. False when there is no use in another try.
bool WaitForRoom(int fd) {
    if (patience <= Clock::duration::zero()) {
        return false;
    }
    const Clock::time_point start = Clock::now();
    pollfd state = {fd, POLLOUT, 0};
    const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(patience);
    const int ready = poll(&state, 1, static_cast<int>(limit.count()));
    patience -= Clock::now() - start;
    return ready != 0;  // after a signal, too
}

// No attempt waits: another program's line may take the room that poll(2) has seen. Each connects
// anew, since the logger may have been restarted.
bool SendOn(int fd, const msghdr& message) {
    const sockaddr_un address = {AF_UNIX, _PATH_LOG};
    bool atOnce = true;
    while (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
        if (sendmsg(fd, &message, MSG_DONTWAIT | MSG_NOSIGNAL) != -1) {
            if (atOnce) {
                patience = kPatience;
            }
            return true;
        }
        if (errno != EAGAIN || !WaitForRoom(fd)) {
            return false;
        }
        atOnce = false;
    }
    return false;
}

iovec Part(const char* text, size_t length) {
    return {const_cast<char*>(text), length};  // sendmsg(2) only reads it
}

bool Deliver(const char* ident, int priority, const char* text, size_t length) {
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);  // or -1: connect(2) fails then
    const Stamp stamp = MakeStamp(priority);
    const char* const name = ident == nullptr ? program_invocation_short_name : ident;
    std::array<iovec, 4> parts = {Part(stamp.data(), strlen(stamp.data())),
                                  Part(name, strlen(name)), Part(": ", 2), Part(text, length)};
    msghdr message = {};
    message.msg_iov = parts.data();
    message.msg_iovlen = parts.size();
    const bool sent = SendOn(fd, message);
    const bool isStream = !sent && errno == EPROTOTYPE;
    (void)close(fd);
    if (isStream) {
        SendToStream(ident, priority, text, length);
    }
    return sent || isStream;
}

bool AnnounceLostLines(const char* ident) {
    std::array<char, 96> notice;
    const int length =
        snprintf(notice.data(), notice.size(),
                 "%u lines were lost: the system logger did not take them\n", lostLines);
    return Deliver(ident, LOG_DAEMON | LOG_NOTICE, notice.data(), static_cast<size_t>(length));
}

}  // namespace

void SendToSystemLogger(const char* ident, int priority, const char* text, size_t length) {
    if ((LOG_MASK(LOG_PRI(priority)) & setlogmask(0)) == 0) {
        return;  // as syslog(3) does
    }
    const int error = errno;
    if (lostLines != 0 && AnnounceLostLines(ident)) {
        lostLines = 0;
    }
    if (lostLines != 0 || !Deliver(ident, priority, text, length)) {
        ++lostLines;
    }
    errno = error;
}

}  // namespace Quenda
