// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_ChannelBlocks.h>

#include <memory>
#include <utility>

#include <orvlang/platform/trk/TRK_EventManager.h>

namespace {

int theCount = 0;
TRK_AutoEventHandler *theHandler = nullptr;   // holds the events back while theCount is not 0

}   // namespace

int CMD_ChannelBlocks::getCount() {
    return theCount;
}

void CMD_ChannelBlocks::open() {
    if (theCount == 0)
        theHandler = new TRK_AutoEventHandler;
    ++theCount;
}

void CMD_ChannelBlocks::closeTo(int kept) {
    theCount = kept;
    if (kept > 0)
        return;
    // A handler of the events may open a block of its own.
    const std::unique_ptr<TRK_AutoEventHandler> ended(std::exchange(theHandler, nullptr));
    if (ended)
        TRKgetEventManager().endHandlingEvents();
}
