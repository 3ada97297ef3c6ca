#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/TempDir.h"

namespace {

// What the console prints for this input; it must end by itself and well.
std::string Answers(const std::string& input, bool throughPipe) {
    const TempDir directory;
    const std::string file = "'" + directory.Write("input", input) + "'";
    const std::string command =
        throughPipe ? "cat " + file + " | " DIAGNOSTICS_CONSOLE : DIAGNOSTICS_CONSOLE " <" + file;
    FILE* const output = popen(command.c_str(), "r");
    std::string text;
    for (int c = fgetc(output); c != EOF; c = fgetc(output)) {
        text += static_cast<char>(c);
    }
    EXPECT_EQ(pclose(output), 0) << text;
    return text;
}

void ExpectInOrder(const std::string& answers, const std::vector<std::string>& pieces) {
    size_t from = 0;
    for (const std::string& piece : pieces) {
        const size_t at = answers.find(piece, from);
        ASSERT_NE(at, std::string::npos) << piece << " after " << from << " in:\n" << answers;
        from = at + piece.size();
    }
}

TEST(DiagnosticsConsoleTest, PollsAPipeAndReadsAFileInPieces) {
    const std::string input = "nope\n\n" + std::string(2000, ' ') + "help\nquit\nnever";
    for (const bool pipe : {true, false}) {
        const std::string answers = Answers(input, pipe);
        ExpectInOrder(answers, {"There is no \"nope\"", "quit  "});
        EXPECT_EQ(answers.find("never"), std::string::npos);
        ExpectInOrder(Answers("an end without a line end", pipe), {"\"an\"", "End of the input."});
    }
    ExpectInOrder(Answers("loop fd", true), {" fd:0 \"standard input\" Use Count: ", " READ"});
    ExpectInOrder(Answers("loop act", false), {" - read standard input"});
}

TEST(DiagnosticsConsoleTest, SamplesItsOwnFigures) {
    const std::string answers = Answers(
        "values show timers\nvalues history periodic 50\nloop timer\nvalues history snapshot\n"
        "values history show timers",
        true);
    ExpectInOrder(answers, {"timers = 1\n", "every 50 milliseconds", "2 Active Timer(s)",
                            "figures -> ", "Time ,       timers \n", " ,            1 \n"});
    EXPECT_EQ(Answers("values show resident_kb", true).find("_kb = 0\n"), std::string::npos);
}

TEST(DiagnosticsConsoleTest, EditsTheDocumentAndShowsWhatWasRefused) {
    ExpectInOrder(Answers("options merge 1 fast\noptions merge 2 300\noptions merge 1 4800\n"
                          "options overlay power 7\noptions print modem\noptions print nix\n"
                          "options print ports",
                          true),
                  {"cannot change type of existing", "\"band\" : \"L\"", "\"power\" : 7 //watts",
                   "empty OptionsNode down the path", "\"port\" : 1", "\"rate\" : 4800",
                   "\"port\" : 2", "\"rate\" : 300"});
}

}  // namespace
