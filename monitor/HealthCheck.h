#pragma once

namespace Monitor {

// The supervision of Keldra and sshd, run after every read of the heartbeat file: judges Keldra,
// re-arms the watchdog, restarts what is not healthy. Exits the process when the strikes pass the
// maximum, and the watchdog then reboots the terminal.
//
// A check that finds no memory is given up with a line in the log, wherever it stands.
//
// `heartbeatRead`: whether the read succeeded. Returns whether sshd runs or could be started.
bool CheckHealth(bool heartbeatRead);

}  // namespace Monitor
