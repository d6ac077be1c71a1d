// SPDX-License-Identifier: Apache-2.0
// Loops and if blocks as a host sees them: values, counts, prompts, limits.
#include "EngineFixture.h"

#include <climits>
#include <memory>

#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/kit/KIT_String.h>

namespace {

std::string repeated(const std::string &text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

class Loops : public EngineFixture {
protected:
    ~Loops() override {
        EXPECT_EQ(manager.getLoopNestLevel(), 0);
        EXPECT_EQ(manager.getBreakLevel(), 0);
    }
};

TEST_F(Loops, ValuesOfFor) {
    static const struct {
        const char *head;
        const char *values;
    } theCases[] = {
        { "for i=1 to 3 step 2", "1 3 " },
        { "for i = 0 to 1 step 0.25", "0 0.25 0.5 0.75 1 " },
        { "for i = 0 to 1 step 0.3", "0 0.3 0.6 0.9 " },
        { "for i = 0.6 to 0.9 step 0.1", "0.6 0.7 0.8 0.9 " },
        { "for i = 1 to 3 step -1", "" },
        { "for i = 2 to 2", "2 " },
        { "for i = 1 to 3 by 2 step 2", "1 2 3 " },
        { "for i = 2 to 1 step 0", "2 2 2 2 2 " },   // the body ends it
        { "for i = 0.0000001 to 0.0000002 step 0.0000001", "1e-07 2e-07 " },
        { "for i = 16777216 to 16777217", "1.67772e+07 1.67772e+07 " },   // one number twice
        { "for i = 1 to -1 step -.5 # x", "1 0.5 0 -0.5 -1 " },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(type("set n = 0\n" + std::string(c.head) +
                       "\necho -n $i ''\nset n = `$n + 1`\nif $n == 5\nbreak\nendif\nend"),
                  c.values)
            << c.head;
}

TEST_F(Loops, AnAbbreviatedWhileExpandsItsConditionOnce) {
    EXPECT_EQ(type("set i = 1\nwhi $i == 1\nset i = 2\necho pass\nbreak\nend"), "pass\n");
}

TEST_F(Loops, TheLevelCountsLoopsAlive) {
    install("level", [](CMD_Args &args) { args.out() << CMD_Manager::getContext()->getLoopNestLevel(); });
    EXPECT_EQ(type("level\nfor i = 1 to 1\nlevel\nfor k = 1 to 1\nlevel\nend\nfor k = 1 to 1\nend\nlevel\nend\n"
                   "level"),
              "03330");
}

TEST_F(Loops, BuildLoopRefusesWhatIsNoLoop) {
    EXPECT_FALSE(manager.isLoopCommand(nullptr));
    EXPECT_EQ(manager.buildLoop(""), nullptr);
    EXPECT_EQ(manager.buildLoop("  do it"), nullptr);
    EXPECT_EQ(transcript.take(), "{do not implemented currently.\n}");
    const std::unique_ptr<CMD_Loop> loop(manager.buildLoop("for i = 1 to 2"));
    ASSERT_NE(loop, nullptr);
    EXPECT_EQ(manager.getLoopNestLevel(), 1);
    EXPECT_EQ(loop->sendInput("  echo a", 7), 1);
    EXPECT_EQ(loop->sendInput("# end", 8), 1);
    EXPECT_EQ(loop->sendInput(" en d", 9), 0);
    ASSERT_EQ(loop->parseArguments(1), 1);
    EXPECT_STREQ(loop->getNextLine(), "echo a");
    EXPECT_EQ(loop->getLineNumber(), 7);
    loop->cancel();
    EXPECT_EQ(manager.getLoopNestLevel(), 0);
    EXPECT_EQ(loop->getNextLine(), nullptr);
}

TEST_F(Loops, BreakLevelsDoNotOverflow) {
    manager.bumpLoopNestLevel(1);
    for (int i = 0; i < 40; ++i)
        manager.bumpBreakLevel(INT_MAX / 16);
    EXPECT_EQ(manager.getBreakLevel(), INT_MAX);
    type("nosuch");
    EXPECT_EQ(manager.getBreakLevel(), INT_MAX);
    manager.bumpLoopNestLevel(-1);
    EXPECT_EQ(manager.getBreakLevel(), 0);
}

TEST_F(Loops, A128thIfIsIgnored) {
    EXPECT_EQ(type(repeated("if 1\n", 127) + "if 0\necho runs\nendif\n" + repeated("endif\n", 127)),
              "runs\n{Syntax Error:  endif without matching if\n}");
}

TEST_F(Loops, DeepNestingIsNoDeepRecursion) {
    constexpr int depth = 20000;
    EXPECT_EQ(type(repeated("foreach x ( a )\n", depth) + "echo inside\n" + repeated("end\n", depth)),
              "inside\n");
    type("if 0\n" + repeated("while 1\n", depth) + repeated("end\n", depth) + "endif");
    // Never closed: the console gets rid of it by the end of the manager.
    manager.sendMultiLineInput(repeated("while 1\n", depth).c_str(), false);
    EXPECT_EQ(transcript.take(), "{Invalid loop nesting in stdin\n}");
}

TEST_F(Loops, LongBodiesAndLists) {
    constexpr int count = 100000;
    type("for i = 1 to 1\n" + repeated("set last = $i\n", count) + "end");
    EXPECT_EQ(value("last"), "1");
    type("foreach w (" + repeated(" w", count) + " )\nend\nforeach w (" + repeated(" w", count) +
         " x)\nset last = $w\nend");
    EXPECT_EQ(value("last"), "x");
}

}   // namespace
