#include "simulator/FirstProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>

#include "simulator/RootBuilder.h"
#include "simulator/standins/Announce.h"

namespace Simulator {
namespace {

void AddMachineParts(RootBuilder* root) {
    for (const char* path : {"/bin", "/lib", "/lib32", "/lib64", "/libx32", "/sbin", "/etc"}) {
        root->Share(path);
    }
    root->Directory("/usr");
    root->ShareEntries("/usr", "sbin");
    root->Directory("/dev");
    for (const char* device :
         {"/dev/null", "/dev/zero", "/dev/full", "/dev/random", "/dev/urandom"}) {
        root->Device(device);
    }
    root->Proc();
}

void AddTerminalParts(const TerminalOptions& options, RootBuilder* root) {
    const std::string standIns = options.standInDirectory + "/";
    const std::string& keldra = options.keldraProgram;
    const std::string& package = options.packageDirectory;
    root->Directory("/usr/sbin");
    root->Copy(package.empty() ? options.monitorProgram : package + kMonitorProgram,
               kMonitorProgram);
    if (!package.empty()) {
        root->Cover(package, "/etc/init.d");
        root->Cover(package, "/etc/default");
    }
    root->Copy(keldra.empty() ? standIns + "stand_in_keldra" : keldra, kKeldraProgram);
    root->Copy(standIns + "stand_in_sshd", "/usr/sbin/sshd");
    root->Copy(standIns + "service", "/usr/sbin/service");
    root->Copy(standIns + "led_ctl.sh", "/usr/sbin/led_ctl.sh");
    root->Directory("/tmp", 01777);
    root->Directory("/var/run/quenda");
    root->Directory("/sysopt/config/sat_router");
    root->Directory("/sysopt/factory");
    root->Write(kPrimaryOptions, "{ \"options\": \"primary\" }\n");
    root->Write(kBackupOptions, "{ \"options\": \"backup\" }\n");
    root->Write(kFactoryOptions, "{ \"options\": \"factory\" }\n");
}

void AddSimulatorParts(const TerminalOptions& options, RootBuilder* root) {
    const std::string& library = options.redirectLibrary;
    root->Directory("/run/simulator");
    root->Copy(options.standInDirectory + "/announce", kAnnounceProgram);
    root->Write(kKeldraSettings, std::to_string(options.keldraPeriodMs) +
                                     (options.bigEndianHeartbeat ? " big" : " native"));
    root->Directory(kWatchdogFiles);
    for (const char* file : {"intial-cnt0", "intial-cnt1", "intial-cnt2", "intial-cnt3",
                             "control-en", "control-reset", "control-all"}) {
        root->Write(std::string(kWatchdogFiles) + file, "");
    }
    root->Copy(library.empty() ? options.standInDirectory + "/libcpld_redirect.so" : library,
               kRedirectLibrary);
}

std::string BindSyslog(int syslog) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, kSyslogSocket, sizeof(kSyslogSocket));
    const int result = bind(syslog, reinterpret_cast<sockaddr*>(&address), sizeof(address));
    return result == 0 ? "" : std::string("cannot bind /dev/log: ") + strerror(errno);
}

// Lets go of everything that the simulator has open.
void CloseEverything() {
    (void)close_range(0, ~0U, 0);
    (void)open("/dev/null", O_RDWR);
    (void)dup2(0, 1);
    (void)dup2(0, 2);
}

void ReportEnd(pid_t pid) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/comm"), name);
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) {
        return;
    }
    const std::string how = WIFEXITED(status) ? "exit status " + std::to_string(WEXITSTATUS(status))
                                              : "signal " + std::to_string(WTERMSIG(status));
    Announce("init", name + " has ended: " + how);
}

}  // namespace

void RunFirstProcess(const TerminalOptions& options, int syslog, int ready) {
    (void)prctl(PR_SET_NAME, "init");
    (void)umask(022);
    RootBuilder root;
    AddMachineParts(&root);
    AddTerminalParts(options, &root);
    AddSimulatorParts(options, &root);
    root.MoveIn();
    std::string problem = root.Error();
    if (problem.empty()) {
        problem = BindSyslog(syslog);
    }
    const std::string answer = problem.empty() ? "ready" : problem;
    (void)!write(ready, answer.data(), answer.size());
    if (!problem.empty()) {
        _exit(1);
    }
    CloseEverything();
    sigset_t ended;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    (void)sigprocmask(SIG_BLOCK, &ended, nullptr);
    while (true) {
        siginfo_t child = {};
        // Its name can be read only while it is not yet reaped.
        while (waitid(P_ALL, 0, &child, WEXITED | WNOWAIT | WNOHANG) == 0 && child.si_pid != 0) {
            ReportEnd(child.si_pid);
            child = {};
        }
        (void)sigwaitinfo(&ended, nullptr);
    }
}

}  // namespace Simulator
