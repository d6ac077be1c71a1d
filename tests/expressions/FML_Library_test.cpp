// SPDX-License-Identifier: Apache-2.0
//
// The functions that expressions always have.
#include "ExpressionTest.h"

#include <set>

namespace {

using FML_Library = ExpressionTest;

TEST_F(FML_Library, Mathematics) {
    check({
        { "abs(-2.5) + sign(-3) + ceil(1.2) + floor(-1.2)", "1.5" },
        { "round(2.5)", "3" },
        { "round(1234, -2)", "1200" },
        { "round(1e300, 20)", "1e+300" },
        { "sqrt(2) * sqrt(2)", "2" },
        { "sqrt(-1)", error(FML_OUT_OF_RANGE) },
        { "log(0)", error(FML_OUT_OF_RANGE) },
        { "log(exp(2)) + log10(1000) + log2(8)", "8" },
        { "pow(0, -1)", error(FML_DIVISION_BY_ZERO) },
        { "mod(-7, 3) + mod(7, -3)", "0" },
        { "mod(1, 0)", error(FML_DIVISION_BY_ZERO) },
        { "round(sin(radians(30)) + cos(0) + tan(0), 9)", "1.5" },
        { "round(degrees(asin(1) + acos(1) + atan(1) + atan2(1, 0)), 9)", "225" },
        { "min(3, [1, 2], \"[7, -2]\")", "-2" },
        { "sum([1, 2, 3], 4)", "10" },
        { "max([])", error(FML_OUT_OF_RANGE) },
        { "max(1, \"x\")", error(FML_WRONG_TYPE) },
        { "clamp(5, 1, 3) + clamp(-5, 1, 3)", "4" },
    });
}

TEST_F(FML_Library, Random) {
    EXPECT_EQ(evaluate("random(1) == random(1)"), "1");
    EXPECT_EQ(evaluate("random(0) == random(-0.0)"), "1");
    std::set<std::string> seen;
    for (int seed = 0; seed < 200; seed++) {
        const std::string s = std::to_string(seed);
        EXPECT_EQ(evaluate("random(" + s + ") >= 0 && random(" + s + ") < 1"), "1") << s;
        seen.insert(evaluate("randomint(" + s + ", 1, 6)"));
    }
    EXPECT_EQ(seen, (std::set<std::string>{ "1", "2", "3", "4", "5", "6" }));
    EXPECT_EQ(evaluate("randomint(1, 3, 2)"), error(FML_OUT_OF_RANGE));
}

TEST_F(FML_Library, Texts) {
    check({
        { "substr(\"abcdef\", -2)", "ef" },
        { "substr(\"abc\", 9, 1) + substr(\"abc\", -9, 1) + substr(\"abc\", 1, -1)", "a" },
        { "left(\"abc\", 2) + right(\"abc\", 2) + left(\"abc\", 9) + right(\"abc\", -1)", "abbcabc" },
        { "find(\"abcabc\", \"c\", 3)", "5" },
        { "occurrences(\"aaaa\", \"aa\") + occurrences(\"a\", \"\")", "2" },
        { "replace(\"a.b.c\", \".\", \"\", 1)", "ab.c" },
        { "replace(\"abc\", \"\", \"x\")", "abc" },
        { "upper(\"aZ1\xc3\xa4\") + lower(\"aZ1\")", "AZ1\xc3\xa4"
                                                     "az1" },
        { "trim(\"  a b\\n\") + trimleft(\"  a \") + trimright(\" a  \") + trim(\"xxaxx\", \"x\")",
          "a ba  aa" },
        { "repeat(\"ab\", 3) + repeat(\"ab\", -1)", "ababab" },
        { "repeat(\"ab\", 1e12)", error(FML_TEXT_TOO_LONG) },
        { "repeat(\"\", 1e300)", "" },
        { "\"[\" + padright(\"ab\", 5) + \"|\" + padcenter(\"ab\", 5, \".-\") + \"]\"", "[ab   |.ab.-]" },
        { "padleft(\"abc\", 2) + padleft(\"abc\", 5, \"\")", "abcabc" },
        { "padleft(\"\", 1e18)", error(FML_TEXT_TOO_LONG) },
        { "char(0)", error(FML_OUT_OF_RANGE) },
        { "code(\"\")", error(FML_OUT_OF_RANGE) },
        { "fixed(3.14159, 2) + \" \" + fixed(-0.5, 0) + \" \" + length(fixed(1e300, 30))", "3.14 -0 332" },
        { "fixed(1, 31)", error(FML_OUT_OF_RANGE) },
        { "hex(2 ^ 53) + hex(15.9)", "20000000000000f" },
        { "hex(1e17)", error(FML_OUT_OF_RANGE) },
    });
}

TEST_F(FML_Library, PatternMatch) {
    static const struct {
        const char *text;
        const char *pattern;
        bool fits;
    } theCases[] = {
        { "abc", "a*b", false },   { "abc", "?b?", true },     { "", "*", true },
        { "", "?", false },        { "a", "", false },         { "b7", "[a-c][0-9]", true },
        { "d7", "[a-c]*", false }, { "d", "[!a-c]", true },    { "]", "[]]", true },
        { "[", "[", true },        { "a*", "a\\\\*", true },   { "ab", "a\\\\*", false },
        { "-", "[a-]", true },     { "aXbXc", "*X*X*", true },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(evaluate(std::string("match(\"") + c.text + "\", \"" + c.pattern + "\")"), c.fits ? "1" : "0")
            << c.text << " " << c.pattern;
    // A text that makes a careless matcher try for ever.
    EXPECT_EQ(evaluate("match(repeat(\"a\", 20000), repeat(\"a*\", 40) + \"b\")"), "0");
}

TEST_F(FML_Library, Words) {
    manager.variables["list"] = "  b10 a2\tb9  a2 ";
    check({
        { "wordcount($list)", "4" },
        { "wordcount(\"a,b,,c\", \",\")", "3" },
        { "word($list, 0) + word($list, -1) + word($list, 9)", "b10a2" },
        { "word(\"/usr/lib/x\", -1, \"/\")", "x" },
        { "wordfind($list, \"b9\") + wordfind($list, \"b\")", "1" },
        { "wordrange(\"a:b:c\", -2, 9, \":\")", "b:c" },
        { "wordrange($list, 9, 1)", "" },
        { "wordunique($list)", "b10 a2 b9" },
    });
}

TEST_F(FML_Library, ChoicesAndTests) {
    check({
        { "choose(3, \"a\")", error(FML_OUT_OF_RANGE) },
        { "choose(-1, \"a\")", error(FML_OUT_OF_RANGE) },
        { "ifempty(\"\", 007) + ifempty(\"x\", \"y\")", "007x" },
        { "isnumber(\"1e3\") + isnumber(\" 1\") + isnumber(\"\") + isnumber([1])", "1" },
        { "isinteger(4) + isinteger(\"4.0\") + isinteger(4.5) + isinteger(\"x\")", "2" },
        { "isempty(\"\") + isempty(0)", "1" },
        { "isvector(\"[1, 2]\") + isvector([]) + isvector(3) + isvector(\"x\") + isvector(\"\")", "3" },
        { "isname(\"a_1\") + isname(\"1a\") + isname(\"\") + isname(\"a-b\")", "1" },
        { "isalpha(\"aZ\") + isalpha(\"\") + isdigit(\"12\") + isdigit(\"1.2\") + isspace(\" \\t\")", "3" },
        { "type(1) + type(\"1\") + type(\"x\") + type([1])", "numbernumbertextvector" },
        { "number(\"x\", 3)", "3" },
        { "number(\"x\")", error(FML_WRONG_TYPE) },
    });
}

TEST_F(FML_Library, Vectors) {
    manager.variables["v"] = "[3, 4]";
    check({
        { "size([1, 2, 3]) + size(\"1 2 3\") + size(\"\") ", error(FML_WRONG_TYPE) },
        { "size(\"1, 2 3\") + size(5) + size([])", "4" },
        { "item($v, 1) + item([7, 8], -2)", "11" },
        { "item($v, 2)", error(FML_OUT_OF_RANGE) },
        { "item(\"[1, 2\", 0)", error(FML_WRONG_TYPE) },
        { "item(\"1,,2\", 0)", error(FML_WRONG_TYPE) },
        { "item(\"[1, 2,]\", 0)", error(FML_WRONG_TYPE) },
        { "dot($v, [2])", error(FML_WRONG_TYPE) },
        { "range(3, 1)", "[3, 2, 1]" },
        { "size(range(0, 1, 0.1))", "11" },
        { "range(1, 3, -1)", "[]" },
        { "range(0, 1, 0)", error(FML_OUT_OF_RANGE) },
        { "range(0, 1e9)", error(FML_TEXT_TOO_LONG) },
    });
}

}   // namespace
