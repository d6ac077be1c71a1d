// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/net/VIO_EventGenerator.h>

class VIO_Acceptor;

/// Waits for connections on a listening socket and has an object made for each.
class CMD_API VIO_ServerSocketListener : public VIO_EventGenerator {
public:
    /// Called when a child has ended. With `flag` false the listener is to be taken out of whatever list it is in, and
    /// destroys itself behind the call.
    using ChildExitCallback = void (*)(VIO_ServerSocketListener &listener, void *data, bool flag);
    /// Called with each delivery of a connection that has no class of its own.
    using DataCallback = void (*)(void *data, const char *bytes, int length, KIT_NetSocket &socket);

    /// Takes the socket over. The port number is kept as the caller gave it; the callback may be null. A wrong word in
    /// the option text is named on standard error; null counts as empty.
    VIO_ServerSocketListener(KIT_NetSocket *socket, int portNumber, DataCallback callback, void *data,
                             const char *listenerOption);
    /// Closes the socket; connections that were made stay. The derived class has uninstalled the generator.
    ~VIO_ServerSocketListener() override;

    const char *getClassName() const override;
    int getFileDescriptor() const override;
    bool areEventsWaiting() override;
    int processEvents() override;
    virtual const char *className() const = 0;

    /// The port that the socket really has.
    int getPort() const { return port; }
    /// The port number as the caller gave it.
    int getPortNumber() const { return portNumber; }
    /// Watches a child process. When it has ended the callback, unless null, is called, with a `flag` that is false
    /// when `close` is set; the listener then destroys itself.
    void closeSocketOnChildExit(int pid, bool close, ChildExitCallback callback, void *data);
    /// Asks whether the watched child has ended, and does then what is told above. True when it had.
    bool checkChild();

    /// Option words that hold for all listeners made from now on, where their own text says nothing else. They replace
    /// those of an earlier call; null for none. A wrong word is named on standard error.
    static void setDefaultListenerOption(const char *words);

protected:
    /// A connection waits to be taken by a VIO_ConnectedSocketListener.
    virtual void createConnectedSocketListener() = 0;
    /// The socket at which it waits.
    KIT_NetSocket &getSocket();
    const char *getListenerOption() const { return listenerOption.c_str(); }

private:
    friend class VIO_Acceptor;

    /// The child whose end closes the port.
    struct Child {
        int pid = 0;   // 0 for none
        bool close = false;
        ChildExitCallback callback = nullptr;
        void *data = nullptr;
    };

    std::unique_ptr<KIT_NetSocket> replaceByAny(std::unique_ptr<KIT_NetSocket> loopback) const;
    void listenToo(const std::string &address);
    void addSocket(std::unique_ptr<KIT_NetSocket> socket);

    const int port;
    const int portNumber;
    const KIT_String listenerOption;
    std::vector<std::unique_ptr<VIO_Acceptor>> acceptors;   // the first one is the one of loopback
    VIO_Acceptor *current = nullptr;                        // the one whose connection is being taken
    Child child;
};
