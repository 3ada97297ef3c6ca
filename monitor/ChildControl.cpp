#include "monitor/ChildControl.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "core/log/Log.h"
#include "core/signals/SignalWindow.h"
#include "core/text/FormatText.h"
#include "monitor/MonitorSettings.h"
#include "monitor/ProcessLookup.h"
#include "shell/ShellRunner.h"

namespace Monitor {

using Quenda::FormatText;
using Quenda::LogMessage;

namespace {

constexpr char kProgramDirectory[] = "/usr/sbin/";
constexpr int kExecFailed = 65;  // the exit status of a child in which execl failed

// The monitor only tests whether they exist; Keldra reads them.
constexpr char kPrimaryOptionsFile[] = "/sysopt/config/sat_router/keldra.json";
constexpr char kBackupOptionsFile[] = "/sysopt/config/sat_router/keldra.json.bak";
constexpr char kFactoryOptionsFile[] = "/sysopt/factory/keldra_factory.json";

bool Exists(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0;
}

// In the child. Does not return.
[[noreturn]] void ExecKeldra(const char* path, const char* name, const char* optionsFile) {
    Quenda::RestoreSignalsInChild();
    Quenda::CloseInheritedDescriptors();
    // 23 has a meaning to Keldra alone; it is passed on every start.
    if (optionsFile == nullptr) {
        (void)execl(path, name, "-cp", "23", nullptr);
    } else {
        (void)execl(path, name, "-cp", "23", "-cfg", optionsFile, nullptr);
    }
    _exit(kExecFailed);
}

bool JudgeLauncher(pid_t child, int status) {
    if (WTERMSIG(status) != 0) {
        LogMessage(0, "Keldra %d did not exit normally!\n", child);
        return false;
    }
    if (WEXITSTATUS(status) != 0) {
        LogMessage(0, "Keldra failed to start, status: %d\n", WEXITSTATUS(status));
        return false;
    }
    LogDebug("Keldra started successfully with PID %d\n", child);
    return true;
}

}  // namespace

const char* OptionsFile(OptionsType type) {
    switch (type) {
        case OptionsType::Normal_Options:
            return kPrimaryOptionsFile;
        case OptionsType::Backup_Options:
            return kBackupOptionsFile;
        case OptionsType::Factory_Options:
            return kFactoryOptionsFile;
    }
    return nullptr;
}

bool ChooseOptionsFile(OptionsType& type) {
    if (Exists(kPrimaryOptionsFile)) {
        LogDebug("Defaulting to Keldra's primary options file\n");
        type = OptionsType::Normal_Options;
    } else if (Exists(kBackupOptionsFile)) {
        LogMessage(0,
                   "Falling back to Keldra's backup options file because the primary options file "
                   "is missing\n");
        type = OptionsType::Backup_Options;
    } else if (Exists(kFactoryOptionsFile)) {
        LogMessage(0,
                   "Falling back to Keldra's factory options file because both the primary and "
                   "backup options files are missing\n");
        type = OptionsType::Factory_Options;
    } else {
        LogMessage(
            0,
            "TERMINATING IMMEDIATELY because the primary, backup, and factory Keldra options "
            "files are missing\n");
        return false;
    }
    return true;
}

bool StartKeldra(const std::string& processName, const char* optionsFile) {
    const std::string path = kProgramDirectory + processName;
    if (!Exists(path.c_str())) {
        LogMessage(0, "Failed to start Keldra because %s does not exist\n", path.c_str());
        return false;
    }
    if (optionsFile == nullptr) {
        LogMessage(0, "%s -cp 23\n", path.c_str());
    } else {
        LogMessage(0, "%s -cp 23 -cfg %s\n", path.c_str(), optionsFile);
    }

    const pid_t child = fork();
    if (child == -1) {
        LogMessage(0, "Failed to fork for Keldra: %s\n", strerror(errno));
        return false;
    }
    if (child == 0) {
        ExecKeldra(path.c_str(), processName.c_str(), optionsFile);
    }
    int waitStatus = 0;
    if (!Quenda::WaitForChild(child, waitStatus)) {
        LogMessage(0, "Failed to wait on Keldra %d: %s\n", child, strerror(errno));
        return false;
    }
    return JudgeLauncher(child, waitStatus);
}

bool SignalKeldra(const std::string& processName, int32_t pid, int signal) {
    LogDebug("Sending signal %d to Keldra %d\n", signal, pid);
    const bool signalled = SignalProcessesByName(processName.c_str(), signal);
    if (!signalled) {
        LogMessage(0, "Failed to kill Keldra %d, continuing anyway\n", pid);
    }
    return signalled;
}

bool StartSshd(const std::string& serviceScript, const std::string& serviceName) {
    // Deliberate: the newline is part of the command.
    const std::string command =
        FormatText("%s %s start\n", serviceScript.c_str(), serviceName.c_str());
    std::string output;
    if (!Quenda::RunShellCommand(command, output)) {
        // The captured text ends with its own newline, so an empty line follows it.
        LogMessage(0, "Failed to start the SSH service: %s\n", output.c_str());
        return false;
    }
    return true;
}

bool SetLedsToError(const std::string& ledControlScript) {
    const std::string command = FormatText("%s all error", ledControlScript.c_str());
    if (!Quenda::RunSystemCommand(command)) {
        // Deliberate: system(3) gives no reason, and programs that read the log know the line with
        // an empty one.
        LogMessage(0, "Failed to set the LEDs on the terminal: %s\n", "");
        return false;
    }
    return true;
}

}  // namespace Monitor
