// SPDX-License-Identifier: Apache-2.0
// The manager's commands for a host: installing, asking for and listing them.
#include <orvlang/engine/CMD_Engine.h>

void CMD_Manager::installCommand(const char *name, const char *options, CMD_CommandCallback callback,
                                 bool safe) {
    engine->commands.install(name, options, callback, safe);
}

int CMD_Manager::isCommandDefined(const char *name) {
    return name && engine->findCommand(name, true) == CMD_Registry::Match::Found ? 1 : 0;
}

const char *CMD_Manager::getOptions(const char *name) {
    CMD_Command *command = nullptr;
    const bool found = name && engine->findCommand(name, false, &command) == CMD_Registry::Match::Found;
    return found ? command->getOptions() : nullptr;
}

void CMD_Manager::getDSOCommands(KIT_PtrArray<CMD_Command *> &list) {
    for (CMD_Command *command : engine->commands.getSortedList()) {
        if (command->getDSOLocation())
            list.append(command);
    }
}
