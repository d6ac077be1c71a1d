// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

struct SNK_ComponentTable;

/// Holds Python's interpreter lock as long as it lives, so that no other thread runs Python code between its calls. Locks
/// of one thread nest, and end in the reverse order, on the thread that made them. Starts the interpreter when it has not run
/// yet; where Python cannot run it does nothing.
class CMD_API SNK_InterpreterAutoLock {
public:
    SNK_InterpreterAutoLock();
    ~SNK_InterpreterAutoLock();
    SNK_InterpreterAutoLock(const SNK_InterpreterAutoLock &) = delete;
    SNK_InterpreterAutoLock &operator=(const SNK_InterpreterAutoLock &) = delete;

private:
    const SNK_ComponentTable *const python;   // null when nothing is held
    const int state;                          // for the release of the lock
};
