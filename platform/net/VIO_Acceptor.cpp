// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_Acceptor.h>

#include <utility>

#include <orvlang/platform/net/VIO_ServerSocketListener.h>
#include <orvlang/platform/osl/OSL_System.h>

VIO_Acceptor::VIO_Acceptor(VIO_ServerSocketListener &owner, std::unique_ptr<KIT_NetSocket> accepted)
    : owner(owner), socket(std::move(accepted)) {
    watch();
}

VIO_Acceptor::~VIO_Acceptor() {
    VIO_SocketSet::inst().remove(id, socket->getDescriptor());
}

VIO_SocketSet::Id VIO_Acceptor::watch() {
    if (id == 0)
        id = VIO_SocketSet::inst().add(*this, socket->getDescriptor());
    return id;
}

bool VIO_Acceptor::isReady() const {
    return OSLsystem().waitReadable(socket->getDescriptor(), 0) > 0;
}

bool VIO_Acceptor::serve(long long) {
    const VIO_SocketSet::Id self = id;
    const unsigned before = socket->getAcceptCount();
    owner.current = this;
    owner.createConnectedSocketListener();
    // A connection that waits and cannot be accepted must not keep the turn going.
    return !VIO_SocketSet::inst().holds(self) || socket->getAcceptCount() != before;
}
