// SPDX-License-Identifier: Apache-2.0
// The keys of the prompt, on a terminal that can do more than a typewriter. What the screen shows is waited for, the cursor
// as `|`.
#include "Terminal.h"

#include <csignal>
#include <filesystem>
#include <functional>
#include <set>

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace {

class EditingTest : public testing::Test {
protected:
    Program program(const std::vector<std::string> &environment = {}) const {
        Program result = { { ORVLANG_PROGRAM }, folder.path(), "", environment };
        result.environment.push_back("TERM=xterm");   // unless it was given: the first one counts
        return result;
    }
    std::string recallPath() const { return ".local/state/orvlang/history"; }
    void expectEnd(Terminal &terminal, int expected) const {
        int status = -1;
        const std::string rest = terminal.waitForEnd(status);
        EXPECT_EQ(status, expected) << rest;
    }
    /// Enters a line at the prompt and waits for the next one.
    void run(Terminal &terminal, const std::string &line, const std::string &written) const {
        terminal.type(line + "\n");
        terminal.waitForRows("orvlang -> " + line + "\n" + written + "orvlang -> |");
    }
    /// Runs a command on the port that the terminal's program has opened by itself, and gives what comes of it.
    std::string runOnPort(Terminal &terminal, const std::string &command) {
        if (port.empty()) {
            terminal.waitForRows("orvlang -> |");
            terminal.type("openport -a\n");
            terminal.waitFor("Opened ");
            port = terminal.waitFor("\r\n");
            terminal.waitForRows("Opened " + port + "\norvlang -> |");
        }
        return Program{ { ORVLANG_PROGRAM, "--connect", port, "-c", command }, folder.path(), "", {} }
            .run()
            .out;
    }

    TemporaryFolder folder;
    std::string port;
};

TEST_F(EditingTest, KeysEditTheLine) {
    static const struct {
        const char *keys, *shown;   // behind the prompt
    } theCases[] = {
        { "abc\x1b[D\x1b[DX", "aX|bc" },
        { "abc\x02\x02\x06X", "abX|c" },
        { "abc\x1b[HX\x1b[FY", "XabcY|" },
        { "abc\x01X\x05Y", "XabcY|" },
        { "abc\x1bOHX\x1bOFY", "XabcY|" },
        { "abc\x1b[1~X\x1b[4~Y", "XabcY|" },
        { "one two three\x1b[1;5D\x1b[1;5DX", "one X|two three" },
        { "one two three\x1b"
          "b\x1b"
          "b\x1b"
          "fX",
          "one twoX| three" },
        { "one two\x01\x1b[1;5CX", "oneX| two" },
        { "abc\x7f\x08", "a|" },
        { "abc\x01\x1b[3~\x04", "|c" },
        { "one two three\x17X", "one two X|" },
        { "one two three\x1b\x7fX", "one two X|" },
        { "one two\x01\x1b"
          "dX",
          "X| two" },
        { "one two\x02\x02\x0bX", "one tX|" },
        { "one two\x02\x02\x15X", "X|wo" },
        { "one two\x17\x7f\x01\x04\x19", "two|ne" },   // what is deleted is not put in again
        { "abc\x02\x14", "acb|" },
        { "abc\x14", "acb|" },
        { "a\x16\x01"
          "b",
          "a^Ab|" },
        { "abc\x1b[99~\x1bz\x1b\x1b[DX", "abX|c" },   // unknown keys do nothing; an escape alone is none
    };
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.shown);
        terminal.type(c.keys);
        terminal.waitForRows("orvlang -> " + std::string(c.shown));
        terminal.type("\x05\x15");
        terminal.waitForRows("orvlang -> |");
    }
    terminal.type("gone\x0c");
    terminal.waitForRows("orvlang -> gone|");
    terminal.type("\x03");
    terminal.waitForRows("orvlang -> gone^C\norvlang -> |");
    terminal.type("\x04");
    expectEnd(terminal, 0);
}

