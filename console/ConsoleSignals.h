// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Signal.h>

/// The signals that a person or the system sends to the program. Each interrupts the running statement (or the
/// waiting for a line); what becomes of the program then is the console's to decide.
class ConsoleSignals {
public:
    /// Takes over SIGINT, SIGTERM and SIGHUP, unless who started the program had it ignore them. A second SIGTERM or
    /// SIGHUP ends the process at once, in case a command does not listen.
    static void install();
    /// Takes over those that a terminal with a half-typed line on it has to know of: stopping and going on, a change of
    /// its size, and SIGQUIT, which ends the program as ever.
    static void installForEditing();
    /// For a program that shall just end at a signal: as installForEditing, and what ends it gives the terminal back.
    static void installForEnding();

    /// As long as it lives SIGINT interrupts the running operation, in a program that it otherwise ends.
    class InterruptScope {
    public:
        InterruptScope();
        InterruptScope(const InterruptScope &) = delete;
        InterruptScope &operator=(const InterruptScope &) = delete;

    private:
        const KIT_Signal handled;
    };

    /// A signal that has arrived and was not taken; 0 for none.
    static int pending();
    /// Whether the pending signal was an interrupt, which is no longer pending then.
    static bool takeInterrupt();
};
