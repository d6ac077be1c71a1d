// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_Registry.h>

#include <algorithm>

namespace {

KIT_SymbolTable *theLists = nullptr;   // by the names of the managers; never freed, like the lists in it

}   // namespace

CMD_Registry::CMD_Registry(std::string_view managerName) : list(sharedList(managerName)) {}

CMD_CommandList &CMD_Registry::sharedList(std::string_view managerName) {
    if (!theLists)
        theLists = new KIT_SymbolTable;
    KIT_Thing thing;
    if (theLists->findSymbol(managerName, thing))
        return *thing.as<CMD_CommandList>();
    auto *list = new CMD_CommandList;
    theLists->addSymbol(managerName, KIT_Thing(list));
    return *list;
}

void CMD_Registry::install(const char *name, const char *options, CMD_CommandCallback callback, bool safe) {
    if (!name || !callback)
        return;
    if (!options)
        options = "";
    const CMD_Command wanted(name, options, callback, safe, findOwn(name));
    CMD_Command *newest = list.find(name);
    CMD_Command *command = newest ? newest->findTwin(wanted) : nullptr;
    if (!command) {
        command = new CMD_Command(wanted);
        list.put(*command, newest);
    }
    own.addSymbol(name, KIT_Thing(command));
}

CMD_Command *CMD_Registry::findOwn(std::string_view name) const {
    KIT_Thing thing;
    return own.findSymbol(name, thing) ? thing.as<CMD_Command>() : nullptr;
}

CMD_Registry::Match CMD_Registry::find(std::string_view name, bool exact, bool safeOnly,
                                       CMD_Command **command) const {
    CMD_Command *found = findOwn(name);
    if (!found) {
        if (exact)
            return Match::Missing;
        const CMD_CommandList &sorted = getSortedList();
        const auto begins = [&](const CMD_Command *other) { return nameOf(other).starts_with(name); };
        const auto isBelow = [](const CMD_Command *other, std::string_view text) {
            return nameOf(other) < text;
        };
        const auto position = std::lower_bound(sorted.begin(), sorted.end(), name, isBelow);
        if (position == sorted.end() || !begins(*position))
            return Match::Missing;
        if (position + 1 != sorted.end() && begins(position[1]))
            return Match::Ambiguous;
        CMD_Command *const ownOne = findOwn(nameOf(*position));
        found = ownOne ? ownOne : *position;
    }
    if (safeOnly && !found->safe)
        return Match::Unsafe;
    if (command)
        *command = found;
    return Match::Found;
}

const CMD_CommandList &CMD_Registry::getSortedList() const {
    list.sort();
    return list;
}
