// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>
#include <vector>

/// The evaluation of one condition of `if` or `while`: words that are operands and operators, all of them text.
///
/// `( condition )` is a group; the comparisons `== = != <> < > <= >=` bind tighter than `&& & || |`, which are of
/// one rank, so that `a || b && c` is `(a || b) && c`. A pair is compared, or joined by a logic operator, as
/// numbers when both sides are numbers, otherwise as text. What a word was before expansion does not count: a
/// value that reads `==` is an operator.
class CMD_Condition {
public:
    /// The whole of it: 1 true, 0 false, -1 when the words are no condition. No words at all are false. A word
    /// that stands alone is true when it is a number above 0 or a text that is neither a number nor empty.
    static int evaluate(int argc, const char *const argv[]) {
        return evaluateWords(argc, [argv](int i) { return argv[i]; });
    }
    /// The same for words that a function of their place gives.
    template <typename WordAt>
    static int evaluateWords(int count, WordAt wordAt) {
        CMD_Condition condition(count);
        for (int i = 0; i < count; ++i)
            if (!condition.take(wordAt(i)))
                return -1;
        return condition.result();
    }

    /// A condition of no more than so many words; negative counts as 0.
    explicit CMD_Condition(int mostWords);
    CMD_Condition(const CMD_Condition &) = delete;
    CMD_Condition &operator=(const CMD_Condition &) = delete;

    /// Takes the next word, whose text must stay until the result is there. False when it cannot stand there;
    /// the condition is wrong then and not to be used further.
    bool take(std::string_view word);
    /// The result when all words are taken; to be asked once.
    int result();

private:
    enum class Token : unsigned char;
    struct Pair;

    static Token classify(std::string_view word);
    static int rankOf(Token token);
    static Pair compare(std::string_view left, std::string_view right);
    static bool holds(Token op, const Pair &pair);

    bool closeGroup();
    bool takeOperator(Token token);
    bool applyTop();

    static constexpr int theInlineRoom = 24;   // enough for nearly all conditions, so that they need no memory

    std::array<std::string_view, theInlineRoom> inlineValues;
    std::array<Token, theInlineRoom> inlineOperators;
    std::vector<std::string_view> largeValues;
    std::vector<Token> largeOperators;
    std::string_view *values = inlineValues.data();   // the stack of operands and results
    Token *operators = inlineOperators.data();        // the stack of operators that wait for their right side
    int valueCount = 0;
    int operatorCount = 0;
    bool afterOperand = false;   // the last word ended an operand
};
