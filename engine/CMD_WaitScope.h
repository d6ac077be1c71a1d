// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/engine/CMD_Engine.h>

/// A console of its own for what a manager is asked to run while one of its statements waits.
///
/// Loops, `if` blocks, a `read` or a continued line of the requests and jobs that are served during the wait stay on
/// this console. They cannot reach the sources below it, with their loops and the text after a `;`. What is unfinished
/// when the wait ends is dropped.
class CMD_WaitScope {
public:
    explicit CMD_WaitScope(CMD_Engine &engine);
    ~CMD_WaitScope();
    CMD_WaitScope(const CMD_WaitScope &) = delete;
    CMD_WaitScope &operator=(const CMD_WaitScope &) = delete;

private:
    CMD_Engine &engine;
    const std::weak_ptr<const void> life;   // a served request may destroy the manager that waits
    // The state of the statement that waits.
    const CMD_SourceStack::Console console;
    const CMD_LoopControl loops;
    const KIT_String readVariables;
    const int readLocal;
    const std::string continuationLine;
};
