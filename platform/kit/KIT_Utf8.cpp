// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Utf8.h>

#include <cwchar>

#include <orvlang/platform/kit/KIT_UnicodeScope.h>

namespace {

constexpr char32_t theReplacement = 0xFFFD;

constexpr bool isContinuation(char byte) {
    return (byte & 0xC0) == 0x80;
}

bool isCombining(std::string_view text) {
    return !text.empty() && (text[0] & 0x80) && KITcolumnsOf(KITfirstCharacter(text).code) == 0;
}

}   // namespace

std::size_t KITcharacterLength(char first) {
    const unsigned byte = static_cast<unsigned char>(first);
    if (byte < 0x80)
        return 1;
    if (byte < 0xC2 || byte > 0xF4)
        return 0;
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

KIT_Character KITfirstCharacter(std::string_view text) {
    if (text.empty())
        return { 0, 0 };
    const std::size_t length = KITcharacterLength(text[0]);
    if (length == 1)
        return { static_cast<char32_t>(text[0]), 1 };
    if (length == 0 || length > text.size())
        return { theReplacement, 1 };
    char32_t code = static_cast<unsigned char>(text[0]) & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i]))
            return { theReplacement, 1 };
        code = code << 6 | (text[i] & 0x3Fu);
    }
    constexpr char32_t least[] = { 0, 0, 0x80, 0x800, 0x10000 };
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < least[length] || code > 0x10FFFF || isSurrogate)
        return { theReplacement, 1 };
    return { code, length };
}

int KITcolumnsOf(char32_t code) {
    if (code < 0x7F)
        return 1;
    const KIT_UnicodeScope scope;
    const int columns = wcwidth(static_cast<wchar_t>(code));
    if (columns >= 0)
        return columns;
    return code >= 0x1F000 && code < 0x20000 ? 2 : 1;   // pictures that are newer than the system's list
}

bool KIThasColumns(char32_t code) {
    if (code <= 0x7F)
        return true;
    const KIT_UnicodeScope scope;
    return code != theReplacement && wcwidth(static_cast<wchar_t>(code)) > 0;
}

std::size_t KITfirstClusterLength(std::string_view text) {
    if (text.empty())
        return 0;
    std::size_t length = KITfirstCharacter(text).length;
    if (text[0] >= 0 && text[0] < ' ')
        return length;   // a line end, for instance, stays one
    while (isCombining(text.substr(length)))
        length += KITfirstCharacter(text.substr(length)).length;
    return length;
}

void KITappendCharacter(std::string &text, char32_t code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;   // continuation bytes
    constexpr unsigned marks[] = { 0, 0xC0, 0xE0, 0xF0 };
    text += static_cast<char>(marks[more] | code >> 6 * more);
    for (int i = more - 1; i >= 0; --i)
        text += static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
}
