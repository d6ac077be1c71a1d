// SPDX-License-Identifier: Apache-2.0
// The manager's life, and the small services that have no file of their own: modes, callbacks, channel blocks.
#include <orvlang/engine/CMD_Manager.h>

#include <iostream>

#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_StatementFrame.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_DSO.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>
#include <orvlang/platform/kit/KIT_UndoManager.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/trk/TRK_EventManager.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

CMD_Manager *CMD_Manager::theManager = nullptr;
int CMD_Manager::theChannelBlockCount = 0;
TRK_AutoEventHandler *CMD_Manager::theTRKEventHandler = nullptr;
int CMD_Manager::theManagerCount = 0;
KIT_SymbolTable *CMD_Manager::theCommandLists = nullptr;

CMD_Manager::CMD_Manager(const char *managerName, int extend)
    : TRK_Manager(0), commandList(getCommandList(managerName ? managerName : "")),
      commandTable(std::make_unique<KIT_SymbolTable>()), globalVariables(std::make_unique<CMD_VariableTable>()),
      aliases(std::make_unique<CMD_AliasTable>()), name(managerName ? managerName : "") {
    sourceStack.push_back(std::make_shared<CMD_Source>("stdin", OSLsystem().isTerminal(0) ? 1 : 0));
    standardOutStack.append(&std::cout);
    standardErrStack.append(&std::cerr);
    installBuiltIn();
    installBaseCommands();
    addPortExtension();   // a new manager is the current one until a statement runs on another
    initLibraryGlue();
    pushPrompt((std::string(name.view()) + " -> ").c_str());
    ++theManagerCount;
    if (extend)
        KIT_DSO::runReverse("CMDextendLibrary", this, 1);
}

CMD_Manager::~CMD_Manager() {
    // The block of a script that is not at its end; the last script that goes would have closed it.
    if (getSourceLevel() > 0)
        closeChannelBlocks(0);
    closeOwnPorts();
    globalVariables.reset();
    aliases.reset();
    commandTable.reset();
    while (!sourceStack.empty())
        sourceStack.pop_back();
    if (--theManagerCount == 0)
        KITgetUndoManager()->clearUndoFlags();
    if (theManager == this)
        theManager = nullptr;
}

void CMD_Manager::setContext() {
    theManager = this;
    TRK_Manager::setContext();
}

void CMD_Manager::setVerbose(int on) {
    stateBits = on ? stateBits | stateVerbose : stateBits & ~stateVerbose;
}

int CMD_Manager::getVerbose() const {
    return static_cast<int>(stateBits & stateVerbose);
}

void CMD_Manager::setIORedirection(int on) {
    stateBits = on ? stateBits | stateIORedirection : stateBits & ~stateIORedirection;
}

int CMD_Manager::getIORedirection() const {
    return (stateBits & stateIORedirection) && !isInSafeMode() ? 1 : 0;
}

void CMD_Manager::setSafeMode(int on) {
    setModeBit(modeSafe, on != 0);
    fml_setSafeMode(on != 0);
}

int CMD_Manager::isInSafeMode() const {
    return modeBits & modeSafe ? 1 : 0;
}

void CMD_Manager::setBrowserMode(int on) {
    setModeBit(modeBrowser, on != 0);
}

int CMD_Manager::isInBrowserMode() const {
    return modeBits & modeBrowser ? 1 : 0;
}

int CMD_Manager::setHistoryCapture(int on) {
    const int former = modeBits & modeCaptureHistory ? 1 : 0;
    setModeBit(modeCaptureHistory, (on & 1) != 0);
    return former;
}

CMD_Manager::PostCmdCallback CMD_Manager::setPostCmdCallback(PostCmdCallback callback, void *data) {
    postCmdCallbackData = data;
    return std::exchange(postCmdCallback, callback);
}

void CMD_Manager::setCommandEchoCallback(CommandEchoCallback callback, void *data) {
    commandEchoCallback = callback;
    commandEchoCallbackData = data;
}

bool CMD_Manager::beginChannelBlock() {
    if (getSourceLevel() < 1)
        return false;
    if (theChannelBlockCount == 0)
        theTRKEventHandler = new TRK_AutoEventHandler;
    ++theChannelBlockCount;
    return true;
}

bool CMD_Manager::endChannelBlock() {
    if (getSourceLevel() < 1 || theChannelBlockCount <= channelBlocksBelow)
        return false;
    closeChannelBlocks(theChannelBlockCount - 1);
    return true;
}

void CMD_Manager::closeChannelBlocks(int kept) {
    theChannelBlockCount = kept;
    if (kept > 0)
        return;
    // Whom the held events reach may open a block of their own.
    const std::unique_ptr<TRK_AutoEventHandler> ended(std::exchange(theTRKEventHandler, nullptr));
    if (ended)
        TRKgetEventManager().endHandlingEvents();
}
