// SPDX-License-Identifier: Apache-2.0
// The road of a line, first part: from the host's text to single statements.
//
// `execute`, `sendInput` and `sendMultiLineInput` bring text in. `internalSendInput` joins a continued line, hands
// it to `processInput`, and then drains what that started: text after a `;`, scripts that were sourced, a
// loop that was closed. `processInput` decides what a line is: a line of a loop that is being collected, the answer
// to a `read`, or a statement, which it passes to `internalExecute` (CMD_Engine_expansion.cpp).
#include <orvlang/engine/CMD_Engine.h>

#include <cstring>
#include <new>
#include <optional>
#include <ostream>
#include <utility>

#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/fml/FML_ErrorScope.h>
#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>

namespace {

constexpr const char *theOperationName = "Run Orvlang command";

// A nested run starts only when at least this much stack is left. One statement, with the expressions in its words,
// needs less between two such checks, even with the larger frames of the sanitizers and with the Python interpreter.
constexpr size_t theStackReserve = 192 * 1024;

void stripLineEnd(std::string_view &line) {
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
}

bool isContinued(std::string_view line) {
    return line.ends_with('\\');
}

/// Adds a blank unless there is one, so that joined lines do not run into each other.
void appendJoint(std::string &text) {
    if (!text.empty() && text.back() != ' ')
        text += ' ';
}

/// Counts a statement of a source while it runs.
class StatementScope {
public:
    explicit StatementScope(CMD_SourceState &owner) : source(owner) { ++source.runningStatements; }
    ~StatementScope() { --source.runningStatements; }
    StatementScope(const StatementScope &) = delete;
    StatementScope &operator=(const StatementScope &) = delete;

private:
    CMD_SourceState &source;
};

bool isInterrupted() {
    return KITgetInterrupt()->opInterrupt(-1) != 0;
}

}   // namespace

/// Counts one more level of runs. Refusals of nested calls count from the outermost nested run on.
class CMD_Engine::LevelScope {
public:
    LevelScope(const CMD_Engine &owner, int &depth) : depth(depth) {
        const bool wasNested = owner.isNested();
        depth++;
        if (!wasNested && owner.isNested())
            nesting.emplace(KIT_Nesting::Scope::Part);
    }
    ~LevelScope() { depth--; }
    LevelScope(const LevelScope &) = delete;
    LevelScope &operator=(const LevelScope &) = delete;

private:
    int &depth;
    std::optional<KIT_Nesting::Scope> nesting;
};

/// Sets the streams and expansions of one `execute` and restores the former ones.
class CMD_Engine::ExecuteScope {
public:
    ExecuteScope(CMD_Engine &owner, int expandHistory, std::ostream *out, std::ostream *err, int expandAliases)
        : engine(owner), level(owner, owner.executeDepth), slots(owner.streams.push(out, err)),
          bits(owner.modeBits & theBits) {
        engine.setModeBit(modeExpandAliases, (expandAliases & 1) != 0);
        engine.setModeBit(modeExpandHistory, (expandHistory & 1) != 0);
        engine.setModeBit(modeCaptureHistory, false);
    }
    ~ExecuteScope() {
        engine.modeBits = (engine.modeBits & ~theBits) | bits;
        engine.streams.popTo(slots);
    }
    ExecuteScope(const ExecuteScope &) = delete;
    ExecuteScope &operator=(const ExecuteScope &) = delete;

private:
    static constexpr unsigned theBits = modeExpandAliases | modeExpandHistory | modeCaptureHistory;

    CMD_Engine &engine;
    const LevelScope level;
    const CMD_StreamStacks::Slots slots;
    const unsigned bits;
    // The enclosing statement has not reported its own expression error yet.
    const FML_ErrorScope pendingError{ FML_ErrorScope::IfSet };
};

void CMD_Engine::execute(const char *text, int expandHistory, std::ostream *out, std::ostream *err,
                         int expandAliases, bool asBlock) {
    const ExecuteScope scope(*this, expandHistory, out, err, expandAliases);
    if (text && std::strchr(text, '\n'))
        sendMultiLineInput(text, asBlock);
    else
        sendInput(text, asBlock);
}

