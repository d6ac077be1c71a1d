// SPDX-License-Identifier: Apache-2.0
// The streams and the prompts of a manager.
#include <orvlang/engine/CMD_Engine.h>

#include <ostream>

#include <orvlang/engine/CMD_ModeScope.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/platform/osl/KIT_Thread.h>

void CMD_Manager::pushOutputStreams(std::ostream &out, std::ostream &err) {
    engine->streams.push(&out, &err);
}

void CMD_Manager::popOutputStreams() {
    engine->streams.pop();
}

std::ostream &CMD_Manager::setStandardOut(std::ostream &stream) {
    return engine->streams.replaceOut(stream);
}

std::ostream &CMD_Manager::setStandardErr(std::ostream &stream) {
    return engine->streams.replaceErr(stream);
}

void CMD_Manager::streamDeleted(std::ostream &stream) {
    engine->streams.forget(stream);
}

std::ostream &CMD_Engine::getError(int prefix) {
    std::ostream &stream = streams.err();
    const CMD_Source &source = *getSource();
    if (prefix && !source.isStdIn()) {
        const char *filename = source.getFilename();
        stream << (filename ? filename : "") << " (" << source.getLineNumber() << "): ";
    }
    return stream;
}

void CMD_Manager::pushPrompt(const char *text) {
    engine->prompts.push(text, engine->isInSafeMode());
}

void CMD_Manager::popPrompt() {
    engine->prompts.pop();
}

void CMD_Manager::setPrompt(const char *text) {
    engine->prompts.set(text, engine->isInSafeMode());
}

const char *CMD_Manager::getPrompt(int index) const {
    return engine->prompts.at(index).c_str();
}

CMD_Manager::Pending CMD_Engine::getPendingInput() const {
    using enum CMD_Manager::Pending;
    const CMD_Source &source = *getSource();
    if (!continuationLine.empty())
        return Continuation;
    if (!readVariables.isEmpty())
        return Read;
    if (source.state->loop && !source.state->loopRunning)
        return Loop;
    return source.getIfNestLevel() > 0 ? If : Nothing;
}

void CMD_Engine::getPrompt(KIT_String &out) {
    const CMD_Source &source = *getSource();
    out.clear();
    if (!source.state->interactive || !readVariables.isEmpty())
        return;
    if (source.state->loop) {
        out = "> ";
        return;
    }
    if (!source.getIfState() || source.getIfState() == CMD_IF_TRUE) {
        const int thread = KIT_Thread::getMySequentialThreadIndex();
        // A copy: an expression in the prompt can set the prompt.
        const std::string prompt = prompts.current();
        const CMD_ModeScope safe(manager, &CMD_Manager::setSafeMode, isInSafeMode(), prompts.isCurrentSafe());
        manager.expandString(prompt.c_str(), out, manager.getEvaluateTime(thread), nullptr, thread, 3);
        return;
    }
    out = "? ";
}

void CMD_Manager::doPrompt() {
    KIT_String text;
    getPrompt(text);
    if (!text.isEmpty())
        engine->streams.out() << text << std::flush;
}
