// SPDX-License-Identifier: Apache-2.0
// Peers that stall, drip, flood, reset or do not belong here. After each of them others are served as ever.
#include "ListenerFixture.h"

#include <cerrno>
#include <optional>

#include <sys/wait.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Process.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

/// The real system, but for what a test has it do wrong.
class WrongSystem : public OSL_System {
public:
    WrongSystem() : before(OSLsetSystem(this)) {}
    ~WrongSystem() override { OSLsetSystem(before); }

    std::optional<OSL_SocketOwner> owner;   // of each peer
    bool knowsOwner = false;                // else the system is asked
    size_t longestMove = SIZE_MAX;          // bytes that one call sends or receives
    int interrupts = 0;                     // calls that fail so before one succeeds
    int acceptError = 0;                    // of each call
    int descriptorsLeft = 100;
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
    int createPoll() override { return canPoll ? OSL_System::createPoll() : -1; }
    int accept(int descriptor) override {
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

    OSL_System *const before;
    int calls = 0;
};

class AttackTest : public ListenerTest {
protected:
    /// Has each request answered with that many bytes.
    void answerAtLength(size_t length) {
        handler = [length](const std::string &delivery, KIT_NetSocket &socket) {
            answer(socket, delivery == "plain\n" ? "[plain\n]" : std::string(length, 'x'));
        };
    }
    /// Has an HTTP request read as the protocol does, with `length` bytes behind its delivery.
    void readBehindDelivery(int length) {
        handler = [this, length](const std::string &delivery, KIT_NetSocket &socket) {
            char buffer[100];
            int got = 0;
            const bool isPlain = delivery == "plain\n";
            readResult = isPlain ? readResult : socket.read(buffer, length, &got, -1);
            answer(socket, isPlain ? "[plain\n]" : std::string(buffer, static_cast<size_t>(got)));
        };
    }
    int readResult = 0;
};

const std::string thePost = "POST / HTTP/1.1\r\nContent-Length: 4\r\n\r\n";

TEST_F(AttackTest, APeerThatHasEndedGetsItsReply) {
    open();
    for (const char *const request : { "x\n", "<?xml?>", "GET / HT" }) {
        Client client(*this);
        client.send(request);
        client.endOutput();
        EXPECT_EQ(reply(client), std::string("[") + request + "]");
        EXPECT_TRUE(isEnded(client));
    }
    runUntil([&] { return connections == 0; });
    expectServed();
}

TEST_F(AttackTest, APeerThatIsGoneHurtsNobody) {
    answerAtLength(10000000);
    open();
    {
        Client client(*this);
        client.send("x");
        client.reset();
        Client another(*this);
        another.send("x");
        another.reading = false;
        runUntil([&] { return !deliveries.empty(); });
        another.reset();
    }
    expectServed();
    runUntil([&] { return connections == 0; });
}

TEST_F(AttackTest, ALongReplyGoesOutWhileOthersAreServed) {
    answerAtLength(20000000);
    open();
    Client client(*this);
    client.reading = false;
    client.send("x");
    runUntil([&] { return !deliveries.empty(); });
    client.send("y");   // is not taken before the reply is read
    expectServed();
    EXPECT_EQ(deliveries, (std::vector<std::string>{ "x", "plain\n" }));
    client.reading = true;
    runUntil([&] { return deliveries.size() == 3; });
    runUntil([&] { return client.received.size() == 40000002; });
    EXPECT_EQ(client.received.find('\0'), 20000000u);
}

TEST_F(AttackTest, AReplyThatIsNotReadIsGivenUp) {
    answerAtLength(20000000);
    open("wait=0.05");
    Client client(*this);
    client.reading = false;
    client.send("x");
    runUntil([&] { return connections == 1; });
    runUntil([&] { return connections == 0; });
    expectServed();
}

TEST_F(AttackTest, AReplyThatIsTooLongIsGivenUp) {
    answerAtLength(20000000);
    open("max-bytes=1000");
    Client client(*this);
    client.send("x");
    EXPECT_TRUE(isEnded(client));
    EXPECT_LT(client.received.size(), 20000000u);
    expectServed();
}

TEST_F(AttackTest, ARequestThatStopsGetsAFailureAndAnEnd) {
    readBehindDelivery(6);
    open("wait=0.05");
    Client client(*this);
    client.send(thePost + "123");
    EXPECT_EQ(reply(client), "");
    EXPECT_EQ(readResult, KIT_NetSocket::Ended);
    EXPECT_EQ(deliveries, std::vector<std::string>{ thePost });
    EXPECT_TRUE(isEnded(client));
    expectServed();
}

TEST_F(AttackTest, AReadThatNobodyForesawEnds) {
    readBehindDelivery(50);
    open("wait=0.05");
    Client client(*this);
    client.send("x");
    EXPECT_EQ(reply(client), "");
    EXPECT_EQ(readResult, KIT_NetSocket::Ended);
    EXPECT_EQ(ask(client, "plain\n"), "[plain\n]");
}

TEST_F(AttackTest, TheFailureIsReadableWhileTheRequestStillComes) {
    readBehindDelivery(6);
    open("max-bytes=100");
    Client client(*this);
    client.send("POST / HTTP/1.1\r\nContent-Length: 30000000\r\n\r\n" + std::string(30000000, 'x'));
    EXPECT_EQ(reply(client), "");
    EXPECT_EQ(deliveries.size(), 1u);
    EXPECT_TRUE(isEnded(client));
    client.close();
    runUntil([&] { return connections == 0; });
    expectServed();
}

TEST_F(AttackTest, ADrippingRequestHoldsNobodyUp) {
    open();
    Client client(*this);
    for (const char byte : thePost) {
        client.send({ &byte, 1 });
        runTurn();
    }
    for (const char byte : { '1', '2', '3', '4', '\r', '\n' }) {
        expectServed();
        client.send({ &byte, 1 });
    }
    EXPECT_EQ(reply(client), "[" + thePost + "1234\r\n]");
}

TEST_F(AttackTest, AFloodHoldsNobodyUp) {
    open("max-bytes=5000000");
    Client client(*this);
    client.send(std::string(20000000, 'x'));
    runTurn();
    expectServed();
    EXPECT_TRUE(isEnded(client));
    expectServed();
}

TEST_F(AttackTest, InterruptsAndShortMovesLoseNothing) {
    WrongSystem system;
    system.interrupts = 2;
    system.longestMove = 3;
    open();
    Client client(*this);
    EXPECT_EQ(ask(client, "<?xml version='1.0'?><orvlang>echo</orvlang>"),
              "[<?xml version='1.0'?><orvlang>echo</orvlang>]");
}

TEST_F(AttackTest, OtherUsersAreRefused) {
    WrongSystem system;
    system.knowsOwner = true;
    open();
    const struct {
        const char *who;
        std::optional<OSL_SocketOwner> owner;
        bool isServed;
    } theCases[] = {
        { "this user", OSL_SocketOwner{ ::geteuid(), 7 }, true },
        { "root", OSL_SocketOwner{ 0, 7 }, true },
        { "another user", OSL_SocketOwner{ 12345, 7 }, false },
        { "a socket that nobody has any more", OSL_SocketOwner{ 0, 0 }, false },
        { "another machine", std::nullopt, false },
    };
    for (const auto &c : theCases) {
        system.owner = c.owner;
        Client client(*this);
        client.send("x");
        runUntil([&] { return client.ended || !client.received.empty(); });
        EXPECT_EQ(client.received.empty(), !c.isServed) << c.who;
    }
    EXPECT_EQ(deliveries.size(), 2u);
}

TEST_F(AttackTest, AnybodyIsLetInOnDemand) {
    WrongSystem system;
    system.knowsOwner = true;
    open("user=any");
    expectServed();
}

TEST_F(AttackTest, TheSystemTellsWhoAPeerIs) {
    // Both ways to ask find what is there and nothing else.
    open();
    Client client(*this);
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
    // This one listens, and is nobody's peer.
    ASSERT_TRUE(system.getOwnAddress(server->getFileDescriptor(), own));
    EXPECT_FALSE(OSLfindSocketOwner(own, peer) && OSLfindSocketOwner(own, own));
}

TEST_F(AttackTest, NoMoreClientsThanAllowed) {
    open("clients=2");
    Client a(*this), b(*this);
    EXPECT_EQ(ask(a, "a"), "[a]");
    EXPECT_EQ(ask(b, "b"), "[b]");
    Client c(*this);
    EXPECT_TRUE(isEnded(c));
    a.close();
    runUntil([&] { return connections == 1; });
    expectServed();
}

TEST_F(AttackTest, NoDescriptorLeft) {
    WrongSystem system;
    open();
    Client inTime(*this);
    EXPECT_EQ(ask(inTime, "a"), "[a]");
    system.descriptorsLeft = 0;
    for (int i = 0; i < 3; ++i) {
        Client tooLate(*this);
        EXPECT_TRUE(isEnded(tooLate));
    }
    EXPECT_EQ(ask(inTime, "b"), "[b]");
    system.descriptorsLeft = 100;
    expectServed();
}

TEST_F(AttackTest, NoDescriptorLeftToWatchAPort) {
    static const char *const theChild[] = { "true", nullptr };
    WrongSystem system;
    system.canPoll = false;
    open("bind:127.0.0.2");
    const int pid = KITspawnvp(theChild, true, false);
    server->closeSocketOnChildExit(pid, true, nullptr, nullptr);
    siginfo_t info;
    waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT);
    runTurn();
    EXPECT_TRUE(server);
    system.canPoll = true;
    runUntil([&] { return !server; });

    system.canPoll = false;
    open("bind:127.0.0.2");
    system.canPoll = true;
    expectServed();
    Client elsewhere(*this, "127.0.0.2");
    EXPECT_EQ(ask(elsewhere, "x"), "[x]");
}

TEST_F(AttackTest, AcceptFails) {
    WrongSystem system;
    open();
    for (const int error : { EMFILE, ENFILE, ECONNABORTED, EINTR, ENOBUFS }) {
        system.acceptError = error;
        Client client(*this);
        runTurn();
        runTurn();
        system.acceptError = 0;
        EXPECT_EQ(ask(client, "x"), "[x]") << error;
    }
}

}   // namespace
