// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OSL_Terminal.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr std::string_view theBracketsOn = "\x1b[?2004h";   // pasted text comes in brackets
constexpr std::string_view theBracketsOff = "\x1b[?2004l";

// Written before theEditing is set, so that no signal handler reads them meanwhile.
termios theModeBefore, theEditMode;

std::atomic<bool> theEditing{ false };    // between enterEditMode and leaveEditMode
std::atomic<bool> theReleased{ false };   // and in its usual mode meanwhile
std::atomic<bool> theStale{ false };
std::atomic<bool> theResized{ false };
static_assert(std::atomic<bool>::is_always_lock_free);

void (*theYield)() = nullptr;

void send(const termios &mode, std::string_view sequence) {
    tcsetattr(STDIN_FILENO, TCSADRAIN, &mode);
    [[maybe_unused]] const ssize_t n = ::write(STDOUT_FILENO, sequence.data(), sequence.size());
}

/// In the background, a change of the mode would stop the process.
bool isInForeground() {
    return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

/// No read waits, since an interrupt drops input that a poll has just reported. Flow control, which would consume
/// Ctrl-S, is off. The carriage return of the enter key arrives as a newline, as it does in the usual mode.
termios makeEditMode(termios mode) {
    mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | IEXTEN);
    mode.c_iflag &= ~static_cast<tcflag_t>(IXON | ISTRIP | INLCR | IGNCR);
    mode.c_iflag |= ICRNL;
    mode.c_cc[VMIN] = 0;
    mode.c_cc[VTIME] = 0;
    return mode;
}

}   // namespace

bool OSL_Terminal::canEdit() {
    OSL_System &system = OSLsystem();
    const char *const kind = system.getEnvironment("TERM");
    return kind && *kind && std::strcmp(kind, "dumb") != 0 && system.isTerminal(STDIN_FILENO) &&
           system.isTerminal(STDOUT_FILENO);
}

bool OSL_Terminal::awaitForeground() {
    if (!isInForeground())
        tcdrain(STDIN_FILENO);   // has almost no effect but to stop a process in the background
    return isInForeground();
}

bool OSL_Terminal::hasColour() {
    const char *const none = OSLsystem().getEnvironment("NO_COLOR");
    return !none || !*none;
}

void OSL_Terminal::getSize(int &columnCount, int &rowCount) {
    winsize size = {};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    columnCount = size.ws_col > 0 ? size.ws_col : 80;
    rowCount = size.ws_row > 0 ? size.ws_row : 24;
}

OSL_Terminal::ModeKeeper::ModeKeeper() : isKnown(tcgetattr(STDIN_FILENO, &mode) == 0) {}

OSL_Terminal::ModeKeeper::~ModeKeeper() {
    if (isKnown)
        tcsetattr(STDIN_FILENO, TCSADRAIN, &mode);
}

bool OSL_Terminal::enterEditMode() {
    if (!isInForeground())
        return false;
    if (!theEditing) {
        if (tcgetattr(STDIN_FILENO, &theModeBefore) != 0)
            return false;
        static const int atEnd [[maybe_unused]] = std::atexit(leaveEditMode);
        theEditMode = makeEditMode(theModeBefore);
        theEditing = true;
    }
    theReleased = false;
    send(theEditMode, theBracketsOn);
    return true;
}

void OSL_Terminal::leaveEditMode() {
    release();
    theEditing = false;
}

bool OSL_Terminal::mayReadNothing() {
    pollfd input = { STDIN_FILENO, POLLIN, 0 };
    ::poll(&input, 1, 0);
    return theEditing && (input.revents & (POLLHUP | POLLERR | POLLNVAL)) == 0;
}

void OSL_Terminal::release() {
    if (theEditing && !theReleased.exchange(true) && isInForeground())
        send(theModeBefore, theBracketsOff);
}

void OSL_Terminal::resume() {
    if (!theEditing)
        return;
    theStale = true;
    if (!isInForeground())
        return;
    theReleased = false;
    send(theEditMode, theBracketsOn);
}

void OSL_Terminal::noteResize() {
    theResized = true;
}

bool OSL_Terminal::clearStale() {
    return theStale.exchange(false);
}

bool OSL_Terminal::clearResized() {
    return theResized.exchange(false);
}

void OSLsetTerminalYield(void (*yield)()) {
    theYield = yield;
}

void OSLyieldTerminal() {
    if (theYield)
        theYield();
}
