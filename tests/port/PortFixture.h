// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include <orvlang/engine/CMD_Manager.h>

/// A client on a socket of its own. `ask` waits for replies in the test's event loop.
class PortClient {
public:
    /// Connects at once; the test fails when the port does not answer.
    explicit PortClient(int port, const char *address = "127.0.0.1");
    ~PortClient();
    PortClient(const PortClient &) = delete;
    PortClient &operator=(const PortClient &) = delete;

    static bool canConnect(int port, const char *address = "127.0.0.1");
    void send(std::string_view bytes) const;
    /// Says that nothing more will be sent.
    void endOutput() const;
    /// Closes so that the other side gets a reset.
    void reset();
    /// Sends a request and waits for its reply in the system: for threads of their own. Without the NUL.
    std::string askBlocking(std::string_view request) const;
    /// Takes what is there into `received`; without waiting.
    void receive();

    std::string received;
    bool ended = false;   // the other side has closed

private:
    int descriptor;
};

/// A manager whose ports are served by the test's own thread.
class PortTest : public testing::Test {
protected:
    PortTest();

    /// Opens a free port by `openport` with these options; gives its number.
    int open(const std::string &options = "");
    /// A number in the range of ports at which nobody listens.
    static int findFreePort();
    /// Runs text and gives what it wrote, errors in braces.
    std::string run(const std::string &text);
    /// Turns of the event loop until the condition holds. The test fails when it does not for very long.
    static void runUntil(const std::function<bool()> &condition);
    /// Sends one request and gives the reply without its NUL; "(ended)" when the connection ended before.
    static std::string ask(PortClient &client, std::string_view request);
    /// The same by a connection of its own.
    static std::string ask(int port, std::string_view request);
    /// Serves while another thread does the work.
    template <typename Work>
    static void serveDuring(Work work) {
        std::atomic<bool> done = false;
        std::thread thread([&] {
            work();
            done = true;
        });
        runUntil([&] { return done.load(); });
        thread.join();
    }
    /// Serves while a program runs.
    Outcome serveProgram(const std::vector<std::string> &words, const std::string &input = "") const;
    /// The descriptors of the process, in order.
    static std::vector<int> listDescriptors();

    WorkingFolder folder;
    CMD_Manager manager;
};
