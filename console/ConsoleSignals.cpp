// SPDX-License-Identifier: Apache-2.0
#include "ConsoleSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <iterator>

#include <poll.h>
#include <unistd.h>

#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>

namespace {

constexpr int theNumbers[] = { SIGINT, SIGTERM, SIGHUP };
constexpr int theInterruptOnly[] = { SIGINT, 0 };

std::atomic<int> theSignal{ 0 };
static_assert(std::atomic<int>::is_always_lock_free);
pid_t theProcess = 0;

/// An interrupt does not replace a signal that ends the program.
void note(int number) {
    int none = 0;
    if (number == SIGINT)
        theSignal.compare_exchange_strong(none, number);
    else
        theSignal = number;
}

void handleSignal(int number) {
    // A child that Python code has forked ends: the disposition is the default one now (SA_RESETHAND).
    if (number != SIGINT && getpid() != theProcess) {
        std::raise(number);
        return;
    }
    note(number);
    const int before = errno;
    if (number != SIGINT)
        KIT_CmdLineReader::releaseTerminal();   // now, since a second one ends the process at once
    errno = before;
    KITgetInterrupt()->interrupt();
}

/// Sets a handler, unless the signal is ignored.
void setHandler(int number, void (*handler)(int), int flags) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(number, &action, nullptr);
}

/// Ends the program when its own output is a broken pipe. Code that writes to another pipe or socket, such as Python
/// code, gets an error instead.
void handleBrokenPipe(int) {
    const int before = errno;
    pollfd outputs[] = { { STDOUT_FILENO, 0, 0 }, { STDERR_FILENO, 0, 0 } };
    if (poll(outputs, std::size(outputs), 0) > 0) {
        std::signal(SIGPIPE, SIG_DFL);
        std::raise(SIGPIPE);
    }
    errno = before;
}

/// Runs with the default disposition in place again (SA_RESETHAND), and so does `stop`.
void quit(int number) {
    KIT_CmdLineReader::releaseTerminal();
    std::raise(number);
}

void stop(int number) {
    const int before = errno;
    KIT_CmdLineReader::releaseTerminal();
    std::raise(number);   // stops here
    KIT_CmdLineReader::resumeTerminal();
    setHandler(number, stop, SA_RESETHAND | SA_NODEFER);
    errno = before;
}

void continueEditing(int) {
    const int before = errno;
    KIT_CmdLineReader::resumeTerminal();
    errno = before;
}

void resize(int) {
    KIT_CmdLineReader::noteTerminalResize();
}

}   // namespace

void ConsoleSignals::install() {
    theProcess = getpid();
    // Some programs start this one with SIGCHLD ignored, which would hide how children end.
    std::signal(SIGCHLD, SIG_DFL);
    for (const int number : theNumbers)
        // Without SA_RESTART: a read that waits for a line returns.
        setHandler(number, handleSignal, number == SIGINT ? 0 : SA_RESETHAND);
    setHandler(SIGPIPE, handleBrokenPipe, 0);
}

void ConsoleSignals::installForEditing() {
    setHandler(SIGTSTP, stop, SA_RESETHAND | SA_NODEFER);
    setHandler(SIGQUIT, quit, SA_RESETHAND | SA_NODEFER);
    setHandler(SIGABRT, quit, SA_RESETHAND | SA_NODEFER);
    setHandler(SIGCONT, continueEditing, 0);   // no SA_RESTART: a read that was stopped returns
    setHandler(SIGWINCH, resize, SA_RESTART);
}

void ConsoleSignals::installForEnding() {
    installForEditing();
    setHandler(SIGTERM, quit, SA_RESETHAND | SA_NODEFER);
    setHandler(SIGHUP, quit, SA_RESETHAND | SA_NODEFER);
}

ConsoleSignals::InterruptScope::InterruptScope() : handled(theInterruptOnly, handleSignal, false) {}

int ConsoleSignals::pending() {
    return theSignal;
}

bool ConsoleSignals::clearInterrupt() {
    int interrupt = SIGINT;
    return theSignal.compare_exchange_strong(interrupt, 0);
}
