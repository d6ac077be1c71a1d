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

/// A loop of the language: first it collects the lines of its body, then it returns them, pass by pass, to be run.
/// A loop inside the body is a line that owns a CMD_Loop of its own.
///
/// The caller uses the operations of the loop from CMD_Manager::buildLoop only; that loop drives those inside it.
/// nextLine and parseArguments run statements and expressions, which may do anything: end the source, replace this
/// loop, call nextLine of it. The owner must keep the object until they return.
class CMD_API CMD_Loop {
public:
    /// Takes ownership of `info`. The loop belongs to the current source of the manager and returns no line once that
    /// has ended. The manager must outlive the loop, or the loop must be cancelled before its end.
    CMD_Loop(CMD_Manager *manager, CMD_LoopInfo *info, const char *line);
    ~CMD_Loop();
    CMD_Loop(const CMD_Loop &) = delete;
    CMD_Loop &operator=(const CMD_Loop &) = delete;

    /// Expands the first line and parses it. Reports a failure and returns 0 for it. With `enable` 0 the loop only
    /// collects its lines and does not run them.
    int parseArguments(int enable);
    /// Prepares for a new run.
    void setupForStart();
    /// Adds a line to the body. Returns 0 for the line that closes the loop, otherwise 1. Drops blank and comment
    /// lines.
    int sendInput(std::string_view line, int lineNumber);
    /// The same; null counts as a blank line.
    int sendInput(const char *line, int lineNumber);
    /// Returns the next line to run; null when the loop is over, interrupted or cancelled, and while isBusy. The loop
    /// owns the line and keeps it as long as it lives.
    CMD_LoopLine *nextLine();
    /// Returns the text of nextLine.
    char *getNextLine();
    /// Returns the number of the running line in its source; -1 when there is none.
    int getLineNumber() const;
    /// Returns the loop of the body that collects or runs now; null when this loop itself does.
    CMD_Loop *getOutsideLoop() const { return outsideLoop; }

    /// Ends the loop for good: from now on it does not count among the loops alive, returns no line, and uses
    /// neither manager nor source.
    void cancel();
    /// Returns whether the call comes from code that nextLine runs. The loop is then not over, but has no line to
    /// return.
    bool isBusy() const { return busy; }

private:
    class BusyScope;

    void adopt(CMD_Loop &inner);
    bool collect(std::string_view line, int lineNumber);
    CMD_LoopLine *advance();
    CMD_LoopLine *takeLine();
    bool beginPass();
    void enter(CMD_Loop &inner);
    void leave();
    void restoreIfNest();
    int ownLineNumber() const;
    bool isCancelled() const { return root->cancelled || root->source.expired(); }
    void moveInnerLoops(std::vector<std::unique_ptr<CMD_Loop>> &loops);

    std::vector<std::unique_ptr<CMD_LoopLine>> lines;
    std::weak_ptr<CMD_Source> source;   // a host may drive the loop while one of its lines ends the source
    std::unique_ptr<CMD_LoopInfo> info;
    CMD_Manager *manager;              // borrowed
    CMD_Loop *outsideLoop = nullptr;   // borrowed; one of the lines owns it
    std::string arguments;             // the first line, with blanks around its operators
    std::unique_ptr<KIT_CshTemplate> parsedArguments;
    int bodyEnabled = 0;
    int baseIfNest = -1;   // the source's `if` level when the loop first ran

    CMD_Loop *root = this;       // the outermost loop
    CMD_Loop *outer = nullptr;   // the loop around this one
    // Of the root alone.
    CMD_Loop *active = this;   // the innermost loop that collects or runs: deep nesting needs no deep recursion
    int aliveCount = 1;        // this loop and those inside it
    bool busy = false;
    bool cancelled = false;
};
