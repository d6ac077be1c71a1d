// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A part of the library that needs another, large library: a shared object of its own in the folder `orvlang` beside
/// this one, loaded when it is first asked for, so that nobody else pays for it. The two know of each other tables of
/// plain functions and no symbols.
class KIT_Component {
public:
    /// Loads the shared object `fileName` and gives the address of `function` in it; it stays loaded for good.
    /// `globalLibrary` is loaded in front of it with its symbols visible to all; null for none. Null when anything is
    /// missing: `failure` then tells why.
    static void *load(const char *fileName, const char *function, const char *globalLibrary,
                      std::string &failure);
};

#define KIT_TEXT_OF(name) #name
/// The name that a macro stands for, as text.
#define KIT_NAME_OF(macro) KIT_TEXT_OF(macro)
