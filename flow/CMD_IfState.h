// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The state of one level of `if` blocks. Statements run in the states CMD_IF_NONE and CMD_IF_TRUE only.
enum CMD_IfState : unsigned char {
    CMD_IF_NONE = 0,    ///< no open block on this level
    CMD_IF_FALSE = 1,   ///< condition false, waiting for an `else`
    CMD_IF_DONE = 2,    ///< a branch of this block has run; the rest up to `endif` is skipped
    CMD_IF_DEAD = 3,    ///< the whole block is inside skipped code
    CMD_IF_TRUE = 4,    ///< the current branch runs
};
