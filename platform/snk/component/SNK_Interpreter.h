// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SNK_PythonReference.h"

#include <string>

#include <orvlang/platform/snk/SNK_ComponentTable.h>

/// The interpreter of the process and what the component keeps in it.
class SNK_Interpreter {
public:
    /// Starts Python, unless the program has done so before, and prepares it. False, with the reason, when that fails;
    /// it is not to be tried again. Leaves the interpreter lock free.
    static bool start(const SNK_ComponentHost &host, std::string &reason);

    /// Returns whether the program has ended the interpreter, which it may do with one that it has started itself.
    static bool hasEnded();
    /// Returns whether the component has to end the interpreter.
    static bool endsWithProcess();

    static const SNK_ComponentHost &host();
    /// Returns the namespace of `__main__`, borrowed.
    static PyObject *mainNamespace();
    /// Calls a function of support.py; takes over its argument, if it has one. Empty, with an exception set, when it
    /// fails.
    static SNK_PythonReference support(const char *function, SNK_PythonReference argument = {});

    /// Flushes sys.stdout and sys.stderr; false, with an exception set, when one of them does not take its text.
    static bool flush();
    /// Returns whether the calling thread is inside of a call that the library made.
    static bool isInsideCall();
    /// Returns whether the calling thread has used up most of the depth that Python allows. Needs no lock.
    static bool isDeep();
    /// Raises KeyboardInterrupt in the innermost call that runs. May be called from a signal handler and by any thread.
    static void interrupt();

    /// One call of the library into Python, with the interpreter lock.
    class Call {
    public:
        Call();
        ~Call();
        Call(const Call &) = delete;
        Call &operator=(const Call &) = delete;

    private:
        const PyGILState_STATE state;
    };
};
