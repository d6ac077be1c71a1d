// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include <orvlang/symbols/CMD_SymbolList.h>

class CMD_Manager;

/// The variables of one scope: a manager's globals, or the locals of one source.
class CMD_API CMD_VariableTable : public CMD_SymbolList {
public:
    bool getVariable(const char *name, KIT_String &value) const { return getValue(name, value); }
    bool getVariable(const char *name, float &value) const { return getValue(name, value); }
    bool getVariable(const char *name, int &value) const { return getValue(name, value); }
    /// As setValue; the flag says whether a new variable is exported to the process environment.
    void setVariable(const char *name, const char *value, bool flag) { setValue(name, value, flag); }
    bool hasVariable(const char *name) const { return hasValue(name); }
    int destroyVariable(const char *name) { return destroySymbol(name); }
    /// `ORP`, `JOB` and `ORPNAME` are never removed.
    int destroySymbol(const char *name) override;

    /// Adds the names of all variables, or of those changed since clearDirtyFlags, and sorts the whole array.
    /// Gives the number of names added when only dirty ones were asked for, otherwise the array's new count.
    int getVariableNames(KIT_StringArray &names, int dirtyOnly) const;
    /// Gives the number of variables that were dirty.
    int clearDirtyFlags();

private:
    friend class CMD_Manager;

    CMD_SymbolEntry *createEntry(const char *name, const char *value, bool flag) override;
    /// Writes a `set` line for each variable, sorted by name. A failing stream ends the save after its line.
    void save(CMD_Manager *manager, std::ostream &os, const char *prefix) const;
};
