// SPDX-License-Identifier: Apache-2.0
// Returning the next line: the rest after a `;`, a line of the running loop, or a line of the input.
#include <orvlang/engine/CMD_SourceState.h>

#include <algorithm>
#include <utility>

#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/flow/CMD_LoopLine.h>
#include <orvlang/platform/kit/KIT_IStream.h>

CMD_SourceState::CMD_SourceState(std::shared_ptr<CMD_VariableTable> variables,
                                 std::shared_ptr<CMD_HistoryTable> lines, const char *name, int isInteractive)
    : localVariables(std::move(variables)), history(std::move(lines)), filename(name),
      interactive(isInteractive), isConsoleName(filename == "stdin") {}

CMD_SourceState::~CMD_SourceState() = default;

bool CMD_SourceState::nextLine(CMD_Line &line) {
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

void CMD_SourceState::pushUnfinishedCommands(CMD_Line line) {
    unfinishedCommands.push_back({ std::move(line), false });
}

void CMD_SourceState::dropLeftovers(size_t kept) {
    unfinishedCommands.resize(std::min(kept, unfinishedCommands.size()));
}

void CMD_SourceState::setLoop(std::shared_ptr<CMD_Loop> newLoop) {
    // Calls that are inside the old loop keep it alive, but it returns no further line.
    if (loop)
        loop->cancel();
    loop = std::move(newLoop);
    if (!loop)
        loopRunning = 0;
}

void CMD_SourceState::close() {
    setLoop(nullptr);
    inputStream = nullptr;
}

void CMD_SourceState::setInput(std::shared_ptr<const char[]> buffer, size_t length) {
    inputBuffer = std::move(buffer);
    inputStream = std::make_unique<KIT_IStream>(inputBuffer.get(), length, 1);
}

void CMD_SourceState::abandon() {
    setLoop(nullptr);
    unfinishedCommands.clear();
    ifStates.fill(CMD_IF_NONE);
    ifNestLevel = 0;
}
