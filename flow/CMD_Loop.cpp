// SPDX-License-Identifier: Apache-2.0
// A loop collects the lines of its body, unexpanded, and returns them again, pass by pass. Each returned line is
// processed like any other line of the source, from the split into statements on, so it is expanded anew each time.
//
// Nested loops do not call each other: `active` is the innermost loop that collects or runs. After its last pass the
// loop around it becomes the active one and continues after its line.
#include <orvlang/flow/CMD_Loop.h>

#include <climits>
#include <new>
#include <ostream>
#include <string_view>
#include <utility>

#include <orvlang/engine/CMD_Engine.h>
#include <orvlang/engine/CMD_LineScan.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/flow/CMD_LoopHead.h>
#include <orvlang/flow/CMD_LoopInfo.h>
#include <orvlang/flow/CMD_LoopLine.h>
#include <orvlang/platform/kit/KIT_CshTemplate.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>

namespace {

constexpr int newPass = INT_MAX;   // as a line's index: beyond each last line

}   // namespace

/// What a test of the loop runs may ask the loop for a line; it gets none while this lives.
class CMD_Loop::BusyScope {
public:
    explicit BusyScope(CMD_Loop &theLoop) : loop(theLoop) { loop.busy = true; }
    ~BusyScope() { loop.busy = false; }
    BusyScope(const BusyScope &) = delete;
    BusyScope &operator=(const BusyScope &) = delete;

private:
    CMD_Loop &loop;
};

CMD_Loop::CMD_Loop(CMD_Manager *theManager, CMD_LoopInfo *theInfo, const char *line)
    : source(theManager->getSource()->weak_from_this()), info(theInfo), manager(theManager),
      arguments(CMD_LoopHead::normalize(line)) {
    manager->bumpLoopNestLevel(1);
    setupForStart();
}

CMD_Loop::~CMD_Loop() {
    if (root == this)
        cancel();
    std::vector<std::unique_ptr<CMD_Loop>> doomed;
    moveInnerLoops(doomed);
    while (!doomed.empty()) {
        const std::unique_ptr<CMD_Loop> loop = std::move(doomed.back());
        doomed.pop_back();
        loop->moveInnerLoops(doomed);
    }
}

void CMD_Loop::moveInnerLoops(std::vector<std::unique_ptr<CMD_Loop>> &loops) {
    for (const std::unique_ptr<CMD_LoopLine> &line : lines)
        if (line->loop)
            loops.push_back(std::move(line->loop));
}

void CMD_Loop::cancel() {
    if (std::exchange(root->cancelled, true))
        return;
    manager->bumpLoopNestLevel(-root->aliveCount);
}

int CMD_Loop::parseArguments(int enable) {
    bodyEnabled = enable;
    if (!enable)
        return 1;
    // A line of the body may have run something on another manager.
    manager->setContext();
    const std::string_view head = std::string_view(arguments).substr(CMDskipWhiteSpace(arguments));
    if (!parsedArguments) {
        parsedArguments = std::make_unique<KIT_CshTemplate>();
        parsedArguments->parse(head, false);
    }
    // The condition of a `while` is expanded at each test, everything else once, here.
    const bool expandLater = head.starts_with("while");
    KIT_WorkArgs words;
    parsedArguments->expand(words, expandLater ? nullptr : TRK_Manager::lookupVariableNoThread,
                            expandLater ? nullptr : TRK_Manager::lookupExpressionNoThread, nullptr);
    if (isCancelled())
        return 0;
    if (info->setInitialState(manager, words.argc(), words.argv()))
        return 1;
    manager->getError(1) << " expression or syntax error" << std::endl;
    return 0;
}

void CMD_Loop::setupForStart() {
    info->currentLine = newPass;
    info->iterationCount = 0;
    outsideLoop = nullptr;
    active = this;
}

int CMD_Loop::sendInput(const char *line, int lineNumber) {
    return sendInput(std::string_view(line ? line : ""), lineNumber);
}

int CMD_Loop::sendInput(std::string_view line, int lineNumber) {
    if (active->collect(line, lineNumber))
        return 1;
    if (active == this)
        return 0;
    leave();
    return 1;
}

