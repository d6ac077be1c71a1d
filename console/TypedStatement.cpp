// SPDX-License-Identifier: Apache-2.0
#include "TypedStatement.h"

#include <cctype>

#include <orvlang/engine/CMD_Manager.h>

namespace {

constexpr std::string_view theOperators = "=<>|&()";

bool isOfName(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

}   // namespace

TypedStatement::TypedStatement(const CMD_Manager &language, std::string_view text) : manager(language) {
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        const std::string_view rest = text.substr(i);
        if (c == '\\') {
            beginWord(i);
            i += addEscaped(rest);
        } else if (c == quote) {
            quote = '\0';
            ++i;
        } else if (c == '$' && quote != '\'') {
            beginWord(i);
            const size_t length = addVariable(rest);
            if (length == rest.size()) {
                dollar = i;
                hasBrace = rest.substr(0, 2) == "${";
            }
            i += length;
        } else if (quote != '\0') {
            add(c, ++i);
        } else if (c == '\'' || c == '"' || c == '`') {
            beginWord(i++, c);
            quote = c;
            isPlain = false;
        } else if (c == ';') {
            endWord();
            before.clear();
            ++i;
        } else if (isBlank(c) || theOperators.find(c) != theOperators.npos) {
            endWord();
            ++i;
        } else if (c == '#' && !isInWord) {
            isComment = true;
            return;
        } else {
            beginWord(i);
            add(c, ++i);
        }
    }
    if (!isInWord)
        beginWord(text.size());
}

/// An opening quote at the start of the word stays in the line: the first part starts after it.
void TypedStatement::beginWord(size_t offset, char openingQuote) {
    if (isInWord)
        return;
    isInWord = isPlain = true;
    word.clear();
    partStart = openingQuote ? offset + 1 : offset;
    partOffset = 0;
    partQuote = openingQuote;
}

void TypedStatement::endWord() {
    if (isInWord)
        before.push_back(word);
    isInWord = false;
}

void TypedStatement::add(char c, size_t nextOffset) {
    word += c;
    if (c != '/')
        return;
    partStart = nextOffset;
    partOffset = word.size();
    partQuote = quote;
}

/// Returns the length of the variable in bytes. A variable that reaches the end of the text is still being typed.
size_t TypedStatement::addVariable(std::string_view rest) {
    isPlain = false;
    const size_t start = rest.substr(0, 2) == "${" ? 2 : 1;
    size_t end = start;
    while (end < rest.size() && isOfName(rest[end]))
        ++end;
    KIT_String value;
    if (manager.getEnv(std::string(rest.substr(start, end - start)).c_str(), value))
        word += value.view();
    return start == 2 && end < rest.size() && rest[end] == '}' ? end + 1 : end;
}

size_t TypedStatement::addEscaped(std::string_view rest) {
    isPlain = false;
    if (rest.size() < 2) {
        word += '\\';
        return 1;
    }
    const bool isRead = quote == '\0' ||
                        (quote == '\'' && std::string_view("'\\").find(rest[1]) != rest.npos) ||
                        (quote == '"' && std::string_view("\"\\$`").find(rest[1]) != rest.npos);
    if (!isRead)
        word += '\\';
    word += rest[1];
    return 2;
}
