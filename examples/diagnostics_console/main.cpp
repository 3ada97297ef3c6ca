// A console on the core library: an event loop with standard input, a timer, named values with
// their history, and an options document.
#include <cstdio>
#include <cstdlib>

#include "core/output/StdioWritable.h"
#include "examples/diagnostics_console/Console.h"

int main() {
    setlinebuf(stdout);  // answers come at once, also through a pipe
    Quenda::StdioWritable out(stdout);
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    Console console(loop, out);
    if (!loop.Init() || !console.Start()) {
        return EXIT_FAILURE;
    }
    out.Puts("\"help\" tells what there is.\n");
    return loop.Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
