// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_CshTemplate.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_CshReference.h>
#include <orvlang/platform/kit/KIT_StringCshIO.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace {

enum class ByteClass : unsigned char { plain, space, special };

constexpr auto theByteClasses = [] {
    std::array<ByteClass, 256> classes{};
    for (const char c : std::string_view(KITspaces))
        classes[static_cast<unsigned char>(c)] = ByteClass::space;
    for (const char c : std::string_view("'\"\\$`"))
        classes[static_cast<unsigned char>(c)] = ByteClass::special;
    return classes;
}();

ByteClass classOf(char c) {
    return theByteClasses[static_cast<unsigned char>(c)];
}

}   // namespace

/// Takes one text apart. Every byte of the arena comes from a byte of the text: a name or an expression has lost
/// its $ or backquote, and has its NUL instead. So room for the text is room for all.
class KIT_CshTemplate::Parser {
public:
    Parser(KIT_CshTemplate &result, std::string_view whole, bool readReferences, bool readRedirection)
        : target(result), text(whole), at(whole.data()), end(at + whole.size()), out(result.arena.get()),
          reference(whole), references(readReferences), redirection(readRedirection) {}

    void run() {
        while (at != end) {
            switch (classOf(*at)) {
            case ByteClass::plain:
                plainRun();
                break;
            case ByteClass::space:
                endWord();
                ++at;
                break;
            case ByteClass::special:
                special();
                break;
            }
        }
        endWord();
    }

private:
    void plainRun() {
        openLiteral();
        // In variables of this block, which the stores cannot change.
        const char *from = at;
        char *to = out;
        do
            *to++ = *from++;
        while (from != end && classOf(*from) == ByteClass::plain);
        at = from;
        out = to;
    }

    void special() {
        bare = false;
        switch (*at) {
        case '\'':
            return quote(&Parser::singleQuoted);
        case '"':
            return quote(&Parser::doubleQuoted);
        case '\\':
            if (at + 1 != end)
                ++at;
            return copyByte();
        default:
            return referenceOrByte(false);
        }
    }

    /// Reads a quote from its opening; it makes a word also when it is empty.
    void quote(void (Parser::*inside)()) {
        const std::size_t segmentsBefore = target.segments.size();
        ++at;
        (this->*inside)();
        if (target.segments.size() == segmentsBefore)
            openLiteral();
    }

    void singleQuoted() {
        for (; at != end; ++at) {
            char c = *at;
            if (c == '\'') {
                ++at;
                return;
            }
            if (c == '\\' && at + 1 != end && (at[1] == '\'' || at[1] == '\\' || at[1] == 'n')) {
                c = *++at;
                if (c == 'n')
                    c = '\n';
            }
            putByte(c);
        }
    }

    void doubleQuoted() {
        while (at != end) {
            switch (*at) {
            case '"':
                ++at;
                return;
            case '\\':
                if (at + 1 != end && (at[1] == '"' || at[1] == '\\' || at[1] == '$' || at[1] == '`'))
                    ++at;
                copyByte();
                break;
            case '$':
            case '`':
                referenceOrByte(true);
                break;
            default:
                copyByte();
            }
        }
    }

    void referenceOrByte(bool quoted) {
        if (!references || (*at == '$' && !reference.read(static_cast<std::size_t>(at - text.data()), quoted)))
            copyByte();
        else if (*at == '$')
            variable(quoted);
        else
            expression(quoted);
    }

    void variable(bool quoted) {
        static constexpr Kind theKinds[] = { Kind::name, Kind::bracedName, Kind::defaultName };
        closeLiteral();
        const std::string_view fallback = reference.fallback();
        const char *start = out;
        out = std::copy(reference.name().begin(), reference.name().end(), out);
        addReference(start, fallback.size(), theKinds[static_cast<int>(reference.form())], quoted);
        if (reference.form() == KIT_CshReference::Form::withFallback) {
            out = std::copy(fallback.begin(), fallback.end(), out);
            *out++ = 0;
        }
        at += reference.length();
    }

    void expression(bool quoted) {
        closeLiteral();
        const char *start = out;
        for (++at; at != end && *at != '`'; *out++ = *at++) {
            if (*at == '\\' && at + 1 != end && (at[1] == '`' || (quoted && at[1] == '"')))
                ++at;
        }
        addReference(start, 0, at == end ? Kind::openExpression : Kind::expression, quoted);
        if (at != end)
            ++at;
    }

