// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_LineScan.h>

#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

namespace {

// Several blanks count as one: how an operator that has blanks around it is set apart means nothing to the words.
std::string withSingleBlanks(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (c != ' ' || result.empty() || result.back() != ' ')
            result += c;
    return result;
}

TEST(CMD_LineScan, CutsAndSetsApart) {
    static constexpr const char *none = nullptr;
    static const struct {
        const char *line;
        const char *statement;
        const char *rest;
    } theCases[] = {
        { "", "", none },
        { "set a=1", "set a = 1", none },
        { "if ($a>3)", "if ( $a > 3 ) ", none },
        { "x<=y>=z==w", "x <= y >= z == w", none },
        { "a!=b!c", "a != b!c", none },
        { "a<<b<>c<d", "a << b <> c < d", none },
        { "a>f>>f>&f>>&f>=&f>&&f", "a > f >> f >& f >>& f >=& f >&& f", none },
        { "a=>b===c", "a = > b == = c", none },
        { "a&&b&c 2>f", "a&&b&c 2 > f", none },
        { ">", " > ", none },
        // The end of the statement.
        { "a=b#c", "a = b", none },
        { "a;#b", "a", "#b" },
        { "a\\;b\\#c;d", "a\\;b\\#c", "d" },
        { "a\\>b\\\\;c", "a\\>b\\\\;c", none },
        // Quotes keep what is in them, and each other.
        { "\"a;b#c=d\" ;x", "\"a;b#c=d\" ", "x" },
        { "'a;b>c' `d;e<f`;x", "'a;b>c' `d;e<f`", "x" },
        { "\"it's;\" 'a\";`b' `'c;\"`=1;x", "\"it's;\" 'a\";`b' `'c;\"` = 1", "x" },
        { "\"a\\\";b\";x", "\"a\\\";b\"", "x" },
        { "\\\"a;b", "\\\"a", "b" },
        { "'a\\';b", "'a\\';b", none },   // the backslash counts inside single quotes too
        { "echo 'open; # = >", "echo 'open; # = >", none },
    };
    std::string buffer = "left from before";
    for (const auto &c : theCases) {
        const CMD_LineScan scan = CMDscanLine(c.line, buffer);
        EXPECT_EQ(withSingleBlanks(scan.statement), c.statement) << c.line;
        ASSERT_EQ(scan.restOffset != std::string_view::npos, c.rest != none) << c.line;
        if (c.rest) {
            EXPECT_STREQ(c.line + scan.restOffset, c.rest) << c.line;
        }
    }
}

TEST(CMD_LineScan, LeavesAProtectedWordWhole) {
    constexpr std::string_view alphabet = "\\\\'\"`n \n\t;#!$a=>&({|\r\x01\xff";
    std::string buffer;
    KIT_WorkArgs words;
    for (const char a : alphabet)
        for (const char b : alphabet)
            for (const char c : alphabet) {
                const std::string text = { a, b, c };
                KIT_WorkBuffer line;
                line.strcpy("'x y' ");
                line.protectedStrcat(text.c_str(), false);
                line.strcat(" z");
                const CMD_LineScan scan = CMDscanLine(line.view(), buffer);
                ASSERT_EQ(scan.statement, line.view());
                KIT_String(scan.statement).cshParse(words, nullptr, nullptr, nullptr, nullptr);
                ASSERT_EQ(words[1], text) << line.view();
                ASSERT_STREQ(words[2], "z");
            }
}

TEST(CMD_LineScan, ReadsNothingBehindItsView) {
    std::string buffer;
    for (const std::string_view line : { ">>&", "a!=", "==", "<=", "\\;" })
        for (size_t length = 0; length <= line.size(); ++length) {
            const std::unique_ptr<char[]> bytes(new char[length]);   // the sanitizer guards its end
            line.copy(bytes.get(), length);
            CMDscanLine({ bytes.get(), length }, buffer);
        }
}

}   // namespace
