// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_AliasTable.h>

#include <cstring>

#include <orvlang/symbols/CMD_Alias.h>
#include <orvlang/symbols/CMD_SaveLines.h>

int CMD_AliasTable::isValidSymbolName(const char *name) const {
    // An alias of that name would make it impossible to remove any alias.
    if (name && std::strcmp(name, "alias") == 0)
        return 0;
    return CMD_SymbolList::isValidSymbolName(name);
}

CMD_SymbolEntry *CMD_AliasTable::createEntry(const char *name, const char *value, bool flag) {
    return new CMD_Alias(name, value, flag);
}

void CMD_AliasTable::save(CMD_Manager *manager, std::ostream &os) const {
    KIT_StringArray names;
    getSymbolNames(names);
    CMDsaveLines(*manager, os, *this, names, { "alias ", " ", "Save Alias Table" });
}
