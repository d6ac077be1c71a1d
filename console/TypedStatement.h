// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class CMD_Manager;

/// The last statement of a half-typed line: its words, and the word before the cursor. Splits the words almost as the
/// language does, which is close enough for completion.
class TypedStatement {
public:
    TypedStatement(const CMD_Manager &manager, std::string_view text);

    /// The words before the one at the cursor, without their quotes.
    std::vector<std::string> before;
    /// The word at the cursor, without its quotes and with its variables expanded.
    std::string word;
    bool isPlain = true;   // it contains no quote, backslash or variable
    char quote = '\0';     // open at the cursor: ' or " or `
    bool isComment = false;

    // The last part of the word, after its last slash.

    size_t partStart = 0;    // in the text
    size_t partOffset = 0;   // in the word
    char partQuote = '\0';   // open where it starts

    /// Offset of a `$` that only letters of a name follow up to the cursor, perhaps after a brace; npos for none.
    size_t dollar = std::string_view::npos;
    bool hasBrace = false;

private:
    void beginWord(size_t offset, char openingQuote = '\0');
    void endWord();
    void add(char c, size_t nextOffset);
    size_t addVariable(std::string_view rest);
    size_t addEscaped(std::string_view rest);

    const CMD_Manager &manager;
    bool isInWord = false;
};
