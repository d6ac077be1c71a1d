// SPDX-License-Identifier: Apache-2.0
// Timed jobs of the real console: they run while it waits at its prompt, or in a statement for a port.
#include "Terminal.h"

#include <gtest/gtest.h>

namespace {

TEST(JobsTest, RunWhileThePromptWaits) {
    TemporaryFolder folder;
    Terminal terminal({ { ORVLANG_PROGRAM }, folder.path(), "", {} });
    terminal.waitFor("-> ");
    terminal.type("atjob 1 'echo un\"seen\"; quit 5'\n");
    const std::string shown = terminal.waitForEnd(5);
    EXPECT_EQ(shown.find("unseen"), std::string::npos) << shown;
}

TEST(JobsTest, RunWhileAPortWaits) {
    TemporaryFolder folder;
    const Program program = {
        { ORVLANG_PROGRAM, "-c", "atjob 1 quit 5; openport -a -w" }, folder.path(), "", {}
    };
    EXPECT_EQ(program.run().status, 5);
}

}   // namespace
