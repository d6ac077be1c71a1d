// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/snk/SNK_Language.h>

// The seam between the library and the component around Python, a shared object that is loaded at the first use. Each
// side knows only these tables of plain functions of the other, so that neither needs the other's symbols.

/// What the component can ask of the library.
struct SNK_ComponentHost {
    /// Folders that modules are looked up in after all others; ended by null.
    const char *const *folders;
    /// Flushes the standard streams of C++.
    void (*flush)();
    /// Returns whether the operation of the calling thread was interrupted.
    bool (*isInterrupted)();
    /// Reads a line of standard input with its newline; false at the end, and when an interrupt stopped the wait.
    bool (*readLine)(const SNK_TextTaker &line);
    /// Returns the language offered at present, or null.
    const SNK_Language *(*language)();
};

/// What the library can ask of the component. Those that run code take the interpreter lock themselves. They return
/// the kind of the result (SNK_Result::Type), and pass on its texts: the value, the entries, or the exception in
/// short and in full.
struct SNK_ComponentTable {
    int (*runExpression)(const char *code, int wanted, double &number, const SNK_TextTaker &texts);
    int (*runStatements)(const char *code, const SNK_TextTaker &texts);
    int (*runFile)(int argc, char **argv, const SNK_TextTaker &texts);
    /// Returns whether the interpreter has ended; then only this one and finish may be called.
    bool (*hasEnded)();
    /// Returns whether the code that runs on the calling thread, if any, is close to Python's own limit of depth.
    bool (*isDeep)();
    int (*lock)();
    void (*unlock)(int state);
    /// Raises KeyboardInterrupt in the code that runs, if any does. May be called from a signal handler.
    void (*interrupt)();
    /// Runs what Python code has registered for the end of the process. Returns the error number with which standard
    /// output refused what Python had yet to write; 0 for none.
    int (*finish)();
};

/// Starts the interpreter and returns the table; null, with the reason, when that fails. The host is borrowed for ever.
using SNK_StartFunction = const SNK_ComponentTable *(const SNK_ComponentHost &host,
                                                     const SNK_TextTaker &reason);

/// The name that the component exports it by. The number changes with the tables: a component that was made for
/// others is refused, not misread.
#define SNK_START_FUNCTION SNKstartPython4
