// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include <sys/socket.h>

/// Who has a socket open.
struct OSL_SocketOwner {
    unsigned user = 0;         // who made it
    unsigned long inode = 0;   // 0 when no process has it any more; the user means nothing then
};

/// Asks the kernel for a TCP socket of this machine by its two addresses. Nothing when there is none: the socket is gone,
/// or it is one of another machine.
std::optional<OSL_SocketOwner> OSLfindSocketOwner(const sockaddr_storage &own, const sockaddr_storage &peer);

/// The same by the text of /proc/net, for a kernel that cannot be asked for one socket. Walks over all sockets.
std::optional<OSL_SocketOwner> OSLsearchSocketOwner(const sockaddr_storage &own, const sockaddr_storage &peer);
