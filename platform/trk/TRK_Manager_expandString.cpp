// SPDX-License-Identifier: Apache-2.0
//
// Prompts and other texts that are no statements of the language: a text comes in, and its references and expressions
// are replaced by their values. There are no words here, so quotes are characters like any other.
#include <orvlang/platform/trk/TRK_Manager.h>

#include <orvlang/platform/kit/KIT_CshReference.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

/// The place of the backquote that ends the expression beginning at `start`: the next one without a backslash right
/// before it, as in a statement. Past the text when there is none.
std::size_t findBackquote(std::string_view text, std::size_t start) {
    std::size_t at = text.find('`', start);
    while (at != text.npos && at > start && text[at - 1] == '\\')
        at = text.find('`', at + 1);
    return std::min(at, text.size());
}

/// The expression between backquotes, where a backquote of its own has a backslash before it.
KIT_String readExpression(std::string_view quoted) {
    KIT_String expression(quoted);
    expression.substitute("\\`", "`", true);
    return expression;
}

}   // namespace

/// Makes a manager with its time the one that names are read from, until the end of the scope.
class TRK_Manager::Expansion {
public:
    Expansion(TRK_Manager &manager, double time)
        : manager(manager), currentBefore(theCurrentManager), timeBefore(manager.evaluateTime), time(time) {
        theCurrentManager = &manager;
        choiceBefore = theContextChoices;
        manager.evaluateTime = time;
    }
    ~Expansion() {
        // A command in an expression may have chosen a place on the time line or a manager, which then stays.
        if (manager.evaluateTime == time)
            manager.evaluateTime = timeBefore;
        if (choiceBefore == theContextChoices)
            theCurrentManager = currentBefore;
    }
    Expansion(const Expansion &) = delete;
    Expansion &operator=(const Expansion &) = delete;

private:
    TRK_Manager &manager;
    TRK_Manager *currentBefore;   // borrowed
    double timeBefore;
    double time;
    unsigned choiceBefore;
};

void TRK_Manager::expandString(const char *text, KIT_String &out, double time,
                               TRK_ChannelCollection * /*collection*/, int /*thread*/, int what) {
    const Expansion expansion(*this, time);
    const std::string_view source = text ? text : "";
    KIT_CshReference reference(source);
    KIT_String expanded(std::string_view(""));
    for (std::size_t at = 0; at < source.size();) {
        const std::size_t plain = std::min(source.find_first_of("\\$`", at), source.size());
        expanded.append(source.substr(at, plain - at));
        at = plain;
        if (at == source.size())
            break;
        KIT_String value;
        const std::size_t end = source[at] == '`' ? findBackquote(source, at + 1) : 0;
        if (source[at] == '\\' && at + 1 < source.size() &&
            std::string_view("\\$`").find(source[at + 1]) != source.npos) {
            expanded.append(source[at + 1]);
            at += 2;
        } else if (source[at] == '$' && (what & EXPAND_VARIABLES) && reference.read(at, false)) {
            const bool isKnown = lookupVariableNoThread(KIT_String(reference.name()).c_str(), value);
            expanded.append(isKnown ? value.view() : reference.fallback());
            at += reference.length();
        } else if (source[at] == '`' && (what & EXPAND_EXPRESSIONS) && end < source.size()) {
            if (lookupExpressionNoThread(readExpression(source.substr(at + 1, end - at - 1)).c_str(), value))
                expanded.append(value);
            at = end + 1;
        } else {
            expanded.append(source[at++]);
        }
    }
    out = std::move(expanded);
}
