// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <orvlang/platform/kit/KIT_Export.h>

class CMD_LoopInfo;
class CMD_LoopLine;
class CMD_Manager;
class CMD_Source;
class KIT_CshTemplate;

/// A loop of the language: first it collects the lines of its body, then it gives them out, pass by pass, to be
/// run. A loop inside the body is a line that owns a CMD_Loop of its own.
///
/// All operations are for the loop that CMD_Manager::buildLoop gave; the loops inside it are driven by it. While
/// nextLine or parseArguments runs, statements and expressions run, which may do anything: let the source
/// go, put another loop in this one's place, ask this very loop for a line. The owner keeps the object until they
/// return.
class CMD_API CMD_Loop {
public:
    /// Takes ownership of the kind. The loop belongs to the current source of the manager; both must outlive it,
    /// or it must be cancelled before they go.
    CMD_Loop(CMD_Manager *manager, CMD_LoopInfo *info, const char *line);
    ~CMD_Loop();
    CMD_Loop(const CMD_Loop &) = delete;
    CMD_Loop &operator=(const CMD_Loop &) = delete;

    /// Expands the first line and reads it. 0 when that fails, which is reported. With `enable` 0 the loop only
    /// collects its lines and runs none of them.
    int parseArguments(int enable);
    /// Prepares for a new run.
    void setupForStart();
    /// Takes a line into the body. 0 for the one that closes the loop, otherwise 1. Blank and comment lines are
    /// dropped.
    int sendInput(std::string_view line, int lineNumber);
    /// The same; null counts as a blank line.
    int sendInput(const char *line, int lineNumber);
    /// The next line to run; null when the loop is over, interrupted or cancelled, and while isBusy. It is the
    /// loop's own and stays as long as the loop lives.
    CMD_LoopLine *nextLine();
    /// The text of nextLine.
    char *getNextLine();
    /// The line of the source that runs now; -1 when there is none.
    int getLineNumber() const;
    /// The loop of the body that is in charge, while collecting or while running; null when this loop itself is.
    CMD_Loop *getOutsideLoop() const { return outsideLoop; }

    /// Ends the loop for good: from now on it counts no more among the loops alive, gives no line, and touches
    /// neither manager nor source.
    void cancel();
    /// Whether nextLine is at work, and this is called by something that it runs. The loop is not over then,
    /// and still has no line to give.
    bool isBusy() const { return busy; }

private:
    class BusyScope;

    void adopt(CMD_Loop &inner);
    bool collect(std::string_view line, int lineNumber);
    CMD_LoopLine *takeLine();
    bool beginPass();
    void enter(CMD_Loop &inner);
    void leave();
    void restoreIfNest();
    int ownLineNumber() const;
    bool isCancelled() const { return root->cancelled; }
    void moveInnerLoops(std::vector<std::unique_ptr<CMD_Loop>> &loops);

    std::vector<std::unique_ptr<CMD_LoopLine>> lines;
    CMD_Source *source;   // borrowed
    std::unique_ptr<CMD_LoopInfo> info;
    CMD_Manager *manager;              // borrowed
    CMD_Loop *outsideLoop = nullptr;   // borrowed; one of the lines owns it
    std::string arguments;             // the first line, its operators set apart
    std::unique_ptr<KIT_CshTemplate> parsedArguments;
    int bodyEnabled = 0;
    int baseIfNest = -1;   // the source's `if` level when the loop first ran

    CMD_Loop *root = this;       // the loop that no other one is around
    CMD_Loop *outer = nullptr;   // the loop around this one
    // Of the root alone.
    CMD_Loop *active = this;   // the innermost loop in charge: deep nesting is no deep recursion
    int aliveCount = 1;        // this loop and those inside it
    bool busy = false;
    bool cancelled = false;
};
