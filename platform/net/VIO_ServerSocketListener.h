// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/net/VIO_EventGenerator.h>

class VIO_Acceptor;

/// Waits for connections on a listening socket and has the derived class make an object for each.
class CMD_API VIO_ServerSocketListener : public VIO_EventGenerator {
public:
    /// Called when a child has ended. With `flag` false the listener destroys itself after the call, so the callback must
    /// drop all references to it.
    using ChildExitCallback = void (*)(VIO_ServerSocketListener &listener, void *data, bool flag);
    /// Called with each delivery of a connection that has no class of its own.
    using DataCallback = void (*)(void *data, const char *bytes, int length, KIT_NetSocket &socket);

    /// Owns the socket from now on. Keeps the port number as it is passed; the callback may be null. A wrong word in the
    /// option text is reported on standard error; null counts as empty.
    VIO_ServerSocketListener(KIT_NetSocket *socket, int portNumber, DataCallback callback, void *data,
                             const char *listenerOption);
    /// Closes the socket; connections that were made stay. The derived class has uninstalled the generator.
    ~VIO_ServerSocketListener() override;

    const char *getClassName() const override;
    int getFileDescriptor() const override;
    bool areEventsWaiting() override;
    int processEvents() override;
    virtual const char *className() const = 0;

    /// Returns the port that the socket has.
    int getPort() const { return port; }
    /// Returns the port number that was passed to the constructor.
    int getPortNumber() const { return portNumber; }
    /// Watches a child process. When it has ended the callback, unless null, is called, with a `flag` that is false
    /// when `close` is set; the listener then destroys itself.
    void closeSocketOnChildExit(int pid, bool close, ChildExitCallback callback, void *data);
    /// Checks whether the watched child has ended; if so, does what is described above and returns true.
    bool checkChild();

    /// Sets the option words of all listeners made from now on, unless their own text says something else. They replace
    /// those of an earlier call; null for none. A wrong word is reported on standard error.
    static void setDefaultListenerOption(const char *words);

protected:
    /// Makes a VIO_ConnectedSocketListener for the connection that waits.
    virtual void createConnectedSocketListener() = 0;
    /// Returns the socket at which it waits.
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
    VIO_Acceptor *current = nullptr;                        // the one whose connection is being accepted
    Child child;
};
