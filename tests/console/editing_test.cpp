// SPDX-License-Identifier: Apache-2.0
// The keys of the prompt, on a terminal that can do more than a typewriter. Steps of keys and the rows that they lead to,
// the cursor as `|`. Keys are octal: a hexadecimal number would include a letter that follows.
#include "Terminal.h"

#include <csignal>
#include <filesystem>
#include <functional>

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace {

class EditingTest : public testing::Test {
protected:
    Program program(const std::vector<std::string> &environment = {}) const {
        Program result = { { ORVLANG_PROGRAM }, folder.path(), "", environment };
        result.environment.push_back("TERM=xterm");   // unless it was given: the first one counts
        return result;
    }
    /// Runs a command on the port that the terminal's program has opened by itself, and returns its reply.
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

    const std::string recall = ".local/state/orvlang/history";
    TemporaryFolder folder;
    std::string port;
};

TEST_F(EditingTest, KeysEditTheLine) {
    static const struct {
        const char *keys, *shown;   // after the prompt
    } theCases[] = {
        { "abc\033[D\033[DX", "aX|bc" },
        { "abc\002\002\006X", "abX|c" },
        { "abc\033[HX\033[FY", "XabcY|" },
        { "abc\001X\005Y", "XabcY|" },
        { "abc\033OHX\033OFY", "XabcY|" },
        { "abc\033[1~X\033[4~Y", "XabcY|" },
        { "one two three\033[1;5D\033[1;5DX", "one X|two three" },
        { "one two three\033b\033b\033fX", "one twoX| three" },
        { "one two\001\033[1;5CX", "oneX| two" },
        { "abc\177\010", "a|" },
        { "abc\001\033[3~\004", "|c" },
        { "one two three\027X", "one two X|" },
        { "one two three\033\177X", "one two X|" },
        { "one two\001\033dX", "X| two" },
        { "one two\002\002\013X", "one tX|" },
        { "one two\002\002\025X", "X|wo" },
        { "one two\027\177\001\004\031", "two|ne" },   // what is deleted is not put in again
        { "abc\002\024", "acb|" },
        { "abc\024", "acb|" },
        { "a\026\001b", "a^Ab|" },
        { "abc\033[99~\033z\033\033[DX", "abX|c" },   // unknown keys do nothing; an escape alone is none
    };
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const auto &c : theCases)
        terminal.follow({ { c.keys, "orvlang -> " + std::string(c.shown) }, { "\005\025", "orvlang -> |" } });
    terminal.follow({ { "gone\014", "orvlang -> gone|" }, { "\003", "orvlang -> gone^C\norvlang -> |" } });
    terminal.type("\004");
    terminal.waitForEnd(0);
}

TEST_F(EditingTest, AKeyMayComeInPieces) {
    Terminal terminal(program());
    runOnPort(terminal, "echo");
    terminal.follow({ { "ab\033", "orvlang -> ab|" } });
    EXPECT_EQ(runOnPort(terminal, "echo served meanwhile"), "served meanwhile\n");
    terminal.type("[");
    EXPECT_EQ(runOnPort(terminal, "echo again"), "again\n");
    terminal.follow({
        { "DX\303", "orvlang -> aX|b" },
        { "\244", "orvlang -> aXä|b" },
        { "\022q", "(no match)`q': aXä|b" },
    });
    EXPECT_EQ(runOnPort(terminal, "message m"), "");
    terminal.waitForRows("m\n(no match)`q': aXä|b");
}

TEST_F(EditingTest, CharactersOfAnyWidth) {
    Terminal terminal(program());
    terminal.resize(30, 10);
    // An accent that combines, two wide characters, a byte that is no character.
    terminal.follow({
        { "", "orvlang -> |" },
        { "e\314\201 中文", "orvlang -> e\314\201 中文|" },
        { "\002\002\002X", "orvlang -> e\314\201X| 中文" },
        { "\177\177", "orvlang -> | 中文" },
        { "\004echo \005\303\n", "中文\norvlang -> |" },
        // A wide character does not fit into the last column.
        { "123456789012345678中", "orvlang -> 123456789012345678\n中|" },
        { "\177xy", "orvlang -> 123456789012345678x\ny|" },
    });
}

