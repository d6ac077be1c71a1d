// SPDX-License-Identifier: Apache-2.0
#pragma once

class CMD_Manager;
class KIT_StringArray;

/// Finds what a half-typed line of the language could become: commands, aliases and scripts, options and arguments of
/// the command, variables after a `$`, functions in an expression, and file names, quoted so that the language reads
/// them back as one word.
class Completion {
public:
    /// Appends the candidates for the text before the cursor. Returns the offset in the line from which they replace
    /// it. A candidate ends with a blank unless the word may continue.
    static int complete(CMD_Manager &manager, const char *line, int cursor, KIT_StringArray &candidates);
};
