// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_Args.h>

#include <iostream>

#include <orvlang/engine/CMD_Command.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/engine/CMD_Source.h>

CMD_Args::~CMD_Args() = default;

void CMD_Args::init(CMD_Manager &theManager, const CMD_Source &source, std::ostream *out, std::ostream *err) {
    manager = &theManager;
    outStream = out ? out : &std::cout;
    errStream = err ? err : &std::cerr;
    sourceName = source.getFilename();
    lineNumber = source.getLineNumber();
    command = nullptr;
    errorPrefixPending = 1;
}

std::ostream &CMD_Args::err(int prefix) {
    if (errorPrefixPending && prefix && !sourceName.isEmpty()) {
        errorPrefixPending = 0;
        if (!(sourceName == "stdin"))
            *errStream << sourceName << " (" << lineNumber << "): ";
    }
    return *errStream;
}

void CMD_Args::showUsage() {
    if (!command) {
        err(1) << "Invalid usage for <unknown> command" << std::endl;
        return;
    }
    err(1) << command->getName() << ":  Invalid usage\n";
    manager->commandHelp(err(1), command->getName());
}

KIT_String CMD_Args::commandName() const {
    return command->getName();
}

void CMD_Args::callBaseClassCommand() {
    if (!command || !command->getChainCommand())
        return;
    CMD_Command *const overriding = command;
    command = overriding->getChainCommand();
    // The callback can have run something on another manager.
    if (CMD_Manager::getContext() != manager)
        manager->setContext();
    command->getCallback()(*this);
    command = overriding;
}