    void addReference(const char *start, std::size_t defaultLength, Kind kind, bool quoted) {
        addSegment(start, defaultLength, kind, quoted);
        *out++ = 0;
    }

    void addSegment(const char *start, std::size_t defaultLength, Kind kind, bool quoted) {
        target.segments.push_back({ static_cast<std::uint32_t>(start - target.arena.get()),
                                    static_cast<std::uint32_t>(out - start),
                                    static_cast<std::uint32_t>(defaultLength), kind, quoted });
    }

    void openLiteral() {
        if (!literalStart)
            literalStart = out;
    }

    void closeLiteral() {
        if (!literalStart)
            return;
        addSegment(literalStart, 0, Kind::literal, false);
        literalStart = nullptr;
    }

    void putByte(char c) {
        openLiteral();
        *out++ = c;
    }

    void copyByte() { putByte(*at++); }

    void endWord() {
        if (target.segments.size() != firstSegment)
            endWordOfSegments();
        else if (literalStart)
            endLiteralWord();
        bare = true;
    }

    void endLiteralWord() {
        const std::string_view word(literalStart, static_cast<std::size_t>(out - literalStart));
        const bool operatorWord = redirection && bare && (word[0] == '>' || word[0] == '<');
        target.words.push_back({ static_cast<std::uint32_t>(literalStart - target.arena.get()),
                                 static_cast<std::uint32_t>(word.size()),
                                 static_cast<std::uint32_t>(firstSegment),
                                 operatorWord ? redirectOf(word) : Redirect::none });
        literalStart = nullptr;
    }

    void endWordOfSegments() {
        closeLiteral();
        firstSegment = target.segments.size();
        target.words.push_back({ 0, 0, static_cast<std::uint32_t>(firstSegment), Redirect::none });
    }

    static Redirect redirectOf(std::string_view word) {
        static constexpr struct {
            std::string_view name;
            Redirect redirect;
        } theOperators[] = { { ">", Redirect::out },
                             { ">>", Redirect::appendOut },
                             { ">&", Redirect::err },
                             { ">>&", Redirect::appendErr },
                             { "<", Redirect::in } };
        for (const auto &known : theOperators) {
            if (known.name == word)
                return known.redirect;
        }
        return Redirect::none;
    }

    KIT_CshTemplate &target;
    const std::string_view text;
    const char *at;
    const char *const end;
    char *out;
    const char *literalStart = nullptr;   // of the literal text that is being copied, null for none
    std::size_t firstSegment = 0;         // of the word that is being read
    bool bare = true;                     // no quote, backslash or reference in the word so far
    KIT_CshReference reference;
    const bool references;
    const bool redirection;
};

void KIT_CshTemplate::parse(std::string_view text, bool redirection) {
    take(text, true, redirection);
}

void KIT_CshTemplate::parseQuotesOnly(std::string_view text) {
    take(text, false, false);
}

void KIT_CshTemplate::take(std::string_view text, bool references, bool redirection) {
    constexpr std::size_t longest = std::numeric_limits<std::uint32_t>::max() - 1;
    text = text.substr(0, std::min(text.find('\0'), longest));
    words.clear();
    segments.clear();
    if (arenaCapacity < text.size()) {
        arena = std::make_unique_for_overwrite<char[]>(text.size());
        arenaCapacity = text.size();
    }
    Parser(*this, text, references, redirection).run();
}

/// Makes the words of one expansion.
class KIT_CshTemplate::Expander {
public:
    Expander(const KIT_CshTemplate &parsed, KIT_WorkArgs &target, KIT_CshLookup variables,
             KIT_CshLookup expressions)
        : source(parsed), words(target), variable(variables), expression(expressions),
          next(parsed.segments.data()) {}

    void run(KIT_StringCshIO *io) {
        const std::vector<Word> &all = source.words;
        for (auto word = all.begin(); word != all.end(); ++word) {
            if (word->redirect == Redirect::none || !io) {
                addWord(*word);
            } else if (word + 1 == all.end() || word[1].redirect != Redirect::none) {
                io->missingName = true;
            } else {
                redirect(word->redirect, word[1], *io);
                ++word;
            }
        }
    }

private:
    /// One word of the text: none, one or several words.
    void addWord(const Word &word) {
        if (isLiteral(word))
            return words.append(textOf(word));
        for (; next != segmentsEnd(word); ++next) {
            if (next->kind == Kind::literal)
                addPiece(literalText(*next));
            else
                addReference(*next);
        }
        endWord();
    }

