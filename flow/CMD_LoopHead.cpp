// SPDX-License-Identifier: Apache-2.0
// The first line of a loop comes in as it was written and leaves as text that splits into words.
#include <orvlang/flow/CMD_LoopHead.h>

namespace {

bool isQuote(char c) {
    return c == '"' || c == '\'' || c == '`';
}

bool isComparison(char c, char next) {
    return (next == '=' && (c == '!' || c == '<' || c == '>')) || (c == '<' && next == '>');
}

bool isOperator(char c) {
    return c == '<' || c == '>' || c == '|' || c == '(' || c == ')' || c == '=';
}

}   // namespace

bool CMD_LoopHead::canOpenLoop(std::string_view word) {
    using namespace std::string_view_literals;
    return !word.empty() && ("foreach"sv.starts_with(word) || "while"sv.starts_with(word));
}

std::string CMD_LoopHead::normalize(std::string_view line) {
    std::string result;
    result.reserve(line.size() + 16);
    const auto setApart = [&result](std::string_view text) {
        result.append(1, ' ').append(text).append(1, ' ');
    };
    char quote = '\0';
    char previous = '\0';
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        const char next = i + 1 < line.size() ? line[i + 1] : '\0';
        const bool escaped = previous == '\\';
        // An escaped byte escapes nothing, a backslash neither.
        previous = escaped ? '\0' : c;
        if (escaped) {
            result += c;
        } else if (isQuote(c)) {
            result += c;
            quote = quote == '\0' ? c : quote == c ? '\0' : quote;
        } else if (c == '#' && quote == '\0') {
            break;
        } else if (isComparison(c, next)) {
            setApart(line.substr(i++, 2));
            previous = ' ';
        } else if (quote == '\0' && isOperator(c)) {
            const size_t length = next == c ? 2 : 1;
            setApart(line.substr(i, length));
            i += length - 1;
        } else {
            result += c;
        }
    }
    return result;
}
