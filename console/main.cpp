// SPDX-License-Identifier: Apache-2.0
// The program `orvlang`: the command language with nothing added, for a terminal, for scripts and for other programs.
// Like any host it includes only public headers of the library.
#include <fcntl.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Exit.h>

#include "Console.h"
#include "ConsoleOptions.h"
#include "PortClient.h"
#include "StandardOutput.h"

namespace {

/// Otherwise the next file that is opened would become standard input, output or error output.
void openClosedStandardStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", O_RDWR);   // opens the lowest descriptor that is free: this one
}

}   // namespace

int main(int argc, char **argv) {
    openClosedStandardStreams();
    StandardOutput::install();
    const ConsoleOptions options = ConsoleOptions::parse(argc, argv);
    if (options.action == ConsoleOptions::Action::Nothing)
        return options.status;
    if (options.port)
        return PortClient(options).run();
    Console console(options);
    // As `quit` does: exit callbacks run, and the manager still exists.
    KIT_Exit::exitWithSpecificCode(console.run());
}
