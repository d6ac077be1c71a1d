// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/net/VIO_EventGenerator.h>

class VIO_Connection;

/// What a connection has received and not passed on yet.
struct VIO_ReceivedBytes {
    std::string_view bytes;   // not empty
    bool isEnded;             // no more bytes will come
    long long now;            // nanoseconds of the monotonic clock
};

/// How much of the received bytes is one request.
struct VIO_RequestExtent {
    enum Action {
        Wait,      // ask again when more bytes have come, or at `until`; end the connection if no more can come
        Deliver,   // call the callback with the next `length` bytes, at least one
        Refuse     // end the connection
    };
    Action action;
    std::size_t length = 0;
    long long until = 0;    // as VIO_ReceivedBytes::now; 0 for no limit
    std::size_t skip = 0;   // first drop so many bytes
    bool isLast = false;    // Deliver: drop all bytes after the request, and end the connection after its reply
};

/// One connection that a listening socket has accepted, made on the heap. It reads in its turns, asks how much of the
/// received bytes is one request, and passes each request to a callback; when the connection has ended it destroys
/// itself. The derived class installs the generator at the end of its constructor, when isConnected, and uninstalls it
/// in its destructor.
class CMD_API VIO_ConnectedSocketListener : public VIO_EventGenerator {
public:
    using DataCallback = void (*)(void *data, const char *bytes, int length, KIT_NetSocket &socket);

    /// Accepts the connection that waits at the listening socket. When there is none, or it was refused, isConnected is
    /// false at once. The option text is that of the port.
    VIO_ConnectedSocketListener(KIT_NetSocket &listening, DataCallback callback, void *data,
                                const char *listenerOption);
    ~VIO_ConnectedSocketListener() override;

    bool isConnected() const { return connection != nullptr; }

    const char *getClassName() const override;
    int getFileDescriptor() const override;
    bool areEventsWaiting() override;
    int processEvents() override;
    virtual const char *className() const = 0;

protected:
    /// Decides how much of the received bytes is one request; unless overridden, all of them. Called again with the same
    /// bytes and what came after them until it decides. Must not destroy this object.
    virtual VIO_RequestExtent findRequest(const VIO_ReceivedBytes &received);

private:
    friend class VIO_Connection;

    std::unique_ptr<VIO_Connection> connection;   // null when none was accepted
};
