// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

// The seam between the library and the component around libedit, a shared object that is loaded when the first line is
// edited: linked in, libedit costs each start of a process a quarter of a millisecond.

/// What libedit itself does to a line.
enum class EDL_Command {
    Left,
    Right,
    WordLeft,
    WordRight,
    LineStart,
    LineEnd,
    DeleteLeft,
    DeleteRight,
    KillToStart,
    KillToEnd,
    KillWordLeft,
    KillWordRight,
    Transpose,
    ClearScreen,
    Count
};

/// A line that is being edited, and how it looks on the terminal. Each wide character takes one or two columns there, but
/// for control characters. Nothing is read, and nothing is written but to a buffer: see takeOutput.
class EDL_Line {
public:
    virtual ~EDL_Line() = default;

    /// The prompt from the next drawing on.
    virtual void setPrompt(std::wstring_view prompt) = 0;
    /// Draws prompt and line, with the terminal's cursor in the first column of an empty row.
    virtual void draw() = 0;
    virtual void run(EDL_Command command) = 0;
    /// Puts one character in at the cursor. As replace does, with less to write.
    virtual void type(wchar_t place) = 0;
    /// Puts other text in the place of what lies between two places, and the cursor at a third one.
    virtual void replace(std::size_t from, std::size_t to, std::wstring_view text, std::size_t cursor) = 0;
    /// Reads the size of the terminal again; draw has to follow.
    virtual void resize() = 0;

    virtual std::wstring_view getText() const = 0;
    virtual std::size_t getCursor() const = 0;
    /// What has to be written to the terminal, in UTF-8, since the last call.
    virtual std::string takeOutput() = 0;
};

/// Makes a line for the terminal on standard input, which is in its mode for editing. Null when libedit cannot work there.
using EDL_MakeFunction = EDL_Line *();
/// The name that the component exports it by. The number changes with what stands above.
#define EDL_MAKE_FUNCTION EDLmakeLine3

/// As EDL_MakeFunction; null also when the component is missing.
std::unique_ptr<EDL_Line> EDLmakeLine();
