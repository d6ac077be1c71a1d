// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_IfRules.h>

#include <gtest/gtest.h>

TEST(CMD_IfRules, OneRowForEachState) {
    static const struct {
        CMD_IfState state;
        bool runs;
        bool expandsIf, expandsElse, expandsEndif;
        CMD_IfState afterElse;
    } theCases[] = {
        { CMD_IF_NONE, true, true, true, true, CMD_IF_NONE },
        { CMD_IF_FALSE, false, false, true, true, CMD_IF_TRUE },
        { CMD_IF_DONE, false, false, false, false, CMD_IF_DONE },
        { CMD_IF_DEAD, false, false, false, false, CMD_IF_DEAD },
        { CMD_IF_TRUE, true, true, false, true, CMD_IF_DONE },
    };
    for (const auto &c : theCases) {
        EXPECT_EQ(CMD_IfRules::runs(c.state), c.runs) << c.state;
        EXPECT_EQ(CMD_IfRules::expandsWords(c.state, CMD_IfRules::wordIf), c.expandsIf) << c.state;
        EXPECT_EQ(CMD_IfRules::expandsWords(c.state, CMD_IfRules::wordElse), c.expandsElse) << c.state;
        EXPECT_EQ(CMD_IfRules::expandsWords(c.state, CMD_IfRules::wordEndif), c.expandsEndif) << c.state;
        EXPECT_EQ(CMD_IfRules::afterElse(c.state), c.afterElse) << c.state;
    }
}
