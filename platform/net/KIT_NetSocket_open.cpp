// SPDX-License-Identifier: Apache-2.0
// Opening sockets: numbers of ports, listening, connecting and accepting. KIT_NetSocket.cpp has the rest, what goes over a
// connection.
#include <orvlang/platform/net/KIT_NetSocket.h>

#include <cerrno>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <orvlang/platform/kit/KIT_ByteQueue.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr int theFirstPort = 1024;
constexpr int thePortCount = 65536 - theFirstPort;

sockaddr_storage makeAddress(const in_addr &address, int port) {
    sockaddr_storage storage = {};
    auto &ip = reinterpret_cast<sockaddr_in &>(storage);
    ip.sin_family = AF_INET;
    ip.sin_addr = address;
    ip.sin_port = htons(static_cast<in_port_t>(port));
    return storage;
}

sockaddr_storage makeAddress(const in6_addr &address, int port) {
    sockaddr_storage storage = {};
    auto &ip = reinterpret_cast<sockaddr_in6 &>(storage);
    ip.sin6_family = AF_INET6;
    ip.sin6_addr = address;
    ip.sin6_port = htons(static_cast<in_port_t>(port));
    return storage;
}

/// Returns false when the text is not a numeric address.
bool makeAddress(const char *text, int port, sockaddr_storage &address) {
    in_addr four;
    in6_addr six;
    if (::inet_pton(AF_INET, text, &four) == 1)
        address = makeAddress(four, port);
    else if (::inet_pton(AF_INET6, text, &six) == 1)
        address = makeAddress(six, port);
    else
        return false;
    return true;
}

sockaddr_storage makeLoopback(int port) {
    return makeAddress(in_addr{ htonl(INADDR_LOOPBACK) }, port);
}

socklen_t lengthOf(const sockaddr_storage &address) {
    return address.ss_family == AF_INET6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
}

bool isPort(int number) {
    return number >= 0 && number < theFirstPort + thePortCount;
}

int openListening(const sockaddr_storage &address) {
    OSL_System &system = OSLsystem();
    const int descriptor = system.socket(address.ss_family, SOCK_STREAM, 0);
    if (descriptor < 0)
        return -1;
    // Connections of an earlier port that have not quite ended must not prevent a new one.
    system.setSocketOption(descriptor, SOL_SOCKET, SO_REUSEADDR, 1);
    // Accepted connections inherit it.
    system.setSocketOption(descriptor, IPPROTO_TCP, TCP_NODELAY, 1);
    if (address.ss_family == AF_INET6)
        system.setSocketOption(descriptor, IPPROTO_IPV6, IPV6_V6ONLY, 0);
    if (system.bind(descriptor, reinterpret_cast<const sockaddr *>(&address), lengthOf(address)) == 0 &&
        system.listen(descriptor, SOMAXCONN) == 0)
        return descriptor;
    system.close(descriptor);
    return -1;
}

}   // namespace

int KIT_NetSocket::mapToUnprivilegedPort(int port) {
    if (port >= theFirstPort && isPort(port))
        return port;
    const int rest = port % thePortCount;
    return theFirstPort + (rest < 0 ? rest + thePortCount : rest);
}

KIT_NetSocket *KIT_NetSocket::newSocket(int port, bool listening, bool blocking) {
    if (listening)
        return newListening("127.0.0.1", port).release();
    auto *const made = new KIT_NetSocket;
    if (!isPort(port) || !made->connectTo(port, blocking))
        made->close();
    return made;
}

std::unique_ptr<KIT_NetSocket> KIT_NetSocket::newListening(const char *address, int port) {
    std::unique_ptr<KIT_NetSocket> made(new KIT_NetSocket);
    if (!isPort(port))
        return made;
    made->reserve = OSLsystem().open("/dev/null", O_RDONLY, 0);
    // One socket for both IP versions, where the machine has both.
    const bool listens =
        address ? made->listenAt(address, port) : made->listenAt("::", port) || made->listenAt("0.0.0.0", port);
    if (made->reserve < 0 || !listens)
        made->close();
    return made;
}

bool KIT_NetSocket::listenAt(const char *text, int port) {
    sockaddr_storage address;
    if (makeAddress(text, port, address))
        descriptor = openListening(address);
    return isUsable();
}

bool KIT_NetSocket::connectTo(int port, bool wait) {
    OSL_System &system = OSLsystem();
    descriptor = system.socket(AF_INET, SOCK_STREAM, 0);
    if (descriptor < 0)
        return false;
    system.setSocketOption(descriptor, IPPROTO_TCP, TCP_NODELAY, 1);
    const sockaddr_storage address = makeLoopback(port);
    if (system.connect(descriptor, reinterpret_cast<const sockaddr *>(&address), lengthOf(address)) == 0)
        return true;
    if (errno != EINPROGRESS && errno != EINTR)
        return false;
    if (!wait)
        return true;
    while (system.waitWritable(descriptor, -1) < 0 && errno == EINTR)
        ;
    return system.getSocketError(descriptor) == 0;
}

int KIT_NetSocket::getPort() const {
    sockaddr_storage address;
    if (!isUsable() || !OSLsystem().getOwnAddress(descriptor, address))
        return 0;
    return ntohs(address.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6 &>(address).sin6_port
                                               : reinterpret_cast<sockaddr_in &>(address).sin_port);
}

std::unique_ptr<KIT_NetSocket> KIT_NetSocket::accept() {
    if (!isUsable())
        return nullptr;
    const int accepted = OSLsystem().accept(descriptor);
    if (accepted < 0) {
        if (errno == EMFILE || errno == ENFILE)
            dropWaiting();
        return nullptr;
    }
    ++acceptCount;
    std::unique_ptr<KIT_NetSocket> made(new KIT_NetSocket);
    made->descriptor = accepted;
    return made;
}

/// Closes the connection that waits, with the descriptor that is kept for this.
void KIT_NetSocket::dropWaiting() {
    OSL_System &system = OSLsystem();
    if (reserve >= 0)
        system.close(reserve);
    const int accepted = system.accept(descriptor);
    if (accepted >= 0) {
        system.close(accepted);
        ++acceptCount;
    }
    reserve = system.open("/dev/null", O_RDONLY, 0);
}
