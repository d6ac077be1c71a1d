// SPDX-License-Identifier: Apache-2.0
// Returning the next line: the rest after a `;`, a line of the running loop, or a line of the input.
#include <orvlang/engine/CMD_Source.h>

#include <algorithm>

#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/flow/CMD_LoopLine.h>
#include <orvlang/platform/kit/KIT_IStream.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/symbols/CMD_HistoryTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

CMD_Source::CMD_Source(const char *sourceName, int isInteractive)
    : localVariables(std::make_shared<CMD_VariableTable>()), history(std::make_shared<CMD_HistoryTable>()),
      filename(sourceName), interactive(isInteractive), isConsoleName(filename == "stdin") {}

CMD_Source::CMD_Source(const std::shared_ptr<CMD_Source> &waiting)
    : localVariables(waiting->localVariables), history(waiting->history), filename("stdin"), interactive(0),
      isConsoleName(true) {}

CMD_Source::~CMD_Source() = default;

void CMD_Source::addHistory(const char *line) {
    history->addHistory(line);
}

void CMD_Source::setInput(std::shared_ptr<const char[]> buffer, size_t length) {
    inputBuffer = std::move(buffer);
    inputStream = std::make_unique<KIT_IStream>(inputBuffer.get(), length, 1);
}

bool CMD_Source::nextLine(CMD_Line &line) {
    if (hasUnfinishedCommands()) {
        line = std::move(unfinishedCommands.back().line);
        unfinishedCommands.pop_back();
        return true;
    }
    const bool insideBlock = isFenced();
    while (loop && loopRunning) {
        const std::shared_ptr<CMD_Loop> running = loop;
        if (running->isBusy())
            return false;
        if (const CMD_LoopLine *next = running->nextLine()) {
            line = { next->getText(), running };
            return true;
        }
        // The test of the loop can have replaced it by another one.
        if (loop == running)
            setLoop(nullptr);
    }
    if (insideBlock || !inputStream)
        return false;
    std::string_view text;
    if (!inputStream->getLine(text, '\n'))
        return false;
    ++lineNumber;
    line = { text, inputBuffer };
    return true;
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
    const int loopLine = loop ? loop->getLineNumber() : -1;
    return loopLine >= 0 ? loopLine : lineNumber;
}

void CMD_Source::setLoop(std::shared_ptr<CMD_Loop> newLoop) {
    // Calls that are inside the old loop keep it alive, but it returns no further line.
    if (loop)
        loop->cancel();
    loop = std::move(newLoop);
    if (!loop)
        loopRunning = 0;
}

void CMD_Source::close() {
    setLoop(nullptr);
    inputStream = nullptr;
}

void CMD_Source::abandon() {
    setLoop(nullptr);
    unfinishedCommands.clear();
    ifStates.fill(CMD_IF_NONE);
    ifNestLevel = 0;
}

void CMD_Source::pushUnfinishedCommands(const char *text) {
    pushUnfinishedCommands(CMD_Line::copyOf(text ? text : ""));
}

void CMD_Source::pushUnfinishedCommands(CMD_Line line) {
    unfinishedCommands.push_back({ std::move(line), false });
}

void CMD_Source::dropLeftovers(size_t kept) {
    unfinishedCommands.resize(std::min(kept, unfinishedCommands.size()));
}

void CMD_Source::startBlock() {
    unfinishedCommands.push_back({ {}, true });
}

void CMD_Source::endBlock() {
    // A `read` inside the block leaves text above the marker, which runs once the read is answered.
    for (size_t i = unfinishedCommands.size(); i-- > 0;) {
        if (unfinishedCommands[i].isMarker) {
            unfinishedCommands.erase(unfinishedCommands.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}
