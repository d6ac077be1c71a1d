// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include "ConsoleOptions.h"
#include "RecallFile.h"

/// One run of the program: a manager and the source of its lines.
class Console {
public:
    explicit Console(const ConsoleOptions &options);

    /// Runs what the options ask for. Returns the exit status.
    int run();

private:
    void runLines();
    bool isEntryOpen() const;
    void keepEntry();
    bool runScript();
    void answerReads();
    bool readLine();
    bool readLineOnce();
    void dropTypedLine();
    static const char *makePrompt();
    static int complete(const char *line, int cursor, KIT_StringArray &candidates);

    const ConsoleOptions options;
    const bool onTerminal;
    CMD_Manager manager;
    KIT_CmdLineReader reader;
    RecallFile recall;
    KIT_WorkBuffer line;   // the latest one that was read
    std::string entry;     // for the recall, until it is complete
};