/// False for the end of the body.
bool CMD_Loop::collect(std::string_view line, int lineNumber) {
    line.remove_prefix(CMDskipWhiteSpace(line));
    if (line.empty() || line.front() == '#')
        return true;
    if (std::string_view(info->getEndToken()).starts_with(CMDfirstWord(line).word))
        return false;
    lines.push_back(std::make_unique<CMD_LoopLine>(manager, line, lineNumber));
    if (CMD_Loop *inner = lines.back()->loop.get()) {
        adopt(*inner);
        outsideLoop = inner;
        root->active = inner;
    }
    return true;
}

void CMD_Loop::adopt(CMD_Loop &inner) {
    inner.outer = this;
    inner.root = root;
    inner.source = source;
    ++root->aliveCount;
}

char *CMD_Loop::getNextLine() {
    CMD_LoopLine *line = nextLine();
    return line ? line->text.data() : nullptr;
}

CMD_LoopLine *CMD_Loop::nextLine() {
    if (busy || isCancelled())
        return nullptr;
    const BusyScope scope(*this);
    try {
        return advance();
    } catch (const std::bad_alloc &) {
        CMD_Engine::of(*manager).reportOutOfMemory();
        restoreIfNest();
        return nullptr;
    }
}

CMD_LoopLine *CMD_Loop::advance() {
    while (!KITgetInterrupt()->opInterrupt(-1)) {
        if (active->baseIfNest < 0)
            active->baseIfNest = source.lock()->getIfNestLevel();
        CMD_LoopLine *line = active->takeLine();
        if (isCancelled())
            return nullptr;
        if (line && !line->loop)
            return line;
        if (line)
            enter(*line->loop);
        else if (active != this)
            leave();
        else
            return nullptr;
        if (isCancelled())
            return nullptr;
    }
    // Close the blocks that the interrupted pass has opened.
    restoreIfNest();
    return nullptr;
}

/// The next line of this loop itself; null when the loop is over.
CMD_LoopLine *CMD_Loop::takeLine() {
    if (!bodyEnabled)
        return nullptr;
    if (manager->getBreakLevel() != 0) {
        restoreIfNest();
        manager->bumpBreakLevel(-1);
        return nullptr;
    }
    if (const int level = manager->getContinueLevel(); level != 0) {
        info->currentLine = newPass;
        restoreIfNest();
        manager->setContinueLevel(level - 1);
    }
    if (static_cast<size_t>(info->currentLine) >= lines.size() && !beginPass())
        return nullptr;
    const size_t index = static_cast<size_t>(info->currentLine++);
    return index < lines.size() ? lines[index].get() : nullptr;
}

bool CMD_Loop::beginPass() {
    info->currentLine = 0;
    const int goesOn = info->evaluateCondition(manager);
    if (!goesOn || isCancelled())
        return false;
    // Skipped code around the loop, or an `if` that the pass before has left open.
    if (!source.lock()->doIfStatements())
        return false;
    if (info->iterationCount < INT_MAX)
        ++info->iterationCount;
    return true;
}

/// Hands over from the active loop to one inside it, unless that one's first line is wrong.
void CMD_Loop::enter(CMD_Loop &inner) {
    CMD_Loop &from = *active;
    from.outsideLoop = active = &inner;
    const int started = inner.parseArguments(from.bodyEnabled);
    if (isCancelled())
        return;
    if (started) {
        inner.setupForStart();
    } else {
        from.outsideLoop = nullptr;
        active = &from;
    }
}

/// Hands back from the active loop to the one around it.
void CMD_Loop::leave() {
    active = active->outer;
    active->outsideLoop = nullptr;
}

void CMD_Loop::restoreIfNest() {
    if (const auto owner = source.lock(); owner && baseIfNest >= 0)
        owner->setIfNestLevel(baseIfNest);
}

int CMD_Loop::getLineNumber() const {
    // While a loop inside this one runs, the current line is that loop's line; while lines are collected, there is none.
    const int number = ownLineNumber();
    if (number < 0 || active == this)
        return number;
    for (const CMD_Loop *loop = active; loop != this; loop = loop->outer)
        if (const int inner = loop->ownLineNumber(); inner >= 0)
            return inner;
    return number;
}

int CMD_Loop::ownLineNumber() const {
    const size_t index = static_cast<size_t>(info->currentLine) - 1;
    return index < lines.size() ? lines[index]->lineNumber : -1;
}
