// SPDX-License-Identifier: Apache-2.0
#pragma once

// The classes of bytes that the language knows, as in the C locale whatever locale a host has set.

constexpr bool KITisSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
/// All bytes for which it is true, to search for.
inline constexpr char KITspaces[] = " \t\n\v\f\r";
constexpr bool KITisDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool KITisAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool KITisAlnum(char c) {
    return KITisAlpha(c) || KITisDigit(c);
}
/// Printable and no blank.
constexpr bool KITisGraph(char c) {
    return c > ' ' && c <= '~';
}
constexpr char KITtoLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