/// Returns true once a nested call was refused because the stack is nearly full: here, in an expression or in Python.
/// Nothing more is run until the outermost nested run has ended.
bool CMD_Engine::isNestingOver() const {
    return isNested() && KIT_Nesting::isOver();
}

/// Returns true for a run that nests too deep. Reports the first one.
bool CMD_Engine::refusesRun() {
    if (isNestingOver()) {
        KIT_Nesting::countRefusal();
        statusCode = 1;
        return true;
    }
    if (!isNested() || !KIT_Nesting::isStackShort(theStackReserve))
        return false;
    reportNestingTooDeep();
    return true;
}

/// Marks where a nested run starts on its source. As a block, the run cannot consume text that an enclosing statement
/// left after a `;`: otherwise a callback that calls `execute` in `a; b` would run `b` inside `a`. When no statement of
/// the source runs, the text that is left is for this run: the rest of a script that stopped at a `read`, for instance.
class CMD_Engine::BlockScope {
public:
    BlockScope(CMD_Engine &owner, bool asBlock)
        : engine(owner), level(owner, owner.inputDepth), index(owner.sources.size() - 1),
          source(owner.sources.top()), leftovers(source->state->unfinishedCommands.size()),
          isBlock(asBlock && source->state->runningStatements > 0) {
        if (isBlock)
            source->startBlock();
    }
    ~BlockScope() {
        if (index >= engine.sources.size() || engine.sources[index] != source)
            return;
        if (engine.isNestingOver())
            source->state->dropLeftovers(leftovers);
        else if (isBlock)
            source->endBlock();
    }
    BlockScope(const BlockScope &) = delete;
    BlockScope &operator=(const BlockScope &) = delete;

    /// Runs the lines, unless that is refused.
    template <typename Lines>
    void run(Lines lines) {
        if (engine.refusesRun())
            return;
        try {
            lines();
        } catch (const std::bad_alloc &) {
            engine.reportOutOfMemory();
            dropRun();
        }
    }

private:
    /// Drops the sources, the `read`, the half collected loop and the leftovers of the run.
    void dropRun() {
        engine.readVariables = nullptr;
        while (engine.sources.size() > index + 1)
            engine.popSource(0);
        // A running loop may belong to a statement around this run.
        if (!source->state->loopRunning || source->state->runningStatements == 0)
            source->state->setLoop(nullptr);
        source->state->dropLeftovers(leftovers + isBlock);
    }

    CMD_Engine &engine;
    const LevelScope level;
    const size_t index;
    const SourceRef source;
    const size_t leftovers;   // the number of those of enclosing runs
    const bool isBlock;
};

void CMD_Engine::sendInput(const char *line, bool asBlock) {
    BlockScope(*this, asBlock).run([&] { internalSendInput(line ? line : "", false); });
}

void CMD_Engine::sendMultiLineInput(const char *text, bool asBlock) {
    if (!text || !*text)
        return;
    BlockScope(*this, asBlock).run([&] {
        finishContinuation();
        // The zero counts as text, so that after a final line end there is one more, empty line.
        const size_t length = std::strlen(text) + 1;
        const auto copy = std::make_shared_for_overwrite<char[]>(length);
        std::memcpy(copy.get(), text, length);
        auto source = std::make_shared<CMD_Source>("stdin", 0);
        source->state->setInput(copy, length);
        sources.push(std::move(source));
        internalSendInput("", true);
    });
}

void CMD_Engine::finishContinuation() {
    const KIT_Operation operation(theOperationName);
    // Running the continued line can begin another one.
    while (!continuationLine.empty()) {
        if (isInterrupted()) {
            continuationLine.clear();
            prompts.pop();
            return;
        }
        internalSendInput("", false);
    }
}

