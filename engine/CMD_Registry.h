// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include <orvlang/engine/CMD_Command.h>
#include <orvlang/engine/CMD_CommandList.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>

/// The commands of one manager: those that it has installed itself, and the list that it shares with all managers of
/// its name. A command of its own comes before one of the same name in the list.
class CMD_Registry {
public:
    enum class Match { Found, Missing, Ambiguous, Unsafe };

    explicit CMD_Registry(std::string_view managerName);
    CMD_Registry(const CMD_Registry &) = delete;
    CMD_Registry &operator=(const CMD_Registry &) = delete;

    /// See CMD_Manager::installCommand.
    void install(const char *name, const char *options, CMD_CommandCallback callback, bool safe);
    /// Looks a command up by its name or, unless `exact`, by a prefix that no other name begins with. Sets `command`,
    /// which may be null, only when the result is Found. A command that is not safe is Unsafe when `safeOnly`.
    Match find(std::string_view name, bool exact, bool safeOnly, CMD_Command **command) const;

    /// The shared list; a new command is not sorted in yet.
    const CMD_CommandList &getList() const { return list; }
    const CMD_CommandList &getSortedList() const;

private:
    static std::string_view nameOf(const CMD_Command *command) { return command->name; }
    static CMD_CommandList &sharedList(std::string_view managerName);
    CMD_Command *findOwn(std::string_view name) const;

    CMD_CommandList &list;   // never freed
    KIT_SymbolTable own;
};
