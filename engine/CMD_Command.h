// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

class CMD_Args;

/// The body of a command. It writes its results to `args.out()`, its errors to `args.err(1)`, and throws nothing.
using CMD_CommandCallback = void (*)(CMD_Args &args);

/// One installed command: a name, the options it takes and the function that runs it.
///
/// Installing a name again does not remove the older command. The newer one overrides it and can call it
/// (CMD_Args::callBaseClassCommand). Only CMD_Manager makes commands, and it never destroys one: managers of one
/// name share them, and they outlive every manager.
class CMD_API CMD_Command {
public:
    /// The full name. Not copied: the installer must keep the text alive.
    const char *getName() const;
    /// A letter for each option, followed by a `:` for each of its values; empty for none. Not copied.
    const char *getOptions() const;
    /// The plug-in library that ran when the command was installed; null when none did.
    const char *getDSOLocation() const;
    CMD_CommandCallback &getCallback();
    /// The command that this one overrides; null if none.
    CMD_Command *getChainCommand() const;
    /// Whether it may run in safe mode.
    bool isSafe() const;

private:
    friend class CMD_CommandList;
    friend class CMD_Registry;

    CMD_Command(const char *name, const char *options, CMD_CommandCallback callback, bool safe,
                CMD_Command *chainCommand);
    ~CMD_Command() = default;

    /// Returns an earlier command that is equal in everything, from this one on; null if none.
    ///
    /// A program that makes one manager of a name after the other installs the same commands again and again.
    CMD_Command *findTwin(const CMD_Command &wanted);

    const char *name;      // borrowed
    const char *options;   // borrowed
    KIT_String dsoLocation;
    CMD_CommandCallback callback;
    CMD_Command *chainCommand;      // borrowed; lives for ever, as this one
    CMD_Command *older = nullptr;   // borrowed; the previous one of this name by any manager, overridden or not
    int index = -1;                 // in the command list; only of the command that is in it
    bool safe;
};
