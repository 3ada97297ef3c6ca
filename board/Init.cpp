// The board's process 1: hands what is logged and reported on to the console, runs the commands
// that come from there, and takes in orphaned processes.
#include <fcntl.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "board/Lines.h"
#include "simulator/TerminalLayout.h"

namespace Board {
namespace {

// The machine's second port shares an interrupt with this one, and the emulator loses the one's
// when the other has none: a single port has to do for both directions.
constexpr char kPort[] = "/dev/ttyS0";
constexpr char kKernelLog[] = "/dev/kmsg";
constexpr char kNotice[] = "<5>";

// The console shows why, and the kernel restarts the machine when its first process ends.
[[noreturn]] void Fail(const char* what) {
    perror(what);
    _exit(1);
}

void Check(bool done, const char* what) {
    if (!done) {
        Fail(what);
    }
}

int OpenPort() {
    const int port = open(kPort, O_RDONLY | O_NOCTTY | O_CLOEXEC);
    Check(port >= 0, kPort);
    termios raw = {};
    Check(tcgetattr(port, &raw) == 0, kPort);
    cfmakeraw(&raw);
    raw.c_cflag |= CLOCAL;
    Check(tcsetattr(port, TCSANOW, &raw) == 0, kPort);
    return port;
}

int OpenLog() {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, Simulator::kSyslogSocket, sizeof(Simulator::kSyslogSocket));
    const int log = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    Check(bind(log, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0,
          Simulator::kSyslogSocket);
    return log;
}

int BlockedChildSignals() {
    sigset_t ended;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    (void)sigprocmask(SIG_BLOCK, &ended, nullptr);
    const int signals = signalfd(-1, &ended, SFD_NONBLOCK | SFD_CLOEXEC);
    Check(signals >= 0, "signalfd");
    return signals;
}

std::string HowItEnded(int status) {
    return WIFEXITED(status) ? "exit status " + std::to_string(WEXITSTATUS(status))
                             : "signal " + std::to_string(WTERMSIG(status));
}

[[noreturn]] void Execute(const std::vector<std::string>& words, int output) {
    sigset_t none;
    sigemptyset(&none);
    (void)sigprocmask(SIG_SETMASK, &none, nullptr);
    (void)setsid();
    (void)dup2(open("/dev/null", O_RDONLY), 0);
    (void)dup2(output, 1);
    (void)dup2(output, 2);
    std::vector<char*> argv;
    for (const auto& word : words) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    (void)execv(argv[0], argv.data());
    perror(argv[0]);
    _exit(127);
}

class Init {
public:
    [[noreturn]] void Serve() {
        Report("init the board is up");
        while (true) {
            std::array<pollfd, 4> fds = {{{port_, POLLIN, 0},
                                          {log_, POLLIN, 0},
                                          {signals_, POLLIN, 0},
                                          {output_[0], POLLIN, 0}}};
            (void)poll(fds.data(), fds.size(), -1);
            TakeDatagrams();
            TakeOutput();
            Reap();
            if (fds[0].revents != 0) {
                TakeOrders();
            }
        }
    }

private:
    void Say(char kind, const std::string& text) const {
        const std::string line = std::string(kNotice) + kFromInit + kind + Escape(text) + "\n";
        Check(write(kernelLog_, line.data(), line.size()) > 0, kKernelLog);
    }

    void Report(const std::string& datagram) const {
        size_t done = 0;
        for (; datagram.size() - done > kPieceSize; done += kPieceSize) {
            Say(kPiece, datagram.substr(done, kPieceSize));
        }
        Say(kEvent, datagram.substr(done));
    }

    void TakeDatagrams() const {
        std::array<char, 2048> buffer = {};
        ssize_t count = 0;
        while ((count = recv(log_, buffer.data(), buffer.size(), 0)) >= 0) {
            Report({buffer.data(), static_cast<size_t>(count)});
        }
    }

    void TakeOutput() {
        std::array<char, kPieceSize> buffer = {};
        ssize_t count = 0;
        while ((count = read(output_[0], buffer.data(), buffer.size())) > 0) {
            Say(kOutput, {buffer.data(), static_cast<size_t>(count)});
        }
        if (count == 0) {
            CloseOutput();
        }
    }

    void CloseOutput() {
        (void)close(output_[0]);
        output_[0] = -1;
    }

    void Reap() {
        std::array<char, sizeof(signalfd_siginfo)> buffer = {};
        while (read(signals_, buffer.data(), buffer.size()) > 0) {
        }
        siginfo_t child = {};
        // Its name can be read only while it is not yet reaped.
        while (waitid(P_ALL, 0, &child, WEXITED | WNOWAIT | WNOHANG) == 0 && child.si_pid != 0) {
            std::string name;
            std::getline(std::ifstream("/proc/" + std::to_string(child.si_pid) + "/comm"), name);
            int status = 0;
            (void)waitpid(child.si_pid, &status, 0);
            if (child.si_pid == command_) {
                End(status);
            } else {
                // What it reported itself comes first.
                TakeDatagrams();
                Report("init " + name + " has ended: " + HowItEnded(status));
            }
            child = {};
        }
    }

    // What the command left running may keep its output open: its end is what counts.
    void End(int status) {
        TakeDatagrams();
        TakeOutput();
        CloseOutput();
        command_ = -1;
        Say(kEnd, std::to_string(status));
    }

    void TakeOrders() {
        std::array<char, 512> buffer = {};
        const ssize_t count = read(port_, buffer.data(), buffer.size());
        Check(count > 0, kPort);
        orders_.append(buffer.data(), static_cast<size_t>(count));
        std::string line;
        while (TakeLine(&orders_, &line)) {
            Obey(line);
        }
    }

    void Obey(const std::string& line) {
        std::vector<std::string> words = Split(line, kBetweenWords);
        for (auto& word : words) {
            word = Unescape(word);
        }
        Check(command_ == -1 && pipe2(output_, O_CLOEXEC) == 0, "order");
        (void)fcntl(output_[0], F_SETFL, O_NONBLOCK);  // the command's end waits, ours does not
        command_ = fork();
        if (command_ == 0) {
            Execute(words, output_[1]);
        }
        (void)close(output_[1]);
    }

    int port_ = OpenPort();
    int kernelLog_ = open(kKernelLog, O_WRONLY | O_CLOEXEC);
    int log_ = OpenLog();
    int signals_ = BlockedChildSignals();
    int output_[2] = {-1, -1};
    pid_t command_ = -1;
    std::string orders_;  // what has come of the next one
};

}  // namespace
}  // namespace Board

int main() {
    using namespace Board;
    Check(mount("devtmpfs", "/dev", "devtmpfs", 0, nullptr) == 0, "/dev");
    Check(mount("proc", "/proc", "proc", 0, nullptr) == 0, "/proc");
    Check(mount("sysfs", "/sys", "sysfs", 0, nullptr) == 0, "/sys");
    (void)setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    Init init;
    init.Serve();
}
