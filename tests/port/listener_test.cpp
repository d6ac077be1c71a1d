// SPDX-License-Identifier: Apache-2.0
// Ports and connections: how they begin, how they end, and what may happen to them from inside a request.
#include "ListenerFixture.h"

#include <algorithm>
#include <climits>

#include <fcntl.h>

#include <orvlang/platform/kit/KIT_Process.h>

namespace {

TEST(KIT_NetSocket, MapsPortNumbers) {
    static const struct {
        int number, mapped;
    } theCases[] = { { 1024, 1024 },
                     { 65535, 65535 },
                     { 1, 1025 },
                     { 0, 1024 },
                     { 80, 1104 },
                     { 65536, 2048 },
                     { -1, 65535 },
                     { INT_MAX, 1024 + INT_MAX % 64512 },
                     { INT_MIN, 1024 + 64512 + INT_MIN % 64512 } };
    for (const auto &c : theCases) {
        EXPECT_EQ(KIT_NetSocket::mapToUnprivilegedPort(c.number), c.mapped) << c.number;
        EXPECT_EQ(KIT_NetSocket::mapToUnprivilegedPort(c.mapped), c.mapped) << c.number;
    }
}

TEST(KIT_NetSocket, ConnectsToAPort) {
    const std::unique_ptr<KIT_NetSocket> listening(KIT_NetSocket::newSocket(0, true, false));
    ASSERT_TRUE(listening->isUsable());
    const std::unique_ptr<KIT_NetSocket> taken(KIT_NetSocket::newSocket(listening->getPort(), true, false));
    EXPECT_FALSE(taken->isUsable());
    EXPECT_EQ(listening->accept(), nullptr);

    const std::unique_ptr<KIT_NetSocket> client(KIT_NetSocket::newSocket(listening->getPort(), false, true));
    ASSERT_TRUE(client->isUsable());
    const std::unique_ptr<KIT_NetSocket> accepted = listening->accept();
    char buffer[10];
    int count;
    EXPECT_EQ(client->read(buffer, 10, &count, 0), KIT_NetSocket::TryAgain);
    EXPECT_EQ(accepted->write("hello", 5, &count), KIT_NetSocket::Ok);
    EXPECT_EQ(count, 5);
    EXPECT_EQ(client->read(buffer, 3, &count, -1), KIT_NetSocket::Ok);
    EXPECT_EQ(std::string(buffer, 3), "hel");
    accepted->close();
    EXPECT_EQ(client->read(buffer, 10, &count, -1), KIT_NetSocket::Ok);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(client->read(buffer, 10, &count, -1), KIT_NetSocket::Ended);
    EXPECT_EQ(accepted->write("x", 1, &count), KIT_NetSocket::Failed);
    EXPECT_EQ(accepted->read(buffer, 1, &count, -1), KIT_NetSocket::Ended);

    const int port = listening->getPort();
    listening->close();
    const std::unique_ptr<KIT_NetSocket> nobody(KIT_NetSocket::newSocket(port, false, true));
    EXPECT_FALSE(nobody->isUsable());
}

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
    const std::vector<int> before = listDescriptors();
    for (int i = 0; i < 1000; ++i) {
        Client client(*this);
        if (i % 3 == 0)
            EXPECT_EQ(ask(client, "x"), "[x]");
        else if (i % 3 == 1)
            client.reset();
        runTurn();
    }
    expectServed();
    runUntil([&] { return connections == 0; });
    EXPECT_EQ(listDescriptors(), before);
}

TEST_F(ListenerTest, KeepsDescriptorsFromChildren) {
    const std::vector<int> before = listDescriptors();
    open();
    Client client(*this);
    EXPECT_EQ(ask(client, "x"), "[x]");
    for (const int descriptor : listDescriptors()) {
        const bool isNew = std::find(before.begin(), before.end(), descriptor) == before.end();
        EXPECT_TRUE(!isNew || (::fcntl(descriptor, F_GETFD) & FD_CLOEXEC)) << descriptor;
    }
    delete server;
    client.close();
    runUntil([&] { return connections == 0; });
    EXPECT_EQ(listDescriptors(), before);
}

TEST_F(ListenerTest, AConnectionOutlivesItsPort) {
    handler = [this](const std::string &delivery, KIT_NetSocket &socket) {
        delete server;
        answer(socket, delivery);
    };
    open();
    Client client(*this);
    EXPECT_EQ(ask(client, "close"), "close");
    EXPECT_EQ(ask(client, "more"), "more");
    client.close();
    runUntil([&] { return connections == 0; });
    EXPECT_TRUE(generators.empty());
}

