// SPDX-License-Identifier: Apache-2.0
// What a half-typed command word can become.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>

#include <orvlang/symbols/CMD_AliasTable.h>

void CMD_Manager::matchCommands(const char *prefix, KIT_StringArray &names) const {
    const std::string_view start = prefix ? prefix : "";
    KIT_StringArray aliasNames;
    engine->aliases->getAliasNames(aliasNames);
    for (const char *alias : aliasNames) {
        if (std::string_view(alias).starts_with(start))
            names.append(alias);
    }
    for (const CMD_Command *command : engine->commands.getSortedList()) {
        if (std::string_view(command->getName()).starts_with(start))
            names.append(command->getName());
    }
}

void CMD_Manager::completeCommand(const char *prefix, KIT_String &result) const {
    KIT_StringArray names;
    matchCommands(prefix, names);
    if (names.entries() == 0) {
        result = prefix ? prefix : "";
        return;
    }
    std::string_view common = names[0];
    for (const std::string_view match : names) {
        const auto differing = std::mismatch(common.begin(), common.end(), match.begin(), match.end()).first;
        common = common.substr(0, static_cast<size_t>(differing - common.begin()));
    }
    result = common;
    if (names.entries() == 1)
        result.append(' ');
}
