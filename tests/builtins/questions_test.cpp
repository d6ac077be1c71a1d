// SPDX-License-Identifier: Apache-2.0
// Questions on a real terminal, where the answer can be an end or an interrupt.
#include "Terminal.h"

#include <gtest/gtest.h>

namespace {

const char theControlC[] = "\x03";
const char theControlD[] = "\x04";

TEST(QuestionsTest, OnATerminal) {
    TemporaryFolder folder;
    Terminal terminal({ { ORVLANG_PROGRAM }, folder.path(), "", {} });
    static const struct {
        const char *command, *question, *answer, *result;
    } theCases[] = {
        { "set x = `execute('message -p -b yes,no ok?')`", "choice: ", "1\n", "<no>" },
        { "set x = `execute('message -p -b yes,no ok?')`", "choice: ", theControlD, "<-1>" },
        { "set x = `execute('listchooser -r a b')`", "choice: ", theControlD, "<>" },
        { "set x = `execute('listchooser a b')`", "choice(s): ", "1 0\n", "<1 0>" },
        { "set x = `execute('filechooser')`", "filename: ", "a name\n", "<a name>" },
        { "set x = `execute('filechooser')`", "filename: ", theControlC, "<>" },
        { "message -b yes,no ok?; set x = never", "choice: ", theControlC, "<>" },
        { "listchooser a b; set x = never", "choice(s): ", theControlC, "<>" },
    };
    terminal.waitFor("-> ");
    for (const auto &c : theCases) {
        SCOPED_TRACE(c.command);
        terminal.type(std::string(c.command) + "\n");
        terminal.waitFor(c.question);
        terminal.type(c.answer);
        terminal.waitFor("-> ");
        terminal.type("echo \"<$x>\"\n");
        terminal.waitFor("$x>\"\r\n");
        terminal.waitFor(c.result);
        terminal.waitFor("-> ");
    }
}

}   // namespace