    /// The word as one name.
    void redirect(Redirect operation, const Word &word, KIT_StringCshIO &io) {
        if (isLiteral(word))
            return setName(operation, textOf(word), io);
        words.beginWord();
        for (; next != segmentsEnd(word); ++next)
            words.appendPiece(next->kind == Kind::literal ? literalText(*next) : valueOf(*next));
        setName(operation, words.pieces(), io);
        words.cancelWord();
    }

    bool isLiteral(const Word &word) const { return next == segmentsEnd(word); }

    const Segment *segmentsEnd(const Word &word) const { return source.segments.data() + word.segmentsEnd; }

    std::string_view textOf(const Word &word) const { return { source.arena.get() + word.start, word.length }; }

    std::string_view literalText(const Segment &segment) const {
        return { source.arena.get() + segment.start, segment.length };
    }

    KIT_CshLookup lookupOf(const Segment &segment) const {
        return segment.kind >= Kind::expression ? expression : variable;
    }

    /// Returns the value of a reference, valid until the next look-up.
    std::string_view valueOf(const Segment &segment) {
        KIT_String &value = words.valueRoom();
        value.clear();
        const KIT_CshLookup lookup = lookupOf(segment);
        if (!lookup) {
            writeReference(segment, value);
            return value;
        }
        const char *text = source.arena.get() + segment.start;
        if (lookup(text, value) && !value.isEmpty())
            return value;
        return segment.kind == Kind::defaultName ? fallbackOf(segment) : std::string_view();
    }

    std::string_view fallbackOf(const Segment &segment) const {
        return { source.arena.get() + segment.start + segment.length + 1, segment.defaultLength };
    }

    /// The reference as it stood in the text.
    void writeReference(const Segment &segment, KIT_String &target) const {
        const std::string_view text = literalText(segment);
        if (segment.kind == Kind::name) {
            target.append('$').append(text);
        } else if (segment.kind < Kind::expression) {
            target.append("${").append(text);
            if (segment.kind == Kind::defaultName)
                target.append(":-").append(fallbackOf(segment));
            target.append('}');
        } else {
            target.append('`');
            for (const char c : text) {
                if (c == '`')
                    target.append('\\');
                target.append(c);
            }
            if (segment.kind == Kind::expression)
                target.append('`');
        }
    }

    void addReference(const Segment &segment) {
        const std::string_view value = valueOf(segment);
        if (segment.quoted || !lookupOf(segment))
            addPiece(value);
        else
            addSplit(value);
    }

    void addSplit(std::string_view value) {
        const char *at = value.data();
        const char *const end = at + value.size();
        while (at != end) {
            const char *start = at;
            while (at != end && classOf(*at) != ByteClass::space)
                ++at;
            if (at != start)
                addPiece({ start, static_cast<std::size_t>(at - start) });
            for (; at != end && classOf(*at) == ByteClass::space; ++at)
                endWord();
        }
    }

    void addPiece(std::string_view piece) {
        if (!open)
            words.beginWord();
        open = true;
        words.appendPiece(piece);
    }

    void endWord() {
        if (open)
            words.endWord();
        open = false;
    }

    /// Only the last redirection of the output counts, so it takes back an earlier one of the other kind.
    static void setName(Redirect redirect, std::string_view name, KIT_StringCshIO &io) {
        if (name.empty()) {
            io.missingName = true;
            return;
        }
        if (redirect == Redirect::in) {
            io.inName = name;
            return;
        }
        const bool both = redirect == Redirect::err || redirect == Redirect::appendErr;
        (both ? io.errName : io.outName) = name;
        (both ? io.outName : io.errName).clear();
        io.appendOut = redirect == Redirect::appendOut;
        io.appendErr = redirect == Redirect::appendErr;
    }

    const KIT_CshTemplate &source;
    KIT_WorkArgs &words;
    const KIT_CshLookup variable;
    const KIT_CshLookup expression;
    const Segment *next;   // of the segments
    bool open = false;     // a word is being made
};

int KIT_CshTemplate::expand(KIT_WorkArgs &target, KIT_CshLookup variable, KIT_CshLookup expression,
                            KIT_StringCshIO *io) const {
    target.clear();
    if (io)
        io->clear();
    Expander(*this, target, variable, expression).run(io);
    return target.argc();
}
