// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_SymbolEntry.h>

CMD_SymbolEntry::CMD_SymbolEntry(const char *symbolName, const char *text, bool)
    : name(symbolName), value(text) {}

CMD_SymbolEntry::~CMD_SymbolEntry() = default;
