// SPDX-License-Identifier: Apache-2.0
// One statement: its messages, its streams, its status, and what its callback is given.
#include "Cases.h"
#include "EngineFixture.h"

#include <orvlang/engine/CMD_Command.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

/// give STATUS [late] [expression]: a status and errors that come to light behind the callback.
void give(CMD_Args &args) {
    CMD_Manager::getContext()->setStatusCode(KITatoi(args.argv(1)));
    for (int i = 2; i < args.argc(); ++i) {
        if (std::string_view(args.argv(i)) == "late") {
            KITgetErrorManager()->addError(KIT_ErrorManager::Warning, "late one");
            KITgetErrorManager()->addError(KIT_ErrorManager::Failure, "late two");
        } else {
            fml_Fail(FML_DIVISION_BY_ZERO);
        }
    }
}

/// options [-a] [-b VALUE] WORD...: shows what it is given.
void options(CMD_Args &args) {
    args.out() << (args.found('a') ? "a " : "") << (args.found('b') ? args.argp('b') : "-");
    for (int i = 0; i < args.argc(); ++i)
        args.out() << " [" << args.argv(i) << ']';
    args.out() << (args.argv(args.argc()) || args.argv(-1) ? " beyond" : "") << '\n';
}

void both(CMD_Args &args) {
    args.out() << "out\n";
    args.err(1) << "err\n";
    CMD_Manager::getContext()->execute("echo nested", 0, nullptr, nullptr, 1, true);
}

class Dispatch : public EngineFixture {
protected:
    Dispatch() {
        install("give", give);
        install("options", options, "ab:");
        install("both", both);
        install("exhaust", [](CMD_Args &) { throw std::bad_alloc(); });
        install("risky", both, "", false);
        std::filesystem::create_directory("dir");
    }
};

/// A text whose `@` are the position of a statement.
std::string at(const std::string &position, std::string text) {
    for (size_t i = 0; (i = text.find('@', i)) != std::string::npos; i += position.size())
        text.replace(i, 1, position);
    return text;
}

TEST_F(Dispatch, MessagesAndStatus) {
    for (const auto &row : casesOf(ORVLANG_CASES "/statements.cases")) {
        for (const bool inScript : { false, true }) {
            SCOPED_TRACE(inScript ? "in a script" : row.at(0));
            EXPECT_EQ(inScript ? script(row.at(0)) : type(row.at(0)),
                      at(inScript ? "s.cmd (1): " : "", row.at(1)));
            EXPECT_EQ(std::to_string(manager.getStatusCode()), row.at(2));
            EXPECT_EQ(value("status"), row[2]);
            EXPECT_EQ(manager.getSourceLevel(), 0);
        }
    }
}

TEST_F(Dispatch, WhatLeavesTheStatusAlone) {
    type("give 7");
    EXPECT_EQ(type("\n   \n# comment\n  #"), "");
    EXPECT_EQ(value("status"), "7");
    type("if 0\necho skipped");
    EXPECT_EQ(manager.getStatusCode(), 1);
    type("els\nendif");
    EXPECT_EQ(value("status"), "0");
    // A local `status` takes it over, where it was made.
    type("set status = x\ngive 9");
    KIT_String global;
    EXPECT_TRUE(manager.getGlobalVariables()->getVariable("status", global));
    EXPECT_STREQ(global.c_str(), "0");
    EXPECT_EQ(value("status"), "9");
}

TEST_F(Dispatch, AFailedLookUpEndsAllScripts) {
    folder.write("outer.cmd", "source s.cmd\necho never\n");
    for (const char *line : { "nosuch", "e", "risky" }) {
        folder.write("s.cmd", std::string(line) + "; echo never\necho never\n");
        manager.setSafeMode(std::string_view(line) == "risky");
        const std::string written = type("source outer.cmd; echo console");
        EXPECT_TRUE(written.starts_with("{s.cmd (1): ")) << written;
        EXPECT_TRUE(written.ends_with("\n\r}console\n")) << written;
    }
    EXPECT_EQ(type("risky\n"), "{Command 'risky' is not a safe command and cannot be run\n\r}");
}

