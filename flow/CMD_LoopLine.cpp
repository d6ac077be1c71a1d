// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_LoopLine.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/flow/CMD_Loop.h>

CMD_LoopLine::CMD_LoopLine(CMD_Manager *manager, std::string_view line, int number)
    : text(line), lineNumber(number) {
    if (manager->isLoopCommand(text.c_str()))
        loop.reset(manager->buildLoop(text.c_str()));
}

CMD_LoopLine::CMD_LoopLine(CMD_Manager *manager, const char *line, int number)
    : CMD_LoopLine(manager, std::string_view(line ? line : ""), number) {}

CMD_LoopLine::~CMD_LoopLine() = default;
