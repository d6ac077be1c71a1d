// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include <orvlang/engine/CMD_Line.h>
#include <orvlang/flow/CMD_IfState.h>
#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

class CMD_HistoryTable;
class CMD_Loop;
class CMD_VariableTable;
class KIT_IStream;
class KIT_WorkBuffer;

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
    CMD_VariableTable *getLocalVariables() const { return localVariables.get(); }
    /// The lines that were typed on this source. Never null.
    CMD_HistoryTable *getHistory() const { return history.get(); }
    void addHistory(const char *line);

    /// "stdin" or the path of the script; null for a source without a name.
    const char *getFilename() const { return filename.isNull() ? nullptr : filename.c_str(); }
    bool isStdIn() const { return isConsoleName; }
    /// The stream over the source's text; null when it has none.
    KIT_IStream *getInputStream() const { return inputStream.get(); }

    /// Returns the next line: the rest after a `;` first, then from the running loop, then from the input. Inside a
    /// block (see startBlock) the input is not read. False when there is no further line.
    bool nextLine(CMD_Line &line);
    /// The same with the text copied into `scratch`; null when there is no further line.
    const char *getLine(KIT_WorkBuffer &scratch);
    /// Returns the line number in the running loop's body, otherwise the number of lines read so far.
    int getLineNumber() const;

    /// Puts text before all further lines of the source. The text pushed last is returned first.
    void pushUnfinishedCommands(const char *text);
    bool hasUnfinishedCommands() const {
        return !unfinishedCommands.empty() && !unfinishedCommands.back().isMarker;
    }
    /// Hides the leftovers of enclosing runs until endBlock, so that a nested run cannot consume them.
    void startBlock();
    /// Removes the newest marker of startBlock; text that was pushed after it stays.
    void endBlock();

    /// Non-zero: each statement is shown before it runs.
    int getEchoState() const { return echoState; }
    void setEchoState(int state) { echoState = state; }

    /// The state of the current `if` level, and its change.
    CMD_IfState getIfState() const { return ifStates[ifNestLevel]; }
    void setIfState(CMD_IfState state) { ifStates[ifNestLevel] = state; }
    int getIfNestLevel() const { return ifNestLevel; }
    /// Sets the level (0 to 127, clamped) without touching any state.
    void setIfNestLevel(int level);
    /// Goes one level deeper (direction 1 or more) or back (below 1). Returns 0 when there is no such level, else 1.
    int bumpIfNest(int direction);
    /// Returns 1 while statements run on the current level, 0 while they are skipped.
    int doIfStatements() const;

private:
    friend class CMD_Engine;
    friend class CMD_SourceStack;

    static constexpr int theIfLevels = 128;

    struct Leftover {
        CMD_Line line;
        bool isMarker = false;
    };

    /// A statement of a source, while it runs.
    class StatementScope {
    public:
        explicit StatementScope(CMD_Source &theSource) : source(theSource) { ++source.runningStatements; }
        ~StatementScope() { --source.runningStatements; }
        StatementScope(const StatementScope &) = delete;
        StatementScope &operator=(const StatementScope &) = delete;

    private:
        CMD_Source &source;
    };

    bool isFenced() const { return !unfinishedCommands.empty() && unfinishedCommands.back().isMarker; }

    void pushUnfinishedCommands(CMD_Line line);
    /// Drops the newest leftovers and markers until `kept` are left.
    void dropLeftovers(size_t kept);
    /// Replaces the present loop by another one or none. The present one returns no further line.
    void setLoop(std::shared_ptr<CMD_Loop> newLoop);
    /// Returns no line from now on: the source is off the stack, though a statement of it may still run.
    void close();
    /// Sets the text to read from; lines share it.
    void setInput(std::shared_ptr<const char[]> buffer, size_t length);
    /// Drops all unfinished work: leftovers, the loop and the `if` blocks.
    void abandon();

    const std::shared_ptr<CMD_VariableTable> localVariables;
    const std::shared_ptr<CMD_HistoryTable> history;
    KIT_String filename;
    std::shared_ptr<CMD_Loop> loop;   // collecting or running; shared with the calls that are inside it
    std::unique_ptr<KIT_IStream> inputStream;
    std::shared_ptr<const char[]> inputBuffer;
    int loopRunning = 0;   // 0: the loop collects lines; 1: the lines come from the loop
    int interactive;
    int lineNumber = 0;
    int runningStatements = 0;   // nested ones count each; the leftovers are theirs
    int echoState = 0;
    int ifNestLevel = 0;
    bool isConsoleName;
    bool aliasesOff = false;   // this source or an older one has a local `noalias`
    std::array<CMD_IfState, theIfLevels> ifStates{};
    std::vector<Leftover> unfinishedCommands;
};
