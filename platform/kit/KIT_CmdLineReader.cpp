// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_CmdLineReader.h>

#include <orvlang/platform/kit/KIT_StandardInput.h>

KIT_CmdLineReader::KIT_CmdLineReader(PromptCallback, CompletionCallback) {}

bool KIT_CmdLineReader::readLine(KIT_WorkBuffer &line) {
    return KIT_StandardInput::inst().readLine(line);
}

bool KIT_CmdLineReader::readPartOfLine(KIT_WorkBuffer &line, bool &done) {
    return KIT_StandardInput::inst().readPart(line, done);
}

bool KIT_CmdLineReader::holdsInput() const {
    return KIT_StandardInput::inst().holdsInput();
}
