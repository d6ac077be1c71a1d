// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include <orvlang/symbols/CMD_SymbolList.h>

class CMD_Manager;

/// The aliases of a manager, shared by all its sources. Any legal symbol name but `alias` is allowed.
class CMD_API CMD_AliasTable : public CMD_SymbolList {
public:
    bool hasAlias(const char *name) const { return hasValue(name); }
    bool getAlias(const char *name, KIT_String &value) const { return getValue(name, value); }
    void setAlias(const char *name, const char *value) { setValue(name, value, false); }
    int destroyAlias(const char *name) { return destroySymbol(name); }
    int getAliasNames(KIT_StringArray &names) const { return getSymbolNames(names); }

protected:
    int isValidSymbolName(const char *name) const override;

private:
    friend class CMD_Manager;

    CMD_SymbolEntry *createEntry(const char *name, const char *value, bool flag) override;
    /// Writes an `alias` line for each alias, sorted by name. When the stream fails, the save stops after that line.
    void save(CMD_Manager *manager, std::ostream &os) const;
};
