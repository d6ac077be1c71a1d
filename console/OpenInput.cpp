// SPDX-License-Identifier: Apache-2.0
#include "OpenInput.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

constexpr std::string_view theBlanks = " \t\r";

/// The length of the first statement of a line, without the `;` after it.
std::size_t statementLength(std::string_view line) {
    char quote = '\0';
    std::size_t i = 0;
    for (; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '\\')
            ++i;
        else if (quote)
            quote = c == quote ? '\0' : quote;
        else if (c == '\'' || c == '"' || c == '`')
            quote = c;
        else if (c == '#' && (i == 0 || theBlanks.find(line[i - 1]) != theBlanks.npos))
            return line.size();   // a comment
        else if (c == ';')
            break;
    }
    return std::min(i, line.size());
}

std::string_view firstWord(std::string_view statement) {
    statement.remove_prefix(std::min(statement.find_first_not_of(theBlanks), statement.size()));
    return statement.substr(0, statement.find_first_of(theBlanks));
}

}   // namespace

bool reportOpenInput(CMD_Manager::Pending pending) {
    const char *open = nullptr;
    switch (pending) {
    case CMD_Manager::Pending::Continuation:
        open = "in a continued line";
        break;
    case CMD_Manager::Pending::Read:
        open = "while `read` waits for a line";
        break;
    case CMD_Manager::Pending::Loop:
        open = "in a loop, `end` is missing";
        break;
    case CMD_Manager::Pending::If:
        open = "in an if block, `endif` is missing";
        break;
    case CMD_Manager::Pending::Nothing:
        return false;
    }
    std::cerr << "orvlang: the input ends " << open << std::endl;
    return true;
}

void SentInput::addLine(std::string_view line) {
    continued += line.substr(0, line.find_last_not_of('\r') + 1);
    if (continued.ends_with('\\')) {
        continued.back() = ' ';
        return;
    }
    const std::string whole = std::exchange(continued, {});
    // Whether a branch with a `read` is taken does not show, but its end is hardly an answer.
    const std::string_view first = firstWord(whole);
    const bool endsBranch = ifs > 0 && (first == "else" || first == "endif");
    const bool isAnswer = std::exchange(isReadPending, false) && !endsBranch;
    addStatements(std::exchange(afterRead, {}));
    if (!isAnswer)
        addStatements(whole);
}

void SentInput::addStatements(std::string_view rest) {
    while (!rest.empty() && !isReadPending) {
        const std::size_t length = statementLength(rest);
        addStatement(firstWord(rest.substr(0, length)));
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    afterRead = rest;
}

void SentInput::addStatement(std::string_view command) {
    if (command == "for" || command == "while" || command == "foreach")
        ++loops;
    else if (command == "end" && loops > 0)
        --loops;
    else if (command == "if")
        ++ifs;
    else if (command == "endif" && ifs > 0)
        --ifs;
    else if (command == "read")
        hasReadInLoop = true;
    if (loops == 0)
        isReadPending = std::exchange(hasReadInLoop, false);
}

void SentInput::addText(std::string_view text) {
    if (text.find('\n') == text.npos)
        return addLine(text);
    SentInput inText;
    bool reads = false;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t length = std::min(rest.find('\n'), rest.size());
        inText.addLine(rest.substr(0, length));
        reads = reads || std::exchange(inText.isReadPending, false);
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    isReadPending = reads;
}

CMD_Manager::Pending SentInput::getPending() const {
    using Pending = CMD_Manager::Pending;
    return !continued.empty() ? Pending::Continuation
           : isReadPending    ? Pending::Read
           : loops > 0        ? Pending::Loop
           : ifs > 0          ? Pending::If
                              : Pending::Nothing;
}
