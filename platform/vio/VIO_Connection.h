// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/kit/KIT_NetSocket.h>
#include <orvlang/platform/vio/VIO_ListenerOptions.h>
#include <orvlang/platform/vio/VIO_SocketSet.h>

class VIO_ConnectedSocketListener;
struct VIO_RequestExtent;

/// The work of a VIO_ConnectedSocketListener: reads what arrives, hands on each delivery once it is complete, sends what
/// of a reply the peer did not take at once, and ends.
class VIO_Connection final : public VIO_SocketUser {
public:
    struct Receiver {
        void (*callback)(void *data, const char *bytes, int length, KIT_NetSocket &socket);
        void *data;
    };

    /// Takes the connection that waits at the listening socket; null when there is none or it is refused. The owner
    /// owns the result.
    static std::unique_ptr<VIO_Connection> take(VIO_ConnectedSocketListener &owner, KIT_NetSocket &listening,
                                                const Receiver &receiver, const VIO_ListenerOptions &options);
    ~VIO_Connection();

    VIO_SocketSet::Id getId() const { return id; }
    /// What it reads from; negative while it reads nothing.
    int getDescriptor() const;
    /// Whether a turn would find something to do.
    bool isReady() const;

    bool serve(long long now) override;
    long long getDueTime() const override { return dueTime; }

private:
    VIO_Connection(VIO_ConnectedSocketListener &owner, std::shared_ptr<KIT_NetSocket> socket, int port,
                   const Receiver &receiver, const VIO_ListenerOptions &options);

    static size_t &countOf(int port);
    void end();
    bool deliverRequests(long long now);
    VIO_RequestExtent findRequest(long long now) const;
    bool deliver(const VIO_RequestExtent &request);
    bool finishDelivery(bool last);
    bool sendRest(long long now);
    void awaitRoom(bool await);
    void closeSlowly();
    bool drain(long long now);

    VIO_ConnectedSocketListener &owner;
    const std::shared_ptr<KIT_NetSocket> socket;   // a delivery keeps it while its connection is destroyed
    const int port;
    const Receiver receiver;
    const VIO_ListenerOptions options;
    VIO_SocketSet::Id id = 0;
    bool delivering = false;
    bool awaitingRoom = false;   // a reply is not sent to its end
    bool ending = false;         // once the reply is sent, the connection is over
    bool draining = false;       // it is over for this side, and what still comes is dropped
    long long dueTime = 0;
    long long lastSent = 0;
};
