// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_VariableTable.h>

#include <algorithm>
#include <string>
#include <string_view>

#include <orvlang/platform/osl/KIT_Lock.h>
#include <orvlang/symbols/CMD_SaveLines.h>
#include <orvlang/symbols/CMD_Variable.h>

namespace {

constexpr std::string_view theProtectedNames[] = { "ORP", "JOB", "ORPNAME" };

}   // namespace

int CMD_VariableTable::destroySymbol(const char *name) {
    if (name && std::ranges::find(theProtectedNames, std::string_view(name)) != std::end(theProtectedNames))
        return 0;
    return CMD_SymbolList::destroySymbol(name);
}

CMD_SymbolEntry *CMD_VariableTable::createEntry(const char *name, const char *value, bool flag) {
    return new CMD_Variable(name, value, flag);
}

int CMD_VariableTable::getVariableNames(KIT_StringArray &names, int dirtyOnly) const {
    const KIT_LockHolder holder(getLock());
    const int before = names.entries();
    if (!dirtyOnly) {
        getSymbolNames(names);
        return names.entries();
    }
    for (const KIT_LinkNode *node : *this) {
        const auto *variable = static_cast<const CMD_Variable *>(node);
        if (variable->dirty)
            names.append(variable->name.c_str());
    }
    sortNames(names);
    return names.entries() - before;
}

int CMD_VariableTable::clearDirtyFlags() {
    const KIT_LockHolder holder(getLock());
    int cleared = 0;
    for (KIT_LinkNode *node : *this) {
        auto *variable = static_cast<CMD_Variable *>(node);
        cleared += variable->dirty ? 1 : 0;
        variable->dirty = false;
    }
    return cleared;
}

void CMD_VariableTable::save(CMD_Manager *manager, std::ostream &os, const char *prefix) const {
    KIT_StringArray names;
    getVariableNames(names, 0);
    CMDsaveLines(*manager, os, *this, names, { std::string("set ") + prefix, " = ", "Save Variable Table" });
}
