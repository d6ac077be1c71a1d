// SPDX-License-Identifier: Apache-2.0
#include "PortConnection.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <orvlang/platform/net/KIT_NetSocket.h>

namespace {

using Addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

Addresses lookUp(const std::string &host, const std::string &port, int &error) {
    addrinfo wanted = {};
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    error = getaddrinfo(host.c_str(), port.c_str(), &wanted, &found);
    return { found, freeaddrinfo };
}

/// Returns the descriptor; negative, with errno set, when the address does not answer.
int connectTo(const addrinfo &address) {
    const int descriptor = socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol);
    if (descriptor < 0 || connect(descriptor, address.ai_addr, address.ai_addrlen) == 0)
        return descriptor;
    const int error = errno;
    close(descriptor);
    errno = error;
    return -1;
}

}   // namespace

PortConnection::~PortConnection() {
    if (descriptor >= 0)
        close(descriptor);
}

bool PortConnection::open(const std::string &host, int port) {
    const std::string number = std::to_string(KIT_NetSocket::mapToUnprivilegedPort(port));
    address = host + ":" + number;
    int error;
    const Addresses addresses = lookUp(host, number, error);
    if (!addresses)
        return fail("cannot find", gai_strerror(error));
    for (const addrinfo *each = addresses.get(); each && descriptor < 0; each = each->ai_next)
        descriptor = connectTo(*each);
    if (descriptor < 0)
        return fail("cannot connect to", std::strerror(errno));
    // A request is sent in one piece, so waiting for more gains nothing.
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return true;
}

bool PortConnection::exchange(std::string_view request, std::string &reply) {
    reply.clear();
    if (!send(request))
        return failExchange(errno);
    char piece[65536];
    while (!reply.ends_with('\0')) {
        const ssize_t got = recv(descriptor, piece, sizeof piece, 0);
        if (got > 0)
            reply.append(piece, static_cast<size_t>(got));
        else if (got == 0 || errno != EINTR)
            return failExchange(got == 0 ? 0 : errno);
    }
    reply.pop_back();
    return true;
}

void PortConnection::reportFailure() const {
    std::cout.flush();
    std::cerr << "orvlang: " << failure << std::endl;
}

/// Returns false, for the caller to return.
bool PortConnection::fail(const char *what, const std::string &reason) {
    failure = std::string(what) + " " + address + ": " + reason;
    return false;
}

/// The error is 0 when the connection ended instead of a reply.
bool PortConnection::failExchange(int error) {
    ended = error == 0 || error == EPIPE || error == ECONNRESET;
    return fail("no reply from", ended ? "the connection has ended" : std::strerror(error));
}

bool PortConnection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent >= 0)
            bytes.remove_prefix(static_cast<size_t>(sent));
        else if (errno != EINTR)
            return false;
    }
    return true;
}