TEST_F(EditingTest, AKeyMayComeInPieces) {
    Terminal terminal(program());
    runOnPort(terminal, "echo");
    terminal.type("ab\x1b");
    terminal.waitForRows("orvlang -> ab|");
    EXPECT_EQ(runOnPort(terminal, "echo served meanwhile"), "served meanwhile\n");
    terminal.type("[");
    EXPECT_EQ(runOnPort(terminal, "echo again"), "again\n");
    terminal.type("DX\xC3");
    terminal.waitForRows("orvlang -> aX|b");
    terminal.type("\xA4");
    terminal.waitForRows("orvlang -> aX\xC3\xA4|b");
    terminal.type("\x12q");
    terminal.waitForRows("(no match)`q': aX\xC3\xA4|b");
    EXPECT_EQ(runOnPort(terminal, "echo while searching"), "while searching\n");
    EXPECT_EQ(runOnPort(terminal, "message m"), "");
    terminal.waitForRows("m\n(no match)`q': aX\xC3\xA4|b");
}

TEST_F(EditingTest, CharactersOfAnyWidth) {
    Terminal terminal(program());
    terminal.resize(30, 10);
    terminal.waitForRows("orvlang -> |");
    // An accent that combines, two wide characters, a byte that is no character.
    terminal.type("e");
    terminal.type("\xCC\x81 \xE4\xB8\xAD\xE6\x96\x87");
    terminal.waitForRows("orvlang -> e\xCC\x81 \xE4\xB8\xAD\xE6\x96\x87|");
    terminal.type("\x02\x02\x02X");
    terminal.waitForRows("orvlang -> e\xCC\x81X| \xE4\xB8\xAD\xE6\x96\x87");
    terminal.type("\x7f\x7f");
    terminal.waitForRows("orvlang -> | \xE4\xB8\xAD\xE6\x96\x87");
    terminal.type("\x04"
                  "echo \x05\xC3\n");
    terminal.waitForRows("\xE4\xB8\xAD\xE6\x96\x87\norvlang -> |");
    // A wide character does not fit into the last column.
    terminal.type("123456789012345678\xE4\xB8\xAD");
    terminal.waitForRows("orvlang -> 123456789012345678\n\xE4\xB8\xAD|");
    terminal.type("\x7fxy");
    terminal.waitForRows("orvlang -> 123456789012345678x\ny|");
}

TEST_F(EditingTest, ArrowsBringLinesBack) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    run(terminal, "echo one", "one\n");
    run(terminal, "set x = 1", "");
    run(terminal, "echo two", "two\n");
    run(terminal, "echo two", "two\n");
    static const struct {
        const char *keys, *shown;
    } theCases[] = {
        { "half\x1b[A", "echo two|" },
        { "\x1b[A", "set x = 1|" },
        { "\x10", "echo one|" },
        { "\x1b[A", "echo one|" },
        { "\x0e\x1b[B", "echo two|" },
        { "\x1b[B\x1b[B", "half|" },
        { "\x1b<", "echo one|" },
        { "\x1b>", "half|" },
        { "\x15"
          "ec\x1b[5~",
          "echo two|" },
        { "\x1b[5~\x1b[5~", "echo one|" },
        { "\x1b[6~\x1b[6~", "ec|" },
        { "\x15zz \x1b.", "zz two|" },
        { "\x15\x1b[Achanged\x1b[A\x1b[B\x1b[B", "echo twochanged|" },
    };
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.shown);
        terminal.type(c.keys);
        terminal.waitForRows("orvlang -> " + std::string(c.shown));
    }
    terminal.type("\x15\x1b[A\x1b[A\x1b[D2\n");
    terminal.waitForRows("orvlang -> set x = 21\norvlang -> |");
    terminal.type("echo $x\n");
    terminal.waitForRows("21\norvlang -> |");
}

TEST_F(EditingTest, SearchFindsPastLines) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const std::string word : { "alpha", "beta", "alphabet", "last" })
        run(terminal, "echo " + word, word + "\n");
    static const struct {
        const char *keys, *shown;
    } theCases[] = {
        { "half\x12", "(search)`': half|" },
        { "al", "(search)`al': echo |alphabet" },
        { "\x12", "(search)`al': echo |alpha" },
        { "\x12", "(search)`al': echo |alpha" },
        { "\x13", "(search)`al': echo |alphabet" },
        { "x", "(no match)`alx': half|" },
        { "\x7f", "(search)`al': echo |alphabet" },
        { "\x07", "orvlang -> half|" },
        { "\x12"
          "bet\x12",
          "(search)`bet': echo |beta" },
        { "\x1b[D", "orvlang -> echo bet|a" },
    };
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.shown);
        terminal.type(c.keys);
        terminal.waitForRows(c.shown);
    }
    terminal.type("\x12"
                  "alpha\x12\n");
    terminal.waitForRows("orvlang -> echo alpha\nalpha\norvlang -> |");
    terminal.type("\x12"
                  "beta");
    terminal.waitForRows("(search)`beta': echo |beta");
    terminal.type("\x03");
    terminal.waitForRows("orvlang -> |");
}

