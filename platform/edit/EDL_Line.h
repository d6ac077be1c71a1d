// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The seam between the library and the component around libedit, a shared object that is loaded when the first line is
// edited. Linked in, libedit would cost each start of a process a quarter of a millisecond.

/// The commands that libedit itself executes.
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

/// A line that is being edited, and its drawing. Each wide character has one or two columns on the terminal, except
/// control characters. Reads nothing, and writes only to a buffer: see extractOutput.
class EDL_Line {
public:
    virtual ~EDL_Line() = default;

    /// Sets the prompt of the next drawing.
    virtual void setPrompt(std::wstring_view prompt) = 0;
    /// Draws prompt and line. The terminal's cursor must be in the first column of an empty row.
    virtual void draw() = 0;
    virtual void run(EDL_Command command) = 0;
    /// Inserts one character at the cursor. Writes less than replace does.
    virtual void type(wchar_t character) = 0;
    /// Replaces the text between two offsets and moves the cursor to a third one.
    virtual void replace(std::size_t from, std::size_t to, std::wstring_view text, std::size_t cursor) = 0;
    /// Reads the size of the terminal again; draw must follow.
    virtual void resize() = 0;

    virtual std::wstring_view getText() const = 0;
    virtual std::size_t getCursor() const = 0;
    /// Returns what the terminal has to be sent since the last call, in UTF-8.
    virtual std::string extractOutput() = 0;
};

/// Makes a line for the terminal on standard input, which is in its mode for editing. Null when libedit cannot work
/// there.
using EDL_MakeFunction = EDL_Line *();
/// The name by which the component exports it. The number changes with the declarations above.
#define EDL_MAKE_FUNCTION EDLmakeLine3
