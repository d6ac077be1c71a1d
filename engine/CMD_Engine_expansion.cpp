// SPDX-License-Identifier: Apache-2.0
// The road of a line, second part: one line becomes one statement.
//
// `internalExecute` applies history, cuts the line at its first `;` (the rest goes back to the source) and applies
// aliases. It passes the statement, which is still text, to `runCommand` (CMD_Engine_dispatch.cpp), which expands
// variables and expressions: so what a variable holds can no longer start a statement, while an alias can hold `;`.
#include <orvlang/engine/CMD_Engine.h>

#include <orvlang/engine/CMD_LineScan.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/engine/CMD_StatementFrame.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_HistoryTable.h>

/// Clears mode bits and restores them.
class CMD_Engine::ModeScope {
public:
    ModeScope(CMD_Engine &owner, unsigned cleared)
        : engine(owner), bits(cleared), former(owner.modeBits & cleared) {
        engine.modeBits &= ~bits;
    }
    ~ModeScope() { engine.modeBits = (engine.modeBits & ~bits) | former; }
    ModeScope(const ModeScope &) = delete;
    ModeScope &operator=(const ModeScope &) = delete;

private:
    CMD_Engine &engine;
    const unsigned bits;
    const unsigned former;
};

/// The working memory of one statement, for as long as it runs.
class CMD_Engine::FrameScope {
public:
    FrameScope(CMD_Engine &owner, size_t textLength) : engine(owner), isKept(textLength <= theLargestKeptText) {
        if (engine.framesInUse == engine.frames.size())
            engine.frames.emplace_back();
        std::unique_ptr<CMD_StatementFrame> &slot = engine.frames[engine.framesInUse];
        if (!slot)
            slot = std::make_unique<CMD_StatementFrame>();
        frame = slot.get();
        ++engine.framesInUse;
    }
    ~FrameScope() {
        --engine.framesInUse;
        if (!isKept)
            engine.frames[engine.framesInUse].reset();
    }
    FrameScope(const FrameScope &) = delete;
    FrameScope &operator=(const FrameScope &) = delete;

    CMD_StatementFrame &get() const { return *frame; }

private:
    CMD_Engine &engine;
    const bool isKept;
    CMD_StatementFrame *frame;
};

void CMD_Engine::internalExecute(const CMD_Line &line) {
    const size_t start = CMDskipWhiteSpace(line.text);
    if (start == line.text.size() || line.text[start] == '#')
        return;
    CMD_Line text{ line.text.substr(start), line.owner, line.historyExpanded };
    if ((modeBits & modeExpandHistory) && sources.size() == 1 && getSource()->state->interactive)
        applyHistory(text);

    const FrameScope scope(*this, text.text.size());
    CMD_StatementFrame &frame = scope.get();
    const CMD_LineScan scan = CMDscanLine(text.text, frame.scanned);
    if (scan.restOffset != std::string_view::npos)
        getSource()->state->pushUnfinishedCommands(text.rest(scan.restOffset));
    const bool mayBeAlias = !sources.areAliasesOff() && (modeBits & modeExpandAliases);
    if (mayBeAlias && aliasExpand(scan.statement, frame.expandedAlias)) {
        // One level only: an alias named `ls` may begin with `ls`.
        const ModeScope plain(*this, modeExpandAliases | modeExpandHistory);
        internalExecute({ frame.expandedAlias, nullptr, text.historyExpanded });
        return;
    }
    runCommand(scan.statement, frame);
}

void CMD_Engine::applyHistory(CMD_Line &text) {
    CMD_HistoryTable *history = getSource()->getHistory();
    if (!text.historyExpanded) {
        KIT_String expanded = text.text;
        history->historyExpand(&manager, expanded);
        text = CMD_Line::copyOf(expanded.view());
        text.historyExpanded = true;
    }
    // The history shares the text of the line, and so does the part after a `;`: a long line has many such parts.
    if (modeBits & modeCaptureHistory)
        history->addHistory(text);
}

bool CMD_Engine::aliasExpand(std::string_view line, std::string &expanded) const {
    if (aliases->isEmpty())
        return false;
    const CMD_FirstWord first = CMDfirstWord(line);
    KIT_String value;
    if (!aliases->getValue(KIT_String(first.word).c_str(), value))
        return false;
    expanded.assign(value.view());
    expanded += first.rest;
    return true;
}