TEST_F(EditingTest, TabCompletes) {
    folder.write(".orvane/scripts/findme.cmd", "");
    for (const char *name :
         { "my dir/a file.txt", "it's", "plain.txt", "plain2.txt", ".hidden", "end\\", "umlä", "umlö", "sub one/x", "sub\ftwo" })
        folder.write(name, "");
    static const struct {
        const char *typed, *shown;
    } theCases[] = {
        { "ech\t", "echo |" },
        { "  ech\t", "  echo |" },
        { "echo a; ech\t", "echo a; echo |" },
        { "help ech\t", "help echo |" },
        { "nosuch\t", "nosuch|" },
        { "echo pl\t", "echo plain|" },
        { "echo plain.\t", "echo plain.txt |" },
        { "echo ./plain.\t", "echo ./plain.txt |" },
        { "./plain.\t", "./plain.txt |" },
        { "echo x>plain.\t", "echo x>plain.txt |" },
        { "echo my\t", "echo 'my dir/|" },
        { "echo my\\ d\t", "echo 'my dir/|" },
        { "echo 'my dir/a\t", "echo 'my dir/a file.txt' |" },
        { "echo \"my dir/a\t", "echo \"my dir/a file.txt\" |" },
        { "echo $HOME/it\t", "echo $HOME/'it\\'s' |" },
        { "echo end\t", "echo 'end'\\\\ |" },
        { "echo .hid\t", "echo .hidden |" },
        { "echo $HOM\t", "echo $HOME/|" },
        { "echo ${HOM\t", "echo ${HOME}/|" },
        { "set kind = 1; echo \"$kin\t", "set kind = 1; echo \"$kin|" },   // the line is not run
        { "echo '$HOM\t", "echo '$HOM|" },
        { "echo -\t", "echo -n |" },
        { "echo a -\t", "echo a -|" },
        { "echo # pl\t", "echo # pl|" },
        { "echo `1 + pythonexprs(wordu\t", "echo `1 + pythonexprs(wordunique(|" },
        { "exhelp wordu\t", "exhelp wordunique |" },
        { "plain2\t", "plain2.txt |" },
        { "findm\t", "findme.cmd |" },
        { "\"findm\t", "\"findme.cmd\" |" },
        { "echo \"my d\t", "echo \"my dir/|" },
        { "time plain2\t", "time plain2.txt |" },
        { "time help ech\t", "time help echo |" },
        { "ucd m\t", "ucd 'my dir'/|" },
        { "echo su\t", "echo sub|" },   // no quote yet, as none of that needs it
        { "ucd \"my\t", "ucd \"my dir\"/|" },
        { "set onlyo\t", "set onlyone |" },
        { "alias -u al\t", "alias -u alone |" },
        { "echo um\t", "echo uml|" },   // both go on with the same first byte of another character
    };
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    run(terminal, "set onlyone = 1; alias alone echo", "");
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.typed);
        terminal.type(c.typed);
        terminal.type("\x01@\x05");   // so that a line without a completion shows when it is done
        std::string shown = "orvlang -> @" + std::string(c.shown);
        terminal.waitForRows(shown);
        terminal.type("\x15");
        terminal.waitForRows("orvlang -> |");
    }
    terminal.type("echo plain\t");
    terminal.waitForRows("plain.txt   plain2.txt\norvlang -> echo plain|");
    terminal.type("\x15"
                  "echo \"sub\t");
    terminal.waitForRows("sub\uFFFDtwo   sub one/\norvlang -> echo \"sub|");
    terminal.type("\x15openport -\t");
    terminal.waitForRows("-a  -c  -e  -i  -p  -q  -r  -s  -w\norvlang -> openport -|");
    terminal.type("\x15"
                  "alias ll ls\n");
    terminal.waitFor("alias ll ls\r\n");
    terminal.type("l\t");
    terminal.waitForRows("listchooser  ll\norvlang -> l|");
}

