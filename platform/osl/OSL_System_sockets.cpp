// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OSL_System.h>

#include <cerrno>

#include <poll.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <time.h>

namespace {

constexpr long long theNanosecondsPerSecond = 1000000000;
constexpr long long theNanosecondsPerMillisecond = 1000000;

}   // namespace

int OSL_System::socket(int domain, int type, int protocol) {
    return ::socket(domain, type | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol);
}

int OSL_System::bind(int descriptor, const sockaddr *address, socklen_t length) {
    return ::bind(descriptor, address, length);
}

int OSL_System::listen(int descriptor, int backlog) {
    return ::listen(descriptor, backlog);
}

int OSL_System::connect(int descriptor, const sockaddr *address, socklen_t length) {
    return ::connect(descriptor, address, length);
}

int OSL_System::accept(int descriptor) {
    return ::accept4(descriptor, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

int OSL_System::shutdown(int descriptor, int how) {
    return ::shutdown(descriptor, how);
}

int OSL_System::setSocketOption(int descriptor, int level, int option, int value) {
    return ::setsockopt(descriptor, level, option, &value, sizeof value);
}

int OSL_System::getSocketError(int descriptor) {
    int error = 0;
    socklen_t length = sizeof error;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &length) < 0 ? errno : error;
}

bool OSL_System::getOwnAddress(int descriptor, sockaddr_storage &address) {
    socklen_t length = sizeof address;
    return ::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &length) == 0;
}

bool OSL_System::getPeerAddress(int descriptor, sockaddr_storage &address) {
    socklen_t length = sizeof address;
    return ::getpeername(descriptor, reinterpret_cast<sockaddr *>(&address), &length) == 0;
}

std::optional<OSL_SocketOwner> OSL_System::findSocketOwner(const sockaddr_storage &own,
                                                           const sockaddr_storage &peer) {
    return OSLfindSocketOwner(own, peer);
}

ssize_t OSL_System::send(int descriptor, const void *data, size_t count) {
    return ::send(descriptor, data, count, MSG_NOSIGNAL);
}

ssize_t OSL_System::receive(int descriptor, void *buffer, size_t count) {
    return ::recv(descriptor, buffer, count, 0);
}

int OSL_System::waitWritable(int descriptor, int milliseconds) {
    pollfd wanted = { descriptor, POLLOUT, 0 };
    return ::poll(&wanted, 1, milliseconds);
}

int OSL_System::createPoll() {
    return ::epoll_create1(EPOLL_CLOEXEC);
}

int OSL_System::controlPoll(int poll, int operation, int descriptor, unsigned events, unsigned long long data) {
    epoll_event event = {};
    event.events = events;
    event.data.u64 = data;
    return ::epoll_ctl(poll, operation, descriptor, &event);
}

int OSL_System::waitPoll(int poll, epoll_event *events, int count, long long nanoseconds) {
    if (nanoseconds % theNanosecondsPerMillisecond == 0)
        return ::epoll_wait(poll, events, count, static_cast<int>(nanoseconds / theNanosecondsPerMillisecond));
    const timespec time = { nanoseconds / theNanosecondsPerSecond, nanoseconds % theNanosecondsPerSecond };
    const int found = ::epoll_pwait2(poll, events, count, &time, nullptr);
    // An older kernel knows whole milliseconds only; to wait too long would be worse than not to wait.
    return found < 0 && errno == ENOSYS
               ? ::epoll_wait(poll, events, count, static_cast<int>(nanoseconds / theNanosecondsPerMillisecond))
               : found;
}

void OSL_System::yieldProcessor() {
    ::sched_yield();
}
