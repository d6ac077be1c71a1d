// SPDX-License-Identifier: Apache-2.0
// A condition comes in as words and is worked off from left to right on two stacks, one of values and one of
// operators that wait for their right side.
#include <orvlang/flow/CMD_Condition.h>

#include <cmath>

#include <orvlang/platform/kit/KIT_Number.h>

enum class CMD_Condition::Token : unsigned char {
    operand,
    logicalAnd,
    logicalOr,
    equal,
    notEqual,
    less,
    greater,
    lessOrEqual,
    greaterOrEqual,
    open,
    close,
};

CMD_Condition::Token CMD_Condition::classify(std::string_view word) {
    if (word.empty() || word.size() > 2)
        return Token::operand;
    const char second = word.size() == 2 ? word[1] : '\0';
    switch (word[0]) {
    case '&':
        return second == '\0' || second == '&' ? Token::logicalAnd : Token::operand;
    case '|':
        return second == '\0' || second == '|' ? Token::logicalOr : Token::operand;
    case '=':
        return second == '\0' || second == '=' ? Token::equal : Token::operand;
    case '!':
        return second == '=' ? Token::notEqual : Token::operand;
    case '<':
        return second == '\0'  ? Token::less
               : second == '>' ? Token::notEqual
               : second == '=' ? Token::lessOrEqual
                               : Token::operand;
    case '>':
        return second == '\0' ? Token::greater : second == '=' ? Token::greaterOrEqual : Token::operand;
    case '(':
        return second == '\0' ? Token::open : Token::operand;
    case ')':
        return second == '\0' ? Token::close : Token::operand;
    default:
        return Token::operand;
    }
}

int CMD_Condition::rankOf(Token token) {
    switch (token) {
    case Token::open:
    case Token::close:
        return 1;
    case Token::logicalAnd:
    case Token::logicalOr:
        return 2;
    default:
        return 3;
    }
}

/// What an operator needs to know of its two sides.
struct CMD_Condition::Pair {
    int order;   // below 0, 0, above 0, as left is to right
    bool leftTrue;
    bool rightTrue;
};

CMD_Condition::Pair CMD_Condition::compare(std::string_view left, std::string_view right) {
    double leftNumber, rightNumber;
    if (!KITisNumber(left, &leftNumber) || !KITisNumber(right, &rightNumber))
        return { left.compare(right), !left.empty(), !right.empty() };
    const float l = static_cast<float>(leftNumber), r = static_cast<float>(rightNumber);
    // For `&&` and `||` a number counts by its whole part.
    return { l < r ? -1 : l > r ? 1 : 0, std::fabs(l) >= 1.0f, std::fabs(r) >= 1.0f };
}

bool CMD_Condition::holds(Token op, const Pair &pair) {
    switch (op) {
    case Token::logicalAnd:
        return pair.leftTrue && pair.rightTrue;
    case Token::logicalOr:
        return pair.leftTrue || pair.rightTrue;
    case Token::equal:
        return pair.order == 0;
    case Token::notEqual:
        return pair.order != 0;
    case Token::less:
        return pair.order < 0;
    case Token::greater:
        return pair.order > 0;
    case Token::lessOrEqual:
        return pair.order <= 0;
    default:
        return pair.order >= 0;
    }
}

bool CMD_Condition::take(std::string_view word) {
    const Token token = classify(word);
    switch (token) {
    case Token::operand:
        if (afterOperand)
            return false;
        values[valueCount++] = word;
        afterOperand = true;
        return true;
    case Token::open:
        if (afterOperand)
            return false;
        operators[operatorCount++] = token;
        return true;
    case Token::close:
        return afterOperand && closeGroup();
    default:
        return afterOperand && takeOperator(token);
    }
}

bool CMD_Condition::closeGroup() {
    while (operatorCount > 0 && operators[operatorCount - 1] != Token::open)
        if (!applyTop())
            return false;
    return operatorCount-- > 0;
}

bool CMD_Condition::takeOperator(Token token) {
    while (operatorCount > 0 && rankOf(token) <= rankOf(operators[operatorCount - 1]))
        if (!applyTop())
            return false;
    operators[operatorCount++] = token;
    afterOperand = false;
    return true;
}

/// False for a group that was never closed and for a missing operand.
bool CMD_Condition::applyTop() {
    const Token op = operators[--operatorCount];
    if (op == Token::open || valueCount < 2)
        return false;
    const std::string_view right = values[--valueCount];
    std::string_view &left = values[valueCount - 1];
    left = holds(op, compare(left, right)) ? "1" : "0";
    return true;
}

int CMD_Condition::result() {
    while (operatorCount > 0)
        if (!applyTop())
            return -1;
    if (valueCount == 0)
        return 0;
    const std::string_view last = values[valueCount - 1];
    double number;
    return (KITisNumber(last, &number) ? number > 0.0 : !last.empty()) ? 1 : 0;
}

CMD_Condition::CMD_Condition(int mostWords) {
    if (mostWords <= theInlineRoom)
        return;
    largeValues.resize(static_cast<size_t>(mostWords));
    largeOperators.resize(static_cast<size_t>(mostWords));
    values = largeValues.data();
    operators = largeOperators.data();
}
