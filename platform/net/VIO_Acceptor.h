// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/net/VIO_SocketSet.h>

class VIO_ServerSocketListener;

/// One listening socket of a VIO_ServerSocketListener, which owns it.
class VIO_Acceptor final : public VIO_SocketUser {
public:
    VIO_Acceptor(VIO_ServerSocketListener &owner, std::unique_ptr<KIT_NetSocket> socket);
    ~VIO_Acceptor();

    KIT_NetSocket &getSocket() { return *socket; }
    /// Adds the socket to the socket set, once. Returns 0 while the system has no descriptor left for that.
    VIO_SocketSet::Id watch();
    bool isReady() const;

    bool serve(long long now) override;
    long long getDueTime() const override { return 0; }

private:
    VIO_ServerSocketListener &owner;
    const std::unique_ptr<KIT_NetSocket> socket;
    VIO_SocketSet::Id id = 0;
};
