// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include <orvlang/platform/kit/KIT_Args.h>
#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

class CMD_Command;
class CMD_Manager;
class CMD_Source;

/// The argument of a command's callback: the words without the options, the streams to use, and the position of the
/// statement. Object and texts live until the callback returns; a copy has texts of its own.
///
/// Inside a callback `argc()` is at least 1; word 0 is the command as typed, which may be an abbreviation.
class CMD_API CMD_Args : public KIT_Args {
public:
    CMD_Args() = default;
    virtual ~CMD_Args();
    CMD_Args(const CMD_Args &) = default;
    CMD_Args &operator=(const CMD_Args &) = default;

    /// The stream for results, with redirection and the streams of a calling `execute` applied.
    std::ostream &out() const { return *outStream; }
    /// The stream for errors. With a non-zero prefix it first writes the position of the statement, once per
    /// command, when the statement comes from a script.
    std::ostream &err(int prefix);
    /// Later errors are written without a position.
    void quietErrors() { errorPrefixPending = 0; }
    /// Reports a wrong use of the command on the error stream, with the command's help text.
    void showUsage();
    /// The full name of the command that runs now.
    KIT_String commandName() const;
    /// Runs the command that this one overrides, with this same object, on the manager that runs the statement. Does
    /// nothing without one. Only the callback may call it, not code that keeps a copy.
    void callBaseClassCommand();

private:
    friend class CMD_Engine;

    void init(CMD_Manager &manager, const CMD_Source &source, std::ostream *out, std::ostream *err);

    CMD_Manager *manager = nullptr;   // borrowed; the one that runs the statement
    std::ostream *outStream = nullptr;
    std::ostream *errStream = nullptr;
    KIT_String sourceName;
    int lineNumber = 0;
    CMD_Command *command = nullptr;   // borrowed; follows the chain during callBaseClassCommand
    int errorPrefixPending = 1;
};
