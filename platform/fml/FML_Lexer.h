// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_CshReference.h>

#include <string_view>

/// A token: the smallest piece of an expression.
struct FML_Token {
    enum Kind : unsigned char {
        END,
        BAD,        // not the start of a token
        NUMBER,     // text: the number as written
        STRING,     // text: between the double quotes, escapes and references still in it
        LITERAL,    // text: between the single quotes
        VARIABLE,   // $name or ${name}; text: the name
        NAME,
        OPEN,
        CLOSE,
        OPEN_VECTOR,
        CLOSE_VECTOR,
        COMMA,
        QUESTION,
        COLON,
        OR,
        AND,
        EQUAL,
        NOT_EQUAL,
        LESS,
        LESS_EQUAL,
        GREATER,
        GREATER_EQUAL,
        PLUS,
        MINUS,
        TIMES,
        DIVIDE,
        MODULO,
        POWER,
        NOT
    };
    Kind kind;
    std::string_view text;
    bool hasFallback = false;   // of a variable: written ${name:-text}
    std::string_view fallback;
};

/// Cuts the text of an expression into tokens, which point into it.
class FML_Lexer {
public:
    explicit FML_Lexer(std::string_view text) : rest(text), size(text.size()), reference(text) {}

    FML_Token next();

private:
    FML_Token take(FML_Token::Kind kind, std::size_t length);
    FML_Token takeVariable();
    FML_Token takeQuoted(FML_Token::Kind kind, char quote);
    bool startsWith(char second) const { return rest.size() > 1 && rest[1] == second; }

    std::string_view rest;   // of the text
    std::size_t size;        // of all the text
    KIT_CshReference reference;
};
