// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_Source.h>

#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/kit/KIT_IStream.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/symbols/CMD_HistoryTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

CMD_Source::CMD_Source(const char *name, int interactive)
    : state(std::make_unique<CMD_SourceState>(std::make_shared<CMD_VariableTable>(),
                                              std::make_shared<CMD_HistoryTable>(), name, interactive)) {}

CMD_Source::CMD_Source(const std::shared_ptr<CMD_Source> &waiting)
    : state(std::make_unique<CMD_SourceState>(waiting->state->localVariables, waiting->state->history, "stdin",
                                              0)) {}

CMD_Source::~CMD_Source() = default;

CMD_VariableTable *CMD_Source::getLocalVariables() const {
    return state->localVariables.get();
}

CMD_HistoryTable *CMD_Source::getHistory() const {
    return state->history.get();
}

void CMD_Source::addHistory(const char *line) {
    state->history->addHistory(line);
}

const char *CMD_Source::getFilename() const {
    return state->filename.isNull() ? nullptr : state->filename.c_str();
}

bool CMD_Source::isStdIn() const {
    return state->isConsoleName;
}

KIT_IStream *CMD_Source::getInputStream() const {
    return state->inputStream.get();
}

bool CMD_Source::nextLine(CMD_Line &line) {
    return state->nextLine(line);
}

const char *CMD_Source::getLine(KIT_WorkBuffer &scratch) {
    CMD_Line line;
    if (!nextLine(line))
        return nullptr;
    scratch.clear();
    scratch.write(line.text.data(), line.text.size());
    return scratch.c_str();
}

int CMD_Source::getLineNumber() const {
    const int loopLine = state->loop ? state->loop->getLineNumber() : -1;
    return loopLine >= 0 ? loopLine : state->lineNumber;
}

void CMD_Source::pushUnfinishedCommands(const char *text) {
    state->pushUnfinishedCommands(CMD_Line::copyOf(text ? text : ""));
}

bool CMD_Source::hasUnfinishedCommands() const {
    return state->hasUnfinishedCommands();
}

void CMD_Source::startBlock() {
    state->unfinishedCommands.push_back({ {}, true });
}

void CMD_Source::endBlock() {
    auto &unfinishedCommands = state->unfinishedCommands;
    // A `read` inside the block leaves text above the marker, which runs once the read is answered.
    for (size_t i = unfinishedCommands.size(); i-- > 0;) {
        if (unfinishedCommands[i].isMarker) {
            unfinishedCommands.erase(unfinishedCommands.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}

int CMD_Source::getEchoState() const {
    return state->echoState;
}

void CMD_Source::setEchoState(int echoState) {
    state->echoState = echoState;
}
