// SPDX-License-Identifier: Apache-2.0
// The life of an engine, and what all engines of the process share.
#include <orvlang/engine/CMD_Engine.h>

#include <orvlang/engine/CMD_ChannelBlocks.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_StatementFrame.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

CMD_Manager *CMD_Engine::theManager = nullptr;
int CMD_Engine::theManagerCount = 0;

CMD_Engine::CMD_Engine(CMD_Manager &owner, const char *managerName)
    : manager(owner), commands(managerName), prompts(std::string(managerName) + " -> "),
      sources(std::make_shared<CMD_Source>("stdin", OSLsystem().isTerminal(0) ? 1 : 0)),
      globalVariables(std::make_unique<CMD_VariableTable>()), aliases(std::make_unique<CMD_AliasTable>()) {}

CMD_Engine::~CMD_Engine() = default;

void CMD_Engine::close() {
    // The block of a script that is not at its end; the last script that goes would have closed it.
    if (sources.level() > 0)
        CMD_ChannelBlocks::closeTo(0);
    closeOwnPorts();
    globalVariables.reset();
    aliases.reset();
    sources.clear();
}
