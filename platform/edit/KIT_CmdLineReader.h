// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_LineEditor;
class KIT_StringArray;
class KIT_WorkBuffer;

/// Reads command lines from standard input. All readers share the one buffer of standard input, so one may be made
/// for a single question.
///
/// A reader with a prompt edits its lines when standard input and output are a terminal: see isEditing. The line that is
/// being typed then stands on the terminal while the process does other things. What they write to the standard streams
/// of C++ does not garble it; whoever writes past those says so with yieldTerminal.
class CMD_API KIT_CmdLineReader {
public:
    /// Gives the prompt, when a line begins and when it has to be drawn again behind other output.
    using PromptCallback = const char *(*)();
    /// Adds what the text from some place of the line to the cursor could become, and gives that place. A candidate ends
    /// with a blank if a word ends with it; nothing is added to it.
    using CompletionCallback = int (*)(const char *line, int cursor, KIT_StringArray &candidates);

    /// Both serve the editing of lines; a reader without a prompt does not edit.
    KIT_CmdLineReader(PromptCallback prompt, CompletionCallback completion);
    ~KIT_CmdLineReader();
    KIT_CmdLineReader(const KIT_CmdLineReader &) = delete;
    KIT_CmdLineReader &operator=(const KIT_CmdLineReader &) = delete;

    /// Waits for a line and gives it without its newline. False at the end of input and when it was interrupted.
    bool readLine(KIT_WorkBuffer &line);

    // For an event loop: beginLine; readPartOfLine whenever there is input, and showLine before each wait; endLine.

    /// Appends the input that is there to the line, without waiting; a line that is edited is replaced by what it is now.
    /// `done` is set when the line is complete. False when the input has ended.
    bool readPartOfLine(KIT_WorkBuffer &line, bool &done);
    /// Whether there is input that was read from the system and not handed on.
    bool holdsInput() const;
    /// Has the prompt and the keys go to the line; nothing without editing, as with the following two.
    void beginLine();
    /// Draws what has changed, or was taken away.
    void showLine();
    /// Gives the terminal back as it was. A line that is not complete stays on it, with the cursor behind.
    void endLine();

    /// Whether lines are edited: there is a prompt, which the reader then shows itself, both standard streams are one
    /// terminal that can move its cursor ($TERM is set and not dumb), libedit is there, and ORVANE_PLAIN_INPUT is not set.
    /// Asked in the background, the process stops until it comes to the foreground, as it would when it reads there.
    bool isEditing();
    /// Puts a line into what the arrow keys and the search bring back.
    void remember(const char *line);
    /// Drops what was typed ahead or pasted and has not been read: for a host whose user interrupts.
    static void dropInput();

    /// Takes a half-typed line off the terminal and gives that its usual mode; both come back with showLine.
    static void yieldTerminal();

    // For signal handlers of a host.

    /// Gives the terminal its usual mode: before the process stops or ends.
    static void releaseTerminal();
    /// When the process goes on (SIGCONT), and when the terminal has another size (SIGWINCH).
    static void retakeTerminal();
    static void noteTerminalResize();

private:
    const PromptCallback prompt;
    const CompletionCallback completion;
    bool mayEdit;
    bool isAwaited = false;                   // the line, between beginLine and endLine
    std::unique_ptr<KIT_LineEditor> editor;   // made when it is first needed
};
