// SPDX-License-Identifier: Apache-2.0
#include "ListenerFixture.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

ListenerTest *theTest = nullptr;

}   // namespace

class TestConnection : public VIO_ConnectedSocketListener {
public:
    TestConnection(ListenerTest &test, KIT_NetSocket &listening, const char *option)
        : VIO_ConnectedSocketListener(listening, receive, this, option), test(test) {
        ++test.connections;
        test.latestConnection = this;
        if (isConnected())
            installGenerator();
    }
    ~TestConnection() override { --test.connections; }
    const char *className() const override { return "TestConnection"; }

private:
    static void receive(void *data, const char *bytes, int length, KIT_NetSocket &socket) {
        ListenerTest &test = static_cast<TestConnection *>(data)->test;
        const std::string delivery(bytes, static_cast<size_t>(length));
        test.deliveries.push_back(delivery);
        test.handler(delivery, socket);
    }

    ListenerTest &test;
};

class TestServer : public VIO_ServerSocketListener {
public:
    TestServer(ListenerTest &test, KIT_NetSocket *socket, const char *option)
        : VIO_ServerSocketListener(socket, test.port, nullptr, nullptr, option), test(test) {}
    ~TestServer() override { test.server = nullptr; }
    const char *className() const override { return "TestServer"; }

protected:
    void createConnectedSocketListener() override {
        auto *const made = new TestConnection(test, getSocket(), getListenerOption());
        if (!made->isConnected())
            delete made;
    }

private:
    ListenerTest &test;
};

ListenerTest::ListenerTest() {
    theTest = this;
    VIO_EventGenerator::setInstaller(install);
    handler = [](const std::string &delivery, KIT_NetSocket &socket) { answer(socket, "[" + delivery + "]"); };
}

ListenerTest::~ListenerTest() {
    delete server;
    while (!generators.empty())
        delete generators.back();
    VIO_EventGenerator::setInstaller(nullptr);
}

int ListenerTest::install(VIO_EventGenerator *generator, int install) {
    std::vector<VIO_EventGenerator *> &all = theTest->generators;
    generator->getClassName();   // whenever it is called, the generator is an object
    if (install)
        all.push_back(generator);
    return install ? 1 : static_cast<int>(std::erase(all, generator));
}

void ListenerTest::open(const char *option) {
    KIT_NetSocket *const socket = KIT_NetSocket::newSocket(0, true, false);
    ASSERT_TRUE(socket->isUsable());
    port = socket->getPort();
    server = new TestServer(*this, socket, option);
    server->installGenerator();
}

void ListenerTest::runTurn() {
    for (size_t i = generators.size(); i-- > 0;)
        if (i < generators.size())
            generators[i]->processEvents();
    for (Client *const client : clients)
        client->move();
}

void ListenerTest::runUntil(const std::function<bool()> &condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return ADD_FAILURE() << "nothing came of it";
        runTurn();
        if (!condition())
            waitForAnything();
    }
}

/// Lets a millisecond pass, or less when there is something to do.
void ListenerTest::waitForAnything() const {
    std::vector<pollfd> wanted;
    for (const VIO_EventGenerator *const generator : generators)
        wanted.push_back({ generator->getFileDescriptor(), POLLIN, 0 });
    ::poll(wanted.data(), wanted.size(), 1);
}

std::string ListenerTest::reply(Client &client) {
    runUntil([&] { return client.received.ends_with('\0') || client.ended; });
    if (!client.received.ends_with('\0'))
        return "(end behind \"" + client.received + "\")";
    client.received.pop_back();
    return std::exchange(client.received, {});
}

std::string ListenerTest::ask(Client &client, std::string_view request) {
    client.send(request);
    return reply(client);
}

bool ListenerTest::isEnded(Client &client) {
    runUntil([&] { return client.ended; });
    return client.ended;
}

void ListenerTest::expectServed() {
    Client client(*this);
    EXPECT_EQ(ask(client, "plain\n"), "[plain\n]");
}

void ListenerTest::answer(KIT_NetSocket &socket, const std::string &text) {
    int written;
    socket.write(text.c_str(), static_cast<int>(text.size() + 1), &written);
}

std::vector<int> ListenerTest::listDescriptors() {
    std::vector<int> all;
    for (int i = 0; i < 1024; ++i)
        if (::fcntl(i, F_GETFD) >= 0)
            all.push_back(i);
    return all;
}

Client::Client(ListenerTest &test, const char *text) : test(test) {
    descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::inet_addr(text);
    address.sin_port = htons(static_cast<in_port_t>(test.port));
    ended = ::connect(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0;
    test.clients.push_back(this);
}

Client::~Client() {
    close();
    std::erase(test.clients, this);
}

void Client::close() {
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

void Client::reset() {
    const linger hard = { 1, 0 };
    ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    close();
}

void Client::send(std::string_view bytes) {
    unsent += bytes;
    move();
}

void Client::endOutput() {
    outputEnding = true;
    move();
}

/// Sends and receives what is possible without waiting.
void Client::move() {
    if (descriptor < 0)
        return;
    const ssize_t sent = ::send(descriptor, unsent.data(), unsent.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    unsent.erase(0, static_cast<size_t>(std::max<ssize_t>(sent, 0)));
    if (outputEnding && unsent.empty())
        ::shutdown(descriptor, SHUT_WR);
    char buffer[65536];
    while (reading && !ended) {
        const ssize_t n = ::recv(descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
        if (n > 0)
            received.append(buffer, static_cast<size_t>(n));
        else if (n == 0 || errno != EAGAIN)
            ended = true;
        else
            break;
    }
}
