// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/net/VIO_ListenerOptions.h>
#include <orvlang/platform/net/VIO_SocketSet.h>

class VIO_ConnectedSocketListener;
struct VIO_RequestExtent;

/// The work of a VIO_ConnectedSocketListener: receives bytes, delivers each request once it is complete, sends the part of
/// a reply that the peer did not read at once, and ends.
class VIO_Connection final : public VIO_SocketUser {
public:
    struct Receiver {
        void (*callback)(void *data, const char *bytes, int length, KIT_NetSocket &socket);
        void *data;
    };

    /// Accepts the connection that waits at the listening socket; null when there is none or it is refused. The owner
    /// owns the result.
    static std::unique_ptr<VIO_Connection> accept(VIO_ConnectedSocketListener &owner, KIT_NetSocket &listening,
                                                  const Receiver &receiver, const VIO_ListenerOptions &options);
    ~VIO_Connection();

    VIO_SocketSet::Id getId() const { return id; }
    /// Returns the descriptor that it reads from; negative while it reads nothing.
    int getDescriptor() const;
    /// Returns whether a turn would find something to do.
    bool isReady() const;

    bool serve(long long now) override;
    long long getDueTime() const override { return dueTime; }

private:
    enum class State {
        Receiving,      // collects the bytes of the next request
        Delivering,     // the callback runs a request
        Replying,       // the peer has not read all of the reply
        ReplyingLast,   // likewise, and the connection ends after this reply
        Draining        // this side is closed; what the peer still sends is dropped
    };

    VIO_Connection(VIO_ConnectedSocketListener &owner, std::shared_ptr<KIT_NetSocket> socket, int port,
                   const Receiver &receiver, const VIO_ListenerOptions &options);

    static size_t &countOf(int port);
    void end();
    bool deliverRequests(long long now);
    VIO_RequestExtent findRequest(long long now) const;
    bool deliver(const VIO_RequestExtent &request);
    bool beginReply();
    bool sendRest(long long now);
    bool finishReply();
    void awaitOutput(bool output);
    void closeSlowly();
    bool drain(long long now);
    bool isReplying() const { return state == State::Replying || state == State::ReplyingLast; }

    VIO_ConnectedSocketListener &owner;
    const std::shared_ptr<KIT_NetSocket> socket;   // a delivery keeps it while its connection is destroyed
    const int port;
    const Receiver receiver;
    const VIO_ListenerOptions options;
    VIO_SocketSet::Id id = 0;
    State state = State::Receiving;
    long long dueTime = 0;
    long long lastSent = 0;
};
