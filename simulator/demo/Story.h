#pragma once

#include <string>
#include <vector>

#include "simulator/Faults.h"
#include "simulator/Terminal.h"
#include "simulator/demo/Printer.h"
#include "simulator/demo/ResultTable.h"

namespace Simulator {

// Leads a terminal that has just been switched on through every situation that its daemon
// guards against, and keeps what was seen. Each step waits for what it expects.
class Story {
public:
    Story(Terminal* terminal, const Printer* printer, unsigned period);

    // Returns true when everything came as expected; the first surprise ends the story.
    bool Tell();

    const std::vector<Situation>& Situations() const { return situations_; }

private:
    void ColdStart();
    void Healthy();
    void Fault(const char* name, const char* expected, KeldraFault fault, const char* sign);
    void SshdDies();
    void BackupOptions();
    void BackToPrimary();
    void StatusQuery();
    void Reboot();

    bool StrikeSince(size_t event) const;
    void Begin(const std::string& name, const std::string& expected);
    // Each of these waits for what it names and notes the situation's failure when it does not
    // come; after a failure it does nothing and returns false.
    bool Expect(Source source, const std::string& text);
    bool Detect(Source source, const std::string& text);
    bool Recover(Source source, const std::string& text);
    void Done(const std::string& seen);
    void Skip(const std::string& why);
    void Surprise(const std::string& seen);

    Terminal* terminal_;
    const Printer* printer_;
    unsigned period_;
    std::vector<Situation> situations_;
    double begin_ = 0;
    double last_ = 0;  // when the last expected event came
    std::string lastText_;
    bool failed_ = false;
};

}  // namespace Simulator