TEST_F(EditingTest, ArrowsBringLinesBack) {
    Terminal terminal(program());
    terminal.follow({
        { "", "orvlang -> |" },
        { "echo one\n", "one\norvlang -> |" },
        { "set x = 1\n", "orvlang -> set x = 1\norvlang -> |" },
        { "echo two\n", "two\norvlang -> |" },
        { "echo two\n", "two\norvlang -> echo two\ntwo\norvlang -> |" },
        { "half\033[A", "orvlang -> echo two|" },
        { "\033[A", "orvlang -> set x = 1|" },
        { "\020", "orvlang -> echo one|" },
        { "\033[A", "orvlang -> echo one|" },
        { "\016\033[B", "orvlang -> echo two|" },
        { "\033[B\033[B", "orvlang -> half|" },
        { "\033<", "orvlang -> echo one|" },
        { "\033>", "orvlang -> half|" },
        { "\025ec\033[5~", "orvlang -> echo two|" },
        { "\033[5~\033[5~", "orvlang -> echo one|" },
        { "\033[6~\033[6~", "orvlang -> ec|" },
        { "\025zz \033.", "orvlang -> zz two|" },
        { "\025\033[Achanged\033[A\033[B\033[B", "orvlang -> echo twochanged|" },
        { "\025\033[A\033[A\033[D2\n", "orvlang -> set x = 21\norvlang -> |" },
        { "echo $x\n", "21\norvlang -> |" },
    });
}

TEST_F(EditingTest, SearchFindsPastLines) {
    Terminal terminal(program());
    terminal.follow({
        { "", "orvlang -> |" },
        { "echo alpha\n", "alpha\norvlang -> |" },
        { "echo beta\n", "beta\norvlang -> |" },
        { "echo alphabet\n", "alphabet\norvlang -> |" },
        { "echo last\n", "last\norvlang -> |" },
        { "half\022", "(search)`': half|" },
        { "al", "(search)`al': echo |alphabet" },
        { "\022", "(search)`al': echo |alpha" },
        { "\022", "(search)`al': echo |alpha" },
        { "\023", "(search)`al': echo |alphabet" },
        { "x", "(no match)`alx': half|" },
        { "\177", "(search)`al': echo |alphabet" },
        { "\007", "orvlang -> half|" },
        { "\022bet\022", "(search)`bet': echo |beta" },
        { "\033[D", "orvlang -> echo bet|a" },
        { "\022alpha\022\n", "orvlang -> echo alpha\nalpha\norvlang -> |" },
        { "\022beta", "(search)`beta': echo |beta" },
        { "\003", "orvlang -> |" },
    });
}

TEST_F(EditingTest, TabCompletes) {
    folder.write(".orvane/scripts/findme.cmd", "");
    for (const char *name : { "my dir/a file.txt", "it's", "plain.txt", "plain2.txt", ".hidden", "end\\",
                              "umlä", "umlö", "sub one/x", "sub\ftwo" })
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
        { "time plain2\t", "time plain2.txt |" },
        { "time help ech\t", "time help echo |" },
        { "ucd m\t", "ucd 'my dir'/|" },
        { "echo su\t", "echo sub|" },   // no quote yet, as none of that needs it
        { "ucd \"my\t", "ucd \"my dir\"/|" },
        { "set onlyo\t", "set onlyone |" },
        { "alias -u al\t", "alias -u alone |" },
        { "alone -\t", "alone -n |" },
        { "echo um\t", "echo uml|" },   // both go on with the same first byte of another character
    };
    Terminal terminal(program());
    terminal.follow({ { "", "orvlang -> |" },
                      { "set onlyone = 1; alias alone echo\n",
                        "orvlang -> set onlyone = 1; alias alone echo\norvlang -> |" } });
    for (const auto &c : theCases)   // with a mark, so that a line without a completion shows when it is done
        terminal.follow({ { c.typed + "\001@\005"s, "orvlang -> @"s + c.shown }, { "\025", "orvlang -> |" } });
    terminal.follow({
        { "echo plain\t", "plain.txt   plain2.txt\norvlang -> echo plain|" },
        { "\025echo \"sub\t", "sub\uFFFDtwo   sub one/\norvlang -> echo \"sub|" },
        { "\025openport -\t", "-a  -c  -e  -i  -p  -q  -r  -s  -w\norvlang -> openport -|" },
        { "\025alias ll ls\n", "orvlang -> alias ll ls\norvlang -> |" },
        { "l\t", "listchooser  ll\norvlang -> l|" },
    });
}

