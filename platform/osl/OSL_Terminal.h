// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <termios.h>

/// The terminal of standard input and standard output, and its mode. In the mode for editing each key arrives as it is
/// typed and is not shown; the keys for signals still send them.
class OSL_Terminal {
public:
    /// Returns true when both are a terminal that understands control sequences.
    static bool canEdit();
    /// Stops a process in the background until it is brought to the foreground. Returns false when it still is in the
    /// background: a signal arrived, or no shell can bring it to the foreground.
    static bool awaitForeground();
    /// Returns true unless $NO_COLOR is set.
    static bool hasColour();
    /// Stores 80 and 24 when the size is not known.
    static void getSize(int &columnCount, int &rowCount);

    /// Restores the mode of the terminal at its end.
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

    /// Sets the mode for editing. leaveEditMode, and the end of the process, restore the mode before the first call.
    /// Returns false when the mode cannot be set, in the background for instance.
    static bool enterEditMode();
    static void leaveEditMode();
    /// Returns true when a read that returned 0 bytes need not mean the end of input: in the mode for editing it does
    /// not wait.
    static bool mayReadNothing();

    // For signal handlers, too.

    /// Restores the usual mode until enterEditMode or resume, for another user of the terminal.
    static void release();
    /// Sets the mode for editing again, unless it was left, and marks the terminal as stale. To be called when the
    /// process continues after a stop.
    static void resume();
    /// Marks the terminal as resized.
    static void noteResize();

    // Return the mark and remove it.

    /// The content of the terminal is unknown.
    static bool clearStale();
    static bool clearResized();
};

/// Sets the function that removes a half-typed line from the terminal; null when no line is edited.
void OSLsetTerminalYield(void (*yield)());
/// Removes a half-typed line, if there is one, from the terminal. Must be called before anything else writes to the
/// terminal, reads from it or passes it to a child process.
void OSLyieldTerminal();
