// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <orvlang/engine/CMD_Line.h>
#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

class CMD_Manager;

/// One line that was typed, and its number; the first line ever is 1.
struct CMD_History {
    CMD_Line line;   // followed by a NUL
    int number = 0;
};

/// The latest 200 lines of a source, numbered consecutively, and the `!` and `^` forms that refer to them.
/// Numbers start again at 1 only when the table is emptied.
class CMD_API CMD_HistoryTable {
public:
    /// The number of lines held, 0 to 200.
    unsigned int entries() const { return static_cast<unsigned int>(lines.size()); }
    void addHistory(const char *line);
    /// The same without a copy, for a line that owns its text, followed by a NUL.
    void addHistory(CMD_Line line);
    /// Replaces the history forms in the line and shows the result on the manager's error stream. Returns 1 when
    /// there was a form, even one that refers to nothing. Otherwise returns 0 and removes only the backslash of a `\!`.
    int historyExpand(CMD_Manager *manager, KIT_String &line) const;
    /// Returns a line by its index, 0 the newest, 1 the one before; null outside. Valid until the table changes.
    const char *getCommand(int index) const;
    /// Writes number, two blanks and text of each line, the oldest first.
    void saveHistory(std::ostream &os) const;
    void clearAndDestroy() { lines.clear(); }

private:
    /// Replaces the `!` forms. Returns true when there was one. Without one it removes the backslash of a `\!`.
    bool expandForms(KIT_String &line) const;
    /// Appends the line that a form refers to. Returns the length of the form after its `!`.
    size_t getHistory(std::string_view spec, std::string &out) const;
    /// Returns the line that the word of a form refers to; null for none. The table must not be empty.
    const CMD_History *findLine(std::string_view word) const;
    /// Applies `^old^new^rest` to the newest line. Returns -1 and an empty line when there is nothing to replace,
    /// else 1.
    int editHistory(KIT_String &line) const;

    std::vector<CMD_History> lines;   // oldest first
};