TEST_F(EditingTest, CompletedNamesAreReadBackAsOneWord) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const std::string name :
         { "a b$c", "quote'\"`", "v\\slash", "semi;colon", "bang!x", "hash#", "eq=ual" }) {
        folder.write(name, "");
        terminal.follow({ { "echo " + name.substr(0, 1) + "\t'<'\n", name + " <\norvlang -> |" } });
        std::filesystem::remove(folder.path() + "/" + name);
    }
}

TEST_F(EditingTest, PastedLinesRunWhenTheyAreEntered) {
    Terminal terminal(program());
    terminal.follow({
        { "", "orvlang -> |" },
        { "\033[200~echo one\rfor i = 1 to 2\r\techo $i\rend\rread a\rthe answer\recho $a\r\033[201~",
          "orvlang -> echo one\nfor i = 1 to 2\n        echo $i\nend\nread a\nthe answer\necho $a|" },
        { "\n", "orvlang -> echo one\none\norvlang -> for i = 1 to 2\n>       echo $i\n> end\n1\n2\n"
                "orvlang -> read a\nthe answer\norvlang -> echo $a\nthe answer\norvlang -> |" },
        // One line is only put there; what is not confirmed goes.
        { "\033[200~echo never\n\033[201~", "orvlang -> echo never|" },
        { "\003", "orvlang -> echo never^C\norvlang -> |" },
    });
    // An interrupt drops the lines that have not run.
    terminal.type("\033[200~while 1 == 1\necho turning\nend\necho dropped\n\033[201~\n");
    terminal.waitFor("turning\r\nturning\r\n");
    terminal.type("\003");
    terminal.waitFor("orvlang ->");
    terminal.type("echo done\n");
    EXPECT_EQ(terminal.waitFor("done\r\n\033").find("dropped"), std::string::npos);
}

TEST_F(EditingTest, OutputLeavesAHalfTypedLineWhole) {
    Terminal terminal(program());
    EXPECT_EQ(runOnPort(terminal, "echo reply"), "reply\n");
    terminal.follow({ { "half\002", "orvlang -> hal|f" } });
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
        EXPECT_EQ(runOnPort(terminal, c.command), "");
        terminal.waitForRows(std::string(c.written) + "\norvlang -> hal|f");
    }
    // A line of several rows.
    terminal.resize(20, 10);
    terminal.follow({ { "\005 123456789 123456789 123456789", "56789 123456789 1234\n56789|" } });
    runOnPort(terminal, "message m");
    terminal.follow({
        { "", "m\norvlang -> half 1234\n56789 123456789 1234\n56789|" },
        // A question in between has the terminal for itself.
        { "\025atjob 1 'message -b yes,no go?'; echo\n", "\norvlang -> |" },
        { "zz", "enter your choice: |" },
        { "1\n", "orvlang -> zz|" },
    });
}

