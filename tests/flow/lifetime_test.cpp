// SPDX-License-Identifier: Apache-2.0
// What a loop runs may do anything to it: end its source, put another loop in its place, ask for its lines. Run under
// the address sanitizer.
#include "EngineFixture.h"

#include <memory>

#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Symbol.h>

namespace {

int theRuns;   // in one script

/// The function perform(TEXT) of expressions: executes the text and gives 1, and 0 at last, so that each loop ends.
void evaluatePerform(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    CMD_Manager::getContext()->execute(arguments[0]->value.text, 0, nullptr, nullptr, 1, true);
    result->value.number = ++theRuns < 50;
}

void addPerformFunction() {
    static const int types[] = { FML_STRING };
    static FML_FUNCTION function(FML_VOLATILE, "perform", 1, FML_FLOAT, types, evaluatePerform, nullptr,
                                 nullptr, 1, false);
    fml_AddFunction(&function);
}

/// What a loop meets while it is tested, while an inner one is entered, or in its body.
const char *const theDeeds[] = { "exit",
                                 "nosuch",
                                 "break",
                                 "break 9",
                                 "continue",
                                 "for z = 1 to 2",
                                 "while 1",
                                 "foreach q ( a",
                                 "source other.cmd",
                                 "source other.cmd; exit",
                                 "source fails.cmd",
                                 "source reads.cmd",
                                 "endif",
                                 "if 0",
                                 "else",
                                 "unset",
                                 "end",
                                 "source open.cmd" };

class Lifetime : public EngineFixture {
protected:
    Lifetime() {
        addPerformFunction();
        folder.write("other.cmd", "while 1\nbreak\nend\nforeach y ( a b )\nforeach u ( c )\nend\nend\n");
        folder.write("fails.cmd", "foreach y ( a b )\nnosuch\nend\n");
        folder.write("reads.cmd", "foreach y ( a b )\nread answer\nend\n");
        folder.write("open.cmd", "foreach y ( a b )\n");
        folder.write("outer.cmd", "for o = 1 to 2\nsource s.cmd\nend\n");
    }

    /// Runs the text as a script inside a script, then from the console, and sees that the manager is sound behind it.
    void torture(const std::string &text) {
        SCOPED_TRACE(text);
        folder.write("s.cmd", text);
        theRuns = 0;
        type("source outer.cmd");
        recover();
        theRuns = 0;
        type(text);
        recover();
    }

    /// Answers what waits, closes what is open, and forgets what was written.
    void recover() {
        for (int i = 0; i < 64; ++i)
            type("1");
        type("end\nend\nend");
        while (manager.getSourceLevel() > 0)
            manager.popSource(0);
        type("end\nend");
        for (int i = 0; i < 127 && manager.getSource()->getIfNestLevel() > 0; ++i)
            type("endif");
        type("alias -u set");
        EXPECT_EQ(type("foreach s ( a b )\necho sound $s\nend"), "sound a\nsound b\n");
        EXPECT_EQ(manager.getLoopNestLevel(), 0);
        EXPECT_EQ(manager.getBreakLevel(), 0);
    }
};

TEST_F(Lifetime, AnAliasOfSetDoesAnything) {
    for (const std::string deed : theDeeds) {
        // The rest of the statement becomes a comment. Without its end the alias would start loop after loop.
        torture("alias set 'alias -u set; " + deed + " #'\nforeach x ( a b )\necho $x\nend\necho behind\n");
        torture("alias set '" + deed + "; alias -u set #'\nfor i = 1 to 3\nfor k = 1 to 2\necho x\nend\nend\n");
    }
}

TEST_F(Lifetime, AnExpressionDoesAnything) {
    for (const std::string deed : theDeeds) {
        const std::string run = "`perform(\"" + deed + "\")`";
        torture("while " + run + "\necho pass\nbreak\nend\necho behind\n");
        torture("for i = 1 to " + run + "\necho pass\nend\n");
        torture("foreach x ( a b )\nforeach y ( " + run + " b )\necho pass\nend\nend\n");
        torture("foreach x ( a b )\nwhile " + run + "\necho pass\nbreak\nend\nend\n");
        torture("foreach x ( a b )\nif " + run + "\necho pass\nendif\nend\n");
    }
}

TEST_F(Lifetime, ABodyLineDoesAnything) {
    for (const std::string deed : theDeeds) {
        torture("foreach x ( a b )\n" + deed + "\nend\n");
        torture("foreach x ( a b )\nfor k = 1 to 2\necho a; " + deed + "; echo b\nend\nend\n");
    }
}

TEST_F(Lifetime, AnEndedSourceGivesNoFurtherLine) {
    EXPECT_EQ(script("while `perform(\"exit\")`\necho pass\nend\necho behind\n", "; echo next"), "next\n");
    EXPECT_EQ(script("alias set 'exit #'\nfor i = 1 to 3\necho pass\nend\necho behind\n",
                     "; echo next; alias -u set"),
              "{s.cmd (1): Warning:  alias for 'set' overrides internal command\n}next\n");
}

TEST_F(Lifetime, AHostsLoopEndsWithItsSource) {
    folder.write("s.cmd", "echo\n");
    manager.pushSource("s.cmd", 0);
    const std::unique_ptr<CMD_Loop> loop(manager.buildLoop("while 1"));
    ASSERT_TRUE(loop->parseArguments(1));
    for (const char *line : { "echo pass", "exit", "echo never", "end" })
        loop->sendInput(line, 1);
    while (const char *line = loop->getNextLine())
        manager.sendInput(line, false);
    EXPECT_EQ(transcript.take(), "pass\n");
}

TEST_F(Lifetime, ATestThatFindsNoMemoryEndsItsLoop) {
    struct Exhausted : CMD_Manager {
        using CMD_Manager::CMD_Manager;
        bool getVariableString(const char *, KIT_String &, int &, int) override { throw std::bad_alloc(); }
    } exhausted(name.c_str());
    for (const char *line : { "while $a", "ech never", "end", "ech behind" })
        exhausted.execute(line, 0, &transcript.out(), &transcript.err(), 1, true);
    EXPECT_EQ(transcript.take(), "{Out of memory\n}behind\n");
}

TEST_F(Lifetime, ATestThatRunsTextLeavesTheLoopAlone) {
    // The text of several lines becomes a source of its own, which ends inside the test.
    const std::string loop = "foreach x ( 'a\\necho b' c )\necho \"<$x>\"\nend\n";
    EXPECT_EQ(type(loop), "b\n<>\n<c>\n");
    type("set -u x");
    manager.sendMultiLineInput(loop.c_str(), false);
    EXPECT_EQ(transcript.take(), "b\n<>\n<c>\n");
}

TEST_F(Lifetime, EndlessNestingEnds) {
    const std::string written =
        script("alias set 'source s.cmd #'\nfor i = 1 to 3\necho pass\nend\n", "; alias -u set");
    EXPECT_NE(written.find("Nesting too deep\n"), std::string::npos);
}

}   // namespace
