// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SNK_PythonReference.h"

/// The module `orvlang`, through which Python code reaches the command language; orvlang.py adds the rest to it. Empty,
/// with an exception set, when that fails.
SNK_PythonReference SNKmakePythonModule();
/// A function that gives the next line of standard input, empty at its end.
SNK_PythonReference SNKmakeReadLine();
