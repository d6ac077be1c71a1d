// SPDX-License-Identifier: Apache-2.0
//
// Functions of texts. A text is a row of bytes, its places count from 0, and a negative place counts from the end.
// Letters are those of ASCII, whatever locale the host has.
#include <orvlang/platform/fml/FML_Call.h>
#include <orvlang/platform/fml/FML_Library.h>
#include <orvlang/platform/kit/KIT_Char.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

/// Returns the offset in argument 0 that argument `i` is, limited to the text.
std::size_t placeIn(const FML_Call &call, std::size_t i) {
    const std::size_t length = call.text(0).size();
    return static_cast<std::size_t>(std::clamp(call.place(i, length), 0L, static_cast<long>(length)));
}

std::size_t countOf(long count) {
    return static_cast<std::size_t>(std::max(count, 0L));
}

void givePlace(FML_Call &call, std::size_t place) {
    call.give(place == std::string_view::npos ? -1.0 : static_cast<double>(place));
}

template <char (*change)(char)>
void changeBytes(FML_Call &call) {
    const std::string_view text = call.text(0);
    if (char *room = call.giveRoom(text.size()))
        std::transform(text.begin(), text.end(), room, change);
}

char toUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

char toLower(char c) {
    return KITtoLower(c);
}

void substr(FML_Call &call) {
    const std::string_view text = call.text(0);
    const std::size_t start = placeIn(call, 1);
    call.giveShared(text.substr(start, call.has(2) ? countOf(call.integer(2)) : std::string_view::npos));
}

void left(FML_Call &call) {
    call.giveShared(call.text(0).substr(0, countOf(call.integer(1))));
}

void right(FML_Call &call) {
    const std::string_view text = call.text(0);
    call.giveShared(text.substr(text.size() - std::min(text.size(), countOf(call.integer(1)))));
}

void find(FML_Call &call) {
    givePlace(call, call.text(0).find(call.text(1), call.has(2) ? placeIn(call, 2) : 0));
}

void findLast(FML_Call &call) {
    givePlace(call, call.text(0).rfind(call.text(1)));
}

void occurrences(FML_Call &call) {
    const std::string_view text = call.text(0);
    const std::string_view what = call.text(1);
    std::size_t count = 0;
    for (std::size_t at = text.find(what); !what.empty() && at != text.npos;
         at = text.find(what, at + what.size()))
        count++;
    call.give(count);
}

void replace(FML_Call &call) {
    const std::string_view text = call.text(0);
    const std::string_view what = call.text(1);
    const std::string_view with = call.text(2);
    std::size_t times = call.has(3) ? countOf(call.integer(3)) : text.npos;
    std::string replaced;
    std::size_t from = 0;
    while (times-- > 0 && !what.empty()) {
        const std::size_t at = text.find(what, from);
        if (at == text.npos)
            break;
        if (!call.extend(replaced, text.substr(from, at - from)) || !call.extend(replaced, with))
            return;
        from = at + what.size();
    }
    if (from == 0)
        return call.giveShared(text);
    if (call.extend(replaced, text.substr(from)))
        call.giveText(replaced);
}

void trimSides(FML_Call &call, bool atStart, bool atEnd) {
    std::string_view text = call.text(0);
    const std::string_view what = call.textOr(1, KITspaces);
    if (atStart)
        text.remove_prefix(std::min(text.find_first_not_of(what), text.size()));
    if (atEnd)
        text = text.substr(0, text.find_last_not_of(what) + 1);
    call.giveShared(text);
}

void repeat(FML_Call &call) {
    const std::string_view text = call.text(0);
    const std::size_t times = text.empty() ? 0 : countOf(call.integer(1));
    std::size_t size = 0;
    if (__builtin_mul_overflow(text.size(), times, &size))
        return call.fail(FML_TEXT_TOO_LONG);
    char *room = call.giveRoom(size);
    if (!room || size == 0)
        return;
    std::copy(text.begin(), text.end(), room);
    // Each step doubles the text by a copy of it, so that there are few steps.
    for (std::size_t done = text.size(); done < size; done *= 2)
        std::memcpy(room + done, room, std::min(done, size - done));
}

void reverse(FML_Call &call) {
    const std::string_view text = call.text(0);
    if (char *room = call.giveRoom(text.size()))
        std::reverse_copy(text.begin(), text.end(), room);
}

