// A session on a simulated terminal with the package installed, as an operator types it: each line
// of standard input is a command for the terminal's shell, and its output follows the line. The
// shell has these commands of ours:
//   service ACTION     the service script, called as a careless caller does
//   settings LINE      writes the settings: one line of the shell
//   options WORDS      the same, with these options of the daemon
//   monitors           says whether a monitor runs, and whether it is that of the last question
//   damage             replaces the daemon's program by standard input
//   answers COMMAND    makes the daemon's program answer a query with this command's output
//   descriptors N      waits until the monitor of the last question has at most N open, as it has
//                      between checks, and prints how many
//   pids NAME          prints the PIDs of the processes with this name
//   debug SIGNAL TEXT COMMAND...  runs a monitor in debug mode until its log, /tmp/log, holds this
//                      text, sends the signal, and prints how the monitor ended
//   order WORD         makes the running Keldra misbehave
//   await TEXT         waits until a line of the system log holds this text
//   story FIRST..LAST  waits until lines of the system log have these two texts. Prints the lines
//                      from FIRST to LAST, and the orders to the LEDs and the watchdog in between
// await and story also print a priority other than daemon.notice.
// Usage: terminal_session [KELDRA [FILE...]]: a Keldra other than the stand-in, and programs for
// /usr/sbin.
// A daemon that the service script starts has the terminal's watchdog; one that is started by its
// name has no watchdog device.
#include <syslog.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

#include "terminal/simulated/SimulatedTerminal.h"
#include "tests/support/TempDir.h"

using namespace Terminals;
using namespace Terminals::Simulated;

namespace {

constexpr double kPatienceSeconds = 60;  // a slow machine is waited for
// Then a session that hangs ends, and everything in its terminal with it.
constexpr unsigned int kLongestSeconds = 250;

// As root at least of a namespace, in a root that has nothing else.
constexpr char kInstall[] = R"sh(
mkdir "$D" && cd "$D" && PATH=$PATH:/usr/sbin:/sbin &&
mkdir -p var/lib/dpkg/info var/lib/dpkg/updates && touch var/lib/dpkg/status &&
$([ $(id -u) = 0 ] || echo unshare -r) \
  dpkg --root="$D" --force-depends,script-chrootless -i "$P" >log 2>&1 || { cat log; false; })sh";

// The sources of the lines that `story` prints, and the name in front of each.
const std::map<Source, std::string> kTellers = {
    {Source::kLog, "log"}, {Source::kLed, "led"}, {Source::kWatchdog, "watchdog"}};

const std::string kCommands = R"sh(
options() { settings "KELDRA_MONITOR_OPTIONS='$*'"; }
settings() { printf '%s\n' "$1" >/etc/default/keldra_monitor; }
redirect=LD_PRELOAD=)sh" + std::string(kRedirectLibrary) +
                              R"sh(
service() {
  (umask 077; cd /tmp; exec env -i ASAN_OPTIONS=$ASAN_OPTIONS $redirect \
    /etc/init.d/keldra-monitor "$@") || echo "(exit status $?)"
}
debug() {
  signal=$1 text=$2
  shift 2; rm -f /tmp/log
  env $redirect "$@" 2>/tmp/log &
  until grep -qs "$text" /tmp/log || [ ! -e /proc/$!/exe ]; do sleep 0.1; done
  kill -$signal $!
  wait $! 2>/dev/null
  echo "$signal: exit status $?"
}
damage() { cat >/tmp/new; chmod 755 /tmp/new; mv /tmp/new /usr/sbin/keldra_monitor; }
answers() {
  printf '#!/bin/sh\n[ $1 = -i ] || exit\necho >>/tmp/asked\n{ %s; } >&2\n' "$1" | damage
  rm -rf /var/run/keldra-metrics
}
descriptors() {
  for i in $(seq 100); do
    n=$(ls /proc/$(cat /tmp/monitors)/fd | wc -l)
    [ $n -gt $1 ] || break
    sleep 0.1
  done
  echo $n
}
pids() { (cd /proc; grep -slx "$1" [0-9]*/comm) | cut -d / -f 1; }
order() {
  for pid in $(pids keldra); do
    while echo $1 >/run/simulator/keldra.order.$pid; [ -e /proc/$pid ]; do
      sleep 0.1; [ -e /run/simulator/keldra.order.$pid ] || return 0
    done
  done
}
monitors() {
  touch /tmp/monitors
  # A program that the daemon starts has the daemon's name for a moment.
  until pids keldra_monitor >/tmp/now; [ $(wc -l </tmp/now) -lt 2 ]; do :; done
  if [ ! -s /tmp/now ]; then echo none
  elif cmp -s /tmp/now /tmp/monitors; then echo the same
  else echo "a new one"
  fi
  mv /tmp/now /tmp/monitors
}
)sh";

// What the log tells of a line's priority if it is not the usual one.
std::string Unusual(const Event& event) {
    const bool isUsual = event.priority < 0 || event.priority == (LOG_DAEMON | LOG_NOTICE);
    return isUsual ? "" : "(priority " + std::to_string(event.priority) + ")\n";
}

// Looks at each event once. False if one of the two lines did not come.
bool TellStory(Terminal& terminal, const std::string& first, const std::string& last) {
    static size_t next = 0;
    const double deadline = terminal.Seconds() + kPatienceSeconds;
    bool isTold = false;
    while (terminal.Seconds() < deadline) {
        if (next == terminal.Events().size()) {
            (void)terminal.Pump(100);
            continue;
        }
        const Event& event = terminal.Events()[next++];
        const auto teller = kTellers.find(event.source);
        if (teller == kTellers.end()) {
            continue;
        }
        isTold = isTold || event.text.find(first) != std::string::npos;
        if (isTold) {
            std::cout << teller->second << ": " << event.text << "\n" << Unusual(event);
        }
        if (isTold && event.text.find(last) != std::string::npos) {
            return true;
        }
    }
    return false;
}

// Obeys a line. False if what it waits for did not come.
bool Obey(Terminal& terminal, const std::string& line) {
    const size_t dots = line.find("..");
    if (line.rfind("await ", 0) == 0) {
        const auto event = terminal.Await(Source::kLog, line.substr(6), kPatienceSeconds);
        std::cout << (event ? Unusual(*event) : "");
        return event.has_value();
    }
    if (line.rfind("story ", 0) == 0) {
        return TellStory(terminal, line.substr(6, dots - 6), line.substr(dots + 2));
    }
    std::cout << terminal.Run(kCommands + line).output;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    alarm(kLongestSeconds);
    const TempDir files;
    TerminalOptions options;
    options.packageDirectory = files.File("package");
    options.keldraProgram = argc > 1 ? argv[1] : "";
    setenv("P", PACKAGE_FILE, 1);
    setenv("D", options.packageDirectory.c_str(), 1);
    if (std::system(kInstall) != 0) {
        return 1;
    }
    SimulatedTerminal terminal(options);
    std::string reason;
    if (!terminal.PowerOn(&reason)) {
        std::cout << reason << "\n";
        return 1;
    }
    for (int i = 2; i < argc; ++i) {
        const std::filesystem::path file = argv[i];
        std::filesystem::copy_file(file, terminal.Path("/usr/sbin/" + file.filename().string()));
    }
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << "> " << line << "\n";
        std::cout << (Obey(terminal, line) ? "" : "(it did not come)\n") << std::flush;
    }
    std::cout << terminal.Run("cat /tmp/sanitizer* 2>/dev/null").output;
}
