// SPDX-License-Identifier: Apache-2.0
// The road of a line, second part: one line becomes one statement.
//
// `internalExecute` applies history, cuts the line at its first `;` (the rest goes back to the source) and applies
// aliases. The statement is still text when it goes on to `runCommand` (CMD_Manager_dispatch.cpp), which expands
// variables and expressions: so what a variable holds can no longer start a statement, while an alias can hold `;`.
#include <orvlang/engine/CMD_Manager.h>

#include <orvlang/engine/CMD_LineScan.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_StatementFrame.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_HistoryTable.h>

/// Mode bits that are off for a while.
class CMD_Manager::ModeScope {
public:
    ModeScope(CMD_Manager &owner, unsigned cleared)
        : manager(owner), bits(cleared), former(owner.modeBits & cleared) {
        manager.modeBits &= ~bits;
    }
    ~ModeScope() { manager.modeBits = (manager.modeBits & ~bits) | former; }
    ModeScope(const ModeScope &) = delete;
    ModeScope &operator=(const ModeScope &) = delete;

private:
    CMD_Manager &manager;
    const unsigned bits;
    const unsigned former;
};

CMD_Manager::FrameScope::FrameScope(CMD_Manager &owner, size_t textLength)
    : manager(owner), isKept(textLength <= theLargestKeptText) {
    if (manager.framesInUse == manager.frames.size())
        manager.frames.emplace_back();
    std::unique_ptr<CMD_StatementFrame> &slot = manager.frames[manager.framesInUse];
    if (!slot)
        slot = std::make_unique<CMD_StatementFrame>();
    frame = slot.get();
    ++manager.framesInUse;
}

CMD_Manager::FrameScope::~FrameScope() {
    --manager.framesInUse;
    if (!isKept)
        manager.frames[manager.framesInUse].reset();
}

void CMD_Manager::internalExecute(const CMD_Line &line) {
    const size_t start = CMDskipWhiteSpace(line.text);
    if (start == line.text.size() || line.text[start] == '#')
        return;
    CMD_Line text{ line.text.substr(start), line.owner, line.historyExpanded };
    if ((modeBits & modeExpandHistory) && sourceStack.size() == 1 && getSource()->interactive)
        applyHistory(text);

    const FrameScope scope(*this, text.text.size());
    CMD_StatementFrame &frame = scope.get();
    const CMD_LineScan scan = CMDscanLine(text.text, frame.scanned);
    if (scan.restOffset != std::string_view::npos)
        getSource()->pushUnfinishedCommands(text.rest(scan.restOffset));
    const bool mayBeAlias = noAliasActive == 0 && (modeBits & modeExpandAliases);
    if (mayBeAlias && aliasExpand(scan.statement, frame.expandedAlias)) {
        // One level only: an alias named `ls` may begin with `ls`.
        const ModeScope plain(*this, modeExpandAliases | modeExpandHistory);
        internalExecute({ frame.expandedAlias, nullptr, text.historyExpanded });
        return;
    }
    runCommand(scan.statement, frame);
}

void CMD_Manager::applyHistory(CMD_Line &text) {
    CMD_HistoryTable *history = getSource()->getHistory();
    if (!text.historyExpanded) {
        KIT_String expanded = text.text;
        history->historyExpand(this, expanded);
        text = CMD_Line::copyOf(expanded.view());
        text.historyExpanded = true;
    }
    // What is left over behind a `;` shares the text of the whole line, here too: a long line has many such parts.
    if (modeBits & modeCaptureHistory)
        history->addHistory(text);
}

bool CMD_Manager::aliasExpand(std::string_view line, std::string &expanded) const {
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
