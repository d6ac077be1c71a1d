// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <orvlang/flow/CMD_LoopInfo.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

/// `foreach VARIABLE ( WORD... )`. The words are expanded when the loop is entered; empty ones are dropped.
class CMD_API CMD_ForEach : public CMD_LoopInfo {
public:
    ~CMD_ForEach() override;
    int setInitialState(CMD_Manager *manager, int argc, char *argv[]) override;
    int evaluateCondition(CMD_Manager *manager) override;

private:
    KIT_String variable;
    KIT_WorkArgs words;
    std::string statement;   // the `set` line; kept for its memory
};
