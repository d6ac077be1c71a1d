// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/symbols/CMD_SymbolEntry.h>

/// One variable. An exported one sets the process environment with each change, and removes itself from it at its end.
class CMD_API CMD_Variable : public CMD_SymbolEntry {
public:
    CMD_Variable(const char *name, const char *value, bool exported);
    ~CMD_Variable() override;
    void setValue(const char *value) override;

private:
    friend class CMD_VariableTable;

    void updateEnvironment() const;

    bool dirty = true;   // changed since the last clearDirtyFlags, also when the text stayed the same
    const bool exported;
};
