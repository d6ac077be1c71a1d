// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Number.h>

#include <orvlang/platform/kit/KIT_Char.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

// Every whole number of so many digits is a double exactly, and 15 is also as many as any decimal number keeps.
constexpr int theExactDigits = 15;
constexpr double theExactLimit = 1e15;

const char *skipSpace(const char *at, const char *end) {
    while (at != end && KITisSpace(*at))
        ++at;
    return at;
}

/// Skips a sign; returns true for a minus.
bool skipSign(const char *&at, const char *end) {
    if (at == end || (*at != '-' && *at != '+'))
        return false;
    return *at++ == '-';
}

/// Returns whether a decimal number that std::from_chars found out of range is too near to 0; if not, it is too large.
bool isTooSmall(const char *at, const char *end) {
    long scale = 0;   // the digits are 0.ddd times ten to this power
    bool afterPoint = false;
    bool significant = false;
    for (; at != end && *at != 'e' && *at != 'E'; ++at) {
        significant = significant || (*at != '0' && *at != '.');
        if (*at == '.')
            afterPoint = true;
        else if (significant != afterPoint)
            scale += significant ? 1 : -1;
    }
    if (at == end)
        return scale <= 0;
    ++at;
    const bool negative = skipSign(at, end);
    long exponent = 0;
    if (std::from_chars(at, end, exponent).ec != std::errc())
        return negative;
    return scale + (negative ? -exponent : exponent) <= 0;
}

/// Reads a number without a sign, as std::from_chars does. Returns the end of it, at itself when there is none.
const char *readUnsigned(const char *at, const char *end, double &value) {
    // Most numbers are short and whole.
    const char *digit = at;
    std::int64_t whole = 0;
    for (; digit != end && KITisDigit(*digit) && digit - at < theExactDigits; ++digit)
        whole = whole * 10 + (*digit - '0');
    if (digit != at && (digit == end || (!KITisDigit(*digit) && *digit != '.' && (*digit | 32) != 'e'))) {
        value = static_cast<double>(whole);
        return digit;
    }
    const auto [after, error] = std::from_chars(at, end, value);
    if (error == std::errc::result_out_of_range)
        value = isTooSmall(at, after) ? 0.0 : std::numeric_limits<double>::infinity();
    return after;
}

bool isHexDigit(char c) {
    return KITisDigit(c) || ((c | 32) >= 'a' && (c | 32) <= 'f');
}

bool beginsHexadecimal(const char *at, const char *end) {
    if (end - at < 3 || at[0] != '0' || (at[1] | 32) != 'x')
        return false;
    return isHexDigit(at[2]) || (at[2] == '.' && end - at > 3 && isHexDigit(at[3]));
}

double readHexadecimal(const char *at, const char *end) {
    double value = 0;
    const auto [after, error] = std::from_chars(at, end, value, std::chars_format::hex);
    if (error != std::errc::result_out_of_range)
        return value;
    const std::string_view number(at, static_cast<std::size_t>(after - at));
    const bool tooSmall = number.find("p-") != number.npos || number.find("P-") != number.npos;
    return tooSmall ? 0.0 : std::numeric_limits<double>::infinity();
}

}   // namespace

double KITatof(std::string_view text) {
    const char *end = text.data() + text.size();
    const char *at = skipSpace(text.data(), end);
    const bool negative = skipSign(at, end);
    double value = 0;
    if (at == end || *at == '-')
        return 0;
    if (beginsHexadecimal(at, end))
        value = readHexadecimal(at + 2, end);
    else if (readUnsigned(at, end, value) == at)
        return 0;
    return negative ? -value : value;
}

int KITatoi(std::string_view text) {
    const char *end = text.data() + text.size();
    const char *at = skipSpace(text.data(), end);
    int value = 0;
    KITscanInteger({ at, static_cast<std::size_t>(end - at) }, &value);
    return value;
}

