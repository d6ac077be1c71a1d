// SPDX-License-Identifier: Apache-2.0
#pragma once

struct SNK_Language;

/// Returns the operations of the current command manager that Python code can use.
const SNK_Language &CMDgetPythonLanguage();
