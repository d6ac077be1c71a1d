// SPDX-License-Identifier: Apache-2.0
// `if`, `else` and `endif`: each changes the state of the current source's `if` level, which decides in `runCommand`
// whether the statements that follow are run or dropped.
#include <orvlang/engine/CMD_Manager.h>

#include <ostream>
#include <string_view>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/flow/CMD_Condition.h>
#include <orvlang/flow/CMD_IfRules.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

namespace {

/// Evaluates the condition in the words of a statement from `first` on. Reports a wrong one and returns -1.
int evaluateWords(CMD_Manager &manager, const CMD_Args &args, int first) {
    int count = args.argc();
    if (count > first && std::string_view(args.argv(count - 1)) == "then")
        --count;
    const int result = CMD_Condition::evaluateWords(count - first, [&](int i) { return args.argv(first + i); });
    if (result < 0)
        manager.getError(1) << "Invalid if syntax" << std::endl;
    return result;
}

}   // namespace

int CMD_Manager::evaluateCondition(int argc, const char *const argv[]) {
    return CMD_Condition::evaluate(argc, argv);
}

int CMD_Manager::evaluateCondition(const char *text) {
    KIT_WorkArgs words;
    setContext();
    KIT_String::borrow(text).cshParse(words, lookupVariableNoThread, lookupExpressionNoThread, nullptr,
                                      nullptr);
    return evaluateCondition(words.argc(), words.argv());
}

void CMD_Commands::cmd_if(CMD_Args &args) {
    CMD_Manager *manager = CMD_Manager::getContext();
    CMD_Source *source = manager->getSource();
    const CMD_IfState outer = source->getIfState();
    if (!source->bumpIfNest(1))
        return;
    if (args.argc() == 1) {
        manager->getError(1) << "Invalid if syntax" << std::endl;
        return;
    }
    if (!CMD_IfRules::runs(outer)) {
        source->setIfState(CMD_IF_DEAD);
        return;
    }
    // Behind a wrong condition the level keeps the state that it has.
    if (const int result = evaluateWords(*manager, args, 1); result >= 0)
        source->setIfState(CMD_IfRules::afterCondition(result));
}

void CMD_Commands::cmd_else(CMD_Args &args) {
    CMD_Manager *manager = CMD_Manager::getContext();
    CMD_Source *source = manager->getSource();
    const CMD_IfState state = source->getIfState();
    if (state == CMD_IF_NONE) {
        manager->getError(1) << "Syntax Error:  else without matching if\n";
        return;
    }
    const bool hasCondition = args.argc() > 2 && std::string_view(args.argv(1)) == "if";
    if (state == CMD_IF_FALSE && hasCondition)
        source->setIfState(CMD_IfRules::afterCondition(evaluateWords(*manager, args, 2)));
    else
        source->setIfState(CMD_IfRules::afterElse(state));
}

void CMD_Commands::cmd_endif(CMD_Args &) {
    CMD_Manager *manager = CMD_Manager::getContext();
    CMD_Source *source = manager->getSource();
    if (source->getIfNestLevel() == 0) {
        manager->getError(1) << "Syntax Error:  endif without matching if\n";
        return;
    }
    source->setIfState(CMD_IF_NONE);
    source->bumpIfNest(-1);
}
