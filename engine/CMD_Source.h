// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/engine/CMD_Line.h>
#include <orvlang/flow/CMD_IfState.h>
#include <orvlang/platform/kit/KIT_Export.h>

class CMD_HistoryTable;
class CMD_VariableTable;
class KIT_IStream;
class KIT_WorkBuffer;
struct CMD_SourceState;

/// A source of lines: the console, a script file, or a block of text from the host.
///
/// Sources form a stack on the manager; the top one is the current one. A source stores what must survive from one
/// statement to the next: its local variables, its `if` blocks, a loop being collected or run, and the rest of a line
/// after a `;`. A popped source stays alive until its last statement has ended.
class CMD_API CMD_Source : public std::enable_shared_from_this<CMD_Source> {
public:
    /// Makes a source without input of its own. The name is copied. With the name "stdin", or without one (null), error
    /// messages have no position.
    CMD_Source(const char *name, int interactive);
    /// A console for what is served while `waiting` waits. It shares the variables and the history of that source and
    /// nothing else.
    explicit CMD_Source(const std::shared_ptr<CMD_Source> &waiting);
    ~CMD_Source();
    CMD_Source(const CMD_Source &) = delete;
    CMD_Source &operator=(const CMD_Source &) = delete;

    /// The variables that live as long as this source. Never null.
    CMD_VariableTable *getLocalVariables() const;
    /// The lines that were typed on this source. Never null.
    CMD_HistoryTable *getHistory() const;
    void addHistory(const char *line);

    /// "stdin" or the path of the script; null for a source without a name.
    const char *getFilename() const;
    bool isStdIn() const;
    /// The stream over the source's text; null when it has none.
    KIT_IStream *getInputStream() const;

    /// Returns the next line: the rest after a `;` first, then from the running loop, then from the input. Inside a
    /// block (see startBlock) the input is not read. False when there is no further line.
    bool nextLine(CMD_Line &line);
    /// The same with the text copied into `scratch`; null when there is no further line.
    const char *getLine(KIT_WorkBuffer &scratch);
    /// Returns the line number in the running loop's body, otherwise the number of lines read so far.
    int getLineNumber() const;

    /// Puts text before all further lines of the source. The text pushed last is returned first.
    void pushUnfinishedCommands(const char *text);
    bool hasUnfinishedCommands() const;
    /// Hides the leftovers of enclosing runs until endBlock, so that a nested run cannot consume them.
    void startBlock();
    /// Removes the newest marker of startBlock; text that was pushed after it stays.
    void endBlock();

    /// Non-zero: each statement is shown before it runs.
    int getEchoState() const;
    void setEchoState(int echoState);

    /// The state of the current `if` level, and its change.
    CMD_IfState getIfState() const;
    void setIfState(CMD_IfState ifState);
    int getIfNestLevel() const;
    /// Sets the level (0 to 127, clamped) without touching any state.
    void setIfNestLevel(int level);
    /// Goes one level deeper (direction 1 or more) or back (below 1). Returns 0 when there is no such level, else 1.
    int bumpIfNest(int direction);
    /// Returns 1 while statements run on the current level, 0 while they are skipped.
    int doIfStatements() const;

private:
    friend class CMD_Engine;
    friend class CMD_SourceStack;

    const std::unique_ptr<CMD_SourceState> state;   // for the engine
};
