#include "simulator/Emulation.h"

namespace Simulator {

void UseTargetDaemon(const std::string& buildDirectory, TerminalOptions* options) {
    options->monitorProgram = buildDirectory + "/monitor/keldra_monitor";
    options->redirectLibrary = buildDirectory + "/simulator/libcpld_redirect.so";
    // The emulator's own variables are given by -E: it is a program of the workstation itself.
    options->monitorWrapper = std::string("/usr/bin/qemu-ppc -L /usr/powerpc-linux-gnu") +
                              " -E LD_PRELOAD=" + kRedirectLibrary;
    options->bigEndianHeartbeat = true;
}

}  // namespace Simulator
