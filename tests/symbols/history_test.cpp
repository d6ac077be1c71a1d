// SPDX-License-Identifier: Apache-2.0
// The `!` and `^` forms, and which lines of a console become history.
#include "Cases.h"
#include "EngineFixture.h"

#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/symbols/CMD_HistoryTable.h>

namespace {

class History : public EngineFixture {
protected:
    History() : EngineFixture(true) {}
    std::string listing() {
        std::ostringstream text;
        manager.dumpHistory(text);
        return text.str();
    }
};

TEST_F(History, Forms) {
    CMD_HistoryTable table;
    KIT_String untouched = "!! ^a^b \\!x";
    EXPECT_EQ(table.historyExpand(&manager, untouched), 0);   // with nothing to refer to, all stays
    EXPECT_STREQ(untouched.c_str(), "!! ^a^b \\!x");
    for (const char *line : { "cat a", "echo hi", "{x} y", "\"quoted\" it's", "echo aba aba" })
        table.addHistory(line);
    for (const auto &row : casesOf(ORVLANG_CASES "/history.cases")) {
        KIT_String line(row.at(0));
        const std::string expanded = row.back();
        const bool isForm = row.size() > 1 && row[0] != "\\!!";
        EXPECT_EQ(table.historyExpand(&manager, line), isForm ? 1 : 0) << row[0];
        EXPECT_EQ(line.c_str(), expanded) << row[0];
        EXPECT_EQ(transcript.take(), isForm ? "{" + expanded + "\n}" : "") << row[0];
    }
}

TEST_F(History, KeepsTheLatest200Lines) {
    CMD_HistoryTable table;
    for (int i = 1; i <= 200; ++i)
        table.addHistory(("line " + std::to_string(i)).c_str());
    table.addHistory(table.getCommand(199));   // the one that falls out
    EXPECT_EQ(table.entries(), 200u);
    EXPECT_STREQ(table.getCommand(0), "line 1");
    EXPECT_STREQ(table.getCommand(199), "line 2");
    EXPECT_EQ(table.getCommand(200), nullptr);
    EXPECT_EQ(table.getCommand(-1), nullptr);
    KIT_String line = "[!1][!2][!201][!202]";
    table.historyExpand(&manager, line);
    table.clearAndDestroy();
    table.addHistory("");
    std::ostringstream text;
    table.saveHistory(text);
    EXPECT_EQ(text.str(), "1  \n");
}

TEST_F(History, WhatTheConsoleKeeps) {
    folder.write("t.cmd", "echo !!\nhistory\nread a\necho script\n");
    static const struct {
        const char *line, *written;
    } theCases[] = {
        { "  echo a ; echo b # c", "a\nb\n" },
        { "# comment", "" },
        { "echo !1", "{echo echo a ; echo b # c\n}echo a\nb\n" },
        { "source t.cmd", "!!\n" },
        { "!! an answer", "script\n" },
        { "for i = 1 to 1", "" },
        { "echo !ec", "" },
        { "end", "{echo echo b # c\n}echo b\n" },
        { "alias x 'echo !!; echo \"!!\"'; x", "!!\n!!\n" },
        { "!a", "{alias x 'echo !!; echo \"!!\"'; x\n}!!\n!!\n" },
        { "echo \\!! ; echo '!'", "!!\n!\n" },
        { "^^x", "{\n}" },
        { "history -c", "" },
        { "history", "1  history\n" },
    };
    for (const auto &c : theCases) {
        manager.sendInput(c.line, false);
        EXPECT_EQ(transcript.take(), c.written) << c.line << "\n" << listing();
    }
}

TEST_F(History, WhatIsKeptOfLinesWithSeveralStatements) {
    type("echo a; echo b\nalias two 'echo 1; echo 2'\ntwo\n!!\nhistory -c x");
    EXPECT_EQ(listing(), "");
    type("echo a; echo b\ntwo; echo c\n!t");
    EXPECT_EQ(listing(), "1  echo a; echo b\n2  echo b\n3  two; echo c\n4  echo 2\n5  echo c\n"
                         "6  two; echo c\n7  echo 2\n8  echo c\n");
    EXPECT_EQ(manager.getHistoryCount(), 8u);
    EXPECT_STREQ(manager.getHistoryCommand(7), "echo a; echo b");
    // Neither what a program runs nor text of several lines; expansion and capture have switches of their own.
    manager.execute("echo !1", 0, nullptr, nullptr, 1, true);
    manager.sendMultiLineInput("echo x\n", false);
    transcript.take();
    manager.execute("echo '!2' !2", 1, nullptr, nullptr, 1, true);
    EXPECT_EQ(transcript.take(), "{echo '!2' echo b\n}!2 echo b\n");
    EXPECT_EQ(manager.getHistoryCount(), 8u);
    manager.setHistoryCapture(0);
    EXPECT_EQ(type("!8"), "{echo c\n}c\n");
    EXPECT_EQ(manager.getHistoryCount(), 8u);
}

}   // namespace
