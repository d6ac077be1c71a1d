// SPDX-License-Identifier: Apache-2.0
// Ports and connections on the level of bytes: what is delivered when, and how connections begin and end.
#include "ListenerFixture.h"

namespace {

TEST_F(ListenerTest, AnswersRequestAfterRequest) {
    open();
    Client a(*this), b(*this);
    EXPECT_EQ(ask(a, "one"), "[one]");
    EXPECT_EQ(ask(b, "two\n"), "[two\n]");
    EXPECT_EQ(ask(a, "three\n"), "[three\n]");
    EXPECT_EQ(connections, 2);
    a.close();
    runUntil([&] { return connections == 1; });
    EXPECT_EQ(ask(b, "four"), "[four]");
}

TEST_F(ListenerTest, LeavesNoDescriptorBehind) {
    open();
    const int before = countDescriptors();
    for (int i = 0; i < 1000; ++i) {
        Client client(*this);
        if (i % 3 == 0) {
            EXPECT_EQ(ask(client, "x"), "[x]");
        } else if (i % 3 == 1) {
            client.reset();
        }
        runTurn();
    }
    expectServed();
    runUntil([&] { return connections == 0; });
    EXPECT_EQ(countDescriptors(), before);
}

}   // namespace
