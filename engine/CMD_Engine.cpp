// SPDX-License-Identifier: Apache-2.0
// The life of an engine, and what all engines of the process share.
#include <orvlang/engine/CMD_Engine.h>

#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_StatementFrame.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/trk/TRK_EventManager.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

CMD_Manager *CMD_Engine::theManager = nullptr;
int CMD_Engine::theChannelBlockCount = 0;
TRK_AutoEventHandler *CMD_Engine::theTRKEventHandler = nullptr;
int CMD_Engine::theManagerCount = 0;

CMD_Engine::CMD_Engine(CMD_Manager &owner, const char *managerName)
    : manager(owner), commands(managerName), prompts(std::string(managerName) + " -> "),
      globalVariables(std::make_unique<CMD_VariableTable>()),
      aliases(std::make_unique<CMD_AliasTable>()) {
    sourceStack.push_back(std::make_shared<CMD_Source>("stdin", OSLsystem().isTerminal(0) ? 1 : 0));
}

CMD_Engine::~CMD_Engine() = default;

void CMD_Engine::close() {
    // The block of a script that is not at its end; the last script that goes would have closed it.
    if (sourceStack.size() > consoleDepth())
        closeChannelBlocks(0);
    closeOwnPorts();
    globalVariables.reset();
    aliases.reset();
    while (!sourceStack.empty())
        sourceStack.pop_back();
}

void CMD_Engine::closeChannelBlocks(int kept) {
    theChannelBlockCount = kept;
    if (kept > 0)
        return;
    // Whom the held events reach may open a block of their own.
    const std::unique_ptr<TRK_AutoEventHandler> ended(std::exchange(theTRKEventHandler, nullptr));
    if (ended)
        TRKgetEventManager().endHandlingEvents();
}
