// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/KIT_NetSocket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>

#include <orvlang/platform/kit/KIT_ByteQueue.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr std::size_t theReadSize = 4096;   // room for one ordinary request
constexpr std::size_t theLongReadSize = 65536;
constexpr int theDrainSteps = 16;

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

}   // namespace

KIT_NetSocket::KIT_NetSocket() = default;

KIT_NetSocket::~KIT_NetSocket() {
    close();
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

void KIT_NetSocket::setLimits(std::size_t queuedBytes, int wait) {
    mostQueued = queuedBytes;
    readWait = wait;
}

int KIT_NetSocket::write(const void *data, int length, int *written) {
    *written = 0;
    if (!isUsable() || length < 0)
        return Failed;
    const std::string_view bytes(static_cast<const char *>(data), static_cast<std::size_t>(length));
    // What is queued goes first.
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

/// Returns how many of the bytes were sent. When the peer is gone the socket is closed.
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
        output->drop(sent);
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
        input->drop(count);
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

void KIT_NetSocket::dropGathered(std::size_t count) {
    input->drop(count);
}

void KIT_NetSocket::trim() {
    for (KIT_ByteQueue *const queue : { input.get(), output.get() })
        if (queue)
            queue->trim();
}
