// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Lexer.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_Number.h>

namespace {

bool isNameStart(char c) {
    return KITisAlpha(c) || c == '_';
}

/// How many bytes of text can be part of a name.
std::size_t nameLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && (isNameStart(text[length]) || KITisDigit(text[length])))
        length++;
    return length;
}

}   // namespace

FML_Token FML_Lexer::take(FML_Token::Kind kind, std::size_t length) {
    const FML_Token token = { kind, rest.substr(0, length), false, {} };
    rest.remove_prefix(length);
    return token;
}

FML_Token FML_Lexer::takeVariable() {
    if (!reference.read(size - rest.size(), false))
        return take(FML_Token::BAD, 1);
    rest.remove_prefix(reference.length());
    const bool hasFallback = reference.form() == KIT_CshReference::Form::withFallback;
    return { FML_Token::VARIABLE, reference.name(), hasFallback, reference.fallback() };
}

FML_Token FML_Lexer::takeQuoted(FML_Token::Kind kind, char quote) {
    for (std::size_t i = 1; i < rest.size(); i++) {
        if (rest[i] == '\\') {
            i++;
        } else if (rest[i] == quote) {
            const FML_Token token = { kind, rest.substr(1, i - 1), false, {} };
            rest.remove_prefix(i + 1);
            return token;
        }
    }
    return take(FML_Token::BAD, rest.size());
}

FML_Token FML_Lexer::next() {
    while (!rest.empty() && KITisSpace(rest.front()))
        rest.remove_prefix(1);
    if (rest.empty())
        return take(FML_Token::END, 0);
    const char c = rest.front();
    if (isNameStart(c))
        return take(FML_Token::NAME, nameLength(rest));
    if (KITisDigit(c) || c == '.') {
        const std::size_t length = KITscanNumber(rest, nullptr);
        // `12ab` is neither a number nor a name.
        if (length == 0 || (length < rest.size() && isNameStart(rest[length])))
            return take(FML_Token::BAD, 1);
        return take(FML_Token::NUMBER, length);
    }
    switch (c) {
    case '$':
        return takeVariable();
    case '"':
        return takeQuoted(FML_Token::STRING, '"');
    case '\'':
        return takeQuoted(FML_Token::LITERAL, '\'');
    case '(':
        return take(FML_Token::OPEN, 1);
    case ')':
        return take(FML_Token::CLOSE, 1);
    case '[':
        return take(FML_Token::OPEN_VECTOR, 1);
    case ']':
        return take(FML_Token::CLOSE_VECTOR, 1);
    case ',':
        return take(FML_Token::COMMA, 1);
    case '?':
        return take(FML_Token::QUESTION, 1);
    case ':':
        return take(FML_Token::COLON, 1);
    case '+':
        return take(FML_Token::PLUS, 1);
    case '-':
        return take(FML_Token::MINUS, 1);
    case '*':
        return take(FML_Token::TIMES, 1);
    case '/':
        return take(FML_Token::DIVIDE, 1);
    case '%':
        return take(FML_Token::MODULO, 1);
    case '^':
        return take(FML_Token::POWER, 1);
    case '|':
        return startsWith('|') ? take(FML_Token::OR, 2) : take(FML_Token::BAD, 1);
    case '&':
        return startsWith('&') ? take(FML_Token::AND, 2) : take(FML_Token::BAD, 1);
    case '=':
        return startsWith('=') ? take(FML_Token::EQUAL, 2) : take(FML_Token::BAD, 1);
    case '!':
        return startsWith('=') ? take(FML_Token::NOT_EQUAL, 2) : take(FML_Token::NOT, 1);
    case '<':
        return startsWith('=') ? take(FML_Token::LESS_EQUAL, 2) : take(FML_Token::LESS, 1);
    case '>':
        return startsWith('=') ? take(FML_Token::GREATER_EQUAL, 2) : take(FML_Token::GREATER, 1);
    default:
        return take(FML_Token::BAD, 1);
    }
}
