// SPDX-License-Identifier: Apache-2.0
// Ports and connections: how they begin and end, what may happen to them inside a request, and peers that stall, flood,
// reset or do not belong here. After each of those others are served as ever.
#include "ListenerFixture.h"
#include "TestSystem.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <optional>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Process.h>

namespace {

/// The real system, except for what a test makes it do wrong.
class WrongSystem : public TestSystem {
public:
    std::optional<OSL_SocketOwner> owner;   // of each peer
    bool knowsOwner = false;                // else the system is asked
    size_t longestMove = SIZE_MAX;          // bytes that one call sends or receives
    int interrupts = 0;                     // calls that fail so before one succeeds
    int acceptError = 0;                    // of each call
    int accepts = 0;
    int descriptorsLeft = 100;
    int polls = 0;
    bool canPoll = true;

    std::optional<OSL_SocketOwner> findSocketOwner(const sockaddr_storage &own,
                                                   const sockaddr_storage &peer) override {
        return knowsOwner ? owner : OSL_System::findSocketOwner(own, peer);
    }
    int open(const char *path, int flags, int mode) override {
        return isOutOfDescriptors() ? -1 : count(OSL_System::open(path, flags, mode));
    }
    int close(int descriptor) override {
        ++descriptorsLeft;
        return OSL_System::close(descriptor);
    }
    int waitPoll(int poll, epoll_event *events, int count, long long wait) override {
        ++polls;
        return OSL_System::waitPoll(poll, events, count, wait);
    }
    int createPoll() override { return canPoll ? OSL_System::createPoll() : -1; }
    int accept(int descriptor) override {
        ++accepts;
        if (isOutOfDescriptors())
            return -1;
        errno = acceptError;
        return acceptError ? -1 : count(OSL_System::accept(descriptor));
    }
    ssize_t send(int descriptor, const void *data, size_t count) override {
        return isInterrupted() ? -1 : OSL_System::send(descriptor, data, std::min(count, longestMove));
    }
    ssize_t receive(int descriptor, void *buffer, size_t count) override {
        return isInterrupted() ? -1 : OSL_System::receive(descriptor, buffer, std::min(count, longestMove));
    }

private:
    bool isOutOfDescriptors() const {
        errno = EMFILE;
        return descriptorsLeft == 0;
    }
    int count(int descriptor) {
        descriptorsLeft -= descriptor >= 0;
        return descriptor;
    }
    bool isInterrupted() {
        errno = EINTR;
        calls = (calls + 1) % (interrupts + 1);
        return calls != 0;
    }

