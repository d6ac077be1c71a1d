// SPDX-License-Identifier: Apache-2.0
// The way of the input: a script or text given with the program goes to the manager as a whole, and only a `read` in it
// takes lines from standard input (answerReads). Otherwise every line of standard input is a line that somebody typed
// (runLines). When the input ends while the language still waits for some, that is an error.
#include "Console.h"

#include <csignal>
#include <iostream>
#include <utility>

#include <unistd.h>

#include <orvlang/bridge/CMD_Python.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/kit/KIT_Interrupt.h>
#include <orvlang/port/CMD_EvtMonitoringReader.h>

#include "Completion.h"
#include "ConsoleSignals.h"
#include "OpenInput.h"

namespace {

/// The line that sources a script: a script name may look like an option, and no argument is expanded. The blank at the
/// end keeps a backslash in front of it from continuing the line.
void buildScriptLine(char **words, KIT_WorkBuffer &line) {
    line.strcpy("cmdread --");
    for (char **word = words; *word; ++word) {
        line.append(' ');
        line.protectedStrcat(*word, true);
    }
    line.append(' ');
}

}   // namespace

Console::Console(const ConsoleOptions &options)
    : options(options), onTerminal(isatty(STDIN_FILENO)), manager(options.managerName, 1),
      reader(makePrompt, complete) {
    for (const ConsoleOptions::PythonCommand &command : options.pythonCommands)
        manager.installCommand(command.name, command.options, CMDpythonCommandCallback, false);
    manager.setSafeMode(options.safeMode);
}

int Console::run() {
    ConsoleSignals::install();
    if (onTerminal)
        ConsoleSignals::installForEditing();
    CMD_EvtMonitoringReader::inst();   // before anything runs: ports are served from now on
    bool opened = true;
    if (options.action == ConsoleOptions::Action::Script)
        opened = runScript();
    else if (options.action == ConsoleOptions::Action::Text)
        manager.sendMultiLineInput(options.text, false);
    else
        runLines();
    answerReads();

    if (const int number = ConsoleSignals::pending())
        return 128 + number;
    if (reportOpenInput(manager.getPendingInput()) || !opened)
        return 1;
    return manager.getStatusCode() & 0xff;
}

void Console::runLines() {
    if (reader.isEditing())
        recall.seed(reader);
    // A line may end the program.
    KIT_Exit::addExitCallback([](void *console) { static_cast<Console *>(console)->keepEntry(); }, this);
    for (;;) {
        const bool isAnswer = manager.getPendingInput() == CMD_Manager::Pending::Read;
        if (!readLine())
            break;
        if (reader.isEditing() && !isAnswer)
            entry.append(entry.empty() ? "" : "\n").append(line.view());
        manager.sendInput(line.c_str(), false);
        if (!isEntryOpen())
            keepEntry();
    }
    if (onTerminal)
        std::cout << std::endl;   // what comes next, the shell's prompt mostly, begins on a line of its own
}

/// Whether the next line belongs to what was typed before, so that the recall brings both back together.
bool Console::isEntryOpen() const {
    const CMD_Manager::Pending pending = manager.getPendingInput();
    return pending == CMD_Manager::Pending::Loop || pending == CMD_Manager::Pending::Continuation;
}

void Console::keepEntry() {
    recall.add(reader, std::exchange(entry, {}));
}

/// False when there is no such script; `cmdread` has told so then.
bool Console::runScript() {
    struct Watch {
        CMD_Manager &manager;
        bool opened;
    } watch = { manager, false };
    // The first statement to end is the `cmdread` itself: the script is the current source by then, and has not begun.
    manager.setPostCmdCallback(
        [](void *data) {
            Watch &seen = *static_cast<Watch *>(data);
            seen.opened = seen.manager.getSourceLevel() > 0;
            seen.manager.setPostCmdCallback(nullptr, nullptr);
        },
        &watch);
    KIT_WorkBuffer command;
    buildScriptLine(options.words, command);
    manager.sendInput(command.c_str(), false);
    return watch.opened;
}

/// A script or text that stops at a `read` goes on with the next line of standard input.
void Console::answerReads() {
    using Pending = CMD_Manager::Pending;
    for (Pending pending = manager.getPendingInput();
         pending == Pending::Read || pending == Pending::Continuation; pending = manager.getPendingInput()) {
        if (!readLineOnce())
            return;
        manager.sendInput(line.c_str(), false);
    }
}

/// The next line, asked for with the prompt. On a terminal an interrupt drops the line that is being typed, or has
/// stopped the statement before, and the prompt comes again; elsewhere it ends the input.
bool Console::readLine() {
    for (;;) {
        if (onTerminal && ConsoleSignals::takeInterrupt())
            dropTypedLine();
        else if (ConsoleSignals::pending())
            return false;
        if (!reader.isEditing())
            manager.doPrompt();
        if (readLineOnce())
            return true;
        if (!ConsoleSignals::pending())
            return false;
        if (reader.isEditing() && ConsoleSignals::pending() == SIGINT)
            std::cout << "^C";   // as the terminal shows it otherwise
    }
}

/// False at the end of input, and when a signal came.
bool Console::readLineOnce() {
    const KIT_Operation operation("Read a line");   // so that a signal finds something to interrupt
    return !ConsoleSignals::pending() &&
           CMD_EvtMonitoringReader::inst().getline(reader, line) == CMD_EvtMonitoringReader::GotLine;
}

void Console::dropTypedLine() {
    std::cout << std::endl;
    KIT_CmdLineReader::dropInput();
    manager.abandonInput();
    keepEntry();
}

const char *Console::makePrompt() {
    static KIT_String text;
    if (CMD_Manager *const manager = CMD_Manager::getContext())
        manager->getPrompt(text);
    return text.c_str();
}

int Console::complete(const char *line, int cursor, KIT_StringArray &candidates) {
    CMD_Manager *const manager = CMD_Manager::getContext();
    return manager ? Completion::complete(*manager, line, cursor, candidates) : cursor;
}