/// Pads the text to the width in argument 1 with argument 2. `before` halves of the padding come before the text: 0 for
/// none of it, 1 for half, 2 for all.
void pad(FML_Call &call, int before) {
    const std::string_view text = call.text(0);
    const std::string_view fill = call.textOr(2, " ");
    const std::size_t width = countOf(call.integer(1));
    if (fill.empty() || width <= text.size())
        return call.giveShared(text);
    char *room = call.giveRoom(width);
    if (!room)
        return;
    const std::size_t missing = width - text.size();
    const std::size_t front = missing * static_cast<std::size_t>(before) / 2;
    for (std::size_t i = 0; i < front; i++)
        *room++ = fill[i % fill.size()];
    room = std::copy(text.begin(), text.end(), room);
    for (std::size_t i = 0; i < missing - front; i++)
        *room++ = fill[i % fill.size()];
}

void concat(FML_Call &call) {
    std::string all;
    for (std::size_t i = 0; i < call.count(); i++)
        if (!call.extend(all, call.textOfAny(i)))
            return;
    call.giveText(all);
}

/// Returns whether `c` is in the set that `pattern` begins with, after its `[`, and removes the set from the pattern.
/// Without an end it is not a set, and `[` means itself.
bool takeSet(std::string_view &pattern, char c) {
    const bool isNegated = !pattern.empty() && (pattern[0] == '!' || pattern[0] == '^');
    const std::size_t first = isNegated ? 1 : 0;
    const std::size_t end = pattern.find(']', first + 1);   // a `]` in front is a member
    if (end == pattern.npos)
        return c == '[';
    bool isMember = false;
    for (std::size_t i = first; i < end; i++) {
        const bool isRange = i + 2 < end && pattern[i + 1] == '-';
        const char last = isRange ? pattern[i + 2] : pattern[i];
        isMember = isMember || (static_cast<unsigned char>(c) >= static_cast<unsigned char>(pattern[i]) &&
                                static_cast<unsigned char>(c) <= static_cast<unsigned char>(last));
        i += isRange ? 2 : 0;
    }
    pattern.remove_prefix(end + 1);
    return isMember != isNegated;
}

/// Whether `c` is what `pattern` begins with, which is then taken off it. The pattern begins with no `*`.
bool takeOne(std::string_view &pattern, char c) {
    const char p = pattern.front();
    pattern.remove_prefix(1);
    if (p == '?')
        return true;
    if (p == '[')
        return takeSet(pattern, c);
    if (p != '\\' || pattern.empty())
        return p == c;
    const bool isSame = pattern.front() == c;
    pattern.remove_prefix(1);
    return isSame;
}

/// Only the last `*` is ever tried again, so the time is bounded by the product of the two lengths.
bool matches(std::string_view text, std::string_view pattern) {
    bool hasStar = false;
    std::string_view starPattern;
    std::string_view starText;
    for (;;) {
        if (!pattern.empty() && pattern.front() == '*') {
            pattern.remove_prefix(1);
            hasStar = true;
            starPattern = pattern;
            starText = text;
            continue;
        }
        if (text.empty() && pattern.empty())
            return true;
        if (!text.empty() && !pattern.empty() && takeOne(pattern, text.front())) {
            text.remove_prefix(1);
            continue;
        }
        if (!hasStar || starText.empty())
            return false;
        starText.remove_prefix(1);
        text = starText;
        pattern = starPattern;
    }
}

void character(FML_Call &call) {
    const long code = call.integer(0);
    if (code < 1 || code > 255)
        return call.fail(FML_OUT_OF_RANGE);
    *call.giveRoom(1) = static_cast<char>(code);
}

void code(FML_Call &call) {
    if (call.text(0).empty())
        return call.fail(FML_OUT_OF_RANGE);
    call.give(static_cast<double>(static_cast<unsigned char>(call.text(0).front())));
}

void fixed(FML_Call &call) {
    const long digits = call.integer(1);
    if (digits < 0 || digits > 30)
        return call.fail(FML_OUT_OF_RANGE);
    char room[400];   // the largest double has 309 digits in front of the point
    const auto written = std::to_chars(room, room + sizeof room, call.number(0), std::chars_format::fixed,
                                       static_cast<int>(digits));
    call.giveText({ room, written.ptr });
}

