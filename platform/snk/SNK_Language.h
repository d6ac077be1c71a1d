// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Receives a text. The bytes are valid for the call only and need not end with a NUL.
struct SNK_TextTaker {
    void *target;
    void (*take)(void *target, const char *text, std::size_t length);

    void operator()(const char *text, std::size_t length) const { take(target, text, length); }
};

/// The operations of the command language for Python code, offered by the layer that has it. Any thread may call refusal,
/// and the others where it returns null.
struct SNK_Language {
    /// Returns null when the calling thread may use the language now, otherwise why it may not.
    const char *(*refusal)();
    /// Begin and end the use of the language by the calling thread, while other threads may call refusal.
    void (*begin)();
    void (*end)();
    /// Runs text, passes on what it wrote, and sets the status of its last statement. Returns false when something in it
    /// was refused because it nested too deep.
    bool (*execute)(const char *text, const SNK_TextTaker &output, const SNK_TextTaker &errors, int &status);
    /// Returns false when there is no such variable.
    bool (*getVariable)(const char *name, const SNK_TextTaker &value);
    /// Sets a variable, or a local of the current script. Returns false when the name is not legal for a variable.
    bool (*setVariable)(const char *name, const char *value, bool local);
    /// Removes a variable, if there is one. Returns false when it cannot be removed.
    bool (*unsetVariable)(const char *name);
    /// Passes on the names of all visible variables; a local that hides a global comes twice.
    void (*listVariables)(const SNK_TextTaker &name);
};

/// Offers the language, borrowed for ever; null withdraws it.
void SNKsetLanguage(const SNK_Language *language);
