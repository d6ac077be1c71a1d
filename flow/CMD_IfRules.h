// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include <orvlang/flow/CMD_IfState.h>

/// The state machine of one level of `if`, `else` and `endif`, without the source that it belongs to.
class CMD_IfRules {
public:
    /// The three words that keep running in a branch that is skipped. Abbreviations do not count.
    enum Word : unsigned char { wordNone, wordIf, wordElse, wordEndif };

    static constexpr Word wordOf(std::string_view word) {
        return word == "if" ? wordIf : word == "else" ? wordElse : word == "endif" ? wordEndif : wordNone;
    }

    /// Whether statements run.
    static constexpr bool runs(CMD_IfState state) { return state == CMD_IF_NONE || state == CMD_IF_TRUE; }

    /// Whether the words of such a statement are expanded: only when its condition will be evaluated, or when it
    /// stands in code that runs. A line that is skipped must not fail or do anything.
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

    /// The state behind an `else`, which is an error in state CMD_IF_NONE.
    static constexpr CMD_IfState afterElse(CMD_IfState state) {
        return state == CMD_IF_TRUE ? CMD_IF_DONE : state == CMD_IF_FALSE ? CMD_IF_TRUE : state;
    }
    /// The state behind a condition that came out true (1), false (0) or wrong (-1).
    static constexpr CMD_IfState afterCondition(int result) { return result == 1 ? CMD_IF_TRUE : CMD_IF_FALSE; }
};
