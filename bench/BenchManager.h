// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/engine/CMD_Manager.h>

/// The manager that all benchmarks share: only the first one of a process has the built-in commands.
inline CMD_Manager &benchManager() {
    static CMD_Manager theManager("bench");
    return theManager;
}
