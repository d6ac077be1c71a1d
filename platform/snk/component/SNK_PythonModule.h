// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SNK_PythonReference.h"

/// Returns the module `orvlang`, through which Python code uses the command language; orvlang.py adds the rest to it.
/// Empty, with an exception set, when that fails.
SNK_PythonReference SNKmakePythonModule();
/// Returns a Python function that reads the next line of standard input, empty at its end.
SNK_PythonReference SNKmakeReadLine();
