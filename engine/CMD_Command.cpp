// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_Command.h>

#include <string_view>

#include <orvlang/platform/kit/KIT_DSO.h>

CMD_Command::CMD_Command(const char *commandName, const char *optionString, CMD_CommandCallback body,
                         bool isSafeCommand, CMD_Command *overridden)
    : name(commandName), options(optionString), dsoLocation(KIT_DSO::getRunningFile()), callback(body),
      chainCommand(overridden), safe(isSafeCommand) {}

const char *CMD_Command::getName() const {
    return name;
}

const char *CMD_Command::getOptions() const {
    return options;
}

const char *CMD_Command::getDSOLocation() const {
    return dsoLocation.isNull() ? nullptr : dsoLocation.c_str();
}

CMD_CommandCallback &CMD_Command::getCallback() {
    return callback;
}

CMD_Command *CMD_Command::getChainCommand() const {
    return chainCommand;
}

bool CMD_Command::isSafe() const {
    return safe;
}

CMD_Command *CMD_Command::findTwin(const CMD_Command &wanted) {
    const auto isTwin = [&](const CMD_Command &other) {
        return other.callback == wanted.callback && other.safe == wanted.safe &&
               other.chainCommand == wanted.chainCommand && std::string_view(other.options) == wanted.options &&
               other.dsoLocation == wanted.dsoLocation;
    };
    CMD_Command *twin = this;
    while (twin && !isTwin(*twin))
        twin = twin->older;
    return twin;
}
