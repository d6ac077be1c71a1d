// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <unordered_map>

/// The user of a socket, which VIO_SocketSet calls when the socket is ready or the due time is over.
class VIO_SocketUser {
public:
    /// Does one step of work. Returns false when there was nothing to do. It may destroy the user.
    virtual bool serve(long long now) = 0;
    /// Returns the time of the next call even if nothing comes, by the monotonic clock in nanoseconds; 0 for never.
    virtual long long getDueTime() const = 0;

protected:
    ~VIO_SocketUser() = default;
};

/// All sockets of the listeners of the process. One turn serves those that are ready, and continues as long as more comes
/// at once. So a client that sends its next request as soon as it has a reply does not wait for the next pass of the
/// event loop, and a thousand idle connections cost one system call.
///
/// Turns nest: a user may run the event loop while it is served. A user is identified by a number that is never used
/// twice, so that a turn can skip users that are gone.
class VIO_SocketSet {
public:
    using Id = unsigned long long;   // never 0

    static VIO_SocketSet &inst();

    /// Adds a user, which is borrowed until `remove`. Returns 0 when the system has no descriptor left for it.
    Id add(VIO_SocketUser &user, int descriptor);
    /// Removes a user. A descriptor that was closed already may be negative.
    void remove(Id id, int descriptor);
    bool holds(Id id) const { return users.contains(id); }
    /// Waits for room to write instead of data, or for data again.
    void awaitOutput(Id id, int descriptor, bool output);

    /// Serves what is ready and due. The generator of each user calls this in its own turn; the first call in each pass
    /// of the event loop does the work for all. Returns 0 when the caller was removed meanwhile, else 1.
    int turn(Id caller);

private:
    struct Entry {
        VIO_SocketUser *user;
        unsigned lastTurn;   // the turn of the set when its generator had its last one
    };

    bool beginTurn(Id caller);
    void serveAll(long long now);
    bool serveReady(long long end);
    void awaitMore();
    void queueDue(long long now);
    void collect(long long wait);

    int poll = -1;   // open while there are users
    Id lastId = 0;
    unsigned turnCount = 0;
    unsigned turnPass = 0;        // the pass of the event loop in which the latest turn began
    long long crowdedUntil = 0;   // other processes keep the processor for long
    std::unordered_map<Id, Entry> users;
    std::deque<Id> ready;   // kept when a turn runs out of time, so that the next one continues there
};
