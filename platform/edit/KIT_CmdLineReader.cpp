// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/KIT_CmdLineReader.h>

#include <orvlang/platform/edit/KIT_LineEditor.h>
#include <orvlang/platform/kit/KIT_EnvControl.h>
#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/kit/KIT_Wait.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/OSL_Terminal.h>

namespace {

constexpr int theLongestWait = 50;   // milliseconds, since a signal may arrive just before a wait

}   // namespace

KIT_CmdLineReader::KIT_CmdLineReader(PromptCallback prompt, CompletionCallback completion)
    : prompt(prompt), completion(completion), mayEdit(prompt != nullptr) {}

KIT_CmdLineReader::~KIT_CmdLineReader() = default;

bool KIT_CmdLineReader::readLine(KIT_WorkBuffer &line) {
    if (!isEditing())
        return KIT_StandardInput::inst().readLine(line);
    bool done = false;
    bool continues = true;
    beginLine();
    while (continues && !done) {
        showLine();
        KITwaitForTimeoutOrDataOnStdin(theLongestWait);
        continues = !KITgetInterrupt()->isInterrupted() && readPartOfLine(line, done);
    }
    endLine();
    return continues;
}

bool KIT_CmdLineReader::readPartOfLine(KIT_WorkBuffer &line, bool &done) {
    if (!isEditing())
        return KIT_StandardInput::inst().readPart(line, done);
    const KIT_LineEditor::State state = editor->readKeys();
    line.strcpy(std::string_view(editor->getText()));
    done = state == KIT_LineEditor::State::Entered;
    return state != KIT_LineEditor::State::Ended;
}

bool KIT_CmdLineReader::holdsInput() const {
    return KIT_StandardInput::inst().holdsInput();
}

void KIT_CmdLineReader::beginLine() {
    if (isEditing())
        editor->begin();
    isAwaited = true;
}

void KIT_CmdLineReader::showLine() {
    if (isEditing())
        editor->show();
}

void KIT_CmdLineReader::endLine() {
    isAwaited = false;
    if (editor)
        editor->end();
}

bool KIT_CmdLineReader::isEditing() {
    if (!mayEdit || KIT_EnvControl::getInt(KIT_EnvControl::PlainInput) != 0)
        return false;
    if (editor)
        return true;
    if (OSL_Terminal::canEdit() && !OSL_Terminal::awaitForeground())
        return false;
    editor = KIT_LineEditor::make(prompt, completion);
    mayEdit = editor != nullptr;
    if (editor && isAwaited)
        editor->begin();
    return mayEdit;
}

void KIT_CmdLineReader::remember(const char *line) {
    if (line && isEditing())
        editor->getRecall().add(line);
}

void KIT_CmdLineReader::dropInput() {
    KIT_StandardInput::inst().discard();
}

void KIT_CmdLineReader::yieldTerminal() {
    KIT_LineEditor::yield();
}

void KIT_CmdLineReader::releaseTerminal() {
    OSL_Terminal::release();
}

void KIT_CmdLineReader::resumeTerminal() {
    OSL_Terminal::resume();
}

void KIT_CmdLineReader::noteTerminalResize() {
    OSL_Terminal::noteResize();
}