std::size_t KITscanNumber(std::string_view text, double *value) {
    const char *end = text.data() + text.size();
    const char *at = text.data();
    const bool negative = skipSign(at, end);
    // Only these may begin a number here: std::from_chars also reads a sign, inf and nan.
    if (at == end || (!KITisDigit(*at) && *at != '.'))
        return 0;
    double result = 0;
    const char *after = readUnsigned(at, end, result);
    if (after == at)
        return 0;
    if (value)
        *value = negative ? -result : result;
    return static_cast<std::size_t>(after - text.data());
}

bool KITisNumber(std::string_view text, double *value) {
    double result = 0;
    if (text.empty() || KITscanNumber(text, &result) != text.size())
        return false;
    if (value)
        *value = result;
    return true;
}

std::size_t KITscanInteger(std::string_view text, int *value) {
    const char *end = text.data() + text.size();
    const char *at = text.data();
    const bool negative = skipSign(at, end);
    const char *first = at;
    std::int64_t result = 0;
    for (; at != end && KITisDigit(*at); ++at) {
        if (result <= std::numeric_limits<int>::max())
            result = result * 10 + (*at - '0');
    }
    if (at == first)
        return 0;
    if (negative)
        result = -result;
    if (value)
        *value = static_cast<int>(result > std::numeric_limits<int>::max()   ? std::numeric_limits<int>::max()
                                  : result < std::numeric_limits<int>::min() ? std::numeric_limits<int>::min()
                                                                             : result);
    return static_cast<std::size_t>(at - text.data());
}

namespace {

std::string_view finish(KIT_NumberText &room, char *after) {
    *after = 0;
    return { room.text, static_cast<std::size_t>(after - room.text) };
}

/// At most so many significant digits, without zeros at the end: %g with that precision.
std::string_view formatGeneral(double value, int digits, KIT_NumberText &room) {
    char *limit = room.text + sizeof room.text - 1;
    return finish(room, std::to_chars(room.text, limit, value, std::chars_format::general, digits).ptr);
}

}   // namespace

std::string_view KITformatInt(long long value, KIT_NumberText &room) {
    return finish(room, std::to_chars(room.text, room.text + sizeof room.text - 1, value).ptr);
}

std::string_view KITformatFloat(float value, KIT_NumberText &room) {
    constexpr float limit = 1e6F;   // from here on %g has an exponent
    if (value > -limit && value < limit) {
        const int whole = static_cast<int>(value);
        if (static_cast<float>(whole) == value && (whole != 0 || !std::signbit(value)))
            return KITformatInt(whole, room);
    }
    return formatGeneral(static_cast<double>(value), 6, room);
}

namespace {

/// Formats a number that has few decimals, as most have; empty for another one.
std::string_view formatShortDecimal(double value, KIT_NumberText &room) {
    constexpr int decimals = 6;
    constexpr double scale = 1e6;
    const double size = std::abs(value);
    if (!(size >= 1e-4 && size < theExactLimit / scale))
        return {};
    // The division is rounded once, as reading the digits is. So when it returns the number, they are its digits,
    // and as they are no more than 15 they are those that it is shown with.
    const double scaled = std::nearbyint(size * scale);
    if (scaled / scale != size)
        return {};
    char *at = room.text;
    if (value < 0)
        *at++ = '-';
    const auto digits = static_cast<long long>(scaled);
    at = std::to_chars(at, room.text + sizeof room.text, digits / static_cast<long long>(scale)).ptr;
    *at++ = '.';
    long long rest = digits % static_cast<long long>(scale);
    for (int i = decimals; i-- > 0; rest /= 10)
        at[i] = static_cast<char>('0' + rest % 10);
    for (at += decimals; at[-1] == '0';)
        --at;
    return finish(room, at);
}

}   // namespace

std::string_view KITformatNumber(double value, KIT_NumberText &room) {
    if (value > -theExactLimit && value < theExactLimit) {
        const auto whole = static_cast<long long>(value);
        if (static_cast<double>(whole) == value)
            return KITformatInt(whole, room);
    }
    const std::string_view shortText = formatShortDecimal(value, room);
    return shortText.empty() ? formatGeneral(value, theExactDigits, room) : shortText;
}
