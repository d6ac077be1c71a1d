// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <memory>
#include <unordered_set>
#include <vector>

/// Stores the channel events that come while they are held back.
class CMD_API TRK_EventHandler {
public:
    virtual ~TRK_EventHandler();
    /// Stores an event of `channel`, an address that identifies it and is never followed.
    virtual void hold(const void *channel) = 0;
    /// Returns the events, oldest first, and forgets them.
    virtual std::vector<const void *> takeHeld() = 0;
};

/// Stores each channel once, however many events it had, so that one update follows many changes.
class CMD_API TRK_EventHandlerHash : public TRK_EventHandler {
public:
    static std::unique_ptr<TRK_EventHandler> newHandler();

    void hold(const void *channel) override;
    std::vector<const void *> takeHeld() override;

private:
    std::unordered_set<const void *> seen;
    std::vector<const void *> order;
};

/// Passes channel events from the code that changes a channel to the host's listener. Between beginHandlingEvents
/// and endHandlingEvents the events are held back.
class CMD_API TRK_EventManager {
public:
    using HandlerFactory = std::unique_ptr<TRK_EventHandler> (*)();
    using Listener = void (*)(const void *channel, void *data);

    /// Sets the host's function that is called for every event; null for none.
    void setListener(Listener function, void *data);

    /// Calls the listener for `channel`, or stores the event for later.
    void sendEvent(const void *channel);

    /// Holds events back from here on, in a handler that `factory` makes. Calls nest, and the outermost handler
    /// stores the events of all. Without a factory or a handler the listener is called at once.
    void beginHandlingEvents(HandlerFactory factory);
    /// Ends what the matching call began. The outermost end calls the listener for all that was held back. Without
    /// a matching begin it does nothing.
    void endHandlingEvents();
    bool isHandlingEvents() const { return depth > 0; }

private:
    Listener listener = nullptr;
    void *listenerData = nullptr;   // borrowed
    std::unique_ptr<TRK_EventHandler> handler;
    int depth = 0;
};

/// Returns the one event manager of the process.
CMD_API TRK_EventManager &TRKgetEventManager();

/// Holds channel events back from its construction until TRKgetEventManager().endHandlingEvents() is called,
/// which is left to its owner: the handler must still be there when the listener runs for the stored events.
class CMD_API TRK_AutoEventHandler {
public:
    TRK_AutoEventHandler();
};
