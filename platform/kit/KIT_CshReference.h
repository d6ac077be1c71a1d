// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

/// Reads the references to variables of one text, $name, ${name} and ${name:-text}, from its start to its
/// end. A name is a letter or _ and then letters, digits and _, in ASCII.
class KIT_CshReference {
public:
    enum class Form { plain, braced, withFallback };

    /// whole must outlive this object.
    explicit KIT_CshReference(std::string_view whole) : text(whole) {}

    /// Reads the reference that begins with the $ at an offset, which only grows from call to call. Returns false when
    /// there is none. Inside double quotes (`quoted`) a reference has to end before the next one.
    bool read(std::size_t at, bool quoted);

    // What read has found, as parts of the text.
    std::string_view name() const { return foundName; }
    /// Returns the text after :- or nothing.
    std::string_view fallback() const { return foundFallback; }
    /// Returns the bytes from the $ to the end of the reference.
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
