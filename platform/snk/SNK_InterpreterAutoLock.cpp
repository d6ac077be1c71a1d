// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/snk/SNK_InterpreterAutoLock.h>

#include <orvlang/platform/snk/SNK_Component.h>
#include <orvlang/platform/snk/SNK_ComponentTable.h>

SNK_InterpreterAutoLock::SNK_InterpreterAutoLock()
    : python(SNK_Component::get()), state(python ? python->lock() : 0) {}

SNK_InterpreterAutoLock::~SNK_InterpreterAutoLock() {
    if (python)
        python->unlock(state);
}
