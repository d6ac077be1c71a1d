// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include <orvlang/engine/CMD_Manager.h>

/// Reports on standard error what lacks a further line of input. False when nothing does.
bool reportOpenInput(CMD_Manager::Pending pending);

/// What the text that was sent to a port leaves open there, as far as the text itself shows: scripts and aliases may hold
/// more. A `read` in a loop or in a branch counts as one that asks once.
class SentInput {
public:
    /// A line that counts as typed.
    void addLine(std::string_view line);
    /// Text of any number of lines. Of several lines only a `read` outlasts the text.
    void addText(std::string_view text);

    CMD_Manager::Pending getPending() const;

private:
    void addStatements(std::string_view rest);
    void addStatement(std::string_view command);

    std::string continued;
    std::string afterRead;   // on its line, which waits for the answer as well
    int loops = 0;
    int ifs = 0;
    bool hasReadInLoop = false;
    bool isReadPending = false;
};
