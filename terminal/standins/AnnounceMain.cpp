// Reports an event to the simulator, for scripts: announce SENDER TEXT...
#include "terminal/standins/Announce.h"

int main(int argc, char** argv) {
    std::string what;
    for (int i = 2; i < argc; ++i) {
        what += (i > 2 ? " " : "") + std::string(argv[i]);
    }
    Terminals::Announce(argc > 1 ? argv[1] : "", what);
}
