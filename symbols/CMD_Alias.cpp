// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_Alias.h>

CMD_Alias::CMD_Alias(const char *aliasName, const char *text, bool flag)
    : CMD_SymbolEntry(aliasName, text, flag), length(static_cast<int32_t>(value.length())) {}

void CMD_Alias::setValue(const char *text) {
    value = text;
    length = static_cast<int32_t>(value.length());
}
