// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

class CMD_Source;

/// The sources of a manager: the console at the bottom, scripts and texts above it; the top one is the current one. A
/// statement that runs on a source shares it, so a source can outlive its time on the stack.
///
/// While a statement waits, what is served runs on a console of its own above the sources of that statement.
class CMD_SourceStack {
public:
    using SourceRef = std::shared_ptr<CMD_Source>;

    /// Where the present console is.
    struct Console {
        size_t index = 0;
        int channelBlocksBelow = 0;   // those that were open when the wait began
    };

    explicit CMD_SourceStack(SourceRef bottom);
    ~CMD_SourceStack();
    CMD_SourceStack(const CMD_SourceStack &) = delete;
    CMD_SourceStack &operator=(const CMD_SourceStack &) = delete;

    const SourceRef &top() const { return sources.back(); }
    const SourceRef &operator[](size_t index) const { return sources[index]; }
    size_t size() const { return sources.size(); }
    auto rbegin() const { return sources.rbegin(); }
    auto rend() const { return sources.rend(); }

    const Console &getConsole() const { return console; }
    /// The size of the stack when the console is on top.
    size_t consoleDepth() const { return console.index + 1; }
    /// The number of sources above the console.
    size_t level() const { return sources.size() - consoleDepth(); }

    void push(SourceRef source);
    /// Removes and returns the top source, which must be above the console.
    SourceRef pop();
    /// Removes all sources, the console last.
    void clear();
    /// Puts a new console on top. Returns the former one, for setConsole.
    Console pushConsole();
    void setConsole(Console former) { console = former; }

    /// Whether the current source or one below it has a local `noalias`.
    bool areAliasesOff() const;
    /// Reads the variable again, for the sources from the index on.
    void updateAliasesOff(size_t index);

private:
    std::vector<SourceRef> sources;
    Console console;
};
