// SPDX-License-Identifier: Apache-2.0
// The prompt loop on a real terminal.
#include "Terminal.h"

#include <gtest/gtest.h>

namespace {

const char theControlC[] = "\x03";
const char theControlD[] = "\x04";

class TerminalTest : public testing::Test {
protected:
    Program program(const std::vector<std::string> &words = {}) const {
        Program result = { { ORVLANG_PROGRAM }, folder.path(), "", {} };
        result.words.insert(result.words.end(), words.begin(), words.end());
        return result;
    }
    /// Types a line at the prompt that has been waited for and gives what it wrote until the next prompt.
    std::string answer(Terminal &terminal, const std::string &line,
                       const std::string &prompt = "orvlang -> ") const {
        terminal.type(line + "\n");
        terminal.waitFor(line + "\r\n");
        return terminal.waitFor(prompt);
    }

    TemporaryFolder folder;
};

TEST_F(TerminalTest, PromptsFollowTheStateOfTheLanguage) {
    Terminal terminal(program());
    terminal.waitFor("orvlang -> ");
    EXPECT_EQ(answer(terminal, "echo a; echo b"), "a\r\nb\r\n");
    EXPECT_EQ(answer(terminal, "!! c"), "echo b c\r\nb c\r\n");
    EXPECT_EQ(answer(terminal, "echo a \\", "? "), "");
    EXPECT_EQ(answer(terminal, "b"), "a b\r\n");
    EXPECT_EQ(answer(terminal, "for i = 1 to 2", "> "), "");
    EXPECT_EQ(answer(terminal, "echo $i", "> "), "");
    EXPECT_EQ(answer(terminal, "end"), "1\r\n2\r\n");
    EXPECT_EQ(answer(terminal, "read x", ""), "");
    EXPECT_EQ(answer(terminal, "not $run"), "");
    EXPECT_EQ(answer(terminal, "echo '<'$x'>'"), "<not $run>\r\n");
    EXPECT_EQ(answer(terminal, "prompt '$x> '", "not $run> "), "");
    terminal.type(theControlD);
    terminal.waitForEnd(0);
}

TEST_F(TerminalTest, InterruptDropsTheLine) {
    Terminal terminal(program());
    terminal.waitFor("orvlang -> ");
    terminal.type("echo dropped");
    terminal.waitFor("echo dropped");
    terminal.type(theControlC);
    terminal.waitFor("orvlang -> ");
    EXPECT_EQ(answer(terminal, "echo kept"), "kept\r\n");
    // What waits for further lines goes too: a continuation, a loop, skipped code.
    const struct {
        const char *line;
        const char *prompt;
    } theHalves[] = { { "echo dropped \\", "? " }, { "for i = 1 to 2", "> " }, { "if 0", "? " } };
    for (const auto &half : theHalves) {
        EXPECT_EQ(answer(terminal, half.line, half.prompt), "");
        terminal.type(theControlC);
        terminal.waitFor("orvlang -> ");
        EXPECT_EQ(answer(terminal, "echo kept"), "kept\r\n") << half.line;
    }
    EXPECT_EQ(answer(terminal, "exit 4"), "");
    terminal.type(theControlD);
    terminal.waitForEnd(4);
}

TEST_F(TerminalTest, InterruptEndsAScript) {
    folder.write("endless.cmd", "while 1 == 1\necho turning\nend\n");
    folder.write("ask.cmd", "echo asking\nread x\necho never\n");
    for (const char *script : { "endless.cmd", "ask.cmd" }) {
        Terminal terminal(program({ script }));
        terminal.waitFor("ing\r\n");
        terminal.type(theControlC);
        terminal.waitForEnd(130);
    }
}

TEST_F(TerminalTest, InterruptEndsWhatUnixStartedAlone) {
    folder.write("wait.sh", "echo begun\nexec sleep 1000\n");
    Terminal terminal(program());
    terminal.waitFor("orvlang -> ");
    terminal.type("unix sh wait.sh; echo reached `$status != 0`\n");
    terminal.waitFor("begun\r\n");
    terminal.type(theControlC);
    terminal.waitFor("reached 1\r\n");
}

TEST_F(TerminalTest, InterruptReachesPython) {
    Terminal terminal(program());
    terminal.waitFor("orvlang -> ");
    // A signal that comes just before the system call does not end the sleep, in any Python. So a thread, which gets the
    // interpreter lock when the main thread releases it for the sleep, waits for that call.
    folder.write("turn.py", "print('begun')\nwhile True: pass\n");
    folder.write("sleep.py",
                 "import _thread, os, sys, time\n"
                 "sys.setswitchinterval(1000)\n"
                 "def watch():\n"
                 "    while open(f'/proc/self/task/{os.getpid()}/stat').read().split()[2] != 'S': pass\n"
                 "    print('begun')\n"
                 "_thread.start_new_thread(watch, ())\n"
                 "time.sleep(1000)\n");
    for (const std::string script : { "turn.py", "sleep.py" }) {
        terminal.type("python " + script + "; echo not reached\n");
        terminal.waitFor("begun\r\n");
        terminal.type(theControlC);
        terminal.waitFor("\r\nKeyboardInterrupt\r\n\r\n");
        EXPECT_EQ(terminal.waitFor("orvlang -> ").find("not reached"), std::string::npos);
    }
    EXPECT_EQ(answer(terminal, "python -c 'print(input(\"? \"))'", "? "), "");
    EXPECT_EQ(answer(terminal, "an answer"), "an answer\r\n");
    terminal.type("quit\n");
    terminal.waitForEnd(0);
}

}   // namespace
