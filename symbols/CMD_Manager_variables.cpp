// SPDX-License-Identifier: Apache-2.0
// The manager's variables: where a name is looked for, where a value is stored, and the ones that are built in.
#include <orvlang/engine/CMD_Engine.h>

#include <cstring>
#include <ostream>

#include <orvlang/engine/CMD_Source.h>
#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/platform/kit/KIT_File.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

/// The directory as the system names it; the current one when it does not exist.
KIT_String absoluteDirectory(const char *directory) {
    const KIT_String before = KITgetCurrentDirectory();
    OSLsystem().changeDirectory(directory);
    const KIT_String result = KITgetCurrentDirectory();
    OSLsystem().changeDirectory(before.c_str());
    return result;
}

/// The names that belong to the scene: always global, and left alone while a scene loads.
bool isSceneName(std::string_view name) {
    return name == "ORP" || name == "ORPNAME";
}

/// Tries the locals from the newest source to the oldest, then the globals; the first table that has the name ends
/// the search.
template <typename Sources, typename Reader>
bool searchTables(const Sources &sources, const CMD_VariableTable &globals, Reader read) {
    for (auto source = sources.rbegin(); source != sources.rend(); ++source) {
        if (read(*(*source)->getLocalVariables()))
            return true;
    }
    return read(globals);
}

}   // namespace

CMD_VariableTable *CMD_Manager::getGlobalVariables() const {
    return engine->globalVariables.get();
}

bool CMD_Manager::getVariable(const char *variable, KIT_String &value) const {
    return searchTables(engine->sources, *engine->globalVariables,
                        [&](const CMD_VariableTable &table) { return table.getVariable(variable, value); });
}

bool CMD_Manager::getVariable(const char *variable, float &value) const {
    return searchTables(engine->sources, *engine->globalVariables,
                        [&](const CMD_VariableTable &table) { return table.getVariable(variable, value); });
}

bool CMD_Manager::getVariable(const char *variable, int &value) const {
    return searchTables(engine->sources, *engine->globalVariables,
                        [&](const CMD_VariableTable &table) { return table.getVariable(variable, value); });
}

bool CMD_Manager::hasVariable(const char *variable) const {
    return searchTables(engine->sources, *engine->globalVariables,
                        [&](const CMD_VariableTable &table) { return table.hasVariable(variable); });
}

bool CMD_Manager::getEnv(const char *variable, KIT_String &value) const {
    if (getVariable(variable, value))
        return true;
    const char *text = OrvaneGetenv(variable);
    if (text)
        value = text;
    return text != nullptr;
}

bool CMD_Manager::hasEnv(const char *variable) const {
    return hasVariable(variable) || OrvaneGetenv(variable) != nullptr;
}

bool CMD_Manager::getVariableString(const char *variable, KIT_String &value, int &flags, int thread) {
    return TRK_Manager::getVariableString(variable, value, flags, thread) || getVariable(variable, value);
}

void CMD_Manager::setVariable(const char *variable, const char *value, int local, int parent) {
    if (!variable)
        return;
    if (isSceneName(variable)) {
        if (isLoading())
            return;
        local = 0;
    }
    const bool isNoAlias = std::strcmp(variable, "noalias") == 0;
    size_t level = engine->sources.size();
    // At the console it would switch the aliases off for good.
    if (local && level == engine->sources.consoleDepth() && isNoAlias)
        return;
    if (local && parent && level > engine->sources.consoleDepth())
        --level;
    CMD_VariableTable *locals = engine->sources[level - 1]->getLocalVariables();
    if (local || locals->hasVariable(variable))
        locals->setVariable(variable, value, false);
    else
        engine->globalVariables->setVariable(variable, value, true);
    if (isNoAlias)
        engine->sources.updateAliasesOff(level - 1);
    if (std::strcmp(variable, "ORP") == 0)
        KIT_PathSearch::rehashAll();
}

