// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_LineEditor;
class KIT_StringArray;
class KIT_WorkBuffer;

/// Reads command lines from standard input. All readers share one buffer of standard input, so a reader may be made for
/// a single question.
///
/// A reader with a prompt edits its lines when standard input and output are a terminal: see isEditing. The line that
/// is being typed stays on the terminal while the process does other work. Output to the standard streams of C++ does
/// not garble it; call yieldTerminal before output of another kind.
class CMD_API KIT_CmdLineReader {
public:
    /// Returns the prompt. Called when a line starts and when it is drawn again after other output.
    using PromptCallback = const char *(*)();
    /// Appends the candidates for the text before the cursor, an offset in bytes, and returns the offset from which they
    /// replace it. The editor adds nothing to a candidate: it ends with a blank if it completes a word.
    using CompletionCallback = int (*)(const char *line, int cursor, KIT_StringArray &candidates);

    /// The callbacks serve the editing. A reader without a prompt does not edit. Both may be null.
    KIT_CmdLineReader(PromptCallback prompt, CompletionCallback completion);
    ~KIT_CmdLineReader();
    KIT_CmdLineReader(const KIT_CmdLineReader &) = delete;
    KIT_CmdLineReader &operator=(const KIT_CmdLineReader &) = delete;

    /// Waits for a line and stores it without its newline. Returns false at the end of input and after an interrupt.
    bool readLine(KIT_WorkBuffer &line);

    // For an event loop: beginLine; readPartOfLine whenever there is input, and showLine before each wait; endLine.

    /// Appends the available input to the line, without waiting; replaces a line that is edited by its present text.
    /// Sets `done` when the line is complete. Returns false when the input has ended.
    bool readPartOfLine(KIT_WorkBuffer &line, bool &done);
    /// Returns true when there is input that was read from the system and not returned yet.
    bool holdsInput() const;
    /// Starts editing a line. Does nothing without editing, like the following two.
    void beginLine();
    /// Draws what has changed or was removed from the terminal.
    void showLine();
    /// Restores the usual mode of the terminal. An incomplete line stays on it, with the cursor after it.
    void endLine();

    /// Returns true when lines are edited: there is a prompt, which the reader then shows itself, both standard streams
    /// are one terminal that can move its cursor ($TERM is set and not dumb), libedit is available, and
    /// ORVANE_PLAIN_INPUT is not set. Stops a process in the background until it comes to the foreground, as reading
    /// would.
    bool isEditing();
    /// Adds a line to those that the arrow keys and the search bring back.
    void remember(const char *line);
    /// Drops what was typed ahead or pasted and has not been read. For a host that handles an interrupt.
    static void dropInput();

    /// Removes a half-typed line from the terminal and restores its usual mode. showLine undoes both.
    static void yieldTerminal();

    // For signal handlers of a host.

    /// Restores the usual mode of the terminal, before the process stops or ends.
    static void releaseTerminal();
    /// To be called when the process continues (SIGCONT), and when the size of the terminal has changed (SIGWINCH).
    static void resumeTerminal();
    static void noteTerminalResize();

private:
    const PromptCallback prompt;
    const CompletionCallback completion;
    bool mayEdit;
    bool isAwaited = false;                   // between beginLine and endLine
    std::unique_ptr<KIT_LineEditor> editor;   // made when it is first needed
};
