// Boots the board, runs shell commands on it one after the other, prints their output, and switches
// the board off. Exit status: 0 all commands succeeded, 1 one failed, 2 wrong use, 3 no board.
#include <iostream>

#include "terminal/board/BoardTerminal.h"

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: run_on_board DIRECTORY COMMAND...\n";
        return 2;
    }
    Terminals::Board::BoardTerminal board(argv[1], 1);
    std::string reason;
    if (!board.PowerOn(&reason)) {
        std::cerr << "the board does not come up: " << reason << "\n";
        return 3;
    }
    std::cerr << "the board is " << board.Description() << "\n";
    bool passed = true;
    for (int i = 2; i < argc; ++i) {
        const auto result = board.Run(argv[i]);
        std::cout << result.output << std::flush;
        if (result.status != 0) {
            std::cerr << "status " << result.status << " of: " << argv[i] << "\n";
            passed = false;
        }
    }
    return passed ? 0 : 1;
}