void CMD_Manager::unsetVariable(const char *variable) {
    if (!getSource()->getLocalVariables()->destroyVariable(variable))
        engine->globalVariables->destroyVariable(variable);
    if (variable && std::strcmp(variable, "noalias") == 0)
        engine->sources.updateAliasesOff(engine->sources.size() - 1);
}

void CMD_Manager::getVariableNames(KIT_StringArray &names, int dirtyOnly) const {
    getSource()->getLocalVariables()->getVariableNames(names, dirtyOnly);
    engine->globalVariables->getVariableNames(names, dirtyOnly);
}

int CMD_Manager::clearDirtyVariables() {
    return getSource()->getLocalVariables()->clearDirtyFlags() + engine->globalVariables->clearDirtyFlags();
}

int CMD_Manager::isVariableNameOk(const char *variable) const {
    if (!variable)
        return 0;
    for (const TRK_LocalVariable *record = getLocalVariableTable(); record->name; ++record) {
        if (std::strcmp(record->name, variable) == 0)
            return 0;
    }
    if (KITisDigit(*variable))
        return 0;
    while (KITisAlnum(*variable) || *variable == '_')
        ++variable;
    return *variable == '\0' ? 1 : 0;
}

void CMD_Manager::setJob(const char *path) {
    engine->globalVariables->setVariable("JOB", path, true);
}

void CMD_Manager::setMotName(const char *path) {
    const std::string_view whole = path ? path : "";
    const size_t slash = whole.rfind('/');
    const size_t cut = slash != std::string_view::npos ? slash : whole.rfind(':');
    KIT_String directory;
    if (cut == std::string_view::npos) {
        directory = KITgetCurrentDirectory();
    } else {
        directory = whole.substr(0, cut == 0 ? 1 : cut);
        if (slash == std::string_view::npos)
            directory.append(':');
    }
    directory.expandVariables();
    engine->globalVariables->setVariable("ORP", absoluteDirectory(directory.c_str()).c_str(), true);
    const KIT_String file = cut == std::string_view::npos ? whole : whole.substr(cut + 1);
    engine->globalVariables->setVariable("ORPNAME", file.c_str(), true);
    KIT_PathSearch::rehashAll();
}

void CMD_Manager::beginLoading() {
    ++engine->loadingCount;
}

void CMD_Manager::endLoading() {
    --engine->loadingCount;
}

bool CMD_Manager::isLoading() const {
    return engine->loadingCount > 0;
}

void CMD_Engine::installBuiltIn() {
    CMD_VariableTable &globals = *globalVariables;
    const auto setDefault = [&](const char *variable, const char *value, bool exported) {
        if (!globals.hasVariable(variable))
            globals.setVariable(variable, value, exported);
    };
    const KIT_String directory = KITgetCurrentDirectory();
    const char *job = OrvaneGetenv("JOB");
    // A copy: setting the variable changes the text of the environment.
    const KIT_String jobText = job ? KIT_String(job) : directory;
    globals.setVariable("JOB", jobText.c_str(), true);
    setDefault("PI", "3.1415926535897932384", false);
    setDefault("E", "2.7182818284590452354", false);
    if (!globals.hasVariable("ORPNAME")) {
        globals.setVariable("ORPNAME", "untitled1.orp", true);
        globals.setVariable("ORP", directory.c_str(), true);
    }
    setDefault("POSE", (std::string(KIT_PathSearch::getHomeOrvane()) + "/poselib").c_str(), true);
    KIT_PathSearch::rehashAll();
}

void CMD_Manager::resetVariables() {
    KIT_StringArray names;
    engine->globalVariables->getVariableNames(names, 0);
    for (const char *variable : names)
        unsetVariable(variable);
    engine->installBuiltIn();
}

void CMD_Manager::saveVariables(std::ostream &os) {
    getSource()->getLocalVariables()->save(this, os, "-l ");
    if (KITgetErrorSeverity() < KIT_ErrorManager::Failure)
        engine->globalVariables->save(this, os, "-g ");
}
