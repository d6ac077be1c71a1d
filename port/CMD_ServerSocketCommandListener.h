// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/net/VIO_ServerSocketListener.h>

class CMD_Manager;

/// The listening end of one command port. Each client that connects gets a CMD_ConnectedSocketCommandListener with the
/// settings of the port, which then lives on its own, also after the port is closed.
class CMD_API CMD_ServerSocketCommandListener : public VIO_ServerSocketListener {
public:
    /// Opens a port and installs it in the event loop. Returns null when the number is in use or cannot be opened.
    /// Requests run on `manager`; once that is destroyed, connections are closed. With `mapPort` the number is mapped to an
    /// unprivileged one. The caller owns the listener; a port of CMD_Manager::openPort belongs to the table of ports.
    /// `listenerOption` may be null.
    static CMD_ServerSocketCommandListener *
    createCommandListener(int port, CMD_Manager &manager, bool separateErrors, bool restrictToSafeCommands,
                          const char *listenerOption, bool mapPort, bool browserMode);
    ~CMD_ServerSocketCommandListener() override;

    const char *className() const override;

    /// Whether commands run in safe mode. A change applies to later connections only.
    bool getRestrictToSafeCommands() const { return restrictToSafeCommands; }
    void setRestrictToSafeCommands(bool on) { restrictToSafeCommands = on; }
    /// Valid as long as the manager lives.
    CMD_Manager &getManager() const { return manager; }
    /// Returns a number that no other listener of the process has or had.
    unsigned getSerial() const { return serial; }

private:
    CMD_ServerSocketCommandListener(KIT_NetSocket *socket, int port, CMD_Manager &manager, bool separateErrors,
                                    bool restrictToSafeCommands, const char *listenerOption, bool browserMode);
    void createConnectedSocketListener() override;

    CMD_Manager &manager;   // valid only while managerLife has not expired
    const std::weak_ptr<const void> managerLife;
    const bool separateErrors;
    bool restrictToSafeCommands;
    const bool browserMode;
    const unsigned serial;
};
