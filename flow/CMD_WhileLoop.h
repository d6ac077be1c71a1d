// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include <orvlang/flow/CMD_LoopInfo.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

class KIT_CshTemplate;

/// `while CONDITION`. The condition is expanded anew for each test. A wrong one ends the loop like a false one,
/// without a message.
class CMD_API CMD_WhileLoop : public CMD_LoopInfo {
public:
    CMD_WhileLoop();
    ~CMD_WhileLoop() override;
    int setInitialState(CMD_Manager *manager, int argc, char *argv[]) override;
    int evaluateCondition(CMD_Manager *manager) override;

private:
    std::string condition;                     // the text, unexpanded
    std::unique_ptr<KIT_CshTemplate> parsed;   // the same, parsed
    KIT_WorkArgs words;                        // the expanded words; kept for their memory
};
