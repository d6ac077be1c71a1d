// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/engine/CMD_Manager.h>

/// A console of its own for what a manager is asked to run while one of its statements waits.
///
/// Requests and jobs that are served during the wait leave loops, `if` blocks, a `read` or a continued line there, and
/// find there what they have left. The sources below, with the loops that they run and the text after a `;`, are out
/// of their reach until the wait ends; what is left half done then is dropped.
class CMD_Manager::WaitScope {
public:
    explicit WaitScope(CMD_Manager &manager);
    ~WaitScope();
    WaitScope(const WaitScope &) = delete;
    WaitScope &operator=(const WaitScope &) = delete;

private:
    CMD_Manager &manager;
    const std::weak_ptr<const void> life;   // what is served may end a manager that another one waits for
    // The state of the statement that waits.
    const size_t consoleIndex;
    const int channelBlocksBelow;
    const int breakLevel;
    const int continueLevel;
    const int loopNestLevel;
    const KIT_String readVariables;
    const int readLocal;
    const std::string continuationLine;
};
