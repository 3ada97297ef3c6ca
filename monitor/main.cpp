#include "monitor/StartUp.h"

int main(int argc, char** argv) {
    return Monitor::RunMonitor(argc, argv);
}
