// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <termios.h>

/// The terminal that standard input and standard output are, and its mode. In the mode for editing each key arrives as it
/// is typed and none is shown; the keys for signals go on sending them.
class OSL_Terminal {
public:
    /// Whether there is a terminal on both, of a kind that understands control sequences.
    static bool canEdit();
    /// Has a process in the background stopped until it is brought to the foreground. False when it still is in the
    /// background: a signal came, or there is no shell that could bring it.
    static bool awaitForeground();
    /// Whether colours are welcome on it: $NO_COLOR is not set.
    static bool hasColour();
    /// 80 and 24 when it does not tell.
    static void getSize(int &columnCount, int &rowCount);

    /// Has the terminal's mode the same behind it as before.
    class ModeKeeper {
    public:
        ModeKeeper();
        ~ModeKeeper();
        ModeKeeper(const ModeKeeper &) = delete;
        ModeKeeper &operator=(const ModeKeeper &) = delete;

    private:
        termios mode;
        const bool isKnown;
    };

    /// The mode before the first call is the one to come back to, which the end of the process does too. False when the
    /// terminal cannot be had, in the background for instance.
    static bool enterEditMode();
    static void leaveEditMode();
    /// Whether a read that gave nothing has not met an end: in the mode for editing it does not wait.
    static bool mayReadNothing();

    // For signal handlers, too.

    /// Puts the mode of before back for somebody else, until enterEditMode or retake.
    static void release();
    /// Sets the mode for editing again, unless it was left, and has takeStale give true: to be called when the process
    /// goes on after a stop.
    static void retake();
    /// Has takeResized give true.
    static void noteResize();

    /// Whether what is on the terminal is unknown; asked once.
    static bool takeStale();
    static bool takeResized();
};

/// Sets what takes a half-typed line off the terminal: null when no line is edited.
void OSLsetTerminalYield(void (*yield)());
/// Takes a half-typed line off the terminal, if there is one. To be called before anything else writes to the terminal,
/// reads from it or passes it to a child process.
void OSLyieldTerminal();
