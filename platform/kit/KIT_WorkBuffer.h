// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <cstddef>
#include <cstdio>
#include <string_view>

/// A text to build another one in. It keeps its memory when it is cleared or filled anew. Arguments may be
/// part of this text.
class CMD_API KIT_WorkBuffer {
public:
    KIT_WorkBuffer() = default;
    explicit KIT_WorkBuffer(std::string_view initial) : text(initial) {}

    /// Replaces the text; null counts as empty.
    void strcpy(const char *source) { text = orEmpty(source); }
    void strcpy(std::string_view source) { text = source; }
    /// Appends; null counts as empty.
    void strcat(const char *source) { text.append(orEmpty(source)); }
    void strcat(std::string_view source) { text.append(source); }
    void append(char c) { text.append(c); }
    /// Inserts source at the start; null counts as empty.
    void prepend(const char *source) { prepend(orEmpty(source)); }
    void prepend(std::string_view source);
    /// Appends length bytes, of any value.
    void write(const char *source, std::size_t length) { text.append({ source, length }); }
    /// Replaces the text by the output of printf, and returns its length. The arguments may point into the text.
    int sprintf(const char *format, ...) __attribute__((format(printf, 2, 3)));

    /// Replaces the text by the next line of file, with its newline when it has one, of any length. Returns false
    /// at the end of the file; the text is then empty.
    bool getline(std::FILE *file);

    /// Returns memory for at least length bytes, which begins with the text so far, for the caller to write to.
    /// No other operation may be called until release, which sets the new length of the text, at most length
    /// bytes.
    char *lock(std::size_t length);
    void release(std::size_t length) { text.resizeUninitialized(length); }

    void copyIntoString(KIT_String &target) const { target = text.view(); }

    /// Appends source so that a line of the language reads it as exactly one word again, with nothing expanded
    /// and no part of it taken for syntax. Null counts as empty. Unless always is set, a source of nothing but
    /// bare bytes is not quoted.
    ///
    /// Backslashes at the end of source are the last bytes appended, outside of the quotes: nothing but a
    /// blank or a plain byte may then follow, above all not a quote, a ; or the end of the line.
    void protectedStrcat(const char *source, bool always);
    /// Returns whether a byte means itself in a word without quotes: ASCII letters, digits and _-./,:+@%.
    static bool isBare(char c);

    const char *c_str() const { return text.c_str(); }
    std::size_t length() const { return text.length(); }
    bool isEmpty() const { return text.isEmpty(); }
    std::string_view view() const { return text.view(); }
    /// Returns the bytes, to be changed in place.
    char *data() { return text.data(); }
    void clear() { text.clear(); }

private:
    static std::string_view orEmpty(const char *source) {
        return source ? std::string_view(source) : std::string_view();
    }

    KIT_String text;
};
