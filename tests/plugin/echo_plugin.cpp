// SPDX-License-Identifier: Apache-2.0
// A plug-in library, built twice under two names: it puts itself in front of `echo`, whoever was there before, and has
// a command of its own.
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Manager.h>

#include <iostream>

namespace {

void cmd_echo(CMD_Args &args) {
    args.out() << PLUGIN_NAME ": ";
    args.callBaseClassCommand();
}

/// Lists the commands that plug-ins brought, each with the file name of its library.
void cmd_plugins(CMD_Args &args) {
    KIT_PtrArray<CMD_Command *> commands;
    CMD_Manager::getContext()->getDSOCommands(commands);
    for (const CMD_Command *command : commands) {
        const std::string_view library = command->getDSOLocation();
        args.out() << command->getName() << " " << library.substr(library.rfind('/') + 1) << std::endl;
    }
}

}   // namespace

extern "C" CMD_API void CMDextendLibrary(CMD_Manager *manager) {
    manager->installCommand("echo", "n", cmd_echo, true);
    manager->installCommand(PLUGIN_NAME "_plugins", "", cmd_plugins, false);
}
