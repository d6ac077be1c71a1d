// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class CMD_Args;

/// The callback of a command that is written in Python. A host installs it with CMD_Manager::installCommand under the
/// command's name and option string. A use of the command calls `run(args, options)` of the attribute of that name in
/// the Python module `orvlang_commands`: args is the list of the words, options a dictionary from each option letter on
/// the line to the list of its values. It returns two texts, for the output stream and for the error stream.
///
/// Texts become Python string literals in double quotes: Python interprets a backslash in a word, and one before a
/// double quote, or at the end, ends the literal early. Install it as a command that is not safe.
CMD_API void CMDpythonCommandCallback(CMD_Args &args);
