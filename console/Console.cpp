// SPDX-License-Identifier: Apache-2.0
// The road of the input: a script or text of the command line is passed to the manager as a whole, and only a `read` in
// it reads lines of standard input (answerReads). Otherwise each line of standard input is passed on as a typed line
// (runLines). It is an error when the input ends while the language waits for more.
#include "Console.h"

#include <csignal>
#include <iostream>
#include <utility>

#include <unistd.h>

#include <orvlang/bridge/CMD_Python.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/port/CMD_EvtMonitoringReader.h>

#include "Completion.h"
#include "ConsoleSignals.h"
#include "OpenInput.h"

namespace {

/// Builds the line that sources a script. The name of the script may look like an option, and no argument is expanded.
/// The blank at the end keeps a backslash before it from continuing the line.
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
    CMD_EvtMonitoringReader::inst();   // before anything runs, so that ports are served from now on
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
        std::cout << std::endl;   // the prompt of the shell starts on a line of its own
}

/// Returns true when the next line continues what was typed before: the recall keeps both as one entry.
bool Console::isEntryOpen() const {
    const CMD_Manager::Pending pending = manager.getPendingInput();
    return pending == CMD_Manager::Pending::Loop || pending == CMD_Manager::Pending::Continuation;
}

void Console::keepEntry() {
    recall.add(reader, std::exchange(entry, {}));
}

/// Returns false when `cmdread` could not open the script, which it has reported.
bool Console::runScript() {
    struct Watch {
        CMD_Manager &manager;
        bool opened;
    } watch = { manager, false };
    // The first statement to end is the `cmdread` itself. The script is the current source then, and has not started.
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

/// Continues a script or text that stopped at a `read` with the next line of standard input.
void Console::answerReads() {
    using Pending = CMD_Manager::Pending;
    for (Pending pending = manager.getPendingInput();
         pending == Pending::Read || pending == Pending::Continuation; pending = manager.getPendingInput()) {
        if (!readLineOnce())
            return;
        manager.sendInput(line.c_str(), false);
    }
}

/// Prompts for the next line. On a terminal an interrupt, which stopped the statement before or drops the line that is
/// being typed, only repeats the prompt; elsewhere it ends the input.
bool Console::readLine() {
    for (;;) {
        if (onTerminal && ConsoleSignals::clearInterrupt())
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

/// Returns false at the end of input and after a signal.
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
