// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>
#include <vector>

/// Evaluates one condition of `if` or `while`: words that are operands and operators, all of them text.
///
/// `( condition )` is a group; the comparisons `== = != <> < > <= >=` bind tighter than `&& & || |`, which have one
/// precedence, so that `a || b && c` is `(a || b) && c`. A pair is compared, or joined by a logic operator, as
/// numbers when both sides are numbers, otherwise as text. Only the expanded word counts: a value `==` is an
/// operator.
class CMD_Condition {
public:
    /// Evaluates all words: 1 true, 0 false, -1 when they are not a condition. No words at all are false. A word
    /// alone is true when it is a number above 0 or a text that is neither a number nor empty.
    static int evaluate(int argc, const char *const argv[]) {
        return evaluateWords(argc, [argv](int i) { return argv[i]; });
    }
    /// The same for words that a function returns by index.
    template <typename WordAt>
    static int evaluateWords(int count, WordAt wordAt) {
        CMD_Condition condition(count);
        for (int i = 0; i < count; ++i)
            if (!condition.take(wordAt(i)))
                return -1;
        return condition.result();
    }

    /// Makes a condition of at most so many words; negative counts as 0.
    explicit CMD_Condition(int mostWords);
    CMD_Condition(const CMD_Condition &) = delete;
    CMD_Condition &operator=(const CMD_Condition &) = delete;

    /// Adds the next word, whose text must stay valid until `result`. False when the word is not allowed there;
    /// the condition is then wrong and must not be used further.
    bool take(std::string_view word);
    /// Returns the result after the last word; to be called once.
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

    static constexpr int theInlineRoom = 24;   // enough for nearly all conditions, so that they do not allocate

    std::array<std::string_view, theInlineRoom> inlineValues;
    std::array<Token, theInlineRoom> inlineOperators;
    std::vector<std::string_view> largeValues;
    std::vector<Token> largeOperators;
    std::string_view *values = inlineValues.data();   // the stack of operands and results
    Token *operators = inlineOperators.data();        // the stack of operators without their right side yet
    int valueCount = 0;
    int operatorCount = 0;
    bool afterOperand = false;   // the last word ended an operand
};
