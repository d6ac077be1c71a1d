// SPDX-License-Identifier: Apache-2.0
//
// The language of expressions and the functions that it always has.
#include "Cases.h"
#include "ExpressionTest.h"

#include <set>
#include <thread>

namespace {

using FML_Language = ExpressionTest;

std::string repeated(const std::string &text, int times) {
    std::string all;
    for (int i = 0; i < times; i++)
        all += text;
    return all;
}

TEST_F(FML_Language, Cases) {
    manager.variables = { { "i", "20" },           { "zip", "007" },
                          { "word", "two words" }, { "empty", "" },
                          { "v", "[3, 4]" },       { "list", "  b10 a2\tb9  a2 " },
                          { "FRAME", "0" },        { "big", repeated("b", 100000) } };
    for (const auto &row : casesOf(ORVLANG_CASES "/expressions.cases"))
        check(row.at(0), row.at(1));
    KIT_String value;
    EXPECT_FALSE(fml_Evaluate(nullptr, value));
}

TEST_F(FML_Language, Random) {
    std::set<std::string> seen;
    for (int seed = 0; seed < 200; seed++) {
        const std::string s = std::to_string(seed);
        EXPECT_EQ(evaluate("random(" + s + ") >= 0 && random(" + s + ") < 1"), "1") << s;
        seen.insert(evaluate("randomint(" + s + ", 1, 6)"));
    }
    EXPECT_EQ(seen, (std::set<std::string>{ "1", "2", "3", "4", "5", "6" }));
}

TEST_F(FML_Language, AMatchEnds) {
    // A text that makes a careless matcher try for ever.
    EXPECT_EQ(evaluate("match(repeat(\"a\", 20000), repeat(\"a*\", 40) + \"b\")"), "0");
}

TEST_F(FML_Language, NestingIsBounded) {
    for (const char *opening : { "(", "-", "!", "abs(", "[", "2^", "1?", "1?1:", "if(1,", "1+(" }) {
        const std::string deep = repeated(opening, 10000);
        EXPECT_EQ(evaluate(deep + "1"), error(FML_NESTING_TOO_DEEP)) << opening;
    }
    EXPECT_EQ(evaluate(repeated("(", 500) + "1" + repeated(")", 500)), "1");
    EXPECT_EQ(evaluate("0" + repeated("+1", 100000)), "100000");
    EXPECT_EQ(evaluate("size([0" + repeated(",1", 100000) + "])"), "100001");
}

TEST_F(FML_Language, LongTexts) {
    const std::string big = repeated("x", 1 << 20);
    EXPECT_EQ(evaluate("length(\"" + big + "\")"), "1048576");
    EXPECT_EQ(evaluate("\"" + big + "\" + 1"), big + "1");
    EXPECT_EQ(evaluate("\"" + big), error(FML_SYNTAX_ERROR));
    manager.variables["big"] = big;
    EXPECT_EQ(evaluate("length(\"" + repeated("$big", 64) + "\")"), std::to_string(64 << 20));
    EXPECT_EQ(evaluate("repeat($big, 256) + \"y\""), error(FML_TEXT_TOO_LONG));
    EXPECT_EQ(evaluate("replace(repeat(\"a\", 1e6), \"a\", $big)"), error(FML_TEXT_TOO_LONG));
}

TEST_F(FML_Language, FirstErrorStays) {
    KIT_String value;
    FML::theErrNo = FML_NO_ERROR;
    EXPECT_FALSE(fml_Evaluate("1 / 0", value));
    EXPECT_FALSE(fml_Evaluate("1 +", value));
    EXPECT_TRUE(fml_Evaluate("1 + 1", value));
    EXPECT_EQ(value, "2");
    EXPECT_EQ(FML::theErrNo, FML_DIVISION_BY_ZERO);
    int elsewhere = -1;
    std::thread([&] { elsewhere = FML::theErrNo; }).join();
    EXPECT_EQ(elsewhere, FML_NO_ERROR);
}

}   // namespace
