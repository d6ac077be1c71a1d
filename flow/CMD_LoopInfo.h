// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class CMD_Manager;

/// A kind of loop: how its first line is parsed, what one test does, how its variable is set. A CMD_Loop owns one
/// and counts its passes and lines.
class CMD_API CMD_LoopInfo {
public:
    virtual ~CMD_LoopInfo();

    /// Parses the words of the loop's first line; word 0 is the loop command. Returns 0 for a malformed line, without
    /// a report. Called each time that the loop is entered.
    virtual int setInitialState(CMD_Manager *manager, int argc, char *argv[]) = 0;
    /// Makes one test. Returns non-zero when a pass begins; the loop variable is then set. Runs statements or
    /// expressions, which may do anything.
    virtual int evaluateCondition(CMD_Manager *manager) = 0;
    /// Returns the word that ends the body.
    virtual const char *getEndToken() const;

    /// The number of passes begun so far, 0 during the first test; it saturates at the largest int.
    int getIterationCount() const { return iterationCount; }
    /// The index of the next line of the body; the largest int before a new pass.
    int getCurrentLine() const { return currentLine; }

private:
    friend class CMD_Loop;

    int iterationCount = 0;
    int currentLine = 0;
};
