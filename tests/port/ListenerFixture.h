// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "PortFixture.h"
#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/net/VIO_ConnectedSocketListener.h>
#include <orvlang/platform/net/VIO_ServerSocketListener.h>

/// A port whose deliveries are answered by a function of the test.
class ListenerTest : public PortTest {
protected:
    using Handler = std::function<void(const std::string &delivery, KIT_NetSocket &socket)>;

    ListenerTest();
    ~ListenerTest() override;

    /// Opens a port of the system's choice.
    void listen(const char *option = nullptr);
    /// A new client is served as ever: what the test did to the port affects no other client.
    void expectServed();
    static bool isEnded(PortClient &client);
    static void answer(KIT_NetSocket &socket, const std::string &text);
    /// Answers each request with that many bytes.
    void answerAtLength(size_t length);
    /// Reads `length` bytes after the delivery, as the protocol does, and answers with them.
    void readAfterDelivery(int length);

    /// Unless a test sets it, the reply is the delivery in brackets.
    Handler handler;
    std::vector<std::string> deliveries;
    VIO_ServerSocketListener *server = nullptr;
    VIO_ConnectedSocketListener *latestConnection = nullptr;
    int connections = 0;   // alive
    int port = 0;
    bool isFramed = true;   // by the rules of a command port
    int readResult = 0;

private:
    friend class TestServer;
    friend class TestConnection;
};
