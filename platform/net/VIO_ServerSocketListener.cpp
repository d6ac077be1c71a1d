// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_ServerSocketListener.h>

#include <algorithm>
#include <iostream>
#include <utility>

#include <orvlang/platform/kit/KIT_Process.h>
#include <orvlang/platform/net/VIO_Acceptor.h>
#include <orvlang/platform/net/VIO_ListenerOptions.h>

VIO_ServerSocketListener::VIO_ServerSocketListener(KIT_NetSocket *socket, int portNumber, DataCallback, void *,
                                                   const char *option)
    : port(socket->getPort()), portNumber(portNumber), listenerOption(option) {
    const VIO_ListenerOptions options = VIO_ListenerOptions::parse(option, &std::cerr);
    std::unique_ptr<KIT_NetSocket> own(socket);
    if (options.bind == "any")
        own = replaceByAny(std::move(own));
    addSocket(std::move(own));
    if (!options.bind.empty() && options.bind != "any")
        listenToo(options.bind);
}

VIO_ServerSocketListener::~VIO_ServerSocketListener() = default;

/// Loopback is one of all addresses, and two sockets cannot share it.
std::unique_ptr<KIT_NetSocket>
VIO_ServerSocketListener::replaceByAny(std::unique_ptr<KIT_NetSocket> loopback) const {
    loopback->close();
    std::unique_ptr<KIT_NetSocket> any = KIT_NetSocket::newListening(nullptr, port);
    if (any->isUsable())
        return any;
    std::cerr << "Cannot listen at other addresses than loopback" << std::endl;
    return std::unique_ptr<KIT_NetSocket>(KIT_NetSocket::newSocket(port, true, false));
}

void VIO_ServerSocketListener::listenToo(const std::string &address) {
    std::unique_ptr<KIT_NetSocket> socket = KIT_NetSocket::newListening(address.c_str(), port);
    if (socket->isUsable())
        addSocket(std::move(socket));
    else
        std::cerr << "Cannot listen at " << address << std::endl;
}

void VIO_ServerSocketListener::addSocket(std::unique_ptr<KIT_NetSocket> socket) {
    acceptors.push_back(std::make_unique<VIO_Acceptor>(*this, std::move(socket)));
    current = acceptors.front().get();
}

void VIO_ServerSocketListener::setDefaultListenerOption(const char *words) {
    VIO_ListenerOptions::setDefault(words, &std::cerr);
}

const char *VIO_ServerSocketListener::getClassName() const {
    return className();
}

int VIO_ServerSocketListener::getFileDescriptor() const {
    return acceptors.front()->getSocket().getDescriptor();
}

KIT_NetSocket &VIO_ServerSocketListener::getSocket() {
    return current->getSocket();
}

bool VIO_ServerSocketListener::areEventsWaiting() {
    return std::any_of(acceptors.begin(), acceptors.end(),
                       [](const auto &acceptor) { return acceptor->isReady(); });
}

int VIO_ServerSocketListener::processEvents() {
    for (const auto &acceptor : acceptors)
        acceptor->watch();
    const VIO_SocketSet::Id id = acceptors.front()->watch();
    checkChild();
    // From here on this object may be gone.
    return VIO_SocketSet::inst().turn(id);
}

void VIO_ServerSocketListener::closeSocketOnChildExit(int pid, bool close, ChildExitCallback callback,
                                                      void *data) {
    child = { pid, close, callback, data };
}

bool VIO_ServerSocketListener::checkChild() {
    if (child.pid == 0)
        return false;
    // The callback may destroy this listener, which shows by its number; without one it has to wait.
    const VIO_SocketSet::Id id = acceptors.front()->watch();
    if (id == 0 || KITisRunning(child.pid, nullptr))
        return false;
    const Child ended = std::exchange(child, {});
    if (ended.callback)
        ended.callback(*this, ended.data, !ended.close);
    if (ended.close && VIO_SocketSet::inst().holds(id))
        delete this;
    return true;
}
