// SPDX-License-Identifier: Apache-2.0
// The program from outside: its options, where its lines come from, its exit status, plug-ins.
#include "Program.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

std::string joined(const Words &words) {
    std::string text;
    for (const std::string &word : words)
        text += word + " ";
    return text;
}

class ConsoleTest : public testing::Test {
protected:
    Outcome run(const Words &words, const std::string &input = "", const Words &environment = {}) const {
        Program program = { { ORVLANG_PROGRAM }, folder.path(), input, environment };
        program.words.insert(program.words.end(), words.begin(), words.end());
        return program.run();
    }

    TemporaryFolder folder;
};

TEST_F(ConsoleTest, Options) {
    static const struct {
        Words words;
        int status;
        const char *out, *err;
    } theCases[] = {
        { { "--version" }, 0, "orvlang 0.", "" },
        { { "--help" }, 0, "Usage: orvlang ", "" },
        { { "-h" }, 0, "Usage: orvlang ", "" },
        { { "-x" }, 2, "", "orvlang: invalid option -- 'x'\nTry 'orvlang --help'" },
        { { "--nothing" }, 2, "", "orvlang: " },
        { { "-c" }, 2, "", "orvlang: " },
        { { "-c", "echo a", "script" }, 2, "", "orvlang: with -c there is no script to run: script\n" },
        { { "-c", "echo a\necho b" }, 0, "a\nb\n", "" },
        { { "-c", "" }, 0, "", "" },
        { { "-n", "lamps", "-c", "prompt" }, 0, "prompt 'lamps -> '\n", "" },
        { { "-P", "2nd=a", "-c", "echo a" }, 2, "", "orvlang: no name for a Python command: 2nd=a" },
        { { "-P", "=a", "-c", "echo a" }, 2, "", "orvlang: no name" },
        { { "-P", "first", "-P", "second=ab:", "-c", "firs -x" }, 0, "", "Invalid option for command\n" },
        { { "-s", "-c", "echo a > f" }, 0, "a\n", "Application doesn't support I/O redirection\n" },
    };
    for (const auto &c : theCases) {
        const Outcome outcome = run(c.words);
        EXPECT_EQ(outcome.status, c.status) << joined(c.words);
        EXPECT_NE(outcome.out.find(c.out), std::string::npos) << joined(c.words) << outcome.out;
        EXPECT_TRUE(outcome.err.starts_with(c.err)) << joined(c.words) << outcome.err;
        EXPECT_EQ(outcome.out.empty(), c.out[0] == '\0') << joined(c.words) << outcome.out;
        EXPECT_EQ(outcome.err.empty(), c.err[0] == '\0') << joined(c.words) << outcome.err;
    }
}

TEST_F(ConsoleTest, ScriptArgumentsArriveAsTheyWereGiven) {
    folder.write("show.cmd",
                 "while $argc > 1\nset text = \"$arg1\"\nset -g seen = $text\necho \"<$text>\"\nshift\nend\n");
    const Words arguments = { "plain", "two words", "it's",  "\"",  "$HOME", "`1+1`", "a;b",
                              "#",     "!!",        "end\\", "\\",  "\\\\",  "",      "a\nb",
                              "\t",    "-q",        "--",    "a>b", "\\n",   "'\\" };
    Words words = { "show.cmd" };
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::string expected;
    for (const std::string &argument : arguments)
        expected += "<" + argument + ">\n";
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.out, expected);
    EXPECT_EQ(outcome.err, "");
}

TEST_F(ConsoleTest, ScriptThatCannotBeOpened) {
    folder.write("empty.cmd", "");
    folder.write("folder/file", "");
    folder.write("comment.cmd", "# nothing else\n");
    folder.write("-c", "echo option\n");
    for (const char *name : { "missing.cmd", "empty.cmd", "folder", "" }) {
        const Outcome outcome = run({ name, "word" });
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(outcome.out, "") << name;
        EXPECT_EQ(outcome.err, "Can't open " + std::string(name) + "\n") << name;
    }
    EXPECT_EQ(run({ "comment.cmd" }).status, 0);
    EXPECT_EQ(run({ "--", "-c" }).out, "option\n");
}

