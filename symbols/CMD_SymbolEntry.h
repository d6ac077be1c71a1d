// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_LinkList.h>
#include <orvlang/platform/kit/KIT_String.h>

/// One named text of a symbol list. The list owns it and protects it with its lock.
class CMD_API CMD_SymbolEntry : public KIT_LinkNode {
public:
    /// Copies both texts. The base ignores the flag; a derived class may use it.
    CMD_SymbolEntry(const char *name, const char *value, bool flag);
    virtual ~CMD_SymbolEntry();

    virtual void setValue(const char *value) = 0;

protected:
    friend class CMD_SymbolList;

    const KIT_String name;
    KIT_String value;
};
