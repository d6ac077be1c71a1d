// SPDX-License-Identifier: Apache-2.0
// The levels of `if` blocks that a source keeps for itself: a script starts outside of every block of its caller.
#include <orvlang/engine/CMD_Source.h>

#include <algorithm>

#include <orvlang/flow/CMD_IfRules.h>

void CMD_Source::setIfNestLevel(int level) {
    ifNestLevel = std::clamp(level, 0, theIfLevels - 1);
}

int CMD_Source::bumpIfNest(int direction) {
    const int level = direction >= 1 ? ifNestLevel + 1 : ifNestLevel - 1;
    if (level < 0 || level >= theIfLevels)
        return 0;
    ifNestLevel = level;
    return 1;
}

int CMD_Source::doIfStatements() const {
    return CMD_IfRules::runs(getIfState()) ? 1 : 0;
}
