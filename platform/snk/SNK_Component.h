// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

struct SNK_ComponentTable;

/// The component around Python. It is in the folder `orvlang` beside the library and is loaded, with Python's own
/// library, at its first use, so that a host without Python pays nothing.
class SNK_Component {
public:
    /// The stack that a call needs, in bytes. Python counts its own depth and stops at a thousand calls, for which its
    /// C code takes up to two thirds of this. (A sort that sorts in its comparisons takes more, in any Python.)
    static constexpr std::size_t theStackReserve = 1024 * 1024;

    /// Returns null when Python cannot run now; `reason`, unless null, is then the text to show.
    static const SNK_ComponentTable *get(std::string *reason = nullptr);
    /// As SNKgetPythonOutputError.
    static int getOutputError();
};
