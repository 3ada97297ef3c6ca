#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>

#include "bench/core/Contest.h"
#include "bench/core/CoreMeasurements.h"
#include "shell/ShellRunner.h"

namespace Bench {

namespace {

constexpr char kCommand[] = "head -c 262144 /dev/zero";
constexpr size_t kPrinted = 262144;
constexpr size_t kProcessBytes = 10'000'000;
constexpr int kRounds = 201;

// A fork copies what the process has in memory: bring it to the size that is asked for.
void Grow() {
    std::ifstream statm("/proc/self/statm");
    size_t pages = 0;
    size_t resident = 0;
    statm >> pages >> resident;
    resident *= static_cast<size_t>(getpagesize());
    if (resident >= kProcessBytes) {
        Fail("the process is too large");
    }
    const size_t missing = kProcessBytes - resident;
    void* const memory =
        mmap(nullptr, missing, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        Fail("no memory");
    }
    // As the heap has it: in pages, not in the large ones that a fork copies for nothing.
    (void)madvise(memory, missing, MADV_NOHUGEPAGE);
    (void)memset(memory, 1, missing);
}

void RunOurs() {
    std::string output;
    if (!Quenda::RunShellCommand(kCommand, output) || output.size() != kPrinted) {
        Fail("the command has not printed what it should");
    }
}

void RunPopen() {
    std::string output;
    FILE* const stream = popen(kCommand, "r");
    if (stream == nullptr) {
        Fail("cannot run the command");
    }
    char chunk[4096];
    for (size_t count = 0; (count = fread(chunk, 1, sizeof(chunk), stream)) > 0;) {
        output.append(chunk, count);
    }
    if (pclose(stream) != 0 || output.size() != kPrinted) {
        Fail("the command has not printed what it should");
    }
}

}  // namespace

bool MeasureShell() {
    Grow();
    const std::vector<Contender> contenders = {{"ours", RunOurs, nullptr},
                                               {"popen", RunPopen, nullptr}};
    const Rounds rounds = Compete(contenders, kRounds, CpuWithChildren);
    Row row = Compare("Shell command that prints 256 KB, from 10 MB, CPU with the command's",
                      contenders, rounds, 1);
    SetBar(row, contenders, rounds, 1, 1.7);
    Print(row);
    return row.met;
}

}  // namespace Bench
