// SPDX-License-Identifier: Apache-2.0
// The road of a request, step 3. The socket set (VIO_SocketSet.cpp) calls `serve` when bytes have come, when the peer can
// be sent more, or when the due time is over. `deliverRequests` asks the owner how much of the received bytes is one
// request (`VIO_ConnectedSocketListener::findRequest`) and `deliver` passes each request to the callback, for a command
// port `processSocketDataCallback`. The callback writes its reply to the socket; what the peer does not read at once is
// sent by later calls of `serve`.
#include <orvlang/platform/net/VIO_Connection.h>

#include <unordered_map>
#include <utility>

#include <orvlang/platform/net/VIO_ConnectedSocketListener.h>
#include <orvlang/platform/net/VIO_PeerCheck.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr size_t theStep =
    256 * 1024;   // bytes that one call of `serve` receives, so that no peer delays the others
constexpr long long theMillisecond = 1000000;

}   // namespace

std::unique_ptr<VIO_Connection> VIO_Connection::accept(VIO_ConnectedSocketListener &owner,
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

VIO_Connection::VIO_Connection(VIO_ConnectedSocketListener &owner, std::shared_ptr<KIT_NetSocket> accepted,
                               int port, const Receiver &receiver, const VIO_ListenerOptions &listenerOptions)
    : owner(owner), socket(std::move(accepted)), port(port), receiver(receiver), options(listenerOptions) {
    // The limits also hold for a callback that reads from the socket.
    socket->setLimits(options.maxBytes, static_cast<int>(options.wait / theMillisecond) + 1);
    id = VIO_SocketSet::inst().add(*this, socket->getDescriptor());
    ++countOf(port);
}

VIO_Connection::~VIO_Connection() {
    VIO_SocketSet::inst().remove(id, socket->getDescriptor());
    socket->close();
    --countOf(port);
}

/// Returns the number of connections that a port has.
size_t &VIO_Connection::countOf(int port) {
    static KIT_Immortal<std::unordered_map<int, size_t>> theCounts;
    return theCounts.object[port];
}

void VIO_Connection::end() {
    delete &owner;
}

int VIO_Connection::getDescriptor() const {
    return state == State::Delivering || isReplying() ? -1 : socket->getDescriptor();
}

bool VIO_Connection::isReady() const {
    OSL_System &system = OSLsystem();
    if (state == State::Delivering)
        return false;
    if (dueTime != 0 && dueTime <= system.getMonotonicTime())
        return true;
    const int descriptor = socket->getDescriptor();
    return (isReplying() ? system.waitWritable(descriptor, 0) : system.waitReadable(descriptor, 0)) > 0;
}

bool VIO_Connection::serve(long long now) {
    if (state == State::Delivering)
        return false;
    if (state == State::Draining)
        return drain(now);
    if (isReplying() && !sendRest(now))
        return false;
    socket->gather(socket->getGathered().size() + theStep);
    return deliverRequests(now);
}

/// Returns false when there was nothing to deliver.
bool VIO_Connection::deliverRequests(long long now) {
    for (bool delivered = false;; delivered = true) {
        const VIO_RequestExtent next = findRequest(now);
        socket->dropGathered(next.skip);
        dueTime = next.until;
        if (next.action != VIO_RequestExtent::Deliver) {
            if (next.action == VIO_RequestExtent::Refuse || socket->isInputEnded())
                end();
            return delivered;
        }
        if (!deliver(next) || !beginReply())
            return true;
    }
}

VIO_RequestExtent VIO_Connection::findRequest(long long now) const {
    const std::string_view bytes = socket->getGathered();
    if (bytes.empty())
        return { .action = VIO_RequestExtent::Wait };
    return owner.findRequest({ bytes, socket->isInputEnded(), now });
}

/// Returns false when this object was destroyed meanwhile.
bool VIO_Connection::deliver(const VIO_RequestExtent &request) {
    const std::shared_ptr<KIT_NetSocket> kept = socket;
    const VIO_SocketSet::Id self = id;
    const std::string_view gathered = socket->getGathered();
    const std::string_view bytes = gathered.substr(0, request.length);
    socket->dropGathered(request.isLast ? gathered.size() : bytes.size());
    if (request.isLast)
        socket->endInput();
    state = State::Delivering;
    receiver.callback(receiver.data, bytes.data(), static_cast<int>(bytes.size()), *kept);
    if (!VIO_SocketSet::inst().holds(self))
        return false;
    state = request.isLast ? State::ReplyingLast : State::Replying;
    return true;
}

/// The callback has written the reply. Returns false when nothing more can be delivered for now.
bool VIO_Connection::beginReply() {
    socket->trim();
    if (!socket->isUsable()) {
        end();
        return false;
    }
    if (socket->getQueued() == 0)
        return finishReply();
    awaitOutput(true);
    lastSent = OSLsystem().getMonotonicTime();
    dueTime = lastSent + options.wait;
    return false;
}

/// Sends what the peer reads. Returns false when nothing more can be done for now.
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
    awaitOutput(false);
    return finishReply();
}

/// The reply is sent. Returns false when it was the last one.
bool VIO_Connection::finishReply() {
    if (state == State::ReplyingLast)
        closeSlowly();
    else
        state = State::Receiving;
    return state == State::Receiving;
}

void VIO_Connection::awaitOutput(bool output) {
    VIO_SocketSet::inst().awaitOutput(id, socket->getDescriptor(), output);
}

/// Closes this side. Closing both at once would, while the peer still sends, discard what it has not read yet.
void VIO_Connection::closeSlowly() {
    socket->endOutput();
    state = State::Draining;
    dueTime = OSLsystem().getMonotonicTime() + options.wait;
}

bool VIO_Connection::drain(long long now) {
    if (now >= dueTime || !socket->drain())
        end();
    return false;
}
