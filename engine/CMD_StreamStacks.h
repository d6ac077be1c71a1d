// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <vector>

/// The output streams and the error streams of a manager, a stack of each. The streams are borrowed. Those of the
/// process are at the bottom and stay, so that there is always one to write to.
class CMD_StreamStacks {
public:
    /// The indexes on the stacks at which a run has its own streams.
    struct Slots {
        size_t out;
        size_t err;
    };

    CMD_StreamStacks();

    std::ostream &out() const { return *outs.back(); }
    std::ostream &err() const { return *errs.back(); }

    /// A null stream means the current one.
    Slots push(std::ostream *out, std::ostream *err);
    /// Removes the newest stream of each stack.
    void pop();
    /// Removes the streams of a run unless a callback has popped them already, and those that a callback has pushed on
    /// top of them and left there: they may be destroyed before the next pop.
    void popTo(Slots slots);

    /// Replace the current stream and return the former one.
    std::ostream &replaceOut(std::ostream &stream);
    std::ostream &replaceErr(std::ostream &stream);
    /// Puts the process's own streams in place of one that is about to be destroyed.
    void forget(std::ostream &stream);

private:
    using Stack = std::vector<std::ostream *>;

    Stack outs;
    Stack errs;
};
