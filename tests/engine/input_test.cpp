// SPDX-License-Identifier: Apache-2.0
// The road from the host's text to single statements: continued lines, leftovers behind a `;`, blocks, `read`, text of
// several lines, callbacks.
#include "EngineFixture.h"

#include <vector>

namespace {

/// run TEXT, and raw TEXT, which is no block: what is behind a `;` of the outer line runs inside it.
void run(CMD_Args &args) {
    const bool asBlock = args.argv(0)[1] == 'u';
    CMD_Manager::getContext()->execute(args.argv(1), 0, nullptr, nullptr, 1, asBlock);
    args.out() << (asBlock ? "run\n" : "raw\n");
}

class Input : public EngineFixture {
protected:
    Input() {
        install("run", run);
        install("raw", run);
    }
    std::string send(const std::string &text) {
        manager.sendMultiLineInput(text.c_str(), true);
        return transcript.take();
    }
};

TEST_F(Input, ContinuedLines) {
    static const struct {
        std::vector<std::string> lines;
        const char *written;
    } theCases[] = {
        { { "echo a\\", "b" }, "a b\n" },
        { { "echo 'a \\", "b'" }, "a b\n" },
        { { "echo 'a\\\r\n", "b'\r\n" }, "a b\n" },
        { { "\\", "\\", "echo a" }, "a\n" },
        { { "echo a\\\\", "b" }, "a b\n" },   // the other one makes the blank part of the word
        { { "echo a\r\r" }, "a\n" },
        { { "# c\\", "echo b" }, "" },
        { { "echo 1; echo 'a\\", "b'; echo 2" }, "1\na b\n2\n" },
        { { "run 'echo a\\", "b'" }, "a b\nrun\n" },
    };
    for (const auto &c : theCases) {
        std::string joined, crlf, trace;
        for (const std::string &line : c.lines) {
            const std::string bare = line.substr(0, line.find_last_not_of("\r\n") + 1);
            manager.sendInput(line.c_str(), false);
            joined += bare + "\n";
            crlf += bare + "\r\n";
            trace += line + "|";
        }
        SCOPED_TRACE(trace);
        EXPECT_EQ(transcript.take(), c.written);
        EXPECT_STRNE(manager.getPrompt(-1), "? ");
        EXPECT_EQ(script(joined), c.written);
        EXPECT_EQ(script(crlf), c.written);
        EXPECT_EQ(send(joined), c.written);
        EXPECT_EQ(send(crlf.substr(0, crlf.size() - 2)), c.written);
    }
}

TEST_F(Input, AContinuationAtTheEndOfASource) {
    type("echo a\\");
    EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Continuation);
    // Text of several lines runs behind it, not in it.
    EXPECT_EQ(send("echo c\n"), "a\nc\n");
    // At the end of a source a line goes on in the source below; with the call it is dropped.
    folder.write("open.cmd", "echo a\\");
    EXPECT_EQ(script("source open.cmd\necho b\n"), "a echo b\n");
    EXPECT_EQ(type("source open.cmd\necho b"), "b\n");
    EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Nothing);
}

TEST_F(Input, LeftoversAndBlocks) {
    type("alias pair 'echo p1; echo p2'\nalias nested \"run 'pair; echo n'\"");
    static const struct {
        const char *line, *written;
    } theCases[] = {
        { "run pair; echo c", "p1\np2\nrun\nc\n" },
        { "raw 'echo a; echo b'; echo c", "a\nb\nc\nraw\n" },
        { "run \"raw 'echo a; echo b'; echo c\"; echo d", "a\nb\nc\nraw\nrun\nd\n" },
        { "nested; pair", "p1\np2\nn\nrun\np1\np2\n" },
        { "run 'source t.cmd; echo d'; echo e", "t1\nt2\nt3\nd\nrun\ne\n" },
        { "echo `run(\"echo a; source t.cmd; echo b\")`; echo c", "a t1 t2 t3 b\nc\n" },
        { "run 'source e.cmd; echo d'; echo e", "e1\nd\nrun\ne\n" },
        { "run 'nosuch; echo b'; echo c", "{Unknown command: nosuch\n\r}b\nrun\nc\n" },
    };
    folder.write("t.cmd", "echo t1; echo t2\necho t3");
    folder.write("e.cmd", "echo e1; exit; echo never\necho never\n");
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(type(c.line), c.written);
        if (std::string_view(c.line).find("nosuch") == std::string_view::npos) {
            EXPECT_EQ(script(c.line), c.written);
            EXPECT_EQ(send(c.line), c.written);
        }
        EXPECT_FALSE(manager.getSource()->hasUnfinishedCommands());
        EXPECT_EQ(manager.getSourceLevel(), 0);
    }
}

