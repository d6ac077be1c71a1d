// SPDX-License-Identifier: Apache-2.0
// A host: an application with lamps gets a command language. It installs two commands of its own beside those of the
// language, runs text and keeps what that wrote.
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Manager.h>

namespace {

std::map<std::string, std::string> lamps;   // name, colour

/// lamp [-c colour] name: switches a lamp on.
void cmd_lamp(CMD_Args &args) {
    if (args.argc() != 2) {
        args.err(1) << "lamp: give the name of one lamp" << std::endl;
        CMD_Manager::getContext()->setStatusCode(1);
        return;
    }
    lamps[args.argv(1)] = args.found('c') ? args.argp('c') : "white";
}

/// lamps: lists the lamps that are on.
void cmd_lamps(CMD_Args &args) {
    for (const auto &[name, colour] : lamps)
        args.out() << name << " is " << colour << std::endl;
}

}   // namespace

int main() {
    CMD_Manager manager("embed");
    manager.installCommand("lamp", "c:", cmd_lamp, true);
    manager.installCommand("lamps", "", cmd_lamps, true);

    std::ostringstream output, errors;
    manager.execute("set room = hall\n"
                    "lamp -c \"warm red\" $room\n"
                    "lamp kitchen; lamps\n"
                    "lamp",
                    0, &output, &errors, 1, true);

    std::cout << "Output:\n" << output.str();
    std::cout << "Errors:\n" << errors.str();
    std::cout << "Status of the last statement: " << manager.getStatusCode() << std::endl;
    return 0;
}
