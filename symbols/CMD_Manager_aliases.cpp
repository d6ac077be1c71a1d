// SPDX-License-Identifier: Apache-2.0
// The manager's side of aliases and of the history.
#include <orvlang/engine/CMD_Engine.h>

#include <orvlang/engine/CMD_Source.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_HistoryTable.h>

CMD_AliasTable *CMD_Manager::getAliases() const {
    return engine->aliases.get();
}

bool CMD_Manager::getAlias(const char *alias, KIT_String &value) const {
    return engine->aliases->getAlias(alias, value);
}

void CMD_Manager::setAlias(const char *alias, const char *value) {
    engine->aliases->setAlias(alias, value);
}

void CMD_Manager::destroyAlias(const char *alias) {
    engine->aliases->destroyAlias(alias);
}

void CMD_Manager::destroyAliases() {
    KIT_StringArray names;
    engine->aliases->getAliasNames(names);
    for (const char *alias : names)
        engine->aliases->destroyAlias(alias);
}

void CMD_Manager::saveAliases(std::ostream &os) {
    engine->aliases->save(this, os);
}

void CMD_Manager::dumpHistory(std::ostream &os) const {
    getSource()->getHistory()->saveHistory(os);
}

void CMD_Manager::clearHistory() {
    getSource()->getHistory()->clearAndDestroy();
}

const char *CMD_Manager::getHistoryCommand(int index) const {
    return getSource()->getHistory()->getCommand(index);
}

unsigned int CMD_Manager::getHistoryCount() const {
    return getSource()->getHistory()->entries();
}
