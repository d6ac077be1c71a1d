// SPDX-License-Identifier: Apache-2.0
#include "PortFixture.h"

#include <chrono>
#include <sstream>
#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Wait.h>
#include <orvlang/port/CMD_EvtMonitoringReader.h>

namespace {

sockaddr_in addressOf(int port, const char *host) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = inet_addr(host);
    address.sin_port = htons(static_cast<in_port_t>(port));
    return address;
}

int connectTo(int port, const char *host) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = addressOf(port, host);
    if (connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

bool isFree(int port) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = addressOf(port, "127.0.0.1");
    const bool bound = bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                       listen(descriptor, 1) == 0;
    close(descriptor);
    return bound;
}

}   // namespace

PortClient::PortClient(int port, const char *address) : descriptor(connectTo(port, address)) {
    EXPECT_GE(descriptor, 0) << "no connection to port " << port;
}

PortClient::~PortClient() {
    close(descriptor);
}

bool PortClient::canConnect(int port, const char *address) {
    const int descriptor = connectTo(port, address);
    close(descriptor);
    return descriptor >= 0;
}

void PortClient::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0)
            return;
        bytes.remove_prefix(static_cast<size_t>(sent));
    }
}

void PortClient::endOutput() const {
    shutdown(descriptor, SHUT_WR);
}

void PortClient::reset() {
    const linger hard = { 1, 0 };
    setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    close(std::exchange(descriptor, -1));
}

std::string PortClient::askBlocking(std::string_view request) const {
    send(request);
    std::string reply;
    char piece[4096];
    for (ssize_t got; (got = recv(descriptor, piece, sizeof piece, 0)) > 0;) {
        reply.append(piece, static_cast<size_t>(got));
        if (reply.ends_with('\0'))
            return reply.substr(0, reply.size() - 1);
    }
    return "(ended)";
}

void PortClient::receive() {
    char piece[65536];
    ssize_t got;
    while ((got = recv(descriptor, piece, sizeof piece, MSG_DONTWAIT)) > 0)
        received.append(piece, static_cast<size_t>(got));
    ended |= got == 0 || errno == ECONNRESET;
}

PortTest::PortTest() : manager("port") {
    CMD_EvtMonitoringReader::inst();
}

int PortTest::open(const std::string &options) {
    for (;;) {
        const int port = findFreePort();
        const std::string message = run("openport " + options + " " + std::to_string(port));
        if (message.find("Couldn't open") != message.npos)
            continue;
        EXPECT_EQ(message, "");
        return port;
    }
}

int PortTest::findFreePort() {
    // Below those that the system gives to clients.
    static int next = 12000 + getpid() * 131 % 18000;
    do
        next = next < 31999 ? next + 1 : 12000;
    while (!isFree(next));
    return next;
}

std::string PortTest::run(const std::string &text) {
    std::ostringstream output, errors;
    manager.execute(text.c_str(), 0, &output, &errors, 1, true);
    return errors.str().empty() ? output.str() : output.str() + "{" + errors.str() + "}";
}

void PortTest::runUntil(const std::function<bool()> &condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << "nothing came of the waiting";
            return;
        }
        CMD_EvtMonitoringReader::pollEventGeneratorsCallback(false);
        KITnap(1);
    }
}

std::string PortTest::ask(PortClient &client, std::string_view request) {
    client.send(request);
    size_t end = std::string::npos;
    runUntil([&] {
        client.receive();
        end = client.received.find('\0');
        return client.ended || end != client.received.npos;
    });
    if (end == client.received.npos)
        return client.received + "(ended)";
    const std::string reply = client.received.substr(0, end);
    client.received.erase(0, end + 1);
    return reply;
}

std::string PortTest::ask(int port, std::string_view request) {
    PortClient client(port);
    return ask(client, request);
}

Outcome PortTest::serveProgram(const std::vector<std::string> &words, const std::string &input) const {
    Outcome outcome;
    serveDuring([&] { outcome = Program{ words, folder.path(), input, {} }.run(); });
    return outcome;
}

std::vector<int> PortTest::listDescriptors() {
    std::vector<int> all;
    for (int i = 0; i < 1024; ++i)
        if (fcntl(i, F_GETFD) >= 0)
            all.push_back(i);
    return all;
}
