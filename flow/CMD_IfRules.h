// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include <orvlang/flow/CMD_IfState.h>

/// The state machine of one level of `if`, `else` and `endif`, without the source that it belongs to.
class CMD_IfRules {
public:
    /// The three words that also run in a skipped branch. Abbreviations do not count.
    enum Word : unsigned char { wordNone, wordIf, wordElse, wordEndif };

    static constexpr Word wordOf(std::string_view word) {
        return word == "if" ? wordIf : word == "else" ? wordElse : word == "endif" ? wordEndif : wordNone;
    }

    /// Returns whether statements run.
    static constexpr bool runs(CMD_IfState state) { return state == CMD_IF_NONE || state == CMD_IF_TRUE; }

    /// Returns whether the words of such a statement are expanded: only when its condition will be evaluated, or
    /// when it is in code that runs. A skipped line must not fail or have any effect.
    static constexpr bool expandsWords(CMD_IfState state, Word word) {
        switch (state) {
        case CMD_IF_NONE:
            return true;
        case CMD_IF_FALSE:
            return word != wordIf;
        case CMD_IF_TRUE:
            return word != wordElse;
        default:
            return false;
        }
    }

    /// Returns the state after an `else`, which is an error in state CMD_IF_NONE.
    static constexpr CMD_IfState afterElse(CMD_IfState state) {
        return state == CMD_IF_TRUE ? CMD_IF_DONE : state == CMD_IF_FALSE ? CMD_IF_TRUE : state;
    }
    /// Returns the state after a condition that is true (1), false (0) or wrong (-1).
    static constexpr CMD_IfState afterCondition(int result) { return result == 1 ? CMD_IF_TRUE : CMD_IF_FALSE; }
};