TEST_F(EditingTest, CompletedNamesAreReadBackAsOneWord) {
    for (const char *name : { "a b$c", "quote'\"`", "v\\slash", "semi;colon", "bang!x", "hash#", "eq=ual" })
        folder.write(name, "");
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const auto &entry : std::filesystem::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename();
        if (name[0] == '.')
            continue;
        SCOPED_TRACE(name);
        terminal.type("echo " + name.substr(0, 1) + "\t'<'\n");
        terminal.waitForRows(name + " <\norvlang -> |");
    }
}

TEST_F(EditingTest, PastedLinesRunWhenTheyAreEntered) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    const std::string block = "echo one\rfor i = 1 to 2\r\techo $i\rend\rread a\rthe answer\recho $a\r";
    terminal.type("\x1b[200~" + block + "\x1b[201~");
    terminal.waitForRows(
        "orvlang -> echo one\nfor i = 1 to 2\n        echo $i\nend\nread a\nthe answer\necho $a|");
    terminal.type("\n");
    terminal.waitForRows("orvlang -> echo one\none\norvlang -> for i = 1 to 2\n>       echo $i\n> end\n1\n2\n"
                         "orvlang -> read a\nthe answer\norvlang -> echo $a\nthe answer\norvlang -> |");
    // One line is only put there; what is not confirmed goes.
    terminal.type("\x1b[200~echo never\n\x1b[201~");
    terminal.waitForRows("orvlang -> echo never|");
    terminal.type("\x03");
    terminal.waitForRows("orvlang -> echo never^C\norvlang -> |");
    // An interrupt drops the lines that have not run.
    terminal.type("\x1b[200~while 1 == 1\necho turning\nend\necho dropped\n\x1b[201~\n");
    terminal.waitFor("turning\r\nturning\r\n");
    terminal.type("\x03");
    terminal.waitFor("orvlang ->");
    terminal.type("echo done\n");
    EXPECT_EQ(terminal.waitFor("done\r\n\x1b").find("dropped"), std::string::npos);
}

TEST_F(EditingTest, OutputLeavesAHalfTypedLineWhole) {
    Terminal terminal(program());
    EXPECT_EQ(runOnPort(terminal, "echo reply"), "reply\n");
    terminal.type("half\x02");
    terminal.waitForRows("orvlang -> hal|f");
    static const struct {
        const char *command, *written;
    } theCases[] = {
        { "message from the language", "from the language" },
        { "unix echo from a child", "from a child" },
        { "python -c 'print(\"from Python\")'", "from Python" },
        { "python -c 'import sys; sys.stdout.write(\"no line end\")'", "no line end" },
        { "python -c 'import sys; print(\"an error\", file=sys.stderr)'", "an error" },
    };
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.command);
        EXPECT_EQ(runOnPort(terminal, c.command), "");
        terminal.waitForRows(std::string(c.written) + "\norvlang -> hal|f");
    }
    // A line of several rows.
    terminal.resize(20, 10);
    terminal.type("\x05 123456789 123456789 123456789");
    terminal.waitForRows("56789 123456789 1234\n56789|");
    runOnPort(terminal, "message m");
    terminal.waitForRows("m\norvlang -> half 1234\n56789 123456789 1234\n56789|");
    // A question in between has the terminal for itself.
    terminal.type("\x15"
                  "atjob 1 'message -b yes,no go?'; echo\n");
    terminal.waitForRows("\norvlang -> |");
    terminal.type("zz");
    terminal.waitForRows("enter your choice: |");
    terminal.type("1\n");
    terminal.waitForRows("orvlang -> zz|");
}

TEST_F(EditingTest, InterruptsAndEnds) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    EXPECT_FALSE(terminal.echoes());
    terminal.type("typed");
    terminal.waitForRows("orvlang -> typed|");
    terminal.type("\x03");
    terminal.waitForRows("orvlang -> typed^C\norvlang -> |");
    terminal.type("echo a \\\n");
    terminal.waitForRows("? |");
    terminal.type("\x03");
    terminal.waitForRows("? ^C\norvlang -> |");
    terminal.type("while 1 == 1\necho turning\nend\n");
    terminal.waitForRows("turning\nturning\n|");
    EXPECT_TRUE(terminal.echoes());
    terminal.type("\x03");
    terminal.waitForRows("orvlang -> |");
    terminal.type("echo a; unix cat\n");
    terminal.waitForRows("orvlang -> echo a; unix cat\na\n|");
    terminal.type("to cat\n");
    terminal.waitForRows("to cat\nto cat\n|");
    terminal.type("\x04");
    terminal.waitForRows("orvlang -> |");
    terminal.type("ab\x01\x04\x04\x04");
    terminal.waitFor("\x1b[?2004l");
    EXPECT_TRUE(terminal.echoes());
    expectEnd(terminal, 0);
}

