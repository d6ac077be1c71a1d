// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_LinkList.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/kit/KIT_SymbolTable.h>
#include <orvlang/platform/osl/KIT_Lock.h>

class CMD_SymbolEntry;

/// A table of named texts that any thread may use. The list owns the entries in order of creation; a hash index
/// finds them by name. Each operation holds the table's lock from start to end, and no lock between two operations.
///
/// Every value is a text; the numeric operations convert it by the rules of `atof` and `atoi`.
class CMD_API CMD_SymbolList : public KIT_LinkList {
public:
    CMD_SymbolList();
    virtual ~CMD_SymbolList();

    bool hasValue(const char *name) const;
    /// Returns true when the symbol exists. Otherwise the value becomes the empty text.
    bool getValue(const char *name, KIT_String &value) const;
    /// Returns true when the symbol exists. Otherwise the value becomes 0.
    bool getValue(const char *name, float &value) const;
    /// Returns true when the symbol exists and its text is not empty. Otherwise the value becomes 0.
    bool getValue(const char *name, int &value) const;
    /// Changes the symbol, or creates it. Ignores an illegal new name without a message. The flag is for a new entry
    /// only. A null value counts as empty.
    void setValue(const char *name, const char *value, bool flag);
    /// Returns 1 when the symbol was removed, 0 when there is none or it is protected.
    virtual int destroySymbol(const char *name);
    /// Adds every name to the array, sorts the whole array and returns the number of names added.
    int getSymbolNames(KIT_StringArray &names) const;
    bool isEmpty() const;

protected:
    /// Returns non-zero when the name is legal for a new symbol: a letter or `_`, then letters, digits and `_`.
    virtual int isValidSymbolName(const char *name) const;
    static void sortNames(KIT_StringArray &names);
    KIT_Lock &getLock() const { return lock; }

private:
    virtual CMD_SymbolEntry *createEntry(const char *name, const char *value, bool flag) = 0;

    // The caller of both holds the lock.
    CMD_SymbolEntry *getSymbolPtr(const char *name) const;
    const KIT_String *getRawValue(const char *name) const;

    KIT_SymbolTable index;
    mutable KIT_Lock lock{ false, true };
};
