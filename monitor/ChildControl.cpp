#include "monitor/ChildControl.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "core/log/Log.h"
#include "core/signals/SignalWindow.h"
#include "core/text/FormatText.h"
#include "monitor/DebugLog.h"
#include "monitor/MonitorState.h"
#include "monitor/ProcessLookup.h"
#include "shell/ShellRunner.h"

namespace Monitor {

using Quenda::FormatText;
using Quenda::LogMessage;

namespace {

constexpr char kProgramDirectory[] = "/usr/sbin/";
constexpr int kExecFailed = 65;  // the exit status of a child that could not become Keldra

// The options file of that type, null for an unknown one. The start is counted here, before
// anything can fail.
const char* CountStartAndGetOptionsFile(OptionsType type) {
    switch (type) {
        case OptionsType::Normal_Options:
            ++statistics.start_with_normal_options;
            return kPrimaryOptionsFile;
        case OptionsType::Backup_Options:
            ++statistics.start_with_backup_options;
            return kBackupOptionsFile;
        case OptionsType::Factory_Options:
            ++statistics.start_with_factory_options;
            return kFactoryOptionsFile;
    }
    return nullptr;
}

// In the child. Does not return.
[[noreturn]] void ExecKeldra(const char* path, const char* name, const char* optionsFile) {
    Quenda::RestoreSignalsInChild();
    Quenda::CloseInheritedDescriptors();
    // Only Keldra knows what 23 means; it gets it on every start.
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

bool StartKeldra(const std::string& processName, OptionsType optionsType) {
    const char* const optionsFile = CountStartAndGetOptionsFile(optionsType);
    const std::string path = kProgramDirectory + processName;
    struct stat status {};
    if (stat(path.c_str(), &status) == -1) {
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

bool SignalKeldra(const std::string& processName, int signal) {
    const int32_t pid = supervision.keldra_pid;
    LogDebug("Sending signal %d to Keldra %d\n", signal, pid);
    const bool signalled = SignalProcessesByName(processName.c_str(), signal);
    if (!signalled) {
        LogMessage(0, "Failed to kill Keldra %d, continuing anyway\n", pid);
    }
    return signalled;
}

bool StartSshd(const std::string& serviceName) {
    // The newline belongs to the command.
    const std::string command =
        FormatText("%s %s start\n", settings.service_script.c_str(), serviceName.c_str());
    std::string output;
    if (!Quenda::RunShellCommand(command, output)) {
        // The captured text brings a newline of its own.
        LogMessage(0, "Failed to start the SSH service: %s\n", output.c_str());
        return false;
    }
    ++statistics.start_sshd;
    return true;
}

bool SetLedsToError() {
    const std::string command = FormatText("%s all error", settings.led_control_script.c_str());
    if (!Quenda::RunSystemCommand(command)) {
        // The script gives no reason; the place for one stays empty, as log readers know it.
        LogMessage(0, "Failed to set the LEDs on the terminal: %s\n", "");
        return false;
    }
    return true;
}

}  // namespace Monitor