TEST_F(Dispatch, Redirection) {
    static const struct {
        const char *line;
        const char *written;
        const char *file;
    } theCases[] = {
        { "both > f", "{err\n}", "out\nnested\n" },
        { "both >& f", "", "out\nerr\nnested\n" },
        { "both>>&f; echo $status", "0\n", "out\nerr\nnested\nout\nerr\nnested\n" },
        { "echo a >$f b > \"$f\"", "", "a b\n" },
        { "echo a > x >& f", "", "a\n" },
        { "nosuch >& f", "", "Unknown command: nosuch\n\r" },
        { "options -x >& f", "", "Invalid option for command\n" },
        { "give 1 late >& f", "", "late one\nlate two\n" },
        { "echo `1/0` >&f", "", "\nExpression error: Division by zero\n" },
        { "if 2 > f", "", "\nExpression error: Division by zero\n" },
        { "endif > f", "", "\nExpression error: Division by zero\n" },
        { "$nosuch > f", "", "\nExpression error: Division by zero\n" },   // no command, no file
    };
    type("set f = f");
    for (const auto &c : theCases) {
        EXPECT_EQ(type(c.line), c.written) << c.line;
        EXPECT_EQ(folder.read("f"), c.file) << c.line;
    }
    EXPECT_EQ(folder.read("x"), "(no such file)");
    EXPECT_EQ(type("time echo a > f"), "");
    EXPECT_TRUE(folder.read("f").starts_with("a\n") && folder.read("f").ends_with("r\n"));
    for (const int safe : { 0, 1 }) {
        manager.setSafeMode(safe);
        manager.setIORedirection(safe);
        EXPECT_EQ(type("echo a >& f"), "{Application doesn't support I/O redirection\n}a\n");
    }
}

TEST_F(Dispatch, EchoOfStatements) {
    // Expanded, before the redirection, and silent inside an expression.
    folder.write("s.cmd", "set a = 'x y'\necho $a \"$a\" > f  # comment\nif 0\necho b\nendif\n"
                          "echo `run(\"echo c\")`; foo\n");
    EXPECT_EQ(type("source -v s.cmd z"), "s.cmd (1): set a = x y\n"
                                         "s.cmd (2): echo x y x y\n"
                                         "s.cmd (3): if 0\n"
                                         "s.cmd (5): endif\n"
                                         "s.cmd (6): echo c\n"
                                         "c\n"
                                         "s.cmd (6): foo\n"
                                         "{s.cmd (6): Unknown command: foo\n\r}");
    EXPECT_EQ(folder.read("f"), "x y x y\n");
}

TEST_F(Dispatch, ScriptsByTheirName) {
    std::filesystem::create_directory("scripts");
    folder.write("scripts/found.cmd", "echo $arg0 $arg1\nnosuch");
    folder.write("empty.cmd", "");
    manager.setJob(folder.path().c_str());
    manager.setSafeMode(1);
    // Off the search path the name stays as it was typed, the position has the file.
    EXPECT_EQ(type("alias aliased found.cmd 1\naliased"),
              "found.cmd 1\n{" + folder.path() + "/scripts/found.cmd (2): Unknown command: nosuch\n\r}");
    EXPECT_EQ(type("empty.cmd"), "{Can't open empty.cmd\n}");
    // A manager without `cmdread` has no scripts.
    CMD_Manager bare("bare");
    bare.execute("empty.cmd", 0, &transcript.out(), &transcript.err(), 1, true);
    EXPECT_EQ(transcript.take(), "{Unknown command: empty.cmd\n\r}");
}

TEST_F(Dispatch, ErrorsHaveTheirPositionOnce) {
    install("three", [](CMD_Args &args) {
        args.err(0) << "plain ";
        args.err(1) << "one ";
        args.err(1) << "two\n";
    });
    install("quiet", [](CMD_Args &args) {
        args.quietErrors();
        args.err(1) << "quiet\n";
    });
    install("misused", [](CMD_Args &args) { args.showUsage(); });
    static const char *const text = "three\n\nthree; quiet\nmis\n";
    EXPECT_EQ(script(text), "{plain s.cmd (1): one two\nplain s.cmd (3): one two\nquiet\n"
                            "s.cmd (4): misused:  Invalid usage\nmisused\n}");
    EXPECT_EQ(type(text), "{plain one two\nplain one two\nquiet\nmisused:  Invalid usage\nmisused\n}");
    // A position is that of the statement, and text from the host has none, inside a script neither.
    manager.sendMultiLineInput("three\nthree", false);
    EXPECT_EQ(transcript.take(), "{plain one two\nplain one two\n}");
    install("text",
            [](CMD_Args &) { CMD_Manager::getContext()->execute("nosuch\n", 0, nullptr, nullptr, 1, true); });
    EXPECT_EQ(script("text\necho never\n"), "{Unknown command: nosuch\n\r}");
}

}   // namespace