    int calls = 0;
};

const std::string thePost = "POST / HTTP/1.1\r\nContent-Length: 4\r\n\r\n";

TEST(KIT_NetSocket, MapsPortNumbers) {
    static constexpr int theCases[][2] = {
        { 1024, 1024 },
        { 65535, 65535 },
        { 0, 1024 },
        { -1, 65535 },
        { INT_MAX, 1024 + INT_MAX % 64512 },
        { INT_MIN, 1024 + 64512 + INT_MIN % 64512 },
    };
    for (const auto &[number, mapped] : theCases)
        EXPECT_EQ(KIT_NetSocket::mapToUnprivilegedPort(number), mapped) << number;
}

TEST_F(ListenerTest, DescriptorsAreClosedAndKeptFromChildren) {
    const std::vector<int> before = listDescriptors();
    listen();
    for (int i = 0; i < 300; ++i) {
        PortClient client(port);
        if (i % 3 == 0)
            EXPECT_EQ(ask(client, "x"), "[x]");
        else if (i % 3 == 1)
            client.reset();
    }
    PortClient client(port);
    EXPECT_EQ(ask(client, "x"), "[x]");
    for (const int descriptor : listDescriptors())
        EXPECT_TRUE(std::ranges::count(before, descriptor) || (fcntl(descriptor, F_GETFD) & FD_CLOEXEC));
    delete server;
    client.reset();
    runUntil([&] { return connections == 0; });
    EXPECT_TRUE(std::ranges::includes(before, listDescriptors()));
}

TEST_F(ListenerTest, AListenerWithoutRulesGetsWhatComes) {
    isFramed = false;
    listen();
    EXPECT_EQ(ask(port, "GET / HTTP/1.1\r\nOrigin: x"), "[GET / HTTP/1.1\r\nOrigin: x]");
}

TEST_F(ListenerTest, OneTurnInEachPassOfTheLoopServesAll) {
    WrongSystem system;
    listen();
    PortClient client(port);
    EXPECT_EQ(ask(client, "x"), "[x]");
    VIO_EventGenerator *const both[] = { server, latestConnection };
    const auto countPolls = [&](std::initializer_list<int> turns) {
        system.polls = 0;
        for (const int each : turns)
            both[each]->processEvents();
        return system.polls;
    };
    for (int i = 0; i < 2; ++i) {
        VIO_EventGenerator::beginPass();
        EXPECT_EQ(countPolls({ i }), 1);
    }
    VIO_EventGenerator::beginPass();
    EXPECT_EQ(countPolls({ 0, 1 }), 1);
    EXPECT_EQ(countPolls({ 0, 1 }), 1);   // of a loop that does not call beginPass
}

TEST_F(ListenerTest, AConnectionMayGoInsideItsRequest) {
    listen();
    handler = [](const std::string &, KIT_NetSocket &socket) { socket.close(); };
    PortClient closing(port);
    EXPECT_EQ(ask(closing, "\x04"), "(ended)");
    handler = [this](const std::string &delivery, KIT_NetSocket &socket) {
        delete latestConnection;
        answer(socket, delivery);
    };
    PortClient destroying(port);
    EXPECT_EQ(ask(destroying, "x"), "(ended)");
    EXPECT_EQ(connections, 0);
}

TEST_F(ListenerTest, ServesOthersInsideARequestButNotItsOwnPeer) {
    listen();
    PortClient inner(port), outer(port);
    handler = [&](const std::string &delivery, KIT_NetSocket &socket) {
        if (delivery == "outer") {
            // Else what its peer sends meanwhile would end each wait of the loop for nothing.
            EXPECT_EQ(latestConnection->getFileDescriptor(), -1);
            outer.send("next");
            EXPECT_EQ(ask(inner, "inner"), "inner");
            EXPECT_EQ(deliveries.size(), 2u);
        }
        answer(socket, delivery);
    };
    EXPECT_EQ(ask(outer, "outer"), "outer");
    EXPECT_EQ(ask(outer, ""), "next");
    EXPECT_EQ(deliveries, (std::vector<std::string>{ "outer", "inner", "next" }));
    EXPECT_GE(latestConnection->getFileDescriptor(), 0);
}

TEST_F(ListenerTest, ListensElsewhereToo) {
    static const struct {
        const char *option, *complaint;
        bool isServed;   // at another address of loopback
    } theCases[] = {
        { "", "", false },
        { "bind=any", "", true },
        { "bind:127.0.0.2", "", true },
        { "bind=192.0.2.1", "Cannot listen at 192.0.2.1\n", false },
        { "colour=red", "Wrong listener option colour=red\n", false },
    };
    for (const auto &c : theCases) {
        testing::internal::CaptureStderr();
        listen(c.option);
        expectServed();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.complaint);
        EXPECT_EQ(PortClient::canConnect(port, "127.0.0.2"), c.isServed) << c.option;
        if (c.isServed) {
            PortClient client(port, "127.0.0.2");
            EXPECT_EQ(ask(client, "x"), "[x]") << c.option;
        }
        delete server;
    }
}

