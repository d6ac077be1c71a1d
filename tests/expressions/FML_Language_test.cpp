// SPDX-License-Identifier: Apache-2.0
//
// The language of expressions: operators, texts, names, errors.
#include "ExpressionTest.h"

#include <thread>

namespace {

using FML_Language = ExpressionTest;

std::string repeated(const std::string &text, int times) {
    std::string all;
    for (int i = 0; i < times; i++)
        all += text;
    return all;
}

TEST_F(FML_Language, Arithmetic) {
    check({
        { "(1 + 2) * 3", "9" },
        { "10 - 4 - 3", "3" },
        { "(-2) ^ 2", "4" },
        { "2 ^ -1", "0.5" },
        { "7.5 % -2", "1.5" },
        { "0.1 + 0.2", "0.3" },
        { "1e15 - 1", "999999999999999" },
        { "2 ^ 60", "1.15292150460685e+18" },
        { ".5 + 1e1", "10.5" },
        { " 1\n+\t1 ", "2" },
    });
}

TEST_F(FML_Language, ValuesAsTexts) {
    check({
        { "(007)", "007" },
        { "1 ? 1e3 : 0", "1e3" },
        { "\"a\" + \"b\" + 1", "ab1" },
        { "1 + 2 + \"x\"", "3x" },
        { "\" 1\" + 2", " 12" },
        { "\"0x10\" + 1", "0x101" },
        { R"("q\" s\\ n\n t\t d\$x o\q")", "q\" s\\ n\n t\t d$x o\\q" },
        { "\"$ $1 ${ 5$\"", "$ $1 ${ 5$" },
        { "[1, 2.50, \"3\"]", "[1, 2.5, 3]" },
        { "[1] + [2]", "[1][2]" },
    });
}

TEST_F(FML_Language, Comparisons) {
    check({
        { "\"10\" == \"10.0\"", "1" },
        { "\"a\" < \"b\"", "1" },
        { "\"\xc3\" > \"z\"", "1" },
        { "1 <= 1 == 1", "1" },
        { "1 != 2", "1" },
        { "2 >= 3", "0" },
        { "\"\" == 0", "0" },
        { "[1, 2] == [1,2]", "1" },
    });
}

TEST_F(FML_Language, OnlyWhatIsNeededIsEvaluated) {
    check({
        { "1 || 1 / 0", "1" },
        { "1 && 2", "1" },
        { "\"no\" && 1", "1" },
        { "!\"text\"", "0" },
        { "!-0.5", "0" },
        { "1 ? 2 : 1 / 0", "2" },
        { "0 ? 1 : 0 ? 2 : 3", "3" },
        { "(1 ? 2 : 3) + 4", "6" },
        { "(0 && 1) + 4", "4" },
        { "if(0, 1 / 0, 5)", "5" },
        { "if(1, 2, 3) + 1", "3" },
    });
}

TEST_F(FML_Language, Names) {
    manager.variables = {
        { "i", "20" },  { "zip", "007" },      { "word", "two words" },         { "empty", "" },
        { "a_1", "x" }, { "FRAME", "hidden" }, { "big", repeated("b", 100000) }
    };
    check({
        { "$i * 2 + 1", "41" },
        { "${i}5", error(FML_SYNTAX_ERROR) },
        { "\"${i}5\"", "205" },
        { "\"<$i$zip>\"", "<20007>" },
        { "\"$zip\" + 1", "8" },
        { "$word + $i", "two words20" },
        { "$empty + 1", "1" },
        { "$empty * 1", error(FML_WRONG_TYPE) },
        { "${nosuch:-4} + 1", "5" },
        { "\"<${nosuch:-a b}>\"", "<a b>" },
        { "${i:-4} + 1", "21" },
        { "1 + $nosuch", error(FML_UNKNOWN_VARIABLE) },
        { "\"$nosuch\"", error(FML_UNKNOWN_VARIABLE) },
        { "length($big)", "100000" },
        { "$big == $big", "1" },
        { "abs", error(FML_UNKNOWN_VARIABLE) },
    });
}

TEST_F(FML_Language, BadTexts) {
    const std::string syntax = error(FML_SYNTAX_ERROR);
    check({
        { "", syntax },      { "(1", syntax },    { "1)", syntax },      { "1 +", syntax },
        { "* 2", syntax },   { "1 2", syntax },   { "[1, 2", syntax },   { "abs(1", syntax },
        { "\"a", syntax },   { "'a", syntax },    { "\"a\\\"", syntax }, { "12ab", syntax },
        { "0x10", syntax },  { "1.2.3", syntax }, { "1 = 1", syntax },   { "1 & 1", syntax },
        { "1 ? 2", syntax }, { "$", syntax },     { "${i", syntax },     { "abs(,1)", syntax },
        { "a.b", syntax },   { "1; 2", syntax },  { "\x01", syntax },    { "[1,]", syntax },
    });
    KIT_String value;
    EXPECT_FALSE(fml_Evaluate(nullptr, value));
    EXPECT_EQ(FML::theErrNo, FML_SYNTAX_ERROR);
}

TEST_F(FML_Language, Failures) {
    check({
        { "1 % 0", error(FML_DIVISION_BY_ZERO) },
        { "0 ^ -1", error(FML_DIVISION_BY_ZERO) },
        { "(-8) ^ 0.5", error(FML_OUT_OF_RANGE) },
        { "1e308 * 10", error(FML_OUT_OF_RANGE) },
        { "-\"a\"", error(FML_WRONG_TYPE) },
        { "[1] * 2", error(FML_WRONG_TYPE) },
        { "[\"a\"]", error(FML_WRONG_TYPE) },
        { "0 && nosuch(1)", error(FML_UNKNOWN_FUNCTION) },
        { "abs()", error(FML_ARGUMENT_COUNT) },
        { "if(1, 2)", error(FML_ARGUMENT_COUNT) },
        { "substr(\"a\")", error(FML_ARGUMENT_COUNT) },
        { "abs(\"a\")", error(FML_WRONG_TYPE) },
    });
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
