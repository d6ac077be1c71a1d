// SPDX-License-Identifier: Apache-2.0
#include "ConsoleSignals.h"

#include <csignal>

#include <orvlang/platform/kit/KIT_Interrupt.h>

namespace {

volatile std::sig_atomic_t theSignal = 0;

void takeSignal(int number) {
    theSignal = number;
    KITgetInterrupt()->interrupt();
}

void take(int number, int flags) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = takeSignal;
    action.sa_flags = flags;   // without SA_RESTART: a read that waits for a line ends
    sigaction(number, &action, nullptr);
}

}   // namespace

void ConsoleSignals::install() {
    take(SIGINT, 0);
    take(SIGTERM, SA_RESETHAND);
    take(SIGHUP, SA_RESETHAND);
}

int ConsoleSignals::pending() {
    return theSignal;
}

void ConsoleSignals::forget() {
    theSignal = 0;
}
