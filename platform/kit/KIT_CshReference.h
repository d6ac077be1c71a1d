// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

/// Reads the references to variables of one text, $name, ${name} and ${name:-text}, in the order of their
/// places. A name is a letter or _ and then letters, digits and _, in ASCII.
class KIT_CshReference {
public:
    enum class Form { plain, braced, withFallback };

    /// whole must outlive this object.
    explicit KIT_CshReference(std::string_view whole) : text(whole) {}

    /// Reads the reference at the $ that stands at place at; places only go up from call to call. False when
    /// there is none. Inside double quotes, which quoted says, a reference has to end before the next one.
    bool read(std::size_t at, bool quoted);

    // What read has found, as parts of the text.
    std::string_view name() const { return foundName; }
    /// The text behind :- or nothing.
    std::string_view fallback() const { return foundFallback; }
    /// From the $ to the end of the reference, in bytes.
    std::size_t length() const { return foundLength; }
    Form form() const { return foundForm; }

private:
    bool readFallback(std::size_t start, bool quoted);

    std::string_view text;
    std::size_t noBraceBefore = 0;   // so that texts full of open braces are not searched again and again
    std::string_view foundName;
    std::string_view foundFallback;
    std::size_t foundLength = 0;
    Form foundForm = Form::plain;
};
