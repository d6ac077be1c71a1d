// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Where a text goes that somebody hands out. The bytes are good for the call only and need not end with a NUL.
struct SNK_TextTaker {
    void *target;
    void (*take)(void *target, const char *text, std::size_t length);

    void operator()(const char *text, std::size_t length) const { take(target, text, length); }
};

/// What Python code can do with the command language, offered by the layer that has it. Only refusal may be called
/// from any thread, and the others where it gives null.
struct SNK_Language {
    /// Null when the calling thread may use the language now, otherwise why it may not.
    const char *(*refusal)();
    /// Enclose what the calling thread does with the language over a time in which others may ask for a refusal.
    void (*begin)();
    void (*end)();
    /// Runs text, hands out what it wrote, and gives the status of its last statement. False when something in it was
    /// refused because it nested too deep.
    bool (*execute)(const char *text, const SNK_TextTaker &output, const SNK_TextTaker &errors, int &status);
    /// False when there is no such variable.
    bool (*getVariable)(const char *name, const SNK_TextTaker &value);
    /// Sets a variable, or a local of the current script. False when the name cannot be that of a variable.
    bool (*setVariable)(const char *name, const char *value, bool local);
    /// Removes a variable, if there is one. False when it is one that stays.
    bool (*unsetVariable)(const char *name);
    /// Hands out the names of all variables that are to be seen; a local that hides a global comes twice.
    void (*listVariables)(const SNK_TextTaker &name);
};

/// Offers the language, borrowed for good; null takes it away.
void SNKsetLanguage(const SNK_Language *language);
