// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_LoopInfo.h>

CMD_LoopInfo::~CMD_LoopInfo() = default;

const char *CMD_LoopInfo::getEndToken() const {
    return "end";
}
