// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_Acceptor.h>

#include <utility>

#include <orvlang/platform/net/VIO_ServerSocketListener.h>
#include <orvlang/platform/osl/OSL_System.h>

VIO_Acceptor::VIO_Acceptor(VIO_ServerSocketListener &owner, std::unique_ptr<KIT_NetSocket> taken)
    : owner(owner), socket(std::move(taken)) {
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
    const unsigned before = socket->getTaken();
    owner.current = this;
    owner.createConnectedSocketListener();
    // Where none can be taken, the one that waits would else keep the turn going.
    return !VIO_SocketSet::inst().holds(self) || socket->getTaken() != before;
}