TEST_F(ConsoleTest, ExitStatus) {
    static const struct {
        const char *text;
        int status;
    } theCases[] = {
        { "echo a", 0 },
        { "nosuchcommand", 1 },
        { "nosuchcommand\n# a comment leaves the status alone", 1 },
        { "nosuchcommand; echo a", 1 },   // what stands behind goes with the source
        { "exit 5", 5 },
        { "exit 300", 300 & 0xff },
        { "quit 5\necho never", 5 },
        { "quit", 0 },
        { "quit 200", 200 & 0x7f },
        { "exit 5; quit", 5 },        // `exit` drops what stands behind it
        { "while 1 == 2\nend", 1 },   // a loop statement leaves 1
    };
    for (const auto &c : theCases) {
        folder.write("script.cmd", std::string(c.text) + "\n");
        EXPECT_EQ(run({ "-c", c.text }).status, c.status) << c.text;
        EXPECT_EQ(run({ "script.cmd" }).status, c.status) << c.text;
    }
}

TEST_F(ConsoleTest, StandardStreamsOfManyKinds) {
    static const struct {
        const char *command, *out, *err;
    } theCases[] = {
        { "{ $B -c 'while 1\necho on\nend'; echo $? >&2; } | head -n 1", "on\n", "141\n" },
        // A closed one does not become the next file that is opened.
        { "$B -c 'nosuch > f' 2>&-; echo $?; cat f", "1\n", "" },
        { "$B -c 'echo a; quit' > /dev/full; echo $?", "1\n",
          "orvlang: standard output: No space left on device\n" },
        { "$B -c \"python -c 'print(1)'\" 2> err > /dev/full; echo $?; tail -n 1 err",
          "1\norvlang: standard output: No space left on device\n", "" },
        { "$B --help > /dev/full; echo $?", "1\n", "orvlang: standard output: No space left on device\n" },
        // A small pipe that never blocks.
        { "python3 -c 'import fcntl, os, subprocess\n"
          "r, w = os.pipe()\n"
          "fcntl.fcntl(w, fcntl.F_SETPIPE_SZ, 4096)\n"
          "os.set_blocking(w, False)\n"
          "subprocess.Popen([os.environ[\"B\"], \"-c\", \"for i = 1 to 3000\\necho $i\\nend\"], stdout=w)\n"
          "os.close(w)\n"
          "print(open(r).read().count(\"\\n\"))'",
          "3000\n", "" },
    };
    for (const auto &c : theCases) {
        const Program shell = { { "/bin/sh", "-c", c.command }, folder.path(), "", { "B=" ORVLANG_PROGRAM } };
        const Outcome outcome = shell.run();
        EXPECT_EQ(outcome.out, c.out) << c.command;
        EXPECT_EQ(outcome.err, c.err) << c.command;
    }
}

TEST_F(ConsoleTest, ReadTakesLinesOfStandardInput) {
    folder.write("ask.cmd", "read a\nread b c\necho $b $a $c\n");
    EXPECT_EQ(run({ "ask.cmd" }, "one\ntwo and three\n").out, "two one and three\n");
    EXPECT_EQ(run({ "ask.cmd" }, "one\\\nmore\ntwo").out, "two one more\n");
    EXPECT_EQ(run({ "-c", "read a\necho $a" }, "one\n").out, "one\n");
    EXPECT_EQ(run({}, "read a\nfirst line\necho $a\n").out, "first line\n");
    EXPECT_EQ(run({}, "source ask.cmd\n1\n2\necho behind\n").out, "2 1\nbehind\n");
}

