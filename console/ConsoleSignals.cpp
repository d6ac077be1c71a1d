// SPDX-License-Identifier: Apache-2.0
#include "ConsoleSignals.h"

#include <csignal>

#include <orvlang/platform/kit/KIT_Interrupt.h>

namespace {

constexpr int theNumbers[] = { SIGINT, SIGTERM, SIGHUP };

volatile std::sig_atomic_t theSignal = 0;

void takeSignal(int number) {
    theSignal = number;
    KITgetInterrupt()->interrupt();
}

void take(int number) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = takeSignal;
    // Without SA_RESTART: a read that waits for a line ends.
    action.sa_flags = number == SIGINT ? 0 : SA_RESETHAND;
    sigaction(number, &action, nullptr);
}

}   // namespace

void ConsoleSignals::install() {
    for (const int number : theNumbers)
        take(number);
}

int ConsoleSignals::pending() {
    return theSignal;
}

void ConsoleSignals::forget() {
    theSignal = 0;
}
