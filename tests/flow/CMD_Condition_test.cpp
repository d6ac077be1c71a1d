// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_Condition.h>

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

/// The words stand between blanks; '' is an empty one.
int evaluate(const std::string &text) {
    std::vector<std::string> words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;)
        words.push_back(word == "''" ? "" : word);
    std::vector<const char *> argv;
    for (const std::string &word : words)
        argv.push_back(word.c_str());
    return CMD_Condition::evaluate(static_cast<int>(argv.size()), argv.data());
}

TEST(CMD_Condition, Results) {
    static const struct {
        const char *condition;
        int result;
    } theCases[] = {
        // One word.
        { "", 0 },
        { "1", 1 },
        { "0", 0 },
        { "0.5", 1 },
        { "1e-60", 1 },   // below what 32 bits hold, and still above 0
        { "abc", 1 },
        { "''", 0 },
        { "!", 1 },
        { "0x0", 1 },   // no number, so a text
        { "nan", 1 },
        // Numbers and texts.
        { "1.0 == 1x", 0 },
        { "10 < 9", 0 },
        { "10 < 9x", 1 },
        { "a == A", 0 },
        { "\xff > a", 1 },
        { "16777216 == 16777217", 1 },   // the same number in 32 bits
        { "0.1 == .1", 1 },
        { "1e39 == 1e40", 1 },   // both beyond 32 bits
        { "'' == a", 0 },
        // All the operators, with both outcomes of an order.
        { "1 != 1", 0 },
        { "1 <> 2", 1 },
        { "2 <= 2", 1 },
        { "3 <= 2", 0 },
        { "2 >= 2", 1 },
        { "1 >= 2", 0 },
        { "1 > 2", 0 },
        { "a >= b", 0 },
        // Logic: by the whole part of numbers, by emptiness of texts, one text makes two.
        { "1 & 2", 1 },
        { "0 && 1", 0 },
        { "0 && abc", 1 },
        { "0.5 && 1", 0 },
        { "-1 && 1", 1 },
        { "0 || 0.9", 0 },
        { "0 | -3", 1 },
        { "a || b && ''", 0 },
        { "99999999999 && 1", 1 },
        // Ranks and groups.
        { "1 || 1 && 0", 0 },
        { "1 || ( 1 && 0 )", 1 },
        { "( 1 == 1 ) == 1", 1 },
        { "3 > 2 > 1", 0 },
        { "2 == ( 1 || 0 ) == 0", 1 },
        // Wrong ones.
        { "1 2", -1 },
        { "1 == ==", -1 },
        { "1 )", -1 },
        { "( 1 ) 2", -1 },
        { "(", -1 },
        { "1 == ( 2", -1 },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(evaluate(c.condition), c.result) << c.condition;
}

TEST(CMD_Condition, ManyWordsAndDeepGroups) {
    std::string open, close, chain = "1";
    for (int i = 0; i < 5000; ++i) {
        open += "( ";
        close += " )";
        chain += " && 1";
    }
    EXPECT_EQ(evaluate(open + "1" + close), 1);
    EXPECT_EQ(evaluate(open + "1" + close + " )"), -1);
    EXPECT_EQ(evaluate(chain), 1);
    EXPECT_EQ(evaluate(chain + " && 0"), 0);
}

}   // namespace
