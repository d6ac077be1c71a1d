// SPDX-License-Identifier: Apache-2.0
#include "Cases.h"

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
    for (const auto &row : casesOf(ORVLANG_CASES "/conditions.cases"))
        EXPECT_EQ(std::to_string(evaluate(row.at(0))), row.at(1)) << row[0];
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
