// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Keeps what nests without end from coming back to its limit for ever.
///
/// Things run inside things, until the stack or another measure of depth is used up. What is refused for that reason is
/// counted here, for the thread that it happens on, so that whoever has run something can see that something in it was
/// refused, and lets nothing more nest. A command that executes itself twice would otherwise come back to the limit
/// from each of its levels, two to the power of their number.
class KIT_Nesting {
public:
    /// Whether less than that many bytes of stack are left. If so, what needs them must not run, and a refusal has been
    /// counted.
    static bool isStackShort(std::size_t reserve);
    /// Counts a refusal for another reason.
    static void countRefusal();
    /// The refusals so far; another number after a call than before it tells that something in it was refused.
    static unsigned getRefusals();
    /// Whether something has been refused since the innermost scope of this thread began.
    static bool isOver();

    /// A run that begins as if nothing had been refused. Scopes of a thread end in the reverse order.
    class Scope {
    public:
        enum Kind {
            Part,   // of what runs around it: what is refused in it counts there as well
            Apart   // from it: other work, done while it waits; neither knows what is refused in the other
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
