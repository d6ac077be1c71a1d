// SPDX-License-Identifier: Apache-2.0
// The manager's life, and the small services that have no file of their own: modes, callbacks, counters, channel
// blocks. The operations that the engine itself needs have their bodies there.
#include <orvlang/engine/CMD_Engine.h>

#include <utility>

#include <orvlang/engine/CMD_ChannelBlocks.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_DSO.h>
#include <orvlang/platform/kit/KIT_UndoManager.h>

CMD_Manager::CMD_Manager(const char *name, int extend)
    : TRK_Manager(0), engine(std::make_unique<CMD_Engine>(*this, name ? name : "")) {
    engine->installBuiltIn();
    engine->installBaseCommands();
    engine->addPortExtension();   // a new manager is the current one until a statement runs on another
    engine->initLibraryGlue();
    ++CMD_Engine::theManagerCount;
    if (extend)
        KIT_DSO::runReverse("CMDextendLibrary", this, 1);
}

CMD_Manager::~CMD_Manager() {
    engine->close();
    if (--CMD_Engine::theManagerCount == 0)
        KITgetUndoManager()->clearUndoFlags();
    if (CMD_Engine::theManager == this)
        CMD_Engine::theManager = nullptr;
}

CMD_Manager *CMD_Manager::getContext() {
    return CMD_Engine::theManager;
}

bool CMD_Manager::getContextExists() {
    return CMD_Engine::theManager != nullptr;
}

void CMD_Manager::setContext() {
    CMD_Engine::theManager = this;
    TRK_Manager::setContext();
}

std::weak_ptr<const void> CMD_Manager::getLife() const {
    return engine->life;
}

void CMD_Manager::execute(const char *text, int expandHistory, std::ostream *out, std::ostream *err,
                          int expandAliases, bool asBlock) {
    engine->execute(text, expandHistory, out, err, expandAliases, asBlock);
}

void CMD_Manager::sendInput(const char *line, bool asBlock) {
    engine->sendInput(line, asBlock);
}

void CMD_Manager::sendMultiLineInput(const char *text, bool asBlock) {
    engine->sendMultiLineInput(text, asBlock);
}

CMD_Manager::Pending CMD_Manager::getPendingInput() const {
    return engine->getPendingInput();
}

void CMD_Manager::abandonInput() {
    if (engine->framesInUse == 0)
        engine->dropPendingInput();
}

CMD_Source *CMD_Manager::getSource() const {
    return engine->getSource();
}

int CMD_Manager::getSourceLevel() const {
    return static_cast<int>(engine->sources.level());
}

CMD_Source *CMD_Manager::pushSource(const char *filename, int echo) {
    return engine->pushSource(filename, echo);
}

CMD_Source *CMD_Manager::popSource(int complain) {
    return engine->popSource(complain);
}

std::ostream &CMD_Manager::getError(int prefix) {
    return engine->getError(prefix);
}

void CMD_Manager::getPrompt(KIT_String &out) {
    engine->getPrompt(out);
}

void CMD_Manager::setVerbose(int on) {
    engine->setStateBit(CMD_Engine::stateVerbose, on != 0);
}

int CMD_Manager::getVerbose() const {
    return static_cast<int>(engine->stateBits & CMD_Engine::stateVerbose);
}

void CMD_Manager::setIORedirection(int on) {
    engine->setStateBit(CMD_Engine::stateIORedirection, on != 0);
}

int CMD_Manager::getIORedirection() const {
    return (engine->stateBits & CMD_Engine::stateIORedirection) && !isInSafeMode() ? 1 : 0;
}

void CMD_Manager::setSafeMode(int on) {
    engine->setModeBit(CMD_Engine::modeSafe, on != 0);
    fml_setSafeMode(on != 0);
}

int CMD_Manager::isInSafeMode() const {
    return engine->isInSafeMode() ? 1 : 0;
}

void CMD_Manager::setBrowserMode(int on) {
    engine->setModeBit(CMD_Engine::modeBrowser, on != 0);
}

int CMD_Manager::isInBrowserMode() const {
    return engine->modeBits & CMD_Engine::modeBrowser ? 1 : 0;
}

int CMD_Manager::setHistoryCapture(int on) {
    const int former = engine->modeBits & CMD_Engine::modeCaptureHistory ? 1 : 0;
    engine->setModeBit(CMD_Engine::modeCaptureHistory, (on & 1) != 0);
    return former;
}

void CMD_Manager::echoOff() {
    ++engine->echoOffCount;
}

void CMD_Manager::echoOn() {
    --engine->echoOffCount;
}

CMD_Manager::PostCmdCallback CMD_Manager::setPostCmdCallback(PostCmdCallback callback, void *data) {
    engine->postCmdCallbackData = data;
    return std::exchange(engine->postCmdCallback, callback);
}

void CMD_Manager::setCommandEchoCallback(CommandEchoCallback callback, void *data) {
    engine->commandEchoCallback = callback;
    engine->commandEchoCallbackData = data;
}

void *CMD_Manager::getPostCmdCallbackData() const {
    return engine->postCmdCallbackData;
}

void *CMD_Manager::getCommandEchoCallbackData() const {
    return engine->commandEchoCallbackData;
}

void CMD_Manager::setCommandEcho(bool on) {
    engine->commandEcho = on;
}

bool CMD_Manager::getCommandEcho() const {
    return engine->commandEcho;
}

void CMD_Manager::setStatusCode(int code) {
    engine->statusCode = code;
}

int CMD_Manager::getStatusCode() const {
    return engine->statusCode;
}

unsigned int CMD_Manager::getCommandsRun() const {
    return engine->commandsRun;
}

bool CMD_Manager::beginChannelBlock() {
    if (getSourceLevel() < 1)
        return false;
    CMD_ChannelBlocks::open();
    return true;
}

bool CMD_Manager::endChannelBlock() {
    const int count = CMD_ChannelBlocks::getCount();
    if (getSourceLevel() < 1 || count <= engine->sources.getConsole().channelBlocksBelow)
        return false;
    CMD_ChannelBlocks::closeTo(count - 1);
    return true;
}
