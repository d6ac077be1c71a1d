// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_CshTemplate.h>
#include <orvlang/platform/kit/KIT_StringCshIO.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>

#include <map>
#include <string>

#include "Cases.h"

namespace {

bool lookupVariable(const char *name, KIT_String &value) {
    static const std::map<std::string, std::string> theVariables = {
        { "a", "value" }, { "two", "1 2" }, { "wide", " 1\t2 " },      { "empty", "" },
        { "blank", " " }, { "_9", "nine" }, { "quote", "'$a' \"`\\" }, { "op", ">" },
    };
    const auto found = theVariables.find(name);
    if (found == theVariables.end())
        return false;
    value = KIT_String::borrow(found->second.c_str());
    return true;
}

/// Gives the text in <>, two words for "two", nothing for "fail".
bool lookupExpression(const char *text, KIT_String &value) {
    value = std::string(text) == "two" ? std::string("1 2") : std::string("<") + text + ">";
    return std::string(text) != "fail";
}

/// The words, each in brackets.
std::string show(const KIT_WorkArgs &words) {
    std::string result;
    for (int i = 0; i < words.argc(); ++i)
        result += std::string("[") + words[i] + "]";
    return result;
}

std::string parse(std::string_view text, KIT_CshLookup variable = lookupVariable,
                  KIT_CshLookup expression = lookupExpression) {
    KIT_WorkArgs words;
    const int count = KIT_String(text).cshParse(words, variable, expression, nullptr, nullptr);
    EXPECT_EQ(count, words.argc());
    EXPECT_EQ(words.argv()[words.argc()], nullptr);
    return show(words);
}

TEST(KIT_CshTemplate, MakesWords) {
    for (const auto &row : casesOf(ORVLANG_CASES "/words.cases"))
        EXPECT_EQ(parse(row.at(0)), row.at(1)) << row[0];
}

TEST(KIT_CshTemplate, LeavesReferencesWithNullLookups) {
    for (const auto &row : casesOf(ORVLANG_CASES "/references.cases")) {
        KIT_WorkArgs words;
        KIT_String(row.at(0)).cshParse(words, nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(show(words), row.at(1)) << row[0];
        std::string joined;
        for (int i = 0; i < words.argc(); ++i)
            joined += std::string(words[i]) + " ";
        joined.pop_back();
        EXPECT_EQ(parse(joined), row.at(2)) << row[0];
    }
    EXPECT_EQ(parse("$a `e`", lookupVariable, nullptr), "[value][`e`]");
    EXPECT_EQ(parse("$a `e`", nullptr, lookupExpression), "[$a][<e>]");
}

TEST(KIT_CshTemplate, TakesRedirections) {
    KIT_WorkArgs words;
    KIT_StringCshIO io;
    KIT_CshTemplate scratch;
    for (const auto &row : casesOf(ORVLANG_CASES "/redirections.cases")) {
        KIT_String(row.at(0)).cshParse(words, lookupVariable, lookupExpression, &scratch, &io);
        EXPECT_EQ(show(words), row.at(1)) << row[0];
        EXPECT_EQ(std::string(io.outName.c_str()) + "," + io.errName.c_str() + "," + io.inName.c_str(),
                  row.at(2))
            << row[0];
        const std::string flags = std::string(io.appendOut ? "o" : "") + (io.appendErr ? "e" : "");
        EXPECT_EQ(flags + (io.missingName ? "m" : ""), row.at(3)) << row[0];
        scratch.expand(words, lookupVariable, lookupExpression, nullptr);
        EXPECT_EQ(show(words), parse(row[0])) << row[0];
    }
}

KIT_CshTemplate *theInner = nullptr;

/// Takes another text apart and expands it while an expansion is under way.
bool lookupNested(const char *text, KIT_String &value) {
    if (std::string(text) == "0")
        return false;
    KIT_WorkArgs words;
    KIT_CshTemplate scratch;
    KIT_String::borrow("${a}$two").cshParse(words, lookupVariable, nullptr, &scratch, nullptr);
    theInner->expand(words, lookupVariable, lookupExpression, nullptr);
    value = show(words);
    return true;
}

TEST(KIT_CshTemplate, IsKeptAndReentered) {
    KIT_CshTemplate outer;
    KIT_CshTemplate inner;
    inner.parse("i$a", false);
    outer.parse("x `n` \"`n`\" $two `0` y", false);
    theInner = &inner;
    KIT_WorkArgs words;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(outer.expand(words, lookupVariable, lookupNested, nullptr), 6);
        EXPECT_EQ(show(words), "[x][[ivalue]][[ivalue]][1][2][y]");
    }
    outer.parse("", false);
    EXPECT_EQ(outer.expand(words, nullptr, nullptr, nullptr), 0);
}

TEST(KIT_CshTemplate, IsLinearInLongTexts) {
    constexpr std::size_t large = 1'000'000;
    const auto repeated = [](std::string_view piece) {
        std::string text;
        while (text.size() < large)
            text += piece;
        return text;
    };
    const auto lookup = [](const char *name, KIT_String &value) {
        value = KIT_String::borrow(*name == 'n' ? "" : "1 2");
        return true;
    };
    static const struct {
        std::string_view piece;
        int words;
    } theCases[] = {
        { "a", 1 },      { "'a'", 1 },       { "\\", 1 },          { "\"${a:-", 1 },    { "${a:-", 1 },
        { "${a:-$", 1 }, { "\"`", 125'001 }, { "word ", 200'000 }, { "$two", 250'001 }, { "$none ", 0 },
    };
    KIT_WorkArgs words;
    KIT_CshTemplate scratch;
    for (const auto &c : theCases) {
        scratch.parse(repeated(c.piece), false);
        EXPECT_EQ(scratch.expand(words, lookup, lookup, nullptr), c.words) << c.piece;
    }
}

TEST(KIT_String, SplitsOutsideOfStatements) {
    KIT_WorkArgs words;
    EXPECT_EQ(KIT_String("a 'b c' \"d $a\" `e f` $a\\ x it\\'s").parseInPlace(words), 7);
    EXPECT_EQ(show(words), "[a][b c][d $a][`e][f`][$a x][it's]");
    EXPECT_EQ(KIT_String(", 1,2 ,\t3,").tokenizeInPlace(words, ", \t"), 3);
    EXPECT_EQ(show(words), "[1][2][3]");
    EXPECT_EQ(KIT_String("'a,b'").tokenizeInPlace(words, ","), 2);
    EXPECT_EQ(KIT_String().tokenizeInPlace(words, ","), 0);
    for (int i = 0; i < 1000; ++i)   // from its own memory, while that moves
        words.append(i == 0 ? "first" : std::string_view(words[i - 1]));
    EXPECT_STREQ(words[999], "first");
    EXPECT_EQ(words[-1], nullptr);
    EXPECT_EQ(words.argv()[1000], nullptr);
}

}   // namespace
