// SPDX-License-Identifier: Apache-2.0
// The registry of commands: installing, overriding, and finding by exact name or by unique prefix.
#include <orvlang/engine/CMD_Manager.h>

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

CMD_CommandList *CMD_Manager::getCommandList(const char *managerName) {
    if (!theCommandLists)
        theCommandLists = new KIT_SymbolTable;
    KIT_Thing thing;
    if (theCommandLists->findSymbol(managerName, thing))
        return thing.as<CMD_CommandList>();
    auto *list = new CMD_CommandList;
    theCommandLists->addSymbol(managerName, KIT_Thing(list));
    return list;
}

void CMD_Manager::installCommand(const char *commandName, const char *options, CMD_CommandCallback callback,
                                 bool safe) {
    if (!commandName || !callback)
        return;
    if (!options)
        options = "";
    CMD_Command *overridden = ownCommand(commandName);
    const CMD_Command wanted(commandName, options, callback, safe);
    CMD_Command *command = overridden ? nullptr : findTwin(wanted);
    if (!command) {
        command = new CMD_Command(wanted);
        if (overridden)
            overrideCommand(*overridden, *command);
        else
            appendCommand(*command);
    }
    commandTable->addSymbol(commandName, KIT_Thing(command));
}

void CMD_Manager::overrideCommand(CMD_Command &overridden, CMD_Command &command) {
    command.chainCommand = &overridden;
    command.index = overridden.index;
    (*commandList)[command.index] = &command;
    commandList->newest.addSymbol(command.name, KIT_Thing(&command));
}

void CMD_Manager::appendCommand(CMD_Command &command) {
    command.index = commandList->entries();
    commandList->append(&command);
    commandList->sorted = false;
    commandList->newest.addSymbol(command.name, KIT_Thing(&command));
}

// Lists outlive their managers. A program that makes one manager of a name after the other would otherwise see
// the list grow for ever, and each abbreviation become ambiguous.
CMD_Command *CMD_Manager::findTwin(const CMD_Command &wanted) const {
    KIT_Thing thing;
    if (!commandList->newest.findSymbol(wanted.name, thing))
        return nullptr;
    auto *other = thing.as<CMD_Command>();
    const bool isTwin = other->callback == wanted.callback && other->safe == wanted.safe &&
                        std::string_view(other->options) == wanted.options &&
                        other->dsoLocation == wanted.dsoLocation;
    return isTwin ? other : nullptr;
}

CMD_Command *CMD_Manager::ownCommand(std::string_view commandName) const {
    KIT_Thing thing;
    return commandTable->findSymbol(commandName, thing) ? thing.as<CMD_Command>() : nullptr;
}

int CMD_Manager::findCommand(std::string_view commandName, int exact) const {
    sortCommands();
    const CMD_Command *found = ownCommand(commandName);
    if (!found) {
        if (exact)
            return commandMissing;
        const auto begins = [&](const CMD_Command *command) {
            return nameOf(command).starts_with(commandName);
        };
        const auto end = commandList->end();
        auto place = std::lower_bound(commandList->begin(), end, commandName, nameIsBelow);
        if (place == end || !begins(*place))
            return commandMissing;
        const std::string_view fullName = nameOf(*place);
        // An earlier manager of this name may have left a command of the same name: that is no second candidate.
        const auto other =
            std::find_if(place, end, [&](CMD_Command *next) { return nameOf(next) != fullName; });
        if (other != end && begins(*other))
            return commandAmbiguous;
        const CMD_Command *own = ownCommand(fullName);
        found = own ? own : *place;
    }
    return isInSafeMode() && !found->isSafe() ? commandUnsafe : found->index;
}

void CMD_Manager::sortCommands() const {
    if (commandList->sorted)
        return;
    commandList->sort([](const CMD_Command *a, const CMD_Command *b) { return nameOf(a).compare(nameOf(b)); });
    int index = 0;
    for (CMD_Command *command : *commandList)
        command->index = index++;
    commandList->sorted = true;
}

int CMD_Manager::isCommandDefined(const char *commandName) {
    return commandName && findCommand(commandName, 1) >= 0 ? 1 : 0;
}

const char *CMD_Manager::getOptions(const char *commandName) {
    const int index = commandName ? findCommand(commandName, 0) : commandMissing;
    return index < 0 ? nullptr : (*commandList)[index]->getOptions();
}

void CMD_Manager::getDSOCommands(KIT_PtrArray<CMD_Command *> &list) {
    for (CMD_Command *command : *commandList) {
        if (command->getDSOLocation())
            list.append(command);
    }
}