TEST_F(ListenerTest, AChildThatEndsClosesItsPortOrDoesNot) {
    static const char *const theChild[] = { "true", nullptr };
    static bool theDestroysInside, theFlag;
    static int theCalls;
    for (const auto &[close, destroysInside] : { std::pair{ true, false }, { true, true }, { false, false } }) {
        theDestroysInside = destroysInside;
        theCalls = 0;
        listen();
        server->closeSocketOnChildExit(
            KITspawnvp(theChild, true, false), close,
            [](VIO_ServerSocketListener &listener, void *, bool flag) {
                ++theCalls;
                theFlag = flag;
                if (theDestroysInside)
                    delete &listener;
            },
            nullptr);
        runUntil([&, closes = close] { return closes ? !server : theCalls > 0; });
        EXPECT_EQ(theCalls, 1);
        EXPECT_EQ(theFlag, !close);
    }
    expectServed();
}

TEST_F(ListenerTest, APeerThatHasEndedGetsItsReply) {
    listen();
    for (const char *const request : { "x\n", "<?xml?>", "GET / HT" }) {
        PortClient client(port);
        client.send(request);
        client.endOutput();
        EXPECT_EQ(ask(client, ""), std::string("[") + request + "]");
        EXPECT_TRUE(isEnded(client));
    }
}

TEST_F(ListenerTest, ALongReplyGoesOutWhileOthersAreServed) {
    answerAtLength(20000000);
    listen();
    PortClient client(port);
    client.send("x");
    runUntil([&] { return !deliveries.empty(); });
    client.send("y");   // is not taken before the reply is read
    expectServed();
    EXPECT_EQ(deliveries, (std::vector<std::string>{ "x", "plain\n" }));
    EXPECT_EQ(ask(client, "").size(), 20000000u);
    EXPECT_EQ(ask(client, "").size(), 20000000u);
}

TEST_F(ListenerTest, AReplyIsGivenUp) {
    answerAtLength(20000000);
    for (const char *const option : { "", "wait=0.05", "max-bytes=1000" }) {
        listen(option);
        PortClient client(port);
        client.send("x");
        runUntil([&] { return !deliveries.empty(); });
        if (!*option)
            client.reset();
        runUntil([&] { return connections == 0; });
        expectServed();
        deliveries.clear();
        delete server;
    }
}

TEST_F(ListenerTest, ARequestThatStopsGetsAFailureAndAnEnd) {
    readAfterDelivery(6);
    listen("wait=0.05");
    PortClient client(port);
    EXPECT_EQ(ask(client, thePost + "123"), "");
    EXPECT_EQ(readResult, KIT_NetSocket::Ended);
    EXPECT_EQ(deliveries, std::vector<std::string>{ thePost });
    EXPECT_TRUE(isEnded(client));
    // A read that the framing did not foresee.
    PortClient another(port);
    EXPECT_EQ(ask(another, "x"), "");
    EXPECT_EQ(readResult, KIT_NetSocket::Ended);
    EXPECT_EQ(ask(another, "plain\n"), "[plain\n]");
}

TEST_F(ListenerTest, TheFailureIsReadableWhileTheRequestStillComes) {
    readAfterDelivery(6);
    listen("max-bytes=100");
    serveDuring([&] {
        const PortClient client(port);
        EXPECT_EQ(client.askBlocking("POST / HTTP/1.1\r\nContent-Length: 30000000\r\n\r\n" +
                                     std::string(30000000, 'x')),
                  "");
        EXPECT_EQ(client.askBlocking(""), "(ended)");
    });
    EXPECT_EQ(deliveries.size(), 1u);
    expectServed();
}

TEST_F(ListenerTest, InterruptsAndShortMovesLoseNothing) {
    WrongSystem system;
    system.interrupts = 2;
    system.longestMove = 3;
    listen();
    EXPECT_EQ(ask(port, "<?xml version='1.0'?><orvlang>echo</orvlang>"),
              "[<?xml version='1.0'?><orvlang>echo</orvlang>]");
}

