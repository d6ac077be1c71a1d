// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class CMD_Manager;

/// The statement that a line ends with, as far as it is typed: its words, and the word that the cursor stands behind. A
/// sketch of how the language reads them, good enough to tell what is meant.
class TypedStatement {
public:
    TypedStatement(const CMD_Manager &manager, std::string_view text);

    /// The words before the one at the cursor, without their quotes.
    std::vector<std::string> before;
    /// The word at the cursor, without its quotes and with its variables expanded.
    std::string word;
    bool isPlain = true;   // it holds no quote, backslash or variable
    char quote = '\0';     // that is open at the cursor: ' or " or `
    bool isComment = false;

    // Of the last part of the word, behind its last slash.

    size_t partStart = 0;    // in the text
    size_t partOffset = 0;   // in the word
    char partQuote = '\0';   // open where it starts

    /// Where a `$` with nothing but letters of a name behind it stands, and whether a brace does; npos without.
    size_t dollar = std::string_view::npos;
    bool hasBrace = false;

private:
    void beginWord(size_t offset, char openingQuote = '\0');
    void endWord();
    void add(char c, size_t behind);
    size_t addVariable(std::string_view rest);
    size_t addEscaped(std::string_view rest);

    const CMD_Manager &manager;
    bool isInWord = false;
};
