// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/engine/CMD_Manager.h>

/// Turns a mode of a manager on, unless `on` is false, and sets it back when it is destroyed.
class CMD_ModeScope {
public:
    using Setter = void (CMD_Manager::*)(int on);

    CMD_ModeScope(CMD_Manager &manager, Setter set, int before, bool on)
        : manager(manager), set(set), before(before), on(on) {
        if (on)
            (manager.*set)(1);
    }
    ~CMD_ModeScope() {
        if (on)
            (manager.*set)(before);
    }
    CMD_ModeScope(const CMD_ModeScope &) = delete;
    CMD_ModeScope &operator=(const CMD_ModeScope &) = delete;

private:
    CMD_Manager &manager;
    const Setter set;
    const int before;
    const bool on;
};
