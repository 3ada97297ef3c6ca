// Lets a stand-in script report to the simulator: announce WHO WHAT...
#include "terminal/standins/Announce.h"

int main(int argc, char** argv) {
    std::string what;
    for (int i = 2; i < argc; ++i) {
        what += (i > 2 ? " " : "") + std::string(argv[i]);
    }
    Terminals::Announce(argc > 1 ? argv[1] : "", what);
}
