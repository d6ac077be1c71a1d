// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include <orvlang/platform/kit/KIT_PtrArray.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>

class CMD_Command;

/// The commands of all managers of one name, one for each command name: the one that was made last. Sorting waits for
/// the next look-up that needs it, so that a run of installs sorts once; whether it is due is noted here, since any of
/// those managers can install.
class CMD_CommandList : public KIT_PtrArray<CMD_Command *> {
public:
    /// Null when there is none.
    CMD_Command *find(std::string_view name) const;
    /// Adds a command, or puts it in the place of the given one, which has the same name.
    void put(CMD_Command &command, CMD_Command *older);
    /// By name, bytes taken as unsigned.
    void sort();

private:
    bool sorted = true;
    KIT_SymbolTable newest;
};
