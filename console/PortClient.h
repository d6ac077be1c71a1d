// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include <orvlang/platform/kit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include "ConsoleOptions.h"
#include "OpenInput.h"
#include "PortConnection.h"
#include "RecallFile.h"

/// The program as a client of the command port of another one: text or lines are run there, and what they write is
/// written here.
class PortClient {
public:
    explicit PortClient(const ConsoleOptions &options);

    /// Runs what the options ask for and gives the exit status: that of the last statement, or 1 with a message when it
    /// cannot be had.
    int run();

private:
    bool runText();
    bool runLines();
    bool exchange(std::string_view request);
    bool readLine();
    bool readLineOnce();
    static const char *givePrompt();
    int askStatus();
    void show(std::string_view reply) const;

    const ConsoleOptions options;
    const bool onTerminal;
    PortConnection connection;
    KIT_CmdLineReader reader;
    RecallFile recall;
    SentInput sent;
    KIT_WorkBuffer line;     // the latest one read
    std::string reply;       // the latest one
    bool isServed = false;   // there was one
};
