// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include <orvlang/engine/CMD_Manager.h>

/// Reports on standard error what waits for another line of input. Returns false when nothing does.
bool reportOpenInput(CMD_Manager::Pending pending);

/// Follows the text that is sent to a port, to know what it leaves open there. Knows the text only, not the scripts and
/// aliases that it runs. A `read` in a loop or in a branch counts as a single one.
class SentInput {
public:
    /// Adds a line that counts as typed.
    void addLine(std::string_view line);
    /// Adds text of any number of lines. Of several lines only a `read` stays open after the text.
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
