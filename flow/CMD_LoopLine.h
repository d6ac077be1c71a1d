// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

class CMD_Loop;
class CMD_Manager;

/// One line of a loop's body, unchanged. Its address and its text stay valid as long as its loop lives.
class CMD_API CMD_LoopLine {
public:
    /// Copies the text. A line that begins with a loop command owns the loop that it opens.
    CMD_LoopLine(CMD_Manager *manager, std::string_view text, int lineNumber);
    /// The same; null counts as empty.
    CMD_LoopLine(CMD_Manager *manager, const char *text, int lineNumber);
    ~CMD_LoopLine();
    CMD_LoopLine(const CMD_LoopLine &) = delete;
    CMD_LoopLine &operator=(const CMD_LoopLine &) = delete;

    std::string_view getText() const { return text; }

private:
    friend class CMD_Loop;

    std::string text;
    std::unique_ptr<CMD_Loop> loop;   // null for a line that does not open one
    int lineNumber;                   // in the source of the loop
};
