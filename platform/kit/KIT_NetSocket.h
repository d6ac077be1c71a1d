// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// A TCP socket: one that listens on this machine, or one end of a connection. Its descriptor is close-on-exec and does
/// not block; a peer that is gone gives a result, never a signal.
class CMD_API KIT_NetSocket {
public:
    /// What read and write give.
    enum Result : int { Ok = 0, TryAgain = -1, Failed = -2, Ended = -6 };

    /// 1024 to 65535 stay as they are, any other n becomes 1024 + n mod 64512.
    static int mapToUnprivilegedPort(int port);
    /// With `listening`, a socket on that port of the loopback address, else one that is connected to it. `blocking`
    /// is for the connected one: whether the connection is waited for. Never null: ask isUsable. The caller owns it.
    static KIT_NetSocket *newSocket(int port, bool listening, bool blocking);

    ~KIT_NetSocket();
    KIT_NetSocket(const KIT_NetSocket &) = delete;
    KIT_NetSocket &operator=(const KIT_NetSocket &) = delete;

    bool isUsable() const;
    void close();
    /// Ok with the number of bytes taken in `written`; TryAgain when nothing was done; anything else is a failure.
    int write(const void *data, int length, int *written);
    /// Waits up to `timeout` milliseconds (negative: without limit) for bytes and gives how many came in `got`. Ended
    /// when the peer is done, TryAgain when nothing came.
    int read(void *buffer, int length, int *got, int timeout);

private:
    KIT_NetSocket() = default;
};