TEST_F(EditingTest, InterruptsAndEnds) {
    Terminal terminal(program());
    terminal.follow({
        { "", "orvlang -> |" },
        { "typed", "orvlang -> typed|" },
        { "\003", "orvlang -> typed^C\norvlang -> |" },
        { "echo a \\\n", "? |" },
        { "\003", "? ^C\norvlang -> |" },
    });
    EXPECT_FALSE(terminal.echoes());
    terminal.follow({ { "while 1 == 1\necho turning\nend\n", "turning\nturning\n|" } });
    EXPECT_TRUE(terminal.echoes());
    terminal.follow({
        { "\003", "orvlang -> |" },
        { "echo a; unix cat\n", "orvlang -> echo a; unix cat\na\n|" },
        { "to cat\n", "to cat\nto cat\n|" },
        { "\004", "orvlang -> |" },
    });
    terminal.type("ab\001\004\004\004");
    terminal.waitFor("\033[?2004l");
    EXPECT_TRUE(terminal.echoes());
    terminal.waitForEnd(0);
}

/// Which the terminal drops with all input that nobody has read.
TEST_F(EditingTest, AnInterruptEndsAKeyInPieces) {
    Terminal terminal(program());
    terminal.waitForRows("orvlang -> |");
    for (const char *piece : { "\033[200~cut off", "\026", "\033[" })
        terminal.follow({
            { std::string("half") + piece, "orvlang -> half|" },
            { "\003", "orvlang -> half^C\norvlang -> |" },
            { "echo a\n", "orvlang -> echo a\na\norvlang -> |" },
        });
    terminal.follow({ { "echo a\033", "orvlang -> echo a|" }, { "\n", "orvlang -> echo a\na\norvlang -> |" } });
}

TEST_F(EditingTest, SignalsEndTheProgramAndGiveTheTerminalBack) {
    for (const int number : { SIGTERM, SIGHUP, SIGQUIT, SIGABRT }) {
        Terminal terminal(program());
        terminal.follow({
            { "", "orvlang -> |" },
            { "echo kept\n", "kept\norvlang -> |" },
            { "half", "orvlang -> half|" },
        });
        EXPECT_FALSE(terminal.echoes());
        terminal.sendSignal(number);
        terminal.waitFor("\033[?2004l");
        EXPECT_TRUE(terminal.echoes());
        terminal.waitForEnd(128 + number);
    }
    EXPECT_EQ(folder.read(recall), "echo kept\necho kept\necho kept\necho kept\n");
}

TEST_F(EditingTest, AClientOfAPortEditsItsLinesToo) {
    Terminal server(program());
    runOnPort(server, "echo");
    Program words = program();
    words.words.insert(words.words.end(), { "--connect", port });
    Terminal terminal(words);
    terminal.follow({
        { "", port + " -> |" },
        { "echo helo\033[Dl\n", port + " -> echo hello\nhello\n" + port + " -> |" },
        { "dropped", port + " -> dropped|" },
        { "\003", port + " -> dropped^C\n" + port + " -> |" },
        { "\033[A again\n", port + " -> echo hello again\nhello again\n" + port + " -> |" },
        { "half", port + " -> half|" },
    });
    terminal.sendSignal(SIGTERM);
    terminal.waitFor("\033[?2004l");
    EXPECT_TRUE(terminal.echoes());
    terminal.waitForEnd(128 + SIGTERM);
}

