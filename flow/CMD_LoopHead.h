// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// The first line of a loop, as text.
class CMD_LoopHead {
public:
    /// False for a word that can be no abbreviation of `for`, `foreach` or `while`: a quick test for every
    /// statement, before the commands are asked.
    static bool canOpenLoop(std::string_view word);
    /// The line with its operators set apart by blanks and without its comment. The head of a loop inside
    /// another loop has not been through the scan that a statement gets, so this is what sets its words apart.
    /// `!=`, `<>`, `<=` and `>=` are set apart inside quotes, too.
    static std::string normalize(std::string_view line);
};
