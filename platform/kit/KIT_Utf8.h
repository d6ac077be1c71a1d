// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// UTF-8 text as a terminal shows it, whatever locale a host has set.

/// Text without the byte order mark that some editors put at its start.
constexpr std::string_view KITwithoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

struct KIT_Character {
    char32_t code;        // U+FFFD for a byte that belongs to no character
    std::size_t length;   // bytes; 0 at the end of the text
};
/// The first character of a text.
KIT_Character KITfirstCharacter(std::string_view text);
/// How many bytes a character has that begins so: 1 to 4; 0 when none does.
std::size_t KITcharacterLength(char first);

/// The columns that a character takes: 0 when it combines with the one before, 2 when it is wide.
int KITcolumnsOf(char32_t code);
/// Whether the system knows a character as one that takes columns of its own; ASCII control characters count.
bool KIThasPlace(char32_t code);
/// Whether a character must not reach a terminal.
constexpr bool KITisUnshowable(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xFFFD;
}

/// How many bytes belong to the first place of a text: a character and what combines with it.
std::size_t KITfirstPlace(std::string_view text);
void KITappendCharacter(std::string &text, char32_t code);