TEST_F(EditingTest, StopsAndGoesOn) {
    Terminal terminal({ { "/bin/sh", "-i" }, folder.path(), "", { "TERM=xterm", "PS1=sh> " } });
    terminal.follow({ { "", "sh> |" },
                      { ORVLANG_PROGRAM "\n", "orvlang -> |" },
                      { "echo ha", "orvlang -> echo ha|" },
                      { "\032", "sh> |" } });
    EXPECT_TRUE(terminal.echoes());
    terminal.follow({ { "fg\n", "orvlang -> echo ha|" } });
    EXPECT_FALSE(terminal.echoes());
    terminal.follow({
        { "lf\n", "half\norvlang -> |" },
        // In the background, where it may read what is meant for the shell and is stopped for that.
        { "half", "orvlang -> half|" },
        { "\032", "sh> |" },
    });
    terminal.type("bg\n");
    terminal.waitFor("bg\r\n");
    terminal.waitForRows("sh> |");
    terminal.type("echo shell\n");
    terminal.waitFor("echo shell\r\n");
    terminal.follow({
        { "", "sh> |" },
        { "fg\n", "orvlang -> half|" },
        // A question that has the terminal in its usual mode goes on with that.
        { "\025atjob 1 'message -b yes,no go?'\n", "orvlang -> |" },
        { "half", "enter your choice: |" },
        { "\032", "sh> |" },
    });
    terminal.type("fg\n");
    terminal.waitFor(ORVLANG_PROGRAM);
    terminal.follow({
        { "1\n", "1\norvlang -> half|" },
        { "\003", "orvlang -> half^C\norvlang -> |" },
        { "\004", "sh> |" },
    });
    EXPECT_TRUE(terminal.echoes());

    terminal.type(ORVLANG_PROGRAM " &\n");
    terminal.waitFor("&\r\n");
    terminal.follow({ { "", "sh> |" }, { "fg\n", "orvlang -> |" } });
}

TEST_F(EditingTest, FollowsTheSizeOfTheTerminal) {
    Terminal terminal(program());
    terminal.resize(40, 10);
    terminal.follow({
        { "", "orvlang -> |" },
        { "echo one\n", "one\norvlang -> |" },
        { "123456789 123456789 123456789 12345", "orvlang -> 123456789 123456789 123456789\n 12345|" },
    });
    terminal.resize(60, 10);   // nothing of the two rows is left above
    terminal.follow({
        { "", "one\norvlang -> 123456789 123456789 123456789 12345|" },
        { "\001X", "one\norvlang -> X|123456789 123456789 123456789 12345" },
    });
}

TEST_F(EditingTest, WideCharactersStayWhole) {
    Terminal terminal(program());
    terminal.resize(20, 10);
    terminal.follow({
        { "", "orvlang -> |" },
        { "echo 123漢字éé漢漢漢漢漢漢漢漢漢", "orvlang -> echo 123\n漢字éé漢漢漢漢漢漢漢\n漢漢|" },
        { "\033[D\033[D\033[D\033[D\033[D\033[D", "漢字éé漢漢漢|漢漢漢漢" },
        { "X", "orvlang -> echo 123\n漢字éé漢漢漢X|漢漢漢" },
        { "\177", "orvlang -> echo 123\n漢字éé漢漢漢|漢漢漢漢" },
    });
}

TEST_F(EditingTest, ALineMayBeLongerThanTheScreen) {
    Terminal terminal(program());
    terminal.resize(20, 5);
    std::string text = "echo";
    for (int i = 0; i < 15; ++i)
        text += " 123456789";
    terminal.follow({ { "", "orvlang -> |" }, { text, "56789|" } });
    const std::string piece(50, 'Z');
    for (int i = 0; i < 8; ++i) {
        terminal.type("\001\006\005" + piece);
        text += piece;
    }
    terminal.follow({ { "\n", "ZZZZZZZZZ\norvlang -> |" } });
    terminal.resize(600, 10);
    terminal.follow({ { "\033[A", "orvlang -> " + text + "|" } });
}