void hexadecimal(FML_Call &call) {
    const long value = call.integer(0);
    if (value < 0 || static_cast<double>(value) != std::trunc(call.number(0)))
        return call.fail(FML_OUT_OF_RANGE);
    char room[32];
    const auto written = std::to_chars(room, room + sizeof room, value, 16);
    call.giveText({ room, written.ptr });
}

constexpr FML_LibraryFunction theRows[] = {
    { "char", "n", character, "char(code)", "The text of one byte, with a code from 1 to 255." },
    { "code", "t", code, "code(text)", "The code of the first byte of a text." },
    { "concat", "a*", concat, "concat(a, ...)", "The texts of all values in a row; numbers are not added." },
    { "contains", "tt",
      [](FML_Call &call) { call.give(call.text(0).find(call.text(1)) != std::string_view::npos); },
      "contains(text, what)", "1 when what is a part of the text, else 0." },
    { "endswith", "tt", [](FML_Call &call) { call.give(call.text(0).ends_with(call.text(1))); },
      "endswith(text, what)", "1 when the text ends with what, else 0." },
    { "find", "tt|n", find, "find(text, what, [start])",
      "The first position of what in the text, from start on; -1 when it does not occur." },
    { "findlast", "tt", findLast, "findlast(text, what)",
      "The last position of what in the text; -1 when it does not occur." },
    { "fixed", "nn", fixed, "fixed(x, digits)", "The text of x with that many digits after the point." },
    { "hex", "n", hexadecimal, "hex(x)", "The text of a whole number, not below 0, in hexadecimal digits." },
    { "left", "tn", left, "left(text, count)", "The first count bytes of a text." },
    { "length", "t", [](FML_Call &call) { call.give(call.text(0).size()); }, "length(text)",
      "How many bytes a text has." },
    { "lower", "t", changeBytes<toLower>, "lower(text)", "The text with small letters instead of capitals." },
    { "match", "tt", [](FML_Call &call) { call.give(matches(call.text(0), call.text(1))); },
      "match(text, pattern)",
      "1 when the whole text fits the pattern, else 0.\n"
      "In the pattern * is any text, ? any byte, [a-z] one of a set, [!a-z] one that is not in it, and \\ "
      "takes\n"
      "what follows literally." },
    { "occurrences", "tt", occurrences, "occurrences(text, what)", "How often what occurs in the text." },
    { "padcenter", "tn|t", [](FML_Call &call) { pad(call, 1); }, "padcenter(text, width, [fill])",
      "The text with blanks, or the fill, on both sides up to the width." },
    { "padleft", "tn|t", [](FML_Call &call) { pad(call, 2); }, "padleft(text, width, [fill])",
      "The text with blanks, or the fill, before it up to the width." },
    { "padright", "tn|t", [](FML_Call &call) { pad(call, 0); }, "padright(text, width, [fill])",
      "The text with blanks, or the fill, after it up to the width." },
    { "repeat", "tn", repeat, "repeat(text, count)", "The text count times in a row." },
    { "replace", "ttt|n", replace, "replace(text, what, with, [times])",
      "The text with what replaced by with, everywhere or at the first so many times." },
    { "reverse", "t", reverse, "reverse(text)", "The bytes of the text from the last to the first." },
    { "right", "tn", right, "right(text, count)", "The last count bytes of a text." },
    { "startswith", "tt", [](FML_Call &call) { call.give(call.text(0).starts_with(call.text(1))); },
      "startswith(text, what)", "1 when the text begins with what, else 0." },
    { "substr", "tn|n", substr, "substr(text, start, [count])",
      "The part of the text from start on, count bytes or all the rest.\n"
      "Positions count from 0, negative ones from the end." },
    { "trim", "t|t", [](FML_Call &call) { trimSides(call, true, true); }, "trim(text, [bytes])",
      "The text without white space, or without the given bytes, at its start and end." },
    { "trimleft", "t|t", [](FML_Call &call) { trimSides(call, true, false); }, "trimleft(text, [bytes])",
      "The text without white space, or without the given bytes, at its start." },
    { "trimright", "t|t", [](FML_Call &call) { trimSides(call, false, true); }, "trimright(text, [bytes])",
      "The text without white space, or without the given bytes, at its end." },
    { "upper", "t", changeBytes<toUpper>, "upper(text)", "The text with capitals instead of small letters." },
};

}   // namespace

constinit const FML_LibraryRows theTextFunctions = theRows;
