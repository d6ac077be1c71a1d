// SPDX-License-Identifier: Apache-2.0
// The road of a request, step 2. The event generators of ports and connections call `turn`, the first one in each pass of
// the event loop serves the sockets of all: `collect` asks the system which are ready, `serveReady` calls the user of
// each, for a connection `VIO_Connection::serve`, for a listening socket `VIO_Acceptor::serve`.
#include <orvlang/platform/net/VIO_SocketSet.h>

#include <utility>

#include <sys/epoll.h>

#include <orvlang/platform/net/VIO_EventGenerator.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr long long theMicrosecond = 1000;   // nanoseconds
constexpr long long theLongestTurn = 10000 * theMicrosecond;
/// The time that a turn which served something waits for more.
constexpr long long theAfterWait = 80 * theMicrosecond;
/// When other processes kept the processor for that long, waits are by timer for a while.
constexpr long long theLongYield = 300 * theMicrosecond;
constexpr long long theCrowdedTime = 100000 * theMicrosecond;
constexpr int theMostEvents = 64;

}   // namespace

VIO_SocketSet &VIO_SocketSet::inst() {
    static KIT_Immortal<VIO_SocketSet> theSet;
    return theSet.object;
}

VIO_SocketSet::Id VIO_SocketSet::add(VIO_SocketUser &user, int descriptor) {
    OSL_System &system = OSLsystem();
    if (poll < 0)
        poll = system.createPoll();
    const Id id = lastId + 1;
    if (poll < 0 || system.controlPoll(poll, EPOLL_CTL_ADD, descriptor, EPOLLIN, id) != 0)
        return 0;
    lastId = id;
    users.emplace(id, Entry{ &user, turnCount });
    return id;
}

void VIO_SocketSet::remove(Id id, int descriptor) {
    if (users.erase(id) == 0)
        return;
    OSL_System &system = OSLsystem();
    if (descriptor >= 0)
        system.controlPoll(poll, EPOLL_CTL_DEL, descriptor, 0, 0);
    if (users.empty()) {
        system.close(poll);
        poll = -1;
        ready.clear();
    }
}

void VIO_SocketSet::awaitOutput(Id id, int descriptor, bool output) {
    if (descriptor >= 0)
        OSLsystem().controlPoll(poll, EPOLL_CTL_MOD, descriptor, output ? EPOLLOUT : EPOLLIN, id);
}

int VIO_SocketSet::turn(Id caller) {
    if (beginTurn(caller))
        serveAll(OSLsystem().getMonotonicTime());
    return holds(caller);
}

/// Returns false when the caller has had its turn already, with the other users in this pass of the event loop.
bool VIO_SocketSet::beginTurn(Id caller) {
    const auto found = users.find(caller);
    if (found == users.end())
        return false;
    const unsigned pass = VIO_EventGenerator::getPass();
    const bool isNew = pass != turnPass || found->second.lastTurn == turnCount;
    turnPass = pass;
    turnCount += isNew;
    found->second.lastTurn = turnCount;
    return isNew;
}

void VIO_SocketSet::serveAll(long long now) {
    const long long end = now + theLongestTurn;
    queueDue(now);
    if (ready.empty())
        collect(0);
    while (serveReady(end))
        awaitMore();
}

/// Waits a moment for peers to send again. A wait with a time-out would set a timer for each request, which may cost as
/// much as the request. So it yields the processor instead, until another process keeps the processor for long.
void VIO_SocketSet::awaitMore() {
    OSL_System &system = OSLsystem();
    const long long start = system.getMonotonicTime();
    if (start < crowdedUntil)
        return collect(theAfterWait);
    for (long long now = start; ready.empty() && now - start < theAfterWait;) {
        system.yieldProcessor();
        collect(0);
        const long long before = std::exchange(now, system.getMonotonicTime());
        if (now - before > theLongYield)
            crowdedUntil = now + theCrowdedTime;
    }
}

/// Serves what is ready. Returns false when there was nothing to do or the time is over.
bool VIO_SocketSet::serveReady(long long end) {
    bool served = false;
    while (!ready.empty()) {
        const long long now = OSLsystem().getMonotonicTime();
        if (now >= end)
            return false;
        const auto found = users.find(ready.front());
        ready.pop_front();
        if (found != users.end())
            served |= found->second.user->serve(now);
    }
    return served;
}

void VIO_SocketSet::queueDue(long long now) {
    for (const auto &[id, entry] : users)
        if (const long long due = entry.user->getDueTime(); due != 0 && due <= now)
            ready.push_back(id);
}

/// Waits up to that many nanoseconds for descriptors to become ready.
void VIO_SocketSet::collect(long long wait) {
    epoll_event events[theMostEvents];
    const int count = poll < 0 ? 0 : OSLsystem().waitPoll(poll, events, theMostEvents, wait);
    for (int i = 0; i < count; ++i)
        ready.push_back(events[i].data.u64);
}