TEST_F(EditingTest, TheRecallOutlivesTheProgram) {
    {
        Terminal first(program()), second(program());
        const std::string prompt = "\norvlang -> |";
        first.waitForRows("orvlang -> |");
        second.waitForRows("orvlang -> |");
        first.follow({ { "echo 1\n", "1" + prompt } });
        second.follow({ { "echo 2\n", "2" + prompt } });
        first.follow({ { " echo secret\n", "secret" + prompt } });
        second.follow({ { "echo 2\n", "orvlang -> echo 2\n2\norvlang -> echo 2\n2" + prompt } });
        first.follow({
            { "read word\n", "orvlang -> read word\n|" },
            { "password\n", "password" + prompt },
            { "echo 3\n", "3" + prompt },
            { "history\n", "1  echo 1\n2  echo secret\n3  read word\n4  echo 3\n5  history" + prompt },
        });
        first.type("for i = 1 to 2\necho $i\nend\nquit\n");
        second.type("\004");
        first.waitForEnd(0);
        second.waitForEnd(0);
    }
    EXPECT_EQ(folder.read(recall),
              "echo 1\necho 2\nread word\necho 3\nhistory\nfor i = 1 to 2\recho $i\rend\nquit\n");
    namespace fs = std::filesystem;
    EXPECT_EQ(fs::status(folder.path() + "/" + recall).permissions(), fs::perms(0600));

    Terminal terminal(program());
    terminal.follow({
        { "", "orvlang -> |" },
        { "\033[A\033[A", "orvlang -> for i = 1 to 2\necho $i\nend|" },
        { "\n", "orvlang -> for i = 1 to 2\n> echo $i\n> end\n1\n2\norvlang -> |" },
        { "\033[A\033[A\033[A\033[A\n", "orvlang -> history\n1  for i = 1 to 2\n2  history\norvlang -> |" },
    });
}

TEST_F(EditingTest, TheRecallStaysWithinBounds) {
    std::string lines;
    for (int i = 0; i < 20002; ++i)
        lines += "echo " + std::to_string(i) + "\n";
    folder.write("state/orvlang/history", lines);
    Terminal terminal(program({ "XDG_STATE_HOME=" + folder.path() + "/state" }));
    terminal.follow({
        { "", "orvlang -> |" },
        { "\033<", "orvlang -> echo 10002|" },
        { "\025echo new\n", "new\norvlang -> |" },
    });
    const std::string kept = folder.read("state/orvlang/history");
    EXPECT_EQ(kept.substr(0, 11), "echo 10002\n");
    EXPECT_TRUE(kept.ends_with("echo 20001\necho new\n"));
    EXPECT_EQ(std::filesystem::status(folder.path() + "/state/orvlang/history").permissions(),
              std::filesystem::perms(0600));
}

TEST_F(EditingTest, OddRecallFilesDoNotMatter) {
    namespace fs = std::filesystem;
    const std::string path = folder.path() + "/" + recall;
    fs::create_directories(fs::path(path).parent_path());
    const std::function<void()> theOdds[] = {
        [&] { fs::create_directory(path); },
        [&] { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); },
        [&] { folder.write(recall, std::string(8 << 20, 'x') + "\necho last\n"); },
        [&] { folder.write(recall, "echo a" + std::string(1, '\0') + "b\n\377\necho last\n"); },
    };
    for (const auto &makeOdd : theOdds) {
        fs::remove_all(path);
        makeOdd();
        const bool isFile = fs::is_regular_file(path);
        Terminal terminal(program());
        terminal.follow({
            { "", "orvlang -> |" },
            { "\033[A", isFile ? "orvlang -> echo last|" : "orvlang -> |" },
            { "\025echo new\n", "new\norvlang -> |" },
        });
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
        terminal.type("\004");
        terminal.waitForEnd(0);
    }
    for (const auto &[setting, colour] : { std::pair("NO_COLOR=1", false), std::pair("NO_COLOR=", true) }) {
        Terminal terminal(program({ setting }));
        EXPECT_EQ(terminal.waitFor("orvlang ->").ends_with("\033[1;32m"), colour) << setting;
    }
    Terminal terminal(program({ "TERM=nobody-knows" }));   // is taken for a common one
    terminal.follow({ { "", "orvlang -> |" }, { "abc\033[D\033[DX", "orvlang -> aX|bc" } });
}

}   // namespace