TEST_F(Input, ReadStopsAndGoesOn) {
    static const struct {
        const char *text;
        std::vector<std::string> answers;
        const char *written;
    } theCases[] = {
        { "read a b; echo \"[$a] [$b]\"", { "one two  'three four'" }, "[one] [two three four]\n" },
        { "read a; echo \"$a\"", { "  $HOME `1+1` ; # x  " }, "$HOME `1+1` ; # x\n" },
        { "read a; read b; echo $a $b", { "1", "2" }, "1 2\n" },
        { "run 'read a; echo $a'; echo c", { "7" }, "run\n7\nc\n" },
        { "run \"run 'read a; echo a'; echo b\"; echo c", { "7" }, "run\nrun\na\nb\nc\n" },
        { "echo `run(\"read a; echo in\")`; echo c", { "7" }, "\nin\nc\n" },
        { "source r.cmd; echo $ra $rb", { "x", "y" }, "in x\ngy\n" },
        { "read ''; echo a", {}, "a\n" },
    };
    folder.write("r.cmd", "read ra\necho in $ra; read -g rb; set -g rb = g$rb\n");
    for (const auto &c : theCases) {
        for (const auto &[inScript, asBlock] : { std::pair{ false, false }, { true, false }, { true, true } }) {
            SCOPED_TRACE((inScript ? "in a script: " : "") + std::string(c.text) + (asBlock ? ", block" : ""));
            std::string written = inScript ? script(c.text) : type(c.text);
            for (const std::string &answer : c.answers) {
                EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Read);
                manager.sendInput((answer + "\r\n").c_str(), asBlock);
                written += transcript.take();
            }
            EXPECT_EQ(written, c.written);
            EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Nothing);
            EXPECT_EQ(manager.getSourceLevel(), 0);
        }
    }
}

struct Calls {
    std::vector<std::string> lines;
    static void echoed(const char *line, void *data) { static_cast<Calls *>(data)->lines.push_back(line); }
    static void finished(void *data) { static_cast<Calls *>(data)->lines.push_back("."); }
    std::string take() {
        std::string text;
        for (const std::string &line : std::exchange(lines, {}))
            text += line == "." ? line : "<" + line + ">";
        return text;
    }
};

TEST_F(Input, Callbacks) {
    Calls calls;
    EXPECT_EQ(manager.setPostCmdCallback(Calls::finished, &calls), nullptr);
    manager.setCommandEchoCallback(Calls::echoed, &calls);
    manager.setCommandEcho(true);
    static const struct {
        const char *lines, *calls;
    } theCases[] = {
        { "echo a; echo b", "<echo a; echo b>.." },
        { "\n# c\n", "<>.<# c>." },
        { "echo a\\\nb", "<echo a b>." },
        { "read a\nanswer", "<read a>.<answer>" },
        { "while 1\necho $i\nbreak\nend", "<while 1>.<echo $i><break><end>.." },
        { "source t.cmd", "<source t.cmd>..." },
        { "run 'echo a'", "<run 'echo a'><echo a>.." },
    };
    folder.write("t.cmd", "echo 1\necho 2\n");
    for (const auto &c : theCases) {
        type(c.lines);
        EXPECT_EQ(calls.take(), c.calls) << c.lines;
    }
    manager.setCommandEcho(false);
    type("echo a");
    EXPECT_EQ(calls.take(), ".");
    EXPECT_EQ(manager.setPostCmdCallback(nullptr, nullptr), &Calls::finished);
    type("echo a");
    EXPECT_EQ(calls.take(), "");
}

TEST_F(Input, ExecuteBringsItsOwnStreamsAndModes) {
    Transcript other;
    type("alias echo 'time nothing'");
    manager.execute("echo a; nosuch", 0, &other.out(), &other.err(), 0, true);
    EXPECT_EQ(other.take(), "a\n{Unknown command: nosuch\n\r}");
    EXPECT_EQ(manager.getStatusCode(), 1);
    manager.execute("echo a", 0, nullptr, &other.err(), 2, true);   // the low bit counts
    EXPECT_EQ(transcript.take() + other.take(), "a\n");
    manager.execute("set x = 1\necho $x\nnosuch", 0, &other.out(), nullptr, 0, true);
    EXPECT_EQ(other.take(), "1\n");
    EXPECT_EQ(transcript.take(), "{Unknown command: nosuch\n\r}");
    EXPECT_EQ(value("x"), "(none)");   // text of several lines has locals of its own
    manager.execute("set x = 1", 0, nullptr, nullptr, 0, true);
    EXPECT_EQ(value("x"), "1");
    for (const char *text : { static_cast<const char *>(nullptr), "", "\n" })
        manager.execute(text, 1, &other.out(), nullptr, 1, true);
    manager.sendInput(nullptr, true);
    manager.sendMultiLineInput(nullptr, true);
    EXPECT_EQ(transcript.take() + other.take(), "");
    type("alias -u echo");
    EXPECT_EQ(type("echo b"), "b\n");   // the streams and modes are back
}

TEST_F(Input, ALoopThatExecuteOpensTakesTheNextLines) {
    EXPECT_EQ(type("run 'for i = 1 to 2'"), "run\n");
    EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Loop);
    EXPECT_EQ(type("echo $i\nend"), "1\n2\n");
    EXPECT_EQ(script("run 'for i = 1 to 2'\necho $i\nend\n"), "run\n1\n2\n");
    // Text of several lines takes none of a loop that runs.
    for (const std::string command : { "run", "raw" })
        EXPECT_EQ(type("for i = 1 to 2\n" + command + " 'set a = 1\\nset b = 2'\necho $i\nend"),
                  command + "\n1\n" + command + "\n2\n");
    // Text of several lines does not go into the loop that is typed.
    type("for i = 1 to 2\necho $i");
    EXPECT_EQ(send("echo text\n"), "text\n");
    EXPECT_EQ(type("end"), "1\n2\n");
}

}   // namespace
