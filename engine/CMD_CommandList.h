// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include <orvlang/platform/kit/KIT_PtrArray.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>

class CMD_Command;

/// The commands of all managers of one name, one for each command name: the newest. The list is sorted by the next
/// look-up that needs it, so that a series of installs sorts once. It keeps the mark for that itself, since any of
/// those managers can install.
class CMD_CommandList : public KIT_PtrArray<CMD_Command *> {
public:
    /// Returns null when there is none.
    CMD_Command *find(std::string_view name) const;
    /// Adds a command, or replaces `older`, which has the same name.
    void put(CMD_Command &command, CMD_Command *older);
    /// Sorts by name, by unsigned bytes.
    void sort();

private:
    bool sorted = true;
    KIT_SymbolTable newest;
};
