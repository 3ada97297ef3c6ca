#include <filesystem>
#include <set>

#include "tests/simulator/EndToEnd.h"

namespace fs = std::filesystem;
using namespace Simulator;

class EndToEndHygieneTest : public EndToEnd {
protected:
    std::set<std::string> Descriptors(const std::string& name) {
        std::set<std::string> numbers;
        const std::string path = "/proc/" + std::to_string(Only(name)) + "/fd";
        for (const auto& entry : fs::directory_iterator(terminal_->Path(path))) {
            numbers.insert(entry.path().filename());
        }
        return numbers;
    }
};

TEST_F(EndToEndHygieneTest, NothingOfTheDaemonLeaksIntoWhatItStarts) {
    StartHealthy();
    const std::set<std::string> standard = {"0", "1", "2"};
    EXPECT_EQ(Descriptors("keldra"), standard);
    EXPECT_EQ(Descriptors("sshd"), standard);
}

TEST_F(EndToEndHygieneTest, RestartsLeaveNeitherZombiesNorDescriptorsBehind) {
    StartHealthy();
    const auto before = Descriptors("keldra_monitor");
    for (const KeldraFault fault : {KeldraFault::kError, KeldraFault::kCrash}) {
        terminal_->Mark();
        (void)KillSshd(terminal_.get());
        ASSERT_EQ(Cause(terminal_.get(), fault), "");
        ExpectLog("Starting the SSH daemon because it was not detected");
        ExpectLog("Keldra started responding again after ");
    }
    EXPECT_EQ(Descriptors("keldra_monitor"), before);
    for (const Process& process : terminal_->Processes()) {
        EXPECT_NE(process.state, 'Z') << process.name;
    }
    // The daemon has no child left: what it started was adopted by the first process.
    const pid_t daemon = Only("keldra_monitor");
    for (const Process& process : terminal_->Processes()) {
        EXPECT_NE(process.parent, daemon) << process.name;
    }
}
