// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_WhileLoop.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_CshTemplate.h>

namespace {

std::string joinWords(int first, int argc, char *argv[]) {
    std::string text;
    for (int i = first; i < argc; ++i) {
        if (i > first)
            text += ' ';
        // Quotes, so that an empty word is there again when the text is split.
        text += argv[i][0] == '\0' ? "''" : argv[i];
    }
    return text;
}

}   // namespace

CMD_WhileLoop::CMD_WhileLoop() = default;
CMD_WhileLoop::~CMD_WhileLoop() = default;

int CMD_WhileLoop::setInitialState(CMD_Manager *, int argc, char *argv[]) {
    if (argc < 2)
        return 0;
    std::string text = joinWords(1, argc, argv);
    // Inside another loop it is the same text each time.
    if (parsed && text == condition)
        return 1;
    condition = std::move(text);
    if (!parsed)
        parsed = std::make_unique<KIT_CshTemplate>();
    parsed->parse(condition, false);
    return 1;
}

int CMD_WhileLoop::evaluateCondition(CMD_Manager *manager) {
    if (!parsed)
        return 0;
    manager->setContext();
    parsed->expand(words, TRK_Manager::lookupVariableNoThread, TRK_Manager::lookupExpressionNoThread, nullptr);
    return manager->evaluateCondition(words.argc(), words.argv()) > 0;
}
