// Measures single operations of the core library, and a lookup by name. The label of each is its
// line on the page.
#include <benchmark/benchmark.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <csignal>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "monitor/ProcessLookup.h"
#include "shell/ShellRunner.h"

namespace {

using benchmark::State;

constexpr unsigned kPeriodMs = 60000;

// Timers that are spread over a period.
std::deque<Quenda::PeriodicTimer> ArmTimers(int64_t count) {
    std::deque<Quenda::PeriodicTimer> timers;
    for (int64_t i = 0; i < count; ++i) {
        timers.emplace_back("bench").Start(static_cast<unsigned>(i * 7919 % kPeriodMs), kPeriodMs);
    }
    return timers;
}

void ArmAndStop(State& state) {
    const auto others = ArmTimers(state.range(0));
    Quenda::PeriodicTimer timer("bench");
    for (auto _ : state) {
        timer.Start(kPeriodMs / 2, kPeriodMs);
        timer.Stop();
    }
    state.SetLabel("start and stop a timer among " + std::to_string(state.range(0)) + " others");
}
BENCHMARK(ArmAndStop)->Arg(0)->Arg(100)->Arg(10000);

// Each timer fires once in a period, and each round is one period.
void Fire(State& state) {
    const auto timers = ArmTimers(state.range(0));
    Quenda::TimeValue now = Quenda::TimeValue::Now();
    for (auto _ : state) {
        now.AddMilliseconds(kPeriodMs);
        Quenda::TimeKeeper::Instance().ProcessExpired(now);
    }
    state.SetLabel("fire periodic timers in one pass: " + std::to_string(state.range(0)));
}
BENCHMARK(Fire)->Arg(1)->Arg(100);

class Counter : public Quenda::FileDescriptorHandler {
public:
    Counter() : FileDescriptorHandler("bench", eventfd(0, EFD_NONBLOCK), EPOLLIN) {}
    void HandleRead() override {
        uint64_t count = 0;
        (void)!read(Fd(), &count, sizeof(count));
        ++calls;
    }
    void HandleWrite() override {}

    int64_t calls = 0;
};

void Dispatch(State& state) {
    Quenda::EventLoop loop;
    std::deque<Counter> counters(static_cast<size_t>(state.range(0)));
    bool right = loop.Init();
    for (Counter& counter : counters) {
        right = right && loop.AddHandler(&counter);
    }
    const uint64_t one = 1;
    for (auto _ : state) {
        right = right && write(counters.back().Fd(), &one, sizeof(one)) == sizeof(one);
        right = right && loop.Poll();
    }
    if (!right || counters.back().calls != static_cast<int64_t>(state.iterations())) {
        state.SkipWithError("an event was lost");
    }
    state.SetLabel("write an event, dispatch and read it; handlers: " +
                   std::to_string(state.range(0)));
}
BENCHMARK(Dispatch)->Arg(1)->Arg(100);

// Options of 1,000 leaves on three levels. `change` makes them differ.
Json::Value Options(unsigned change) {
    Json::Value options;
    for (unsigned i = 0; i < 1000; ++i) {
        Json::Value& section =
            options["interface" + std::to_string(i / 100)]["section" + std::to_string(i / 10 % 10)];
        const std::string name = "option" + std::to_string(i % 10);
        if (i % 2 == 0) {
            section[name] = i + change;
        } else {
            section[name] = "10.0." + std::to_string(i) + "." + std::to_string(change);
        }
    }
    return options;
}

void FindOption(State& state) {
    const Json::Value options = Options(1);
    const Quenda::OptionsNode node(&options);
    const Quenda::OptionsPath path = {"interface7", "section3", "option5"};
    for (auto _ : state) {
        benchmark::DoNotOptimize(node.GetNode(path));
    }
    state.SetLabel("find one of 1,000 options by its path of 3 names");
}
BENCHMARK(FindOption);

// Changes a document alternately to two states.
template <typename Change>
void ChangeOptions(State& state, const Change& change) {
    Json::Value document = Options(1);
    const Json::Value sources[] = {Options(1), Options(2)};
    Quenda::OptionsNodeEdit edit(&document, nullptr);
    size_t last = 0;
    for (auto _ : state) {
        last = 1 - last;
        change(edit, Quenda::OptionsNode(&sources[last]));
    }
    if (document != sources[last]) {
        state.SkipWithError("the options are wrong");
    }
}

void OverlayOptions(State& state) {
    ChangeOptions(state, [](Quenda::OptionsNodeEdit& edit, const Quenda::OptionsNode& source) {
        (void)edit.Overlay(source, 1000);
    });
    state.SetLabel("overlay 1,000 options with new values");
}
BENCHMARK(OverlayOptions);

void MergeOptions(State& state) {
    const Json::Value none;
    ChangeOptions(state, [&](Quenda::OptionsNodeEdit& edit, const Quenda::OptionsNode& source) {
        (void)edit.Merge(source, Quenda::OptionsNode(&none));
    });
    state.SetLabel("merge new values into 1,000 options");
}
BENCHMARK(MergeOptions);

void WriteOptions(State& state) {
    const Json::Value options = Options(1);
    const Quenda::OptionsNode node(&options);
    for (auto _ : state) {
        benchmark::DoNotOptimize(node.GetCompactText());
    }
    state.SetLabel("write 1,000 options as compact text");
}
BENCHMARK(WriteOptions);

void ShellCommand(State& state) {
    for (auto _ : state) {
        std::string output;
        if (!Quenda::RunShellCommand("head -c 262144 /dev/zero", output) ||
            output.size() != 262144) {
            state.SkipWithError("the command has not printed 256 KB");
        }
    }
    state.SetLabel("run a shell command that prints 256 KB");
}
BENCHMARK(ShellCommand)->UseRealTime();

int64_t CountProcesses() {
    const std::filesystem::directory_iterator proc("/proc");
    return std::count_if(begin(proc), end(proc), [](const auto& entry) {
        return isdigit(entry.path().filename().c_str()[0]) != 0;
    });
}

// A search that finds nothing, and so looks at every process.
void FindProcess(State& state) {
    std::vector<pid_t> sleepers;
    int64_t processes = CountProcesses();
    for (; processes < state.range(0); ++processes) {
        const pid_t pid = fork();
        if (pid == 0) {
            (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
            pause();
            _exit(0);
        }
        sleepers.push_back(pid);
    }
    for (auto _ : state) {
        if (Monitor::FindProcessId("no_keldra") != 0) {
            state.SkipWithError("a process that is not there was found");
        }
    }
    for (const pid_t pid : sleepers) {
        (void)kill(pid, SIGKILL);
        (void)waitpid(pid, nullptr, 0);
    }
    state.SetLabel("look in vain for a process name, processes: " + std::to_string(processes));
}
BENCHMARK(FindProcess)->Arg(500);

}  // namespace

BENCHMARK_MAIN();
