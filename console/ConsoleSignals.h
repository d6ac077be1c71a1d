// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/osl/KIT_Signal.h>

/// The signals that a user or the system sends to the program. Each interrupts the running statement, or the wait for a
/// line; the console then decides whether the program continues.
class ConsoleSignals {
public:
    /// Handles SIGINT, SIGTERM and SIGHUP, unless the program was started with the signal ignored. A second SIGTERM or
    /// SIGHUP ends the process at once, in case a command ignores interrupts.
    static void install();
    /// Handles the signals that concern a terminal with a half-typed line on it: stop and continue, a change of its
    /// size, and SIGQUIT and SIGABRT, which still end the program.
    static void installForEditing();
    /// As installForEditing, for a program that SIGTERM and SIGHUP simply end, once the terminal has its usual mode.
    static void installForEnding();

    /// During its lifetime SIGINT interrupts the running operation, in a program that SIGINT otherwise ends.
    class InterruptScope {
    public:
        InterruptScope();
        InterruptScope(const InterruptScope &) = delete;
        InterruptScope &operator=(const InterruptScope &) = delete;

    private:
        const KIT_Signal handled;
    };

    /// The latest signal that has arrived, unless it was cleared; 0 for none.
    static int pending();
    /// Clears a pending SIGINT. Returns false when none is pending.
    static bool clearInterrupt();
};
