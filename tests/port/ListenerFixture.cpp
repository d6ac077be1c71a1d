// SPDX-License-Identifier: Apache-2.0
#include "ListenerFixture.h"

#include <orvlang/port/CMD_EvtMonitoringReader.h>
#include <orvlang/port/CMD_RequestFramer.h>

class TestConnection : public VIO_ConnectedSocketListener {
public:
    TestConnection(ListenerTest &test, KIT_NetSocket &listening, const char *option)
        : VIO_ConnectedSocketListener(listening, receive, this, option), test(test),
          framer(VIO_ListenerOptions::parse(option, nullptr)) {
        ++test.connections;
        test.latestConnection = this;
        if (isConnected())
            installGenerator();
    }
    ~TestConnection() override { --test.connections; }
    const char *className() const override { return "TestConnection"; }
    VIO_RequestExtent findRequest(const VIO_ReceivedBytes &received) override {
        return test.isFramed ? framer.findRequest(received)
                             : VIO_ConnectedSocketListener::findRequest(received);
    }

private:
    static void receive(void *data, const char *bytes, int length, KIT_NetSocket &socket) {
        ListenerTest &test = static_cast<TestConnection *>(data)->test;
        const std::string delivery(bytes, static_cast<size_t>(length));
        test.deliveries.push_back(delivery);
        if (delivery == "plain\n")
            ListenerTest::answer(socket, "[plain\n]");
        else
            test.handler(delivery, socket);
    }

    ListenerTest &test;
    CMD_RequestFramer framer;
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
    VIO_EventGenerator::setInstaller([](VIO_EventGenerator *generator, int install) {
        generator->getClassName();   // whenever it is called, the generator is an object
        return CMD_EvtMonitoringReader::installGeneratorCallback(generator, install);
    });
    handler = [](const std::string &delivery, KIT_NetSocket &socket) { answer(socket, "[" + delivery + "]"); };
}

ListenerTest::~ListenerTest() {
    delete server;
    runUntil([this] { return connections == 0; });
    VIO_EventGenerator::setInstaller(CMD_EvtMonitoringReader::installGeneratorCallback);
}

void ListenerTest::listen(const char *option) {
    KIT_NetSocket *const socket = KIT_NetSocket::newSocket(0, true, false);
    ASSERT_TRUE(socket->isUsable());
    port = socket->getPort();
    server = new TestServer(*this, socket, option);
    server->installGenerator();
}

void ListenerTest::expectServed() {
    EXPECT_EQ(ask(port, "plain\n"), "[plain\n]");
}

bool ListenerTest::isEnded(PortClient &client) {
    runUntil([&] {
        client.receive();
        return client.ended;
    });
    return client.ended;
}

void ListenerTest::answer(KIT_NetSocket &socket, const std::string &text) {
    int written;
    socket.write(text.c_str(), static_cast<int>(text.size() + 1), &written);
}

void ListenerTest::answerAtLength(size_t length) {
    handler = [length](const std::string &, KIT_NetSocket &socket) {
        answer(socket, std::string(length, 'x'));
    };
}

void ListenerTest::readAfterDelivery(int length) {
    handler = [this, length](const std::string &, KIT_NetSocket &socket) {
        char buffer[100];
        int got = 0;
        readResult = socket.read(buffer, length, &got, -1);
        answer(socket, std::string(buffer, static_cast<size_t>(got)));
    };
}
