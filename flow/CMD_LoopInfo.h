// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class CMD_Manager;

/// A kind of loop: how its first line is read, what one test does, how its variable gets a value. A CMD_Loop owns
/// one and drives the counters.
class CMD_API CMD_LoopInfo {
public:
    virtual ~CMD_LoopInfo();

    /// Reads the words of the loop's first line, word 0 being the loop command. 0 for a line that is malformed;
    /// nothing is reported. Called again each time that the loop is entered.
    virtual int setInitialState(CMD_Manager *manager, int argc, char *argv[]) = 0;
    /// One test. Non-zero when a pass begins; the loop variable is set by then. Runs statements or expressions,
    /// which may do anything.
    virtual int evaluateCondition(CMD_Manager *manager) = 0;
    /// The word that ends the body.
    virtual const char *getEndToken() const;

    /// Passes begun so far, 0 during the first test; it stays at the largest int.
    int getIterationCount() const { return iterationCount; }
    /// The index of the next line of the body; the largest int before a new pass.
    int getCurrentLine() const { return currentLine; }

private:
    friend class CMD_Loop;

    int iterationCount = 0;
    int currentLine = 0;
};
