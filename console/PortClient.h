// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include "ConsoleOptions.h"
#include "OpenInput.h"
#include "PortConnection.h"
#include "RecallFile.h"

/// The program as a client of the command port of another program, which runs the text or the lines. Their output is
/// written here.
class PortClient {
public:
    explicit PortClient(const ConsoleOptions &options);

    /// Runs what the options ask for. Returns the exit status: the status of the last statement, or 1, with a message,
    /// when that cannot be found out.
    int run();

private:
    bool runText();
    bool runLines();
    bool exchange(std::string_view request);
    bool readLine();
    bool readLineOnce();
    static const char *getPrompt();
    int askStatus();
    void show(std::string_view reply) const;

    const ConsoleOptions options;
    const bool onTerminal;
    PortConnection connection;
    KIT_CmdLineReader reader;
    RecallFile recall;
    SentInput sent;
    KIT_WorkBuffer line;     // the latest one that was read
    std::string reply;       // the latest one
    bool isServed = false;   // a reply has arrived
};
