// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/vio/VIO_Connection.h>

#include <unordered_map>
#include <utility>

#include <orvlang/platform/kit/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/vio/VIO_ConnectedSocketListener.h>
#include <orvlang/platform/vio/VIO_PeerCheck.h>

namespace {

constexpr size_t theStep = 256 * 1024;   // bytes that one step gathers, so that nobody holds up the others
constexpr long long theMillisecond = 1000000;
constexpr std::string_view theLineEnd = "\r\n";

}   // namespace

std::unique_ptr<VIO_Connection> VIO_Connection::take(VIO_ConnectedSocketListener &owner,
                                                     KIT_NetSocket &listening, const Receiver &receiver,
                                                     const VIO_ListenerOptions &options) {
    std::shared_ptr<KIT_NetSocket> socket = listening.accept();
    if (!socket)
        return nullptr;
    const int port = socket->getPort();
    if (countOf(port) >= options.clients || !(options.anyUser || VIOisPeerOfThisUser(socket->getDescriptor())))
        return nullptr;
    std::unique_ptr<VIO_Connection> made(new VIO_Connection(owner, std::move(socket), port, receiver, options));
    return made->id == 0 ? nullptr : std::move(made);
}

VIO_Connection::VIO_Connection(VIO_ConnectedSocketListener &owner, std::shared_ptr<KIT_NetSocket> taken,
                               int port, const Receiver &receiver, const VIO_ListenerOptions &listenerOptions)
    : owner(owner), socket(std::move(taken)), port(port), receiver(receiver), options(listenerOptions),
      gatherer(options) {
    // A read that the gathering did not foresee is held to the same rule.
    socket->setLimits(options.maxBytes, static_cast<int>(options.wait / theMillisecond) + 1);
    id = VIO_SocketSet::inst().add(*this, socket->getDescriptor());
    ++countOf(port);
}

VIO_Connection::~VIO_Connection() {
    VIO_SocketSet::inst().remove(id, socket->getDescriptor());
    socket->close();
    --countOf(port);
}

/// How many connections a port has.
size_t &VIO_Connection::countOf(int port) {
    static KIT_Immortal<std::unordered_map<int, size_t>> theCounts;
    return theCounts.object[port];
}

void VIO_Connection::end() {
    delete &owner;
}

int VIO_Connection::getDescriptor() const {
    return delivering || awaitingRoom ? -1 : socket->getDescriptor();
}

bool VIO_Connection::isReady() const {
    OSL_System &system = OSLsystem();
    if (delivering)
        return false;
    if (dueTime != 0 && dueTime <= system.getMonotonicTime())
        return true;
    const int descriptor = socket->getDescriptor();
    return (awaitingRoom ? system.waitWritable(descriptor, 0) : system.waitReadable(descriptor, 0)) > 0;
}

bool VIO_Connection::serve(long long now) {
    if (delivering)
        return false;
    if (draining)
        return drain(now);
    if (awaitingRoom && !sendRest(now))
        return false;
    socket->gather(socket->getGathered().size() + theStep);
    return deliverGathered(now);
}

/// False when there was nothing to deliver.
bool VIO_Connection::deliverGathered(long long now) {
    for (bool delivered = false;;) {
        const VIO_Delivery next = gatherer.decide(socket->getGathered(), socket->isInputEnded(), now);
        dueTime = next.until;
        switch (next.action) {
        case VIO_Delivery::Wait:
            if (socket->isInputEnded())
                end();
            return delivered;
        case VIO_Delivery::Refuse:
            end();
            return delivered;
        case VIO_Delivery::Complete:
            socket->pretendGathered(theLineEnd);
            break;
        case VIO_Delivery::Drop:
            socket->takeGathered(next.length);
            break;
        case VIO_Delivery::Fail:
        case VIO_Delivery::Deliver:
            if (!deliver(next) || !finishDelivery(next.action == VIO_Delivery::Fail))
                return true;
            delivered = true;
        }
    }
}

/// False when this object did not survive it.
bool VIO_Connection::deliver(const VIO_Delivery &next) {
    const std::shared_ptr<KIT_NetSocket> kept = socket;
    const VIO_SocketSet::Id self = id;
    const std::string_view bytes = socket->getGathered().substr(0, next.length);
    if (next.action == VIO_Delivery::Fail) {
        socket->takeGathered(socket->getGathered().size());
        socket->endInput();
    } else {
        socket->takeGathered(bytes.size());
    }
    delivering = true;
    receiver.callback(receiver.data, bytes.data(), static_cast<int>(bytes.size()), *kept);
    if (!VIO_SocketSet::inst().holds(self))
        return false;
    delivering = false;
    return true;
}

/// Sees to it that the reply goes out. False when nothing more can be delivered for now.
bool VIO_Connection::finishDelivery(bool failed) {
    socket->trim();
    if (!socket->isUsable()) {
        end();
        return false;
    }
    ending = failed;
    if (socket->getQueued() > 0) {
        awaitRoom(true);
        lastSent = OSLsystem().getMonotonicTime();
        dueTime = lastSent + options.wait;
        return false;
    }
    if (ending)
        closeSlowly();
    return !ending;
}

/// Sends on. False when nothing more can be done for now.
bool VIO_Connection::sendRest(long long now) {
    if (socket->sendQueued() > 0)
        lastSent = now;
    dueTime = lastSent + options.wait;
    if (!socket->isUsable() || (socket->getQueued() > 0 && now >= dueTime)) {
        end();
        return false;
    }
    if (socket->getQueued() > 0)
        return false;
    socket->trim();
    awaitRoom(false);
    if (ending)
        closeSlowly();
    return !ending;
}

void VIO_Connection::awaitRoom(bool await) {
    awaitingRoom = await;
    VIO_SocketSet::inst().awaitOutput(id, socket->getDescriptor(), await);
}

/// Closes this side. To close all at once would, as long as the peer sends, take from it what it was sent last.
void VIO_Connection::closeSlowly() {
    socket->endOutput();
    draining = true;
    dueTime = OSLsystem().getMonotonicTime() + options.wait;
}

bool VIO_Connection::drain(long long now) {
    if (now >= dueTime || !socket->drain())
        end();
    return false;
}
