// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_ByteQueue;

/// A TCP socket: one that listens on this machine, or one end of a connection. Its descriptor is close-on-exec and does
/// not block. A peer that is gone shows in a result, never in a signal.
///
/// A connection has two buffers. `gather` fills one, from which `read` returns bytes first. `write` queues in the other
/// one what the peer does not read at once, until `sendQueued` sends it.
class CMD_API KIT_NetSocket {
public:
    /// The results of read and write.
    enum Result : int { Ok = 0, TryAgain = -1, Failed = -2, Ended = -6 };

    /// Returns 1024 to 65535 unchanged, 1024 + n mod 64512 for any other n.
    static int mapToUnprivilegedPort(int port);
    /// Opens a socket that listens on that port of the loopback address, or one that is connected to it; with `blocking`
    /// waits for the connection. Returns never null: ask isUsable. The caller owns the result.
    static KIT_NetSocket *newSocket(int port, bool listening, bool blocking);
    /// Opens a socket that listens on that port of a numeric address, of either IP version; with null, of all addresses
    /// of this machine. Ask isUsable.
    static std::unique_ptr<KIT_NetSocket> newListening(const char *address, int port);

    ~KIT_NetSocket();
    KIT_NetSocket(const KIT_NetSocket &) = delete;
    KIT_NetSocket &operator=(const KIT_NetSocket &) = delete;

    bool isUsable() const { return descriptor >= 0; }
    /// Closes the socket. What is queued is lost.
    void close();
    /// Sends or queues all bytes and returns Ok, with their number in `written`; TryAgain when nothing was done. Any other
    /// result is a failure: the peer is gone, or more would be queued than the limit allows, which closes the socket.
    int write(const void *data, int length, int *written);
    /// Waits up to `timeout` milliseconds (negative: up to the limit) for bytes and sets `got` to their number. Returns
    /// Ended when no more will come or the limit is over, TryAgain when nothing came.
    int read(void *buffer, int length, int *got, int timeout);

    /// Negative when not usable.
    int getDescriptor() const { return descriptor; }
    /// Returns the number of the port on this side; 0 when not usable.
    int getPort() const;

    /// Limits the bytes that `write` may queue, and the milliseconds that a `read` without time-out waits for a peer that
    /// sends nothing, negative for no limit. Without a call nothing is limited.
    void setLimits(std::size_t queuedBytes, int readWait);

    /// Accepts a connection that waits at a listening socket; null when there is none. When no descriptor is left for
    /// it, it is closed, so that it does not wait for ever.
    std::unique_ptr<KIT_NetSocket> accept();
    /// Returns the number of connections that were accepted, or closed in this way.
    unsigned getAcceptCount() const { return acceptCount; }

    /// Receives bytes into the buffer, without waiting, until it holds about `most`. Returns how many came.
    std::size_t gather(std::size_t most);
    /// Returns what was gathered and not read or dropped; valid until the next call of gather.
    std::string_view getGathered() const;
    /// Drops the first bytes of the buffer. Their memory stays valid until the next call of gather or trim.
    void dropGathered(std::size_t count);
    /// Frees the memory of empty buffers that have become large.
    void trim();
    /// Makes `read` return Ended after what was gathered, whatever the peer still sends.
    void endInput() { inputEnded = true; }
    /// Returns whether no more bytes can be gathered.
    bool isInputEnded() const { return inputEnded; }

    /// Sends as much of the queue as the peer reads. Returns the number of bytes.
    std::size_t sendQueued();
    std::size_t getQueued() const;
    /// Closes this side of the connection. What the peer sends can still be read.
    void endOutput();
    /// Receives and drops what is there. Returns false when no more will come.
    bool drain();

private:
    KIT_NetSocket();
    bool listenAt(const char *address, int port);
    bool connectTo(int port, bool wait);
    int receive(void *buffer, std::size_t count);
    int receiveOnce(void *buffer, std::size_t count) const;
    std::size_t sendSome(std::string_view bytes);
    void dropWaiting();

    int descriptor = -1;
    int reserve = -1;   // of a listening socket: closed for a moment when there is no other descriptor
    unsigned acceptCount = 0;
    bool inputEnded = false;
    std::size_t mostQueued = static_cast<std::size_t>(-1);
    int readWait = -1;
    std::unique_ptr<KIT_ByteQueue> input;
    std::unique_ptr<KIT_ByteQueue> output;
};
