// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_Variable.h>

#include <orvlang/platform/kit/KIT_EnvControl.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>

CMD_Variable::CMD_Variable(const char *variableName, const char *text, bool isExported)
    : CMD_SymbolEntry(variableName, text, isExported), exported(isExported) {
    updateEnvironment();
}

CMD_Variable::~CMD_Variable() {
    if (!exported)
        return;
    OrvaneUnsetenv(name.c_str());
    KIT_EnvControl::varChanged(name.c_str());
}

void CMD_Variable::setValue(const char *text) {
    value = text;
    updateEnvironment();
    dirty = true;
}

void CMD_Variable::updateEnvironment() const {
    if (!exported)
        return;
    OrvaneSetenv(name.c_str(), value.c_str());
    KIT_EnvControl::varChanged(name.c_str());
}
