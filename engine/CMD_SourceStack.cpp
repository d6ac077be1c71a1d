// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_SourceStack.h>

#include <utility>

#include <orvlang/engine/CMD_ChannelBlocks.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/symbols/CMD_VariableTable.h>

CMD_SourceStack::CMD_SourceStack(SourceRef bottom) {
    sources.push_back(std::move(bottom));
}

CMD_SourceStack::~CMD_SourceStack() {
    clear();
}

void CMD_SourceStack::push(SourceRef source) {
    source->state->aliasesOff = areAliasesOff();
    sources.push_back(std::move(source));
}

CMD_SourceStack::SourceRef CMD_SourceStack::pop() {
    SourceRef popped = std::move(sources.back());
    sources.pop_back();
    return popped;
}

void CMD_SourceStack::clear() {
    while (!sources.empty())
        sources.pop_back();
}

CMD_SourceStack::Console CMD_SourceStack::pushConsole() {
    push(std::make_shared<CMD_Source>(top()));
    return std::exchange(console, { sources.size() - 1, CMD_ChannelBlocks::getCount() });
}

bool CMD_SourceStack::areAliasesOff() const {
    return top()->state->aliasesOff;
}

// Each source stores the state for itself and those below, so that a change updates only the sources above it.
void CMD_SourceStack::updateAliasesOff(size_t index) {
    bool aliasesOff = index > 0 && sources[index - 1]->state->aliasesOff;
    for (; index < sources.size(); ++index) {
        CMD_Source &source = *sources[index];
        aliasesOff = aliasesOff || source.getLocalVariables()->hasVariable("noalias");
        source.state->aliasesOff = aliasesOff;
    }
}
