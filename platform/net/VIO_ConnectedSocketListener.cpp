// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_ConnectedSocketListener.h>

#include <orvlang/platform/net/VIO_Connection.h>
#include <orvlang/platform/net/VIO_ListenerOptions.h>

VIO_ConnectedSocketListener::VIO_ConnectedSocketListener(KIT_NetSocket &listening, DataCallback callback,
                                                         void *data, const char *listenerOption)
    : connection(VIO_Connection::accept(*this, listening, { callback, data },
                                        VIO_ListenerOptions::parse(listenerOption, nullptr))) {}

VIO_ConnectedSocketListener::~VIO_ConnectedSocketListener() = default;

const char *VIO_ConnectedSocketListener::getClassName() const {
    return className();
}

int VIO_ConnectedSocketListener::getFileDescriptor() const {
    return connection ? connection->getDescriptor() : -1;
}

bool VIO_ConnectedSocketListener::areEventsWaiting() {
    return connection && connection->isReady();
}

int VIO_ConnectedSocketListener::processEvents() {
    return connection ? VIO_SocketSet::inst().turn(connection->getId()) : 0;
}

VIO_RequestExtent VIO_ConnectedSocketListener::findRequest(const VIO_ReceivedBytes &received) {
    return { .action = VIO_RequestExtent::Deliver, .length = received.bytes.size() };
}