TEST_F(ListenerTest, OtherUsersAreRefused) {
    WrongSystem system;
    system.knowsOwner = true;
    const struct {
        const char *who;
        std::optional<OSL_SocketOwner> owner;
        bool isServed;
        const char *option = "";
    } theCases[] = {
        { "this user", OSL_SocketOwner{ ::geteuid(), 7 }, true },
        { "root", OSL_SocketOwner{ 0, 7 }, true },
        { "another user", OSL_SocketOwner{ 12345, 7 }, false },
        { "a socket that has no owner any more", OSL_SocketOwner{ 0, 0 }, false },
        { "another machine", std::nullopt, false },
        { "anyone", std::nullopt, true, "user=any" },
    };
    for (const auto &c : theCases) {
        system.owner = c.owner;
        listen(c.option);
        EXPECT_EQ(ask(port, "x"), c.isServed ? "[x]" : "(ended)") << c.who;
        delete server;
    }
}

TEST_F(ListenerTest, TheSystemKnowsWhoAPeerIs) {
    // Both ways to ask find what is there and nothing else.
    listen();
    PortClient client(port);
    EXPECT_EQ(ask(client, "x"), "[x]");
    sockaddr_storage own, peer;
    OSL_System &system = OSLsystem();
    const int descriptor = latestConnection->getFileDescriptor();
    ASSERT_TRUE(system.getOwnAddress(descriptor, own) && system.getPeerAddress(descriptor, peer));
    for (auto *const find : { OSLfindSocketOwner, OSLsearchSocketOwner }) {
        const std::optional<OSL_SocketOwner> owner = find(peer, own);
        ASSERT_TRUE(owner);
        EXPECT_EQ(owner->user, ::geteuid());
        EXPECT_NE(owner->inode, 0u);
        EXPECT_FALSE(find(own, own));
    }
    // This one listens, and is no peer.
    ASSERT_TRUE(system.getOwnAddress(server->getFileDescriptor(), own));
    EXPECT_FALSE(OSLfindSocketOwner(own, peer) && OSLfindSocketOwner(own, own));
}

TEST_F(ListenerTest, NoMoreClientsThanAllowed) {
    listen("clients=2");
    PortClient a(port), b(port);
    EXPECT_EQ(ask(a, "a"), "[a]");
    EXPECT_EQ(ask(b, "b"), "[b]");
    EXPECT_EQ(ask(port, "c"), "(ended)");
    a.reset();
    runUntil([&] { return connections == 1; });
    expectServed();
}

TEST_F(ListenerTest, NoDescriptorLeft) {
    WrongSystem system;
    listen();
    PortClient inTime(port);
    EXPECT_EQ(ask(inTime, "a"), "[a]");
    system.descriptorsLeft = 0;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(ask(port, "x"), "(ended)");
    EXPECT_EQ(ask(inTime, "b"), "[b]");
    system.descriptorsLeft = 100;
    expectServed();
}

TEST_F(ListenerTest, NoDescriptorLeftToWatchAPort) {
    WrongSystem system;
    system.canPoll = false;
    listen("bind:127.0.0.2");
    const char *const child[] = { "true", nullptr };
    const int pid = KITspawnvp(child, true, false);
    server->closeSocketOnChildExit(pid, true, nullptr, nullptr);
    siginfo_t info;
    waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT);
    EXPECT_FALSE(server->checkChild());
    system.canPoll = true;
    runUntil([&] { return !server; });

    system.canPoll = false;
    listen("bind:127.0.0.2");
    system.canPoll = true;
    expectServed();
    PortClient elsewhere(port, "127.0.0.2");
    EXPECT_EQ(ask(elsewhere, "x"), "[x]");
}

TEST_F(ListenerTest, AcceptFails) {
    WrongSystem system;
    listen();
    for (const int error : { EMFILE, ENFILE, ECONNABORTED, EINTR, ENOBUFS }) {
        system.acceptError = error;
        PortClient client(port);
        runUntil([&, before = system.accepts] { return system.accepts > before + 1; });
        system.acceptError = 0;
        EXPECT_EQ(ask(client, "x"), "[x]") << error;
    }
}

}   // namespace
