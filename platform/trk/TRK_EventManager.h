// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <memory>
#include <unordered_set>
#include <vector>

/// Decides what happens to the channel events that come while it handles them.
class CMD_API TRK_EventHandler {
public:
    virtual ~TRK_EventHandler();
    /// Takes an event of `channel` (an address that identifies it, never followed) into keeping.
    virtual void hold(const void *channel) = 0;
    /// Gives up what was kept, oldest first.
    virtual std::vector<const void *> takeHeld() = 0;
};

/// Keeps each channel once, however many events it had: what many changes are followed by is one update.
class CMD_API TRK_EventHandlerHash : public TRK_EventHandler {
public:
    static std::unique_ptr<TRK_EventHandler> newHandler();

    void hold(const void *channel) override;
    std::vector<const void *> takeHeld() override;

private:
    std::unordered_set<const void *> seen;
    std::vector<const void *> order;
};

/// The road of channel events from who changes a channel to who shows it. Between beginHandlingEvents and
/// endHandlingEvents the events are held back.
class CMD_API TRK_EventManager {
public:
    using HandlerFactory = std::unique_ptr<TRK_EventHandler> (*)();
    using Listener = void (*)(const void *channel, void *data);

    /// The host's function that is told of every event; null for none.
    void setListener(Listener function, void *data);

    /// Tells the listener that `channel` changed, or keeps the event for later.
    void sendEvent(const void *channel);

    /// Holds events back from here on, in a handler that `factory` makes. Calls nest, and the outermost handler
    /// keeps the events of all. Without a factory or a handler events go on to the listener.
    void beginHandlingEvents(HandlerFactory factory);
    /// Ends what the matching call began. The outermost end tells the listener all that was held back. Without a
    /// matching begin it does nothing.
    void endHandlingEvents();
    bool isHandlingEvents() const { return depth > 0; }

private:
    Listener listener = nullptr;
    void *listenerData = nullptr;   // borrowed
    std::unique_ptr<TRK_EventHandler> handler;
    int depth = 0;
};

/// The one event manager of the process.
CMD_API TRK_EventManager &TRKgetEventManager();

/// Holds channel events back from its construction until TRKgetEventManager().endHandlingEvents() is called,
/// which is left to its owner: what the held events set off shall find the handler still in place.
class CMD_API TRK_AutoEventHandler {
public:
    TRK_AutoEventHandler();
};
