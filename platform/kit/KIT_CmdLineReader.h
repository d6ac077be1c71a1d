// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_StringArray;
class KIT_WorkBuffer;

/// Reads command lines from standard input. All readers share the one buffer of standard input, so one may be made
/// for a single question.
class CMD_API KIT_CmdLineReader {
public:
    /// Gives the prompt to be shown when the line has to be drawn again.
    using PromptCallback = const char *(*)();
    /// Adds what the word before the cursor of the line could become.
    using CompletionCallback = void (*)(const char *line, int cursor, KIT_StringArray &candidates);

    /// Both serve line editing on a terminal, may be null, and are not asked by plain reading.
    KIT_CmdLineReader(PromptCallback prompt, CompletionCallback completion);

    /// Waits for a line and gives it without its newline. False at the end of input and when it was interrupted.
    bool readLine(KIT_WorkBuffer &line);
    /// Appends the input that is there to the line, without waiting; `done` is set when the line is complete. False when
    /// the input has ended.
    bool readPartOfLine(KIT_WorkBuffer &line, bool &done);
    /// Whether there is input that was read from the system and not handed on.
    bool holdsInput() const;
};