void CMD_Engine::internalSendInput(std::string_view line, bool pushedSource) {
    std::string joined;
    if (!continuationLine.empty()) {
        joined = std::exchange(continuationLine, {});
        appendJoint(joined);
        prompts.pop();
        if (!pushedSource)
            joined += line;
        line = joined;
    }
    stripLineEnd(line);
    if (isContinued(line)) {
        line.remove_suffix(1);
        if (joined.empty())
            continuationLine = line.empty() ? " " : line;
        else   // not copied: each of its many lines comes through here
            (continuationLine = std::move(joined)).resize(line.size());
        prompts.push("? ", isInSafeMode());
        return;
    }

    // With a text of several lines, which has been pushed for this run, the run starts on the source below that.
    const size_t baseLevel = pushedSource ? sources.size() - 1 : sources.size();
    const CMD_Source &base = *sources[baseLevel - 1];
    // While a statement of the source runs, its own loop in drain continues after the `read`.
    const bool readWasPending = !readVariables.isEmpty() && base.state->runningStatements == 0;
    const bool loopWasRunning = base.state->loopRunning != 0;
    const SourceRef current = sources.top();
    if (commandEcho && commandEchoCallback && current->isStdIn())
        commandEchoCallback(std::string(line).c_str(), commandEchoCallbackData);
    const KIT_Operation operation(theOperationName);
    if (!operation.mayRun())
        return;
    processInput(current, { line, nullptr });
    drain(baseLevel, readWasPending, loopWasRunning);
}

void CMD_Engine::drain(size_t baseLevel, bool readWasPending, bool loopWasRunning) {
    std::string assembled;   // a continued line, until it is whole
    // A `read` waits for a line that only the host can bring.
    while (readVariables.isEmpty()) {
        const size_t depth = sources.size();
        const SourceRef top = sources.top();
        if (isNestingOver()) {
            // A refusal in an expression has not ended the scripts. Those below this run belong to the enclosing
            // statement, which has not reported the refusal yet.
            while (sources.size() > baseLevel)
                popSource(0);
            return;
        }
        const bool startedAtConsole = baseLevel == sources.consoleDepth();
        const bool isAboveBase =
            depth > sources.consoleDepth() && (depth > baseLevel || startedAtConsole || readWasPending);
        const bool fellInsideExecute = executeDepth != 0 && baseLevel != depth;
        const bool closedLoop =
            top->state->loopRunning && (readWasPending || (startedAtConsole && !loopWasRunning));
        if (!isAboveBase && !top->state->hasUnfinishedCommands() && !fellInsideExecute && !closedLoop)
            return;
        CMD_Line line;
        if (!top->state->nextLine(line)) {
            // The test of a loop can have ended the source, or put another one on top of it.
            if (sources.top() != top)
                continue;
            // The text below the marker of a block is for the enclosing statement, a loop that is being tested for the
            // run that tests it.
            if (depth == sources.consoleDepth() || top->state->isFenced() ||
                (top->state->loop && top->state->loop->isBusy()))
                return;
            // An interrupt may have dropped the line that ends a loop.
            popSource(isInterrupted() ? 0 : 1);
            continue;
        }
        stripLineEnd(line.text);
        const bool continued = isContinued(line.text);
        if (continued)
            line.text.remove_suffix(1);
        if (continued || !assembled.empty()) {
            appendJoint(assembled);
            assembled += line.text;
            if (continued)
                continue;
            line = CMD_Line::copyOf(assembled);
            assembled.clear();
        }
        // After an interrupt the rest of the input is read and dropped.
        if (!isInterrupted())
            processInput(top, line);
    }
}

void CMD_Engine::processInput(const SourceRef &source, const CMD_Line &line) {
    if (source->state->loop && !source->state->loopRunning) {
        if (!source->state->loop->sendInput(line.text, source->getLineNumber()))
            source->state->loopRunning = 1;
        return;
    }
    if (!readVariables.isEmpty()) {
        setReadVariables(line.text);
        readVariables = nullptr;
        return;
    }
    const bool captured = (modeBits & modeCaptureHistory) != 0;
    if (sources.size() > 1 || source->state->loop)
        setModeBit(modeCaptureHistory, false);
    const StatementScope running(*source->state);
    try {
        internalExecute(line);
    } catch (const std::bad_alloc &) {
        reportOutOfMemory();
    }
    if (postCmdCallback)
        postCmdCallback(postCmdCallbackData);
    setModeBit(modeCaptureHistory, captured);
}

void CMD_Engine::reportOutOfMemory() {
    getError(1) << "Out of memory" << std::endl;
    reportLateErrors();
    statusCode = 1;
    updateStatusVariable();
}
