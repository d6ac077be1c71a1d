// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_Command.h>

#include <orvlang/platform/kit/KIT_DSO.h>

CMD_Command::CMD_Command(const char *commandName, const char *optionString, CMD_CommandCallback body,
                         bool isSafeCommand)
    : name(commandName), options(optionString), dsoLocation(KIT_DSO::getRunningFile()), callback(body),
      safe(isSafeCommand) {}
