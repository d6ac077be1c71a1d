// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

class CMD_Manager;
class CMD_SymbolList;
class KIT_StringArray;

/// The parts of a saved line around the name and the quoted value of its symbol.
struct CMD_SaveForm {
    std::string beforeName;
    const char *beforeValue;
    const char *what;   // named in the error of a stream that fails
};

/// Writes a line of the language for each of the symbols. Stops after a write that fails.
void CMDsaveLines(CMD_Manager &manager, std::ostream &os, const CMD_SymbolList &list,
                  const KIT_StringArray &names, const CMD_SaveForm &form);
