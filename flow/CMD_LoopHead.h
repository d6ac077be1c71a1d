// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// The first line of a loop, as text.
class CMD_LoopHead {
public:
    /// Returns false for a word that cannot abbreviate `for`, `foreach` or `while`: a quick test for every statement,
    /// before the look-up among the commands.
    static bool canOpenLoop(std::string_view word);
    /// Returns the line with blanks around its operators and without its comment. The head of a loop inside another
    /// loop has not been through the scan of a statement, so this separates its words. `!=`, `<>`, `<=` and `>=`
    /// also get blanks inside quotes.
    static std::string normalize(std::string_view line);
};
