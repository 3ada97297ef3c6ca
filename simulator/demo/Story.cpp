#include "simulator/demo/Story.h"

#include <algorithm>

#include "simulator/TerminalLayout.h"

namespace Simulator {
namespace {

// Far beyond what any step needs: a slow machine is late, not wrong.
constexpr double kPatienceSeconds = 45;
constexpr char kRecovered[] = "Keldra started responding again";
constexpr char kArmed[] = "armed with 300 s";

}  // namespace

Story::Story(Terminal* terminal, const Printer* printer, unsigned period)
    : terminal_(terminal), printer_(printer), period_(period) {}

bool Story::Tell() {
    ColdStart();
    Healthy();
    Fault("Keldra hangs", "missed heartbeat, SIGQUIT, restart", KeldraFault::kHang,
          "Keldra missed a heartbeat");
    Fault("error state", "count 0 noticed, SIGQUIT, restart", KeldraFault::kError,
          "Keldra is in error state");
    Fault("Keldra crashes", "absence noticed, restart", KeldraFault::kCrash,
          "Keldra is not running!");
    SshdDies();
    BackupOptions();
    BackToPrimary();
    StatusQuery();
    Reboot();
    return !failed_;
}

void Story::ColdStart() {
    Begin("cold start", "Keldra and sshd are started");
    Detect(Source::kLog, "Keldra is not running!");
    Expect(Source::kLog, "/usr/sbin/keldra -cp 23");
    Expect(Source::kLog, "Starting the SSH daemon because it was not detected");
    Recover(Source::kLog, kRecovered);
    Done("both started");
}

void Story::Healthy() {
    Begin("healthy", "watchdog re-armed, no strike");
    size_t from = 0;
    do {
        from = terminal_->Events().size();
        Expect(Source::kWatchdog, kArmed);
        Expect(Source::kWatchdog, kArmed);
        // A machine that stood still for a heartbeat gets another chance.
    } while (!failed_ && StrikeSince(from));
    if (!failed_) {
        terminal_->Note("the watchdog was re-armed twice, and there was no strike");
    }
    Done("re-armed twice, no strike");
}

bool Story::StrikeSince(size_t event) const {
    const auto& events = terminal_->Events();
    return std::any_of(events.begin() + static_cast<std::ptrdiff_t>(event), events.end(),
                       [](const Event& e) { return e.text.find("Strike ") == 0; });
}

void Story::Fault(const char* name, const char* expected, KeldraFault fault, const char* sign) {
    Begin(name, expected);
    const std::string obstacle = failed_ ? "" : Cause(terminal_, fault);
    if (!obstacle.empty()) {
        Skip(obstacle);
        return;
    }
    if (fault != KeldraFault::kCrash && terminal_->HasStandInKeldra()) {
        // The stand-in obeys within its heartbeat period; the fault counts from then on.
        begin_ = Expect(Source::kKeldra, " now") ? last_ : begin_;
    }
    Detect(Source::kLog, sign);
    Expect(Source::kLog, "Strike 1!");
    Expect(Source::kLog, "/usr/sbin/keldra -cp 23");
    Recover(Source::kLog, kRecovered);
    Done("strike 1, restarted");
}

void Story::SshdDies() {
    Begin("sshd dies", "started through the service script");
    if (!failed_) {
        (void)KillSshd(terminal_);
    }
    Detect(Source::kLog, "Starting the SSH daemon because it was not detected");
    Recover(Source::kSshd, "is up");
    Done("started");
}

void Story::BackupOptions() {
    Begin("damaged options", "backup options after two strikes");
    if (!terminal_->HasStandInKeldra()) {
        Skip("your own program reads its own options");
        return;
    }
    if (!failed_) {
        DamagePrimaryOptions(terminal_);
        (void)Cause(terminal_, KeldraFault::kCrash);
    }
    Detect(Source::kLog, "Strike 1!");
    Expect(Source::kLog, "Strike 2!");
    Expect(Source::kLog, std::string("-cfg ") + kPrimaryOptions);
    Expect(Source::kLog, "Strike 3!");
    Expect(Source::kLog, std::string("-cfg ") + kBackupOptions);
    Recover(Source::kLog, kRecovered);
    Done("strike 3, backup options");
}

void Story::BackToPrimary() {
    Begin("options repaired", "next start uses primary options");
    if (!terminal_->HasStandInKeldra()) {
        Skip("your own program reads its own options");
        return;
    }
    if (!failed_) {
        Repair(terminal_);
        (void)Cause(terminal_, KeldraFault::kCrash);
    }
    Detect(Source::kLog, "Keldra is not running!");
    const std::string command = std::string("/usr/sbin/keldra -cp 23 -cfg ") + kPrimaryOptions;
    // The backup file's name begins with the primary file's.
    if (Expect(Source::kLog, command) && lastText_ != command) {
        Surprise(lastText_);
    }
    Recover(Source::kLog, kRecovered);
    Done("strike 1, primary options");
}

void Story::StatusQuery() {
    Begin("status query", "keldra_monitor -i tells the state");
    if (failed_) {
        return;
    }
    const CommandResult query = terminal_->Run(terminal_->MonitorCommand({"-i"}));
    printer_->Quote(query.output);
    const bool healthy =
        query.output.find("Keldra State:   Keldra_Up_And_Okay\n") != std::string::npos;
    if (query.status != 0 || !healthy) {
        Surprise("no healthy state in the answer");
    }
    Done("Keldra_Up_And_Okay");
}

void Story::Reboot() {
    Begin("no start at all", "4 strikes, watchdog bites, reboot");
    if (!failed_) {
        RefuseToStart(terminal_);
        (void)Cause(terminal_, KeldraFault::kCrash);
    }
    Detect(Source::kLog, "Keldra is not running!");
    Expect(Source::kLog, "Keldra failed to start, status: ");
    Expect(Source::kLog, "Strike 4!");
    Expect(Source::kLog, "Maximum consecutive failure threshold exceeded");
    Expect(Source::kWatchdog, "armed with 30 s");
    Expect(Source::kLed, "all error");
    Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
    Expect(Source::kWatchdog, "BITES");
    Expect(Source::kSimulator, "backup partition");
    Recover(Source::kLog, kRecovered);
    Done("runs from backup partition");
}

void Story::Begin(const std::string& name, const std::string& expected) {
    if (failed_) {
        return;
    }
    printer_->Heading(name + ": " + expected);
    terminal_->Mark();
    // The cold start counts from the moment at which the terminal was switched on.
    begin_ = situations_.empty() ? 0 : terminal_->Seconds();
    Situation situation;
    situation.name = name;
    situation.expected = expected;
    situations_.push_back(situation);
}

bool Story::Expect(Source source, const std::string& text) {
    if (failed_) {
        return false;
    }
    const double patience = kPatienceSeconds + 4.0 * period_;
    const auto event = terminal_->Await(source, text, patience);
    if (event) {
        last_ = event->seconds;
        lastText_ = event->text;
        return true;
    }
    Surprise("missing: " + text);
    return false;
}

bool Story::Detect(Source source, const std::string& text) {
    const bool ok = Expect(source, text);
    if (ok) {
        situations_.back().detectSeconds = last_ - begin_;
    }
    return ok;
}

bool Story::Recover(Source source, const std::string& text) {
    const bool ok = Expect(source, text);
    if (ok) {
        situations_.back().recoverSeconds = last_ - begin_;
    }
    return ok;
}

void Story::Done(const std::string& seen) {
    if (!failed_) {
        situations_.back().seen = seen;
        situations_.back().passed = true;
    }
}

void Story::Skip(const std::string& why) {
    if (!failed_) {
        printer_->Line("skipped: " + why, Colour::kYellow);
        situations_.back().seen = "skipped";
        situations_.back().skipped = true;
    }
}

void Story::Surprise(const std::string& seen) {
    if (!failed_) {
        failed_ = true;
        printer_->Line("NOT as expected: " + seen, Colour::kRed);
        printer_->Line("expected:        " + situations_.back().expected, Colour::kRed);
        situations_.back().seen = "NOT that, see above";
    }
}

}  // namespace Simulator
