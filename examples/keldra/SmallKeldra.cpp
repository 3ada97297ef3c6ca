// A small Keldra: it does what keldra_monitor asks of the terminal's application, and nothing else.
// Installed as /usr/sbin/keldra it is started as "/usr/sbin/keldra -cp 23 -cfg FILE".
#include <fcntl.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"
#include "core/log/Log.h"
#include "core/log/Syslog.h"
#include "core/timer/PeriodicTimer.h"

using Quenda::EventLoop;
using Quenda::LogMessage;

namespace {

constexpr char kHeartbeatFile[] = "/var/run/quenda/keldra.heartbeat";
constexpr unsigned int kBeatMs = 200;  // several beats in the shortest timeout

// Counts up the number in the heartbeat file: 4 bytes in the machine's byte order.
class Heartbeat {
public:
    // Continues from its predecessor's last number, so that a restart changes the number, too.
    bool Open() {
        fd_ = open(kHeartbeatFile, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        return fd_ != -1 && pread(fd_, &count_, sizeof(count_), 0) != -1;
    }
    // 0 means "I am in error" and is not a count.
    bool Beat() {
        if (++count_ == 0) {
            ++count_;
        }
        const uint32_t number = inError_ ? 0 : count_;
        return pwrite(fd_, &number, sizeof(number), 0) == ssize_t{sizeof(number)};
    }
    void SetInError() { inError_ = true; }
    void Start() { timer_.Start(kBeatMs, kBeatMs); }

private:
    void OnTimeout(unsigned int /*nowMs*/, void* /*userData*/) { (void)Beat(); }

    int fd_ = -1;
    uint32_t count_ = 0;
    bool inError_ = false;
    Quenda::PeriodicTimer timer_{"heartbeat", Quenda::MakeCallback(this, &Heartbeat::OnTimeout)};
};

// SIGQUIT is the monitor's only way to end an unhealthy Keldra. A second later it starts another.
class QuitHandler : public Quenda::FileDescriptorHandler {
public:
    explicit QuitHandler(const sigset_t& quit)
        : FileDescriptorHandler("SIGQUIT", signalfd(-1, &quit, SFD_CLOEXEC), EPOLLIN) {}

    void HandleRead() override { EventLoop::Instance().Stop(); }
    void HandleWrite() override {}
};

// The word after "-cfg". The monitor chooses it: the primary, the backup or the factory options
// file.
const char* OptionsFile(int argc, char** argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (strcmp(argv[i], "-cfg") == 0) {
            return argv[i + 1];
        }
    }
    return "";
}

}  // namespace

int main(int argc, char** argv) {
    Quenda::OpenSyslog("keldra");
    sigset_t quit;
    sigemptyset(&quit);
    sigaddset(&quit, SIGQUIT);
    (void)sigprocmask(SIG_BLOCK, &quit, nullptr);

    const char* const options = OptionsFile(argc, argv);
    Heartbeat heartbeat;
    if (std::ifstream(options).get() != '{') {
        // The monitor starts us again, from the third time on with the backup file.
        LogMessage(0, "No options in \"%s\"\n", options);
        heartbeat.SetInError();
    }
    // If it cannot start, it exits with a status that the monitor logs. The first beat comes before
    // the launched process exits: the monitor waits for that exit, and its next check needs a beat.
    if (!heartbeat.Open() || !heartbeat.Beat() || daemon(0, 0) != 0) {
        LogMessage(0, "Cannot start: %s\n", strerror(errno));
        return EXIT_FAILURE;
    }
    QuitHandler quitHandler(quit);
    if (!EventLoop::Instance().Init() || !EventLoop::Instance().AddHandler(&quitHandler)) {
        return EXIT_FAILURE;
    }
    heartbeat.Start();
    return EventLoop::Instance().Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
