// SPDX-License-Identifier: Apache-2.0
// The levels of `if` blocks that a source keeps for itself: a script starts outside of every block of its caller.
#include <orvlang/engine/CMD_Source.h>

#include <algorithm>

#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/flow/CMD_IfRules.h>

CMD_IfState CMD_Source::getIfState() const {
    return state->ifStates[static_cast<size_t>(state->ifNestLevel)];
}

void CMD_Source::setIfState(CMD_IfState ifState) {
    state->ifStates[static_cast<size_t>(state->ifNestLevel)] = ifState;
}

int CMD_Source::getIfNestLevel() const {
    return state->ifNestLevel;
}

void CMD_Source::setIfNestLevel(int level) {
    state->ifNestLevel = std::clamp(level, 0, CMD_SourceState::theIfLevels - 1);
}

int CMD_Source::bumpIfNest(int direction) {
    const int level = direction >= 1 ? state->ifNestLevel + 1 : state->ifNestLevel - 1;
    if (level < 0 || level >= CMD_SourceState::theIfLevels)
        return 0;
    state->ifNestLevel = level;
    return 1;
}

int CMD_Source::doIfStatements() const {
    return CMD_IfRules::runs(getIfState()) ? 1 : 0;
}
