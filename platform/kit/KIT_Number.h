// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <cstddef>
#include <string_view>

/// Room for one formatted number. The functions below end the text in it with a NUL.
struct KIT_NumberText {
    char text[40];
};

// Numbers are read and written in the form of the C locale, whatever locale the host has set.

/// Returns the number that text begins with, by the rules of atof: leading white space, a sign, then a decimal or
/// hexadecimal number, inf or nan; what follows is ignored. 0 without a number, an infinity for what is too
/// large, 0 for what is too small.
CMD_API double KITatof(std::string_view text);

/// Returns the whole number that text begins with, by the rules of atoi: leading white space, a sign, digits; what
/// follows is ignored. 0 without a digit; what does not fit becomes the nearest int.
CMD_API int KITatoi(std::string_view text);

/// Returns how many bytes of text are the number that it begins with: a sign, digits with at most one point, an
/// exponent. No blanks, hexadecimal digits, inf or nan. 0 when text does not begin with a number; otherwise
/// *value, unless value is null, is that number.
CMD_API std::size_t KITscanNumber(std::string_view text, double *value);

/// Returns true when all of text is one number for KITscanNumber; then *value is set unless value is null.
CMD_API bool KITisNumber(std::string_view text, double *value);

/// Returns how many bytes of text are the whole number that it begins with: a sign and digits. 0 when there is
/// none; otherwise *value, unless value is null, is the number, or the nearest int.
CMD_API std::size_t KITscanInteger(std::string_view text, int *value);

/// Returns the text that printf writes with %g, up to six significant digits; it is in room.
CMD_API std::string_view KITformatFloat(float value, KIT_NumberText &room);

/// Returns a whole number of up to 15 digits without point or exponent, any other number with up to 15 significant
/// digits and no trailing zeros, as printf writes it with %.15g. There is no negative zero. The result is in
/// room.
CMD_API std::string_view KITformatNumber(double value, KIT_NumberText &room);

/// Returns decimal digits, with a sign when negative; they are in room.
CMD_API std::string_view KITformatInt(long long value, KIT_NumberText &room);
