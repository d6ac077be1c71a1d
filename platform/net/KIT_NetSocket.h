// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_ByteQueue;

/// A TCP socket: one that listens on this machine, or one end of a connection. Its descriptor is close-on-exec and does
/// not block; a peer that is gone gives a result, never a signal.
///
/// A connection has a buffer on either side. What was gathered ahead is what `read` gives first; what the peer does not
/// take at once waits, in order, until `sendQueued` gets rid of it.
class CMD_API KIT_NetSocket {
public:
    /// What read and write give.
    enum Result : int { Ok = 0, TryAgain = -1, Failed = -2, Ended = -6 };

    /// 1024 to 65535 stay as they are, any other n becomes 1024 + n mod 64512.
    static int mapToUnprivilegedPort(int port);
    /// With `listening`, a socket on that port of the loopback address, else one that is connected to it. `blocking`
    /// is for the connected one: whether the connection is waited for. Never null: ask isUsable. The caller owns it.
    static KIT_NetSocket *newSocket(int port, bool listening, bool blocking);
    /// A socket that listens on that port of a numeric address, of either IP version; with null, of all addresses of
    /// this machine. Ask isUsable.
    static std::unique_ptr<KIT_NetSocket> newListening(const char *address, int port);

    ~KIT_NetSocket();
    KIT_NetSocket(const KIT_NetSocket &) = delete;
    KIT_NetSocket &operator=(const KIT_NetSocket &) = delete;

    bool isUsable() const { return descriptor >= 0; }
    /// What is queued is lost.
    void close();
    /// Ok with the number of bytes taken in `written`, which is all of them; TryAgain when nothing was done; anything
    /// else is a failure: the peer is gone, or more would be queued than the limit allows, which closes the socket.
    int write(const void *data, int length, int *written);
    /// Waits up to `timeout` milliseconds (negative: up to the limit) for bytes and gives how many came in `got`. Ended
    /// when the peer is done or the limit is over, TryAgain when nothing came.
    int read(void *buffer, int length, int *got, int timeout);

    /// Negative when not usable.
    int getDescriptor() const { return descriptor; }
    /// The number of the port on this side; 0 when not usable.
    int getPort() const;

    /// How many bytes `write` may queue, and for how many milliseconds, negative for no limit, a `read` without
    /// time-out waits for a peer that sends nothing. Without a call nothing is limited.
    void setLimits(std::size_t queuedBytes, int readWait);

    /// Takes a connection that waits at a listening socket; null when there is none. When there is no descriptor left
    /// for it, it is closed, so that it does not wait for ever.
    std::unique_ptr<KIT_NetSocket> accept();
    /// How many connections were taken or closed so.
    unsigned getTaken() const { return takenCount; }

    /// Reads what is there into the buffer, without waiting, until it holds `most` bytes or so; gives how many came.
    std::size_t gather(std::size_t most);
    /// What was gathered and not read. Good until the next call of gather.
    std::string_view getGathered() const;
    /// Takes the first bytes out of the buffer. Where they stand they stay readable until the next call of gather or
    /// trim.
    void takeGathered(std::size_t count);
    /// Gives back what an empty buffer holds in memory beyond the ordinary.
    void trim();
    /// Has `read` give Ended behind what was gathered, whatever the peer still sends.
    void endInput() { inputEnded = true; }
    /// Whether no more bytes can be gathered.
    bool isInputEnded() const { return inputEnded; }

    /// Sends what is queued as far as the peer takes it; gives how many bytes that were.
    std::size_t sendQueued();
    std::size_t getQueued() const;
    /// Tells the peer that nothing more will come. What it sends can still be read.
    void endOutput();
    /// Reads and drops what is there. False when the peer is done.
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
    int reserve = -1;   // of a listening socket: given up for a moment when there is no other descriptor
    unsigned takenCount = 0;
    bool inputEnded = false;
    std::size_t mostQueued = static_cast<std::size_t>(-1);
    int readWait = -1;
    std::unique_ptr<KIT_ByteQueue> input;
    std::unique_ptr<KIT_ByteQueue> output;
};