TEST_F(ListenerTest, AConnectionMayGoInsideItsRequest) {
    open();
    handler = [](const std::string &, KIT_NetSocket &socket) { socket.close(); };
    Client closing(*this);
    closing.send("\x04");
    EXPECT_TRUE(isEnded(closing));

    handler = [this](const std::string &delivery, KIT_NetSocket &socket) {
        delete latestConnection;
        answer(socket, delivery);
    };
    Client destroying(*this);
    destroying.send("x");
    EXPECT_TRUE(isEnded(destroying));
    EXPECT_EQ(destroying.received, "");
    EXPECT_EQ(connections, 0);
}

TEST_F(ListenerTest, ServesOthersInsideARequestButNotItsOwnPeer) {
    open();
    Client inner(*this), outer(*this);
    handler = [&](const std::string &delivery, KIT_NetSocket &socket) {
        if (delivery == "outer") {
            outer.send("next");
            EXPECT_EQ(ask(inner, "inner"), "inner");
            EXPECT_EQ(deliveries.size(), 2u);
        }
        answer(socket, delivery);
    };
    outer.send("outer");
    runUntil([&] { return deliveries.size() == 3; });
    EXPECT_EQ(deliveries, (std::vector<std::string>{ "outer", "inner", "next" }));
    runUntil([&] { return outer.received == std::string("outer\0next\0", 11); });
}

TEST_F(ListenerTest, AwaitsNothingInsideItsRequest) {
    open();
    Client client(*this);
    handler = [&](const std::string &delivery, KIT_NetSocket &socket) {
        // Else what its peer sends meanwhile would end each wait of the loop for nothing.
        EXPECT_EQ(latestConnection->getFileDescriptor(), -1);
        answer(socket, delivery);
    };
    EXPECT_EQ(ask(client, "x"), "x");
    EXPECT_GE(latestConnection->getFileDescriptor(), 0);
}

TEST_F(ListenerTest, ListensElsewhereToo) {
    static const struct {
        const char *option;
        bool isServed;   // at another address of loopback
    } theCases[] = {
        { "", false }, { "bind=any", true }, { "bind:127.0.0.2", true }, { "bind=192.0.2.1", false }
    };
    for (const auto &c : theCases) {
        testing::internal::CaptureStderr();
        open(c.option);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  std::string(c.option) == "bind=192.0.2.1" ? "Cannot listen at 192.0.2.1\n" : "");
        expectServed();
        Client client(*this, "127.0.0.2");
        if (c.isServed)
            EXPECT_EQ(ask(client, "x"), "[x]") << c.option;
        else
            EXPECT_TRUE(isEnded(client)) << c.option;
        delete server;
    }
}

TEST_F(ListenerTest, NamesAWrongOption) {
    testing::internal::CaptureStderr();
    open("colour=red");
    expectServed();
    expectServed();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Wrong listener option colour=red\n");
}

class ChildTest : public ListenerTest {
protected:
    /// Starts a child that ends, and has the port watch it.
    void watchChild(bool close) {
        static const char *const argv[] = { "true", nullptr };
        server->closeSocketOnChildExit(KITspawnvp(argv, true, false), close, exited, this);
    }

    static void exited(VIO_ServerSocketListener &listener, void *data, bool flag) {
        ChildTest &test = *static_cast<ChildTest *>(data);
        EXPECT_EQ(&listener, test.server);
        ++test.calls;
        test.flag = flag;
        if (test.destroyInside)
            delete &listener;
    }

    bool destroyInside = false;
    int calls = 0;
    bool flag = false;
};

TEST_F(ChildTest, ThePortClosesWithItsApplication) {
    open();
    watchChild(true);
    runUntil([&] { return !server; });
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(flag);
}

TEST_F(ChildTest, OrDoesNot) {
    open();
    watchChild(false);
    runUntil([&] { return calls > 0; });
    EXPECT_TRUE(flag);
    expectServed();
    EXPECT_EQ(calls, 1);
}

TEST_F(ChildTest, ThePortMayBeGoneBehindTheCallback) {
    destroyInside = true;
    open();
    watchChild(true);
    runUntil([&] { return !server; });
    EXPECT_EQ(calls, 1);
}

}   // namespace