/// Which the terminal drops with all input that nobody has read.
TEST_F(EditingTest, AnInterruptEndsAKeyInPieces) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const std::string piece : { "\x1b[200~cut off", "\x16", "\x1b[" }) {
        SCOPED_TRACE(piece);
        terminal.type("half" + piece);
        terminal.waitForRows("orvlang -> half|");
        terminal.type("\x03");
        terminal.waitForRows("orvlang -> half^C\norvlang -> |");
        terminal.type("echo a\n");
        terminal.waitForRows("orvlang -> echo a\na\norvlang -> |");
    }
    terminal.type("echo a\x1b");
    terminal.waitForRows("orvlang -> echo a|");
    terminal.type("\n");
    terminal.waitForRows("orvlang -> echo a\na\norvlang -> |");
}

TEST_F(EditingTest, SignalsEndTheProgramAndGiveTheTerminalBack) {
    for (const int number : { SIGTERM, SIGHUP, SIGQUIT, SIGABRT }) {
        Terminal terminal(program());
        terminal.waitForRows("orvlang -> |");
        terminal.type("echo kept\n");
        terminal.waitForRows("kept\norvlang -> |");
        terminal.type("half");
        terminal.waitForRows("orvlang -> half|");
        EXPECT_FALSE(terminal.echoes());
        terminal.sendSignal(number);
        terminal.waitFor("\x1b[?2004l");
        EXPECT_TRUE(terminal.echoes());
        expectEnd(terminal, 128 + number);
    }
    EXPECT_EQ(folder.read(recallPath()), "echo kept\necho kept\necho kept\necho kept\n");
}

TEST_F(EditingTest, AClientOfAPortEditsItsLinesToo) {
    Terminal server(program());
    runOnPort(server, "echo");
    Program words = program();
    words.words.insert(words.words.end(), { "--connect", port });
    Terminal terminal(words);
    terminal.waitForRows(port + " -> |");
    terminal.type("echo helo\x1b[Dl\n");
    terminal.waitForRows(port + " -> echo hello\nhello\n" + port + " -> |");
    terminal.type("dropped");
    terminal.waitForRows(port + " -> dropped|");
    terminal.type("\x03");
    terminal.waitForRows(port + " -> dropped^C\n" + port + " -> |");
    terminal.type("\x1b[A again\n");
    terminal.waitForRows(port + " -> echo hello again\nhello again\n" + port + " -> |");
    terminal.type("half");
    terminal.waitForRows(port + " -> half|");
    terminal.sendSignal(SIGTERM);
    terminal.waitFor("\x1b[?2004l");
    EXPECT_TRUE(terminal.echoes());
    expectEnd(terminal, 128 + SIGTERM);
}

TEST_F(EditingTest, StopsAndGoesOn) {
    Program shell = { { "/bin/sh", "-i" }, folder.path(), "", { "TERM=xterm", "PS1=sh> " } };
    Terminal terminal(shell);
    terminal.waitForRows("sh> |");
    terminal.type(ORVLANG_PROGRAM "\n");
    terminal.waitFor("orvlang ->");
    terminal.type("echo ha");
    terminal.waitForRows("orvlang -> echo ha|");
    terminal.type("\x1a");
    terminal.waitForRows("sh> |");
    EXPECT_TRUE(terminal.echoes());
    terminal.type("fg\n");
    terminal.waitForRows("orvlang -> echo ha|");
    EXPECT_FALSE(terminal.echoes());
    terminal.type("lf\n");
    terminal.waitForRows("half\norvlang -> |");

    // In the background, where it may read what is meant for the shell and is stopped for that.
    terminal.type("half");
    terminal.waitForRows("orvlang -> half|");
    terminal.type("\x1a");
    terminal.waitForRows("sh> |");
    terminal.type("bg\n");
    terminal.waitFor("bg\r\n");
    terminal.waitForRows("sh> |");
    terminal.type("echo shell\n");
    terminal.waitFor("echo shell\r\n");
    terminal.waitForRows("sh> |");
    terminal.type("fg\n");
    terminal.waitForRows("orvlang -> half|");

    // A question that has the terminal in its usual mode goes on with that.
    terminal.type("\x15"
                  "atjob 1 'message -b yes,no go?'\n");
    terminal.waitForRows("orvlang -> |");
    terminal.type("half");
    terminal.waitForRows("enter your choice: |");
    terminal.type("\x1a");
    terminal.waitForRows("sh> |");
    terminal.type("fg\n");
    terminal.waitFor(ORVLANG_PROGRAM);
    terminal.type("1\n");
    terminal.waitForRows("1\norvlang -> half|");
    terminal.type("\x03");
    terminal.waitForRows("orvlang -> half^C\norvlang -> |");
    terminal.type("\x04");
    terminal.waitForRows("sh> |");
    EXPECT_TRUE(terminal.echoes());

    terminal.type(ORVLANG_PROGRAM " &\n");
    terminal.waitFor("&\r\n");
    terminal.waitForRows("sh> |");
    terminal.type("fg\n");
    terminal.waitForRows("orvlang -> |");
}

