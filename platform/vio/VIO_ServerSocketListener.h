// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/kit/KIT_NetSocket.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/vio/VIO_EventGenerator.h>

/// Waits for connections on a listening socket and has an object made for each.
class CMD_API VIO_ServerSocketListener : public VIO_EventGenerator {
public:
    /// Called when a child has ended. With `flag` false the listener is to be taken out of whatever list it is in, and
    /// destroys itself behind the call.
    using ChildExitCallback = void (*)(VIO_ServerSocketListener &listener, void *data, bool flag);
    /// Called with each delivery of a connection that has no class of its own.
    using DataCallback = void (*)(void *data, const char *bytes, int length, KIT_NetSocket &socket);

    /// Takes the socket over. The port number is kept as the caller gave it; the callback may be null.
    VIO_ServerSocketListener(KIT_NetSocket *socket, int portNumber, DataCallback callback, void *data,
                             const char *listenerOption);
    /// Closes the socket; connections that were made stay.
    ~VIO_ServerSocketListener() override;

    const char *getClassName() const override;
    int getFileDescriptor() const override;
    bool areEventsWaiting() override;
    int processEvents() override;
    virtual const char *className() const = 0;

    /// The port that the socket really has.
    int getPort() const;
    /// The port number as the caller gave it.
    int getPortNumber() const { return portNumber; }
    /// Watches a child process; when it has ended the callback is called, and with `close` the listener closes itself.
    void closeSocketOnChildExit(int pid, bool close, ChildExitCallback callback, void *data);

protected:
    /// A connection waits to be taken by a VIO_ConnectedSocketListener.
    virtual void createConnectedSocketListener() = 0;
    KIT_NetSocket &getSocket() { return *socket; }
    const char *getListenerOption() const { return listenerOption.c_str(); }

private:
    std::unique_ptr<KIT_NetSocket> socket;
    const int portNumber;
    const KIT_String listenerOption;
};
