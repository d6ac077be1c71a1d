// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

class KIT_CshTemplate;
class KIT_String;
class KIT_StringCshIO;
class KIT_WorkArgs;

/// Looks something up by its text: a variable by its name, or the value of an expression. Returns true when there is
/// one, and sets value, which is empty before. The value may borrow a text that does not change until the caller has
/// copied it, which happens before the next look-up.
using KIT_CshLookup = bool (*)(const char *text, KIT_String &value);

/// The environment of the process as a lookup; the value is a copy.
CMD_API bool KITlookupEnvironment(const char *name, KIT_String &value);

/// A text, null until one is set.
///
/// The text is a private copy, made with malloc, or borrowed from an owner that keeps it alive. A borrowed text is
/// copied before it is changed. A copy of a KIT_String has a text of its own, also of a borrowed one; a move
/// transfers the text as it is. Null and empty compare as equal; only isNull distinguishes them.
class CMD_API KIT_String {
public:
    KIT_String() = default;
    /// Copies text; null stays null.
    KIT_String(const char *text);
    KIT_String(const std::string &text) : KIT_String(std::string_view(text)) {}
    KIT_String(std::string_view text) { assign(text); }
    KIT_String(const KIT_String &other);
    KIT_String(KIT_String &&other) noexcept;
    ~KIT_String();

    /// Returns a KIT_String that uses text without copying it. The caller keeps text alive and unchanged for as long
    /// as it is used; null remains null.
    static KIT_String borrow(const char *text);
    /// The same for a text of known length; text.data()[text.size()] must be 0.
    static KIT_String borrowTerminated(std::string_view text);

    // Assigning keeps the memory of the earlier text when it is large enough; text may be part of this one.
    KIT_String &operator=(const char *text);
    KIT_String &operator=(const std::string &text) { return operator=(std::string_view(text)); }
    KIT_String &operator=(std::string_view text) {
        assign(text);
        return *this;
    }
    KIT_String &operator=(const KIT_String &other);
    KIT_String &operator=(KIT_String &&other) noexcept;
    void assign(std::string_view text);

    /// Makes a borrowed text a private copy.
    void harden();
    /// Returns the text, in memory from malloc that the caller frees, and is null from then on. Returns null for a
    /// null text.
    char *steal();
    /// Empty from now on, not null; keeps its memory.
    void clear() {
        used = 0;
        if (capacity)
            chars[0] = 0;
        else
            chars = const_cast<char *>("");   // with no capacity it is never written to
    }

    /// Never returns null; the text ends with a NUL.
    const char *c_str() const { return chars ? chars : ""; }
    std::size_t length() const { return used; }
    bool isNull() const { return !chars; }
    /// Also true for null.
    bool isEmpty() const { return used == 0; }
    std::string_view view() const { return { c_str(), used }; }
    operator std::string_view() const { return view(); }
    char operator[](std::size_t i) const { return c_str()[i]; }

    /// Returns the bytes, to be changed in place; never null. Valid until the text changes its length.
    char *data();
    /// Makes room for capacity bytes in all, so that growing up to there moves nothing.
    void reserve(std::size_t capacity);
    /// Sets the length; bytes that were not there before are undefined.
    void resizeUninitialized(std::size_t length);
    /// text may be part of this one. Appending one by one takes linear time in all.
    KIT_String &append(std::string_view text);
    KIT_String &append(char c) {
        if (used >= capacity)
            return append(std::string_view(&c, 1));
        chars[used++] = c;
        chars[used] = 0;
        return *this;
    }

    /// Returns the whole number that the text begins with, as KITatoi does.
    int toInt() const;
    static KIT_String itoa(int value);
    /// ASCII letters only.
    void toLower();
    /// Returns the part that begins at start; both arguments are limited to the text, and negative ones count as 0.
    KIT_String substr(long start, long length) const;
    /// Replaces what by with, the first time or each time that it occurs, and returns how often it did.
    /// An empty what is never found.
    int substitute(std::string_view what, std::string_view with, bool all);

    /// Returns true when the text is a number: sign, digits, point, exponent; no blanks, hexadecimal, inf or nan.
    /// Then *value is set unless value is null. With a non-null end the text need only begin with a number,
    /// and *end points to the first byte after it.
    bool isFloat(double *value = nullptr, const char **end = nullptr) const;
    /// Returns true when the text is a sign, if any, and digits. *value is the nearest int, unless value is null.
    bool isInteger(int *value = nullptr) const;

    /// Replaces \n \t \r \a \b \f \v \e \\ \" \', \0 with up to three octal digits after it and \x with one or
    /// two hexadecimal digits by the byte that they mean. Any other backslash is kept.
    void expandControlSequences();
    /// Replaces $name, ${name} and ${name:-text} by the result of the lookup, or by nothing. Quotes and
    /// backslashes are bytes like others.
    void expandVariables(KIT_CshLookup variable = KITlookupEnvironment);

    /// Returns a number below, equal to or above 0, as strcmp. Runs of digits, of any length, order by their
    /// value; everything else by bytes, ASCII letters as lower-case ones unless caseSensitive. Texts that
    /// differ only in leading zeros: the first such difference decides, fewer zeros first.
    static int compareNumberedString(const char *a, const char *b, bool caseSensitive);
    /// The same for qsort over a table of const char *, case-sensitive. No entry is null.
    static int qsortCmpNumberedString(const void *a, const void *b);

    /// Expands the text as a statement of the language and splits it into words. Returns their number.
    ///
    /// A null lookup leaves its references in the words as they are written. With io, redirections go there
    /// instead of into the words; with none they are words. scratch, unless null, is used for the work, so
    /// that no memory is needed for it; it must not be in use by a running expansion. What was in words and io
    /// is lost. KIT_CshTemplate has the rules.
    int cshParse(KIT_WorkArgs &words, KIT_CshLookup variable, KIT_CshLookup expression,
                 KIT_CshTemplate *scratch, KIT_StringCshIO *io) const;
    /// Splits the text at white space into words and returns their number. Quotes and backslashes work as in a
    /// statement, but $ and backquotes are bytes like others. What was in words is lost.
    int parseInPlace(KIT_WorkArgs &words) const;
    /// Splits the text at each run of separators into words, none of them empty, and returns their number.
    /// Quotes mean nothing. What was in words is lost.
    int tokenizeInPlace(KIT_WorkArgs &words, const char *separators) const;

    // Found only where a KIT_String takes part: every std::string would convert to one.
    friend bool operator==(const KIT_String &a, const KIT_String &b) { return a.view() == b.view(); }
    friend bool operator==(const KIT_String &a, std::string_view b) { return a.view() == b; }
    friend bool operator==(const KIT_String &a, const std::string &b) { return a.view() == b; }
    /// A null b counts as empty.
    friend bool operator==(const KIT_String &a, const char *b) {
        return a.view() == (b ? std::string_view(b) : std::string_view());
    }
    friend std::ostream &operator<<(std::ostream &stream, const KIT_String &text) {
        return stream << text.view();
    }

private:
    void setNull();

    char *chars = nullptr;      // ends with a NUL; null for a null text
    std::size_t used = 0;       // without the NUL
    std::size_t capacity = 0;   // without the NUL; 0 when chars is borrowed or null
};