TEST_F(EditingTest, FollowsTheSizeOfTheTerminal) {
    Terminal terminal(program());
    terminal.resize(40, 10);
    terminal.waitForRows("orvlang -> |");
    run(terminal, "echo one", "one\n");
    terminal.type("123456789 123456789 123456789 12345");
    terminal.waitForRows("orvlang -> 123456789 123456789 123456789\n 12345|");
    terminal.resize(60, 10);   // nothing of the two rows is left above
    terminal.waitForRows("one\norvlang -> 123456789 123456789 123456789 12345|");
    terminal.type("\x01X");
    terminal.waitForRows("one\norvlang -> X|123456789 123456789 123456789 12345");
}

TEST_F(EditingTest, WideCharactersStayWhole) {
    Terminal terminal(program());
    terminal.resize(20, 10);
    terminal.waitForRows("orvlang -> |");
    terminal.type("echo 123漢字éé漢漢漢漢漢漢漢漢漢");
    terminal.waitForRows("orvlang -> echo 123\n漢字éé漢漢漢漢漢漢漢\n漢漢|");
    for (int i = 0; i < 6; ++i)
        terminal.type("\x1b[D");
    terminal.waitForRows("漢字éé漢漢漢|漢漢漢漢");
    terminal.type("X");
    terminal.waitForRows("orvlang -> echo 123\n漢字éé漢漢漢X|漢漢漢");
    terminal.type("\x7f");
    terminal.waitForRows("orvlang -> echo 123\n漢字éé漢漢漢|漢漢漢漢");
}

TEST_F(EditingTest, ALineMayBeLongerThanTheScreen) {
    Terminal terminal(program());
    terminal.resize(20, 5);
    terminal.waitForRows("orvlang -> |");
    std::string text = "echo";
    for (int i = 0; i < 15; ++i)
        text += " 123456789";
    terminal.type(text);
    terminal.waitForRows("56789|");
    for (int i = 0; i < 8; ++i) {
        const std::string piece(50, 'Z');
        terminal.type("\x01\x06\x05" + piece);
        text += piece;
    }
    terminal.type("\n");
    terminal.waitForRows("ZZZZZZZZZ\norvlang -> |");
    terminal.resize(600, 10);
    terminal.type("\x1b[A");
    terminal.waitForRows("orvlang -> " + text + "|");
}

