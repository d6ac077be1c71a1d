// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <memory>
#include <vector>

#include <orvlang/engine/CMD_Line.h>
#include <orvlang/flow/CMD_IfState.h>
#include <orvlang/platform/kit/KIT_String.h>

class CMD_HistoryTable;
class CMD_Loop;
class CMD_VariableTable;
class KIT_IStream;

/// The private half of a source, for the engine: what stays from one statement to the next.
struct CMD_SourceState {
    static constexpr int theIfLevels = 128;

    /// The rest of a line after a `;`, or the marker of a block.
    struct Leftover {
        CMD_Line line;
        bool isMarker = false;
    };

    CMD_SourceState(std::shared_ptr<CMD_VariableTable> localVariables,
                    std::shared_ptr<CMD_HistoryTable> history, const char *filename, int interactive);
    ~CMD_SourceState();

    bool hasUnfinishedCommands() const {
        return !unfinishedCommands.empty() && !unfinishedCommands.back().isMarker;
    }
    bool isFenced() const { return !unfinishedCommands.empty() && unfinishedCommands.back().isMarker; }

    bool nextLine(CMD_Line &line);
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
