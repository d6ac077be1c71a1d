// SPDX-License-Identifier: Apache-2.0
// Loops and if blocks as a host sees them: values, counts, prompts, limits.
#include "FlowFixture.h"

#include <climits>
#include <memory>

#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

/// A system in which a person sits at the keyboard.
class TerminalSystem : public OSL_System {
public:
    TerminalSystem() : former(OSLsetSystem(this)) {}
    ~TerminalSystem() override { OSLsetSystem(former); }
    bool isTerminal(int) override { return true; }

private:
    OSL_System *former;
};

std::string repeated(const std::string &text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

class Loops : public FlowFixture {};

TEST_F(Loops, ValuesOfFor) {
    static const struct {
        const char *head;
        const char *values;
    } theCases[] = {
        { "for i = 1 to 3", "1 2 3 " },
        { "for i=1 to 3 step 2", "1 3 " },
        { "for i = 0 to 1 step 0.25", "0 0.25 0.5 0.75 1 " },
        { "for i = 0 to 1 step 0.3", "0 0.3 0.6 0.9 " },
        { "for i = 3 to 1", "" },
        { "for i = 3 to 1 step -1", "3 2 1 " },
        { "for i = 1 to 3 step -1", "" },
        { "for i = 2 to 2", "2 " },
        { "for i = 2 to 2 step -1", "2 " },
        { "for i = 1 to 3 step", "1 2 3 " },
        { "for i = 1 to 3 by 2 step 2", "1 2 3 " },
        { "for i = 2 to 1 step 0", "2 2 2 2 2 " },   // the body ends it
        { "for i = 1e6 to 1000001", "1e+06 1e+06 " },
        { "for i = 0.0000001 to 0.0000002 step 0.0000001", "1e-07 2e-07 " },
        { "for i = 16777216 to 16777217", "1.67772e+07 1.67772e+07 " },   // one number twice
        { "for i = a to 1x", "0 1 " },
        { "for i = 1 to -1 step -.5 # x", "1 0.5 0 -0.5 -1 " },
    };
    for (const auto &c : theCases) {
        type("set n = 0");
        type(std::string(c.head) + "\necho -n $i ''\nset n = `$n + 1`\nif $n == 5\nbreak\nendif\nend");
        EXPECT_EQ(written(), c.values) << c.head;
    }
}

TEST_F(Loops, AbbreviationsOpenLoops) {
    type("fore x ( a b )\necho $x\nend");
    EXPECT_EQ(written(), "a|b|");
    // An abbreviated while has its condition expanded once, when it is entered.
    type("set i = 1\nwhi $i == 1\nset i = 2\necho pass\nbreak\nend");
    EXPECT_EQ(written(), "pass|");
    EXPECT_FALSE(manager.isLoopCommand("f x ( a )"));
    EXPECT_FALSE(manager.isLoopCommand("fo"));
    EXPECT_FALSE(manager.isLoopCommand(""));
    EXPECT_TRUE(manager.isLoopCommand("\t for"));
}

TEST_F(Loops, TheLevelCountsLoopsAlive) {
    static std::string levels;
    levels.clear();
    manager.installCommand(
        "level", "",
        [](CMD_Args &) { levels += std::to_string(CMD_Manager::getContext()->getLoopNestLevel()) + " "; },
        true);
    type("level\nfor i = 1 to 1\nlevel\nfor k = 1 to 1\nlevel\nend\nfor k = 1 to 1\nend\nlevel\nend\nlevel");
    EXPECT_EQ(levels, "0 3 3 3 0 ");
}

TEST_F(Loops, BuildLoopRefusesWhatIsNoLoop) {
    EXPECT_EQ(manager.buildLoop(""), nullptr);
    EXPECT_EQ(manager.buildLoop("  do it"), nullptr);
    EXPECT_EQ(written(), "do not implemented currently.|");
    const std::unique_ptr<CMD_Loop> loop(manager.buildLoop("for i = 1 to 2"));
    ASSERT_NE(loop, nullptr);
    EXPECT_EQ(manager.getLoopNestLevel(), 1);
    EXPECT_EQ(loop->sendInput("  echo a", 7), 1);
    EXPECT_EQ(loop->sendInput("# end", 8), 1);
    EXPECT_EQ(loop->sendInput(" en d", 9), 0);
    ASSERT_EQ(loop->parseArguments(1), 1);
    EXPECT_EQ(loop->getLineNumber(), -1);
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

TEST(LoopPrompts, FollowTheState) {
    TerminalSystem terminal;
    CMD_Manager manager("flow");
    std::ostringstream out;
    manager.pushOutputStreams(out, out);
    std::string prompts;
    for (const char *line :
         { "echo", "for i = 1 to 2", "if $i == 2", "for k = 1 to 1", "end", "endif", "end", "if 0",
           "echo skipped", "if 1", "else", "endif", "else", "endif", "if 1 2", "endif" }) {
        manager.sendInput(line, false);
        KIT_String prompt;
        manager.getPrompt(prompt);
        prompts += std::string(prompt.view()) + "|";
    }
    EXPECT_EQ(prompts, "flow -> |> |> |> |> |> |flow -> |? |? |? |? |? |flow -> |flow -> |flow -> |flow -> |");
}

TEST_F(Loops, A128thIfIsIgnored) {
    type(repeated("if 1\n", 127) + "if 0\necho runs\nendif\n" + repeated("endif\n", 126) + "endif");
    EXPECT_EQ(written(), "runs|Syntax Error:  endif without matching if|");
}

TEST_F(Loops, DeepNestingIsNoDeepRecursion) {
    constexpr int depth = 20000;
    type(repeated("foreach x ( a )\n", depth) + "echo inside\n" + repeated("end\n", depth));
    EXPECT_EQ(written(), "inside|");
    type("if 0\n" + repeated("while 1\n", depth) + repeated("end\n", depth) + "endif");
    // Never closed: the console gets rid of it by the end of the manager.
    manager.sendMultiLineInput(repeated("while 1\n", depth).c_str(), false);
    EXPECT_EQ(written(), "Invalid loop nesting in stdin|");
}

TEST_F(Loops, LongBodiesAndLists) {
    constexpr int count = 100000;
    std::string words;
    for (int i = 0; i < count; ++i)
        words += " w" + std::to_string(i);
    type("for i = 1 to 1\n" + repeated("set last = $i\n", count) + "end\necho $last");
    type("foreach w (" + words + " )\nend\nforeach w (" + words + ")\nset last = $w\nend\necho $last");
    EXPECT_EQ(written(), "1|w99999|");
}

}   // namespace
