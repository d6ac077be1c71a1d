// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include <orvlang/symbols/CMD_SymbolEntry.h>

/// One alias: a command word and the text that replaces it.
class CMD_API CMD_Alias : public CMD_SymbolEntry {
public:
    CMD_Alias(const char *name, const char *value, bool flag);
    void setValue(const char *value) override;

private:
    int32_t length = 0;   // of the value, in bytes
};
