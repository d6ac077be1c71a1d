// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_LoopHead.h>

#include <gtest/gtest.h>

TEST(CMD_LoopHead, SetsOperatorsApart) {
    static const struct {
        const char *line;
        const char *normalized;
    } theCases[] = {
        { "for i=1 to 3", "for i = 1 to 3" },
        { "foreach x (a b)", "foreach x  ( a b ) " },
        { "while $a<3", "while $a < 3" },
        { "while $a<=3", "while $a <= 3" },
        { "while a==b||c>=d", "while a == b || c >= d" },
        { "while a&&b", "while a&&b" },
        { "while a<>b!=c", "while a <> b != c" },
        { "while a<<b>>c", "while a << b >> c" },
        { "while a<==b", "while a <=  = b" },
        // Quotes keep single operators together, but not the comparisons of two bytes.
        { "while \"a=b\"", "while \"a=b\"" },
        { "while \"$a\"<=\"b\"", "while \"$a\" <= \"b\"" },
        { "while 'a<=b'", "while 'a <= b'" },
        { "while \"'(\" (", "while \"'(\"  ( " },
        // Comments, and what a backslash takes its meaning from.
        { "while '#' # x", "while '#' " },
        { "while \\# #", "while \\# " },
        { "while a\\=b\\<=c", "while a\\=b\\< = c" },
        { "while \\\\=b", "while \\\\ = b" },
        { "while \\\"=", "while \\\" = " },
        { "while \"\\\"=", "while \"\\\"=" },
        { "while a\\", "while a\\" },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(CMD_LoopHead::normalize(c.line), c.normalized) << c.line;
}

TEST(CMD_LoopHead, KnowsWhatCanOpenALoop) {
    for (const char *word : { "f", "for", "fore", "foreach", "w", "while" })
        EXPECT_TRUE(CMD_LoopHead::canOpenLoop(word)) << word;
    for (const char *word : { "", "format", "foreachx", "whiles", "For", "end", "wo" })
        EXPECT_FALSE(CMD_LoopHead::canOpenLoop(word)) << word;
}
