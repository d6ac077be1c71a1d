// SPDX-License-Identifier: Apache-2.0
#include "Cases.h"

#include <orvlang/flow/CMD_LoopHead.h>

#include <gtest/gtest.h>

TEST(CMD_LoopHead, SetsOperatorsApart) {
    for (const auto &row : casesOf(ORVLANG_CASES "/loop_heads.cases"))
        EXPECT_EQ(CMD_LoopHead::normalize(row.at(0).c_str()), row.at(1)) << row[0];
}

TEST(CMD_LoopHead, KnowsWhatCanOpenALoop) {
    for (const char *word : { "f", "for", "fore", "foreach", "w", "while" })
        EXPECT_TRUE(CMD_LoopHead::canOpenLoop(word)) << word;
    for (const char *word : { "", "format", "foreachx", "whiles", "For", "end", "wo" })
        EXPECT_FALSE(CMD_LoopHead::canOpenLoop(word)) << word;
}
