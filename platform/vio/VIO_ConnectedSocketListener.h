// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/kit/KIT_NetSocket.h>
#include <orvlang/platform/vio/VIO_EventGenerator.h>

class VIO_Connection;

/// One connection that a listening socket has taken, made on the heap. It reads in its turns and hands each delivery to
/// a callback; when the connection has ended it destroys itself. The derived class installs the generator at the end of
/// its constructor, when isConnected, and uninstalls it in its destructor.
class CMD_API VIO_ConnectedSocketListener : public VIO_EventGenerator {
public:
    using DataCallback = void (*)(void *data, const char *bytes, int length, KIT_NetSocket &socket);

    /// Takes the connection that waits at the listening socket. When none could be taken, or it was refused, isConnected
    /// is false at once. The option text is the one of the port.
    VIO_ConnectedSocketListener(KIT_NetSocket &listening, DataCallback callback, void *data,
                                const char *listenerOption);
    ~VIO_ConnectedSocketListener() override;

    bool isConnected() const { return connection != nullptr; }

    const char *getClassName() const override;
    int getFileDescriptor() const override;
    bool areEventsWaiting() override;
    int processEvents() override;
    virtual const char *className() const = 0;

private:
    std::unique_ptr<VIO_Connection> connection;   // null when none was taken
};
