// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/vio/VIO_Connection.h>

#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/vio/VIO_ConnectedSocketListener.h>

namespace {

constexpr std::size_t theGatherSize = 256 * 1024;   // in one step, so that nobody holds up the others

}   // namespace

std::unique_ptr<VIO_Connection> VIO_Connection::take(VIO_ConnectedSocketListener &owner,
                                                     KIT_NetSocket &listening, const Receiver &receiver,
                                                     const VIO_ListenerOptions &options) {
    std::shared_ptr<KIT_NetSocket> socket = listening.accept();
    if (!socket)
        return nullptr;
    std::unique_ptr<VIO_Connection> made(new VIO_Connection(owner, std::move(socket), receiver, options));
    return made->id == 0 ? nullptr : std::move(made);
}

VIO_Connection::VIO_Connection(VIO_ConnectedSocketListener &owner, std::shared_ptr<KIT_NetSocket> taken,
                               const Receiver &receiver, const VIO_ListenerOptions &options)
    : owner(owner), socket(std::move(taken)), receiver(receiver), options(options) {
    id = VIO_SocketSet::inst().add(*this, socket->getDescriptor());
}

VIO_Connection::~VIO_Connection() {
    VIO_SocketSet::inst().remove(id, socket->getDescriptor());
    socket->close();
}

bool VIO_Connection::isReady() const {
    return !delivering && OSLsystem().waitReadable(socket->getDescriptor(), 0) > 0;
}

bool VIO_Connection::endBehindDelivery() {
    if (delivering)
        socket->close();
    return delivering;
}

bool VIO_Connection::serve(long long now) {
    (void)now;
    if (delivering)
        return false;
    const std::shared_ptr<KIT_NetSocket> kept = socket;
    const VIO_SocketSet::Id self = id;
    socket->gather(theGatherSize);
    const std::string_view delivery = socket->getGathered();
    if (!delivery.empty()) {
        delivering = true;
        socket->takeGathered(delivery.size());
        receiver.callback(receiver.data, delivery.data(), static_cast<int>(delivery.size()), *socket);
        if (!VIO_SocketSet::inst().holds(self))
            return true;
        delivering = false;
    }
    if (socket->isInputEnded())
        delete &owner;
    return true;
}
