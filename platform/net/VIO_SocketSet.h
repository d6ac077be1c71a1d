// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <unordered_map>

/// What VIO_SocketSet asks when its descriptor is ready or its time has come.
class VIO_SocketUser {
public:
    /// Does one step of work. False when there was nothing to do. It may destroy the user.
    virtual bool serve(long long now) = 0;
    /// When to be served even if nothing comes, by the monotonic clock in nanoseconds; 0 for never.
    virtual long long getDueTime() const = 0;

protected:
    ~VIO_SocketUser() = default;
};

/// All sockets of the listeners of the process, asked together: one turn serves what is ready on any of them, and goes
/// on as long as more comes at once. So a client that asks again as soon as it has its reply need not wait for the event
/// loop to come round, and a thousand idle connections cost one question to the system.
///
/// Turns nest: what is served may run the event loop. A user is known by a number that is never given twice, so that
/// work which finds its user gone just leaves it.
class VIO_SocketSet {
public:
    using Id = unsigned long long;   // never 0

    static VIO_SocketSet &inst();

    /// The user is borrowed until `remove`. 0 when the system has no descriptor left for it.
    Id add(VIO_SocketUser &user, int descriptor);
    /// A descriptor that was closed already may be negative.
    void remove(Id id, int descriptor);
    bool holds(Id id) const { return users.contains(id); }
    /// What a descriptor is asked for: data, or room to write.
    void awaitOutput(Id id, int descriptor, bool output);

    /// Serves what is ready and due. Each user's generator calls this in its own turn; the first one in each turn of the
    /// event loop does the work for all. 0 when the caller is gone behind it, else 1.
    int turn(Id caller);

private:
    struct Entry {
        VIO_SocketUser *user;
        unsigned lastTurn;   // the turn of the set in which it last asked for one
    };

    bool beginTurn(Id caller);
    void serveAll(long long now);
    bool serveReady(long long end);
    void awaitMore();
    void takeDue(long long now);
    void collect(long long wait);

    int poll = -1;   // open while there are users
    Id lastId = 0;
    unsigned turnCount = 0;
    unsigned turnPass = 0;        // the pass of the event loop in which the latest turn began
    long long crowdedUntil = 0;   // others want the processor for longer than a moment
    std::unordered_map<Id, Entry> users;
    std::deque<Id> ready;   // outlives a turn that ran out of time, so that all get their turn
};
