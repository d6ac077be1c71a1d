// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_PeerCheck.h>

#include <orvlang/platform/osl/OSL_SocketTable.h>
#include <orvlang/platform/osl/OSL_System.h>

bool VIOisPeerOfThisUser(int descriptor) {
    OSL_System &system = OSLsystem();
    sockaddr_storage own, peer;
    if (!system.getOwnAddress(descriptor, own) || !system.getPeerAddress(descriptor, peer))
        return false;
    const std::optional<OSL_SocketOwner> owner = system.findSocketOwner(peer, own);
    return owner && owner->inode != 0 && (owner->user == 0 || owner->user == system.getUser());
}
