// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Ends a recursion without end at its first refusal.
///
/// Runs of the language, of expressions and of Python nest until the stack or another measure of depth is used up. Each
/// refusal for that reason is counted here, for its thread. So a caller sees that something in its call was refused, and
/// lets nothing more nest. Otherwise a command that executes itself twice would reach the limit again from each of its
/// levels, two to the power of their number.
class KIT_Nesting {
public:
    /// Returns whether less than that many bytes of stack are left. Then what needs them must not run, and a refusal has
    /// been counted.
    static bool isStackShort(std::size_t reserve);
    /// Counts a refusal for another reason.
    static void countRefusal();
    /// Returns the number of refusals so far. When it has changed after a call, something in the call was refused.
    static unsigned getRefusals();
    /// Returns whether something was refused since the innermost scope of this thread began.
    static bool isOver();

    /// A run that begins as if nothing had been refused. The scopes of a thread end in the reverse order.
    class Scope {
    public:
        enum Kind {
            Part,   // of the run around it: a refusal in it counts there as well
            Apart   // from the run around it, which waits: a refusal in one does not count in the other
        };

        explicit Scope(Kind kind);
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        const Kind kind;
        const unsigned refusalsAround;
        const unsigned startAround;
    };
};
