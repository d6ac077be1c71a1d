// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SNK_PythonReference.h"

#include <string>

#include <orvlang/platform/snk/SNK_Language.h>

// Conversion of values and exceptions of Python for the library. The interpreter lock must be held.

/// The file that tracebacks would name for the component's own Python code, if they showed it.
inline constexpr char SNK_SupportFile[] = "<orvlang>";

/// Passes on the value as the kind that is wanted. Returns that kind, or the one for a value that does not convert.
/// Negative, with an exception set, when the conversion failed in another way.
int SNKgiveValue(PyObject *value, int wanted, double &number, const SNK_TextTaker &texts);
/// Passes on the exception that is set, in short and in full, and clears it. Returns the kind: an exception or a
/// sys.exit.
int SNKgiveException(const SNK_TextTaker &texts);
/// Clears the exception that is set and returns it in short.
void SNKdescribeException(std::string &text);
