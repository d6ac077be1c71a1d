// SPDX-License-Identifier: Apache-2.0
#include "ConsoleSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <iterator>

#include <poll.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_Interrupt.h>

namespace {

constexpr int theNumbers[] = { SIGINT, SIGTERM, SIGHUP };
constexpr int theInterruptAlone[] = { SIGINT, 0 };

std::atomic<int> theSignal{ 0 };
static_assert(std::atomic<int>::is_always_lock_free);
pid_t theProcess = 0;

/// An interrupt hides no signal that ends the program.
void note(int number) {
    int none = 0;
    if (number == SIGINT)
        theSignal.compare_exchange_strong(none, number);
    else
        theSignal = number;
}

void takeSignal(int number) {
    // A child that Python code has forked off ends: by now its disposition is the default one (SA_RESETHAND).
    if (number != SIGINT && getpid() != theProcess) {
        std::raise(number);
        return;
    }
    note(number);
    const int before = errno;
    if (number != SIGINT)
        KIT_CmdLineReader::releaseTerminal();   // a command that does not listen may leave no time for it later
    errno = before;
    KITgetInterrupt()->interrupt();
}

/// Sets a handler, unless the signal is ignored.
void take(int number, void (*handler)(int), int flags) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(number, &action, nullptr);
}

/// The program ends when nobody reads its own output any more. Any other pipe or socket is for those to look after who
/// write to it: Python code, which expects to get an error.
void takeBrokenPipe(int) {
    const int before = errno;
    pollfd outputs[] = { { STDOUT_FILENO, 0, 0 }, { STDERR_FILENO, 0, 0 } };
    if (poll(outputs, std::size(outputs), 0) > 0) {
        std::signal(SIGPIPE, SIG_DFL);
        std::raise(SIGPIPE);
    }
    errno = before;
}

/// The disposition is the default one by now, as in the next one.
void quit(int number) {
    KIT_CmdLineReader::releaseTerminal();
    std::raise(number);
}

void stop(int number) {
    const int before = errno;
    KIT_CmdLineReader::releaseTerminal();
    std::raise(number);   // stops here
    KIT_CmdLineReader::retakeTerminal();
    take(number, stop, SA_RESETHAND | SA_NODEFER);
    errno = before;
}

void goOn(int) {
    const int before = errno;
    KIT_CmdLineReader::retakeTerminal();
    errno = before;
}

void resize(int) {
    KIT_CmdLineReader::noteTerminalResize();
}

}   // namespace

void ConsoleSignals::install() {
    theProcess = getpid();
    // Ignored, as by some programs that start this one, it would hide how children end.
    std::signal(SIGCHLD, SIG_DFL);
    for (const int number : theNumbers)
        // Without SA_RESTART: a read that waits for a line ends.
        take(number, takeSignal, number == SIGINT ? 0 : SA_RESETHAND);
    take(SIGPIPE, takeBrokenPipe, 0);
}

void ConsoleSignals::installForEditing() {
    take(SIGTSTP, stop, SA_RESETHAND | SA_NODEFER);
    take(SIGQUIT, quit, SA_RESETHAND | SA_NODEFER);
    take(SIGABRT, quit, SA_RESETHAND | SA_NODEFER);
    take(SIGCONT, goOn, 0);   // a read that a process in the background was stopped in ends
    take(SIGWINCH, resize, SA_RESTART);
}

void ConsoleSignals::installForEnding() {
    installForEditing();
    take(SIGTERM, quit, SA_RESETHAND | SA_NODEFER);
    take(SIGHUP, quit, SA_RESETHAND | SA_NODEFER);
}

ConsoleSignals::InterruptScope::InterruptScope() : handled(theInterruptAlone, takeSignal, false) {}

int ConsoleSignals::pending() {
    return theSignal;
}

bool ConsoleSignals::takeInterrupt() {
    int interrupt = SIGINT;
    return theSignal.compare_exchange_strong(interrupt, 0);
}
