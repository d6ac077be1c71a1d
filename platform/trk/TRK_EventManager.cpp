// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/trk/TRK_EventManager.h>

#include <orvlang/platform/osl/KIT_Immortal.h>

#include <utility>

TRK_EventHandler::~TRK_EventHandler() = default;

std::unique_ptr<TRK_EventHandler> TRK_EventHandlerHash::newHandler() {
    return std::make_unique<TRK_EventHandlerHash>();
}

void TRK_EventHandlerHash::hold(const void *channel) {
    if (seen.insert(channel).second)
        order.push_back(channel);
}

std::vector<const void *> TRK_EventHandlerHash::takeHeld() {
    seen.clear();
    return std::exchange(order, {});
}

void TRK_EventManager::setListener(Listener function, void *data) {
    listener = function;
    listenerData = data;
}

void TRK_EventManager::sendEvent(const void *channel) {
    if (handler)
        handler->hold(channel);
    else if (listener)
        listener(channel, listenerData);
}

void TRK_EventManager::beginHandlingEvents(HandlerFactory factory) {
    if (depth++ == 0 && factory)
        handler = factory();
}

void TRK_EventManager::endHandlingEvents() {
    if (depth == 0 || --depth > 0)
        return;
    // Removed before the listener is called: what a listener changes is an event of its own.
    const std::unique_ptr<TRK_EventHandler> ended = std::move(handler);
    if (!ended)
        return;
    for (const void *channel : ended->takeHeld())
        sendEvent(channel);
}

TRK_EventManager &TRKgetEventManager() {
    static KIT_Immortal<TRK_EventManager> theManager;
    return theManager.object;
}

TRK_AutoEventHandler::TRK_AutoEventHandler() {
    TRKgetEventManager().beginHandlingEvents(TRK_EventHandlerHash::newHandler);
}
