// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SNK_PythonReference.h"

#include <string>

#include <orvlang/platform/snk/SNK_Language.h>

// Values and exceptions of Python as the library takes them. The interpreter lock must be held.

/// The file that tracebacks would name for the component's own Python code, if they showed it.
inline constexpr char SNK_SupportFile[] = "<orvlang>";

/// Hands out the value as the kind that is wanted, and gives that kind or the one for a value that does not convert.
/// Negative, with an exception set, when the conversion failed in another way.
int SNKgiveValue(PyObject *value, int wanted, double &number, const SNK_TextTaker &texts);
/// Hands out the exception that is set, in short and in full, and clears it; gives the kind, which tells an exception
/// from a sys.exit.
int SNKgiveException(const SNK_TextTaker &texts);
/// Clears the exception that is set and gives it in short.
void SNKdescribeException(std::string &text);
