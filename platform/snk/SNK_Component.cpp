// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/snk/SNK_Component.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <vector>

#include <unistd.h>

#include <orvlang/platform/kit/KIT_Component.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/KIT_Thread.h>
#include <orvlang/platform/snk/SNK_ComponentTable.h>

namespace {

std::atomic<const SNK_Language *> theLanguage{ nullptr };

/// Returns the folders where modules are looked up last. Like plug-in libraries they hold code, so folders that follow
/// the user's working folder are left out. The texts are never freed.
const char *const *moduleFolders() {
    static KIT_Immortal<std::vector<std::string>> folders;
    static KIT_Immortal<std::vector<const char *>> table;
    for (const std::string &directory : KIT_PathSearch::getInstance(0)->getTrustedDirectories())
        folders.object.push_back(directory + "/python");
    for (const std::string &folder : folders.object)
        table.object.push_back(folder.c_str());
    table.object.push_back(nullptr);
    return table.object.data();
}

void flushStreams() {
    std::cout.flush();
    std::cerr.flush();
    std::clog.flush();
    std::fflush(stdout);   // what modules that are written in C have printed
}

bool isInterrupted() {
    const KIT_Interrupt &interrupt = *KITgetInterrupt();
    return interrupt.isMine() && interrupt.isInterrupted();
}

bool readLine(const SNK_TextTaker &line) {
    KIT_StandardInput &input = KIT_StandardInput::inst();
    std::string text;
    if (!input.readLine(text))
        return false;
    text += '\n';
    line(text.data(), text.size());
    return true;
}

const SNK_ComponentTable *load(std::string &failure) {
    // Python's library is visible to all: its modules that are shared objects themselves are not linked with it.
    void *const start = KIT_Component::load("liborvlang_python.so", KIT_NAME_OF(SNK_START_FUNCTION),
                                            ORVLANG_PYTHON_LIBRARY, failure);
    if (!start)
        return nullptr;
    static const SNK_ComponentHost host = { moduleFolders(), flushStreams, isInterrupted, readLine,
                                            [] { return theLanguage.load(); } };
    const auto take = [](void *target, const char *text, size_t length) {
        static_cast<std::string *>(target)->assign(text, length);
    };
    return reinterpret_cast<SNK_StartFunction *>(start)(host, { &failure, take });
}

std::atomic<int> theOutputError{ 0 };

void finish(const SNK_ComponentTable &table) {
    if (const int error = table.finish())
        theOutputError = error;
}

/// The component once it was looked for.
struct Component {
    Component() : table(load(failure)) {
        if (!table)
            return;
        KITgetInterrupt()->setListener(table->interrupt);
        KIT_Exit::addExitCallback([](void *data) { finish(*static_cast<const SNK_ComponentTable *>(data)); },
                                  const_cast<SNK_ComponentTable *>(table));
        // A host may return from main instead. A process that it has forked off has no business with the files here, and
        // may never get the interpreter lock.
        static const SNK_ComponentTable *theTable;
        static pid_t theProcess;
        theTable = table;
        theProcess = getpid();
        std::atexit([] {
            if (getpid() == theProcess)
                finish(*theTable);
        });
    }

    std::string failure;               // before what fills it in
    const SNK_ComponentTable *table;   // null with a failure
};

}   // namespace

void SNKsetLanguage(const SNK_Language *language) {
    theLanguage = language;
}

int SNK_Component::getOutputError() {
    return theOutputError;
}

const SNK_ComponentTable *SNK_Component::get(std::string *reason) {
    // Before loading, which takes stack as well.
    if (KIT_Thread::stackLeft() < theStackReserve) {
        if (reason)
            *reason = "Python is not available: less than a mebibyte of stack is left on this thread";
        return nullptr;
    }
    static KIT_Immortal<const Component> component{ Component() };
    const SNK_ComponentTable *const table = component.object.table;
    if (table && !table->hasEnded())
        return table;
    if (reason)
        *reason = "Python is not available: " + (table ? "the program has ended it" : component.object.failure);
    return nullptr;
}
