// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_NetSocket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

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
constexpr std::size_t theReadSize = 4096;   // room for one ordinary request
constexpr std::size_t theLongReadSize = 65536;
constexpr int theDrainSteps = 16;

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

/// False when the text is no numeric address.
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

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

int openListening(const sockaddr_storage &address) {
    OSL_System &system = OSLsystem();
    const int descriptor = system.socket(address.ss_family, SOCK_STREAM, 0);
    if (descriptor < 0)
        return -1;
    // Connections of an earlier port that are not quite over do not keep a new one from opening.
    system.setSocketOption(descriptor, SOL_SOCKET, SO_REUSEADDR, 1);
    // Connections have it from here.
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

KIT_NetSocket::KIT_NetSocket() = default;

KIT_NetSocket::~KIT_NetSocket() {
    close();
}

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
    // One socket for both IP versions, where the machine knows both.
    if (address ? !made->listenAt(address, port)
                : !made->listenAt("::", port) && !made->listenAt("0.0.0.0", port))
        made->close();
    return made;
}

bool KIT_NetSocket::listenAt(const char *text, int port) {
    sockaddr_storage address;
    if (!makeAddress(text, port, address))
        return false;
    descriptor = openListening(address);
    if (descriptor >= 0 && reserve < 0)
        reserve = OSLsystem().open("/dev/null", O_RDONLY, 0);
    return descriptor >= 0 && reserve >= 0;
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

void KIT_NetSocket::close() {
    for (int *const held : { &descriptor, &reserve }) {
        if (*held >= 0)
            OSLsystem().close(*held);
        *held = -1;
    }
    inputEnded = true;
    if (input)
        input->clear();
    output.reset();
}

int KIT_NetSocket::getPort() const {
    sockaddr_storage address;
    if (!isUsable() || !OSLsystem().getOwnAddress(descriptor, address))
        return 0;
    return ntohs(address.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6 &>(address).sin6_port
                                               : reinterpret_cast<sockaddr_in &>(address).sin_port);
}

void KIT_NetSocket::setLimits(std::size_t queuedBytes, int wait) {
    mostQueued = queuedBytes;
    readWait = wait;
}

std::unique_ptr<KIT_NetSocket> KIT_NetSocket::accept() {
    if (!isUsable())
        return nullptr;
    const int taken = OSLsystem().accept(descriptor);
    if (taken < 0) {
        if (errno == EMFILE || errno == ENFILE)
            dropWaiting();
        return nullptr;
    }
    ++takenCount;
    std::unique_ptr<KIT_NetSocket> made(new KIT_NetSocket);
    made->descriptor = taken;
    return made;
}

/// Closes the connection that waits, by means of the descriptor that is kept for this.
void KIT_NetSocket::dropWaiting() {
    OSL_System &system = OSLsystem();
    if (reserve >= 0)
        system.close(reserve);
    const int taken = system.accept(descriptor);
    if (taken >= 0) {
        system.close(taken);
        ++takenCount;
    }
    reserve = system.open("/dev/null", O_RDONLY, 0);
}

int KIT_NetSocket::write(const void *data, int length, int *written) {
    *written = 0;
    if (!isUsable() || length < 0)
        return Failed;
    const std::string_view bytes(static_cast<const char *>(data), static_cast<std::size_t>(length));
    // What waits comes first.
    const std::size_t sent = getQueued() > 0 ? 0 : sendSome(bytes);
    if (!isUsable())
        return Failed;
    const std::string_view rest = bytes.substr(sent);
    if (!rest.empty()) {
        if (rest.size() > mostQueued - std::min(mostQueued, getQueued())) {
            close();
            return Failed;
        }
        if (!output)
            output = std::make_unique<KIT_ByteQueue>();
        output->append(rest);
    }
    *written = length;
    return Ok;
}

/// How many of the bytes the peer took. When it is gone the socket is closed.
std::size_t KIT_NetSocket::sendSome(std::string_view bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t n = OSLsystem().send(descriptor, bytes.data() + sent, bytes.size() - sent);
        if (n >= 0) {
            sent += static_cast<std::size_t>(n);
        } else if (errno != EINTR) {
            if (!isForLater(errno))
                close();
            break;
        }
    }
    return sent;
}

std::size_t KIT_NetSocket::sendQueued() {
    if (getQueued() == 0)
        return 0;
    const std::size_t sent = sendSome(output->view());
    if (output)
        output->take(sent);
    return sent;
}

std::size_t KIT_NetSocket::getQueued() const {
    return output ? output->size() : 0;
}

void KIT_NetSocket::endOutput() {
    if (isUsable())
        OSLsystem().shutdown(descriptor, SHUT_WR);
}

bool KIT_NetSocket::drain() {
    char dropped[16384];
    int n = TryAgain;
    for (int i = 0; i < theDrainSteps && (n = receiveOnce(dropped, sizeof dropped)) > 0; ++i)
        ;
    return n != Ended;
}

/// As receiveOnce; an end is remembered.
int KIT_NetSocket::receive(void *buffer, std::size_t count) {
    const int n = inputEnded ? Ended : receiveOnce(buffer, count);
    inputEnded = n == Ended;
    return n;
}

/// Reads once, without waiting: the number of bytes, or a Result. A connection that was reset has ended.
int KIT_NetSocket::receiveOnce(void *buffer, std::size_t count) const {
    ssize_t n;
    do
        n = OSLsystem().receive(descriptor, buffer, count);
    while (n < 0 && errno == EINTR);
    if (n > 0)
        return static_cast<int>(n);
    return n < 0 && isForLater(errno) ? TryAgain : Ended;
}

int KIT_NetSocket::read(void *buffer, int length, int *got, int timeout) {
    *got = 0;
    if (length <= 0)
        return Failed;
    if (input && !input->isEmpty()) {
        const std::size_t count = std::min(static_cast<std::size_t>(length), input->size());
        std::memcpy(buffer, input->view().data(), count);
        input->take(count);
        *got = static_cast<int>(count);
        return Ok;
    }
    int result = receive(buffer, static_cast<std::size_t>(length));
    if (result == TryAgain) {
        const int wait = timeout < 0 ? readWait : timeout;
        const int ready = wait == 0 ? 0 : OSLsystem().waitReadable(descriptor, wait);
        if (ready == 0)
            return timeout < 0 ? Ended : TryAgain;
        result = ready < 0 ? TryAgain : receive(buffer, static_cast<std::size_t>(length));
    }
    if (result < 0)
        return result;
    *got = result;
    return Ok;
}

std::size_t KIT_NetSocket::gather(std::size_t most) {
    if (!input)
        input = std::make_unique<KIT_ByteQueue>();
    const std::size_t before = input->size();
    std::size_t wanted = theReadSize;
    while (!inputEnded && input->size() < most) {
        char *const room = input->prepare(wanted);
        const std::size_t size = input->getRoom();
        const int n = receive(room, size);
        if (n <= 0)
            break;
        input->commit(static_cast<std::size_t>(n));
        if (static_cast<std::size_t>(n) < size)
            break;
        wanted = theLongReadSize;
    }
    return input->size() - before;
}

std::string_view KIT_NetSocket::getGathered() const {
    return input ? input->view() : std::string_view();
}

void KIT_NetSocket::takeGathered(std::size_t count) {
    input->take(count);
}

void KIT_NetSocket::pretendGathered(std::string_view bytes) {
    input->append(bytes);
}
