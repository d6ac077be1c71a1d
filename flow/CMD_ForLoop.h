// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include <orvlang/flow/CMD_LoopInfo.h>
#include <orvlang/platform/kit/KIT_String.h>

/// `for VARIABLE = START to END [step SIZE]`. Counts in 32-bit floats; a value is a text of up to six digits.
class CMD_API CMD_ForLoop : public CMD_LoopInfo {
public:
    ~CMD_ForLoop() override;
    int setInitialState(CMD_Manager *manager, int argc, char *argv[]) override;
    int evaluateCondition(CMD_Manager *manager) override;

private:
    KIT_String variable;
    float start = 0;
    float end = 0;   // widened by a thousandth of a step
    float step = 1;
    std::string statement;   // the `set` line; kept for its memory
};
