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

/// One place that lines come from: the console, a script file, or a block of text handed in by the host.
///
/// Sources form a stack on the manager; the top one is the current one. A source carries what must survive from
/// one statement to the next: its local variables, its `if` blocks, a loop being collected or run, and the text
/// left over behind a `;`. A popped source stays alive until the last statement that it gave has ended.
class CMD_API CMD_Source {
public:
    /// A source without input of its own. The name is copied; "stdin" (or a null name, which counts as no name)
    /// keeps positions out of error messages.
    CMD_Source(const char *name, int interactive);
    ~CMD_Source();
    CMD_Source(const CMD_Source &) = delete;
    CMD_Source &operator=(const CMD_Source &) = delete;

    /// The variables that live and die with this source. Never null; owned by the source.
    CMD_VariableTable *getLocalVariables() const { return localVariables.get(); }
    /// The lines that were typed on this source. Never null; owned by the source.
    CMD_HistoryTable *getHistory() const { return history.get(); }
    void addHistory(const char *line);

    /// "stdin" or the path of the script; null for a source without a name.
    const char *getFilename() const { return filename.isNull() ? nullptr : filename.c_str(); }
    bool isStdIn() const { return isConsoleName; }
    /// The stream over the source's text; null when it has none.
    KIT_IStream *getInputStream() const { return inputStream.get(); }

    /// The next line: leftovers of a `;` first, then the running loop, then the input. Inside a block (see
    /// startBlock) the input is left alone. False when there is nothing more.
    bool nextLine(CMD_Line &line);
    /// The same with the text copied into `scratch`; null when there is nothing more.
    const char *getLine(KIT_WorkBuffer &scratch);
    /// The line of the loop body that runs now, otherwise the lines read so far.
    int getLineNumber() const;

    /// Puts text in front of everything that the source still has to give. The last pushed comes out first.
    void pushUnfinishedCommands(const char *text);
    bool hasUnfinishedCommands() const {
        return !unfinishedCommands.empty() && !unfinishedCommands.back().isMarker;
    }
    /// Fences off the leftovers that are there now: until endBlock they belong to an enclosing run.
    void startBlock();
    /// Takes the newest fence away; text that was left above it stays.
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
    /// One level deeper (direction 1 or more) or back (below 1). 0 when there is no such level, otherwise 1.
    int bumpIfNest(int direction);
    /// 1 while statements run on the current level, 0 while they are skipped.
    int doIfStatements() const;

private:
    friend class CMD_Manager;

    static constexpr int theIfLevels = 128;

    struct Leftover {
        CMD_Line line;
        bool isMarker = false;
    };

    void pushUnfinishedCommands(CMD_Line line);
    /// Forgets the newest leftovers and fences, as far as there are more than so many.
    void dropLeftovers(size_t kept);
    /// Puts a loop, or none, in the place of the present one, which gives no further line.
    void setLoop(std::shared_ptr<CMD_Loop> newLoop);
    /// Gives no line any more: the source is off the stack, though something may still be at work in it.
    void close();
    /// Takes a whole text to read from; lines share it.
    void setInput(std::shared_ptr<const char[]> buffer, size_t length);
    /// Drops everything that is half done: leftovers, the loop and the `if` blocks.
    void abandon();

    std::unique_ptr<CMD_VariableTable> localVariables;
    std::unique_ptr<CMD_HistoryTable> history;
    KIT_String filename;
    std::shared_ptr<CMD_Loop> loop;   // collecting or running; shared with the frames that are inside it
    std::unique_ptr<KIT_IStream> inputStream;
    std::shared_ptr<const char[]> inputBuffer;
    int loopRunning = 0;   // 0: lines go into the loop; 1: the loop gives the lines
    int interactive;
    int lineNumber = 0;
    int echoState = 0;
    int ifNestLevel = 0;
    bool isConsoleName;
    bool aliasesOff = false;   // this source or an older one has a local `noalias`
    std::array<CMD_IfState, theIfLevels> ifStates{};
    std::vector<Leftover> unfinishedCommands;
};
