// SPDX-License-Identifier: Apache-2.0
// Where output goes and what the user is asked with: the two stacks of streams and the stack of prompts.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>
#include <iostream>

#include <orvlang/engine/CMD_ModeScope.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/platform/osl/KIT_Thread.h>

namespace {

using StreamStack = KIT_PtrArray<std::ostream *>;

/// Gives the place of the stream.
int push(StreamStack &stack, std::ostream *stream) {
    stack.append(stream ? stream : stack.last());
    return stack.entries() - 1;
}

/// Removes the streams from that index on. The last stream stays, so that there is always one to write to.
void pop(StreamStack &stack, int index) {
    stack.resize(std::max(1, std::min(index, stack.entries())));
}

std::ostream &replaceTop(StreamStack &stack, std::ostream &stream) {
    return *std::exchange(stack[stack.entries() - 1], &stream);
}

void replaceEverywhere(StreamStack &stack, const std::ostream *stream, std::ostream *replacement) {
    for (std::ostream *&slot : stack) {
        if (slot == stream)
            slot = replacement;
    }
}

}   // namespace

CMD_Engine::StreamSlots CMD_Engine::pushStreams(std::ostream *out, std::ostream *err) {
    return { push(standardOutStack, out), push(standardErrStack, err) };
}

void CMD_Engine::popStreams(StreamSlots slots) {
    pop(standardOutStack, slots.out);
    pop(standardErrStack, slots.err);
}

void CMD_Manager::pushOutputStreams(std::ostream &out, std::ostream &err) {
    engine->pushStreams(&out, &err);
}

void CMD_Manager::popOutputStreams() {
    engine->popStreams({ engine->standardOutStack.entries() - 1, engine->standardErrStack.entries() - 1 });
}

std::ostream &CMD_Manager::setStandardOut(std::ostream &stream) {
    return replaceTop(engine->standardOutStack, stream);
}

std::ostream &CMD_Manager::setStandardErr(std::ostream &stream) {
    return replaceTop(engine->standardErrStack, stream);
}

void CMD_Manager::streamDeleted(std::ostream &stream) {
    replaceEverywhere(engine->standardOutStack, &stream, &std::cout);
    replaceEverywhere(engine->standardErrStack, &stream, &std::cerr);
}

std::ostream &CMD_Engine::getError(int prefix) {
    std::ostream &stream = *standardErrStack.last();
    const CMD_Source &source = *getSource();
    if (prefix && !source.isStdIn()) {
        const char *filename = source.getFilename();
        stream << (filename ? filename : "") << " (" << source.getLineNumber() << "): ";
    }
    return stream;
}

void CMD_Manager::pushPrompt(const char *text) {
    engine->promptStack.push_back({ text ? text : "", isInSafeMode() != 0 });
}

void CMD_Manager::popPrompt() {
    if (engine->promptStack.size() >= 2)
        engine->promptStack.pop_back();
}

void CMD_Manager::setPrompt(const char *text) {
    if (engine->promptStack.empty())
        return pushPrompt(text);
    engine->promptStack.back() = { text ? text : "", isInSafeMode() != 0 };
}

const char *CMD_Manager::getPrompt(int index) const {
    if (engine->promptStack.empty())
        return "";
    const bool inside = index >= 0 && static_cast<size_t>(index) < engine->promptStack.size();
    return (inside ? engine->promptStack[static_cast<size_t>(index)] : engine->promptStack.back()).text.c_str();
}

CMD_Manager::Pending CMD_Engine::getPendingInput() const {
    using enum CMD_Manager::Pending;
    const CMD_Source &source = *getSource();
    if (!continuationLine.empty())
        return Continuation;
    if (!readVariables.isEmpty())
        return Read;
    if (source.loop && !source.loopRunning)
        return Loop;
    return source.getIfNestLevel() > 0 ? If : Nothing;
}

void CMD_Engine::getPrompt(KIT_String &out) {
    const CMD_Source &source = *getSource();
    out.clear();
    if (!source.interactive || !readVariables.isEmpty())
        return;
    if (source.loop) {
        out = "> ";
        return;
    }
    if (!source.getIfState() || source.getIfState() == CMD_IF_TRUE) {
        const int thread = KIT_Thread::getMySequentialThreadIndex();
        // A copy: an expression in the prompt can set the prompt.
        const KIT_String prompt = manager.getPrompt(-1);
        const CMD_ModeScope safe(manager, &CMD_Manager::setSafeMode, isInSafeMode(),
                                 !promptStack.empty() && promptStack.back().isSafe);
        manager.expandString(prompt.c_str(), out, manager.getEvaluateTime(thread), nullptr, thread, 3);
        return;
    }
    out = "? ";
}

void CMD_Manager::doPrompt() {
    KIT_String text;
    getPrompt(text);
    if (!text.isEmpty())
        *engine->standardOutStack.last() << text << std::flush;
}
