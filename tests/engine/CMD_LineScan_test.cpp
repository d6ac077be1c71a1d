// SPDX-License-Identifier: Apache-2.0
#include "Cases.h"

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
    std::string buffer = "left from before";
    for (const auto &row : casesOf(ORVLANG_CASES "/lines.cases")) {
        const CMD_LineScan scan = CMDscanLine(row.at(0), buffer);
        EXPECT_EQ(withSingleBlanks(scan.statement), row.at(1)) << row[0];
        ASSERT_EQ(scan.restOffset != std::string_view::npos, row.size() > 2) << row[0];
        if (row.size() > 2) {
            EXPECT_EQ(row[0].substr(scan.restOffset), row[2]) << row[0];
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
