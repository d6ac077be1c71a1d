// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_SymbolList.h>

#include <memory>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/osl/KIT_Lock.h>
#include <orvlang/symbols/CMD_SymbolEntry.h>

CMD_SymbolList::CMD_SymbolList() = default;

CMD_SymbolList::~CMD_SymbolList() = default;

bool CMD_SymbolList::hasValue(const char *name) const {
    const KIT_LockHolder holder(lock);
    return getSymbolPtr(name) != nullptr;
}

bool CMD_SymbolList::getValue(const char *name, KIT_String &value) const {
    const KIT_LockHolder holder(lock);
    const KIT_String *text = getRawValue(name);
    value = text ? text->view() : "";
    return text != nullptr;
}

bool CMD_SymbolList::getValue(const char *name, float &value) const {
    const KIT_LockHolder holder(lock);
    const KIT_String *text = getRawValue(name);
    value = text ? static_cast<float>(KITatof(text->view())) : 0.0f;
    return text != nullptr;
}

bool CMD_SymbolList::getValue(const char *name, int &value) const {
    const KIT_LockHolder holder(lock);
    const KIT_String *text = getRawValue(name);
    const bool isThere = text && !text->isEmpty();
    value = isThere ? KITatoi(text->view()) : 0;
    return isThere;
}

void CMD_SymbolList::setValue(const char *name, const char *value, bool flag) {
    const KIT_LockHolder holder(lock);
    if (!value)
        value = "";
    if (CMD_SymbolEntry *entry = getSymbolPtr(name))
        return entry->setValue(value);
    if (!isValidSymbolName(name))
        return;
    std::unique_ptr<CMD_SymbolEntry> entry(createEntry(name, value, flag));
    index.addBorrowedSymbol(entry->name.view(), KIT_Thing(entry.get()));
    append(std::move(entry));
}

int CMD_SymbolList::destroySymbol(const char *name) {
    const KIT_LockHolder holder(lock);
    CMD_SymbolEntry *entry = getSymbolPtr(name);
    if (!entry)
        return 0;
    index.deleteSymbol(entry->name.view());
    destroy(entry);
    return 1;
}

int CMD_SymbolList::getSymbolNames(KIT_StringArray &names) const {
    const KIT_LockHolder holder(lock);
    const int before = names.entries();
    for (const KIT_LinkNode *node : *this)
        names.append(static_cast<const CMD_SymbolEntry *>(node)->name.c_str());
    sortNames(names);
    return names.entries() - before;
}

bool CMD_SymbolList::isEmpty() const {
    const KIT_LockHolder holder(lock);
    return index.entries() == 0;
}

int CMD_SymbolList::isValidSymbolName(const char *name) const {
    if (!name || !(KITisAlpha(*name) || *name == '_'))
        return 0;
    while (KITisAlnum(*name) || *name == '_')
        ++name;
    return *name == '\0' ? 1 : 0;
}

void CMD_SymbolList::sortNames(KIT_StringArray &names) {
    names.sort(true, false);
}

CMD_SymbolEntry *CMD_SymbolList::getSymbolPtr(const char *name) const {
    KIT_Thing thing;
    return name && index.findSymbol(name, thing) ? thing.as<CMD_SymbolEntry>() : nullptr;
}

const KIT_String *CMD_SymbolList::getRawValue(const char *name) const {
    const CMD_SymbolEntry *entry = getSymbolPtr(name);
    return entry ? &entry->value : nullptr;
}
