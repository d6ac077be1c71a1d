// SPDX-License-Identifier: Apache-2.0
// The commands that set and show variables, the arguments of a script among them.
#include <orvlang/engine/CMD_Engine.h>

#include <ostream>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/KIT_Thread.h>

namespace {

/// The name of a script's argument.
std::string argumentName(int number) {
    return "arg" + std::to_string(number);
}

void listVariables(CMD_Manager &manager, std::ostream &os) {
    const int thread = KIT_Thread::getMySequentialThreadIndex();
    const TRK_LocalVariable *record = TRK_Manager::getLocalVariableTable();
    const bool hasLocals = record->name != nullptr;
    for (; record->name; ++record)
        os << record->name << "\t= " << manager.getVariableValue(record->id, thread) << std::endl;
    KIT_StringArray names;
    manager.getVariableNames(names, 0);
    KIT_String value;
    for (const char *variable : names) {
        manager.getVariable(variable, value);
        os << variable << "\t= " << value << std::endl;
    }
    if (!hasLocals && names.entries() == 0)
        os << std::endl;
}

void showVariable(const CMD_Manager &manager, const char *variable, std::ostream &os) {
    KIT_String value;
    os << variable;
    if (manager.getVariable(variable, value))
        os << "\t= " << value;
    else
        os << "\tundefined ";
    os << std::endl;
}

/// The body of `set` and `setenv`, which differ in where they store a variable.
void setCommon(CMD_Args &args, int local, int parent) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    if (args.found('u')) {
        for (int i = 1; i < args.argc(); ++i)
            manager.unsetVariable(args.argv(i));
        return;
    }
    if (args.argc() == 1) {
        if (!args.found('s'))
            return listVariables(manager, args.out());
        manager.saveVariables(args.out());
        args.out() << std::endl;
        return;
    }
    if (args.argc() >= 3 && args.argv(2)[0] == '=') {
        const char *variable = args.argv(1);
        if (!manager.isVariableNameOk(variable)) {
            args.err(1) << "Invalid variable name (" << variable << ")\n";
            return;
        }
        if (args.argc() <= 4) {
            manager.setVariable(variable, args.argc() == 4 ? args.argv(3) : "", local, parent);
            return;
        }
        KIT_WorkBuffer text;
        args.fillCommandLine(text, 3, false);
        manager.setVariable(variable, text.c_str(), local, parent);
        return;
    }
    for (int i = 1; i < args.argc(); ++i)
        showVariable(manager, args.argv(i), args.out());
}

}   // namespace

void CMD_Commands::cmd_set(CMD_Args &args) {
    setCommon(args, args.found('g') ? 0 : 1, args.found('p') ? 1 : 0);
}

void CMD_Commands::cmd_setenv(CMD_Args &args) {
    setCommon(args, args.found('l') ? 1 : 0, 0);
}

void CMD_Commands::cmd_read(CMD_Args &args) {
    if (args.argc() == 1)
        return args.showUsage();
    KIT_WorkBuffer names;
    args.fillCommandLine(names, 1, false);
    CMD_Engine &engine = CMD_Engine::of(*CMD_Manager::getContext());
    engine.readVariables = names.c_str();
    engine.readLocal = args.found('g') ? 0 : 1;
}

void CMD_Engine::setReadVariables(std::string_view line) {
    KIT_WorkArgs values;
    KIT_WorkArgs names;
    KIT_String(line).parseInPlace(values);
    readVariables.parseInPlace(names);
    for (int i = 0; i < names.argc(); ++i) {
        const char *variable = names[i];
        if (!manager.isVariableNameOk(variable)) {
            getError(1) << "Invalid variable name: " << variable << std::endl;
        } else if (i >= values.argc()) {
            // A name without a word is a local one, whatever the command asked for.
            manager.setVariable(variable, "", 1, 0);
        } else if (i + 1 == names.argc()) {
            manager.setVariable(variable, values.join(i).c_str(), readLocal, 0);
        } else {
            manager.setVariable(variable, values[i], readLocal, 0);
        }
    }
}

void CMD_Engine::setArgumentVariables(const CMD_Args &args) {
    for (int i = 1; i < args.argc(); ++i)
        manager.setVariable(argumentName(i - 1).c_str(), args.argv(i), 1, 0);
    manager.setVariable("argc", std::to_string(args.argc() - 1).c_str(), 1, 0);
}

void CMD_Commands::cmd_shift(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    KIT_String text;
    if (!manager.getVariable("argc", text)) {
        args.err(1) << "Error: $argc not found" << std::endl;
        return;
    }
    const int count = text.toInt();
    if (count < 1) {
        args.err(1) << "Error: shift past the last argument" << std::endl;
        return;
    }
    KIT_String value;
    // A script can have set any count.
    for (int i = 1; i < count && !KITgetInterrupt()->opInterrupt(-1); ++i) {
        if (manager.getVariable(argumentName(i).c_str(), value))
            manager.setVariable(argumentName(i - 1).c_str(), value.c_str(), 1, 0);
    }
    manager.setVariable(argumentName(count - 1).c_str(), "", 1, 0);
    manager.setVariable("argc", std::to_string(count - 1).c_str(), 1, 0);
}
