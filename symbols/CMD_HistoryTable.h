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
    CMD_Line line;   // with a NUL behind it
    int number = 0;
};

/// The latest 200 lines of a source, numbered consecutively, and the `!` and `^` forms that refer to them.
/// Numbers start again at 1 only when the table is emptied.
class CMD_API CMD_HistoryTable {
public:
    /// The number of lines held, 0 to 200.
    unsigned int entries() const { return static_cast<unsigned int>(lines.size()); }
    void addHistory(const char *line);
    /// The same without a copy, for a line that owns its text and has a NUL behind it.
    void addHistory(CMD_Line line);
    /// Replaces the history forms in the line and shows the result on the manager's error stream. 1 when there
    /// was a form, even one that refers to nothing; otherwise 0; then only the backslash of a `\!` is gone.
    int historyExpand(CMD_Manager *manager, KIT_String &line) const;
    /// 0 is the newest line, 1 the one before; null outside. Valid until the table changes.
    const char *getCommand(int index) const;
    /// Writes number, two blanks and text of each line, the oldest first.
    void saveHistory(std::ostream &os) const;
    void clearAndDestroy() { lines.clear(); }

private:
    /// Replaces the `!` forms. True when there was one; a `\!` alone loses its backslash.
    bool expandForms(KIT_String &line) const;
    /// Appends the line that a form refers to; gives the bytes of the form behind its `!`.
    size_t getHistory(std::string_view spec, std::string &out) const;
    /// The line that the word of a form refers to; null for none. There must be lines.
    const CMD_History *findLine(std::string_view word) const;
    /// `^old^new^rest` on the newest line. -1 with an empty line when there is nothing to replace, else 1.
    int editHistory(KIT_String &line) const;

    std::vector<CMD_History> lines;   // oldest first
};
