// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include <sys/socket.h>

/// The user and the inode of an open socket.
struct OSL_SocketOwner {
    unsigned user = 0;         // who created it
    unsigned long inode = 0;   // 0 when no process has it open any more; then the user means nothing
};

/// Asks the kernel for a TCP socket of this machine by its two addresses. Returns nothing when there is none: the socket
/// is closed, or it belongs to another machine.
std::optional<OSL_SocketOwner> OSLfindSocketOwner(const sockaddr_storage &own, const sockaddr_storage &peer);

/// Searches the text of /proc/net instead, for a kernel that cannot be asked for one socket. Reads all sockets.
std::optional<OSL_SocketOwner> OSLsearchSocketOwner(const sockaddr_storage &own, const sockaddr_storage &peer);
