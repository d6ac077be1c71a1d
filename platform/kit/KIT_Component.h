// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A part of the library that needs another, large library: a shared object of its own in the folder `orvlang` beside
/// this one. It is loaded at its first use, so that programs without that use do not pay for it. The two call each other
/// through tables of plain functions and share no symbols.
class KIT_Component {
public:
    /// Loads the shared object `fileName`, which remains loaded, and returns the address of `function` in it.
    /// `globalLibrary` is loaded before it, with its symbols visible to all; null for none. Returns null, with the reason
    /// in `failure`, when anything is missing.
    static void *load(const char *fileName, const char *function, const char *globalLibrary,
                      std::string &failure);
};

#define KIT_TEXT_OF(name) #name
/// The name that a macro stands for, as text.
#define KIT_NAME_OF(macro) KIT_TEXT_OF(macro)
