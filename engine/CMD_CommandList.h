// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_PtrArray.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>

class CMD_Command;

/// The commands of all managers of one name. Sorting waits for the next look-up that needs it, so that a run of
/// installs sorts once; whether it is due is noted here, since any of those managers can install.
struct CMD_CommandList : KIT_PtrArray<CMD_Command *> {
    bool sorted = true;
    KIT_SymbolTable newest;   // name to the command of that name that was installed last
};
