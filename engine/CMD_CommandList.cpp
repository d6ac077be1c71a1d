// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_CommandList.h>

#include <orvlang/engine/CMD_Command.h>

CMD_Command *CMD_CommandList::find(std::string_view name) const {
    KIT_Thing thing;
    return newest.findSymbol(name, thing) ? thing.as<CMD_Command>() : nullptr;
}

void CMD_CommandList::put(CMD_Command &command, CMD_Command *older) {
    command.older = older;
    if (older) {
        command.index = older->index;
        (*this)[command.index] = &command;
    } else {
        command.index = entries();
        append(&command);
        sorted = false;
    }
    newest.addSymbol(command.name, KIT_Thing(&command));
}

void CMD_CommandList::sort() {
    if (sorted)
        return;
    KIT_PtrArray::sort(
        [](const CMD_Command *a, const CMD_Command *b) { return std::string_view(a->name).compare(b->name); });
    int index = 0;
    for (CMD_Command *command : *this)
        command->index = index++;
    sorted = true;
}
