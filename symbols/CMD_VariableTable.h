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
    /// As setValue; with the flag a new variable is exported to the process environment.
    void setVariable(const char *name, const char *value, bool flag) { setValue(name, value, flag); }
    bool hasVariable(const char *name) const { return hasValue(name); }
    int destroyVariable(const char *name) { return destroySymbol(name); }
    /// Never removes `ORP`, `JOB` and `ORPNAME`.
    int destroySymbol(const char *name) override;

    /// Adds the names of all variables, or of those changed since clearDirtyFlags, and sorts the whole array.
    /// Returns the number of names added with `dirtyOnly`, otherwise the array's new count.
    int getVariableNames(KIT_StringArray &names, int dirtyOnly) const;
    /// Returns the number of variables that were dirty.
    int clearDirtyFlags();

private:
    friend class CMD_Manager;

    CMD_SymbolEntry *createEntry(const char *name, const char *value, bool flag) override;
    /// Writes a `set` line for each variable, sorted by name. When the stream fails, the save stops after that line.
    void save(CMD_Manager *manager, std::ostream &os, const char *prefix) const;
};
