// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Wait.h>

#include <algorithm>

#include <unistd.h>

#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

/// A wait that could end so little early is not cut in two; nanoseconds.
constexpr long long theLeastGain = 100000;

constinit KIT_DueDescriptors theDueDescriptors = nullptr;
constinit KIT_Immortal<std::vector<pollfd>> theWanted;   // keeps its memory from wait to wait

constexpr pollfd theInput = { STDIN_FILENO, POLLIN, 0 };

short askStdin() {
    pollfd input = theInput;
    OSLsystem().waitAny(&input, 1, 0);
    return input.revents;
}

/// A descriptor is watched from the moment on at which its owner is due, not before.
void wait(bool withInput, long long nanoseconds) {
    OSL_System &system = OSLsystem();
    std::vector<pollfd> &wanted = theWanted.object;
    const long long end = system.getMonotonicTime() + nanoseconds;
    for (long long left = nanoseconds; left >= 0; left = end - system.getMonotonicTime()) {
        wanted.clear();
        if (withInput)
            wanted.push_back(theInput);
        const long long next = theDueDescriptors ? theDueDescriptors(wanted) * 1000 : -1;
        const bool inTwo = next >= 0 && next < left - theLeastGain;
        if (system.waitAny(wanted.data(), wanted.size(), inTwo ? next : left) != 0 || !inTwo)
            return;
    }
}

long long nanoseconds(int milliseconds) {
    return std::max(0, milliseconds) * 1000000LL;
}

}   // namespace

bool KITisDataAvailableOnStdin() {
    return KIT_StandardInput::inst().answersAtOnce() || (askStdin() & (POLLIN | POLLHUP | POLLERR)) != 0;
}

bool KITisStdinValid() {
    return (askStdin() & POLLNVAL) == 0;
}

void KITwaitForTimeoutOrDataOnStdin(int milliseconds) {
    if (!KIT_StandardInput::inst().answersAtOnce())
        wait(true, nanoseconds(milliseconds));
}

void KITnap(int milliseconds) {
    wait(false, nanoseconds(milliseconds));
}

void KITsetDueDescriptors(KIT_DueDescriptors function) {
    theDueDescriptors = function;
}
