// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_String.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

class KIT_StringCshIO;
class KIT_WorkArgs;

/// A statement taken apart: its words, made of literal text and of references that each expansion looks up
/// anew. parse depends on the text alone, so a template may be kept with a text that runs again.
///
/// Words are separated by white space.
/// - '...' is literal; \' \\ and \n in it are a quote, a backslash and a newline, any other backslash stays.
/// - "..." keeps what it holds in one word; a backslash in it makes " \ $ or a backquote literal and
///   otherwise stays.
/// - Outside of quotes a backslash makes the next byte literal; at the end of the text it is itself.
/// - $name, ${name} and ${name:-text} are a variable; text, up to the }, replaces it when it is undefined or
///   empty, and is not expanded. A $ before anything else is itself.
/// - `...` is an expression, up to the next backquote that has no backslash right before it; a backslash
///   before a backquote is dropped, and inside double quotes also one before a double quote. All other bytes
///   reach the expression as they are.
/// - What is left open runs to the end of the text. A NUL is the end of the text.
/// - An unquoted value is split into words at its white space and leaves no word when it is empty; a quoted
///   one is part of its word as it is.
///
/// With redirection, a word that is just > >> >& >>& or < and has no quote or backslash takes the next word
/// of the text as a file name. Such a word expands to one name, whatever white space its values hold.
class KIT_CshTemplate {
public:
    /// Takes text apart; nothing of an earlier text remains but the memory. Linear in the length of text, which
    /// is not needed afterwards. Texts beyond 4 GiB are cut.
    void parse(std::string_view text, bool redirection);
    /// The same for a text in which $ and backquotes are bytes like others, and nothing is redirected.
    void parseQuotesOnly(std::string_view text);

    /// Replaces the content of words and io, and returns the number of words.
    ///
    /// With a null lookup its references are literal text, as written, save that a \" in a backquoted text
    /// inside double quotes is a " already; so that a second parse of the word finds the same expression.
    /// With a null io redirections are words. A lookup may do anything but change this template, words or io.
    int expand(KIT_WorkArgs &words, KIT_CshLookup variable, KIT_CshLookup expression,
               KIT_StringCshIO *io) const;

private:
    enum class Kind : std::uint8_t {
        literal,
        name,            // $name
        bracedName,      // ${name}
        defaultName,     // ${name:-text}
        expression,      // `...`
        openExpression   // the same without its end
    };
    enum class Redirect : std::uint8_t { none, out, appendOut, err, appendErr, in };
    struct Segment {
        std::uint32_t start;   // in the arena; all but literal text ends with a NUL
        std::uint32_t length;
        std::uint32_t defaultLength;   // of the text after the NUL of a defaultName
        Kind kind;
        bool quoted;
    };
    struct Word {
        std::uint32_t start;   // of a word that is one literal text, in the arena; such a word has no segments
        std::uint32_t length;
        std::uint32_t segmentsEnd;   // the first segment of the next word
        Redirect redirect;
    };
    class Parser;
    class Expander;

    void take(std::string_view text, bool references, bool redirection);

    std::vector<Word> words;
    std::vector<Segment> segments;
    std::unique_ptr<char[]> arena;   // the bytes of all segments
    std::size_t arenaCapacity = 0;
};
