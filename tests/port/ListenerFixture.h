// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_NetSocket.h>
#include <orvlang/platform/vio/VIO_ConnectedSocketListener.h>
#include <orvlang/platform/vio/VIO_ServerSocketListener.h>

class Client;

/// A small event loop, a port whose deliveries a function of the test answers, and clients in the same process.
class ListenerTest : public testing::Test {
protected:
    using Handler = std::function<void(const std::string &delivery, KIT_NetSocket &socket)>;

    ListenerTest();
    ~ListenerTest() override;

    /// Opens a port of the system's choice.
    void open(const char *option = nullptr);

    void runTurn();
    /// Makes turns of the loop until the condition holds. The test fails when it does not for very long.
    void runUntil(const std::function<bool()> &condition);
    /// Until the client's latest reply ends in a NUL; gives it without, and takes it out of what was received.
    std::string reply(Client &client);
    /// Sends a plain request and gives the reply.
    std::string ask(Client &client, std::string_view request);
    /// A new client is served as ever: what the test did to the port hurt nobody else.
    void expectServed();
    bool isEnded(Client &client);

    static void answer(KIT_NetSocket &socket, const std::string &text);
    /// What descriptors the process has, in order.
    static std::vector<int> listDescriptors();

    /// What is done with a delivery. Unless a test sets it, the reply is the delivery in brackets.
    Handler handler;
    std::vector<std::string> deliveries;
    std::vector<VIO_EventGenerator *> generators;   // installed
    VIO_ServerSocketListener *server = nullptr;
    VIO_ConnectedSocketListener *latestConnection = nullptr;
    int connections = 0;   // alive
    int port = 0;

private:
    friend class Client;
    friend class TestServer;
    friend class TestConnection;

    static int install(VIO_EventGenerator *generator, int install);
    void waitForAnything() const;

    std::vector<Client *> clients;
};

/// A client on a socket of its own, which sends and receives in the turns of the test's loop.
class Client {
public:
    explicit Client(ListenerTest &test, const char *address = "127.0.0.1");
    ~Client();
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    void send(std::string_view bytes);
    /// Says that nothing more will be sent.
    void endOutput();
    void close();
    /// Closes so that the other side gets a reset.
    void reset();

    std::string received;
    bool ended = false;    // the other side has closed
    bool reading = true;   // else what comes is left where it is

private:
    friend class ListenerTest;
    void move();

    ListenerTest &test;
    int descriptor;
    std::string unsent;
    bool outputEnding = false;
};
