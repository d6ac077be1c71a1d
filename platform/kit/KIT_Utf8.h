// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// UTF-8 text and its columns on a terminal, in any locale of the host.

/// Returns the text without the byte order mark that some editors put at its start.
constexpr std::string_view KITwithoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

struct KIT_Character {
    char32_t code;        // U+FFFD for a byte that does not belong to a character
    std::size_t length;   // bytes; 0 at the end of the text
};
/// Returns the first character of a text.
KIT_Character KITfirstCharacter(std::string_view text);
/// Returns the length in bytes, 1 to 4, of a character with that first byte; 0 for none.
std::size_t KITcharacterLength(char first);

/// Returns the number of columns of a character: 0 when it combines with the one before, 2 when it is wide.
int KITcolumnsOf(char32_t code);
/// Returns true when the system knows that a character has columns of its own, and for ASCII control characters.
bool KIThasColumns(char32_t code);
/// Returns true when a character must not be sent to a terminal.
constexpr bool KITisUnshowable(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xFFFD;
}

/// Returns the length in bytes of the first cluster of a text: a character and those that combine with it.
std::size_t KITfirstClusterLength(std::string_view text);
void KITappendCharacter(std::string &text, char32_t code);
