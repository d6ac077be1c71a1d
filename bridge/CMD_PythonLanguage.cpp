// SPDX-License-Identifier: Apache-2.0
#include <orvlang/bridge/CMD_PythonLanguage.h>

#include <orvlang/bridge/CMD_CapturedRun.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/snk/SNK_Language.h>

#include <algorithm>
#include <string_view>

namespace {

CMD_Manager &manager() {
    return *CMD_Manager::getContext();
}

const char *refusal() {
    if (!CMD_Manager::getContextExists())
        return "there is no command manager";
    if (!KITgetInterrupt()->isMine())
        return "the command language runs on another thread";
    return nullptr;
}

void begin() {
    KITgetInterrupt()->opStart("Run Python", 0, 0, nullptr);
}

void end() {
    KITgetInterrupt()->opEnd(-1);
}

/// The status that was there before stays: the statement that called Python has one of its own.
bool execute(const char *text, const SNK_TextTaker &output, const SNK_TextTaker &errors, int &status) {
    CMD_Manager &runner = manager();
    const int statusBefore = runner.getStatusCode();
    const unsigned refusalsBefore = KIT_Nesting::getRefusals();
    const CMD_CapturedRun run(runner, text);
    status = runner.getStatusCode();
    runner.setStatusCode(statusBefore);
    output(run.getOutput().data(), run.getOutput().size());
    errors(run.getErrors().data(), run.getErrors().size());
    return refusalsBefore == KIT_Nesting::getRefusals();
}

bool getVariable(const char *name, const SNK_TextTaker &value) {
    KIT_String text;
    if (!manager().getVariable(name, text))
        return false;
    value(text.c_str(), text.length());
    return true;
}

bool setVariable(const char *name, const char *value, bool local) {
    if (!manager().isVariableNameOk(name))
        return false;
    manager().setVariable(name, value, local, 0);
    return true;
}

/// The variables of that name that unsetVariable can see: a local, a global or both.
std::ptrdiff_t countVariables(const char *name) {
    KIT_StringArray names;
    manager().getVariableNames(names, 0);
    return std::count(names.begin(), names.end(), std::string_view(name));
}

/// Some variables of the language can't be removed, nor can the local ones of scripts further out.
bool unsetVariable(const char *name) {
    if (!manager().hasVariable(name))
        return true;
    const std::ptrdiff_t before = countVariables(name);
    manager().unsetVariable(name);
    return countVariables(name) < before;
}

void listVariables(const SNK_TextTaker &name) {
    KIT_StringArray names;
    manager().getVariableNames(names, 0);
    for (const char *text : names)
        name(text, std::char_traits<char>::length(text));
}

}   // namespace

const SNK_Language &CMDgetPythonLanguage() {
    static constexpr SNK_Language language = {
        refusal, begin, end, execute, getVariable, setVariable, unsetVariable, listVariables,
    };
    return language;
}
