// SPDX-License-Identifier: Apache-2.0
#include <orvlang/port/CMD_ServerSocketCommandListener.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/port/CMD_ConnectedSocketCommandListener.h>

namespace {

unsigned theLastSerial = 0;

}   // namespace

CMD_ServerSocketCommandListener *
CMD_ServerSocketCommandListener::createCommandListener(int port, CMD_Manager &manager, bool separateErrors,
                                                       bool restrictToSafeCommands, const char *listenerOption,
                                                       bool mapPort, bool browserMode) {
    const int number = mapPort ? KIT_NetSocket::mapToUnprivilegedPort(port) : port;
    KIT_NetSocket *const socket = KIT_NetSocket::newSocket(number, true, false);
    if (!socket->isUsable()) {
        delete socket;
        return nullptr;
    }
    auto *const listener = new CMD_ServerSocketCommandListener(
        socket, port, manager, separateErrors, restrictToSafeCommands, listenerOption, browserMode);
    listener->installGenerator();
    return listener;
}

CMD_ServerSocketCommandListener::CMD_ServerSocketCommandListener(KIT_NetSocket *socket, int port,
                                                                 CMD_Manager &manager, bool separateErrors,
                                                                 bool restrictToSafeCommands,
                                                                 const char *listenerOption, bool browserMode)
    : VIO_ServerSocketListener(socket, port, nullptr, nullptr, listenerOption), manager(manager),
      managerLife(manager.getLife()), separateErrors(separateErrors),
      restrictToSafeCommands(restrictToSafeCommands), browserMode(browserMode), serial(++theLastSerial) {}

CMD_ServerSocketCommandListener::~CMD_ServerSocketCommandListener() {
    uninstallGenerator();
}

const char *CMD_ServerSocketCommandListener::className() const {
    return "CMD_ServerSocketCommandListener";
}

void CMD_ServerSocketCommandListener::createConnectedSocketListener() {
    if (managerLife.expired()) {
        getSocket().accept();
        return;
    }
    auto *const connection = new CMD_ConnectedSocketCommandListener(
        getSocket(), manager, separateErrors, restrictToSafeCommands, getListenerOption(), browserMode);
    if (!connection->isConnected())
        delete connection;
}
