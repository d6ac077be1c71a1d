// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/engine/CMD_Engine.h>

/// A console of its own for what a manager is asked to run while one of its statements waits.
///
/// Requests and jobs that are served during the wait leave loops, `if` blocks, a `read` or a continued line there, and
/// find there what they have left. The sources below, with the loops that they run and the text after a `;`, are out
/// of their reach until the wait ends; what is left half done then is dropped.
class CMD_WaitScope {
public:
    explicit CMD_WaitScope(CMD_Engine &engine);
    ~CMD_WaitScope();
    CMD_WaitScope(const CMD_WaitScope &) = delete;
    CMD_WaitScope &operator=(const CMD_WaitScope &) = delete;

private:
    CMD_Engine &engine;
    const std::weak_ptr<const void> life;   // what is served may end a manager that another one waits for
    // The state of the statement that waits.
    const CMD_SourceStack::Console console;
    const CMD_LoopControl loops;
    const KIT_String readVariables;
    const int readLocal;
    const std::string continuationLine;
};