TEST_F(ConsoleTest, InputThatEndsTooEarly) {
    folder.write("ask.cmd", "read a\necho $a\n");
    static const struct {
        Words words;
        const char *input, *named;
    } theCases[] = {
        { { "ask.cmd" }, "", "`read`" },          { { "ask.cmd" }, "one\\", "continued" },
        { { "-c", "read a" }, "", "`read`" },     { {}, "echo x; read a", "`read`" },
        { {}, "source ask.cmd\n", "`read`" },     { {}, "for i = 1 to 3\necho $i\n", "`end`" },
        { {}, "if 1 == 1\necho x\n", "`endif`" }, { {}, "echo a \\\n", "continued" },
        { {}, "echo a\\", "continued" },
    };
    for (const auto &c : theCases) {
        const Outcome outcome = run(c.words, c.input);
        EXPECT_EQ(outcome.status, 1) << joined(c.words) << c.input;
        EXPECT_NE(outcome.err.find(c.named), std::string::npos) << joined(c.words) << c.input << outcome.err;
    }
}

TEST_F(ConsoleTest, LinesOfStandardInput) {
    EXPECT_EQ(run({}, "").status, 0);
    EXPECT_EQ(run({}, "echo a; echo b\necho c \\\nd\r\necho last").out, "a\nb\nc d\nlast\n");
    // A byte order mark belongs to no line.
    const std::string marked = "\xEF\xBB\xBF"
                               "echo a";
    folder.write("marked.cmd", marked);
    for (const Outcome &outcome : { run({}, marked), run({}, marked + "\n"), run({ "-c", marked }),
                                    run({ "marked.cmd" }), run({}, marked, { "ORVANE_PLAIN_INPUT=1" }) })
        EXPECT_EQ(outcome.out + outcome.err, "a\n");
    // No history, no prompt, and an error carries no position.
    const Outcome outcome = run({}, "echo a\necho !!\n^a^b\n");
    EXPECT_EQ(outcome.out, "a\n!!\n");
    EXPECT_EQ(outcome.err, "Unknown command: ^a^b\n\r");
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(ConsoleTest, PluginsChainInFrontOfACommand) {
    const Words path = { "ORVANE_PATH=" ORVLANG_PLUGIN_PATH };
    const Outcome outcome = run({ "-c", "echo -n a b\nsecond_plugins" }, "", path);
    EXPECT_EQ(outcome.out,
              "first: second: a becho first.so\nfirst_plugins first.so\nsecond_plugins second.so\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(run({ "-s", "-c", "first_plugins" }, "", path).err,
              "Command 'first_plugins' is not a safe command and cannot be run\n\r");
}

TEST_F(ConsoleTest, KnowsHowItsChildrenEndWhoeverStartsIt) {
    const Program program = { { "/usr/bin/env", "--ignore-signal=CHLD", ORVLANG_PROGRAM, "-c",
                                "unix exit 3; echo $status" },
                              folder.path(),
                              "",
                              {} };
    EXPECT_EQ(program.run().out, "3\n");
}

TEST_F(ConsoleTest, TheReadmeShowsWhatHappens) {
    const auto read = [](const std::string &name) {
        return TemporaryFolder::readFile(ORVLANG_TREE "/" + name);
    };
    const std::string readme = read("README.md"), tour = read("examples/tour.cmd"),
                      shown = read("examples/tour.out");
    folder.write("tour.cmd", tour);
    const Outcome outcome = run({ "tour.cmd", "red", "green", "violet" });
    EXPECT_EQ(outcome.out, shown);
    EXPECT_EQ(outcome.err, "tour.cmd (26): Unknown command: nosuchcommand\n\r");
    EXPECT_EQ(outcome.status, 1);
    for (const std::string &text :
         { tour, shown, read("examples/embed/embed.cpp"), read("tests/install/embed.out") })
        EXPECT_NE(readme.find("\n" + text + "```\n"), std::string::npos) << text;
}

}   // namespace