TEST_F(EditingTest, TheRecallOutlivesTheProgram) {
    {
        Terminal first(program()), second(program());
        first.waitForRows("orvlang -> |");
        second.waitForRows("orvlang -> |");
        for (const auto &[terminal, line] :
             std::vector<std::pair<Terminal *, std::string>>{ { &first, "echo 1" },
                                                              { &second, "echo 2" },
                                                              { &first, " echo secret" },
                                                              { &second, "echo 2" },
                                                              { &first, "read word" },
                                                              { &first, "password" },
                                                              { &first, "echo 3" } }) {
            terminal->type(line + "\n");
            terminal->waitFor(line + "\r\n");
            terminal->waitForRows(line == "read word" ? "|" : "orvlang -> |");
        }
        first.type("history\n");
        first.waitForRows("1  echo 1\n2  echo secret\n3  read word\n4  echo 3\n5  history\norvlang -> |");
        first.type("for i = 1 to 2\necho $i\nend\nquit\n");
        second.type("\x04");
        expectEnd(first, 0);
        expectEnd(second, 0);
    }
    EXPECT_EQ(folder.read(recallPath()),
              "echo 1\necho 2\nread word\necho 3\nhistory\nfor i = 1 to 2\recho $i\rend\nquit\n");
    namespace fs = std::filesystem;
    EXPECT_EQ(fs::status(folder.path() + "/" + recallPath()).permissions(), fs::perms(0600));

    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    terminal.type("\x1b[A\x1b[A");
    terminal.waitForRows("orvlang -> for i = 1 to 2\necho $i\nend|");
    terminal.type("\n");
    terminal.waitForRows("orvlang -> for i = 1 to 2\n> echo $i\n> end\n1\n2\norvlang -> |");
    terminal.type("\x1b[A\x1b[A\x1b[A\x1b[A\n");
    terminal.waitForRows("orvlang -> history\n1  for i = 1 to 2\n2  history\norvlang -> |");
}

TEST_F(EditingTest, TheRecallStaysWithinBounds) {
    std::string lines;
    for (int i = 0; i < 20002; ++i)
        lines += "echo " + std::to_string(i) + "\n";
    folder.write("state/orvlang/history", lines);
    Terminal terminal(program({ "XDG_STATE_HOME=" + folder.path() + "/state" }));
    terminal.waitForRows("orvlang -> |");
    terminal.type("\x1b<");
    terminal.waitForRows("orvlang -> echo 10002|");
    terminal.type("\x15"
                  "echo new\n");
    terminal.waitForRows("new\norvlang -> |");
    const std::string kept = folder.read("state/orvlang/history");
    EXPECT_EQ(kept.substr(0, 11), "echo 10002\n");
    EXPECT_TRUE(kept.ends_with("echo 20001\necho new\n"));
}

TEST_F(EditingTest, OddRecallFilesDoNotMatter) {
    namespace fs = std::filesystem;
    const std::string path = folder.path() + "/" + recallPath();
    fs::create_directories(fs::path(path).parent_path());
    const std::function<void()> theOdds[] = {
        [&] { fs::create_directory(path); },
        [&] { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); },
        [&] { folder.write(recallPath(), std::string(8 << 20, 'x') + "\necho last\n"); },
        [&] { folder.write(recallPath(), "echo a" + std::string(1, '\0') + "b\n\xff\necho last\n"); },
    };
    for (const auto &makeOdd : theOdds) {
        fs::remove_all(path);
        makeOdd();
        const bool isFile = fs::is_regular_file(path);
        Terminal terminal(program());
        terminal.waitForRows("orvlang -> |");
        terminal.type("\x1b[A");
        terminal.waitForRows(isFile ? "orvlang -> echo last|" : "orvlang -> |");
        terminal.type("\x15"
                      "echo new\n");
        terminal.waitForRows("new\norvlang -> |");
    }
}

TEST_F(EditingTest, PlainWhereEditingIsNotWanted) {
    for (const char *setting : { "TERM=dumb", "TERM=", "ORVANE_PLAIN_INPUT=1" }) {
        SCOPED_TRACE(setting);
        Terminal terminal(program({ setting }));
        EXPECT_EQ(terminal.waitFor("orvlang -> "), "");
        EXPECT_TRUE(terminal.echoes());
        terminal.type("echo a\n");
        EXPECT_EQ(terminal.waitFor("orvlang -> "), "echo a\r\na\r\n");
        terminal.type("\x04");
        expectEnd(terminal, 0);
    }
    for (const auto &[setting, colour] : { std::pair("NO_COLOR=1", false), std::pair("NO_COLOR=", true) }) {
        Terminal terminal(program({ setting }));
        EXPECT_EQ(terminal.waitFor("orvlang ->").ends_with("\x1b[1;32m"), colour) << setting;
    }
}

TEST_F(EditingTest, AnUnknownTerminalIsTakenForACommonOne) {
    Terminal terminal(program({ "TERM=nobody-knows" }));
    terminal.waitForRows("orvlang -> |");
    terminal.type("abc\x1b[D\x1b[DX");
    terminal.waitForRows("orvlang -> aX|bc");
}

}   // namespace
