// SPDX-License-Identifier: Apache-2.0
#pragma once

struct SNK_Language;

/// What Python code can do with the current command manager.
const SNK_Language &CMDgetPythonLanguage();
