// SPDX-License-Identifier: Apache-2.0
// The registry of commands: installing, overriding, and finding by exact name or by unique prefix.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>

#include <orvlang/engine/CMD_CommandList.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>

namespace {

std::string_view nameOf(const CMD_Command *command) {
    return command->getName();
}

bool nameIsBelow(const CMD_Command *command, std::string_view name) {
    return nameOf(command) < name;
}

}   // namespace

CMD_CommandList *CMD_Engine::getCommandList(const char *managerName) {
    if (!theCommandLists)
        theCommandLists = new KIT_SymbolTable;
    KIT_Thing thing;
    if (theCommandLists->findSymbol(managerName, thing))
        return thing.as<CMD_CommandList>();
    auto *list = new CMD_CommandList;
    theCommandLists->addSymbol(managerName, KIT_Thing(list));
    return list;
}

void CMD_Manager::installCommand(const char *name, const char *options, CMD_CommandCallback callback, bool safe) {
    engine->installCommand(name, options, callback, safe);
}

void CMD_Engine::installCommand(const char *commandName, const char *options, CMD_CommandCallback callback,
                                bool safe) {
    if (!commandName || !callback)
        return;
    if (!options)
        options = "";
    const CMD_Command wanted(commandName, options, callback, safe, ownCommand(commandName));
    CMD_Command *newest = commandList->find(commandName);
    CMD_Command *command = newest ? newest->findTwin(wanted) : nullptr;
    if (!command) {
        command = new CMD_Command(wanted);
        commandList->put(*command, newest);
    }
    commandTable->addSymbol(commandName, KIT_Thing(command));
}

CMD_Command *CMD_Engine::ownCommand(std::string_view commandName) const {
    KIT_Thing thing;
    return commandTable->findSymbol(commandName, thing) ? thing.as<CMD_Command>() : nullptr;
}

int CMD_Engine::findCommand(std::string_view commandName, int exact, CMD_Command **command) const {
    CMD_Command *found = ownCommand(commandName);
    if (!found) {
        if (exact)
            return commandMissing;
        commandList->sort();
        const auto begins = [&](const CMD_Command *other) { return nameOf(other).starts_with(commandName); };
        const auto end = commandList->end();
        const auto place = std::lower_bound(commandList->begin(), end, commandName, nameIsBelow);
        if (place == end || !begins(*place))
            return commandMissing;
        if (place + 1 != end && begins(place[1]))
            return commandAmbiguous;
        CMD_Command *own = ownCommand(nameOf(*place));
        found = own ? own : *place;
    }
    if (isInSafeMode() && !found->isSafe())
        return commandUnsafe;
    if (command)
        *command = found;
    return commandFound;
}

int CMD_Manager::isCommandDefined(const char *commandName) {
    return commandName && engine->findCommand(commandName, 1) == CMD_Engine::commandFound ? 1 : 0;
}

const char *CMD_Manager::getOptions(const char *commandName) {
    CMD_Command *command = nullptr;
    const bool found = commandName && engine->findCommand(commandName, 0, &command) == CMD_Engine::commandFound;
    return found ? command->getOptions() : nullptr;
}

void CMD_Manager::getDSOCommands(KIT_PtrArray<CMD_Command *> &list) {
    engine->commandList->sort();
    for (CMD_Command *command : *engine->commandList) {
        if (command->getDSOLocation())
            list.append(command);
    }
}
