// SPDX-License-Identifier: Apache-2.0
// The program `orvlang`: the command language with nothing added, for a terminal, for scripts and for other programs.
// It is made of the library's public headers alone, as any host is.
#include <fcntl.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Exit.h>

#include "Console.h"
#include "ConsoleOptions.h"
#include "PortClient.h"
#include "StandardOutput.h"

namespace {

/// What is opened later would otherwise become standard input, output or error output.
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
    // As `quit` does: the process ends with the manager in place, and its exit callbacks run.
    KIT_Exit::exitWithSpecificCode(console.run());
}
